// Files made from lists of clones: names in another format, the fingerprint records of chosen clones.
#include <string_view>
#include <unordered_set>

#include "database/class_clone_serv.h"
#include "database/fingerprint_records.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "frame/text_lines.h"
#include "lists/class_list_of_clones.h"

namespace orb {

namespace {

constexpr std::int64_t records_between_reports = 1000;

// Copies the records of chosen names from one file of fingerprint records to another. A record is a header line and
// then numbers, one a line, up to -1 or to the first line that is no number, which is the next header unless it is
// empty.
class record_copier {
public:
  record_copier(process_frame &frame, const project_settings &settings, const class_DB_of_clones &database,
                const std::unordered_set<std::string> &names, double frequency_cutoff)
      : frame_(frame), settings_(settings), database_(database), names_(names), cutoff_(frequency_cutoff) {}

  enum class ending { done, stopped, no_text };
  ending copy(line_reader &lines, result_file &output);
  std::int64_t n_copied() const { return n_copied_; }
  const std::string &problem() const { return problem_; }

private:
  bool is_stopped(const line_reader &lines);
  void begin_record(std::string_view header, result_file &output);
  void end_record(result_file &output);
  bool is_too_frequent(double length) const;

  process_frame &frame_;
  const project_settings &settings_;
  const class_DB_of_clones &database_;
  const std::unordered_set<std::string> &names_;
  double cutoff_;
  bool inside_ = false, copying_ = false; // a record is open; it is one of the chosen
  std::int64_t n_records_ = 0, n_copied_ = 0;
  std::string problem_;
};

bool record_copier::is_stopped(const line_reader &lines) {
  if (n_records_ % records_between_reports != 0)
    return false;
  frame_.progress(lines.position(), lines.size());
  frame_.local_process_text_set(std::to_string(n_records_) + " clones read, " + std::to_string(lines.position()) +
                                " of " + std::to_string(lines.size()) + " bytes");
  return frame_.stop_requested_get();
}

void record_copier::begin_record(std::string_view header, result_file &output) {
  inside_ = true;
  ++n_records_;
  copying_ = names_.count(name_from_header(frame_, header, settings_)) > 0;
  if (copying_)
    output.line(header);
  n_copied_ += copying_;
}

void record_copier::end_record(result_file &output) {
  if (copying_) {
    output.line("-1");
    output.line("");
  }
  inside_ = copying_ = false;
}

bool record_copier::is_too_frequent(double length) const {
  const std::int32_t band = database_.BandNumber_for_given_BandLength(static_cast<double>(static_cast<float>(length)));
  return band >= 0 && static_cast<std::size_t>(band) < database_.frecuency_of_band_in_clones_array().size() &&
         database_.frecuency_of_band_in_clones_get(band) > cutoff_;
}

record_copier::ending record_copier::copy(line_reader &lines, result_file &output) {
  std::string_view line;
  while (lines.next(line)) {
    problem_ = why_no_text(line);
    if (!problem_.empty())
      return ending::no_text;
    double value = 0;
    const bool is_band = inside_ && number_parse(line, value) && value != -1;
    if (is_band) {
      if (copying_ && !is_too_frequent(value))
        output.line(line);
      continue;
    }
    const bool ends_only = inside_ && value == -1; // "-1": no header stands in this line
    if (inside_)
      end_record(output);
    if (ends_only || is_blank_line(line))
      continue;
    begin_record(line, output);
    if (is_stopped(lines))
      return ending::stopped;
  }
  end_record(output);
  return ending::done;
}

// The .sizes files of a folder in their order, or the one file.
std::vector<std::filesystem::path> files_with_bands(const std::filesystem::path &file) {
  if (!std::filesystem::is_directory(file))
    return {file};
  std::vector<std::filesystem::path> files;
  for (const std::string &name : class_serv_raznoe::create_ordered_list_of_files_in_folder(file, "sizes"))
    files.push_back(file / name);
  return files;
}

} // namespace

void class_list_of_clones::print_list_of_clones(const number_list &list, const std::filesystem::path &file,
                                                const class_DB_of_clones &database) const {
  result_file output(file);
  for (const clone_number clone : list.members())
    output.line(database.name_of_clone_get(clone));
  output.commit();
}

bool class_list_of_clones::transform_list_of_clones(std::filesystem::path file, std::filesystem::path result) {
  std::vector<std::string> names;
  std::int32_t count = 0;
  std::string pure_name;
  if (!reading_file_with_list_of_clones(std::move(file), names, count, pure_name))
    return false;
  if (result.empty())
    result = frame_.path_in_working_folder("\\new_" + pure_name + ".txt");
  result_file output(result);
  for (std::size_t i = 1; i < names.size(); ++i)
    output.line(names[i]);
  output.commit();
  return true;
}

bool class_list_of_clones::select_clones_from_database(class_DB_of_clones &database,
                                                       const std::filesystem::path &file_with_list,
                                                       const std::filesystem::path &file_with_bands,
                                                       const std::filesystem::path &result) {
  number_list list;
  std::string pure_name;
  return run_reading_file_with_list_of_clones(file_with_list, list, pure_name, database) &&
         create_file_with_clons_with_list_of_bands(list, list.count(), database, file_with_bands, result);
}

bool class_list_of_clones::create_file_with_clons_with_list_of_bands(const number_list &list, std::int32_t n,
                                                                     const class_DB_of_clones &database,
                                                                     std::filesystem::path file,
                                                                     std::filesystem::path result,
                                                                     std::string frequency_cutoff_text) {
  if (file.empty())
    file = frame_.open_file_dialog("Open file with bands (containing selected clones)");
  if (file.empty())
    return false;
  if (result.empty())
    result = frame_.path_in_working_folder("\\selected_clones_" +
                                           class_serv_raznoe::extract_pure_file_name(file.string()) + ".txt");
  frame_.process_start("Selecting clones and bands");
  if (frequency_cutoff_text.empty())
    frequency_cutoff_text = frame_.input({"Input cutoff for band frequency (among clones)", {}, "1.00"});
  if (frequency_cutoff_text.empty()) {
    frame_.process_canceled();
    return false;
  }
  const double frequency_cutoff = number_from_text(frame_, frequency_cutoff_text);
  std::unordered_set<std::string> names;
  for (std::int32_t i = 1; i <= n; ++i)
    names.insert(database.name_of_clone_get(list(i)));
  result_file output(result);
  record_copier copier(frame_, settings_, database, names, frequency_cutoff);
  for (const std::filesystem::path &source : files_with_bands(file)) {
    line_reader lines(source);
    const record_copier::ending ending = copier.copy(lines, output);
    if (ending == record_copier::ending::stopped) {
      frame_.process_stopped_manually();
      return false;
    }
    if (ending == record_copier::ending::no_text) {
      frame_.refuse("File " + source.string() + " is no text: " + copier.problem() + " of the line\r\n" +
                    lines.place());
      frame_.process_aborted();
      return false;
    }
  }
  output.commit();
  frame_.local_process_text_set(std::to_string(copier.n_copied()) + " clones copied");
  frame_.process_done();
  return true;
}

} // namespace orb
