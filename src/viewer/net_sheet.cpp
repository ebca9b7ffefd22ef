#include "viewer/net_sheet.h"

namespace orb {

namespace {

constexpr float margin = 14, title_size = 14, legend_size = 11, radius = 5;
constexpr colour_value dark = 0x333333;

void draw_legend(const std::vector<sheet_legend_entry> &legend, const drawing_surface &surface) {
  constexpr float between = 22;
  const surface_size size = surface.size();
  float x = margin, y = size.height - margin;
  std::vector<surface_text> texts;
  for (const sheet_legend_entry &entry : legend) {
    const float width = 2 * radius + 6 + surface.text_width(entry.text, legend_size);
    if (x > margin && x + width > size.width - margin) {
      x = margin;
      y -= legend_size + 6;
    }
    const surface_box dot{{x + radius, y - radius + 1}, {radius, radius}};
    surface.circles({entry.fill, dark}, std::span(&dot, 1));
    texts.push_back({{x + 2 * radius + 6, y}, entry.text, legend_size, dark, text_anchor::left});
    x += width + between;
  }
  surface.texts(texts);
}

} // namespace

paint_faults draw_net_sheet(const class_net_elng &net, const net_sheet &sheet, const drawing_surface &surface) {
  const surface_size size = surface.size();
  const float above = sheet.title.empty() ? 0 : title_size + margin, below = sheet.legend.empty() ? 0 : 2 * margin;
  view_geometry geometry;
  geometry.fit({size.width, std::max(size.height - above - below, 1.0f)}, net.box());
  geometry.shift(0, above);
  // one scale both ways, so that a net that lies flat isn't blown up
  const float smaller = std::min(geometry.scale_x, geometry.scale_y);
  const float spare_x = (geometry.right - geometry.left) * (1 - smaller / geometry.scale_x),
              spare_y = (geometry.bottom - geometry.top) * (1 - smaller / geometry.scale_y);
  geometry.left += spare_x / 2;
  geometry.right -= spare_x / 2;
  geometry.top += spare_y / 2;
  geometry.bottom -= spare_y / 2;
  geometry.box_set(net.box());
  net_painter painter;
  const paint_faults faults = painter.redraw_net(net, geometry, sheet.look, nullptr, surface);
  if (!sheet.title.empty()) {
    const surface_text title{{margin, margin + title_size}, sheet.title, title_size, dark, text_anchor::left};
    surface.texts(std::span(&title, 1));
  }
  if (!sheet.legend.empty())
    draw_legend(sheet.legend, surface);
  return faults;
}

} // namespace orb
