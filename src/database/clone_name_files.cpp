#include "database/clone_name_files.h"

#include <unordered_set>
#include <utility>
#include <vector>

#include "frame/class_math1.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/text_lines.h"

namespace orb {

namespace {

constexpr std::int64_t lines_between_polls = 1000;

enum class reading { done, stopped, no_text };

// Calls `take(line)` for each line of a text. A stop request is seen at a stride.
template <class take_function>
reading read_lines(process_frame &frame, const std::filesystem::path &file, take_function &&take) {
  line_reader lines(file);
  std::string_view line;
  while (lines.next(line)) {
    if (!is_line_of_text(frame, lines, line))
      return reading::no_text;
    take(line);
    if (lines.line_number() % lines_between_polls != 0)
      continue;
    frame.progress(lines.position(), lines.size());
    frame.local_process_text_set(std::to_string(lines.line_number()) + " lines");
    if (frame.stop_requested_get())
      return reading::stopped;
  }
  return frame.goes_on() ? reading::done : reading::stopped;
}

bool end_unless_done(process_frame &frame, reading ending) {
  if (ending == reading::stopped)
    frame.process_stopped_manually();
  if (ending == reading::no_text)
    frame.process_aborted();
  return ending == reading::done;
}

using new_name_of_clones = std::vector<std::pair<number_list, std::string>>;

// What the lines of a file of new names say. Names change only when all of it was read.
class new_names_reader {
public:
  new_names_reader(const class_DB_of_clones &database, result_file &not_found, new_names_summary &summary)
      : database_(database), not_found_(not_found), summary_(summary) {}

  void take(std::string_view line) {
    if (line.empty())
      return;
    ++summary_.n_lines;
    class_serv_raznoe::cut_string(line, fields_);
    const std::string old_name = fields_.size() > 1 ? fields_[1] : std::string();
    number_list clones = database_.clone_number_get_with_repeats(old_name);
    if (clones.empty()) {
      not_found_.line(old_name);
      return;
    }
    ++summary_.n_found;
    if (!fields_[0].empty() && fields_[0][0] != '#')
      changes_.emplace_back(std::move(clones), std::move(fields_[0]));
  }
  const new_name_of_clones &changes() const { return changes_; }

private:
  const class_DB_of_clones &database_;
  result_file &not_found_;
  new_names_summary &summary_;
  std::vector<std::string> fields_;
  new_name_of_clones changes_;
};

std::int64_t rename(class_DB_of_clones &database, const new_name_of_clones &changes) {
  std::int64_t n_changes = 0;
  for (const auto &[clones, name] : changes)
    for (const clone_number clone : clones.members())
      if (database.name_of_clone_get(clone) != name) {
        database.name_of_clone_set(clone, name);
        ++n_changes;
      }
  return n_changes;
}

void tell(process_frame &frame, const class_DB_of_clones &database, const new_names_summary &summary) {
  frame.message("Loaded file with new names for some clones:\rTotal number of lines = " +
                std::to_string(summary.n_lines) + "\rNumber of correct old names=" + std::to_string(summary.n_found) +
                "\r(out of total number of clones=" + std::to_string(database.total_number_of_clones_get()) +
                ")\rTotal number of changes=" + std::to_string(summary.n_changes));
}

// The clone of a name, if need be of its letters and digits, or of their beginning; -1: none.
clone_number clone_of_odd_name(const class_DB_of_clones &database, std::string_view name) {
  clone_number clone = database.clone_number_get(name);
  if (clone >= 1)
    return clone;
  std::string plain = class_serv_raznoe::string_with_letters_and_numbers_only_get(name);
  for (; !plain.empty() && clone < 1; plain.pop_back())
    clone = database.clone_number_get(plain);
  return clone;
}

// Calls `take(name)` for each name between commas, without the blanks around it.
template <class take_function> void for_names_of_line(std::string_view line, take_function &&take) {
  while (!line.empty()) {
    const std::size_t end = std::min(line.find(','), line.size());
    const std::string_view name = trimmed(line.substr(0, end));
    line.remove_prefix(std::min(end + 1, line.size()));
    if (!name.empty())
      take(name);
  }
}

bool is_exclusion_wanted(process_frame &frame, const std::optional<bool> &given) {
  if (given)
    return *given;
  question asked;
  asked.text = "Need to exclude some clones?";
  return frame.yes(asked);
}

reading read_excluded(process_frame &frame, const class_DB_of_clones &database, const std::filesystem::path &file,
                      std::unordered_set<clone_number> &excluded) {
  std::int64_t n_lines = 0;
  const reading ending = read_lines(frame, file, [&](std::string_view line) {
    ++n_lines;
    for_names_of_line(line, [&](std::string_view name) { excluded.insert(database.clone_number_get(name)); });
  });
  if (ending == reading::done && n_lines == 0)
    frame.message("no lines!");
  return ending;
}

std::string line_of_names(const class_DB_of_clones &database, std::string_view line,
                          const std::unordered_set<clone_number> &excluded) {
  number_list clones;
  for_names_of_line(line, [&](std::string_view name) {
    const clone_number clone = clone_of_odd_name(database, name);
    if (clone >= 1 && excluded.count(clone) == 0)
      clones.add(clone);
  });
  class_math1::sort_list_of_long_and_delete_repeats(clones);
  std::string text;
  for (const clone_number clone : clones.members())
    (text += text.empty() ? "" : ",") += database.name_of_clone_get(clone);
  return text;
}

} // namespace

bool load_new_clone_names(process_frame &frame, class_DB_of_clones &database, std::filesystem::path file,
                          const std::function<void()> &save, new_names_summary &summary) {
  summary = {};
  if (file.empty())
    file = frame.open_file_dialog("Open file with new names of clones...");
  if (file.empty())
    return false;
  frame.process_start("Loading new names for clones");
  const std::string logged = frame.process_name_get() + " " + file.string();
  frame.log_line(logged);
  if (!database.clone_name_sorted_is_created_get())
    database.sort_clones_by_name(frame);
  summary.not_found = frame.path_in_working_folder("\\not_found.txt");
  result_file not_found(summary.not_found);
  new_names_reader names(database, not_found, summary);
  if (!end_unless_done(frame, read_lines(frame, file, [&](std::string_view line) { names.take(line); })))
    return false;
  not_found.commit();
  summary.n_changes = rename(database, names.changes());
  if (summary.n_changes > 0)
    database.sort_clones_by_name(frame);
  tell(frame, database, summary);
  frame.log_line(logged);
  frame.all_panels_reset();
  if (summary.n_changes == 0 || !save)
    return true;
  question asked;
  asked.text = "Do you want to save new version of clone database?";
  if (frame.yes(asked))
    save();
  return true;
}

bool extract_lists_of_clone_names(process_frame &frame, const class_DB_of_clones &database,
                                  const lists_of_names_options &options, std::filesystem::path &written) {
  const std::filesystem::path file =
      options.file.empty() ? frame.open_file_dialog("Open file with lists of clone names") : options.file;
  if (file.empty())
    return false;
  std::filesystem::path file_to_exclude = options.file_to_exclude;
  const bool exclude = is_exclusion_wanted(frame, options.exclude);
  if (exclude && file_to_exclude.empty())
    file_to_exclude = frame.open_file_dialog("Open file with clone names to exclude");
  if (exclude && file_to_exclude.empty())
    return false;
  frame.process_start("Extracting lists of clone names");
  std::unordered_set<clone_number> excluded;
  if (exclude && !end_unless_done(frame, read_excluded(frame, database, file_to_exclude, excluded)))
    return false;
  const auto column = frame.path_in_working_folder("\\column_with_clone_names.txt");
  result_file output(column);
  const reading ending =
      read_lines(frame, file, [&](std::string_view line) { output.line(line_of_names(database, line, excluded)); });
  if (!end_unless_done(frame, ending))
    return false;
  output.commit();
  written = column;
  frame.all_panels_reset();
  return true;
}

} // namespace orb
