// The picture of an open net: the mouse, the wheel and the hand go to who owns it.
#pragma once

#include <QPointF>

#include "ui/desktop/picture_canvas.h"

namespace orb {

// What the picture's owner does; places in pixels of the picture.
class net_canvas_owner {
public:
  virtual ~net_canvas_owner() = default;
  virtual void mouse_pressed(QPointF at, bool shift) = 0;
  virtual void mouse_moved(QPointF at) = 0;
  virtual void mouse_released(QPointF at) = 0;
  virtual void hand_moved(QPointF by, bool goes_on) = 0; // from where the hand took the picture
  virtual void hand_let_go() = 0;
  virtual void wheel_turned(int steps, QPointF at) = 0;
  virtual void hovered(QPointF at) = 0;
  virtual void menu_wanted(QPointF at, QPoint on_screen) = 0;
  virtual QString hint_at(QPointF at) = 0;
};

class net_canvas : public picture_canvas {
  Q_OBJECT

public:
  net_canvas(net_canvas_owner &owner, QWidget *parent);

  // A ring around what the mouse is on; a radius of 0: nothing.
  void ring_set(QPointF at, double radius);
  // Words in place of a picture that shows nothing; empty: none.
  void words_set(const QString &words);

protected:
  void paint_over(QPainter &painter) override;
  void mousePressEvent(QMouseEvent *event) override;
  void mouseMoveEvent(QMouseEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;
  void wheelEvent(QWheelEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  void keyReleaseEvent(QKeyEvent *event) override;
  void leaveEvent(QEvent *event) override;
  void focusOutEvent(QFocusEvent *event) override;
  bool event(QEvent *event) override;

private:
  QRect area_of_ring() const;
  void space_set(bool held);

  net_canvas_owner &owner_;
  QPointF ring_at_, hand_from_;
  QString words_;
  double ring_radius_ = 0;
  int wheel_rest_ = 0; // eighths of a degree that didn't make a step yet
  bool is_space_held_ = false, is_in_hand_ = false, hand_has_moved_ = false, is_pressed_ = false;
};

} // namespace orb
