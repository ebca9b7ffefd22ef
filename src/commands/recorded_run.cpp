#include "commands/recorded_run.h"

#include <algorithm>

#include "commands/row_steps.h"
#include "frame/files.h"

namespace orb {

namespace fs = std::filesystem;

void record_wishes(const verb_run &call, const project_state &project, run_record &record) {
  static const std::vector<std::string> not_wishes{"input",   "markers", "pvalue-tables", "out",    "force",   "resume",
                                                   "threads", "quiet",   "verbose",       "log",    "answers", "yes",
                                                   "seed",    "metric",  "cutoff",        "burying"};
  for (const verb_option &option : call.options()) {
    if (std::find(not_wishes.begin(), not_wishes.end(), option.name) != not_wishes.end())
      continue;
    const std::string text = option.rows.front()->text();
    record.wish_set(option.name, text.empty() ? nlohmann::json() : nlohmann::json(text));
  }
  if (!call.option("metric"))
    return;
  const overlap_rule &rule = project.rule();
  record.wish_set("metric", class_clone_dist_general::name_of_cutoff_distance(rule.distance_index));
  record.wish_set("cutoff", rule.cutoff);
  record.wish_set("burying", rule.burying);
}

std::vector<std::string> new_results(const project_state &project, const fs::path &record) {
  std::vector<std::string> names;
  std::error_code failed;
  for (const fs::path &result : project.files().results())
    if (result != record && folder_of(result) == folder_of(record) &&
        (!fs::exists(result, failed) || project.files().may_give_way(result)))
      names.push_back(result.filename().string());
  return names;
}

static fs::path place_of_record(verb_run &call) {
  const fs::path out = call.path("out");
  switch (out.empty() ? record_place::none : call.the_verb().record) {
  case record_place::none:
    break;
  case record_place::beside_file:
    return run_record_name(out);
  case record_place::in_folder:
    return out / "run.json";
  }
  return {};
}

recorded_run::recorded_run(verb_run &call, project_state &project)
    : call_(call), project_(project), record_(identity_of(call), project.frame().clock()),
      file_(place_of_record(call)) {}

recorded_run::~recorded_run() {
  if (!begun_)
    return;
  try {
    save(command_result::ended(exit_status::run_failed, "the command was broken off"));
  } catch (const std::exception &) { // the reason of the end is told, and this one besides would hide it
  }
}

fs::path recorded_run::folder() const {
  return call_.the_verb().record == record_place::in_folder ? call_.path("out") : fs::path();
}

void recorded_run::let_leftovers_give_way() {
  for (const fs::path &leftover : leftovers_of_run(file_.path(), call_.the_verb().name))
    project_.files().gives_way(leftover);
}

void recorded_run::begin() {
  const bool in_folder = call_.the_verb().record == record_place::in_folder;
  if (!file_.path().empty())
    project_.working_folder_set(in_folder ? call_.path("out") : folder_of(call_.path("out")));
  if (in_folder && !file_.path().empty()) {
    check_record(call_.flag("force"));
    for (const std::string &words : project_.files().claim_folder(call_.path("out"), words_of_call(call_)))
      project_.frame().note(words);
    check_record(call_.flag("force")); // another command may have come to its end meanwhile
  }
  claim_results(project_, words_of_call(call_));
  if (file_.path().empty())
    return;
  record_.makes_set(new_results(project_, file_.path()));
  project_.files().writes(file_.path());
  record_wishes(call_, project_, record_);
  for (const bound_command &bound : call_.steps())
    for (const fs::path &input : inputs_of(bound.parameters()))
      record_.inputs_add(input);
  record_.end_set("running", exit_status::done, {});
  if (std::error_code failed; fs::exists(file_.path(), failed))
    before_ = file_bytes(file_.path());
  file_.save(record_);
  begun_ = true;
}

void recorded_run::take(const command_result &result) {
  const std::vector<fs::path> &foreseen = project_.files().results();
  bool is_new = false;
  for (const named_file &file : result.files) {
    std::error_code failed;
    if (!begun_ || folder_of(file.path) != folder_of(file_.path()) || !fs::is_regular_file(file.path, failed) ||
        std::find(foreseen.begin(), foreseen.end(), file.path) != foreseen.end())
      continue;
    record_.makes_add(file.path.filename().string());
    is_new = true;
  }
  record_result(result, record_);
  if (is_new)
    file_.save(record_);
}

void recorded_run::stage(const std::string &name) {
  if (name == stage_)
    return;
  if (!stage_.empty())
    record_.stage_end();
  stage_ = name;
  if (!stage_.empty())
    record_.stage_start(name);
}

void recorded_run::end(const command_result &end, const command_streams &streams) {
  stage({});
  if (!begun_)
    return;
  begun_ = false;
  try {
    if (end.status == exit_status::wrong_command) // then no work began
      put_back();
    else
      save(end);
  } catch (const file_error &failed) {
    if (end.completed)
      throw;
    streams.trouble(failed.what()); // why the work failed was told; that its record failed too is told beside
  }
}

void recorded_run::save(const command_result &end) {
  if (!end.completed)
    record_.leaves_set(folder_of(file_.path()));
  record_.end_set(state_of(end), end.status, end.why);
  file_.save(record_);
}

void recorded_run::put_back() {
  if (before_.empty()) {
    fs::remove(file_.path());
    return;
  }
  result_file old(file_.path());
  old.write(before_);
  old.commit();
}

// A record of a finished run stays; one of a run that made nothing, or of a run of this verb that failed or was
// stopped, gives way.
void recorded_run::check_record(bool force) {
  const auto before = force ? std::nullopt : run_record_read(file_.path());
  const bool is_complete = before && before->value("state", nlohmann::json()) == "complete";
  const bool made_nothing = before && before->value("outputs", nlohmann::json::object()).empty();
  const bool is_own = before && before->value("command", nlohmann::json()) == call_.the_verb().name;
  const bool gives_way = before && !is_complete && (made_nothing || is_own);
  check_output(project_, file_.path(), force || gives_way);
}

} // namespace orb
