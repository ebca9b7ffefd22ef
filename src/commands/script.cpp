#include "commands/script.h"

#include <algorithm>
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

// A word that is read back as it was.
static std::string word_of_script(const std::string &text) {
  if (!text.empty() && text.find_first_of(" \t\r\n\"\\#") == std::string::npos)
    return text;
  std::string quoted = "\"";
  for (const char c : text)
    quoted += c == '"' || c == '\\' ? std::string("\\") + c : std::string(1, c);
  return quoted + "\"";
}

std::string script_line_of(const bound_command &command) {
  std::string line = command.row().id;
  for (const parameter_row &row : command.parameters().rows()) {
    if (!row.is_given())
      continue;
    if (row.is_list())
      for (const fs::path &path : *std::get<std::vector<fs::path> *>(row.target))
        line += " " + row.key + "=" + word_of_script(path.string());
    else
      line += " " + row.key + "=" + word_of_script(row.text());
  }
  return line;
}

std::vector<std::string> lines_of_script(const std::string &text) {
  std::vector<std::string> lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    lines.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return lines;
}

// A line that can't be read counts too.
static bool holds_a_command(const std::string &line) {
  const std::size_t first = line.find_first_not_of(" \t\r");
  return first != std::string::npos && line[first] != '#';
}

static command_result run_text_line(const std::string &text, script_line &line, project_state &project,
                                    told_stages &stages) {
  try {
    line = parse_script_line(text, line.number);
    if (line.command.empty())
      return {};
    stages.begin(line.command);
    return run_line(line, project);
  } catch (const usage_error &wrong) {
    return command_result::ended(exit_status::wrong_command, wrong.what());
  }
}

exit_status run_script(const std::string &text, const std::string &name, project_state &project,
                       const command_streams &streams) {
  const std::vector<std::string> lines = lines_of_script(text);
  told_stages stages(streams, static_cast<int>(std::count_if(lines.begin(), lines.end(), holds_a_command)));
  exit_status worst = exit_status::done;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    script_line line;
    line.number = static_cast<std::int64_t>(i) + 1;
    const command_result result = run_text_line(lines[i], line, project, stages);
    stages.add(result);
    stages.end();
    if (worst == exit_status::done)
      worst = result.status;
    if (result.completed && result.status != exit_status::wrong_command)
      continue;
    streams.trouble("orb script: " + name + ", line " + std::to_string(line.number) + ", " +
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
    const std::string missing = parts_missing_for(entry, there);
    const std::string state = !entry.has_action()  ? "without action"
                              : entry.opens_window ? "only in the window"
                              : !missing.empty()   ? "needs " + missing
                                                   : "runnable";
    streams.results(entry.control + "\t" + entry.place + "\t" + entry.caption + "\t" + entry.command + "\t" + state);
  }
  return exit_status::done;
}

} // namespace orb
