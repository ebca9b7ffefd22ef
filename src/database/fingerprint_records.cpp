#include "database/fingerprint_records.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "database/class_clone_serv.h"
#include "frame/class_serv_raznoe.h"
#include "frame/numbers.h"
#include "frame/text_lines.h"

namespace orb {

void fingerprint_records::start(std::string_view header) {
  headers_ += header;
  first_character_.push_back(headers_.size());
  first_band_.push_back(bands_.size());
}

// ---- ordering ------------------------------------------------------------------------------------------------------

fingerprint_records::ordering fingerprint_records::order_without_copies() const {
  std::vector<std::uint32_t> order(count());
  std::iota(order.begin(), order.end(), 0U);
  std::sort(order.begin(), order.end(), [this](std::uint32_t a, std::uint32_t b) {
    const int compared = header(a).compare(header(b));
    return compared != 0 ? compared < 0 : a < b;
  });
  ordering result;
  result.kept.reserve(order.size());
  std::vector<std::uint32_t> run;    // the records of one header line
  std::vector<std::uint32_t> copies; // those of them that are left out
  for (std::size_t first = 0, end = 0; first < order.size(); first = end) {
    end = first + 1;
    while (end < order.size() && header(order[end]) == header(order[first]))
      ++end;
    run.assign(order.begin() + static_cast<std::ptrdiff_t>(first), order.begin() + static_cast<std::ptrdiff_t>(end));
    copies.clear();
    if (run.size() > 1) {
      const auto same = [this](std::uint32_t a, std::uint32_t b) { return std::ranges::equal(bands(a), bands(b)); };
      std::stable_sort(run.begin(), run.end(), [this](std::uint32_t a, std::uint32_t b) {
        return std::ranges::lexicographical_compare(bands(a), bands(b));
      });
      for (std::size_t i = 1; i < run.size(); ++i) {
        if (!same(run[i - 1], run[i]))
          continue;
        result.n_repeated += i == 1 || !same(run[i - 2], run[i - 1]);
        copies.push_back(run[i]);
      }
      std::sort(copies.begin(), copies.end());
    }
    for (std::size_t i = first; i < end; ++i)
      if (!std::binary_search(copies.begin(), copies.end(), order[i]))
        result.kept.push_back(order[i]);
    result.n_copies += static_cast<std::int32_t>(copies.size());
  }
  return result;
}

record_doubts doubts_told_to(process_frame &frame) {
  return record_doubts([&frame](const std::string &what, const std::string &place) { frame.doubt(what, place); });
}

std::string name_from_header(process_frame &frame, std::string_view header, const project_settings &settings) {
  return class_clone_serv::extract_clone_name(class_serv_raznoe::take_text_from_begin(frame, header),
                                              settings.clone_name_format_input, settings.clone_name_format_output,
                                              settings);
}

// ---- reading -------------------------------------------------------------------------------------------------------

static bool next_line_with_text(line_reader &lines, std::string_view &line) {
  while (lines.next(line))
    if (!is_blank_line(line))
      return true;
  return false;
}

bool sizes_file_reader::read_file(const std::filesystem::path &file) {
  line_reader lines(file);
  std::string_view line;
  bool header_follows = next_line_with_text(lines, line);
  while (header_follows) {
    if (!is_line_of_text(frame_, lines, line))
      return false;
    if (records_.number_of_bands() > std::numeric_limits<std::int32_t>::max() - 1000)
      return frame_.refuse("There are more bands than 32 bits can count\r\n" + lines.place());
    records_.start(line);
    doubts_.begin(line, lines);
    if (records_.count() % 1000 == 0)
      show_progress(lines);
    read_bands(lines, line, header_follows);
    if (frame_.stop_requested_get())
      return true;
    if (!header_follows)
      header_follows = next_line_with_text(lines, line);
  }
  bytes_of_finished_files_ += lines.size();
  return true;
}

// Leaves the next header in `line` when it ended the record.
void sizes_file_reader::read_bands(line_reader &lines, std::string_view &line, bool &header_follows) {
  const std::int64_t header_line = lines.line_number();
  constexpr std::int64_t most_kept = class_DB_of_clones::MAX_number_of_bands_in_clone_get();
  std::int64_t count = 0;
  header_follows = false;
  double value = 0;
  record_doubts::ending how = record_doubts::ending::file_end;
  while (lines.next(line)) {
    if (!number_parse(line, value)) {
      header_follows = !is_blank_line(line);
      how = header_follows ? record_doubts::ending::text : record_doubts::ending::blank_line;
      break;
    }
    if (value == -1) {
      how = record_doubts::ending::mark;
      break;
    }
    // more bands than a clone may have are only counted
    if (++count <= most_kept)
      records_.add_band(database_.BandNumber_for_given_BandLength(static_cast<double>(static_cast<float>(value))));
  }
  doubts_.end(how, count, line, lines);
  close_record(lines, header_line, count);
}

void sizes_file_reader::close_record(const line_reader &lines, std::int64_t header_line, std::int64_t count) {
  const auto end_at = [&](const std::string &text, std::int64_t band) {
    frame_.program_end_now(text + "\r\nfile " + lines.path().string() + ", line " + std::to_string(header_line + band),
                           exit_status::run_failed);
  };
  if (const std::string text = too_many_bands(count); !text.empty())
    end_at(text, class_DB_of_clones::MAX_number_of_bands_in_clone_get() + 1);
  const std::size_t record = records_.count() - 1;
  const std::span<const band_value> bands = records_.bands(record);
  if (!bands_fit(bands, database_)) {
    const wrong_bands wrong =
        check_bands_of_clone(bands, static_cast<clone_number>(records_.count()),
                             name_from_header(frame_, records_.header(record), settings_), database_);
    end_at(wrong.text, wrong.position);
  }
  add_bands_to_frequencies(bands, database_);
  note_number_of_bands(static_cast<std::int32_t>(count), statistics_);
}

void sizes_file_reader::show_progress(const line_reader &lines) {
  frame_.progress(bytes_of_finished_files_ + lines.position(), total_bytes_);
  const double read = static_cast<double>(bytes_of_finished_files_ + lines.position());
  const double share = total_bytes_ > 0 ? std::min(read / static_cast<double>(total_bytes_), 1.0) : 1.0;
  frame_.local_process_text_set(std::to_string(records_.count()) + " clones (about " + number_text(100 * share, 2) +
                                "%) loaded");
}

} // namespace orb
