// class_markers: a marker file whose form nobody told.
#include "database/class_DB_of_clones.h"
#include "database/class_markers.h"
#include "database/marker_lines.h"
#include "database/marker_native_heads.h"
#include "frame/class_serv_raznoe.h"
#include "frame/text_lines.h"

namespace orb {

namespace {

// Does one of the names, with commas, semicolons or blanks between them, belong to a clone?
bool names_a_clone(std::string_view text, const class_DB_of_clones &database) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(",; "), text.size());
    if (end > 0 && database.clone_number_get(text.substr(0, end)) >= 1)
      return true;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return false;
}

marker_file_form form_of_lines(const marker_lines &lines, const class_DB_of_clones &database) {
  std::int64_t n_first = 0, n_second = 0; // lines with known clones in these columns
  bool has_third = false;
  std::vector<std::string_view> fields;
  for (std::int32_t i = 1; i <= lines.count(); ++i) {
    class_serv_raznoe::cut_string_views(lines.line(i), fields);
    const std::string_view first = trimmed(fields[0]);
    n_first += !first.empty() && database.clone_number_get(first) >= 1;
    n_second += fields.size() > 1 && names_a_clone(fields[1], database);
    has_third = has_third || (fields.size() > 2 && !trimmed(fields[2]).empty());
  }
  if (n_first == 0 && n_second == 0)
    return marker_file_form::unknown;
  if (n_second > n_first)
    return marker_file_form::clones_of_markers;
  return has_third ? marker_file_form::markers_of_clones_in_fields : marker_file_form::markers_of_clones_in_one_column;
}

std::string words_of_form(marker_file_form form) {
  switch (form) {
  case marker_file_form::markers_of_clones_in_fields:
    return "markers for each clone, each in a field";
  case marker_file_form::markers_of_clones_in_one_column:
    return "markers for each clone, with commas in one column";
  case marker_file_form::clones_of_markers:
    return "clones for each marker";
  case marker_file_form::native:
    return "native form";
  default:
    return "unknown form";
  }
}

} // namespace

bool class_markers::read_markers_of_any_text_form(process_frame &frame, class_DB_of_clones &database,
                                                  const std::filesystem::path &file, marker_file_form &form,
                                                  marker_read_summary *summary) {
  form = marker_file_form::unknown;
  if (!database.clone_name_sorted_is_created_get())
    database.sort_clones_by_name(frame);
  {
    marker_lines lines;
    if (!read_marker_lines(frame, file, lines))
      return false;
    if (lines.count() >= 1 && lines.line(1) == marker_native_heads::n_clones_head)
      form = marker_file_form::native;
    else
      form = form_of_lines(lines, database);
  }
  frame.log_line("Markers of " + file.string() + ": " + words_of_form(form));
  const bool in_one_column = form == marker_file_form::markers_of_clones_in_one_column;
  switch (form) {
  case marker_file_form::native:
    return run_file_about_markers_ORB_format_load(frame, database, file);
  case marker_file_form::clones_of_markers:
    return file_with_list_of_clones_for_each_marker_read(frame, database, file, summary);
  case marker_file_form::unknown:
    return frame.refuse(
        "No clone of the database is named in the first or the second column of the marker file\r\nfile " +
        file.string());
  default:
    return file_with_list_of_markers_for_each_clone_read(frame, database, true, file, &in_one_column, summary);
  }
}

} // namespace orb
