#include "ui/desktop/qt_surface.h"

#include <QColor>
#include <QFontMetricsF>
#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <vector>

#include "drawing/clipping.h"
#include "drawing/plain_pixels.h"
#include "drawing/utf8_text.h"

namespace orb {

namespace {

constexpr double margin = 64; // what lies so far outside may show by its width
constexpr float largest_stamp = 16;

QString text_of(std::string_view text) {
  const std::string utf8 = utf8_text(text);
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QFont font_of(float size) {
  QFont font("DejaVu Sans");
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(size))));
  return font;
}

class qt_drawer {
public:
  qt_drawer(std::function<QPainter &()> painter, std::function<surface_size()> size)
      : painter_(std::move(painter)), size_(std::move(size)) {}

  surface_size size() const { return size_(); }
  void smooth_set(bool wanted) { is_smooth_ = wanted; }
  void clear(colour_value background) {
    const surface_size all = size_();
    painter_().fillRect(QRectF(0, 0, all.width, all.height), qt_colour(background));
  }
  void lines(const surface_pen &pen, std::span<const surface_line> lines);
  void boxes(const surface_look &look, std::span<const surface_box> boxes);
  void circles(const surface_look &look, std::span<const surface_box> circles);
  void polygons(const surface_look &look, std::size_t corners, std::span<const surface_point> points);
  void texts(std::span<const surface_text> texts);
  float text_width(std::string_view text, float size);

private:
  clip_area area() const {
    const surface_size all = size_();
    return {-margin, -margin, all.width + margin, all.height + margin};
  }
  bool draws_pixels(QPainter &painter) const;
  void plain_lines(QPainter &painter, const surface_pen &pen, std::span<const surface_line> lines);
  void stamp_circles(QPainter &painter, const surface_look &look, std::span<const surface_box> circles);
  void set_look(QPainter &painter, const surface_look &look) const;

  std::function<QPainter &()> painter_;
  std::function<surface_size()> size_;
  bool is_smooth_ = true;
  std::vector<surface_line> scaled_;
  std::vector<QLineF> lines_;
  std::map<float, QFontMetricsF> metrics_;
};

QPen pen_of(const surface_pen &pen) {
  const double width = std::isfinite(pen.width) ? std::clamp(pen.width, 0.1f, 1000.f) : 1;
  QPen made(qt_colour(pen.colour), width);
  made.setCapStyle(Qt::FlatCap);
  if (pen.pattern == line_pattern::dots)
    made.setDashPattern({1, 3}); // in widths
  else if (pen.pattern == line_pattern::dashed)
    made.setDashPattern({6, 2});
  return made;
}

pixel_image pixels_of(QImage &image) {
  return {reinterpret_cast<std::uint32_t *>(image.bits()), image.width(), image.height(),
          static_cast<int>(image.bytesPerLine() / 4)};
}

// Only into an image whose pixels are as the plain ones, and where nothing turns or clips.
bool qt_drawer::draws_pixels(QPainter &painter) const {
  return !is_smooth_ && painter.device()->devType() == QInternal::Image &&
         static_cast<QImage *>(painter.device())->format() == QImage::Format_RGB32 && !painter.hasClipping() &&
         painter.transform().isIdentity();
}

void qt_drawer::plain_lines(QPainter &painter, const surface_pen &pen, std::span<const surface_line> lines) {
  auto &image = *static_cast<QImage *>(painter.device());
  const auto ratio = static_cast<float>(image.devicePixelRatio());
  if (ratio == 1) {
    draw_plain_lines(pixels_of(image), pen, lines);
    return;
  }
  scaled_.assign(lines.begin(), lines.end());
  for (surface_line &line : scaled_)
    for (float *at : {&line.from.x, &line.from.y, &line.to.x, &line.to.y})
      *at *= ratio;
  draw_plain_lines(pixels_of(image), pen, scaled_);
}

void qt_drawer::lines(const surface_pen &pen, std::span<const surface_line> lines) {
  QPainter &painter = painter_();
  if (pen.width <= 1 && draws_pixels(painter)) {
    plain_lines(painter, pen, lines);
    return;
  }
  const clip_area within = area();
  lines_.clear();
  clipped_line clipped;
  for (const surface_line &line : lines) {
    if (!clip_line(within, line, clipped))
      continue;
    if (clipped.x1 == clipped.x2) // thin upright and level lines are crisp
      clipped.x1 = clipped.x2 = std::floor(clipped.x1) + 0.5;
    if (clipped.y1 == clipped.y2)
      clipped.y1 = clipped.y2 = std::floor(clipped.y1) + 0.5;
    lines_.emplace_back(clipped.x1, clipped.y1, clipped.x2, clipped.y2);
  }
  painter.setRenderHint(QPainter::Antialiasing, is_smooth_);
  painter.setPen(pen_of(pen));
  painter.drawLines(lines_.data(), static_cast<int>(lines_.size()));
}

void qt_drawer::set_look(QPainter &painter, const surface_look &look) const {
  painter.setPen(look.is_outlined ? QPen(qt_colour(look.border), 1) : QPen(Qt::NoPen));
  painter.setBrush(look.is_filled ? QBrush(qt_colour(look.fill)) : QBrush(Qt::NoBrush));
}

void qt_drawer::boxes(const surface_look &look, std::span<const surface_box> boxes) {
  QPainter &painter = painter_();
  const clip_area within = area();
  painter.setRenderHint(QPainter::Antialiasing, false);
  for (surface_box box : boxes) {
    if (!clip_box(within, box))
      continue;
    const double left = std::round(box.corner.x), top = std::round(box.corner.y);
    const double right = std::max<double>(std::round(box.corner.x + box.size.width), left + 1);
    const double bottom = std::max<double>(std::round(box.corner.y + box.size.height), top + 1);
    if (look.is_filled)
      painter.fillRect(QRectF(left, top, right - left, bottom - top), qt_colour(look.fill));
    if (look.is_outlined) { // within
      painter.setPen(QPen(qt_colour(look.border), 1));
      painter.setBrush(Qt::NoBrush);
      painter.drawRect(QRectF(left, top, right - left - 1, bottom - top - 1));
    }
  }
}

// Small circles of one look and radius are drawn once and copied: a net has tens of thousands of them.
void qt_drawer::stamp_circles(QPainter &painter, const surface_look &look, std::span<const surface_box> circles) {
  const double ratio = painter.device()->devicePixelRatioF();
  QImage stamp;
  double half = 0;
  float radius = -1;
  for (const surface_box &circle : circles) {
    const float wanted = std::abs(circle.size.width);
    if (wanted != radius) {
      radius = wanted;
      half = std::ceil(radius) + 1.5;
      const int side = static_cast<int>(std::ceil(2 * half * ratio));
      stamp = QImage(side, side, QImage::Format_ARGB32_Premultiplied);
      stamp.setDevicePixelRatio(ratio);
      stamp.fill(Qt::transparent);
      QPainter on(&stamp);
      on.setRenderHint(QPainter::Antialiasing);
      set_look(on, look);
      on.drawEllipse(QPointF(half, half), radius, radius);
    }
    const double x = std::floor((circle.corner.x - half) * ratio + 0.5) / ratio,
                 y = std::floor((circle.corner.y - half) * ratio + 0.5) / ratio;
    painter.drawImage(QPointF(x, y), stamp);
  }
}

void qt_drawer::circles(const surface_look &look, std::span<const surface_box> circles) {
  QPainter &painter = painter_();
  const clip_area within = area();
  std::vector<surface_box> small;
  painter.setRenderHint(QPainter::Antialiasing, is_smooth_);
  set_look(painter, look);
  for (const surface_box &circle : circles) {
    const double x = circle.corner.x, y = circle.corner.y, radius = std::abs(circle.size.width);
    if (!std::isfinite(x) || !std::isfinite(y) || !(radius < 1e6) || x + radius < within.left ||
        x - radius > within.right || y + radius < within.top || y - radius > within.bottom)
      continue;
    if (radius <= largest_stamp)
      small.push_back(circle);
    else
      painter.drawEllipse(QPointF(x, y), radius, radius);
  }
  if (draws_pixels(painter) && painter.device()->devicePixelRatioF() == 1)
    draw_plain_circles(pixels_of(*static_cast<QImage *>(painter.device())), look, small);
  else
    stamp_circles(painter, look, small);
}

void qt_drawer::polygons(const surface_look &look, std::size_t corners, std::span<const surface_point> points) {
  QPainter &painter = painter_();
  const clip_area within = area();
  painter.setRenderHint(QPainter::Antialiasing, is_smooth_);
  set_look(painter, look);
  std::vector<surface_point> clipped;
  QPolygonF polygon;
  for (std::size_t first = 0; first + corners <= points.size(); first += corners) {
    clip_polygon(within, points.subspan(first, corners), clipped);
    polygon.clear();
    for (const surface_point &corner : clipped)
      polygon << QPointF(corner.x, corner.y);
    if (!polygon.isEmpty())
      painter.drawPolygon(polygon);
  }
}

void qt_drawer::texts(std::span<const surface_text> texts) {
  QPainter &painter = painter_();
  const surface_size all = size_();
  const auto is_near = [](float at, float end) { return at > -10000 && at < end + 10000; }; // nor NaN
  float size = -1;
  for (const surface_text &text : texts) {
    if (!is_near(text.at.x, all.width) || !is_near(text.at.y, all.height) || !(text.size > 0) || text.size > 1000)
      continue;
    if (text.size != size)
      painter.setFont(font_of(size = text.size));
    const float share = text.anchor == text_anchor::left ? 0.f : text.anchor == text_anchor::middle ? 0.5f : 1.f;
    const float shift = share > 0 ? share * text_width(text.text, text.size) : 0;
    painter.setPen(qt_colour(text.colour));
    painter.drawText(QPointF(text.at.x - shift, text.at.y), text_of(text.text));
  }
}

float qt_drawer::text_width(std::string_view text, float size) {
  if (!(size > 0) || size > 1000)
    return 0;
  const auto known = metrics_.try_emplace(size, font_of(size)).first;
  return static_cast<float>(known->second.horizontalAdvance(text_of(text)));
}

drawing_surface surface_of(const std::shared_ptr<qt_drawer> &on) {
  drawing_surface made;
  made.size = [on] { return on->size(); };
  made.clear = [on](colour_value background) { on->clear(background); };
  made.lines = [on](const surface_pen &pen, std::span<const surface_line> lines) { on->lines(pen, lines); };
  made.boxes = [on](const surface_look &look, std::span<const surface_box> boxes) { on->boxes(look, boxes); };
  made.circles = [on](const surface_look &look, std::span<const surface_box> circles) { on->circles(look, circles); };
  made.polygons = [on](const surface_look &look, int corners, std::span<const surface_point> points) {
    on->polygons(look, static_cast<std::size_t>(std::max(corners, 3)), points);
  };
  made.texts = [on](std::span<const surface_text> texts) { on->texts(texts); };
  made.text_width = [on](std::string_view text, float size) { return on->text_width(text, size); };
  made.smooth = [on](bool wanted) { on->smooth_set(wanted); };
  return made;
}

} // namespace

QColor qt_colour(colour_value colour) {
  return QColor(colour & 0xFF, colour >> 8 & 0xFF, colour >> 16 & 0xFF);
}

colour_value colour_of(const QColor &colour) {
  return colour.red() + 256 * colour.green() + 65536 * colour.blue();
}

drawing_surface qt_surface(QPainter &painter, surface_size size) {
  return surface_of(
      std::make_shared<qt_drawer>([&painter]() -> QPainter & { return painter; }, [size] { return size; }));
}

// ---- a picture -----------------------------------------------------------------------------------------------------

qt_picture::qt_picture() {
  resize({1, 1}, 1);
}

void qt_picture::resize(QSize size, double ratio) {
  if (painter_.isActive())
    painter_.end();
  const QSize pixels(std::max(1, static_cast<int>(std::lround(size.width() * ratio))),
                     std::max(1, static_cast<int>(std::lround(size.height() * ratio))));
  image_ = QImage(pixels, QImage::Format_RGB32);
  image_.setDevicePixelRatio(ratio);
  image_.fill(Qt::white);
}

QPainter &qt_picture::painter() {
  if (!painter_.isActive())
    painter_.begin(&image_);
  return painter_;
}

const QImage &qt_picture::image() {
  if (painter_.isActive())
    painter_.end();
  return image_;
}

drawing_surface qt_picture::surface() {
  return surface_of(std::make_shared<qt_drawer>(
      [this]() -> QPainter & { return painter(); },
      [this] {
        const double ratio = image_.devicePixelRatio();
        return surface_size{static_cast<float>(image_.width() / ratio), static_cast<float>(image_.height() / ratio)};
      }));
}

} // namespace orb
