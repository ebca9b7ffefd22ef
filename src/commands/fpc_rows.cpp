// Assemblies of the FPC program: read, compared, their tiling paths tested; contigs specified by hand; files united.
#include <fmt/format.h>

#include "commands/command_table.h"
#include "commands/contig_parameters.h"
#include "commands/length_parameters.h"
#include "commands/row_steps.h"
#include "contigs/registry_run.h"
#include "database/class_markers.h"
#include "fpc/fpc_comparison.h"
#include "fpc/fpc_reading.h"
#include "fpc/mtp_test.h"
#include "fpc/sizes_uniting.h"
#include "frame/numbers.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

void take_files(const std::vector<fs::path> &files, command_result &result) {
  for (const fs::path &file : files)
    result.file(file.filename().string(), file);
}

// ---- fpc.read ----

struct read_parameters {
  fs::path file, out, specified;
  bool keep = false, other_plates = false;
  std::optional<bool> print;
  length_parameters lengths;
};

void describe_read(parameter_list &list, read_parameters &p) {
  list.add("file", p.file, "assembly of the FPC program; without it a dialog asks").type("FILE.fpc");
  list.add("out", p.out, "folder of the files; without it the working folder").type("DIR");
  list.add("print", p.print, "print the lists of all contigs").asked_else("yes");
  list.add("keep-contigs", p.keep, "put the values of the clones into the contigs that are loaded");
  list.add("other-plates", p.other_plates,
           "look for clones that the library lacks under the other number of their plate: 001 and 002, 020 and 022");
  list.add("specified", p.specified, "then take the contigs of this file in place of those of the assembly")
      .type("FILE");
  describe_lengths(list, p.lengths);
}

void check_read(const project_state &, const parts_there &there, const read_parameters &p) {
  check_input(p.file);
  check_input(p.specified);
  check_lengths(p.lengths);
  if (p.keep && !there.has(project_part::contigs))
    throw usage_error("keep-contigs needs contigs, and there are none");
}

std::int32_t n_contigs_of(const class_FPCto_import &registry) {
  std::int32_t n = 0;
  for (const cluster_id id : registry.current_list_of_clusters_in_use_get().members())
    n += registry.cluster_is_contig_get(id);
  return n;
}

command_result run_read(project_state &project, const read_parameters &p) {
  const fs::path file = p.file.empty() ? project.frame().open_file_dialog("Open file with FPC assembly") : p.file;
  if (file.empty())
    return result_of(load_end::cancelled);
  work_in(project, p.out);
  const auto band_length = answer_band_lengths_ahead(project, p.lengths);
  fpc_reading_options options;
  options.keep_current = p.keep;
  options.other_plates = p.other_plates;
  options.print = p.print;
  options.read_specified = !p.specified.empty();
  options.specified = p.specified;
  fpc_reading_summary found;
  const load_end end = load_fpc_assembly(project, file, options, "fpc.read", found);
  if (end != load_end::loaded)
    return result_of(end);
  command_result result;
  result.inputs.push_back(file);
  take_files(found.files, result);
  const std::int32_t n_contigs = n_contigs_of(*project.database().contigs());
  result.summary =
      fmt::format("{} contigs, {} clones read", number_text_thousands(n_contigs), number_text_thousands(found.n_read));
  result.findings = *band_length;
  result.figure("contigs", n_contigs);
  result.figure("clones_read", found.n_read);
  result.figure("duplicates", found.n_duplicates);
  result.figure("not_presented", found.n_not_presented);
  result.figure("problematic", found.n_problematic);
  return result;
}

// ---- contigs.save_run ----

struct folder_parameters {
  fs::path out;
};

void describe_save_run(parameter_list &list, folder_parameters &p) {
  list.add("out", p.out, "folder in which the run's folder is made; without it the working folder").type("DIR");
}

command_result run_save_run(project_state &project, const folder_parameters &p) {
  work_in(project, p.out);
  const registry_run made =
      write_run_of_registry(project.frame(), project.database(), *project.database().contigs(), project.rule().cutoff);
  command_result result = result_of(project, made.completed);
  if (!made.completed)
    return result;
  result.summary = fmt::format("{} contigs with {} clones", number_text_thousands(made.n_contigs),
                               number_text_thousands(made.n_clones_in_contigs));
  result.parameter("cutoff", project.rule().cutoff);
  result.figure("contigs", made.n_contigs);
  result.figure("clones_in_contigs", made.n_clones_in_contigs);
  result.file("run_folder", made.folder);
  result.lines.push_back(made.folder.string());
  return result;
}

// ---- fpc.compare ----

struct compare_parameters {
  fs::path file, out;
  bool other_plates = false, force = false;
};

void describe_compare(parameter_list &list, compare_parameters &p) {
  list.add("file", p.file, "assembly of the FPC program").type("FILE.fpc").needed();
  list.add("out", p.out, "folder of the tables; without it the working folder").type("DIR");
  list.add("other-plates", p.other_plates,
           "look for clones that the library lacks under the other number of their plate");
  list.add("force", p.force, "overwrite results that exist");
}

void check_compare(const project_state &project, const parts_there &, const compare_parameters &p) {
  check_input(p.file);
  if (!p.out.empty())
    check_output(project, p.out / "contigs_of_file.txt", p.force);
}

std::string text_of(const char *whose, const contig_counts &counts) {
  return fmt::format("Contigs of the {}: {}; the same {}, split {}, joined {}, lacking {}, otherwise changed {}.",
                     whose, counts.n, counts.n_same, counts.n_split, counts.n_joined, counts.n_lacking,
                     counts.n_changed);
}

void put_counts(const std::string &whose, const contig_counts &counts, command_result &result) {
  result.figure("contigs_of_" + whose, counts.n);
  result.figure("same_of_" + whose, counts.n_same);
  result.figure("split_of_" + whose, counts.n_split);
  result.figure("joined_of_" + whose, counts.n_joined);
  result.figure("lacking_of_" + whose, counts.n_lacking);
}

command_result run_compare(project_state &project, const compare_parameters &p) {
  work_in(project, p.out);
  class_FPCfrom_export reader(project.frame(), project.settings(), project.database());
  const auto of_file = reader.read_contigs_only(p.file, p.other_plates);
  if (!of_file)
    return stopped_or_failed(project);
  const fpc_comparison found = compare_assemblies(project.signif(), project.rule(), *of_file,
                                                  *project.database().contigs(), project.frame().working_folder_get());
  if (!found.completed)
    return stopped_or_failed(project);
  command_result result;
  result.inputs.push_back(p.file);
  take_files(found.files, result);
  put_counts("file", found.of_file, result);
  put_counts("run", found.of_run, result);
  result.figure("moved_clones", found.n_moved);
  result.figure("unknown_clones", reader.unknown_clones().size());
  result.findings = text_of("file", found.of_file) + "\n" + text_of("run", found.of_run);
  return result;
}

// ---- fpc.mtp ----

struct mtp_parameters {
  fs::path file, out;
  std::string drawing_format = "net";
};

void describe_mtp(parameter_list &list, mtp_parameters &p) {
  list.add("file", p.file, "tiling paths, a line each: contig, blanks, clones; without it a dialog asks").type("FILE");
  list.add("out", p.out, "folder in which the folder of the results is made; without it the working folder")
      .type("DIR");
  list.add("drawing-format", p.drawing_format, "of the drawings: net, graphml, or both")
      .one_of({"net", "graphml", "both"});
}

void check_mtp(const project_state &, const parts_there &, const mtp_parameters &p) {
  check_input(p.file);
}

command_result run_mtp(project_state &project, const mtp_parameters &p) {
  work_in(project, p.out);
  drawing_options drawing;
  set_drawing_format(p.drawing_format, drawing);
  const MTP_test_summary found =
      test_MTPs_from_FPC(project.signif(), project.rule(), *project.database().contigs(), p.file, drawing);
  command_result result = result_of(project, found.completed);
  if (!found.completed)
    return result;
  if (!p.file.empty())
    result.inputs.push_back(p.file);
  result.file("folder", found.folder);
  result.lines.push_back(found.folder.string());
  result.summary = fmt::format("{} tiling paths tested; contigs unknown: {}, not connected: {}", found.n_tested,
                               found.n_unknown, found.n_not_connected);
  result.figure("tested", found.n_tested);
  result.figure("unknown", found.n_unknown);
  result.figure("not_connected", found.n_not_connected);
  return result;
}

// ---- fpc.specified ----

struct specified_parameters {
  fs::path file, out;
};

void describe_specified(parameter_list &list, specified_parameters &p) {
  list.add("file", p.file, "sections of clones, each behind a line \"# NAME - remark: TEXT\"; without it a dialog asks")
      .type("FILE");
  list.add("out", p.out, "folder of the lists; without it the working folder").type("DIR");
}

void check_specified(const project_state &, const parts_there &, const specified_parameters &p) {
  check_input(p.file);
}

command_result run_specified(project_state &project, const specified_parameters &p) {
  const fs::path file = p.file.empty() ? project.frame().open_file_dialog("Open file with specified contigs") : p.file;
  if (file.empty())
    return result_of(load_end::cancelled);
  work_in(project, p.out);
  class_FPCfrom_export reader(project.frame(), project.settings(), project.database());
  if (!reader.run_read_specified_contigs(file))
    return stopped_or_failed(project);
  project.loaded(project_part::contigs, {file, "fpc.specified"});
  command_result result;
  result.inputs.push_back(file);
  take_files(reader.summary().files, result);
  result.figure("clusters", project.database().contigs()->current_list_of_clusters_in_use_get().count());
  return result;
}

// ---- fpc.unite ----

struct unite_parameters {
  fs::path file, out;
  std::optional<std::int32_t> n_files;
  bool force = false;
};

void describe_unite(parameter_list &list, unite_parameters &p) {
  list.add("file", p.file, "any file of the folder; all with its extension are taken; without it a dialog asks")
      .type("FILE");
  list.add("out", p.out, "the one file; without it a dialog asks").type("FILE");
  list.add("files", p.n_files, "only so many of them, by their names").limits(1, 2000000000).unset("asked, else all");
  list.add("force", p.force, "overwrite results that exist");
}

void check_unite(const project_state &project, const parts_there &, const unite_parameters &p) {
  check_input(p.file);
  if (!p.out.empty())
    check_output(project, p.out, p.force);
}

command_result run_unite(project_state &project, const unite_parameters &p) {
  const fs::path made = run_reload_new_version_of_database(project.frame(), p.file, p.out, p.n_files);
  if (made.empty())
    return p.file.empty() || p.out.empty() ? result_of(load_end::cancelled) : stopped_or_failed(project);
  command_result result;
  result.file("united", made);
  return result;
}

} // namespace

void add_fpc_rows(command_rows &rows) {
  using part = project_part;
  rows.push_back(command_maker<read_parameters>("fpc.read")
                     .captioned("Read FPC assembly")
                     .purpose("contigs, coordinates, dates and markers from an .fpc file")
                     .example("fpc.read file=project.fpc out=read bp-per-band=1200")
                     .needs({part::library})
                     .makes({part::contigs})
                     .parameters(describe_read)
                     .checked_by(check_read)
                     .runs(run_read)
                     .row());
  rows.push_back(command_maker<folder_parameters>("contigs.save_run")
                     .captioned("Save contigs as a run")
                     .purpose("the contigs that are loaded, wherever from, as the folder of a run")
                     .example("contigs.save_run out=results")
                     .needs({part::library, part::contigs})
                     .parameters(describe_save_run)
                     .runs(run_save_run)
                     .row());
  rows.push_back(command_maker<compare_parameters>("fpc.compare")
                     .captioned("Compare with an FPC assembly")
                     .purpose("which contigs of an .fpc file and of those loaded are joined, split or lacking, and by "
                              "which clones and scores")
                     .example("fpc.compare file=project.fpc out=compared")
                     .needs({part::library, part::net, part::contigs})
                     .parameters(describe_compare)
                     .checked_by(check_compare)
                     .runs(run_compare)
                     .row());
  rows.push_back(command_maker<mtp_parameters>("fpc.mtp")
                     .captioned("Test MTPs of FPC contigs")
                     .purpose("tiling paths of an FPC assembly against the longest paths of its contigs in the net")
                     .example("fpc.mtp file=paths.txt out=tested")
                     .needs({part::library, part::contigs})
                     .parameters(describe_mtp)
                     .checked_by(check_mtp)
                     .runs(run_mtp)
                     .row());
  rows.push_back(command_maker<specified_parameters>("fpc.specified")
                     .captioned("Read specified contigs")
                     .purpose("contigs from a file of sections of clones; all other clones become one cluster")
                     .example("fpc.specified file=zone.txt out=zone")
                     .needs({part::library})
                     .makes({part::contigs})
                     .parameters(describe_specified)
                     .checked_by(check_specified)
                     .runs(run_specified)
                     .row());
  rows.push_back(command_maker<unite_parameters>("fpc.unite")
                     .captioned("Unite files of bands")
                     .purpose("all files of bands of a folder as one file")
                     .example("fpc.unite file=plates/P001.sizes out=united.sizes")
                     .parameters(describe_unite)
                     .checked_by(check_unite)
                     .runs(run_unite)
                     .row());
}

} // namespace orb
