#include "commands/run_source.h"

#include "commands/command_steps.h"
#include "reports/input_kind.h"

namespace orb {

namespace fs = std::filesystem;

// A file that the record names as an output of the run, in the record's folder; empty when there is none.
static fs::path output_of_run(const nlohmann::json &record, const fs::path &folder, const char *key) {
  const nlohmann::json outputs = record.value("outputs", nlohmann::json::object());
  if (!outputs.is_object() || !outputs.contains(key))
    return {};
  return folder / outputs[key].value("name", "");
}

// The inputs of a run that are of a kind: the first of them. Fingerprints stand for their folder or file.
static fs::path input_of_run(const nlohmann::json &record, bool net) {
  for (const nlohmann::json &input : record.value("inputs", nlohmann::json::array())) {
    const fs::path path = input.value("path", "");
    const input_kind kind = kind_of_input(path);
    if (net ? kind == input_kind::native_net : kind == input_kind::library)
      return path;
  }
  return {};
}

static void take_metric_of_run(const nlohmann::json &record, command_options &options) {
  const nlohmann::json parameters = record.value("parameters", nlohmann::json::object());
  if (!parameters.is_object())
    return;
  const bool same_metric = options.metric.empty();
  if (same_metric)
    options.metric = parameters.value("metric", "");
  if (same_metric && !options.cutoff && parameters.contains("cutoff"))
    options.cutoff = parameters["cutoff"].get<double>();
  if (!options.burying && parameters.contains("burying"))
    options.burying = parameters["burying"].get<double>();
}

run_source source_of_run(project_state &session, command_options &options) {
  run_source found;
  found.folder = folder_of_run(session, options.run);
  if (found.folder.empty())
    return found;
  const fs::path results = fs::absolute(found.folder).lexically_normal().parent_path();
  const nlohmann::json record = run_record_read(results / "run.json").value_or(nlohmann::json::object());
  take_metric_of_run(record, options);
  found.library = !options.library.empty() ? options.library : output_of_run(record, results, "library");
  if (found.library.empty())
    found.library = input_of_run(record, false);
  if (found.library.empty())
    throw usage_error("no record of " + options.run.string() + " names a library file; give one with --library");
  found.net = options.net;
  for (const char *key : {"revised_net", "net"})
    if (found.net.empty())
      found.net = output_of_run(record, results, key);
  if (found.net.empty())
    found.net = input_of_run(record, true);
  return found;
}

} // namespace orb
