// Libraries: loading, saving, names, tests.
#include "commands/library_parameter_rows.h"

#include <fmt/format.h>

#include "commands/command_table.h"
#include "commands/row_steps.h"
#include "database/clone_name_files.h"
#include "database/database_tests.h"
#include "database/library_file.h"
#include "fpc/fpc_blocks.h"
#include "frame/numbers.h"
#include "lists/class_list_of_clones.h"
#include "project/input_kind.h"

namespace orb {

namespace fs = std::filesystem;

void describe_library_parameters(parameter_list &list, library_wishes &wishes, double least_length) {
  const library_parameters standard;
  list.add("tolerance", wishes.tolerance, "tolerance t, in band units")
      .limits(0, 32000)
      .in_units("band units")
      .unset_is(standard.tolerance);
  list.add("tolerance-index", wishes.tolerance_index, "1 compares lengths within t, 0 compares bin numbers")
      .limits(0, 1)
      .unset_is(standard.tolerance_index);
  list.add("gel-length", wishes.gel_length, "gel length L, in band units")
      .limits(least_length, 1e7)
      .in_units("band units")
      .unset_is(standard.gel_length);
  list.add("n-bands", wishes.n_bands, "N_bands_Sulston").limits(1, 10000000).unset_is(standard.n_bands);
  list.add("preset", wishes.preset, "tolerance, index, gel length and n-bands of a known kind of data")
      .limits(1, double(known_kinds_of_data.size()))
      .unset("none");
}

namespace {

// ---- library.load ----

struct load_parameters {
  library_wishes wishes;
  bool plain_text = false;
  std::string source = "content"; // what is asked for when no file is named
  bool keep = false;
};

void describe_load(parameter_list &list, load_parameters &p) {
  const char *group = "Reading";
  list.add("file", p.wishes.file,
           "folder of .sizes files, one such file, a library file, or an .fpc file with its .cor file")
      .type("INPUT");
  list.add("plain-text", p.plain_text, "INPUT is one text file of clones, kept in its own order").in_group(group);
  list.add("capacity", p.wishes.capacity, "number of clones provided for").limits(1, 2000000000).in_group(group);
  list.add("name-format-in", p.wishes.name_format_in, "clone name format of the input").limits(0, 8).in_group(group);
  list.add("name-format-out", p.wishes.name_format_out, "clone name format of the library")
      .limits(0, 8)
      .in_group(group);
  describe_library_parameters(list, p.wishes);
  list.add("source", p.source, "which dialog asks for the file when none is named")
      .one_of({"content", "text", "library", "sizes", "sizes-folder"});
  list.add("keep", p.keep, "save the library too, after asking where; not one that came from a library file");
}

library_wishes wishes_of(const load_parameters &p) {
  using kind = library_wishes::source_kind;
  library_wishes wishes = p.wishes;
  wishes.single_file = p.source == "sizes";
  if (p.plain_text || (p.source == "text" && wishes.file.empty()))
    wishes.source = kind::plain_text;
  else if (p.source == "library")
    wishes.source = kind::library_file;
  else if (p.source != "content" || wishes.file.empty())
    wishes.source = kind::sizes;
  return wishes;
}

// What would be ignored is refused.
void check_load(const project_state &, const parts_there &, const load_parameters &p) {
  parameters_of(p.wishes);
  std::error_code failed;
  if (p.plain_text && fs::is_directory(p.wishes.file, failed))
    throw usage_error("--plain-text wants one text file of clones, and " + p.wishes.file.string() + " is a folder");
  const library_wishes standard;
  const bool formats_given =
      p.wishes.name_format_in != standard.name_format_in || p.wishes.name_format_out != standard.name_format_out;
  if (formats_given && !p.plain_text && kind_of_input(p.wishes.file) == input_kind::library)
    throw usage_error("--name-format-in and --name-format-out can't be used on a library file: its names stand as they "
                      "are; orb rename gives others");
}

void put_parameters(const class_DB_of_clones &database, command_result &result) {
  const library_parameters fields = parameters_of(database);
  result.parameter("tolerance", fields.tolerance);
  result.parameter("tolerance_index", fields.tolerance_index);
  result.parameter("gel_length", fields.gel_length);
  result.parameter("n_bands", fields.n_bands);
}

// Its bands stand in a file of their own, and its head may say from which score on clones overlap.
void take_fpc_project(project_state &project, const fs::path &file, command_result &result) {
  result.inputs.push_back(cor_file_of(file));
  const std::optional<double> cutoff = head_of_fpc_file(file).cutoff;
  if (!cutoff || project.rule().distance_index != overlap_rule{}.distance_index)
    return;
  project.rule().cutoff = *cutoff;
  project.frame().note(
      fmt::format("The head of {} proposes cutoff {}.", file.filename().string(), number_text_shortest(*cutoff)));
}

command_result run_load(project_state &project, const load_parameters &p) {
  const library_wishes wishes = wishes_of(p);
  if (kind_of_input(wishes.file) == input_kind::library && !is_as_recorded(project, wishes.file))
    return command_result::ended(exit_status::run_failed);
  const load_end end = load_library(project, wishes, "library.load");
  if (end != load_end::loaded)
    return result_of(end);
  const load_summary &found = project.reader().summary();
  command_result result;
  if (!wishes.file.empty())
    result.inputs.push_back(wishes.file);
  if (kind_of_input(wishes.file) == input_kind::fpc_file)
    take_fpc_project(project, wishes.file, result);
  result.summary = text_of_library(project.database());
  if (found.n_copies_dropped > 0)
    result.summary += fmt::format("; exact copies dropped: {} of {} records", found.n_copies_dropped, found.n_records);
  put_parameters(project.database(), result);
  result.figure("clones", project.database().total_number_of_clones_get());
  result.figure("copies_dropped", found.n_copies_dropped);
  if (p.keep && wishes.source != library_wishes::source_kind::library_file &&
      kind_of_input(wishes.file) != input_kind::library)
    if (const fs::path saved = save_library_run(project.frame(), project.database()); !saved.empty())
      result.file("library", saved);
  return result;
}

// ---- library.save ----

void describe_save(parameter_list &list, output_wishes &p) {
  describe_output(list, p, "LIB.ORBdb", false);
}

void check_save(const project_state &project, const parts_there &, const output_wishes &p) {
  if (!p.out.empty())
    check_output(project, p.out, p.force);
}

command_result run_save(project_state &project, const output_wishes &p) {
  fs::path file = p.out;
  if (file.empty())
    file = save_library_run(project.frame(), project.database());
  else
    DataBase_in_typical_file_print(file, project.database());
  if (file.empty())
    return command_result::ended(exit_status::run_failed); // told already
  project.loaded(project_part::library, {file, "library.save"});
  command_result result;
  result.file("library", file);
  return result;
}

// ---- names ----

struct rename_parameters {
  fs::path file, out, save;
  bool force = false;
};

void describe_rename(parameter_list &list, rename_parameters &p) {
  list.add("file", p.file, "new name, tab, old name; a name that begins with # changes nothing").type("FILE");
  list.add("out", p.out, "folder of not_found.txt").type("DIR");
  list.add("save", p.save, "library file for the new version; without it a question comes").type("LIB.ORBdb");
  list.add("force", p.force, "overwrite a library file that exists");
}

void check_rename(const project_state &project, const parts_there &, const rename_parameters &p) {
  check_input(p.file);
  if (!p.save.empty())
    check_output(project, p.save, p.force);
}

command_result run_rename(project_state &project, const rename_parameters &p) {
  work_in(project, p.out);
  command_result result;
  const auto save_asking = [&] {
    if (const fs::path file = save_library_run(project.frame(), project.database()); !file.empty())
      result.file("library", file);
  };
  new_names_summary found;
  if (!load_new_clone_names(project.frame(), project.database(), p.file,
                            p.save.empty() ? std::function<void()>(save_asking) : nullptr, found))
    return stopped_or_failed(project);
  if (found.n_changes > 0) // all that goes by names is old now
    project.loaded(project_part::library, {p.save, "library.rename"});
  if (!p.save.empty()) {
    DataBase_in_typical_file_print(p.save, project.database());
    result.file("library", p.save);
  }
  result.file("not_found", found.not_found);
  if (!p.file.empty())
    result.inputs.push_back(p.file);
  result.figure("lines", found.n_lines);
  result.figure("names_found", found.n_found);
  result.figure("changes", found.n_changes);
  result.summary = fmt::format("{} clones have a new name; old names that the library lacks: {}", found.n_changes,
                               found.n_lines - found.n_found);
  if (found.n_changes == 0)
    project.frame().warn("No clone got a new name. A line is the new name, a tab, the old name.\r\n" + p.file.string());
  return result;
}

struct names_parameters {
  fs::path out;
  std::string bands; // empty: asked
};

void describe_names(parameter_list &list, names_parameters &p) {
  list.add("out", p.out, "folder of DB.txt").type("DIR");
  list.add("bands", p.bands, "numbers of bands too").one_of({"yes", "no"}).asked_else("no");
}

command_result run_names(project_state &project, const names_parameters &p) {
  work_in(project, p.out);
  print_names_of_all_clones(project.frame(), project.database(),
                            p.bands.empty() ? std::optional<bool>() : p.bands == "yes");
  command_result result;
  result.file("names", project.frame().path_in_working_folder("\\DB.txt"));
  return result;
}

struct clone_names_parameters {
  fs::path file, exclude, out;
  bool no_exclusion = false;
};

void describe_clone_names(parameter_list &list, clone_names_parameters &p) {
  list.add("file", p.file, "lines of clone names with commas between them").type("FILE");
  list.add("exclude", p.exclude, "names to leave out; without it a question comes").type("FILE");
  list.add("all", p.no_exclusion, "leave none out, without the question");
  list.add("out", p.out, "folder of column_with_clone_names.txt").type("DIR");
}

command_result run_clone_names(project_state &project, const clone_names_parameters &p) {
  work_in(project, p.out);
  lists_of_names_options wanted;
  wanted.file = p.file;
  wanted.file_to_exclude = p.exclude;
  if (!p.exclude.empty() || p.no_exclusion)
    wanted.exclude = !p.exclude.empty();
  fs::path written;
  if (!extract_lists_of_clone_names(project.frame(), project.database(), wanted, written))
    return stopped_or_failed(project);
  command_result result;
  result.file("names", written);
  return result;
}

// ---- tests ----

struct test_sizes_parameters {
  fs::path file, out;
};

void describe_test_sizes(parameter_list &list, test_sizes_parameters &p) {
  list.add("file", p.file, ".sizes file to test").type("FILE");
  list.add("out", p.out, "folder of testRes.txt").type("DIR");
}

command_result run_test_sizes(project_state &project, const test_sizes_parameters &p) {
  check_input(p.file);
  work_in(project, p.out);
  if (!test_for_Reviewer(project.frame(), p.file))
    return p.file.empty() ? result_of(load_end::cancelled) : stopped_or_failed(project);
  command_result result;
  result.file("report", project.frame().path_in_working_folder("\\testRes.txt"));
  return result;
}

struct repeats_parameters {
  fs::path file, out;
  std::optional<bool> make_file;
  std::optional<double> frequency;
  bool force = false;
};

void describe_repeats(parameter_list &list, repeats_parameters &p) {
  list.add("file", p.file, "fingerprints from which the records without repeats are copied").type("FINGERPRINTS");
  list.add("out", p.out, "file of records without repeats").type("FILE");
  list.add("make-file", p.make_file, "make that file, in the working folder when out doesn't name it").asked_else("no");
  list.add("frequency", p.frequency, "leave bands out of it that are more frequent among the clones")
      .limits(0, 1e300)
      .asked_else("1");
  list.add("force", p.force, "overwrite results that exist");
}

void check_repeats(const project_state &project, const parts_there &, const repeats_parameters &p) {
  check_input(p.file);
  if (!p.out.empty())
    check_output(project, p.out, p.force);
}

command_result run_repeats(project_state &project, const repeats_parameters &p) {
  bool ok = true;
  command_result result;
  if (p.make_file || !p.out.empty())
    answer_ahead(project, "Repeats=", !p.out.empty() || *p.make_file);
  const std::string frequency = p.frequency ? number_text_shortest(*p.frequency) : std::string();
  test_database_on_repeats(project.frame(), project.database(), !p.out.empty(), [&](const number_list &unique) {
    ok = class_list_of_clones(project.frame(), project.settings())
             .create_file_with_clons_with_list_of_bands(unique, unique.count(), project.database(), p.file, p.out,
                                                        frequency);
    if (!p.file.empty())
      result.inputs.push_back(p.file);
    if (!p.out.empty())
      result.file("records", p.out);
  });
  std::int64_t n_repeats = 0;
  for (clone_number clone = 1; clone <= project.database().total_number_of_clones_get(); ++clone)
    n_repeats += project.database().nRepeatsCloneName_get(clone) < 0;
  result.summary = fmt::format("{} clones bear a name that an earlier one has", number_text_thousands(n_repeats));
  result.figure("repeats", n_repeats);
  return ok ? result : stopped_or_failed(project);
}

command_result run_killbands(project_state &project, const no_parameters &) {
  project.database().killbands();
  project.loaded(project_part::library, project.origin(project_part::library));
  project.frame().note("The bands of all clones were given back; names and nets stay.");
  return {};
}

// ---- clones in lists ----

struct clones_in_lists_parameters {
  fs::path file, folder;
};

command_result done_with_lists(project_state &) {
  return {};
}

void describe_lists_file(parameter_list &list, clones_in_lists_parameters &p) {
  list.add("file", p.file, "file; without it a dialog comes").type("FILE");
}

void check_lists_file(const project_state &, const parts_there &, const clones_in_lists_parameters &p) {
  check_input(p.file);
}

command_result run_lists_load(project_state &project, const clones_in_lists_parameters &p) {
  project.usable_values().clone_in_lists_read(project.frame(), project.settings(), project.database(), p.file);
  return done_with_lists(project);
}

command_result run_lists_clear(project_state &project, const no_parameters &) {
  project.usable_values().clone_in_lists_clear(project.frame(), project.database());
  return done_with_lists(project);
}

command_result run_lists_add_file(project_state &project, const clones_in_lists_parameters &p) {
  project.usable_values().clone_in_lists_add_list_run(project.frame(), project.settings(), project.database(), p.file);
  return done_with_lists(project);
}

command_result run_lists_add_folder(project_state &project, const clones_in_lists_parameters &p) {
  project.usable_values().clone_in_lists_add_folder_of_lists(project.frame(), project.settings(), project.database(),
                                                             p.file);
  return done_with_lists(project);
}

struct lists_save_parameters {
  fs::path out;
};

void describe_lists_save(parameter_list &list, lists_save_parameters &p) {
  list.add("out", p.out, "folder of clone_in_lists.txt").type("DIR");
}

command_result run_lists_save(project_state &project, const lists_save_parameters &p) {
  work_in(project, p.out);
  project.usable_values().clone_in_lists_print(project.frame(), project.database());
  command_result result;
  result.file("clones_in_lists", project.frame().path_in_working_folder("\\clone_in_lists.txt"));
  return result;
}

} // namespace

void add_library_rows(command_rows &rows) {
  using part = project_part;
  rows.push_back(command_maker<load_parameters>("library.load")
                     .captioned("Load clones with lists of bands")
                     .purpose("read fingerprints or a library file")
                     .example("library.load file=examples/ecoli536")
                     .makes({part::library})
                     .parameters(describe_load)
                     .checked_by(check_load)
                     .runs(run_load)
                     .row());
  rows.push_back(command_maker<output_wishes>("library.save")
                     .captioned("Save clones with lists of bands in ORB-specific file")
                     .purpose("save the library with its parameters")
                     .example("library.save out=library.ORBdb")
                     .needs({part::library})
                     .parameters(describe_save)
                     .checked_by(check_save)
                     .runs(run_save)
                     .row());
  rows.push_back(command_maker<rename_parameters>("library.rename")
                     .captioned("Rename Clones ...")
                     .purpose("give clones new names from a file")
                     .example("library.rename file=new_names.txt save=renamed.ORBdb")
                     .needs({part::library})
                     .parameters(describe_rename)
                     .checked_by(check_rename)
                     .runs(run_rename)
                     .row());
  rows.push_back(command_maker<names_parameters>("library.names")
                     .captioned("Print names of all clones")
                     .purpose("the names of all clones, with their numbers of bands when wanted")
                     .example("library.names out=tables")
                     .needs({part::library})
                     .parameters(describe_names)
                     .runs(run_names)
                     .row());
  rows.push_back(command_maker<clone_names_parameters>("library.find_names")
                     .captioned("Extract lists of clone names")
                     .purpose("the clones of the library that lines of names mean, however they are written there")
                     .example("library.find_names file=columns.txt out=tables")
                     .needs({part::library})
                     .parameters(describe_clone_names)
                     .runs(run_clone_names)
                     .row());
  rows.push_back(command_maker<test_sizes_parameters>("library.test_sizes")
                     .captioned("Test .Sizes file for ability to read")
                     .purpose("how each line of a .sizes file is understood")
                     .example("library.test_sizes file=plate1.sizes out=tables")
                     .parameters(describe_test_sizes)
                     .runs(run_test_sizes)
                     .row());
  rows.push_back(command_maker<repeats_parameters>("library.repeats")
                     .captioned("Test DB on repeats")
                     .purpose("count clones whose name an earlier one has; the records of the others, when wanted")
                     .example("library.repeats file=plates out=unique.sizes")
                     .needs({part::library})
                     .parameters(describe_repeats)
                     .checked_by(check_repeats)
                     .runs(run_repeats)
                     .row());
  rows.push_back(command_maker<no_parameters>("library.kill_bands")
                     .captioned("Kill bands")
                     .purpose("give the memory of the bands back when they aren't needed any more")
                     .example("library.kill_bands")
                     .needs({part::library})
                     .runs(run_killbands)
                     .row());
  struct lists_row {
    const char *id, *caption, *purpose;
    command_result (*run)(project_state &, const clones_in_lists_parameters &);
  } const of_lists[] = {{"clones_in_lists.load", "Load",
                         "which list each clone lies in, from a file of addresses of lists", run_lists_load},
                        {"clones_in_lists.add_file", "Add file", "the clones of one more list", run_lists_add_file},
                        {"clones_in_lists.add_folder", "Add folder", "the clones of all lists of the folder of a file",
                         run_lists_add_folder}};
  for (const lists_row &row : of_lists)
    rows.push_back(command_maker<clones_in_lists_parameters>(row.id)
                       .captioned(row.caption)
                       .purpose(row.purpose)
                       .example(std::string(row.id) + " file=lists/a.txt")
                       .needs({part::library})
                       .parameters(describe_lists_file)
                       .checked_by(check_lists_file)
                       .runs(row.run)
                       .row());
  rows.push_back(command_maker<no_parameters>("clones_in_lists.clear")
                     .captioned("Clear")
                     .purpose("forget which list each clone lies in")
                     .example("clones_in_lists.clear")
                     .needs({part::library})
                     .runs(run_lists_clear)
                     .row());
  rows.push_back(command_maker<lists_save_parameters>("clones_in_lists.save")
                     .captioned("Save")
                     .purpose("a table of clones with the lists that they lie in")
                     .example("clones_in_lists.save out=tables")
                     .needs({part::library})
                     .parameters(describe_lists_save)
                     .runs(run_lists_save)
                     .row());
}

} // namespace orb
