#include "ui/desktop/axis_canvas.h"

#include <QMouseEvent>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace orb {

namespace {

constexpr double factor = 1.5, least_stretch = 4; // units of the axis

} // namespace

axis_canvas::axis_canvas(QWidget *parent) : picture_canvas(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::MinimumExpanding);
  connect(this, &picture_canvas::resized, this, [this] { draw_anew(); });
}

void axis_canvas::ends_set(double first, double last) {
  first_ = from_ = first;
  last_ = to_ = std::max(last, first + 1);
}

void axis_canvas::show_all() {
  show_stretch(first_, last_);
}

void axis_canvas::show_stretch(double from, double to) {
  const double length = std::clamp(to - from, std::min(least_stretch, last_ - first_), last_ - first_);
  from_ = std::clamp(from, first_, last_ - length);
  to_ = from_ + length;
  draw_anew();
}

void axis_canvas::zoom(int steps, double at) {
  const double ratio = std::pow(factor, -steps);
  at = std::clamp(at, from_, to_);
  show_stretch(at - (at - from_) * ratio, at + (to_ - at) * ratio);
}

void axis_canvas::height_set(double height) {
  const int wanted = static_cast<int>(std::clamp(height, 50.0, 30000.0));
  if (minimumHeight() != wanted)
    setMinimumHeight(wanted);
}

// ---- mouse and keys ------------------------------------------------------------------------------------------------

void axis_canvas::mousePressEvent(QMouseEvent *event) {
  if (event->button() != Qt::LeftButton && event->button() != Qt::MiddleButton)
    return;
  is_pressed_ = true;
  has_moved_ = false;
  pressed_at_ = event->position();
  pressed_from_ = from_;
}

void axis_canvas::mouseMoveEvent(QMouseEvent *event) {
  constexpr double threshold = 5;
  if (!is_pressed_) {
    emit hovered(event->position());
    return;
  }
  const double dx = event->position().x() - pressed_at_.x();
  if (shows_all() || (!has_moved_ && std::abs(dx) < threshold))
    return;
  has_moved_ = true;
  const double from = pressed_from_ - dx / axis_under(event->position()).pixels_per_band;
  show_stretch(from, from + (to_ - from_));
}

void axis_canvas::mouseReleaseEvent(QMouseEvent *event) {
  if (!is_pressed_)
    return;
  is_pressed_ = false;
  if (!has_moved_ && event->button() == Qt::LeftButton)
    emit clicked(event->position(), (event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier)) != 0);
}

void axis_canvas::wheelEvent(QWheelEvent *event) {
  constexpr int one_step = 120;
  if (!event->modifiers().testFlag(Qt::ControlModifier)) {
    event->ignore(); // the frame scrolls
    return;
  }
  wheel_rest_ += event->angleDelta().y();
  const int steps = wheel_rest_ / one_step;
  wheel_rest_ -= steps * one_step;
  const axis_stretch axis = axis_under(event->position());
  if (steps != 0)
    zoom(steps, axis.from + (event->position().x() - axis.left) / axis.pixels_per_band);
  event->accept();
}

void axis_canvas::keyPressEvent(QKeyEvent *event) {
  const double step = (to_ - from_) / 4;
  switch (event->key()) {
  case Qt::Key_Plus:
    return zoom_in_middle(1);
  case Qt::Key_Minus:
    return zoom_in_middle(-1);
  case Qt::Key_Left:
    return show_stretch(from_ - step, to_ - step);
  case Qt::Key_Right:
    return show_stretch(from_ + step, to_ + step);
  case Qt::Key_Home:
    return show_all();
  default:
    picture_canvas::keyPressEvent(event);
  }
}

// ---- the frame -----------------------------------------------------------------------------------------------------

QWidget *framed_axis(axis_canvas *canvas, QWidget *parent) {
  auto *frame = new QWidget(parent);
  auto *column = new QVBoxLayout(frame);
  column->setContentsMargins(0, 0, 0, 0);
  auto *buttons = new QHBoxLayout;
  const auto add = [&](const char *name, const QString &text, const QString &meaning, const auto &does) {
    auto *button = new QToolButton(frame);
    button->setObjectName(name);
    button->setText(text);
    button->setToolTip(meaning);
    button->setAccessibleName(meaning);
    button->setFocusPolicy(Qt::TabFocus);
    QObject::connect(button, &QToolButton::clicked, canvas, does);
    buttons->addWidget(button);
  };
  add("CmdAll", QObject::tr("All"), QObject::tr("All of the axis"), [canvas] { canvas->show_all(); });
  add("CmdZoomIn", "+", QObject::tr("Zoom in (Ctrl and the wheel)"), [canvas] { canvas->zoom_in_middle(1); });
  add("CmdZoomOut", QString::fromUtf8("\u2212"), QObject::tr("Zoom out (Ctrl and the wheel)"),
      [canvas] { canvas->zoom_in_middle(-1); });
  buttons->addStretch();
  auto *area = new QScrollArea(frame);
  area->setWidget(canvas);
  area->setWidgetResizable(true);
  area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // a bar that comes and goes would change the width
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  column->addLayout(buttons);
  column->addWidget(area);
  return frame;
}

} // namespace orb
