// class_markers: the text forms, one line a clone or one line a marker.
#include <algorithm>

#include "database/class_DB_of_clones.h"
#include "database/class_markers.h"
#include "database/marker_lines.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/text_lines.h"

namespace orb {

namespace {

constexpr std::size_t most_fields_of_clone = 20; // the clone and 19 markers
constexpr std::int32_t most_fields_of_marker = 100;
constexpr std::int32_t usual_number_of_markers = 15000;

// A line of the form "markers for each clone".
struct line_of_clone {
  std::string_view clone;
  std::vector<std::string> names{{}}; // from 1
  bool is_problematic = false;        // a name behind an empty one, or a field too many: neither is taken
  std::vector<std::string_view> fields;

  std::int32_t n_names() const { return static_cast<std::int32_t>(names.size()) - 1; }
  void take(std::string_view line, bool one_column);

private:
  void take_name(std::string_view name, bool &ended);
};

void line_of_clone::take_name(std::string_view name, bool &ended) {
  name = trimmed(name);
  if (name.empty())
    ended = true;
  else if (ended)
    is_problematic = true;
  else
    names.emplace_back(name);
}

void line_of_clone::take(std::string_view line, bool one_column) {
  class_serv_raznoe::cut_string_views(line, fields);
  clone = trimmed(fields[0]);
  names.resize(1);
  is_problematic = false;
  const std::size_t n_read = std::min(fields.size(), one_column ? 2 : most_fields_of_clone);
  for (std::size_t i = n_read; i < fields.size(); ++i)
    is_problematic = is_problematic || !trimmed(fields[i]).empty();
  bool ended = false;
  if (!one_column) {
    for (std::size_t i = 1; i < n_read; ++i)
      take_name(fields[i], ended);
    return;
  }
  for (std::string_view rest = fields.size() > 1 ? fields[1] : std::string_view(); !rest.empty();) {
    const std::size_t end = std::min(rest.find(','), rest.size());
    take_name(rest.substr(0, end), ended);
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
}

// Fields 2 and on, trimmed, up to the last that isn't empty, with tabs between them.
std::string position_in_fields(const std::vector<std::string_view> &fields) {
  std::size_t end = fields.size();
  while (end > 2 && trimmed(fields[end - 1]).empty())
    --end;
  std::string position;
  for (std::size_t i = 2; i < end; ++i) {
    if (i > 2)
      position += '\t';
    position += trimmed(fields[i]);
  }
  return position;
}

void sort_names(process_frame &frame, class_DB_of_clones &database) {
  if (!database.clone_name_sorted_is_created_get())
    database.sort_clones_by_name(frame);
}

} // namespace

// ---- markers for each clone ----------------------------------------------------------------------------------------

namespace {

// The work of that reader: `loaded` is compared with the file, or `fresh` is filled from it.
class clone_marker_reader {
public:
  clone_marker_reader(process_frame &frame_used, const class_DB_of_clones &clones, const marker_lines &lines_read,
                      marker_read_summary &found)
      : frame(frame_used), database(clones), lines(lines_read), summary(found) {}

  bool read(bool one_column, class_markers &markers, bool create_new);

private:
  void compare(const line_of_clone &line, std::int32_t i, clone_number clone, class_markers &loaded);

  process_frame &frame;
  const class_DB_of_clones &database;
  const marker_lines &lines;
  marker_read_summary &summary;
  number_list numbers;
  std::vector<bool> is_new;
};

bool clone_marker_reader::read(bool one_column, class_markers &markers, bool create_new) {
  line_of_clone line;
  for (std::int32_t i = 1; i <= lines.count(); ++i) {
    if (!goes_on_behind_marker_line(frame, lines, i))
      return false;
    if (is_blank_line(lines.line(i)))
      continue;
    ++summary.n_lines;
    line.take(lines.line(i), one_column);
    const clone_number clone = line.clone.empty() ? -1 : database.clone_number_get(line.clone);
    if (clone < 1) {
      ++summary.n_unknown_clone_names;
      report_marker_line(frame, "New clone " + std::string(line.clone), lines, i);
      continue;
    }
    if (line.is_problematic) {
      ++summary.n_problematic_lines;
      report_marker_line(frame, "Problematic line: " + lines.line(i), lines, i);
    }
    if (!create_new)
      compare(line, i, clone, markers);
    else if (line.n_names() > 0)
      markers.add_clone_with_markers_new(frame, clone, line.names, line.n_names(), numbers, is_new);
  }
  return true;
}

void clone_marker_reader::compare(const line_of_clone &line, std::int32_t i, clone_number clone,
                                  class_markers &loaded) {
  std::vector<std::string> names(line.names.begin() + 1, line.names.end());
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  for (const std::string &name : names) {
    std::int32_t marker = -1;
    bool new_name = false;
    loaded.marker_number_for_given_marker_name(name, marker, false, new_name);
    if (new_name)
      report_marker_line(frame, "it_is_new_marker: " + name + " " + lines.line(i), lines, i);
  }
  const std::int32_t n_loaded = loaded.n_markers_in_clone_get(clone);
  if (static_cast<std::size_t>(n_loaded) != names.size())
    report_marker_line(
        frame, "nl2 <> nl1: " + lines.line(i) + " " + std::to_string(names.size()) + " " + std::to_string(n_loaded),
        lines, i);
}

} // namespace

bool class_markers::file_with_list_of_markers_for_each_clone_read(process_frame &frame, class_DB_of_clones &database,
                                                                  bool create_new, std::filesystem::path file,
                                                                  const bool *one_column,
                                                                  marker_read_summary *summary) {
  if (file.empty())
    file = frame.open_file_dialog("Open file with clones and markers");
  if (file.empty())
    return false;
  question commas;
  commas.text = "One column with marker names?";
  commas.by_default = answer::yes; // the form that the program itself writes
  const bool in_one_column = one_column != nullptr ? *one_column : frame.yes(commas);
  marker_lines lines;
  if (!read_marker_lines(frame, file, lines))
    return false;
  sort_names(frame, database);
  class_markers fresh;
  const std::int32_t n_clones = database.total_number_of_clones_get();
  if (create_new)
    fresh.redim_private_arrays(n_clones, n_clones, std::min(n_clones, 100000000) * 10);
  marker_read_summary found;
  clone_marker_reader reader(frame, database, lines, found);
  if (!reader.read(in_one_column, create_new ? fresh : *this, create_new))
    return false;
  if (create_new) {
    fresh.finish_of_adding();
    *this = std::move(fresh);
  }
  if (summary != nullptr)
    *summary = found;
  frame.local_process_text_set("All of " + std::to_string(lines.count()) + " clon-markers");
  if (create_new)
    file_about_markers_ORB_format_save(frame, database);
  return true;
}

void class_markers::file_with_list_of_markers_for_each_clone_save(process_frame &frame,
                                                                  const class_DB_of_clones &database,
                                                                  std::filesystem::path file) const {
  if (file.empty())
    file = frame.path_in_working_folder("\\clones_with_markers.txt");
  result_file table(file);
  std::string row;
  for (std::int32_t k = 1; k <= n_clones_with_markers_get(); ++k) {
    const clone_number clone = clones_with_markers_.member_of_list_antiadres_get(k);
    const std::span<const std::int32_t> markers = markers_of_clone_.set_get(k);
    if (markers.empty() || clones_with_markers_.element_adress_in_list_get(clone) != k)
      continue; // a clone without markers; a set that a later one replaced
    row = database.name_of_clone_get(clone);
    for (std::size_t i = 0; i < markers.size(); ++i) {
      row += i == 0 ? '\t' : ',';
      row += name_of_marker_get(markers[i]);
    }
    table.line(row);
  }
  table.commit();
}

// ---- clones for each marker ----------------------------------------------------------------------------------------

class marker_clones_reader {
public:
  marker_clones_reader(process_frame &frame, const class_DB_of_clones &database, class_markers &fresh);
  void take(const marker_lines &lines, std::int32_t i);
  void finish();
  const marker_read_summary &summary() const { return summary_; }

private:
  process_frame &frame_;
  const class_DB_of_clones &database_;
  class_markers &fresh_;
  marker_read_summary summary_;
  std::vector<std::string_view> fields_;
  std::vector<std::string> unknown_names_;
  number_list clones_; // of the line
};

// All clones get a place, which is their number.
marker_clones_reader::marker_clones_reader(process_frame &frame, const class_DB_of_clones &database,
                                           class_markers &fresh)
    : frame_(frame), database_(database), fresh_(fresh) {
  const std::int32_t n_clones = database.total_number_of_clones_get();
  fresh.redim_private_arrays(n_clones, usual_number_of_markers, n_clones);
  for (clone_number clone = 1; clone <= n_clones; ++clone)
    fresh.clones_with_markers_.add_member(clone);
}

void marker_clones_reader::take(const marker_lines &lines, std::int32_t i) {
  ++summary_.n_lines;
  class_serv_raznoe::cut_string_views(lines.line(i), fields_, most_fields_of_marker);
  const auto n_unknown_before = static_cast<std::size_t>(summary_.n_unknown_clone_names);
  database_.list_of_clones_in_line_get(fields_.size() > 1 ? fields_[1] : std::string_view(), clones_, unknown_names_,
                                       summary_.n_unknown_clone_names);
  for (std::size_t k = n_unknown_before + 1; k <= static_cast<std::size_t>(summary_.n_unknown_clone_names); ++k)
    frame_.doubt("New clone " + unknown_names_[k], lines.place(i));
  if (clones_.empty())
    return;
  const std::string_view name = trimmed(fields_[0]);
  if (name.empty()) {
    ++summary_.n_problematic_lines;
    report_marker_line(frame_, "Problematic line: " + lines.line(i), lines, i);
    return;
  }
  std::int32_t marker = -1;
  bool is_new = false;
  fresh_.marker_number_for_given_marker_name(name, marker, true, is_new);
  if (!is_new) {
    ++summary_.n_twice_marker_name;
    frame_.doubt("Marker " + std::string(name) + " has a line already", lines.place(i));
    return;
  }
  fresh_.position_of_marker_set(marker, position_in_fields(fields_));
  std::sort(clones_.members().begin(), clones_.members().end());
  for (std::int32_t k = 1; k <= clones_.count(); ++k) {
    if (k > 1 && clones_(k) == clones_(k - 1))
      continue; // a clone may stand twice on a line
    fresh_.markers_of_clone_.add_to_temp_list_of_elements_for_set(frame_, clones_(k), marker);
    fresh_.clones_of_marker_.add_to_temp_list_of_elements_for_set(frame_, marker, clones_(k));
  }
}

void marker_clones_reader::finish() {
  fresh_.markers_of_clone_.temp_list_of_elements_for_set_set_number_max_set(database_.total_number_of_clones_get());
  fresh_.markers_of_clone_.update_from_lists_of_pairs();
  fresh_.finish_of_adding();
}

bool class_markers::file_with_list_of_clones_for_each_marker_read(process_frame &frame, class_DB_of_clones &database,
                                                                  std::filesystem::path file,
                                                                  marker_read_summary *summary) {
  sort_names(frame, database);
  if (file.empty())
    file = frame.open_file_dialog("Open file with lists of clones for each marker");
  if (file.empty())
    return false;
  marker_lines lines;
  if (!read_marker_lines(frame, file, lines))
    return false;
  class_markers fresh;
  marker_clones_reader reader(frame, database, fresh);
  for (std::int32_t i = 1; i <= lines.count(); ++i) {
    if (!goes_on_behind_marker_line(frame, lines, i))
      return false;
    if (!is_blank_line(lines.line(i)))
      reader.take(lines, i);
  }
  reader.finish();
  *this = std::move(fresh);
  const marker_read_summary &found = reader.summary();
  if (summary != nullptr)
    *summary = found;
  frame.message("n_unknown_clone_names=" + std::to_string(found.n_unknown_clone_names));
  frame.message("n_twice_marker_name=" + std::to_string(found.n_twice_marker_name));
  frame.message("private_n_name_of_markers=" + std::to_string(total_number_of_markers_get()));
  return true;
}

// ---- positions -----------------------------------------------------------------------------------------------------

bool class_markers::read_file_with_marker_position(process_frame &frame, const class_DB_of_clones &database,
                                                   std::filesystem::path file) {
  if (file.empty())
    file = frame.open_file_dialog("Open file with marker positions");
  if (file.empty())
    return false;
  marker_lines lines;
  if (!read_marker_lines(frame, file, lines))
    return false;
  std::vector<std::string> positions = position_of_marker_;
  bool tell_unknown = true;
  std::vector<std::string_view> fields;
  for (std::int32_t i = 1; i <= lines.count(); ++i) {
    if (!goes_on_behind_marker_line(frame, lines, i))
      return false;
    class_serv_raznoe::cut_string_views(lines.line(i), fields);
    if (is_blank_line(lines.line(i)) || fields[0] == "MARKER NAME")
      continue;
    const std::string name(trimmed(fields[0]));
    std::int32_t marker = -1;
    bool is_new = false;
    marker_number_for_given_marker_name(name, marker, false, is_new);
    if (!is_new) {
      std::string &position = positions[static_cast<std::size_t>(marker)];
      if (position.empty())
        position = fields.size() > 1 ? trimmed(fields[1]) : std::string_view();
      else
        report_marker_line(frame, "Position specified more than once for " + name, lines, i);
    } else if (tell_unknown) {
      question go_on;
      go_on.text = "New marker " + name + ". Continue to say about this problem?";
      go_on.by_default = go_on.to_go_on = answer::yes; // whoever can't be asked reads all of them
      go_on.explanation =
          "The file gives a position to a marker that no clone bears; the line is passed over. No keeps "
          "silent about further ones.";
      frame.doubt("New marker " + name, lines.place(i));
      tell_unknown = frame.yes(go_on);
    }
  }
  position_of_marker_ = std::move(positions);
  file_about_markers_ORB_format_save(frame, database);
  return true;
}

} // namespace orb
