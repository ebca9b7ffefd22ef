#include "drawing/cairo_surface.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <new>
#include <numbers>
#include <stdexcept>
#include <string>
#include <vector>

#include "drawing/clipping.h"
#include "drawing/plain_pixels.h"
#include "drawing/smooth_pixels.h"
#include "drawing/utf8_text.h"
#include "frame/files.h"

#ifdef __SANITIZE_ADDRESS__
// What fontconfig keeps of the fonts it was asked for is lost to the leak checker, once a process.
extern "C" const char *__lsan_default_suppressions() {
  return "leak:libfontconfig";
}
#endif

namespace orb {

namespace {

constexpr double margin = 64; // what lies so far outside may show by its width
constexpr colour_value white = 0xFFFFFF;

struct surface_end {
  void operator()(cairo_surface_t *surface) const { cairo_surface_destroy(surface); }
};
struct context_end {
  void operator()(cairo_t *context) const { cairo_destroy(context); }
};

void check(cairo_status_t status) {
  if (status == CAIRO_STATUS_NO_MEMORY)
    throw std::bad_alloc();
  if (status != CAIRO_STATUS_SUCCESS)
    throw std::runtime_error(std::string("a picture can't be drawn: ") + cairo_status_to_string(status));
}

// A cairo surface with its context, and the state of drawing on it.
class canvas {
public:
  // `scale`: units of the surface a pixel.
  void start(cairo_surface_t *surface, surface_size size, double scale, bool is_raster) {
    surface_.reset(surface);
    check(cairo_surface_status(surface));
    is_raster_ = is_raster;
    context_.reset(cairo_create(surface));
    check(cairo_status(context_.get()));
    cairo_scale(context_.get(), scale, scale);
    prepare_page(size);
  }
  void prepare_page(surface_size size) {
    size_ = size;
    area_ = {-margin, -margin, size.width + margin, size.height + margin};
    choose_font();
    clear(white);
  }
  cairo_surface_t *surface() const { return surface_.get(); }
  cairo_t *context() const { return context_.get(); }
  surface_size size() const { return size_; }
  void smooth_set(bool wanted) { is_smooth_ = wanted; }

  void clear(colour_value background) {
    colour(background);
    cairo_paint(context());
  }
  void lines(const surface_pen &pen, std::span<const surface_line> lines);
  void boxes(const surface_look &look, std::span<const surface_box> boxes);
  void circles(const surface_look &look, std::span<const surface_box> circles);
  void polygon(const surface_look &look, std::span<const surface_point> corners);
  void text(const surface_text &text);
  float text_width(std::string_view text, float size);
  pixel_image image() const;

private:
  void choose_font();
  void colour(colour_value value) {
    cairo_set_source_rgb(context(), (value & 0xFF) / 255.0, (value >> 8 & 0xFF) / 255.0, (value >> 16 & 0xFF) / 255.0);
  }
  void pen(const surface_pen &pen);
  void show_path(const surface_look &look);
  // On an image thin upright and level lines and the sides of boxes lie on whole pixels, so that they are crisp.
  double crisp(double at) const { return is_raster_ ? std::floor(at) + 0.5 : at; }

  std::unique_ptr<cairo_surface_t, surface_end> surface_;
  std::unique_ptr<cairo_t, context_end> context_;
  surface_size size_;
  clip_area area_;
  bool is_raster_ = false, is_smooth_ = true;
};

// All that the settings of a machine might choose is chosen here.
void canvas::choose_font() {
  cairo_select_font_face(context(), "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  cairo_font_options_t *options = cairo_font_options_create();
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_set_font_options(context(), options);
  cairo_font_options_destroy(options);
}

pixel_image canvas::image() const {
  return {reinterpret_cast<std::uint32_t *>(cairo_image_surface_get_data(surface())),
          cairo_image_surface_get_width(surface()), cairo_image_surface_get_height(surface()),
          cairo_image_surface_get_stride(surface()) / 4};
}

void canvas::pen(const surface_pen &pen) {
  const double width = std::isfinite(pen.width) ? std::clamp(pen.width, 0.1f, 1000.f) : 1, unit = std::max(width, 1.0);
  const double dots[]{unit, 3 * unit}, dashes[]{6 * unit, 2 * unit};
  colour(pen.colour);
  cairo_set_line_width(context(), width);
  cairo_set_dash(context(), pen.pattern == line_pattern::dots ? dots : dashes,
                 pen.pattern == line_pattern::solid ? 0 : 2, 0);
}

void canvas::lines(const surface_pen &wanted, std::span<const surface_line> lines) {
  if (is_raster_ && wanted.width <= 1 && (!is_smooth_ || wanted.pattern == line_pattern::solid)) {
    cairo_surface_flush(surface());
    (is_smooth_ ? draw_smooth_lines : draw_plain_lines)(image(), wanted, lines);
    cairo_surface_mark_dirty(surface());
    return;
  }
  constexpr int most_in_a_path = 64; // the cost of a path grows faster than the number of its lines
  pen(wanted);
  const bool is_thin = wanted.width <= 1;
  int n = 0;
  clipped_line line;
  for (const surface_line &given : lines) {
    if (!clip_line(area_, given, line))
      continue;
    if (is_thin && line.x1 == line.x2)
      line.x1 = line.x2 = crisp(line.x1);
    if (is_thin && line.y1 == line.y2)
      line.y1 = line.y2 = crisp(line.y1);
    cairo_move_to(context(), line.x1, line.y1);
    cairo_line_to(context(), line.x2, line.y2);
    if (++n % most_in_a_path == 0)
      cairo_stroke(context());
  }
  cairo_stroke(context());
}

void canvas::show_path(const surface_look &look) {
  if (look.is_filled) {
    colour(look.fill);
    look.is_outlined ? cairo_fill_preserve(context()) : cairo_fill(context());
  }
  if (look.is_outlined) {
    pen({look.border, 1, line_pattern::solid});
    cairo_stroke(context());
  }
  cairo_new_path(context());
}

void canvas::boxes(const surface_look &look, std::span<const surface_box> boxes) {
  for (surface_box box : boxes) {
    if (!clip_box(area_, box))
      continue;
    double left = box.corner.x, top = box.corner.y, right = left + box.size.width, bottom = top + box.size.height;
    if (is_raster_) { // whole pixels, at least one
      left = std::round(left);
      top = std::round(top);
      right = std::max(std::round(right), left + 1);
      bottom = std::max(std::round(bottom), top + 1);
    }
    if (look.is_filled) {
      colour(look.fill);
      cairo_rectangle(context(), left, top, right - left, bottom - top);
      cairo_fill(context());
    }
    if (look.is_outlined && right - left >= 1 && bottom - top >= 1) { // the outline lies within
      pen({look.border, 1, line_pattern::solid});
      cairo_rectangle(context(), left + 0.5, top + 0.5, right - left - 1, bottom - top - 1);
      cairo_stroke(context());
    }
  }
}

void canvas::circles(const surface_look &look, std::span<const surface_box> circles) {
  constexpr double largest_round = 20000; // pixels; the edge of a larger one is made of straight pieces
  constexpr int n_pieces = 4096;
  const float largest_in_pixels = !is_raster_ ? -1 : is_smooth_ ? largest_smooth_radius : largest_plain_radius;
  if (is_raster_) {
    cairo_surface_flush(surface());
    (is_smooth_ ? draw_smooth_circles : draw_plain_circles)(image(), look, circles);
    cairo_surface_mark_dirty(surface());
  }
  std::vector<surface_point> pieces;
  for (const surface_box &circle : circles) {
    const double x = circle.corner.x, y = circle.corner.y, radius = std::abs(static_cast<double>(circle.size.width));
    if (!std::isfinite(x) || !std::isfinite(y) || !std::isfinite(radius) || x + radius < area_.left ||
        x - radius > area_.right || y + radius < area_.top || y - radius > area_.bottom || radius <= largest_in_pixels)
      continue;
    if (radius <= largest_round) {
      cairo_new_sub_path(context());
      cairo_arc(context(), x, y, radius, 0, 2 * std::numbers::pi);
      show_path(look);
      continue;
    }
    pieces.clear();
    for (int i = 0; i < n_pieces; ++i) {
      const double angle = 2 * std::numbers::pi * i / n_pieces;
      pieces.push_back(
          {static_cast<float>(x + radius * std::cos(angle)), static_cast<float>(y + radius * std::sin(angle))});
    }
    polygon(look, pieces);
  }
}

void canvas::polygon(const surface_look &look, std::span<const surface_point> corners) {
  std::vector<surface_point> clipped;
  clip_polygon(area_, corners, clipped);
  for (const surface_point &corner : clipped)
    cairo_line_to(context(), corner.x, corner.y);
  cairo_close_path(context());
  show_path(look);
}

void canvas::text(const surface_text &given) {
  const auto is_near = [](float at, float end) { return at > -10000 && at < end + 10000; }; // nor NaN
  if (!is_near(given.at.x, size_.width) || !is_near(given.at.y, size_.height) || !(given.size > 0) || given.size > 1000)
    return;
  const std::string text = utf8_text(given.text);
  const float share = given.anchor == text_anchor::left ? 0.f : given.anchor == text_anchor::middle ? 0.5f : 1.f;
  const float shift = share > 0 ? share * text_width(given.text, given.size) : 0;
  colour(given.colour);
  cairo_set_font_size(context(), given.size);
  cairo_move_to(context(), given.at.x - shift, given.at.y);
  cairo_show_text(context(), text.c_str());
  cairo_new_path(context());
}

float canvas::text_width(std::string_view text, float size) {
  if (!(size > 0) || size > 1000)
    return 0;
  cairo_set_font_size(context(), size);
  cairo_text_extents_t extents;
  cairo_text_extents(context(), utf8_text(text).c_str(), &extents);
  return static_cast<float>(extents.x_advance);
}

// `canvas` must outlive the surface.
drawing_surface surface_of(canvas &on) {
  drawing_surface made;
  made.size = [&on] { return on.size(); };
  made.clear = [&on](colour_value background) { on.clear(background); };
  made.lines = [&on](const surface_pen &pen, std::span<const surface_line> lines) { on.lines(pen, lines); };
  made.boxes = [&on](const surface_look &look, std::span<const surface_box> boxes) { on.boxes(look, boxes); };
  made.circles = [&on](const surface_look &look, std::span<const surface_box> circles) { on.circles(look, circles); };
  made.polygons = [&on](const surface_look &look, int corners, std::span<const surface_point> points) {
    const auto n = static_cast<std::size_t>(std::max(corners, 3));
    for (std::size_t first = 0; first + n <= points.size(); first += n)
      on.polygon(look, points.subspan(first, n));
  };
  made.texts = [&on](std::span<const surface_text> texts) {
    for (const surface_text &text : texts)
      on.text(text);
  };
  made.text_width = [&on](std::string_view text, float size) { return on.text_width(text, size); };
  made.smooth = [&on](bool wanted) { on.smooth_set(wanted); };
  return made;
}

void start_raster(canvas &on, double width, double height) {
  if (!(width >= 1) || !(height >= 1) || width > largest_raster_side || height > largest_raster_side)
    throw std::length_error("an image has 1 to " + std::to_string(largest_raster_side) + " pixels a side");
  const int w = static_cast<int>(width), h = static_cast<int>(height);
  on.start(cairo_image_surface_create(CAIRO_FORMAT_RGB24, w, h), {static_cast<float>(w), static_cast<float>(h)}, 1,
           true);
}

} // namespace

// ---- in memory -----------------------------------------------------------------------------------------------------

struct raster_picture::parts {
  canvas image;
  drawing_surface surface = surface_of(image);
};

raster_picture::raster_picture(int width, int height) : parts_(std::make_unique<parts>()) {
  start_raster(parts_->image, width, height);
}
raster_picture::~raster_picture() = default;

const drawing_surface &raster_picture::surface() const {
  return parts_->surface;
}

colour_value raster_picture::pixel(int x, int y) const {
  cairo_surface_flush(parts_->image.surface());
  const pixel_image image = parts_->image.image();
  if (x < 0 || y < 0 || x >= image.width || y >= image.height)
    return white;
  const std::uint32_t value = image.pixels[static_cast<std::ptrdiff_t>(y) * image.stride + x];
  return static_cast<colour_value>((value >> 16U & 0xFFU) | (value & 0xFF00U) | (value & 0xFFU) << 16U);
}

// ---- files ---------------------------------------------------------------------------------------------------------

std::optional<picture_form> picture_form_of(const std::filesystem::path &file) {
  std::string ending = file.extension().string();
  for (char &c : ending)
    c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  if (ending == ".png")
    return picture_form::png;
  if (ending == ".svg")
    return picture_form::svg;
  if (ending == ".pdf")
    return picture_form::pdf;
  return std::nullopt;
}

struct picture_file::parts {
  parts(const std::filesystem::path &path, std::function<void()> between_)
      : form(picture_form_of(path)), file(path), between(std::move(between_)) {
    start_raster(page, 1, 1); // for the widths of texts
  }

  // cairo is C: what is thrown is kept until it has come back.
  static cairo_status_t write(void *to, const unsigned char *bytes, unsigned length) noexcept {
    auto *self = static_cast<parts *>(to);
    try {
      const std::string_view text(reinterpret_cast<const char *>(bytes), length);
      if (!self->failed && self->form == picture_form::svg)
        self->svg += text;
      else if (!self->failed)
        self->file.write(text);
      if (self->between)
        self->between();
    } catch (...) {
      self->failed = std::current_exception();
    }
    return self->failed ? CAIRO_STATUS_WRITE_ERROR : CAIRO_STATUS_SUCCESS;
  }

  void start_vectors(surface_size size) {
    constexpr double points_a_pixel = 0.75;
    if (form == picture_form::svg) {
      cairo_surface_t *vectors = cairo_svg_surface_create_for_stream(write, this, size.width, size.height);
      cairo_svg_surface_set_document_unit(vectors, CAIRO_SVG_UNIT_PX);
      page.start(vectors, size, 1, false);
      return;
    }
    cairo_surface_t *pdf =
        cairo_pdf_surface_create_for_stream(write, this, size.width * points_a_pixel, size.height * points_a_pixel);
    cairo_pdf_surface_set_metadata(pdf, CAIRO_PDF_METADATA_CREATE_DATE, "");
    page.start(pdf, size, points_a_pixel, false);
  }

  void start(surface_size size) {
    if (form == picture_form::png) {
      start_raster(page, size.width, size.height);
    } else if (!started) {
      start_vectors(size);
    } else if (form == picture_form::pdf) {
      cairo_show_page(page.context());
      cairo_pdf_surface_set_size(page.surface(), size.width * 0.75, size.height * 0.75);
      page.prepare_page(size);
    }
    started = true;
  }

  void finish() {
    if (!started)
      start({1, 1});
    if (form == picture_form::png)
      check_written(cairo_surface_write_to_png_stream(page.surface(), write, this));
    cairo_surface_finish(page.surface());
    check_written(cairo_surface_status(page.surface()));
    if (form == picture_form::svg)
      write_svg();
  }
  // cairo numbers its surfaces through the life of the process, and names the whole after the number.
  void write_svg() {
    constexpr std::string_view start = "<g id=\"surface";
    if (const std::size_t at = svg.find(start); at != std::string::npos) {
      const std::size_t number = at + start.size();
      svg.erase(number, svg.find('"', number) - number);
    }
    file.write(svg);
  }
  void check_written(cairo_status_t status) {
    if (failed)
      std::rethrow_exception(failed);
    check(status);
  }

  std::optional<picture_form> form;
  result_file file; // outlives the page, which may write when it ends
  std::function<void()> between;
  std::exception_ptr failed;
  std::string svg; // whole, before it goes to the file
  canvas page;
  drawing_surface surface = surface_of(page);
  bool started = false;
};

picture_file::picture_file(const std::filesystem::path &file, std::function<void()> between)
    : parts_(std::make_unique<parts>(file, std::move(between))) {
  if (!parts_->form)
    throw std::invalid_argument("no picture has the ending of " + file.string());
}
picture_file::~picture_file() = default;

const drawing_surface &picture_file::surface() const {
  return parts_->surface;
}
void picture_file::start_page(surface_size size) {
  parts_->start(size);
}
void picture_file::commit() {
  parts_->finish();
  parts_->file.commit();
}

} // namespace orb
