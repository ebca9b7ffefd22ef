// The map of a contig and the sheet of all contigs: what stands where, on random contigs.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "drawing/recording_surface.h"
#include "frame/random_source.h"
#include "reports/contig_layout.h"
#include "reports/overview_picture.h"

namespace {

using namespace orb;

contig_values random_contig(random_source &chance, int n, bool with_buried) {
  contig_values values{"cl_1", {}, {}};
  for (int i = 1; i <= n; ++i) {
    contig_bar bar;
    bar.clone = 10 * i;
    bar.left = chance.number_up_to(5 * n);
    bar.right = bar.left + chance.number_up_to(90) - 1;
    bar.name = std::string(static_cast<std::size_t>(chance.number_up_to(12)), 'N');
    bar.place_on_path = i % 7 == 0 ? i / 7 : 0;
    if (with_buried && i > 3 && i % 3 != 0) // in one that isn't buried
      bar.buried_in = 10 * (chance.number_up_to(i / 3) * 3);
    bar.is_far = i % 11 == 5;
    bar.is_Q = i % 13 == 6;
    values.bars.push_back(bar);
  }
  for (int i = 0; i < n / 10; ++i)
    values.markers.push_back({"m" + std::to_string(i), static_cast<double>(chance.number_up_to(5 * n))});
  return values;
}

struct rectangle {
  float left, top, right, bottom;
};
rectangle of(const bar_piece &piece) {
  const surface_box &box = piece.box;
  return {box.corner.x, box.corner.y, box.corner.x + box.size.width, box.corner.y + box.size.height};
}
rectangle of(const placed_text &text) {
  const float share = text.anchor == text_anchor::left ? 0.f : text.anchor == text_anchor::middle ? 0.5f : 1.f;
  const float left = text.at.x - share * text.width;
  return {left, text.at.y - text.size * 0.7f, left + text.width, text.at.y};
}
bool meet(const rectangle &a, const rectangle &b) {
  return a.left < b.right - 0.01f && b.left < a.right - 0.01f && a.top < b.bottom - 0.01f && b.top < a.bottom - 0.01f;
}
bool holds(const rectangle &outer, const rectangle &inner) {
  return inner.left >= outer.left && inner.right <= outer.right;
}

const text_measure measure = [](std::string_view text, float size) {
  return static_cast<float>(text.size()) * size * 0.6f;
};

void check_line(const axis_line &line, const map_page &page) {
  for (std::size_t i = 0; i < line.pieces.size(); ++i)
    for (std::size_t j = i + 1; j < line.pieces.size(); ++j)
      EXPECT_FALSE(meet(of(line.pieces[i]), of(line.pieces[j])));
  for (std::size_t i = 0; i < line.texts.size(); ++i) {
    const rectangle text = of(line.texts[i]);
    EXPECT_TRUE(text.left >= 0 && text.right <= page.size.width && text.bottom <= page.size.height);
    for (std::size_t j = i + 1; j < line.texts.size(); ++j)
      EXPECT_FALSE(meet(text, of(line.texts[j]))) << line.texts[i].text << " " << line.texts[j].text;
    for (const bar_piece &piece : line.pieces) // within a bar, or off it
      EXPECT_TRUE(!meet(text, of(piece)) || holds(of(piece), text)) << line.texts[i].text;
  }
}

// Bands of each bar that the pieces show, whether buried bars lie beneath their holders, and no overlap anywhere.
void check_pages(const contig_values &values, const std::vector<map_page> &pages) {
  std::map<clone_number, double> bands;
  for (const map_page &page : pages) {
    float above = 0;
    for (const axis_line &line : page.lines) {
      EXPECT_GE(line.top, above);
      EXPECT_LE(line.bottom, page.size.height);
      above = line.bottom;
      std::map<clone_number, float> y;
      for (const bar_piece &piece : line.pieces) {
        const contig_bar &bar = values.bars[static_cast<std::size_t>(piece.bar)];
        EXPECT_EQ(piece.clone, bar.clone);
        bands[bar.clone] += std::min(bar.right + 1.0, line.axis.to) - std::max<double>(bar.left, line.axis.from);
        EXPECT_EQ(piece.goes_on_left, bar.left < line.axis.from);
        EXPECT_EQ(piece.kind == bar_kind::Q, bar.is_Q);
        EXPECT_EQ(piece.kind == bar_kind::far, bar.is_far && !bar.is_Q);
        y[bar.clone] = piece.box.corner.y;
      }
      for (const bar_piece &piece : line.pieces)
        if (piece.kind == bar_kind::buried) {
          const clone_number holder = values.bars[static_cast<std::size_t>(piece.bar)].buried_in;
          EXPECT_TRUE(!y.contains(holder) || y[piece.clone] > y[holder]);
        }
      check_line(line, page);
    }
  }
  for (const contig_bar &bar : values.bars)
    EXPECT_NEAR(bands[bar.clone], bar.right - bar.left + 1.0, 1e-6);
}

TEST(contig_map, shows_every_clone_whole_and_nothing_over_anything_else) {
  random_source chance(11);
  for (int run = 0; run < 60; ++run) {
    const contig_values values = random_contig(chance, 1 + chance.number_up_to(run < 50 ? 60 : 500), run % 3 != 0);
    const map_format format{static_cast<float>(300 + chance.number_up_to(1400)), 700, run % 2 == 0};
    check_pages(values, lay_out_contig(values, format, measure));
  }
}

TEST(contig_map, takes_as_few_rows_as_clones_lie_over_each_other) {
  random_source chance(5);
  for (int run = 0; run < 50; ++run) {
    contig_values values = random_contig(chance, 50, false);
    std::vector<std::int32_t> left[2], right[2]; // of the path, of the others
    for (const contig_bar &bar : values.bars) {
      left[bar.place_on_path > 0].push_back(bar.left);
      right[bar.place_on_path > 0].push_back(bar.right);
    }
    const std::vector<map_page> pages = lay_out_contig(values, {20000, 100, false}, measure); // on one line
    std::map<float, bool> rows; // whether it is of the path
    for (const bar_piece &piece : pages.at(0).lines.at(0).pieces)
      rows[piece.box.corner.y] = values.bars[static_cast<std::size_t>(piece.bar)].place_on_path > 0;
    std::int32_t n[2]{};
    bool path_is_over = false;
    for (const auto &[y, of_path] : rows) {
      ++n[of_path];
      EXPECT_FALSE(of_path && path_is_over); // the path stands in front
      path_is_over = !of_path;
    }
    for (const int of_path : {0, 1})
      EXPECT_EQ(n[of_path], largest_depth(depth_of(left[of_path], right[of_path])));
  }
}

TEST(contig_map, is_drawn_with_its_path_in_colour) {
  random_source chance(2);
  const contig_values values = random_contig(chance, 70, true);
  surface_record record;
  const drawing_surface surface = recording_surface(record);
  std::map<colour_value, std::size_t> boxes;
  std::size_t names = 0;
  for (const map_page &page : lay_out_contig(values, {20000, 9000, true}, surface.text_width)) {
    draw_map_page(page, surface);
    for (const auto &drawn : record.drawn) {
      if (const auto *run = std::get_if<drawn_boxes>(&drawn))
        boxes[run->look.fill] += run->boxes.size();
      const auto *text = std::get_if<drawn_text>(&drawn);
      names += text && text->text.starts_with("N") ? 1 : 0;
    }
  }
  std::map<bar_kind, std::size_t> wanted;
  for (const contig_bar &bar : values.bars)
    ++wanted[bar.is_Q                ? bar_kind::Q
             : bar.is_far            ? bar_kind::far
             : bar.place_on_path > 0 ? bar_kind::path
                                     : bar_kind::plain];
  for (const bar_kind kind : {bar_kind::path, bar_kind::far, bar_kind::Q})
    EXPECT_EQ(boxes[look_of(kind).shape.fill], wanted[kind] + 1); // and one in the legend
  EXPECT_EQ(names, values.bars.size());                           // there is room for all
}

TEST(contig_map, takes_contigs_that_can_hardly_be) {
  contig_values values{"far", {}, {}};
  for (const std::int32_t at : {-1'000'000'000, 0, 999'999'000})
    for (int i = 0; i < 3; ++i)
      values.bars.push_back({static_cast<clone_number>(values.bars.size()) + 1, at, at + i, "", 0, 1, false, false});
  check_pages(values, lay_out_contig(values, {}, measure));
  check_pages({"one", {{1, 5, 5, std::string(500, 'N'), 0, 0, false, false}}, {}},
              lay_out_contig({"one", {{1, 5, 5, std::string(500, 'N'), 0, 0, false, false}}, {}}, {}, measure));
}

TEST(overview, holds_all_contigs_to_scale_longest_first) {
  random_source chance(9);
  for (const bool has_pages : {false, true}) {
    contig_map map;
    for (int c = 1; c <= 120; ++c) {
      mapped_contig contig;
      contig.name = "cl_" + std::to_string(c);
      contig.is_placed = c % 10 != 0;
      for (int i = chance.number_up_to(30); i >= 0; --i) {
        contig.clones.push_back(static_cast<clone_number>(map.clones.size()));
        mapped_clone clone;
        clone.left = chance.number_up_to(c % 4 == 0 ? 900 : 90);
        clone.right = clone.left + 50;
        map.clones.push_back(clone);
      }
      map.contigs.push_back(contig);
    }
    const overview_values values = overview_values_of(map);
    EXPECT_EQ(values.n_without_places, 12);
    std::vector<rectangle> taken;
    double before = 1e9, scale = 0;
    std::int32_t n = 0;
    for (const overview_page &page : lay_out_overview(values, {1000, 500, has_pages}, measure)) {
      taken.clear();
      for (const overview_cell &cell : page.cells) {
        EXPECT_EQ(cell.contig, n++);
        const double length = values.contigs[static_cast<std::size_t>(cell.contig)].length();
        EXPECT_LE(length, before);
        before = length;
        scale = scale == 0 ? cell.bar.size.width / length : scale;
        EXPECT_NEAR(cell.bar.size.width, length * scale, 1e-3);
        taken.push_back({cell.bar.corner.x, cell.bar.corner.y - 24, cell.bar.corner.x + cell.bar.size.width,
                         cell.bar.corner.y + cell.bar.size.height});
        taken.push_back(of(cell.name));
        taken.push_back(of(cell.counts));
      }
      for (const placed_text &text : page.texts)
        taken.push_back(of(text));
      for (std::size_t i = 0; i < taken.size(); ++i) {
        EXPECT_TRUE(taken[i].right <= page.size.width && taken[i].bottom <= page.size.height);
        for (std::size_t j = i + 1; j < taken.size(); ++j)
          EXPECT_FALSE(meet(taken[i], taken[j]));
      }
    }
    EXPECT_EQ(n, 108);
  }
}

TEST(contig_map, a_stretch_stands_on_one_line) {
  random_source chance(5);
  for (int round = 0; round < 20; ++round) {
    const contig_values values = random_contig(chance, 60, true);
    const double from = chance.number_up_to(250), to = from + chance.number_up_to(80);
    const map_page page = lay_out_stretch(values, {900, 700, false}, from, to, measure);
    ASSERT_EQ(page.lines.size(), 1u);
    check_line(page.lines.front(), page);
    std::size_t n = 0;
    for (const contig_bar &bar : values.bars)
      n += bar.left < to && bar.right + 1.0 > from ? 1 : 0;
    EXPECT_EQ(page.lines.front().pieces.size(), n);
    for (const bar_piece &piece : page.lines.front().pieces) {
      const contig_bar &bar = values.bars[static_cast<std::size_t>(piece.bar)];
      EXPECT_EQ(piece.goes_on_left, bar.left < from);
      EXPECT_EQ(piece.goes_on_right, bar.right + 1.0 > to);
      EXPECT_EQ(clone_at(page, {piece.box.corner.x + 0.5f, piece.box.corner.y + 1}), piece.clone);
    }
    EXPECT_EQ(clone_at(page, {1, 1}), 0);
  }
}

} // namespace
