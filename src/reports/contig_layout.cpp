#include "reports/contig_layout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <unordered_map>

#include "drawing/interval_rows.h"
#include "frame/numbers.h"

namespace orb {

namespace {

// Pixels.
constexpr float margin_left = 58, margin_right = 26, margin_top = 20, margin_bottom = 18;
constexpr float depth_height = depth_curve_height, ticks_height = 17, between_lines = 24, marker_row = 11,
                marker_size = 9;
constexpr float tick_size = 9, least_tick_distance = 80, text_gap = 3;
constexpr int most_marker_rows = 3;

// Heights of bars and names. Bars stand on a grid of units. Small contigs have room for the names of buried clones.
struct map_style {
  float unit;
  std::int32_t bar_units, thin_units;
  float bar, thin, name_size, thin_name_size; // a size of 0: no names
};
constexpr map_style roomy{6, 3, 2, 15, 10, 10, 8}, dense{4, 3, 1, 11, 3, 9, 0};

// A clone with those that are buried in it.
struct family {
  std::int32_t head = 0; // bar
  std::vector<std::int32_t> buried;
  std::int32_t left = 0, right = 0; // of all
};

class contig_layouter {
public:
  contig_layouter(const contig_values &values, const map_format &format, const text_measure &text_width);
  std::vector<map_page> lay_out();
  map_page stretch(double from, double to);

private:
  bool is_thin(std::size_t i) const { return holder_[i] >= 0; }
  bool fits_one_page(const std::vector<map_page> &pages) const {
    return pages.size() == 1 && pages[0].size.height <= format_.page_height;
  }
  void find_holders();
  void find_families();
  std::int32_t units_of(std::size_t i) const { return is_thin(i) ? style_.thin_units : style_.bar_units; }
  std::int32_t pack(const std::vector<std::int32_t> &bars, std::int32_t first_unit);
  void pack_families(std::int32_t first_unit);
  void place_bars();
  double scale_for_names(bool of_path, double share) const;
  int lines_wanted() const;
  std::vector<map_page> in_style(const map_style &style);
  axis_line line_of(const axis_stretch &axis) const;
  float put_markers(axis_line &line) const;
  void put_pieces(axis_line &line) const;
  void put_names(axis_line &line) const;
  void put_name(axis_line &line, const bar_piece &piece, float end) const;
  void put_ticks(axis_line &line) const;
  bar_kind kind_of(std::size_t i) const;
  void put_head(map_page &page) const;
  void put_legend(map_page &page, float &y) const;
  void start_page(std::vector<map_page> &pages, float &y) const;

  const contig_values &values_;
  const map_format &format_;
  const text_measure &text_width_;
  map_style style_ = roomy;
  std::vector<float> name_width_;    // at size 1
  std::vector<std::int32_t> holder_; // bar that a thin one lies under; -1: a bar of full height
  std::vector<family> families_;     // of clones that aren't on the path, by their left ends
  std::vector<std::int32_t> path_, under_path_;
  std::vector<std::int32_t> unit_; // the topmost one of each bar, from 0
  std::int32_t n_units_ = 0;
  std::vector<depth_step> depth_;
  std::int32_t largest_depth_ = 0;
  double first_ = 0, length_ = 1;
};

contig_layouter::contig_layouter(const contig_values &values, const map_format &format, const text_measure &text_width)
    : values_(values), format_(format), text_width_(text_width) {
  std::vector<std::int32_t> left, right;
  for (const contig_bar &bar : values.bars) {
    left.push_back(bar.left);
    right.push_back(bar.right);
    name_width_.push_back(text_width(bar.name, 10) / 10);
  }
  depth_ = depth_of(left, right);
  largest_depth_ = largest_depth(depth_);
  first_ = depth_.front().from;
  length_ = depth_.back().from - first_;
  find_holders();
  find_families();
}

// ---- rows ----------------------------------------------------------------------------------------------------------

void contig_layouter::find_holders() {
  std::unordered_map<clone_number, std::int32_t> full; // bars of full height
  const auto may_be_thin = [this](std::size_t i) {
    return values_.bars[i].buried_in > 0 && values_.bars[i].place_on_path == 0;
  };
  for (std::size_t i = 0; i < values_.bars.size(); ++i)
    if (!may_be_thin(i))
      full.emplace(values_.bars[i].clone, static_cast<std::int32_t>(i));
  holder_.assign(values_.bars.size(), -1);
  for (std::size_t i = 0; i < values_.bars.size(); ++i)
    if (const auto found = full.find(values_.bars[i].buried_in); may_be_thin(i) && found != full.end())
      holder_[i] = found->second;
}

void contig_layouter::find_families() {
  const auto n = static_cast<std::int32_t>(values_.bars.size());
  std::vector<std::int32_t> family_of(values_.bars.size(), -1);
  for (std::int32_t i = 0; i < n; ++i) {
    const contig_bar &bar = values_.bars[static_cast<std::size_t>(i)];
    if (is_thin(static_cast<std::size_t>(i)))
      continue;
    if (bar.place_on_path > 0) {
      path_.push_back(i);
      continue;
    }
    family_of[static_cast<std::size_t>(i)] = static_cast<std::int32_t>(families_.size());
    families_.push_back({i, {}, bar.left, bar.right});
  }
  for (std::int32_t i = 0; i < n; ++i) {
    if (!is_thin(static_cast<std::size_t>(i)))
      continue;
    const std::int32_t of = family_of[static_cast<std::size_t>(holder_[static_cast<std::size_t>(i)])];
    if (of < 0) {
      under_path_.push_back(i);
      continue;
    }
    const contig_bar &bar = values_.bars[static_cast<std::size_t>(i)];
    family &whole = families_[static_cast<std::size_t>(of)];
    whole.buried.push_back(i);
    whole.left = std::min(whole.left, bar.left);
    whole.right = std::max(whole.right, bar.right);
  }
  std::stable_sort(families_.begin(), families_.end(),
                   [](const family &a, const family &b) { return a.left < b.left; });
}

// Puts bars of one height into rows; the first unit below them.
std::int32_t contig_layouter::pack(const std::vector<std::int32_t> &bars, std::int32_t first_unit) {
  std::vector<std::int32_t> left, right;
  for (const std::int32_t i : bars) {
    left.push_back(values_.bars[static_cast<std::size_t>(i)].left);
    right.push_back(values_.bars[static_cast<std::size_t>(i)].right);
  }
  const std::vector<std::int32_t> rows = rows_of_intervals(left, right);
  std::int32_t end = first_unit;
  for (std::size_t k = 0; k < bars.size(); ++k) {
    const auto i = static_cast<std::size_t>(bars[k]);
    unit_[i] = first_unit + (rows[k] - 1) * units_of(i);
    end = std::max(end, unit_[i] + units_of(i));
  }
  return end;
}

// Each family as one piece where it finds room, as high as can be; clones without buried ones so take the fewest rows.
void contig_layouter::pack_families(std::int32_t first_unit) {
  std::vector<std::int32_t> taken_up_to; // by unit: the right end of what stands there
  for (const family &whole : families_) {
    const std::int32_t under = pack(whole.buried, style_.bar_units); // the head at unit 0
    std::size_t at = 0, n_free = 0, end = 0;
    for (; n_free < static_cast<std::size_t>(under); ++end) {
      if (end == taken_up_to.size())
        taken_up_to.push_back(std::numeric_limits<std::int32_t>::min());
      n_free = taken_up_to[end] < whole.left ? n_free + 1 : 0;
      at = end + 1 - n_free;
    }
    for (std::size_t unit = at; unit < end; ++unit)
      taken_up_to[unit] = whole.right;
    const auto top = first_unit + static_cast<std::int32_t>(at);
    unit_[static_cast<std::size_t>(whole.head)] = top;
    for (const std::int32_t i : whole.buried)
      unit_[static_cast<std::size_t>(i)] += top;
  }
  n_units_ = first_unit + static_cast<std::int32_t>(taken_up_to.size());
}

void contig_layouter::place_bars() {
  unit_.assign(values_.bars.size(), 0);
  pack_families(pack(under_path_, pack(path_, 0)));
}

bar_kind contig_layouter::kind_of(std::size_t i) const {
  const contig_bar &bar = values_.bars[i];
  return bar.is_Q                ? bar_kind::Q
         : bar.is_far            ? bar_kind::far
         : bar.place_on_path > 0 ? bar_kind::path
         : is_thin(i)            ? bar_kind::buried
                                 : bar_kind::plain;
}

// ---- one line of the axis ------------------------------------------------------------------------------------------

// Pixels a band at which the names of this share of the bars find room in them.
double contig_layouter::scale_for_names(bool of_path, double share) const {
  std::vector<double> wanted;
  for (std::size_t i = 0; i < values_.bars.size(); ++i) {
    const contig_bar &bar = values_.bars[i];
    if (!is_thin(i) && (bar.place_on_path > 0) == of_path)
      wanted.push_back((name_width_[i] * style_.name_size + 2 * text_gap + 1) /
                       (static_cast<double>(bar.right) - bar.left + 1));
  }
  if (wanted.empty())
    return 0;
  const auto last = static_cast<std::ptrdiff_t>(share * static_cast<double>(wanted.size() - 1));
  std::nth_element(wanted.begin(), wanted.begin() + last, wanted.end());
  return wanted[static_cast<std::size_t>(last)];
}

// So many that most names can be read; but a contig of a few clones that lie far apart has few lines.
int contig_layouter::lines_wanted() const {
  constexpr int fewest_clones_in_line = 4, most = 1000;
  const double scale = std::max(scale_for_names(true, 0.85), scale_for_names(false, 0.5));
  const double lines = std::ceil(length_ * scale / (format_.width - margin_left - margin_right));
  const int largest = std::min(most, static_cast<int>(values_.bars.size()) / fewest_clones_in_line + 1);
  return static_cast<int>(std::clamp(lines, 1.0, static_cast<double>(largest)));
}

// The height that the names take; names that find no room are left out, their lines stay.
float contig_layouter::put_markers(axis_line &line) const {
  std::array<float, most_marker_rows> ends{}; // of the last name in each row
  const float right = format_.width - margin_right;
  int n_rows = 0;
  for (const contig_marker &marker : values_.markers) {
    if (marker.at < line.axis.from || marker.at >= line.axis.to)
      continue;
    const float x = line.axis.x_of(marker.at), width = text_width_(marker.name, marker_size);
    line.markers.push_back(x);
    const float left = std::max(margin_left, std::min(x - width / 2, right - width));
    const auto row = std::find_if(ends.begin(), ends.end(), [&](float end) { return end + text_gap <= left; });
    if (row == ends.end() || left + width > right + 0.5f)
      continue;
    *row = left + width;
    const auto r = static_cast<int>(row - ends.begin());
    n_rows = std::max(n_rows, r + 1);
    line.texts.push_back({{left, static_cast<float>(-r) * marker_row},
                          marker.name,
                          marker_size,
                          width,
                          map_colour::marker,
                          text_anchor::left});
  }
  const float height = static_cast<float>(n_rows) * marker_row;
  for (placed_text &text : line.texts) // the first row lies lowest, next to the axis
    text.at.y += height - 2;
  return height;
}

// Units without a bar on this line take no room.
void contig_layouter::put_pieces(axis_line &line) const {
  std::vector<float> y(static_cast<std::size_t>(n_units_) + 1, 0);
  for (std::size_t i = 0; i < values_.bars.size(); ++i) {
    const contig_bar &bar = values_.bars[i];
    if (bar.left >= line.axis.to || bar.right + 1.0 <= line.axis.from)
      continue;
    bar_piece &piece = line.pieces.emplace_back();
    piece.bar = static_cast<std::int32_t>(i);
    piece.clone = bar.clone;
    piece.kind = kind_of(i);
    piece.goes_on_left = bar.left < line.axis.from;
    piece.goes_on_right = bar.right + 1.0 > line.axis.to;
    const float left = line.axis.x_of(std::max<double>(bar.left, line.axis.from));
    const float right = line.axis.x_of(std::min(bar.right + 1.0, line.axis.to));
    // a pixel stays free between neighbours
    piece.box = {{left, 0}, {std::max(1.f, right - left - (piece.goes_on_right ? 0.f : 1.f)), 0}};
    for (std::int32_t unit = unit_[i]; unit < unit_[i] + units_of(i); ++unit)
      y[static_cast<std::size_t>(unit) + 1] = style_.unit;
  }
  y[0] = line.bottom;
  for (std::size_t unit = 1; unit < y.size(); ++unit)
    y[unit] += y[unit - 1];
  line.bottom = y.back();
  for (bar_piece &piece : line.pieces) {
    const auto i = static_cast<std::size_t>(piece.bar);
    piece.box.corner.y = y[static_cast<std::size_t>(unit_[i])];
    piece.box.size.height = is_thin(i) ? style_.thin : style_.bar;
  }
}

// Within the bar when it is wide enough, else behind it, up to the next one.
void contig_layouter::put_names(axis_line &line) const {
  std::vector<std::size_t> from_right(line.pieces.size());
  std::iota(from_right.begin(), from_right.end(), std::size_t{0});
  std::stable_sort(from_right.begin(), from_right.end(), [&line](std::size_t a, std::size_t b) {
    return line.pieces[a].box.corner.x > line.pieces[b].box.corner.x;
  });
  std::vector<float> next(static_cast<std::size_t>(n_units_), format_.width - margin_right); // by unit
  for (const std::size_t k : from_right) {
    const bar_piece &piece = line.pieces[k];
    const auto i = static_cast<std::size_t>(piece.bar);
    float end = format_.width;
    for (std::int32_t unit = unit_[i]; unit < unit_[i] + units_of(i); ++unit) {
      end = std::min(end, next[static_cast<std::size_t>(unit)]);
      next[static_cast<std::size_t>(unit)] = piece.box.corner.x;
    }
    put_name(line, piece, end);
  }
}

// `end`: where the next bar begins.
void contig_layouter::put_name(axis_line &line, const bar_piece &piece, float end) const {
  const auto i = static_cast<std::size_t>(piece.bar);
  const float size = is_thin(i) ? style_.thin_name_size : style_.name_size, width = name_width_[i] * size;
  if (size <= 0 || width <= 0)
    return;
  const float y = piece.box.corner.y + piece.box.size.height / 2 + size * 0.36f;
  const float left = piece.box.corner.x, right = left + piece.box.size.width;
  placed_text text{{(left + right - width) / 2, y}, values_.bars[i].name, size, width,
                   look_of(piece.kind).text,        text_anchor::left};
  if (width + 2 * text_gap > piece.box.size.width) {
    if (piece.goes_on_right || right + width + 2 * text_gap > end)
      return;
    text.at.x = right + text_gap;
    text.colour = map_colour::text;
  }
  line.texts.push_back(std::move(text));
}

void contig_layouter::put_ticks(axis_line &line) const {
  const std::int64_t step = axis_step(least_tick_distance / line.axis.pixels_per_band);
  const float y = line.axis_y + 4 + tick_size;
  line.texts.push_back(
      {{margin_left - 5, line.axis_y + 3}, "bands", tick_size, 0, map_colour::faint_text, text_anchor::right});
  line.texts.back().width = text_width_("bands", tick_size);
  const auto first = static_cast<std::int64_t>(std::ceil(line.axis.from / static_cast<double>(step)));
  for (std::int64_t at = first * step; static_cast<double>(at) < line.axis.to; at += step) {
    const float x = line.axis.x_of(static_cast<double>(at));
    line.ticks.push_back(x);
    const std::string number = number_text_thousands(at);
    line.texts.push_back(
        {{x, y}, number, tick_size, text_width_(number, tick_size), map_colour::faint_text, text_anchor::middle});
  }
}

// From y 0 on.
axis_line contig_layouter::line_of(const axis_stretch &axis) const {
  axis_line line;
  line.axis = axis;
  line.axis_y = put_markers(line) + depth_height + 2;
  line.depth = depth_outline(depth_, axis, line.axis_y, depth_height / static_cast<float>(largest_depth_));
  line.texts.push_back({{margin_left - 5, line.axis_y - depth_height + 7},
                        std::to_string(largest_depth_),
                        tick_size,
                        text_width_(std::to_string(largest_depth_), tick_size),
                        map_colour::faint_text,
                        text_anchor::right});
  put_ticks(line);
  line.bottom = line.axis_y + ticks_height + 3;
  put_pieces(line);
  put_names(line);
  return line;
}

void move_down(axis_line &line, float by) {
  for (float *y : {&line.top, &line.bottom, &line.axis_y})
    *y += by;
  for (bar_piece &piece : line.pieces)
    piece.box.corner.y += by;
  for (placed_text &text : line.texts)
    text.at.y += by;
  for (surface_point &point : line.depth)
    point.y += by;
}

// ---- pages ---------------------------------------------------------------------------------------------------------

void contig_layouter::put_legend(map_page &page, float &y) const {
  constexpr float size = 10, row_height = 17, between = 18;
  const surface_size swatch{16, 10};
  float x = margin_left;
  y += row_height;
  const auto add = [&](const std::string &text, const surface_look &look) {
    const float width = text_width_(text, size);
    if (x > margin_left && x + swatch.width + 5 + width > format_.width - margin_right) {
      x = margin_left;
      y += row_height;
    }
    page.legend.push_back({{{x + swatch.width + 5, y}, text, size, width, map_colour::text, text_anchor::left},
                           {{x, y - 9}, swatch},
                           look});
    x += swatch.width + 5 + width + between;
  };
  std::array<std::int64_t, n_bar_kinds> n{};
  for (std::size_t i = 0; i < values_.bars.size(); ++i) {
    const bar_kind kind = kind_of(i);
    ++n[static_cast<std::size_t>(kind)];
    if (kind != bar_kind::path && values_.bars[i].place_on_path > 0) // and far, or a Q-clone
      ++n[static_cast<std::size_t>(bar_kind::path)];
  }
  for (std::size_t kind = 0; kind < n_bar_kinds; ++kind)
    if (n[kind] > 0)
      add(look_of(static_cast<bar_kind>(kind)).caption + (": " + number_text_thousands(n[kind])),
          look_of(static_cast<bar_kind>(kind)).shape);
  if (!values_.markers.empty())
    add("markers: " + number_text_thousands(static_cast<std::int64_t>(values_.markers.size())),
        {map_colour::marker, 0, true, false});
  add("clones over each other: at most " + number_text_thousands(largest_depth_),
      {map_colour::depth, map_colour::depth_line, true, true});
}

void contig_layouter::put_head(map_page &page) const {
  constexpr float size = 18;
  const std::string title = "Contig " + values_.name + ": " +
                            number_text_thousands(static_cast<std::int64_t>(values_.bars.size())) + " clones, " +
                            number_text_thousands(static_cast<std::int64_t>(length_)) + " bands";
  page.texts.push_back(
      {{margin_left, margin_top + 12}, title, size, text_width_(title, size), map_colour::text, text_anchor::left});
}

void contig_layouter::start_page(std::vector<map_page> &pages, float &y) const {
  map_page &page = pages.emplace_back();
  page.size.width = format_.width;
  y = margin_top + 12;
  if (pages.size() == 1) {
    put_head(page);
    y += 6;
    put_legend(page, y);
  } else {
    const std::string title = "Contig " + values_.name + ", page " + std::to_string(pages.size());
    page.texts.push_back({{margin_left, y}, title, 12, text_width_(title, 12), map_colour::text, text_anchor::left});
  }
  y += between_lines;
}

std::vector<map_page> contig_layouter::in_style(const map_style &style) {
  style_ = style;
  std::vector<map_page> pages;
  place_bars();
  const int n = lines_wanted();
  const double bands = length_ / n;
  float y = 0;
  start_page(pages, y);
  for (int i = 0; i < n; ++i) {
    const axis_stretch axis{first_ + i * bands, i + 1 < n ? first_ + (i + 1) * bands : first_ + length_, margin_left,
                            (format_.width - margin_left - margin_right) / bands};
    axis_line line = line_of(axis);
    if (format_.has_pages && !pages.back().lines.empty() && y + line.bottom + margin_bottom > format_.page_height)
      start_page(pages, y);
    move_down(line, y);
    y = line.bottom + between_lines;
    pages.back().size.height = line.bottom + margin_bottom;
    pages.back().lines.push_back(std::move(line));
  }
  return pages;
}

std::vector<map_page> contig_layouter::lay_out() {
  std::vector<map_page> pages = in_style(roomy);
  if (!fits_one_page(pages))
    pages = in_style(dense);
  for (map_page &page : pages) {
    page.size.height = std::ceil(page.size.height);
    if (format_.has_pages)
      page.size.height = std::max(page.size.height, format_.page_height);
  }
  return pages;
}

map_page contig_layouter::stretch(double from, double to) {
  const double bands = std::max(to - from, 1.0);
  std::vector<map_page> pages;
  float y = 0;
  place_bars();
  start_page(pages, y);
  axis_line line = line_of({from, from + bands, margin_left, (format_.width - margin_left - margin_right) / bands});
  move_down(line, y);
  pages.back().size.height = std::ceil(line.bottom + margin_bottom);
  pages.back().lines.push_back(std::move(line));
  return std::move(pages.back());
}

} // namespace

map_page lay_out_stretch(const contig_values &values, const map_format &format, double from, double to,
                         const text_measure &text_width) {
  return contig_layouter(values, format, text_width).stretch(from, to);
}

clone_number clone_at(const map_page &page, surface_point at) {
  for (const axis_line &line : page.lines)
    for (const bar_piece &piece : line.pieces) {
      const surface_box &box = piece.box;
      if (at.x >= box.corner.x && at.x <= box.corner.x + box.size.width && at.y >= box.corner.y &&
          at.y <= box.corner.y + box.size.height)
        return piece.clone;
    }
  return 0;
}

std::vector<map_page> lay_out_contig(const contig_values &values, const map_format &format,
                                     const text_measure &text_width) {
  return contig_layouter(values, format, text_width).lay_out();
}

} // namespace orb
