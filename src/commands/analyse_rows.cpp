// A chosen set of analyses over a list of clones, a folder of lists or the whole library.
#include <algorithm>
#include <fmt/format.h>

#include "commands/analysis_switches.h"
#include "commands/cluster_printing.h"
#include "commands/command_table.h"
#include "commands/contig_parameters.h"
#include "commands/row_steps.h"
#include "contigs/class_contig_process.h"

namespace orb {

namespace fs = std::filesystem;

std::span<const analysis_switch> analysis_switches() {
  using options = contig_process_options;
  static constexpr analysis_switch all[] = {
      {"consecutive", "ch_test_of_ordering", "Test of ordering", &options::option_test_of_ordering},
      {"all-pairs", "ch_test_of_all_dist", "Test of all distances", &options::option_test_of_all_dist},
      {"net", "ch_nets_for_cutoffs", "Net structure visualization ", &options::option_nets_for_cutoffs},
      {"mark", "ch_mark_MTP", "Mark list of clones", &options::option_mark_MTP},
      {"mark-two", "ch_mark_two_lists", "Mark two lists", &options::option_mark_two_lists},
      {"ordering", "ch_JK_ordering", "Ordering of clones (with JK on bands)", &options::option_JK_ordering},
      {"clustering", "ch_clustering", "Clusterization", &options::option_clustering},
      {"read-clusters", "ch_read_clustering", "Read clasters", &options::option_read_clustering},
      {"cutoffs", "", "several cutoffs", &options::option_several_metrics},
      {"cluster-test", "ch_clusterization_test", "with test", &options::option_clusterization_test},
      {"band-map", "ch_Band_Map_Linker", "Linker", &options::option_band_map},
      {"band-map-simulation", "ch_band_map_simul", "Simulation", &options::option_band_map_simul},
      {"topology", "ch_topology", "Find bad topology", &options::option_topology},
  };
  return all;
}

namespace {

const std::vector<std::string> preset_words{"one", "clustering", "folder"};

std::string words_of_switches() {
  std::string words;
  for (const analysis_switch &one : analysis_switches())
    words += (words.empty() ? "" : ", ") + std::string(one.word);
  return words;
}

void add_preset(const std::string &preset, contig_process_options &options) {
  if (preset == "one")
    options.standart_options_one_cluster();
  else if (preset == "clustering")
    options.option_clustering_only();
  else if (preset == "folder")
    options.standart_options_folder_of_clusters();
}

// Throws usage_error for a word that isn't known.
void add_words(const std::string &text, contig_process_options &options) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find(',', at), text.size());
    const std::string word = text.substr(at, end - at);
    at = end + 1;
    const std::span<const analysis_switch> switches = analysis_switches();
    const auto known =
        std::find_if(switches.begin(), switches.end(), [&](const analysis_switch &one) { return word == one.word; });
    if (known == switches.end())
      throw usage_error("--do: no analysis \"" + word + "\"; known are " + words_of_switches());
    options.*known->value = true;
  }
}

void add_choice(const std::string &words, const std::string &preset, contig_process_options &options) {
  add_preset(preset, options);
  add_words(words, options);
  // what only changes another analysis stands for it too
  options.option_nets_for_cutoffs =
      options.option_nets_for_cutoffs || (words.find("mark") != std::string::npos && !words.empty());
  options.option_clustering =
      options.option_clustering || options.option_read_clustering || options.option_clusterization_test;
}

// ---- analyse.options ----

struct options_parameters {
  std::string preset, words;
  bool clear = false;
};

void describe_options(parameter_list &list, options_parameters &p) {
  list.add("preset", p.preset, "switches on what is usual for one list (nothing more), clustering, a folder of lists")
      .one_of(preset_words)
      .unset("none");
  list.add("do", p.words, "switches on: " + words_of_switches()).type("A,B,...").unset("none");
  list.add("clear", p.clear, "switches everything off first");
}

void check_options(const project_state &, const parts_there &, const options_parameters &p) {
  contig_process_options tried;
  add_choice(p.words, p.preset, tried);
}

command_result run_options(project_state &project, const options_parameters &p) {
  contig_process_options &options = project.analyses();
  if (p.clear)
    options = {};
  add_choice(p.words, p.preset, options);
  if (options.option_several_metrics) // it is one of the project's settings
    project.settings().several_metrics_and_cutoffs = true;
  command_result result;
  for (const analysis_switch &one : analysis_switches())
    if (options.*one.value)
      result.findings += (result.findings.empty() ? "On: " : ", ") + std::string(one.word);
  if (result.findings.empty())
    result.findings = "No analysis is switched on.";
  return result;
}

// ---- analyse.run ----

struct run_parameters {
  fs::path lists, out;
  bool all = false, folder = false;
  std::string words, preset;
  contig_process_inputs inputs;
  print_wishes print;
  ordering_parameters ordering;
  drawing_options drawing;
};

void describe_run(parameter_list &list, run_parameters &p) {
  list.add("lists", p.lists, "a list of clones, or a folder of lists; without it a dialog asks").type("LIST|FOLDER");
  list.add("all", p.all, "all clones of the library as one list");
  list.add("folder", p.folder, "the dialog asks for a folder");
  list.add("out", p.out, "folder of the files; without it the working folder").type("DIR");
  list.add("do", p.words, "what is done: " + words_of_switches()).type("A,B,...").unset("by the options for analysis");
  list.add("preset", p.preset, "besides what is usual: for one list (nothing more), clustering, a folder of lists")
      .one_of(preset_words)
      .unset("none");
  list.add("mark", p.inputs.mark_1, "list of clones to be drawn red").type("LIST");
  list.add("mark2", p.inputs.mark_2, "list of clones to be drawn as boxes").type("LIST");
  list.add("clusters", p.inputs.clusters, "cluster numbers of the clones, one a line, for read-clusters").type("FILE");
  list.add("from-net-only", p.inputs.from_net_only, "tables of pairs hold the pairs of the net only").asked_else("no");
  describe_caption(list, p.print);
  describe_min_size(list, p.print);
  describe_ordering(list, p.ordering);
  describe_drawing_panel(list, p.drawing);
}

bool is_folder(const fs::path &path) {
  std::error_code failed;
  return fs::is_directory(path, failed);
}

contig_process_options options_of(const contig_process_options &panel, const run_parameters &p) {
  if (p.words.empty() && p.preset.empty())
    return panel;
  contig_process_options options;
  add_choice(p.words, p.preset, options);
  return options;
}

bool is_anything_on(const contig_process_options &options) {
  const std::span<const analysis_switch> switches = analysis_switches();
  return std::any_of(switches.begin(), switches.end(), [&](const analysis_switch &one) { return options.*one.value; });
}

void check_run(const project_state &project, const parts_there &, const run_parameters &p) {
  for (const fs::path &file : {p.lists, p.inputs.mark_1, p.inputs.mark_2, p.inputs.clusters})
    check_input(file);
  if (p.all && (p.folder || !p.lists.empty()))
    throw usage_error("either all clones are analysed, or a list or folder");
  const contig_process_options options = options_of(project.analyses(), p);
  const bool of_folder = p.folder || is_folder(p.lists);
  if (!of_folder && !is_anything_on(options))
    throw usage_error("nothing is to be done; --do says what: " + words_of_switches());
  if (of_folder && (options.option_clustering || options.option_topology || options.option_mark_two_lists ||
                    options.option_band_map || options.option_band_map_simul))
    throw usage_error("clusters, topology, band maps and two marked lists belong to one list, not to a folder");
}

command_result run_analyses(project_state &project, const run_parameters &p) {
  work_in(project, p.out);
  answer_printing_ahead(project, p.print);
  contig_process_inputs inputs = p.inputs;
  inputs.list = p.lists;
  contig_process_options options = options_of(project.analyses(), p);
  options.option_several_metrics = options.option_several_metrics || project.settings().several_metrics_and_cutoffs;
  options.option_mark_MTP = options.option_mark_MTP || !p.inputs.mark_1.empty();
  options.option_mark_two_lists = options.option_mark_two_lists || !p.inputs.mark_2.empty();
  class_contig_process work(project.signif(), project.rule(), options, inputs, p.drawing, ordering_of(p.ordering));
  const bool of_folder = p.folder || is_folder(p.lists);
  const bool done = of_folder ? work.process_folder_of_contigs() : work.controling_of_ordering_contig(p.all);
  command_result result = result_of(project, done);
  for (const fs::path &file : {p.lists, p.inputs.mark_1, p.inputs.mark_2, p.inputs.clusters})
    if (!file.empty())
      result.inputs.push_back(file);
  for (const fs::path &file : work.files_written())
    result.file(file.filename().string(), file);
  if (!done)
    return result;
  put_ordering(p.ordering, result);
  result.figure("lists", work.n_lists_get());
  if (options.option_topology) {
    result.figure("doubtful_clones", work.n_doubtful_get());
    result.findings = fmt::format("Clones whose neighbours fall apart without them: {}.", work.n_doubtful_get());
  }
  result.lines.push_back(of_folder ? work.files_written().front().string()
                                   : project.frame().working_folder_get().string());
  return result;
}

} // namespace

void add_analyse_rows(command_rows &rows) {
  using part = project_part;
  rows.push_back(command_maker<options_parameters>("analyse.options")
                     .captioned("Options for analysis of lists")
                     .purpose("what the analysis of lists does while it isn't told otherwise")
                     .example("analyse.options preset=folder do=topology")
                     .parameters(describe_options)
                     .checked_by(check_options)
                     .runs(run_options)
                     .row());
  rows.push_back(command_maker<run_parameters>("analyse.run")
                     .captioned("Analysis of lists of clones")
                     .purpose("tables, drawings, orders, clusters and doubtful clones of a list, a folder of lists, or "
                              "all clones")
                     .example("analyse.run lists=contig.txt do=consecutive,topology out=analysed")
                     .needs({part::library})
                     .parameters(describe_run)
                     .checked_by(check_run)
                     .runs(run_analyses)
                     .row());
}

} // namespace orb
