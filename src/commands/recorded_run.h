// The record of a verb: there before the first result, and at the end with the final state, however the verb ends.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "commands/verbs.h"

namespace orb {

// What was asked for, into the record. Inputs count by their contents, and what changes no result doesn't count.
void record_wishes(const verb_run &call, const project_state &project, run_record &record);
// Names of the results beside the record that aren't there yet, or are left by a run that failed.
std::vector<std::string> new_results(const project_state &project, const std::filesystem::path &record);

class recorded_run {
public:
  recorded_run(verb_run &call, project_state &project);
  // Without an end before: the command was broken off.
  ~recorded_run();
  recorded_run(const recorded_run &) = delete;
  recorded_run &operator=(const recorded_run &) = delete;

  run_record &record() { return record_; }
  // Of the results; empty when they are single files.
  std::filesystem::path folder() const;

  // Before the checks: what an earlier run left that failed may be overwritten.
  void let_leftovers_give_way();
  // Takes the outputs for this run and writes the record. Throws file_error when they aren't to be had.
  void begin();
  // Keeps what a step found. A result whose name showed only when it was made is told at once, in case that the run is
  // killed.
  void take(const command_result &result);
  void stage(const std::string &name);
  void end(const command_result &end, const command_streams &streams);

private:
  void save(const command_result &end);
  void put_back();
  void check_record(bool force);

  verb_run &call_;
  project_state &project_;
  run_record record_;
  run_record_file file_;
  std::string stage_, before_; // before: the bytes of an earlier record
  bool begun_ = false;         // and not ended
};

} // namespace orb
