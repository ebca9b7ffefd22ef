#include "fpc/fpc_export.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "database/class_markers.h"
#include "fpc/fpc_blocks.h"
#include "fpc/fpc_dates.h"
#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr std::int32_t largest_band = std::numeric_limits<std::uint16_t>::max();

bool bands_fit(process_frame &frame, const class_DB_of_clones &database) {
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone)
    for (const band_value band : database.bands_of_clone(clone))
      if (band < 0 || band > largest_band)
        return frame.refuse(fmt::format("Band {} of clone {} doesn't fit the 16 bits of a .cor file.", band,
                                        database.name_of_clone_get(clone)));
  return true;
}

bool names_fit(process_frame &frame, const class_DB_of_clones &database) {
  const auto fits = [&frame](const char *what, const std::string &name) {
    const auto breaks = [](char c) { return c == '"' || (static_cast<unsigned char>(c) < 32 && c != '\t'); };
    return std::none_of(name.begin(), name.end(), breaks) ||
           frame.refuse(fmt::format("{} {} has a character that can't stand in an .fpc file.", what, name));
  };
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone)
    if (!fits("Clone", database.name_of_clone_get(clone)))
      return false;
  for (std::int32_t marker = 1; marker <= database.markers().total_number_of_markers_get(); ++marker)
    if (!fits("Marker", database.markers().name_of_marker_get(marker)))
      return false;
  return true;
}

// All bands, clone by clone, each with its high byte first.
void write_bands(const class_DB_of_clones &database, result_file &file) {
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone)
    for (const band_value band : database.bands_of_clone(clone)) {
      const char bytes[] = {static_cast<char>(band >> 8), static_cast<char>(band & 255)};
      file.write({bytes, sizeof bytes});
    }
}

// Readers take one empty line for the end of a block, and what follows it for the begin of the next: two of them would
// be a block without a name.
class strict_fpc_writer {
public:
  strict_fpc_writer(process_frame &frame, const class_DB_of_clones &database, const contig_map &map, result_file &file)
      : frame_(frame), database_(database), map_(map), file_(file),
        date_(str_date_from_FPC_format_get(frame.clock().day_number())) {}

  void write(std::optional<double> exponent) {
    head(exponent);
    for (clone_number clone = 1; clone <= database_.total_number_of_clones_get(); ++clone)
      clone_block(clone);
    line("\nMarkerdata");
    for (std::int32_t marker = 1; marker <= database_.markers().total_number_of_markers_get(); ++marker) {
      line(fmt::format("\nMarker_STS : \"{}\"", database_.markers().name_of_marker_get(marker)));
      dates();
    }
    line(fmt::format("\nContigdata {}", map_.contigs.size() - 1));
    for (std::size_t contig = 1; contig < map_.contigs.size(); ++contig)
      contig_block(contig);
  }

private:
  void line(const std::string &text) {
    file_.write(text);
    file_.write("\n");
  }
  // The 1 makes a count of years from 1900 of the two digits.
  void dates() {
    line("Creation_date 1" + date_);
    line("Modified_date 1" + date_);
  }

  void head(std::optional<double> exponent) {
    std::int64_t n_bands = 0;
    for (clone_number clone = 1; clone <= database_.total_number_of_clones_get(); ++clone)
      n_bands += database_.number_of_bands_in_clone_get(clone);
    const std::tm now = frame_.clock().now();
    line("// fpc project ORB");
    line(fmt::format("// 9.4  Date: {:02}:{:02} {:04}-{:02}-{:02}  User: ORB", now.tm_hour, now.tm_min,
                     now.tm_year + 1900, now.tm_mon + 1, now.tm_mday));
    line(fmt::format("// Contigs {}  Clones {}  Markers {}  Bands {}", map_.contigs.size() - 1,
                     database_.total_number_of_clones_get(), database_.markers().total_number_of_markers_get(),
                     n_bands));
    line(parameters(exponent));
  }

  // Numbers of bins are compared for equality, and count in widths of twice the tolerance.
  std::string parameters(std::optional<double> exponent) const {
    const bool bins = database_.index_of_band_type_get() != 0;
    const double length = database_.max_band_length_get();
    const int tolerance = bins ? 0 : database_.tollerance_get();
    std::string text =
        fmt::format("// Tol {}  Gel length {}", tolerance,
                    std::llround(bins ? std::ceil(length / std::max(2 * database_.tollerance_get(), 1)) : length));
    if (exponent)
      text += "  Cut " + cutoff_text(*exponent);
    return text;
  }
  // 15 is 1e-15, 15.5 is 3.2e-16.
  static std::string cutoff_text(double exponent) {
    if (exponent == std::floor(exponent))
      return fmt::format("1e-{:02}", std::llround(exponent));
    const double below = std::ceil(exponent);
    return number_text(std::pow(10, below - exponent), 1) + fmt::format("e-{:02}", std::llround(below));
  }

  void clone_block(clone_number clone) {
    const auto at = static_cast<std::size_t>(clone);
    const std::int32_t n_bands = database_.number_of_bands_in_clone_get(clone);
    line("\nBAC : \"" + database_.name_of_clone_get(clone) + "\"");
    map_lines(map_.clones[at], n_bands);
    if (map_.clones[at].buried_in > 0)
      line(fmt::format("{} \"{}\"", keyword(map_.clones[at].how),
                       database_.name_of_clone_get(map_.clones[at].buried_in)));
    for (const std::int32_t marker : database_.markers().markers_of_clone(clone))
      line("Positive_STS \"" + database_.markers().name_of_marker_get(marker) + "\"");
    line("Gel_number 1"); // readers want a number, and fingerprints don't tell one
    if (n_bands > 0)
      line(fmt::format("Bands {} {}", first_band_, n_bands));
    first_band_ += n_bands;
    dates();
  }

  void map_lines(const mapped_clone &clone, std::int32_t n_bands) {
    if (clone.contig == 0)
      return;
    const mapped_contig &contig = map_.contigs[static_cast<std::size_t>(clone.contig)];
    // Coordinates begin at 1; one that is negative all the same moves its contig to 0.
    const std::int64_t shift = std::max<std::int64_t>(-contig.left, 0);
    const std::int64_t left = contig.is_placed ? clone.left + shift : 0,
                       right = contig.is_placed ? clone.right + shift : std::max(n_bands - 1, 0);
    line(fmt::format("Map \"ctg{}\" Ends Left {}", clone.contig, left));
    line(fmt::format("Map \"ctg{}\" Ends Right {}", clone.contig, right));
  }

  static const char *keyword(burial how) {
    return how == burial::same_bands  ? "Exact_match_to_cosmid"
           : how == burial::in_larger ? "Approximate_match_to_cosmid"
                                      : "Pseudo_match_to_cosmid";
  }

  void contig_block(std::size_t number) {
    const mapped_contig &contig = map_.contigs[number];
    const std::tm now = frame_.clock().now();
    line(fmt::format("\nCtg{} {:02}/{:02}/{:04} # {}{}", number, now.tm_mon + 1, now.tm_mday, now.tm_year + 1900,
                     contig.name, contig.is_placed ? "" : " (without coordinates)"));
  }

  process_frame &frame_;
  const class_DB_of_clones &database_;
  const contig_map &map_;
  result_file &file_;
  const std::string date_;
  std::int64_t first_band_ = 1;
};

} // namespace

bool write_fpc_export(process_frame &frame, const class_DB_of_clones &database, const contig_map &map,
                      std::optional<double> exponent, const fs::path &file) {
  if (!bands_fit(frame, database) || !names_fit(frame, database))
    return false;
  result_file text(file), bands(cor_file_of(file));
  write_bands(database, bands);
  strict_fpc_writer(frame, database, map, text).write(exponent);
  bands.commit();
  text.commit();
  return true;
}

} // namespace orb
