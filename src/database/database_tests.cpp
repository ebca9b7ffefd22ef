#include "database/database_tests.h"

#include <string_view>
#include <unordered_set>

#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

void test_database_on_repeats(process_frame &frame, const class_DB_of_clones &database, bool file_is_wanted,
                              const std::function<void(const number_list &)> &write_fingerprint_file) {
  std::unordered_set<std::string_view> names;
  number_list unique;
  for (clone_number i = 1; i <= database.total_number_of_clones_get(); ++i)
    if (names.insert(database.name_of_clone_get(i)).second)
      unique.add(i);
  const std::int32_t n_repeats = database.total_number_of_clones_get() - unique.count();
  question asked;
  asked.text = "Repeats=" + std::to_string(n_repeats) +
               ", Not_eq=0. Make file without repeats? (You will need to select file with DataBase again)";
  asked.choice = answer_choice::ok_cancel;
  asked.by_default = file_is_wanted ? answer::yes : answer::cancel;
  if (frame.yes(asked))
    write_fingerprint_file(unique);
}

void print_names_of_all_clones(process_frame &frame, const class_DB_of_clones &database,
                               std::optional<bool> with_counts) {
  question asked;
  asked.text = "Need number of bands?";
  if (!with_counts)
    with_counts = frame.yes(asked);
  result_file list(frame.path_in_working_folder("\\DB.txt"));
  for (clone_number i = 1; i <= database.total_number_of_clones_get(); ++i) {
    std::string row = database.name_of_clone_get(i);
    if (*with_counts)
      row.append("\t").append(std::to_string(database.number_of_bands_in_clone_get(i)));
    list.line(row);
  }
  list.commit();
}

bool test_for_Reviewer(process_frame &frame, std::filesystem::path file) {
  if (file.empty())
    file = frame.open_file_dialog("Open .sizes file to test");
  if (file.empty())
    return false;
  line_reader lines(file);
  result_file report(frame.path_in_working_folder("\\testRes.txt"));
  // The parser takes point and comma alike, so that a line and its swapped form are numbers together.
  const auto understood = [](std::string_view text) {
    double value = 0;
    const bool is_number = number_parse(text, value);
    return std::string(is_number ? "True\t" : "False\t") + (is_number ? number_text(value, 4) : "-");
  };
  std::string_view line;
  while (lines.next(line)) {
    std::string row = std::string(line) + "\t" + understood(line);
    if (!text_is_number(line)) {
      const std::string swapped = decimal_sign_swapped(line);
      row += "\t" + swapped + "\t" + understood(swapped);
    }
    report.line(row);
  }
  report.commit();
  frame.message("Ok");
  return true;
}

} // namespace orb
