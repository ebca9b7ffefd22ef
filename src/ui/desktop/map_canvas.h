// The map of a contig in a widget: the picture of `orb map`, with the selected clones outlined.
#pragma once

#include <vector>

#include "reports/contig_layout.h"
#include "ui/desktop/axis_canvas.h"
#include "ui/desktop/selection_model.h"

namespace orb {

class map_canvas : public axis_canvas {
  Q_OBJECT

public:
  map_canvas(selection_model &selection, QWidget *parent);

  void values_set(contig_values values);
  // Nothing is drawn but a text.
  void text_set(const QString &text);
  const contig_values &values() const { return values_; }
  const map_page &page() const { return page_; }
  // Clones of the stretch that is shown, from left to right.
  std::vector<clone_number> clones_in_stretch() const;

protected:
  void draw_anew() override;
  axis_stretch axis_under(QPointF at) const override;
  void paint_over(QPainter &painter) override;
  bool event(QEvent *event) override;

private:
  void select_at(QPointF at, bool adds);
  void hover_at(QPointF at);
  QRect area_of(clone_number clone) const;

  selection_model &selection_;
  contig_values values_;
  map_page page_;
  QString text_;
  clone_number hovered_ = 0;
};

} // namespace orb
