// The drawing surface of the windows: Qt paints what the drawing code of the rest asks for.
#pragma once

#include <QImage>
#include <QPainter>
#include <functional>

#include "drawing/drawing_surface.h"

class QColor;

namespace orb {

QColor qt_colour(colour_value colour);
colour_value colour_of(const QColor &colour);

// Draws with `painter`, which must outlive the surface.
drawing_surface qt_surface(QPainter &painter, surface_size size);

// A picture that is drawn once and shown often. The surface stays good through `resize`.
class qt_picture {
public:
  qt_picture();
  qt_picture(const qt_picture &) = delete;
  qt_picture &operator=(const qt_picture &) = delete;

  // `size` in pixels of the window, `ratio` of the screen's to these. White.
  void resize(QSize size, double ratio);
  drawing_surface surface();
  // Ends the drawing for now.
  const QImage &image();

private:
  QPainter &painter();

  QImage image_;
  QPainter painter_;
};

} // namespace orb
