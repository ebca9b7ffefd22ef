#include "database/plain_text_clones.h"

#include <limits>

#include "database/fingerprint_records.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "frame/text_lines.h"

namespace orb {

namespace {

constexpr std::int32_t most_bands = class_DB_of_clones::MAX_number_of_bands_in_clone_get();

class plain_text_reader {
public:
  plain_text_reader(process_frame &frame, const project_settings &settings, const std::filesystem::path &file,
                    bool store, class_DB_of_clones &database, band_statistics &statistics)
      : frame_(frame), settings_(settings), store_(store), database_(database), statistics_(statistics), lines_(file),
        doubts_(doubts_told_to(frame)) {}

  bool read() {
    bool is_number = true;
    std::string_view line;
    for (;;) {
      if (is_number)
        next_passing_one_empty(line);
      while (is_blank_line(line) && next(line)) {
      }
      if (is_blank_line(line))
        break;
      if (!is_line_of_text(frame_, lines_, line))
        return false;
      if (database_.next_free_band_adress_get() > std::numeric_limits<std::int32_t>::max() - 1000) {
        return frame_.refuse("There are more bands than 32 bits can count\r\n" + lines_.place());
      }
      start_clone(line);
      is_number = read_bands(line);
    }
    doubts_.finish();
    database_.total_number_of_clones_set(n_clones_);
    return true;
  }

private:
  bool next(std::string_view &line) {
    if (lines_.next(line))
      return true;
    line = {};
    return false;
  }

  void next_passing_one_empty(std::string_view &line) {
    if (next(line) && is_blank_line(line))
      next(line);
  }

  void start_clone(std::string_view header) {
    ++n_clones_;
    doubts_.begin(header, lines_);
    if (n_clones_ % 1000 == 0) {
      frame_.progress(lines_.position(), lines_.size());
      frame_.local_process_text_set(std::to_string(n_clones_) + " clones loaded");
    }
    name_ = name_from_header(frame_, header, settings_);
    if (store_)
      database_.name_of_clone_set(n_clones_, name_);
  }

  // Returns whether the line that ended the clone is a number; one that isn't stays in `line`.
  bool read_bands(std::string_view &line) {
    bands_.clear();
    lines_of_bands_.clear();
    std::int64_t count = 0;
    for (;;) {
      next_passing_one_empty(line);
      double value = 0;
      const bool is_number = number_parse(line, value);
      if (!is_number || is_end_mark(line)) {
        doubts_.end(ending_by(line, is_number), count, line, lines_);
        close_clone(count);
        return is_number;
      }
      if (++count > most_bands + 1)
        continue; // only counted
      bands_.push_back(database_.BandNumber_for_given_BandLength(value));
      lines_of_bands_.push_back(lines_.line_number());
    }
  }

  // "-1", with blanks around it at most; "-1.0" is deliberately a (wrong) band here.
  static bool is_end_mark(std::string_view line) { return trimmed(line) == "-1"; }

  record_doubts::ending ending_by(std::string_view line, bool is_number) {
    using ending = record_doubts::ending;
    if (is_number)
      return ending::mark;
    return !is_blank_line(line) ? ending::text : lines_.at_end() ? ending::file_end : ending::blank_line;
  }

  void close_clone(std::int64_t count) {
    const auto end_at = [this](const std::string &text, std::int32_t band) {
      frame_.program_end_now(text + "\r\nfile " + lines_.path().string() + ", line " +
                                 std::to_string(lines_of_bands_[static_cast<std::size_t>(band) - 1]),
                             exit_status::run_failed);
    };
    if (const std::string text = too_many_bands(count); !text.empty())
      end_at(text, most_bands + 1);
    if (const wrong_bands wrong = check_bands_of_clone(bands_, n_clones_, name_, database_))
      end_at(wrong.text, wrong.position);
    if (store_)
      database_.ListOfBands_from_real_database_fast_all_bands_set(n_clones_, bands_);
    add_bands_to_frequencies(bands_, database_);
    note_number_of_bands(static_cast<std::int32_t>(count), statistics_);
  }

  process_frame &frame_;
  const project_settings &settings_;
  bool store_;
  class_DB_of_clones &database_;
  band_statistics &statistics_;
  line_reader lines_;
  std::int32_t n_clones_ = 0;
  std::string name_;
  std::vector<band_value> bands_;
  std::vector<std::int64_t> lines_of_bands_;
  record_doubts doubts_;
};

} // namespace

bool read_plain_text_file(process_frame &frame, const project_settings &settings, const std::filesystem::path &file,
                          bool store, class_DB_of_clones &database, band_statistics &statistics) {
  if (const std::string wrong = wrong_band_axis(database); !wrong.empty()) {
    return frame.refuse(wrong);
  }
  prepare_band_statistics(database, statistics);
  if (store)
    database.inicalise_database(frame, 0, 0);
  if (!plain_text_reader(frame, settings, file, store, database, statistics).read())
    return false;
  frame.process_start("Print reports...");
  frame.all_panels_reset();
  return true;
}

} // namespace orb
