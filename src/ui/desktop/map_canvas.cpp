#include "ui/desktop/map_canvas.h"

#include <QHelpEvent>
#include <QToolTip>
#include <algorithm>

#include "ui/desktop/qt_text.h"

namespace orb {

map_canvas::map_canvas(selection_model &selection, QWidget *parent) : axis_canvas(parent), selection_(selection) {
  setObjectName("map");
  setAccessibleName(tr("Map of the contig"));
  connect(this, &axis_canvas::clicked, this, &map_canvas::select_at);
  connect(this, &axis_canvas::hovered, this, &map_canvas::hover_at);
  connect(&selection_, &selection_model::changed, this, [this] { update(); });
}

void map_canvas::values_set(contig_values values) {
  values_ = std::move(values);
  text_.clear();
  hovered_ = 0;
  std::int32_t first = values_.bars.front().left, last = values_.bars.front().right;
  for (const contig_bar &bar : values_.bars) {
    first = std::min(first, bar.left);
    last = std::max(last, bar.right);
  }
  ends_set(first, last + 1.0);
  draw_anew();
}

void map_canvas::text_set(const QString &text) {
  values_ = {};
  page_ = {};
  text_ = text;
  hovered_ = 0;
  height_set(0);
  draw_anew();
}

void map_canvas::draw_anew() {
  const drawing_surface on = surface();
  if (values_.bars.empty()) {
    on.clear(map_colour::paper);
    update();
    return;
  }
  const map_format format{static_cast<float>(width()), static_cast<float>(parentWidget()->height()), false};
  page_ = shows_all() ? lay_out_contig(values_, format, on.text_width).front()
                      : lay_out_stretch(values_, format, from(), to(), on.text_width);
  height_set(page_.size.height);
  draw_map_page(page_, on);
  update();
}

// The line of the axis that is nearest above.
axis_stretch map_canvas::axis_under(QPointF at) const {
  if (page_.lines.empty())
    return {};
  const axis_line *found = &page_.lines.front();
  for (const axis_line &line : page_.lines)
    if (line.top <= at.y())
      found = &line;
  return found->axis;
}

void map_canvas::paint_over(QPainter &painter) {
  if (!text_.isEmpty()) {
    painter.setPen(qt_colour(map_colour::text));
    painter.drawText(rect().adjusted(20, 20, -20, -20), Qt::AlignTop | Qt::AlignLeft | Qt::TextWordWrap, text_);
  }
  const QPen selected(qt_colour(map_colour::rgb(0xD55E00)), 2.5), under_mouse(QColor(0, 0, 0), 1.5);
  painter.setBrush(Qt::NoBrush);
  for (const axis_line &line : page_.lines)
    for (const bar_piece &piece : line.pieces) {
      const bool is_selected = selection_.contains(piece.clone);
      if (!is_selected && piece.clone != hovered_)
        continue;
      painter.setPen(is_selected ? selected : under_mouse);
      const surface_box &box = piece.box;
      painter.drawRect(QRectF(box.corner.x - 1, box.corner.y - 1, box.size.width + 2, box.size.height + 2));
    }
}

QRect map_canvas::area_of(clone_number clone) const {
  QRectF area;
  for (const axis_line &line : page_.lines)
    for (const bar_piece &piece : line.pieces)
      if (piece.clone == clone)
        area |= QRectF(piece.box.corner.x, piece.box.corner.y, piece.box.size.width, piece.box.size.height);
  return area.toAlignedRect().adjusted(-4, -4, 4, 4);
}

void map_canvas::hover_at(QPointF at) {
  const clone_number clone = clone_at(page_, {static_cast<float>(at.x()), static_cast<float>(at.y())});
  if (clone == hovered_)
    return;
  for (const clone_number changed : {hovered_, clone})
    if (changed > 0)
      update(area_of(changed));
  hovered_ = clone;
}

void map_canvas::select_at(QPointF at, bool adds) {
  const clone_number clone = clone_at(page_, {static_cast<float>(at.x()), static_cast<float>(at.y())});
  std::vector<std::int32_t> clones = adds ? selection_.clones() : std::vector<std::int32_t>();
  if (clone > 0) {
    const auto known = std::find(clones.begin(), clones.end(), clone);
    if (known != clones.end())
      clones.erase(known);
    else
      clones.push_back(clone);
  }
  if (clone > 0 || !adds)
    selection_.set(std::move(clones), this);
}

std::vector<clone_number> map_canvas::clones_in_stretch() const {
  std::vector<clone_number> clones;
  for (const contig_bar &bar : values_.bars)
    if (bar.left < to() && bar.right + 1.0 > from())
      clones.push_back(bar.clone);
  return clones;
}

bool map_canvas::event(QEvent *event) {
  if (event->type() != QEvent::ToolTip)
    return axis_canvas::event(event);
  const auto *help = static_cast<QHelpEvent *>(event);
  const clone_number clone =
      clone_at(page_, {static_cast<float>(help->pos().x()), static_cast<float>(help->pos().y())});
  const auto bar = std::find_if(values_.bars.begin(), values_.bars.end(),
                                [clone](const contig_bar &known) { return known.clone == clone; });
  if (clone < 1 || bar == values_.bars.end()) {
    QToolTip::hideText();
    return true;
  }
  QString hint = qt_text(bar->name) + tr("\nbands %1 to %2").arg(bar->left).arg(bar->right);
  if (bar->place_on_path > 0)
    hint += tr("\nclone %1 of the tiling path").arg(bar->place_on_path);
  const auto holder = std::find_if(values_.bars.begin(), values_.bars.end(),
                                   [&bar](const contig_bar &known) { return known.clone == bar->buried_in; });
  if (holder != values_.bars.end())
    hint += tr("\nburied in ") + qt_text(holder->name);
  if (bar->is_Q)
    hint += tr("\nQ-clone");
  if (bar->is_far)
    hint += tr("\nfar from the tiling path");
  QToolTip::showText(help->globalPos(), hint, this);
  return true;
}

} // namespace orb
