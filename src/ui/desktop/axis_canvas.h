// A picture along an axis that can be stretched: Ctrl and the wheel, or + and -, zoom at the mouse, a drag moves the
// stretch. Who derives from it lays its picture out for a stretch and draws it.
#pragma once

#include <QPointF>

#include "reports/map_parts.h"
#include "ui/desktop/picture_canvas.h"

namespace orb {

class axis_canvas : public picture_canvas {
  Q_OBJECT

public:
  explicit axis_canvas(QWidget *parent);

  double from() const { return from_; }
  double to() const { return to_; }
  bool shows_all() const { return from_ <= first_ && to_ >= last_; }
  // Steps in (above 0) or out; `at`: of the axis, what stays in its place.
  void zoom(int steps, double at);
  void zoom_in_middle(int steps) { zoom(steps, (from_ + to_) / 2); }
  void show_all();
  void show_stretch(double from, double to);

signals:
  void clicked(QPointF at, bool adds); // `adds`: with Ctrl or Shift
  void hovered(QPointF at);

protected:
  // The ends of the axis; all of it is shown then.
  void ends_set(double first, double last);
  // Lays out, tells the height by `height_set`, and draws.
  virtual void draw_anew() = 0;
  virtual axis_stretch axis_under(QPointF at) const = 0;
  void height_set(double height);

  void mousePressEvent(QMouseEvent *event) override;
  void mouseMoveEvent(QMouseEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;
  void wheelEvent(QWheelEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;

private:
  double first_ = 0, last_ = 1, from_ = 0, to_ = 1;
  QPointF pressed_at_;
  double pressed_from_ = 0;
  bool is_pressed_ = false, has_moved_ = false;
  int wheel_rest_ = 0;
};

// The canvas in a frame that scrolls it up and down, with buttons for zooming above.
QWidget *framed_axis(axis_canvas *canvas, QWidget *parent);

} // namespace orb
