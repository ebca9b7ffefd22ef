#include "reports/overview_picture.h"

#include <algorithm>
#include <cmath>

#include "frame/numbers.h"

namespace orb {

overview_values overview_values_of(const contig_map &map) {
  overview_values values;
  values.n_clones_alone = static_cast<std::int32_t>(map.alone.size());
  std::vector<std::int32_t> left, right;
  for (std::size_t c = 1; c < map.contigs.size(); ++c) {
    const mapped_contig &from = map.contigs[c];
    const auto n_clones = static_cast<std::int32_t>(from.clones.size());
    if (!from.is_placed) {
      ++values.n_without_places;
      values.n_clones_without_places += n_clones;
      continue;
    }
    overview_contig &contig = values.contigs.emplace_back();
    contig.name = from.name;
    contig.n_clones = n_clones;
    left.clear();
    right.clear();
    for (const clone_number clone : from.clones) {
      const mapped_clone &place = map.clones[static_cast<std::size_t>(clone)];
      left.push_back(static_cast<std::int32_t>(place.left));
      right.push_back(static_cast<std::int32_t>(place.right));
      contig.n_on_path += place.place_on_path > 0 ? 1 : 0;
    }
    contig.depth = depth_of(left, right);
  }
  std::stable_sort(values.contigs.begin(), values.contigs.end(),
                   [](const overview_contig &a, const overview_contig &b) { return a.length() > b.length(); });
  return values;
}

namespace {

// Pixels.
constexpr float margin = 26, caption_size = 10, caption_height = 14, depth_height = 24, bar_height = 6,
                row_height = caption_height + depth_height + bar_height + 14, between_cells = 18, head_height = 88;

class overview_layouter {
public:
  overview_layouter(const overview_values &values, const map_format &format, const text_measure &text_width)
      : values_(values), format_(format), text_width_(text_width) {
    for (const overview_contig &contig : values.contigs) {
      longest_ = std::max(longest_, contig.length());
      deepest_ = std::max(deepest_, largest_depth(contig.depth));
    }
    pixels_per_band_ = (format.width - 2 * margin) / longest_;
  }
  std::vector<overview_page> lay_out();

private:
  placed_text text(float x, float y, std::string words, float size, colour_value colour = map_colour::text) const {
    const float width = text_width_(words, size);
    return {{x, y}, std::move(words), size, width, colour, text_anchor::left};
  }
  void start_page();
  void put_foot();
  void put_head(overview_page &page);
  overview_cell cell_of(std::size_t contig) const;
  void put_cell(overview_cell cell);

  const overview_values &values_;
  const map_format &format_;
  const text_measure &text_width_;
  double longest_ = 1;
  std::int32_t deepest_ = 1;
  double pixels_per_band_ = 1;
  std::vector<overview_page> pages_;
  float x_ = 0, y_ = 0; // where the next cell goes
};

void overview_layouter::put_head(overview_page &page) {
  const std::size_t n = pages_.size();
  std::int64_t clones = 0;
  for (const overview_contig &contig : values_.contigs)
    clones += contig.n_clones;
  std::string title = number_text_thousands(static_cast<std::int64_t>(values_.contigs.size())) + " contigs with " +
                      number_text_thousands(clones) + " clones, longest first";
  if (n > 1)
    title += ", page " + std::to_string(n);
  page.texts.push_back(text(margin, margin + 8, title, n > 1 ? 12.f : 18.f));
  page.texts.push_back(text(margin, margin + 26,
                            "Blue bar: the contig, to scale; above it how many clones cover each place (at most " +
                                number_text_thousands(deepest_) + ")",
                            caption_size, map_colour::faint_text));
  page.axis_y = head_height - 14;
  const std::int64_t step = axis_step(80 / pixels_per_band_);
  for (std::int64_t at = 0; static_cast<double>(at) <= longest_; at += step) {
    const auto x = static_cast<float>(margin + static_cast<double>(at) * pixels_per_band_);
    page.ticks.push_back(x);
    std::string number = at == 0 ? "0 bands" : number_text_thousands(at);
    placed_text label = text(x, page.axis_y - 3, std::move(number), 9, map_colour::faint_text);
    label.at.x = std::min(at == 0 ? x : x - label.width / 2, format_.width - label.width);
    page.texts.push_back(std::move(label));
  }
}

void overview_layouter::start_page() {
  overview_page &page = pages_.emplace_back();
  page.size.width = format_.width;
  put_head(page);
  x_ = margin;
  y_ = head_height;
}

// With its corner at 0, 0.
overview_cell overview_layouter::cell_of(std::size_t c) const {
  const overview_contig &contig = values_.contigs[c];
  overview_cell cell;
  cell.contig = static_cast<std::int32_t>(c);
  cell.name = text(0, caption_size + 1, contig.name, caption_size);
  const std::string counts = number_text_thousands(contig.n_clones) + " clones, " +
                             number_text_thousands(static_cast<std::int64_t>(contig.length())) + " bands";
  cell.counts = text(cell.name.width + 8, caption_size + 1, counts, caption_size - 1, map_colour::faint_text);
  const axis_stretch axis{static_cast<double>(contig.depth.front().from), static_cast<double>(contig.depth.back().from),
                          0, pixels_per_band_};
  const float base = caption_height + depth_height;
  cell.depth = depth_outline(contig.depth, axis, base, depth_height / static_cast<float>(deepest_));
  cell.bar = {{0, base}, {std::max(1.f, axis.x_of(axis.to)), bar_height}};
  return cell;
}

// Behind the cell before, else on the next row, else on the next page.
void overview_layouter::put_cell(overview_cell cell) {
  const float width = std::max(cell.bar.size.width, cell.counts.at.x + cell.counts.width);
  if (x_ > margin && x_ + width > format_.width - margin + 0.5f) {
    x_ = margin;
    y_ += row_height;
  }
  if (format_.has_pages && y_ > head_height && y_ + 2 * row_height > format_.page_height)
    start_page();
  cell.bar.corner.x += x_;
  cell.bar.corner.y += y_;
  for (surface_point &point : cell.depth)
    point = {point.x + x_, point.y + y_};
  for (placed_text *caption : {&cell.name, &cell.counts})
    caption->at = {caption->at.x + x_, caption->at.y + y_};
  x_ += width + between_cells;
  pages_.back().cells.push_back(std::move(cell));
}

void overview_layouter::put_foot() {
  std::string words;
  if (values_.n_without_places > 0)
    words = "Without coordinates, and not drawn: " + number_text_thousands(values_.n_without_places) +
            " contigs and heaps with " + number_text_thousands(values_.n_clones_without_places) + " clones. ";
  words += "Clones alone: " + number_text_thousands(values_.n_clones_alone) + ".";
  y_ += (x_ > margin ? row_height : 0) + 14;
  pages_.back().texts.push_back(text(margin, y_, words, caption_size));
}

std::vector<overview_page> overview_layouter::lay_out() {
  start_page();
  for (std::size_t c = 0; c < values_.contigs.size(); ++c)
    put_cell(cell_of(c));
  put_foot();
  for (overview_page &page : pages_)
    page.size.height = format_.has_pages ? format_.page_height : std::ceil(y_ + 16);
  return std::move(pages_);
}

} // namespace

std::vector<overview_page> lay_out_overview(const overview_values &values, const map_format &format,
                                            const text_measure &text_width) {
  return overview_layouter(values, format, text_width).lay_out();
}

void draw_overview_page(const overview_page &page, const drawing_surface &surface) {
  surface.clear(map_colour::paper);
  std::vector<surface_line> grid, axis;
  for (const float x : page.ticks)
    axis.push_back({{x, page.axis_y}, {x, page.axis_y + 5}});
  if (!page.ticks.empty())
    axis.push_back({{page.ticks.front(), page.axis_y}, {page.size.width - margin, page.axis_y}});
  surface.lines({map_colour::axis, 1, line_pattern::solid}, axis);
  std::vector<surface_box> bars;
  std::vector<placed_text> texts = page.texts;
  for (const overview_cell &cell : page.cells) {
    draw_depth(surface, cell.depth);
    bars.push_back(cell.bar);
    texts.push_back(cell.name);
    texts.push_back(cell.counts);
  }
  surface.boxes({map_colour::rgb(0x0072B2), 0, true, false}, bars);
  draw_texts(surface, texts);
}

} // namespace orb
