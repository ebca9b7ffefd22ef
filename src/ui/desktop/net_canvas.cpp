#include "ui/desktop/net_canvas.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QToolTip>

namespace orb {

net_canvas::net_canvas(net_canvas_owner &owner, QWidget *parent) : picture_canvas(parent), owner_(owner) {
  setObjectName("picture");
  setAccessibleName(tr("Picture of the net"));
}

// ---- the ring ------------------------------------------------------------------------------------------------------

QRect net_canvas::area_of_ring() const {
  const double half = ring_radius_ + 3;
  return QRectF(ring_at_.x() - half, ring_at_.y() - half, 2 * half, 2 * half).toAlignedRect();
}

void net_canvas::ring_set(QPointF at, double radius) {
  if (radius == ring_radius_ && at == ring_at_)
    return;
  if (ring_radius_ > 0)
    update(area_of_ring());
  ring_at_ = at;
  ring_radius_ = radius;
  if (ring_radius_ > 0)
    update(area_of_ring());
}

void net_canvas::words_set(const QString &words) {
  if (words == words_)
    return;
  words_ = words;
  update();
}

void net_canvas::paint_over(QPainter &painter) {
  if (!words_.isEmpty()) {
    painter.setPen(QColor(0x6B, 0x6B, 0x6B));
    painter.drawText(rect().adjusted(30, 30, -30, -30), Qt::AlignCenter | Qt::TextWordWrap, words_);
  }
  if (ring_radius_ <= 0)
    return;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(QColor(0, 0, 0), 2));
  painter.drawEllipse(ring_at_, ring_radius_, ring_radius_);
}

// ---- mouse and keys ------------------------------------------------------------------------------------------------

void net_canvas::mousePressEvent(QMouseEvent *event) {
  const bool takes_picture =
      event->button() == Qt::MiddleButton || (event->button() == Qt::LeftButton && is_space_held_);
  if (takes_picture && !is_pressed_) {
    is_in_hand_ = true;
    hand_has_moved_ = false;
    hand_from_ = event->position();
    setCursor(Qt::ClosedHandCursor);
  } else if (event->button() == Qt::LeftButton && !is_in_hand_) {
    is_pressed_ = true;
    owner_.mouse_pressed(event->position(), event->modifiers().testFlag(Qt::ShiftModifier));
  } else if (event->button() == Qt::RightButton && !is_in_hand_ && !is_pressed_) {
    owner_.menu_wanted(event->position(), event->globalPosition().toPoint());
  }
}

void net_canvas::mouseMoveEvent(QMouseEvent *event) {
  if (is_in_hand_) {
    owner_.hand_moved(event->position() - hand_from_, hand_has_moved_);
    hand_has_moved_ = true;
  } else if (is_pressed_) {
    owner_.mouse_moved(event->position());
  } else {
    owner_.hovered(event->position());
  }
}

void net_canvas::mouseReleaseEvent(QMouseEvent *event) {
  if (is_in_hand_ && event->button() != Qt::RightButton) {
    is_in_hand_ = false;
    setCursor(is_space_held_ ? Qt::OpenHandCursor : Qt::ArrowCursor);
    if (hand_has_moved_)
      owner_.hand_let_go();
  } else if (is_pressed_ && event->button() == Qt::LeftButton) {
    is_pressed_ = false;
    owner_.mouse_released(event->position());
  }
}

void net_canvas::wheelEvent(QWheelEvent *event) {
  constexpr int one_step = 120;
  wheel_rest_ += event->angleDelta().y();
  const int steps = wheel_rest_ / one_step;
  wheel_rest_ -= steps * one_step;
  if (steps != 0 && !is_pressed_ && !is_in_hand_)
    owner_.wheel_turned(steps, event->position());
  event->accept();
}

void net_canvas::space_set(bool held) {
  is_space_held_ = held;
  if (!is_in_hand_)
    setCursor(held ? Qt::OpenHandCursor : Qt::ArrowCursor);
}

void net_canvas::keyPressEvent(QKeyEvent *event) {
  if (event->key() == Qt::Key_Space)
    space_set(true);
  else
    picture_canvas::keyPressEvent(event);
}

void net_canvas::keyReleaseEvent(QKeyEvent *event) {
  if (event->key() == Qt::Key_Space && !event->isAutoRepeat())
    space_set(false);
  else
    picture_canvas::keyReleaseEvent(event);
}

void net_canvas::focusOutEvent(QFocusEvent *event) {
  space_set(false);
  picture_canvas::focusOutEvent(event);
}

void net_canvas::leaveEvent(QEvent *) {
  ring_set({}, 0);
}

bool net_canvas::event(QEvent *event) {
  if (event->type() != QEvent::ToolTip)
    return picture_canvas::event(event);
  const auto *help = static_cast<QHelpEvent *>(event);
  const QString hint = owner_.hint_at(help->pos());
  if (hint.isEmpty())
    QToolTip::hideText();
  else
    QToolTip::showText(help->globalPos(), hint, this);
  return true;
}

} // namespace orb
