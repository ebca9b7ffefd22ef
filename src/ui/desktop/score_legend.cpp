#include "ui/desktop/score_legend.h"

#include <QPainter>

#include "drawing/palette.h"
#include "ui/desktop/qt_surface.h"

namespace orb {

namespace {

constexpr int width_of_band = 5, n_bands = 11; // of scores; the last band has no end

QColor colour_of_band(int band) {
  std::string_view name;
  color_name_of_scale(color_for_value(band * width_of_band + width_of_band / 2.0, 0, -1), name);
  return qt_colour(color_from_name(name));
}

} // namespace

score_legend::score_legend(QWidget *parent) : QWidget(parent) {
  setObjectName("legend_scores");
  setAccessibleName(tr("Colours of edges by their scores, from 0 to 50 and more"));
  setToolTip(tr("Colours of edges that were made here, by the scores of their overlaps"));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void score_legend::paintEvent(QPaintEvent *) {
  constexpr int height_of_swatch = 14;
  QPainter painter(this);
  QFont small = font();
  small.setPointSizeF(small.pointSizeF() * 0.8);
  painter.setFont(small);
  const double step = static_cast<double>(width() - 2) / n_bands;
  for (int band = 0; band < n_bands; ++band) {
    const QRectF box(1 + band * step, 1, step, height_of_swatch);
    painter.fillRect(box, colour_of_band(band));
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawRect(box);
    if (band % 2 == 0)
      painter.drawText(QRectF(box.left(), height_of_swatch + 2, 2 * step, height() - height_of_swatch - 2),
                       Qt::AlignLeft | Qt::AlignTop,
                       QString::number(band * width_of_band) + (band + 1 == n_bands ? "+" : ""));
  }
}

} // namespace orb
