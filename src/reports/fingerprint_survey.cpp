#include "reports/fingerprint_survey.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <unordered_map>

#include "database/band_statistics.h"
#include "database/record_doubts.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "frame/text_lines.h"

namespace orb {

namespace {

constexpr std::size_t problems_named = 10;

// What is kept of a record to find copies and repeated names: checksums of its texts.
struct record_trace {
  std::uint32_t header = 0, bands = 0;
};

class surveyor {
public:
  explicit surveyor(fingerprint_survey &survey)
      : survey_(survey), doubts_([this](const std::string &what, const std::string &place) { problem(what, place); }) {}

  void file(const std::filesystem::path &path) {
    line_reader lines(path);
    std::string_view line;
    bool inside = false;
    while (lines.next(line)) {
      double value = 0;
      const bool number = inside && number_parse(line, value);
      if (number && value != -1) {
        band(line, value, lines);
      } else {
        const bool is_text = !number && !is_blank_line(line);
        if (inside)
          end_of_record(number ? ending::mark : is_text ? ending::text : ending::blank_line, line, lines);
        inside = is_text;
        if (inside)
          start_of_record(line, lines);
      }
    }
    if (inside)
      end_of_record(ending::file_end, {}, lines);
    ++survey_.n_files;
  }

  void finish() {
    doubts_.finish();
    for (const auto &[name, seen] : traces_) {
      std::vector<std::pair<std::uint32_t, std::uint32_t>> different;
      for (const record_trace &trace : seen)
        different.emplace_back(trace.header, trace.bands);
      std::sort(different.begin(), different.end());
      const auto end = std::unique(different.begin(), different.end());
      survey_.n_exact_copies += different.end() - end;
      survey_.n_repeated_names += end - different.begin() > 1;
    }
  }

private:
  using ending = record_doubts::ending;

  void start_of_record(std::string_view header, const line_reader &lines) {
    doubts_.begin(header, lines);
    name_ = std::string(header.substr(0, header.find_first_of(" \t")));
    trace_ = {crc32_of(header), 0};
    n_ = 0;
    last_ = 0;
  }

  void band(std::string_view text, double value, const line_reader &lines) {
    if (survey_.n_bands == 0)
      survey_.smallest_band = survey_.largest_band = value;
    survey_.smallest_band = std::min(survey_.smallest_band, value);
    survey_.largest_band = std::max(survey_.largest_band, value);
    ++survey_.n_bands;
    ++n_;
    const double stored = std::floor(static_cast<float>(value));
    if (value < 0)
      problem(fmt::format("negative band {}", text), lines.place());
    if (n_ > 1 && stored < last_)
      problem(fmt::format("band {} after a larger one", text), lines.place());
    if (n_ == 501)
      problem("more than 500 bands in clone " + name_, lines.place());
    last_ = stored;
    if (const std::size_t sign = text.find_first_of(".,"); sign != std::string_view::npos) {
      (text[sign] == '.' ? survey_.has_point : survey_.has_comma) = true;
      const std::size_t end = text.find_first_not_of("0123456789", sign + 1);
      survey_.decimals = std::max(survey_.decimals, static_cast<int>(std::min(end, text.size()) - sign - 1));
    }
    trace_.bands = crc32_of({reinterpret_cast<const char *>(&stored), sizeof stored}, trace_.bands);
  }

  void end_of_record(ending how, std::string_view line, const line_reader &lines) {
    doubts_.end(how, n_, line, lines);
    if (n_ == 0)
      ++survey_.n_without_bands;
    ++survey_.n_records;
    survey_.fewest_bands = survey_.n_records == 1 ? n_ : std::min(survey_.fewest_bands, n_);
    survey_.most_bands = std::max(survey_.most_bands, n_);
    traces_[name_].push_back(trace_);
  }

  void problem(const std::string &text, const std::string &place) {
    if (survey_.problems.size() < problems_named && !text.empty())
      survey_.problems.push_back(text + " (" + place + ")");
    ++survey_.n_problems;
  }

  fingerprint_survey &survey_;
  record_doubts doubts_;
  std::unordered_map<std::string, std::vector<record_trace>> traces_;
  std::string name_;
  record_trace trace_;
  std::int64_t n_ = 0;
  double last_ = 0;
};

} // namespace

fingerprint_survey survey_of_fingerprints(const std::vector<std::filesystem::path> &files) {
  fingerprint_survey survey;
  surveyor at_work(survey);
  for (const std::filesystem::path &file : files)
    at_work.file(file);
  at_work.finish();
  return survey;
}

} // namespace orb
