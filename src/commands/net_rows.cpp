// Nets of overlaps: making, loading, saving, bringing to another rule.
#include <algorithm>
#include <fmt/format.h>
#include <limits>

#include "commands/command_table.h"
#include "commands/metric_parameters.h"
#include "commands/row_steps.h"
#include "database/class_DB_of_clones.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "net/derived_nets.h"
#include "net/net_as_text.h"
#include "reports/clone_stacks.h"
#include "reports/run_record.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// ---- net.create ----

// A net that was made just now, by the rule in use.
void net_was_made(project_state &project, const std::string &id, const overlap_rule &rule) {
  project.loaded(project_part::net, {{}, id});
  project.rule_of_net_set(rule);
}

void put_overlaps(project_state &project, command_result &result) {
  const class_net &net = project.signif().net();
  std::int32_t most = 0;
  for (vertex_number v = 1; v <= net.number_of_vertices_get(); ++v)
    most = std::max(most, net.number_of_edges_for_vertex_total_get(v));
  result.figure("overlaps", net.number_of_edges_get() / 2);
  result.summary = fmt::format("{} overlaps between {} clones, at most {} of one clone",
                               number_text_thousands(net.number_of_edges_get() / 2),
                               number_text_thousands(net.number_of_vertices_get()), most);
  result.findings = text_of_stacks(find_clone_stacks(net), project.database());
}

// A net of the same library is where work on a text net starts from; in memory it is always made anew.
command_result run_create(project_state &project, const no_parameters &) {
  net_creation_summary summary;
  if (!project.signif().create_net_in_memory(project.rule(), summary))
    return stopped_or_failed(project);
  project.frame().all_panels_reset();
  net_was_made(project, "net.create", project.rule());
  command_result result;
  put_overlaps(project, result);
  return result;
}

struct text_net_parameters {
  fs::path out;
  std::int32_t start = 1;
  std::optional<bool> parts, preprocess;
  std::optional<std::int32_t> max_bands;
  bool force = false;
  bool load = false;
};

void describe_create_text(parameter_list &list, text_net_parameters &p) {
  list.add("out", p.out, "text net; without it a dialog asks").type("NET.txt");
  list.add("force", p.force, "overwrite results that exist");
  list.add("start", p.start, "first clone of the text net, to resume; 0 asks").limits(0, 2000000000);
  list.add("parts", p.parts, "text net in parts of 1000 clones").asked_else("no");
  list.add("preprocess", p.preprocess, "a table of the least common bands, by which pairs are left out")
      .asked_else("yes");
  list.add("max-bands", p.max_bands, "of a clone, in that table; 0: by the library").limits(0, 100000).asked_else("0");
  list.add("load", p.load, "read the net back when it is whole, without a native file of its own");
}

void check_create_text(const project_state &project, const parts_there &, const text_net_parameters &p) {
  if (!p.out.empty())
    check_output(project, p.out, p.force);
}

// Reads a text net, or the parts of one joined by the numbers in their names, as the current net.
bool read_text_net_back(project_state &project, const net_creation_summary &summary) {
  fs::path file = summary.text_file;
  if (summary.in_parts)
    file = class_serv_raznoe::merge_files_of_folder_sort_del_rep_run(
        project.frame(), file.parent_path(), file.extension().string().substr(file.has_extension() ? 1 : 0));
  const passing_file joined(summary.in_parts ? file : fs::path());
  bool ok = false;
  project.signif().read_text_net(file, project.signif().net(), ok);
  if (ok)
    project.signif().net_is_loaded_set();
  return ok;
}

// The net is read back here, so that nobody need be asked for it.
void answer_ahead_of_text_net(project_state &project, const text_net_parameters &p) {
  if (p.parts)
    answer_ahead(project, "NB! Nomber of clones", *p.parts);
  if (p.preprocess)
    answer_ahead(project, "Preprocess?", *p.preprocess);
  if (p.max_bands) // none is what the library proposes
    project.frame().answer_ahead("Input max number of bands in clone:",
                                 [n = *p.max_bands] { return n > 0 ? std::to_string(n) : std::string(); });
  if (!p.load)
    return;
  answer_ahead(project, "Do you want to load the created net", false);
  answer_ahead(project, "All overlaps?", true);
}

// What a stopped run has written stays. Its last clone may lack some of its overlaps.
void tell_unfinished_text(project_state &project, const text_net_parameters &p, command_result &result) {
  std::error_code failed;
  if (p.parts.value_or(false) || !fs::is_regular_file(p.out, failed))
    return;
  line_reader lines(p.out);
  std::string_view line;
  std::string last;
  while (lines.next(line))
    if (line.starts_with("clone\t"))
      last = line.substr(6, line.find('\t', 6) - 6);
  if (last.empty())
    return;
  result.file("text_net", p.out);
  project.frame().alarm("Text net " + p.out.string() + " is written up to clone " + last + ". --start " + last +
                        " with another --text goes on from there; orb textnet read joins both from one folder.");
}

// The long way over a text net, for resuming, merging and reading by people. The net is that text read back; a text
// that began behind clone 1 has one only when the parts before lie in the same folder.
command_result run_create_text(project_state &project, const text_net_parameters &p) {
  process_frame &frame = project.frame();
  const std::uint64_t before = project.version();
  net_creation_summary summary;
  text_net_options wanted;
  wanted.file = p.out;
  wanted.start_clone = p.start;
  wanted.parts = p.parts.value_or(false);
  answer_ahead_of_text_net(project, p);
  const bool made = project.signif().create_file_with_significant_connections(project.rule(), wanted, summary);
  if (project.version() != before) { // the net was brought to the rule, or the new one loaded when that was asked
    net_was_made(project, "net.create_text", project.rule());
    settle_use_of_net(project);
  }
  if (!made || !summary.completed) {
    command_result result = stopped_or_failed(project);
    tell_unfinished_text(project, p, result);
    return result;
  }
  command_result result;
  result.file("text_net", summary.text_file);
  frame.note("Text net: " + summary.text_file.string());
  if (!p.load)
    return result;
  if (p.start > 1 && !summary.in_parts) {
    frame.note(
        "It begins behind clone 1, so no native net was made of it. With the text of the clones before it alone in one "
        "folder, orb textnet read reads that folder.");
    result.completed = true;
    return result;
  }
  if (!read_text_net_back(project, summary))
    return stopped_or_failed(project);
  net_was_made(project, "net.create_text", project.rule());
  put_overlaps(project, result);
  return result;
}

// ---- net.load ----

struct net_file_parameters {
  fs::path file;
};

void describe_load(parameter_list &list, net_file_parameters &p) {
  list.add("file", p.file, "native net; without it a dialog asks").type("NET");
}

void check_net_file(const project_state &, const parts_there &, const net_file_parameters &p) {
  check_input(p.file);
}

// The record of a net says which library, metric and cutoff it was made with.
bool net_fits_record(project_state &project, const fs::path &file, const nlohmann::json &record) {
  const nlohmann::json library = record.value("library", nlohmann::json::object());
  const std::string recorded = library.is_object() ? library.value("checksum", "") : "";
  const std::string own = checksum_text(library_checksum(project.database()));
  if (recorded.empty() || recorded == own)
    return true;
  return project.frame().refuse(
      fmt::format("Net {} was made from another library: its record names checksum {}, the library "
                  "has {}.\r\nNet of significant overlaps was not loaded.",
                  file.string(), recorded, own));
}

command_result run_load(project_state &project, const net_file_parameters &p) {
  const auto record = p.file.empty() ? std::nullopt : run_record_beside(p.file);
  if (!is_as_recorded(project, p.file) || (record && !net_fits_record(project, p.file, *record)))
    return command_result::ended(exit_status::run_failed);
  const load_end end = load_net(project, p.file, "net.load");
  if (end != load_end::loaded)
    return result_of(end);
  project.rule_of_net_set(record ? rule_of_record(*record) : std::nullopt);
  settle_use_of_net(project);
  command_result result;
  if (!p.file.empty())
    result.inputs.push_back(p.file);
  result.figure("overlaps_loaded", project.signif().net().number_of_edges_get() / 2);
  return result;
}

struct text_net_file_parameters {
  fs::path file, out;
  bool reduce = false, force = false;
  std::string folder; // of the menu entry: yes or no
};

void describe_load_text(parameter_list &list, text_net_file_parameters &p) {
  list.add("file", p.file, "text net, or a folder of its parts; without it a dialog asks").type("TEXT|FOLDER");
  list.add("out", p.out, "native net that is made of it; without it a dialog asks").type("NET.ORBns");
  list.add("force", p.force, "overwrite results that exist");
  list.add("folder", p.folder, "the file stands for its whole folder of parts").one_of({"yes", "no"}).unset("no");
  list.add("reduce", p.reduce, "ask for limits of overlaps a clone, and leave weaker ones out");
}

void check_load_text(const project_state &project, const parts_there &, const text_net_file_parameters &p) {
  check_input(p.file);
  if (!p.out.empty())
    check_output(project, p.out, p.force);
}

command_result run_load_text(project_state &project, const text_net_file_parameters &p) {
  text_net_reading wanted;
  wanted.file = p.file;
  wanted.folder_of_files = p.folder == "yes" || fs::is_directory(p.file);
  wanted.native = p.out;
  wanted.overlaps = p.reduce         ? overlaps_wanted::within_limits
                    : p.file.empty() ? overlaps_wanted::ask
                                     : overlaps_wanted::all;
  const load_end end = load_text_net(project, wanted, "net.load_text");
  if (end != load_end::loaded)
    return result_of(end);
  command_result result;
  if (!p.file.empty())
    result.inputs.push_back(p.file);
  if (!p.out.empty())
    result.file("net", p.out);
  if (p.reduce)
    result.file("overlaps", project.frame().path_in_working_folder("\\overlaps.tsv"));
  put_overlaps(project, result);
  return result;
}

// ---- net.save ----

void describe_save(parameter_list &list, output_wishes &p) {
  describe_output(list, p, "NET.ORBns");
}

void check_save(const project_state &project, const parts_there &, const output_wishes &p) {
  check_output(project, p.out, p.force);
}

command_result run_save(project_state &project, const output_wishes &p) {
  class_net &net = project.signif().net();
  if (!net.save_net_type(project.frame(), p.out))
    return stopped_or_failed(project);
  net.title_of_net_set(p.out.stem().string());
  net.FullFileNameSet(p.out.string());
  project.frame().all_panels_reset();
  const std::optional<overlap_rule> rule = project.rule_of_net();
  project.loaded(project_part::net, {p.out, project.origin(project_part::net).made_by});
  project.rule_of_net_set(rule);
  command_result result;
  result.file("net", p.out);
  return result;
}

void describe_save_text(parameter_list &list, output_wishes &p) {
  describe_output(list, p, "NET.txt");
}

command_result run_save_text(project_state &project, const output_wishes &p) {
  fs::path written = p.out;
  const overlap_rule all = at_cutoff(project.rule(), std::numeric_limits<double>::lowest());
  if (!save_net_as_text_net(project.context(), project.signif().net(), all, written))
    return stopped_or_failed(project);
  command_result result;
  result.file("text_net", written);
  return result;
}

// ---- net.remetric ----

struct remetric_parameters {
  bool markers = false;
};

void describe_remetric(parameter_list &list, remetric_parameters &p) {
  list.add("with-markers", p.markers, "pairs with common markers too, though the net doesn't join them");
}

void check_remetric(const project_state &, const parts_there &there, const remetric_parameters &p) {
  if (p.markers && !there.has(project_part::markers))
    throw usage_error("with-markers needs markers, and there are none; markers.load loads them");
}

// Goes over the loaded net's overlaps only: no new one comes but those that markers vouch for.
command_result run_remetric(project_state &project, const remetric_parameters &p) {
  class_net made;
  const net_by_rule_options wanted{project.settings().same_metric_as_net,
                                   p.markers || project.settings().markers_in_clones};
  if (!create_net_by_rule(project.signif(), project.signif().net(), project.rule(), wanted, made))
    return stopped_or_failed(project);
  project.signif().net() = std::move(made);
  project.signif().net_is_loaded_set();
  net_was_made(project, "net.remetric", project.rule());
  command_result result;
  put_overlaps(project, result);
  return result;
}

// ---- net.subnet ----

void describe_subnet(parameter_list &list, output_wishes &p) {
  describe_output(list, p, "NET.ORBns", false);
}

void check_subnet(const project_state &project, const parts_there &, const output_wishes &p) {
  if (!p.out.empty())
    check_output(project, p.out, p.force);
}

command_result run_subnet(project_state &project, const output_wishes &p) {
  fs::path saved = p.out;
  if (!create_subnet_significant_connections_type(project.signif(), project.rule(), saved))
    return stopped_or_failed(project);
  command_result result;
  if (!saved.empty())
    result.file("net", saved);
  return result;
}

} // namespace

void add_net_rows(command_rows &rows) {
  using part = project_part;
  rows.push_back(command_maker<no_parameters>("net.create")
                     .captioned("Create net of overlaps")
                     .purpose("compare all clones in memory")
                     .example("net.create")
                     .needs({part::library})
                     .makes({part::net})
                     .runs(run_create)
                     .row());
  rows.push_back(command_maker<text_net_parameters>("net.create_text")
                     .captioned("Create net of significant clone overlaps")
                     .purpose("compare all clones and write the text net, which can be resumed and read")
                     .example("net.create_text out=net.txt load=yes")
                     .needs({part::library})
                     .makes({part::net})
                     .parameters(describe_create_text)
                     .checked_by(check_create_text)
                     .runs(run_create_text)
                     .row());
  rows.push_back(command_maker<net_file_parameters>("net.load")
                     .captioned("Load net of overlaps")
                     .purpose("load a native net of this library")
                     .example("net.load file=net.ORBns")
                     .needs({part::library})
                     .makes({part::net})
                     .parameters(describe_load)
                     .checked_by(check_net_file)
                     .runs(run_load)
                     .row());
  rows.push_back(command_maker<text_net_file_parameters>("net.load_text")
                     .captioned("Load text net of overlaps")
                     .purpose("load a text net, or the folder of its parts, and keep it as a native one")
                     .example("net.load_text file=net.txt out=net.ORBns")
                     .needs({part::library})
                     .makes({part::net})
                     .parameters(describe_load_text)
                     .checked_by(check_load_text)
                     .runs(run_load_text)
                     .row());
  rows.push_back(command_maker<output_wishes>("net.save")
                     .captioned("Save net of overlaps")
                     .purpose("save the net in the native form")
                     .example("net.save out=net.ORBns")
                     .needs({part::net})
                     .parameters(describe_save)
                     .checked_by(check_save)
                     .runs(run_save)
                     .row());
  rows.push_back(command_maker<output_wishes>("net.save_text")
                     .captioned("Save net of overlaps as text")
                     .purpose("write the net as a text net")
                     .example("net.save_text out=net.txt")
                     .needs({part::library, part::net})
                     .parameters(describe_save_text)
                     .checked_by(check_save)
                     .runs(run_save_text)
                     .row());
  rows.push_back(
      command_maker<remetric_parameters>("net.remetric")
          .captioned("Bring net to the metric in use")
          .purpose("score the loaded net's overlaps by the metric and cutoff in use, and keep what reaches it")
          .example("net.remetric")
          .needs({part::library, part::net})
          .makes({part::net})
          .parameters(describe_remetric)
          .checked_by(check_remetric)
          .runs(run_remetric)
          .row());
  rows.push_back(command_maker<output_wishes>("net.subnet")
                     .captioned("Create subnet of significant overlaps")
                     .purpose("save the net of all clones at the metric and cutoff in use; the loaded one stays")
                     .example("net.subnet out=net_20.ORBns")
                     .needs({part::library})
                     .parameters(describe_subnet)
                     .checked_by(check_subnet)
                     .runs(run_subnet)
                     .row());
}

} // namespace orb
