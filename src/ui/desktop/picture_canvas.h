// A widget that shows a picture drawn once: what lies above it (hover, selection) is painted each time it is shown.
#pragma once

#include <QWidget>

#include "ui/desktop/qt_surface.h"

namespace orb {

class picture_canvas : public QWidget {
  Q_OBJECT

public:
  explicit picture_canvas(QWidget *parent = nullptr);

  // Draws into the picture, which has the size of the widget.
  drawing_surface surface() { return picture_.surface(); }
  QSize sizeHint() const override { return {900, 600}; }
  QSize minimumSizeHint() const override { return {300, 300}; }

signals:
  void resized(); // the picture is white again

protected:
  virtual void paint_over(QPainter &) {}
  void paintEvent(QPaintEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;

private:
  qt_picture picture_;
};

} // namespace orb
