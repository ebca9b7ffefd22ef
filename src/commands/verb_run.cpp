#include <algorithm>

#include "commands/command_door.h"
#include "commands/command_table.h"
#include "commands/recorded_run.h"
#include "commands/row_steps.h"
#include "commands/verbs.h"
#include "database/class_DB_of_clones.h"
#include "frame/numbers.h"

namespace orb {

namespace fs = std::filesystem;

void describe_program_options(parameter_list &list, program_options &options) {
  const char *group = "General";
  list.add("threads", options.threads, "worker threads; the result is the same for any number")
      .short_key('t')
      .limits(0, 4096)
      .unset("all")
      .in_group(group);
  list.add("seed", options.seed, "of all chance").in_group(group);
  list.add("strict", options.strict, "what is a warning about the input is an error").in_group(group);
  list.add("quiet", options.quiet, "only warnings and what failed").short_key('q').in_group(group);
  list.add("verbose", options.verbose, "message boxes, log lines and counters too").short_key('v').in_group(group);
  list.add("log", options.log, "folder of ORB.log").type("DIR").in_group(group);
  list.add("answers", options.answers, "file of answers to questions: prompt start, tab, answer")
      .type("FILE")
      .in_group(group);
  list.add("yes", options.yes, "answer questions so that the work goes on").in_group(group);
}

// ---- options ----

std::string verb_option::take(const std::string &text) const {
  for (const parameter_row *row : rows)
    if (const std::string wrong = row->take(text); !wrong.empty())
      return wrong;
  return {};
}

verb_run::verb_run(const verb &wanted) : verb_(&wanted) {
  bound_.reserve(wanted.steps.size());
  for (const verb_step &step : wanted.steps) {
    bound_.push_back(command_by_id(step.command)->bind());
    for (const auto &[key, value] : step.presets)
      bound_.back().set(key, value);
    bound_.back().ask_nothing();
    for (const auto &[key, value] : step.defaults)
      bound_.back().set_default(key, value);
  }
  if (wanted.extra)
    wanted.extra(extra_, *this);
  describe_program_options(program_list_, program_);
  const auto add = [&](const parameter_list &list) {
    for (const parameter_row &row : list.rows())
      options_.push_back({row.key, {&row}, false, row.required});
  };
  add(extra_);
  for (std::size_t i = 0; i < bound_.size(); ++i)
    gather(wanted.steps[i], bound_[i]);
  if (wanted.record == record_place::in_folder && !option("force")) {
    force_list_.add("force", force_, "overwrite results that exist");
    add(force_list_);
  }
  add(program_list_);
  for (verb_option &option : options_) {
    option.is_by_place =
        std::find(wanted.by_place.begin(), wanted.by_place.end(), option.name) != wanted.by_place.end();
    const bool may_lack =
        std::find(wanted.may_lack.begin(), wanted.may_lack.end(), option.name) != wanted.may_lack.end();
    option.needed = option.needed || (option.is_by_place && !may_lack) ||
                    std::find(wanted.needed.begin(), wanted.needed.end(), option.name) != wanted.needed.end();
  }
}

void verb_run::gather(const verb_step &step, const bound_command &bound) {
  for (const parameter_row &row : bound.parameters().rows()) {
    std::string name = row.key;
    for (const auto &[key, other] : step.names)
      if (key == row.key)
        name = other;
    const bool is_preset = std::any_of(step.presets.begin(), step.presets.end(),
                                       [&](const auto &preset) { return preset.first == row.key; });
    if (name.empty() || is_preset)
      continue;
    const auto at =
        std::find_if(options_.begin(), options_.end(), [&](const verb_option &option) { return option.name == name; });
    if (at != options_.end())
      at->rows.push_back(&row);
    else
      options_.push_back({name, {&row}, false, row.required && step.when.empty()});
  }
}

const verb_option *verb_run::option(const std::string &name) const {
  const auto at =
      std::find_if(options_.begin(), options_.end(), [&](const verb_option &option) { return option.name == name; });
  return at == options_.end() ? nullptr : &*at;
}

bool verb_run::is_given(const std::string &name) const {
  const verb_option *found = option(name);
  return found && found->is_given();
}

void verb_run::set(const std::string &name, const std::string &value) {
  const verb_option *found = option(name);
  if (!found)
    throw usage_error("unknown option --" + name);
  if (const std::string wrong = found->take(value); !wrong.empty())
    throw usage_error((found->is_by_place ? name : "--" + name) + ": " + wrong);
}

bool verb_run::runs(const verb_step &step, const project_state &project) const {
  if (step.if_there && !project.has(*step.if_there))
    return false;
  if (step.when.empty())
    return true;
  return step.when[0] == '!' ? !is_given(step.when.substr(1)) : is_given(step.when);
}

bound_command *verb_run::step(const std::string &command) {
  for (bound_command &bound : bound_)
    if (bound.row().id == command)
      return &bound;
  return nullptr;
}

fs::path verb_run::path(const std::string &name) const {
  const verb_option *found = option(name);
  if (!found)
    return {};
  const auto *held = std::get_if<fs::path *>(&found->rows.front()->target);
  return held ? **held : fs::path();
}

bool verb_run::flag(const std::string &name) const {
  const verb_option *found = option(name);
  if (!found)
    return false;
  const auto *held = std::get_if<bool *>(&found->rows.front()->target);
  return held && **held;
}

// ---- stages ----

void told_stages::begin(const std::string &name) {
  if (name == name_)
    return;
  end();
  name_ = name;
  if (!name_.empty())
    streams_.stage_begins(++i_, n_, name_);
}

// A few figures tell more than that it is done; many are shown where they were found.
static std::string text_of_few(const std::vector<named_figure> &figures) {
  constexpr std::size_t most = 6;
  std::string text;
  for (const named_figure &one : figures.size() <= most ? figures : std::vector<named_figure>{}) {
    std::string name = one.name;
    std::replace(name.begin(), name.end(), '_', ' ');
    text += (text.empty() ? "" : ", ") + name + " ";
    if (const auto *whole = std::get_if<std::int64_t>(&one.value))
      text += number_text_thousands(*whole);
    else if (const auto *number = std::get_if<double>(&one.value))
      text += number_text(*number, 2);
    else if (const auto *word = std::get_if<std::string>(&one.value))
      text += *word;
    else
      text += std::get<bool>(one.value) ? "yes" : "no";
  }
  return text;
}

void told_stages::add(const command_result &result) {
  if (const std::string told = result.summary.empty() ? text_of_few(result.figures) : result.summary; !told.empty())
    summary_ += (summary_.empty() ? "" : "; ") + told;
  if (!result.findings.empty())
    findings_ += (findings_.empty() ? "" : "\n") + result.findings;
  lines_.insert(lines_.end(), result.lines.begin(), result.lines.end());
  well_ = well_ && result.status == exit_status::done;
  if (!well_)
    streams_.stage_ends({}, false);
}

void told_stages::end() {
  if (!name_.empty() && well_)
    streams_.stage_ends(summary_, true);
  if (!findings_.empty())
    streams_.people(findings_);
  for (const std::string &line : lines_)
    streams_.results(line);
  name_.clear();
  summary_.clear();
  findings_.clear();
  lines_.clear();
  well_ = true;
}

namespace {

// Neighbours of the same name are one stage; a step that hangs on what an earlier one makes counts as if it ran.
int number_of_stages(const verb_run &call, const project_state &project) {
  int n = 0;
  std::string before;
  for (const verb_step &step : call.the_verb().steps) {
    const bool may_run = step.if_there || call.runs(step, project);
    if (!may_run || step.stage == before)
      continue;
    before = step.stage;
    n += before.empty() ? 0 : 1;
  }
  return n;
}

} // namespace

// ---- running ----

run_identity identity_of(verb_run &call) {
  return {call.the_verb().name, call.program().command_line, call.program().seed, call.program().threads};
}

std::string words_on_what_is_kept(const nlohmann::json &record, const fs::path &folder) {
  std::string kept;
  const nlohmann::json outputs = record.value("outputs", nlohmann::json::object());
  for (const auto &[key, output] : outputs.items())
    kept += (kept.empty() ? "" : ", ") + output.value("name", key);
  if (kept.empty())
    return "Stopped. Nothing was kept.";
  return "Stopped. Kept" + (folder.empty() ? "" : " in " + folder.string()) + ": " + kept + ".";
}

std::string state_of(const command_result &end) {
  return end.completed ? "complete" : end.status == exit_status::stopped ? "stopped" : "failed";
}

void record_result(const command_result &result, run_record &record) {
  const auto value_of = [](const figure_value &value) {
    return std::visit([](const auto &held) { return nlohmann::json(held); }, value);
  };
  for (const named_figure &parameter : result.parameters)
    record.parameter_set(parameter.name, value_of(parameter.value));
  for (const named_figure &figure : result.figures)
    record.result_set(figure.name, value_of(figure.value));
  for (const fs::path &input : result.inputs)
    record.inputs_add(input);
  for (const std::string &warning : result.warnings)
    record.warning_add(warning);
  std::error_code failed;
  for (const named_file &file : result.files)
    if (fs::exists(file.path, failed))
      record.output_set(file.key, file.path);
}

void say_why(const verb_run &call, const command_result &result, const command_streams &streams) {
  if (!result.why.empty())
    streams.trouble("orb " + call.the_verb().name + ": " + result.why);
}

void take_end(const command_result &result, command_result &end) {
  if (end.status == exit_status::done) {
    end.status = result.status;
    end.why = result.why;
  }
  end.completed = end.completed && result.completed;
}

void note_inputs(verb_run &call, project_state &project) {
  for (const bound_command &bound : call.steps())
    for (const fs::path &input : inputs_of(bound.parameters()))
      project.files().reads(input);
  for (const fs::path &input : {call.run_folder, call.library, call.net, call.program().answers})
    project.files().reads(input);
}

std::string words_of_call(verb_run &call) {
  std::string words;
  for (const std::string &word : call.program().command_line)
    words += (words.empty() ? "" : " ") + word;
  return words.empty() ? call.the_verb().name : words;
}

void check_steps(verb_run &call, project_state &project) {
  if (call.the_verb().check)
    call.the_verb().check(call);
  parts_there there = parts_there::of(project);
  const std::vector<verb_step> &steps = call.the_verb().steps;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    const bool could_run = steps[i].if_there ? there.has(*steps[i].if_there) : call.runs(steps[i], project);
    if (!could_run)
      continue;
    const bound_command &bound = call.steps()[i];
    bound.check(project, there);
    bound.foresee(project, there);
    for (const project_part part : bound.row().makes)
      there.add(part);
  }
}

namespace {

// All steps in their order; the worst end of them.
command_result run_steps(verb_run &call, project_state &project, recorded_run &recorded,
                         const command_streams &streams) {
  command_result end;
  const std::vector<verb_step> &steps = call.the_verb().steps;
  told_stages stages(streams, number_of_stages(call, project));
  for (std::size_t i = 0; i < steps.size(); ++i) {
    if (!call.runs(steps[i], project))
      continue;
    const bound_command &bound = call.steps()[i];
    recorded.stage(steps[i].stage);
    stages.begin(steps[i].stage);
    const command_result result = run_command(project, bound);
    stages.add(result);
    recorded.take(result);
    for (const project_part part : bound.row().makes)
      if (part == project_part::library && result.completed)
        recorded.record().library_set(project.database().total_number_of_clones_get(),
                                      library_checksum(project.database()));
    take_end(result, end);
    if (!result.completed)
      break;
  }
  stages.end();
  return end;
}

} // namespace

exit_status run_verb(verb_run &call, project_state &project, const command_streams &streams) {
  if (!project.running().empty()) { // the project belongs to the command that runs
    const std::string why = call.the_verb().name + " can't begin while " + project.running() + " runs.";
    say_why(call, command_result::ended(exit_status::run_failed, why), streams);
    return exit_status::run_failed;
  }
  project.settings().seed = call.program().seed;
  project.settings().threads = call.program().threads;
  project.frame().strict_set(call.program().strict);
  project.clear();
  const verb &wanted = call.the_verb();
  command_result end;
  try {
    take_cutoff_of_fpc_input(call);
    if (wanted.run)
      return wanted.run(call, project, streams);
    const files_scope in_hand(project.files());
    if (wanted.prepare)
      wanted.prepare(call, project);
    note_inputs(call, project);
    recorded_run recorded(call, project);
    recorded.let_leftovers_give_way();
    check_steps(call, project);
    recorded.begin();
    end = run_steps(call, project, recorded, streams);
    recorded.end(end, streams);
    if (end.status == exit_status::stopped)
      streams.trouble(words_on_what_is_kept(recorded.record().json(), recorded.folder()));
    if (end.completed && wanted.says_saved && std::filesystem::exists(call.path("out")))
      streams.people("Saved: " + call.path("out").string());
    if (end.completed && wanted.prints_out)
      streams.results(call.path("out").string());
  } catch (const usage_error &wrong) {
    end = command_result::ended(exit_status::wrong_command, wrong.what());
  } catch (const file_error &failed) {
    end = command_result::ended(exit_status::no_input_or_output, failed.what());
  } catch (const program_end &ended) {
    end = command_result::ended(ended.status());
  } catch (const nlohmann::json::exception &wrong) {
    end = command_result::ended(exit_status::run_failed, std::string("a run.json is damaged: ") + wrong.what());
  }
  say_why(call, end, streams);
  return end.status;
}

} // namespace orb
