#include "fpc/fpc_fingerprints.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "frame/numbers.h"
#include "frame/text_lines.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr std::int32_t clones_between_reports = 1000;
constexpr std::size_t bytes_of_band = 2;
constexpr std::size_t most_bands_in_all = std::numeric_limits<std::int32_t>::max() - 1000;

class fpc_library_reader {
public:
  fpc_library_reader(process_frame &frame, const project_settings &settings, const fs::path &file, std::string bands,
                     class_DB_of_clones &database, fingerprint_records &records, band_statistics &statistics)
      : frame_(frame), settings_(settings), reader_(file), bands_(std::move(bands)), database_(database),
        records_(records), statistics_(statistics) {}

  bool read() {
    fpc_clone_block block;
    while (reader_.next(block)) {
      records_.start(block.name);
      if (!read_bands(block))
        return false;
      if (records_.count() % clones_between_reports != 0)
        continue;
      frame_.progress(reader_.lines().position(), reader_.lines().size());
      frame_.local_process_text_set(std::to_string(records_.count()) + " clones loaded");
      if (frame_.stop_requested_get())
        return false;
    }
    return true;
  }

private:
  bool refuse(const std::string &text, const fpc_clone_block &block) {
    return frame_.refuse(text + "\r\n" + reader_.place(block.line_number));
  }

  bool read_bands(const fpc_clone_block &block) {
    const std::int64_t count = block.n_bands.value_or(0), first = block.first_band.value_or(1);
    const auto n_in_file = static_cast<std::int64_t>(bands_.size() / bytes_of_band);
    const std::string name(block.name);
    if (count > 0 && !block.first_band)
      return refuse("Clone " + name + " has bands, but no place for them in the .cor file.", block);
    if (count < 0 || (count > 0 && (first < 1 || first - 1 + count > n_in_file)))
      return refuse("The bands of clone " + name + " would be the numbers " + std::to_string(first) + " to " +
                        std::to_string(first - 1 + count) + " of the .cor file, which holds " +
                        std::to_string(n_in_file) + ".",
                    block);
    if (const std::string wrong = too_many_bands(count); !wrong.empty())
      end_at(wrong + " in clone " + name, block);
    if (records_.number_of_bands() > most_bands_in_all)
      return refuse("There are more bands than 32 bits can count", block);
    sizes_.clear();
    for (std::int64_t i = first - 1; i < first - 1 + count; ++i)
      sizes_.push_back(band_at(static_cast<std::size_t>(i)));
    std::sort(sizes_.begin(), sizes_.end());
    for (const std::int32_t size : sizes_)
      records_.add_band(database_.BandNumber_for_given_BandLength(size));
    count_bands(block);
    return true;
  }

  std::int32_t band_at(std::size_t i) const {
    const auto byte = [&](std::size_t k) { return static_cast<std::int32_t>(static_cast<unsigned char>(bands_[k])); };
    return byte(bytes_of_band * i) * 256 + byte(bytes_of_band * i + 1);
  }

  void count_bands(const fpc_clone_block &block) {
    const std::span<const band_value> bands = records_.bands(records_.count() - 1);
    if (!bands_fit(bands, database_)) {
      const auto clone = static_cast<clone_number>(records_.count());
      end_at(check_bands_of_clone(bands, clone, name_from_header(frame_, block.name, settings_), database_).text,
             block);
    }
    add_bands_to_frequencies(bands, database_);
    note_number_of_bands(static_cast<std::int32_t>(bands.size()), statistics_);
  }

  [[noreturn]] void end_at(const std::string &text, const fpc_clone_block &block) {
    frame_.program_end_now(text + "\r\n" + reader_.place(block.line_number), exit_status::run_failed);
  }

  process_frame &frame_;
  const project_settings &settings_;
  fpc_file_reader reader_;
  const std::string bands_;
  class_DB_of_clones &database_;
  fingerprint_records &records_;
  band_statistics &statistics_;
  std::vector<std::int32_t> sizes_;
};

} // namespace

std::int32_t n_bands_of_gel(double gel_length, std::int16_t tolerance) {
  const double window = std::max(2.0 * tolerance, 1.0);
  return static_cast<std::int32_t>(std::clamp(std::round(gel_length / window), 1.0, 1e7));
}

library_parameters parameters_of_fpc(const fpc_head &head, library_parameters otherwise) {
  constexpr double most_tolerance = 32000;
  if (!head.tolerance && !head.gel_length)
    return otherwise;
  if (head.tolerance)
    otherwise.tolerance = static_cast<std::int16_t>(std::lround(std::min(*head.tolerance, most_tolerance)));
  if (head.gel_length && *head.gel_length >= 2)
    otherwise.gel_length = std::min(*head.gel_length, LARGEST_band_axis);
  otherwise.n_bands = n_bands_of_gel(otherwise.gel_length, otherwise.tolerance);
  return otherwise;
}

bool read_fpc_fingerprints(process_frame &frame, const project_settings &settings, const fs::path &file,
                           class_DB_of_clones &database, fingerprint_records &records, band_statistics &statistics) {
  if (const std::string why = why_no_text_file(file); !why.empty())
    return frame.refuse("File " + file.string() + " is no text: " + why);
  const fs::path cor = cor_file_of(file);
  std::error_code failed;
  if (!fs::is_regular_file(cor, failed))
    return frame.refuse("File " + file.string() + " holds contigs, but not the bands of their clones: these stand in " +
                        cor.filename().string() + " beside it, and there is no such file.");
  std::string bands = file_bytes(cor);
  if (bands.size() % bytes_of_band != 0)
    return frame.refuse("File " + cor.string() + " has " + std::to_string(bands.size()) +
                        " bytes, and a band has two: it is damaged.");
  frame.step_text_set("File: " + file.string());
  return fpc_library_reader(frame, settings, file, std::move(bands), database, records, statistics).read();
}

} // namespace orb
