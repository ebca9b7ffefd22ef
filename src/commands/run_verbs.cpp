// The verbs over a finished run: where its library, net, metric and cutoff come from.
#include <algorithm>

#include "commands/command_table.h"
#include "commands/row_steps.h"
#include "commands/verbs.h"
#include "database/band_statistics.h"
#include "fpc/fpc_blocks.h"
#include "frame/numbers.h"
#include "net/parameter_proposals.h"
#include "project/input_kind.h"
#include "reports/fingerprint_survey.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// A file that the record names as an output of the run, in the record's folder; empty when there is none.
fs::path output_of_run(const nlohmann::json &record, const fs::path &folder, const char *key) {
  const nlohmann::json outputs = record.value("outputs", nlohmann::json::object());
  if (!outputs.is_object() || !outputs.contains(key))
    return {};
  return folder / outputs[key].value("name", "");
}

// The inputs of a run that are of a kind: the first of them. Fingerprints stand for their folder or file.
fs::path input_of_run(const nlohmann::json &record, bool net) {
  for (const nlohmann::json &input : record.value("inputs", nlohmann::json::array())) {
    const fs::path path = input.value("path", "");
    const input_kind kind = kind_of_input(path);
    if (net ? kind == input_kind::native_net : kind == input_kind::library)
      return path;
  }
  return {};
}

void set_if_open(bound_command *command, const char *key, const nlohmann::json &parameters, const char *name) {
  if (!command || !parameters.is_object() || !parameters.contains(name))
    return;
  const parameter_row *row = command->parameters().find(key);
  if (!row || row->is_given())
    return;
  command->set(key, parameters[name].is_string() ? parameters[name].get<std::string>() : parameters[name].dump());
}

// How long a band is was told to the run; what is told now counts more. Forms that count in bands take none of it.
void take_lengths_of_run(verb_run &call, const nlohmann::json &record) {
  static const char *const keys[]{"bp-per-band", "clone-length", "genome-length"};
  const nlohmann::json wishes = record.value("wishes", nlohmann::json::object());
  const verb_option *form = call.option("to");
  const std::string to = form ? form->rows.front()->text() : std::string();
  if (to == "fpc" || to == "tsv" || !wishes.is_object())
    return;
  for (const char *key : keys)
    if (call.is_given(key))
      return;
  for (bound_command &step : call.steps())
    for (const char *key : keys)
      if (wishes.contains(key) && wishes[key].is_string() && step.parameters().find(key))
        step.set_default(key, wishes[key].get<std::string>());
}

// Metric, cutoff and burying fraction that aren't given become the run's.
void take_metric_of_run(verb_run &call, const nlohmann::json &record, project_state &project) {
  bound_command *metric = call.step("metric.set");
  if (!metric) { // nothing is scored, whether or not it could be
    project.rule() = rule_of_record(record).value_or(project.rule());
    return;
  }
  const nlohmann::json parameters = record.value("parameters", nlohmann::json::object());
  if (!call.is_given("metric")) {
    set_if_open(metric, "metric", parameters, "metric");
    set_if_open(metric, "cutoff", parameters, "cutoff");
  }
  set_if_open(metric, "burying", parameters, "burying");
}

// The net that was cut into contigs. A verb that can do without one goes without when the record's isn't there.
void take_net_of_run(verb_run &call, const nlohmann::json &record, const fs::path &results) {
  fs::path net = call.net;
  for (const char *key : {"revised_net", "net"})
    if (net.empty())
      net = output_of_run(record, results, key);
  if (net.empty())
    net = input_of_run(record, true);
  const std::vector<verb_step> &steps = call.the_verb().steps;
  const bool needed = std::any_of(steps.begin(), steps.end(), [](const verb_step &step) {
    return step.command == "net.load" && step.when.empty();
  });
  if (needed && net.empty())
    throw usage_error("no record of " + call.run_folder.string() + " names a net; give one with --net");
  if (std::error_code failed; !needed && !call.is_given("net") && !fs::exists(net, failed))
    return;
  call.set("net", net.string()); // the step runs when it is given
  call.step("net.load")->set("file", net.string());
}

} // namespace

void prepare_run_verb(verb_run &call, project_state &project) {
  const fs::path folder = folder_of_run(project, call.run_folder);
  if (folder.empty())
    throw program_end("no run", exit_status::run_failed); // told already
  const fs::path results = fs::absolute(folder).lexically_normal().parent_path();
  const nlohmann::json record = run_record_read(results / "run.json").value_or(nlohmann::json::object());
  take_metric_of_run(call, record, project);
  take_lengths_of_run(call, record);
  fs::path library = !call.library.empty() ? call.library : output_of_run(record, results, "library");
  if (library.empty())
    library = input_of_run(record, false);
  if (library.empty())
    throw usage_error("no record of " + call.run_folder.string() + " names a library file; give one with --library");
  call.step("library.load")->set("file", library.string());
  call.step("contigs.load")->set("folder", folder.string());
  if (call.step("net.load"))
    take_net_of_run(call, record, results);
  tell_unfinished_run(project.frame(), results);
}

void take_gel_of_fingerprints(verb_run &call) {
  bound_command *load = call.step("library.load");
  if (!call.automatic || !load || call.is_given("gel-length") || call.is_given("preset"))
    return;
  const fs::path input = call.path("input");
  const input_kind kind = kind_of_input(input);
  if (kind != input_kind::sizes_folder && kind != input_kind::sizes_file)
    return;
  const fingerprint_survey survey =
      survey_of_fingerprints(fs::is_directory(input) ? sizes_files_of_folder(input) : std::vector<fs::path>{input});
  if (survey.largest_band <= LARGEST_band_axis)
    load->set_default("gel-length", number_text_shortest(gel_length_for(survey.largest_band)));
}

// The cutoff of an FPC project's head counts where neither a metric nor a cutoff is asked for.
void take_cutoff_of_fpc_input(verb_run &call) {
  bound_command *metric = call.step("metric.set");
  if (!metric || call.is_given("metric") || call.is_given("cutoff"))
    return;
  for (const char *name : {"input", "file", "library"}) {
    const fs::path file = call.path(name);
    if (file.empty() || kind_of_input(file) != input_kind::fpc_file)
      continue;
    if (const std::optional<double> cutoff = head_of_fpc_file(file).cutoff)
      metric->set_default("cutoff", number_text_shortest(*cutoff));
  }
}

} // namespace orb
