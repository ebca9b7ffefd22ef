// Markers of clones: loading in each form, positions, saving, tables.
#include <fmt/format.h>

#include "commands/command_table.h"
#include "commands/row_steps.h"
#include "database/class_markers.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

struct load_parameters {
  fs::path file, positions;
  std::string form = "any";
};

constexpr const char *forms[] = {"any", "clones", "clones-in-one-column", "markers", "native"};

marker_file_form form_of(const std::string &word) {
  if (word == "clones")
    return marker_file_form::markers_of_clones_in_fields;
  if (word == "clones-in-one-column")
    return marker_file_form::markers_of_clones_in_one_column;
  if (word == "markers")
    return marker_file_form::clones_of_markers;
  return word == "native" ? marker_file_form::native : marker_file_form::unknown;
}

void describe_load(parameter_list &list, load_parameters &p) {
  list.add("file", p.file, "markers of clones, or clones of markers; without it a dialog asks").type("FILE");
  list.add("form", p.form, "how the file is built: told by what stands in it, markers a clone, clones a marker, native")
      .one_of({std::begin(forms), std::end(forms)});
  list.add("positions", p.positions, "positions of markers: marker, tab, position").type("FILE");
}

void check_load(const project_state &, const parts_there &, const load_parameters &p) {
  check_input(p.file);
  check_input(p.positions);
  if (std::error_code failed; fs::is_directory(p.positions, failed)) // told before the markers are there
    throw file_error("can't open", p.positions, "Is a directory");
}

command_result run_load(project_state &project, const load_parameters &p) {
  if (const load_end end = load_markers(project, p.file, form_of(p.form), "markers.load"); end != load_end::loaded)
    return result_of(end);
  command_result result;
  if (!p.positions.empty())
    result = result_of(load_marker_positions(project, p.positions));
  for (const fs::path &file : {p.file, p.positions})
    if (!file.empty())
      result.inputs.push_back(file);
  return result;
}

struct positions_parameters {
  fs::path file;
};

void describe_positions(parameter_list &list, positions_parameters &p) {
  list.add("file", p.file, "positions of markers: marker, tab, position; without it a dialog asks").type("FILE");
}

void check_positions(const project_state &, const parts_there &, const positions_parameters &p) {
  check_input(p.file);
}

command_result run_positions(project_state &project, const positions_parameters &p) {
  command_result result = result_of(load_marker_positions(project, p.file));
  if (!p.file.empty())
    result.inputs.push_back(p.file);
  return result;
}

struct save_parameters {
  output_wishes output;
  std::string form = "native";
};

void describe_save(parameter_list &list, save_parameters &p) {
  describe_output(list, p.output, "FILE");
  list.add("form", p.form, "native, or a line a clone").one_of({"native", "clones"});
}

void check_save(const project_state &project, const parts_there &, const save_parameters &p) {
  check_output(project, p.output.out, p.output.force);
}

// Commas part the markers of a clone in this form.
void save_line_a_clone(project_state &project, const fs::path &out) {
  const class_markers &markers = project.database().markers();
  std::int32_t n = 0, last = 0;
  for (std::int32_t marker = 1; marker <= markers.total_number_of_markers_get(); ++marker)
    if (markers.name_of_marker_get(marker).find(',') != std::string::npos)
      ++n, last = marker;
  if (n > 0)
    project.frame().warn(fmt::format("Names of markers with a comma, which are read back as several names: {}, such as "
                                     "\"{}\".",
                                     n, markers.name_of_marker_get(last)));
  markers.file_with_list_of_markers_for_each_clone_save(project.frame(), project.database(), out);
}

command_result run_save(project_state &project, const save_parameters &p) {
  work_in(project, folder_of(p.output.out));
  const class_markers &markers = project.database().markers();
  if (p.form == "native")
    project.frame().note(
        "The native form is for other readers: the system's own takes one number more for each clone than "
        "stands there. Keep the text form to load these markers again (form=clones).");
  if (p.form == "native")
    markers.file_about_markers_ORB_format_save(project.frame(), project.database(), p.output.out);
  else
    save_line_a_clone(project, p.output.out);
  command_result result;
  result.file("markers", p.output.out);
  result.lines.push_back(p.output.out.string());
  return result;
}

struct print_parameters {
  output_wishes output;
  fs::path list;
};

void describe_print(parameter_list &list, print_parameters &p) {
  list.add("list", p.list, "names of clones, one a line").type("LIST").needed();
  describe_output(list, p.output, "TABLE");
}

void check_print(const project_state &project, const parts_there &, const print_parameters &p) {
  check_input(p.list);
  check_output(project, p.output.out, p.output.force);
}

command_result run_print(project_state &project, const print_parameters &p) {
  number_list list;
  std::string name;
  if (!read_list(project, p.list, list, name))
    return stopped_or_failed(project);
  project.database().markers().print_marker_presence_for_list_of_clones(project.frame(), project.database(), list,
                                                                        list.count(), p.output.out, name);
  command_result result;
  result.inputs.push_back(p.list);
  result.file("table", p.output.out);
  result.lines.push_back(p.output.out.string());
  return result;
}

} // namespace

void add_marker_rows(command_rows &rows) {
  using part = project_part;
  rows.push_back(command_maker<load_parameters>("markers.load")
                     .captioned("Clones with lists of markes")
                     .purpose("load markers of clones")
                     .example("markers.load file=markers.txt")
                     .needs({part::library})
                     .makes({part::markers})
                     .parameters(describe_load)
                     .checked_by(check_load)
                     .runs(run_load)
                     .row());
  rows.push_back(command_maker<positions_parameters>("markers.positions")
                     .captioned("position of markers only")
                     .purpose("load positions of the markers that are loaded")
                     .example("markers.positions file=positions.txt")
                     .needs({part::library, part::markers})
                     .parameters(describe_positions)
                     .checked_by(check_positions)
                     .runs(run_positions)
                     .row());
  rows.push_back(command_maker<save_parameters>("markers.save")
                     .captioned("Save markers")
                     .purpose("save markers in the native form, or as a line a clone")
                     .example("markers.save form=clones out=markers.txt")
                     .needs({part::library, part::markers})
                     .parameters(describe_save)
                     .checked_by(check_save)
                     .runs(run_save)
                     .row());
  rows.push_back(command_maker<print_parameters>("markers.print")
                     .captioned("Print markers of a list of clones")
                     .purpose("which clones of a list bear which markers")
                     .example("markers.print list=contig.txt out=table.txt")
                     .needs({part::library, part::markers})
                     .parameters(describe_print)
                     .checked_by(check_print)
                     .runs(run_print)
                     .row());
}

} // namespace orb
