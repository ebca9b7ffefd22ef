#include "ui/desktop/lanes_canvas.h"

#include <QHelpEvent>
#include <QToolTip>

#include "ui/desktop/qt_text.h"

namespace orb {

lanes_canvas::lanes_canvas(QWidget *parent) : axis_canvas(parent) {
  setObjectName("lanes");
  setAccessibleName(tr("Fingerprints as lanes on the axis of sizes"));
}

void lanes_canvas::values_set(lane_values values) {
  const bool same_axis = values.largest == values_.largest && !values_.lanes.empty();
  values_ = std::move(values);
  if (!same_axis)
    ends_set(0, static_cast<double>(values_.largest) * 1.02);
  draw_anew();
}

void lanes_canvas::draw_anew() {
  page_ = lay_out_lanes(values_, {static_cast<float>(width()), from(), to()}, surface().text_width);
  height_set(page_.size.height);
  draw_lanes(page_, surface());
  update();
}

QString lanes_canvas::hint_at(QPointF at) const {
  const found_band found = band_at(page_, static_cast<float>(at.x()), static_cast<float>(at.y()));
  if (found.lane < 0)
    return {};
  const lane &of = values_.lanes[static_cast<std::size_t>(found.lane)];
  if (found.band < 0)
    return qt_text(of.name) + tr(": %1 bands").arg(of.bands.size());
  const lane_band &band = of.bands[static_cast<std::size_t>(found.band)];
  return qt_text(of.name) + tr(": band %1 of %2, size %3").arg(found.band + 1).arg(of.bands.size()).arg(band.size) +
         (!of.has_neighbours  ? QString()
          : band.is_explained ? tr("\nan overlapping clone has it too")
                              : tr("\nno overlapping clone has it"));
}

bool lanes_canvas::event(QEvent *event) {
  if (event->type() != QEvent::ToolTip)
    return axis_canvas::event(event);
  const auto *help = static_cast<QHelpEvent *>(event);
  QToolTip::showText(help->globalPos(), hint_at(help->pos()), this);
  return true;
}

} // namespace orb
