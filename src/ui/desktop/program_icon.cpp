#include "ui/desktop/program_icon.h"

#include <QPainter>
#include <QPixmap>

namespace orb {

QImage program_picture(int side) {
  QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(side / 64.0, side / 64.0);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(24, 54, 82));
  painter.drawRoundedRect(QRectF(2, 2, 60, 60), 12, 12);
  const struct {
    double x, y, width;
    QColor colour;
  } clones[]{{9, 13, 24, QColor(230, 159, 0)},
             {26, 23, 22, QColor(86, 180, 233)},
             {12, 33, 20, QColor(220, 228, 236)},
             {24, 43, 24, QColor(0, 158, 115)},
             {40, 13, 15, QColor(220, 228, 236)}};
  for (const auto &clone : clones) {
    painter.setBrush(clone.colour);
    painter.drawRoundedRect(QRectF(clone.x, clone.y, clone.width, 6), 3, 3);
  }
  painter.setBrush(Qt::white);
  painter.drawRect(QRectF(9, 54, 46, 2));
  return picture;
}

QIcon program_icon() {
  QIcon icon;
  for (const int side : {16, 24, 32, 48, 64, 128, 256})
    icon.addPixmap(QPixmap::fromImage(program_picture(side)));
  return icon;
}

} // namespace orb
