#include "commands/script.h"

#include <iostream>
#include <iterator>

#include "commands/command_door.h"
#include "commands/command_table.h"
#include "commands/row_steps.h"
#include "frame/files.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// The words of a line, quotes resolved.
class word_cutter {
public:
  explicit word_cutter(const std::string &text) : text_(text) {}

  bool next(std::string &word) {
    while (at_ < text_.size() && is_blank(text_[at_]))
      ++at_;
    if (at_ == text_.size() || text_[at_] == '#')
      return false;
    word.clear();
    bool quoted = false;
    for (; at_ < text_.size() && (quoted || !is_blank(text_[at_])); ++at_) {
      const char c = text_[at_];
      if (c == '"')
        quoted = !quoted;
      else if (quoted && c == '\\' && at_ + 1 < text_.size() && (text_[at_ + 1] == '"' || text_[at_ + 1] == '\\'))
        word += text_[++at_];
      else
        word += c;
    }
    if (quoted)
      throw usage_error("a double quote is open");
    return true;
  }

private:
  static bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

  const std::string &text_;
  std::size_t at_ = 0;
};

command_result run_line(const script_line &line, project_state &project) {
  try {
    bound_command command = bound_by_name(line.command);
    for (const auto &[key, value] : line.values)
      command.set(key, value);
    return run_command(project, command);
  } catch (const usage_error &wrong) {
    return command_result::ended(exit_status::wrong_command, wrong.what());
  }
}

} // namespace

script_line parse_script_line(const std::string &text, std::int64_t number) {
  script_line line;
  line.number = number;
  word_cutter words(text);
  std::string word;
  if (words.next(word))
    line.command = word;
  while (words.next(word)) {
    const std::size_t sign = word.find('=');
    if (sign == 0)
      throw usage_error("a key is missing before " + word);
    line.values.emplace_back(word.substr(0, sign), sign == std::string::npos ? "yes" : word.substr(sign + 1));
  }
  return line;
}

// Lines that hold one; a line that can't be read counts too.
static int number_of_commands(const std::string &text) {
  int n = 0;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    const std::size_t first = text.find_first_not_of(" \t\r", begin);
    n += first < end && text[first] != '#' ? 1 : 0;
    begin = end + 1;
  }
  return n;
}

exit_status run_script(const std::string &text, const std::string &name, project_state &project,
                       const command_streams &streams) {
  exit_status worst = exit_status::done;
  std::int64_t number = 0;
  told_stages stages(streams, number_of_commands(text));
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    ++number;
    command_result result;
    script_line line;
    try {
      line = parse_script_line(text.substr(begin, end - begin), number);
      if (!line.command.empty()) {
        stages.begin(line.command);
        result = run_line(line, project);
      }
    } catch (const usage_error &wrong) {
      result = command_result::ended(exit_status::wrong_command, wrong.what());
    }
    begin = end + 1;
    stages.add(result);
    stages.end();
    if (worst == exit_status::done)
      worst = result.status;
    if (result.completed && result.status != exit_status::wrong_command)
      continue;
    streams.trouble("orb script: " + name + ", line " + std::to_string(number) + ", " +
                    (line.command.empty() ? "" : line.command + ": ") +
                    (result.why.empty() ? text_of_end(result) : result.why));
    return result.status;
  }
  return worst;
}

static command_result open_named_project(project_state &project, const fs::path &file) {
  if (file.empty())
    return {};
  bound_command open = command_by_id("project.open")->bind();
  open.set("file", file.string());
  return run_command(project, open);
}

exit_status run_script_verb(verb_run &call, project_state &project, const command_streams &streams) {
  const command_result opened = open_named_project(project, call.project_file);
  if (!opened.completed) {
    say_why(call, opened, streams);
    return opened.status;
  }
  const bool from_input = call.script == "-";
  const std::string text =
      from_input ? std::string(std::istreambuf_iterator<char>(std::cin), {}) : file_bytes(call.script);
  return run_script(text, from_input ? "standard input" : call.script.string(), project, streams);
}

exit_status run_menu_verb(verb_run &call, project_state &project, const command_streams &streams) {
  const command_result opened = open_named_project(project, call.project_file);
  if (!opened.completed) {
    say_why(call, opened, streams);
    return opened.status;
  }
  const parts_there there = parts_there::of(project);
  for (const menu_entry &entry : table_of_menu_entries()) {
    std::string state = "runnable";
    if (entry.command.empty()) {
      state = "without action";
    } else {
      std::string missing;
      for (const project_part part : command_by_id(entry.command)->needs)
        if (!there.has(part))
          missing += (missing.empty() ? "" : ", ") + name_of_part(part);
      if (!missing.empty())
        state = "needs " + missing;
    }
    streams.results(entry.control + "\t" + entry.place + "\t" + entry.caption + "\t" + entry.command + "\t" + state);
  }
  return exit_status::done;
}

} // namespace orb
