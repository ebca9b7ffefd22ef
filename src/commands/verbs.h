// The verbs of the command line. A verb is a list of commands on a fresh project: load what is needed, run, save what
// was made; around them stand the checks before any work and the record of the run, written with its final state.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "commands/command_row.h"
#include "reports/run_record.h"

namespace orb {

// Where a verb puts what isn't a file: `results` is standard output, the others are standard error, of which `people`
// is silent when quiet is wanted. Stages are told with their place among all, from 1; an end that isn't well shows what
// was kept back.
struct command_streams {
  std::function<void(const std::string &)> results;
  std::function<void(const std::string &)> people;
  std::function<void(const std::string &)> trouble;
  std::function<void(int i, int n, const std::string &name)> stage_begins = [](int, int, const std::string &) {};
  std::function<void(const std::string &summary, bool well)> stage_ends = [](const std::string &, bool) {};
};

// The stages of one run, told as they begin and end; results come behind the line of their stage.
class told_stages {
public:
  told_stages(const command_streams &streams, int n) : streams_(streams), n_(n) {}
  // Ends the one before; a name that goes on is no new stage, and an empty one is none.
  void begin(const std::string &name);
  void add(const command_result &result);
  void end();

private:
  const command_streams &streams_;
  int n_, i_ = 0;
  std::string name_, summary_, findings_;
  std::vector<std::string> lines_;
  bool well_ = true;
};

// What holds for the program, whatever it does.
struct program_options {
  std::vector<std::string> command_line; // as given, for run.json
  int threads = 0;
  std::uint64_t seed = 1;
  bool quiet = false, verbose = false, yes = false, strict = false;
  std::filesystem::path answers, log;
};
void describe_program_options(parameter_list &list, program_options &options);

struct verb_step {
  using by_key = std::vector<std::pair<std::string, std::string>>;
  std::string command;                       // id
  std::string stage = {};                    // in run.json; one stage for neighbours of the same name
  by_key names = {};                         // option names of keys that differ; empty: no option
  std::string when = {};                     // the step runs when this option was given, with "!" when not
  by_key presets = {};                       // values that keys have in this verb
  std::optional<project_part> if_there = {}; // the step runs when an earlier one made this part
  by_key defaults = {};                      // others in this verb: it asks nothing that an option can say
};

enum class record_place { none, beside_file, in_folder }; // with --out

class verb_run;

struct verb {
  std::string name;      // one word, or a group and a word: "list sort"
  std::string arguments; // as shown in the help
  std::string purpose, example;
  std::vector<std::string> by_place; // options that are known by their place, needed but for those of `may_lack`
  record_place record = record_place::none;
  std::vector<verb_step> steps;
  std::vector<std::string> needed;                        // options that this verb needs, besides
  std::vector<std::string> may_lack = {};                 // of those known by their place
  void (*extra)(parameter_list &, verb_run &) = nullptr;  // options of the verb itself
  void (*check)(verb_run &) = nullptr;                    // of options together; throws usage_error
  void (*prepare)(verb_run &, project_state &) = nullptr; // settles options by what the inputs say
  exit_status (*run)(verb_run &, project_state &, const command_streams &) = nullptr; // in place of the steps
  bool prints_out = false; // the path of --out is the result line
  bool says_saved = false; // tells people that --out was saved
};

const std::vector<verb> &table_of_verbs();
const verb *verb_by_name(const std::string &name);

// One option of a verb: the parameters of the steps that it goes to.
struct verb_option {
  std::string name;
  std::vector<const parameter_row *> rows; // at least one; the first one describes it
  bool is_by_place = false, needed = false;
  // Empty when taken, else what is wrong.
  std::string take(const std::string &text) const;
  bool is_given() const { return rows.front()->is_given(); }
};

// One call of a verb: its commands with their parameters.
class verb_run {
public:
  explicit verb_run(const verb &wanted);
  verb_run(const verb_run &) = delete;
  verb_run &operator=(const verb_run &) = delete;

  const verb &the_verb() const { return *verb_; }
  program_options &program() { return program_; }
  const std::vector<verb_option> &options() const { return options_; }
  const verb_option *option(const std::string &name) const;
  bool is_given(const std::string &name) const;
  void set(const std::string &option, const std::string &value); // throws usage_error
  bool runs(const verb_step &step, const project_state &project) const;
  // The first step of a command; null when the verb has none.
  bound_command *step(const std::string &command);
  std::vector<bound_command> &steps() { return bound_; }
  // Text of a path option that was given, for the record and the log; empty otherwise.
  std::filesystem::path path(const std::string &option) const;
  bool flag(const std::string &option) const;

  // Options of verbs themselves.
  bool resume = false, automatic = false;
  std::filesystem::path run_folder, library, net, script, project_file;
  std::optional<std::filesystem::path> answers_used;

private:
  void gather(const verb_step &step, const bound_command &bound);

  const verb *verb_;
  program_options program_;
  parameter_list program_list_, extra_, force_list_;
  bool force_ = false; // of verbs whose results go into a folder
  std::vector<bound_command> bound_;
  std::vector<verb_option> options_;
};

// Runs a verb on a project that is cleared first. Everything for people goes to `streams.people`.
exit_status run_verb(verb_run &call, project_state &project, const command_streams &streams);

// Steps of `run_verb`, for verbs with a run of their own.
// Throws usage_error or file_error for anything wrong with the parameters of all steps that will run.
void check_steps(verb_run &call, project_state &project);
// Takes note of all files that the verb reads.
void note_inputs(verb_run &call, project_state &project);
// The command line, or the verb's name: who holds a lock.
std::string words_of_call(verb_run &call);
// Puts what a command found into the record.
void record_result(const command_result &result, run_record &record);
run_identity identity_of(verb_run &call);
// Says why a command ended early, when no message told it.
void say_why(const verb_run &call, const command_result &result, const command_streams &streams);
std::string state_of(const command_result &end); // "complete", "stopped", "failed"
// What is kept of a run that ended early, by its record.
std::string words_on_what_is_kept(const nlohmann::json &record, const std::filesystem::path &folder);
// The end of a list of commands so far: the first status that isn't done.
void take_end(const command_result &result, command_result &end);

// Verbs with functions of their own.
exit_status run_assemble_verb(verb_run &call, project_state &project, const command_streams &streams);
exit_status run_menu_verb(verb_run &call, project_state &project, const command_streams &streams);
exit_status run_script_verb(verb_run &call, project_state &project, const command_streams &streams);
void take_cutoff_of_fpc_input(verb_run &call);
// With --auto fingerprints may have any gel length: one that holds them, until the proposals say more.
void take_gel_of_fingerprints(verb_run &call);
void prepare_run_verb(verb_run &call, project_state &project);
void prepare_map_verb(verb_run &call, project_state &project);
void prepare_picture_verb(verb_run &call, project_state &project);

} // namespace orb
