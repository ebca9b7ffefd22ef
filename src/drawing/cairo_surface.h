// Pictures without a window: in memory, and as PNG, SVG and PDF files. cairo draws them and stays in this file's
// source.
//
// Texts are in DejaVu Sans; names that are no UTF-8 are taken for Latin-1. A place may lie anywhere: what is outside,
// and what is no number, isn't drawn. The same drawing gives the same bytes: no file tells when it was made.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "drawing/drawing_surface.h"

namespace orb {

inline constexpr int largest_raster_side = 32000; // pixels

class raster_picture {
public:
  // White. Throws std::length_error for sides that can't be, std::bad_alloc without the memory.
  raster_picture(int width, int height);
  ~raster_picture();
  raster_picture(const raster_picture &) = delete;
  raster_picture &operator=(const raster_picture &) = delete;

  const drawing_surface &surface() const;
  colour_value pixel(int x, int y) const;

private:
  struct parts;
  std::unique_ptr<parts> parts_;
};

enum class picture_form { png, svg, pdf };
// By the ending of a file's name, in capitals or not.
std::optional<picture_form> picture_form_of(const std::filesystem::path &file);

// A picture that becomes a file, whole or not at all. In SVG and PDF 96 pixels are an inch, and what is drawn stays
// lines and letters; a PDF has as many pages as are started. `file` must have an ending that is known. Throws
// file_error.
class picture_file {
public:
  // `between` is called now and then while a page is packed, which takes longer than somebody at a window waits.
  explicit picture_file(const std::filesystem::path &file, std::function<void()> between = {});
  ~picture_file();
  picture_file(const picture_file &) = delete;
  picture_file &operator=(const picture_file &) = delete;

  // Widths of texts are known before the first page is started, everything else from then on.
  const drawing_surface &surface() const;
  // Ends the page before; of a PDF only. White. Throws as raster_picture does.
  void start_page(surface_size size);
  void commit();

private:
  struct parts;
  std::unique_ptr<parts> parts_;
};

} // namespace orb
