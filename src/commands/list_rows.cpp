// Lists of clones as sets and files.
#include <fmt/format.h>

#include "commands/command_table.h"
#include "commands/row_steps.h"
#include "frame/numbers.h"
#include "lists/class_list_of_clones.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

struct list_parameters {
  fs::path list, list_2, out;
  bool force = false;
};

void describe_list(parameter_list &list, list_parameters &p) {
  list.add("list", p.list, "names of clones, one a line; without it a dialog asks").type("LIST");
  list.add("out", p.out, "where the result goes; without it a file of the working folder").type("LIST");
  list.add("force", p.force, "overwrite results that exist");
}

void describe_two_lists(parameter_list &list, list_parameters &p) {
  describe_list(list, p);
  list.add("list2", p.list_2, "names of clones, one a line; without it a dialog asks").type("LIST2");
}

void check_lists(const project_state &project, const parts_there &, const list_parameters &p) {
  check_input(p.list);
  check_input(p.list_2);
  if (!p.out.empty())
    check_output(project, p.out, p.force);
}

command_result list_made(project_state &project, bool made, const list_parameters &p) {
  command_result result = result_of(project, made);
  for (const fs::path &file : {p.list, p.list_2})
    if (!file.empty())
      result.inputs.push_back(file);
  if (made && !p.out.empty()) {
    result.file("list", p.out);
    result.lines.push_back(p.out.string());
  }
  return result;
}

void say_count(project_state &project, const number_list &list) {
  project.frame().note(fmt::format("Clones in the list: {}.", list.count()));
}

command_result run_sort(project_state &project, const list_parameters &p) {
  class_list_of_clones lists(project.frame(), project.settings());
  number_list made;
  std::string name;
  if (!read_list(project, p.list, made, name))
    return list_made(project, false, p);
  lists.sort_list_of_clones_and_delete_repeats(made);
  say_count(project, made);
  const fs::path out = p.out.empty() ? project.frame().path_in_working_folder("\\sorted_" + name + ".txt") : p.out;
  lists.print_list_of_clones(made, out, project.database());
  return list_made(project, true, p);
}

using pair_of_files_work = bool (class_list_of_clones::*)(class_DB_of_clones &, const fs::path &, const fs::path &,
                                                          fs::path);

template <pair_of_files_work work> command_result run_combine(project_state &project, const list_parameters &p) {
  class_list_of_clones lists(project.frame(), project.settings());
  return list_made(project, (lists.*work)(project.database(), p.list, p.list_2, p.out), p);
}

struct format_parameters {
  list_parameters list;
  std::int16_t name_format_in = project_settings{}.clone_name_format_input;
  std::int16_t name_format_out = project_settings{}.clone_name_format_output;
};

void describe_format(parameter_list &list, format_parameters &p) {
  describe_list(list, p.list);
  list.add("name-format-in", p.name_format_in, "clone name format of the list").limits(0, 8);
  list.add("name-format-out", p.name_format_out, "clone name format of the result").limits(0, 8);
}

void check_format(const project_state &project, const parts_there &there, const format_parameters &p) {
  check_lists(project, there, p.list);
}

// The project's own formats stay as they are.
command_result run_format(project_state &project, const format_parameters &p) {
  project_settings settings = project.settings();
  settings.clone_name_format_input = p.name_format_in;
  settings.clone_name_format_output = p.name_format_out;
  const bool made = class_list_of_clones(project.frame(), settings).transform_list_of_clones(p.list.list, p.list.out);
  return list_made(project, made, p.list);
}

struct select_parameters {
  list_parameters list;
  fs::path fingerprints;
  std::optional<double> frequency;
};

void describe_select(parameter_list &list, select_parameters &p) {
  describe_list(list, p.list);
  list.add("fingerprints", p.fingerprints, "folder of .sizes files, or one file, whose records are copied")
      .type("FINGERPRINTS");
  list.add("frequency", p.frequency, "leave bands out that are more frequent among the clones")
      .limits(0, 1e300)
      .asked_else("1");
}

void check_select(const project_state &project, const parts_there &there, const select_parameters &p) {
  check_lists(project, there, p.list);
  check_input(p.fingerprints);
}

command_result run_select(project_state &project, const select_parameters &p) {
  class_list_of_clones lists(project.frame(), project.settings());
  number_list chosen;
  std::string name;
  if (!read_list(project, p.list.list, chosen, name))
    return list_made(project, false, p.list);
  say_count(project, chosen);
  const bool made = lists.create_file_with_clons_with_list_of_bands(
      chosen, chosen.count(), project.database(), p.fingerprints, p.list.out,
      p.frequency ? number_text_shortest(*p.frequency) : std::string());
  command_result result = list_made(project, made, p.list);
  if (!p.fingerprints.empty())
    result.inputs.push_back(p.fingerprints);
  return result;
}

void add_pair_row(command_rows &rows, const char *id, const char *caption, const char *purpose,
                  command_result (*run)(project_state &, const list_parameters &)) {
  rows.push_back(command_maker<list_parameters>(id)
                     .captioned(caption)
                     .purpose(purpose)
                     .example(std::string(id) + " list=contig.txt list2=sequenced.txt out=made.txt")
                     .needs({project_part::library})
                     .parameters(describe_two_lists)
                     .checked_by(check_lists)
                     .runs(run)
                     .row());
}

} // namespace

void add_list_rows(command_rows &rows) {
  rows.push_back(command_maker<list_parameters>("list.sort")
                     .captioned("Sort list of clones and delete repeats")
                     .purpose("a list in the order of the library, without repeats")
                     .example("list.sort list=contig.txt out=sorted.txt")
                     .needs({project_part::library})
                     .parameters(describe_list)
                     .checked_by(check_lists)
                     .runs(run_sort)
                     .row());
  add_pair_row(rows, "list.intersect", "Intersection of two lists", "the clones that both lists hold",
               run_combine<&class_list_of_clones::find_intersection_of_contigs>);
  add_pair_row(rows, "list.minus", "First list minus second", "the clones of the first list that the second lacks",
               run_combine<&class_list_of_clones::find_ctg1_minus_ctg2>);
  add_pair_row(rows, "list.unite", "Unite two lists", "the clones of either list",
               run_combine<&class_list_of_clones::find_ctg1_plus_ctg2>);
  rows.push_back(command_maker<format_parameters>("list.format")
                     .captioned("Transform list of clones")
                     .purpose("a list with its names in another format")
                     .example("list.format list=contig.txt name-format-in=1 name-format-out=7 out=names.txt")
                     .parameters(describe_format)
                     .checked_by(check_format)
                     .runs(run_format)
                     .row());
  rows.push_back(command_maker<select_parameters>("list.select")
                     .captioned("Lists of bands of a list of clones")
                     .purpose("the fingerprint records of the clones of a list")
                     .example("list.select list=contig.txt fingerprints=plates out=contig.sizes")
                     .needs({project_part::library})
                     .parameters(describe_select)
                     .checked_by(check_select)
                     .runs(run_select)
                     .row());
}

} // namespace orb
