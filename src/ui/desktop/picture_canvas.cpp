#include "ui/desktop/picture_canvas.h"

#include <QPaintEvent>

namespace orb {

picture_canvas::picture_canvas(QWidget *parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void picture_canvas::paintEvent(QPaintEvent *) {
  QPainter painter(this);
  painter.drawImage(QPoint(0, 0), picture_.image());
  paint_over(painter);
}

void picture_canvas::resizeEvent(QResizeEvent *event) {
  picture_.resize(size(), devicePixelRatioF());
  QWidget::resizeEvent(event);
  emit resized();
}

} // namespace orb
