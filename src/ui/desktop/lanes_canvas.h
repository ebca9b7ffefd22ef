// Fingerprints as lanes in a widget.
#pragma once

#include "reports/lanes.h"
#include "ui/desktop/axis_canvas.h"

namespace orb {

class lanes_canvas : public axis_canvas {
  Q_OBJECT

public:
  explicit lanes_canvas(QWidget *parent);
  void values_set(lane_values values);
  const lane_values &values() const { return values_; }
  const lanes_page &page() const { return page_; }

protected:
  void draw_anew() override;
  axis_stretch axis_under(QPointF) const override { return page_.axis; }
  bool event(QEvent *event) override;

private:
  QString hint_at(QPointF at) const;

  lane_values values_;
  lanes_page page_;
};

} // namespace orb
