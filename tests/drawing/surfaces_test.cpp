// Surfaces: rows of bars, lines and circles in pixels against slow twins, and pictures that take any place and any
// name.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <tuple>

#include "drawing/cairo_surface.h"
#include "drawing/interval_rows.h"
#include "drawing/polled_surface.h"
#include "drawing/recording_surface.h"
#include "frame/failures.h"
#include "frame/random_source.h"
#include "support/temporary_folder.h"

namespace {

using namespace orb;

TEST(interval_rows, are_as_few_as_intervals_lie_over_each_other_and_cover_nothing_twice) {
  random_source chance(7);
  for (int run = 0; run < 200; ++run) {
    std::vector<std::int32_t> left, right;
    for (int i = chance.number_up_to(40); i > 0; --i) {
      left.push_back(chance.number_up_to(60) - 30);
      right.push_back(left.back() + chance.number_up_to(run % 2 ? 30 : 5) - 1);
    }
    const std::vector<std::int32_t> rows = rows_of_intervals(left, right);
    std::int64_t deepest = 0;
    for (std::int32_t at = -30; at < 70; ++at) {
      std::map<std::int32_t, int> in_row;
      for (std::size_t i = 0; i < left.size(); ++i)
        if (left[i] <= at && at <= right[i]) {
          EXPECT_EQ(++in_row[rows[i]], 1);
        }
      deepest = std::max<std::int64_t>(deepest, static_cast<std::int64_t>(in_row.size()));
    }
    EXPECT_EQ(*std::max_element(rows.begin(), rows.end()), deepest);
  }
}

constexpr int width = 90, height = 60;
constexpr colour_value white = 0xFFFFFF, red = 0x0000FF, green = 0x00FF00;

std::vector<surface_point> coloured(const raster_picture &picture, colour_value colour) {
  std::vector<surface_point> found;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      if (picture.pixel(x, y) == colour)
        found.push_back({static_cast<float>(x), static_cast<float>(y)});
  return found;
}

// Each pixel lies within one of the line, and there is one for each step of its longer way within the picture.
TEST(plain_pixels, lines_are_where_they_should_be) {
  random_source chance(3);
  for (int run = 0; run < 500; ++run) {
    const int spread = run < 250 ? 0 : 200; // beyond the picture on each side
    const auto place = [&](int side) { return chance.uniform() * (side + 2 * spread) - spread; };
    const double x1 = place(width), y1 = place(height), x2 = place(width), y2 = place(height);
    raster_picture picture(width, height);
    picture.surface().smooth(false);
    const surface_line line{{static_cast<float>(x1), static_cast<float>(y1)},
                            {static_cast<float>(x2), static_cast<float>(y2)}};
    picture.surface().lines({red, 1, line_pattern::solid}, std::span(&line, 1));
    const std::vector<surface_point> found = coloured(picture, red);
    const double dx = x2 - x1, dy = y2 - y1, length = std::hypot(dx, dy);
    for (const surface_point &pixel : found)
      EXPECT_LT(std::abs((pixel.x + 0.5 - x1) * dy - (pixel.y + 0.5 - y1) * dx) / length, 1.5);
    int within = 0; // a twin in a thousand steps a pixel
    double last = -9;
    for (int i = 0, n = static_cast<int>(length * 1000); i <= n; ++i) {
      const double x = x1 + dx * i / n, y = y1 + dy * i / n, at = std::floor(std::abs(dx) >= std::abs(dy) ? x : y);
      if (x >= 0 && x < width && y >= 0 && y < height && at != last) {
        last = at;
        ++within;
      }
    }
    EXPECT_NEAR(static_cast<double>(found.size()), within, 1) << x1 << " " << y1 << " " << x2 << " " << y2;
  }
}

TEST(plain_pixels, circles_are_discs_with_a_rim) {
  raster_picture picture(width, height);
  picture.surface().smooth(false);
  const std::vector<surface_box> circles{{{20.5, 20.5}, {7, 0}}, {{-2, 30}, {5, 0}}, {{500, 500}, {9, 0}}};
  picture.surface().circles({red, green, true, true}, circles);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const double inside = std::min(std::hypot(x - 20, y - 20) - 7, std::hypot(x + 2, y - 30) - 5);
      EXPECT_EQ(picture.pixel(x, y) == white, inside > 0) << x << " " << y;
      if (inside < -1.5 || (inside <= 0 && inside > -0.9)) {
        EXPECT_EQ(picture.pixel(x, y), inside < -1.5 ? red : green);
      }
    }
}

// Against the share of 20 x 20 points of each pixel that lie within the shape.
template <class inside> void expect_cover(const raster_picture &picture, const inside &is_inside) {
  constexpr int fine = 20;
  double sum = 0, drawn = 0, squares = 0;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      int n = 0;
      for (int i = 0; i < fine * fine; ++i)
        n += is_inside(x + (i % fine + 0.5) / fine, y + (i / fine + 0.5) / fine) ? 1 : 0; // NOLINT: whole rows
      const double wanted = n / static_cast<double>(fine * fine), cover = 1 - (picture.pixel(x, y) & 0xFF) / 255.0;
      sum += wanted;
      drawn += cover;
      squares += (cover - wanted) * (cover - wanted);
      EXPECT_NEAR(cover, wanted, 0.45) << x << " " << y;
    }
  EXPECT_NEAR(drawn, sum, 0.03 * sum + 0.3);
  EXPECT_LT(squares, 0.02 * sum + 0.3);
}

TEST(smooth_pixels, cover_what_the_shape_takes_of_them) {
  random_source chance(3);
  for (int run = 0; run < 12; ++run) {
    const auto place = [&](int side) { return static_cast<float>(chance.uniform() * (side + 40) - 20); };
    const surface_line line{{place(width), place(height)}, {place(width), place(height)}};
    const float pen = run % 3 == 0 ? 0.4f : 1.0f;
    const double dx = line.to.x - line.from.x, dy = line.to.y - line.from.y, length = std::hypot(dx, dy);
    raster_picture drawn(width, height);
    drawn.surface().lines({0, pen, line_pattern::solid}, std::span(&line, 1));
    expect_cover(drawn, [&](double x, double y) {
      const double along = ((x - line.from.x) * dx + (y - line.from.y) * dy) / length;
      return along >= 0 && along <= length &&
             std::abs((x - line.from.x) * dy - (y - line.from.y) * dx) / length <= pen / 2;
    });
    const surface_box circle{{place(width), place(height)}, {static_cast<float>(1 + 12 * chance.uniform()), 0}};
    const bool is_ring = run % 2 == 0;
    raster_picture round(width, height);
    round.surface().circles({0, 0, !is_ring, is_ring}, std::span(&circle, 1));
    expect_cover(round, [&](double x, double y) {
      const double distance = std::hypot(x - circle.corner.x, y - circle.corner.y), radius = circle.size.width;
      return is_ring ? std::abs(distance - radius) <= 0.5 : distance <= radius;
    });
  }
}

// Places far outside and places that are no numbers, names of any bytes.
void draw_anything(const drawing_surface &surface) {
  const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
  const float values[]{0, 30, -7, 1e4f, -1e9f, 3e38f, -3e38f, inf, -inf, nan};
  const surface_look look{red, green, true, true};
  for (const bool smooth : {true, false}) {
    surface.smooth(smooth);
    for (const float a : values)
      for (const float b : values)
        for (const float c : values) {
          const surface_line lines[]{{{a, b}, {c, 30}}, {{30, c}, {a, b}}};
          const surface_box box{{a, b}, {c, a}};
          const surface_point corners[]{{a, b}, {c, b}, {30, 30}};
          const surface_text text{{a, b}, "EC\xFF\xC3(\xE2\x82\x01\n\x80", c, red, text_anchor::middle};
          for (const line_pattern pattern : {line_pattern::solid, line_pattern::dots, line_pattern::dashed})
            surface.lines({green, c, pattern}, lines);
          surface.boxes(look, std::span(&box, 1));
          surface.circles(look, std::span(&box, 1));
          surface.polygons(look, 3, corners);
          surface.texts(std::span(&text, 1));
        }
  }
  const surface_text plain{{5, 40}, std::string_view("EC001\0A01", 9), 10, 0, text_anchor::left};
  surface.texts(std::span(&plain, 1));
}

TEST(pictures, take_any_place_and_any_name_and_are_the_same_twice) {
  const temporary_folder folder;
  raster_picture picture(width, height);
  draw_anything(picture.surface());
  EXPECT_FALSE(coloured(picture, red).empty());
  for (const auto &[name, start] : {std::pair{"a.png", "\x89PNG\r\n"}, {"a.svg", "<?xml "}, {"a.PDF", "%PDF-1."}}) {
    std::string bytes[2];
    for (std::string &made : bytes) {
      picture_file file(folder.path() / name);
      file.start_page({width, height});
      draw_anything(file.surface());
      if (picture_form_of(name) == picture_form::pdf)
        file.start_page({2 * width, height});
      EXPECT_GT(file.surface().text_width("\xFF\xFE name", 10), 20);
      EXPECT_FALSE(std::filesystem::exists(folder.path() / name));
      file.commit();
      made = folder.bytes(name);
      std::filesystem::remove(folder.path() / name);
    }
    EXPECT_TRUE(bytes[0].starts_with(start)) << name;
    EXPECT_TRUE(bytes[0] == bytes[1]) << name;
    EXPECT_EQ(bytes[0].find("CreationDate"), std::string::npos);
  }
}

TEST(pictures, are_whole_or_not_at_all) {
  const temporary_folder folder;
  EXPECT_THROW(picture_file(folder.path() / "none" / "a.png"), file_error);
  {
    picture_file given_up(folder.path() / "a.svg");
    given_up.start_page({width, height});
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
  for (const char *name : {"b.png", "b.svg", "b.pdf"}) {
    std::filesystem::create_symlink("/dev/full", folder.path() / name);
    picture_file full(folder.path() / name);
    full.start_page({1000, 1000});
    EXPECT_THROW(full.commit(), file_error) << name;
  }
  picture_file large(folder.path() / "c.png");
  EXPECT_THROW(large.start_page({10, largest_raster_side + 1.f}), std::length_error);
}

TEST(polled_surface, draws_all_in_pieces_until_it_is_told_to_end) {
  const std::vector<surface_line> lines(10'000);
  std::vector<surface_point> corners(3 * 10'000);
  for (std::size_t k = 0; k < corners.size(); ++k)
    corners[k].x = static_cast<float>(k);
  const auto draw = [&](int answers_yes) {
    surface_record record{{100, 100}, 0, {}};
    int n_asked = 0;
    const drawing_surface surface = polled_surface(recording_surface(record), [&] { return n_asked++ < answers_yes; });
    surface.lines({}, lines);
    surface.polygons({}, 3, corners);
    surface.circles({}, std::vector<surface_box>(5));
    std::size_t n_lines = 0;
    std::vector<surface_point> points;
    for (const auto &drawn : record.drawn) {
      if (const auto *run = std::get_if<drawn_lines>(&drawn))
        n_lines += run->lines.size();
      if (const auto *run = std::get_if<drawn_polygons>(&drawn))
        points.insert(points.end(), run->points.begin(), run->points.end());
    }
    for (std::size_t k = 0; k < points.size(); ++k)
      EXPECT_EQ(points[k].x, corners[k].x);
    EXPECT_EQ(points.size() % 3, 0u);
    return std::tuple(n_asked, n_lines, points.size());
  };
  const auto [asked_to_the_end, all_lines, all_points] = draw(1000);
  EXPECT_GT(asked_to_the_end, 6);
  EXPECT_EQ(all_lines, lines.size());
  EXPECT_EQ(all_points, corners.size());
  const auto [asked, some_lines, no_points] = draw(1);
  EXPECT_EQ(asked, 2) << "not asked again";
  EXPECT_GT(some_lines, 0u);
  EXPECT_LT(some_lines, lines.size());
  EXPECT_EQ(no_points, 0u);
}

} // namespace
