// Fingerprint records as they stand in .sizes files, before they become clones: header lines and bands in flat stores,
// in the order of reading.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "database/band_statistics.h"
#include "database/class_DB_of_clones.h"
#include "database/record_doubts.h"
#include "frame/files.h"
#include "frame/process_frame.h"
#include "frame/settings.h"

namespace orb {

// Records are numbered from 0 here.
class fingerprint_records {
public:
  void start(std::string_view header);
  void add_band(band_value band) { bands_.push_back(band); }

  std::size_t count() const { return first_band_.size(); }
  std::string_view header(std::size_t i) const {
    return {headers_.data() + first_character_[i], first_character_[i + 1] - first_character_[i]};
  }
  std::span<const band_value> bands(std::size_t i) const {
    const std::size_t end = i + 1 < first_band_.size() ? first_band_[i + 1] : bands_.size();
    return {bands_.data() + first_band_[i], end - first_band_[i]};
  }
  std::size_t number_of_bands() const { return bands_.size(); }

  // The order of the header lines by bytes, equal lines in the order of reading, without exact copies: of records with
  // the same header line and the same bands the first stays. n log n.
  struct ordering {
    std::vector<std::uint32_t> kept;
    std::int32_t n_repeated = 0; // records that had copies
    std::int32_t n_copies = 0;   // copies left out
  };
  ordering order_without_copies() const;

private:
  std::string headers_;
  std::vector<std::size_t> first_character_{0};
  std::vector<band_value> bands_;
  std::vector<std::size_t> first_band_;
};

// Doubts that become a warning at the end of the command.
record_doubts doubts_told_to(process_frame &frame);
// The name in a header line, in the output format.
std::string name_from_header(process_frame &frame, std::string_view header, const project_settings &settings);

// Reads .sizes files one after another into the records. A record: a header line, then one number a line up to -1, any
// other line that isn't a number (also the next header, unless it is empty), or the end of the file. Values pass
// through float32 and become band numbers by the parameters of `database`, where the bands are counted as well. A
// wrong band or a clone of more than 500 ends the program with file and line.
class sizes_file_reader {
public:
  sizes_file_reader(process_frame &frame, const project_settings &settings, class_DB_of_clones &database,
                    fingerprint_records &records, band_statistics &statistics, std::int64_t total_bytes)
      : frame_(frame), settings_(settings), database_(database), records_(records), statistics_(statistics),
        total_bytes_(total_bytes), doubts_(doubts_told_to(frame)) {}

  // False when the file is refused: the message was shown. A stop request ends the reading behind a record.
  bool read_file(const std::filesystem::path &file);
  // Behind the last file.
  void finish() { doubts_.finish(); }

private:
  void read_bands(line_reader &lines, std::string_view &line, bool &header_follows);
  void close_record(const line_reader &lines, std::int64_t header_line, std::int64_t count);
  void show_progress(const line_reader &lines);

  process_frame &frame_;
  const project_settings &settings_;
  class_DB_of_clones &database_;
  fingerprint_records &records_;
  band_statistics &statistics_;
  std::int64_t total_bytes_ = 0, bytes_of_finished_files_ = 0;
  record_doubts doubts_;
};

} // namespace orb
