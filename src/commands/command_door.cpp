#include "commands/command_door.h"

#include <new>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "commands/row_steps.h"
#include "reports/run_record.h"

namespace orb {

namespace {

// Takes the project for one command, and gives it back on every way out.
class running_mark {
public:
  running_mark(project_state &project, const std::string &id) : project_(project) { project_.running_set(id); }
  ~running_mark() { project_.running_set({}); }
  running_mark(const running_mark &) = delete;
  running_mark &operator=(const running_mark &) = delete;

private:
  project_state &project_;
};

template <class Work> command_result guarded(const Work &work) {
  try {
    return work();
  } catch (const program_end &end) { // its message was shown
    return command_result::ended(end.status());
  } catch (const usage_error &wrong) {
    return command_result::ended(exit_status::wrong_command, wrong.what());
  } catch (const file_error &failed) {
    return command_result::ended(exit_status::no_input_or_output, failed.what());
  } catch (const std::bad_alloc &) {
    return command_result::ended(exit_status::run_failed, "not enough memory");
  } catch (const nlohmann::json::exception &wrong) { // the one JSON that is read: run records, which people may edit
    return command_result::ended(exit_status::run_failed, std::string("a run.json is damaged: ") + wrong.what());
  } catch (const std::length_error &wrong) { // more than this build's numbers can count
    return command_result::ended(exit_status::run_failed, wrong.what());
  } catch (const std::exception &wrong) {
    return command_result::ended(exit_status::broken_invariant, std::string("internal fault: ") + wrong.what());
  }
}

// The doubtful places become one warning; under --strict a warning is an error, which ends a list of commands.
void settle_warnings(process_frame &frame, command_result &result) {
  if (frame.doubts().count() > 0)
    frame.warn(frame.doubts().text());
  result.warnings = frame.warnings();
  if (!frame.strict_get() || result.warnings.empty() || result.status != exit_status::done)
    return;
  result.status = exit_status::run_failed;
  result.completed = false;
  result.why = "with --strict a warning is an error";
}

// The record beside a result tells of the file that was there before: a command by itself leaves none of its own.
void remove_old_records(const command_result &result) {
  for (const named_file &file : result.files) {
    std::error_code failed;
    std::filesystem::remove(run_record_name(file.path), failed);
  }
}

// What the frame saw of the work counts too.
void settle_status(process_frame &frame, command_result &result) {
  if (frame.process_is_running() && result.status != exit_status::done) {
    if (frame.stop_requested_get())
      frame.process_stopped_manually();
    else
      frame.process_aborted();
  }
  if (result.status == exit_status::done && frame.was_stopped()) {
    result.status = exit_status::stopped;
    result.completed = false;
  }
  if (result.status == exit_status::done && frame.data_failed())
    result.status = exit_status::run_failed;
}

} // namespace

std::string text_of_end(const command_result &result) {
  switch (result.status) {
  case exit_status::done:
    return "done";
  case exit_status::stopped:
    return "stopped";
  default:
    return (result.completed ? "done, with doubtful data" : "failed") + (result.why.empty() ? "" : ": " + result.why);
  }
}

command_result run_command(project_state &project, const bound_command &command) {
  const std::string &id = command.row().id;
  process_frame &frame = project.frame();
  if (!project.running().empty()) {
    const std::string why = id + " can't begin while " + project.running() + " runs.";
    frame.message(why);
    return command_result::ended(exit_status::run_failed, why);
  }
  const running_mark mark(project, id);
  const files_scope in_hand(project.files());
  const frame_scope scope(frame);
  if (!project.working_folder().empty())
    frame.working_folder_set(project.working_folder());
  bool begun = false; // a command that is refused before any work leaves no line
  command_result result = guarded([&] {
    if (in_hand.is_outermost())
      for (const std::filesystem::path &input : inputs_of(command.parameters()))
        project.files().reads(input);
    command.check(project, parts_there::of(project));
    if (in_hand.is_outermost()) {
      claim_results(project, id);
      command.check(project, parts_there::of(project)); // another command may have written until then
    }
    frame.log_line(id);
    begun = true;
    return command.row().run_(project, command.values_.get());
  });
  const command_result logged = guarded([&] {
    settle_warnings(frame, result);
    settle_status(frame, result);
    if (begun)
      frame.log_line(id + " " + text_of_end(result));
    return command_result{};
  });
  if (in_hand.is_outermost() && result.completed)
    remove_old_records(result);
  if (!logged.completed && result.completed) { // what it made stays named
    result.completed = false;
    result.status = logged.status;
    result.why = logged.why;
  }
  return result;
}

} // namespace orb
