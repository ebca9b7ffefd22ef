// The cases of the test of every option: data, and what reads them.
//
// A block says what is loaded, which command runs, and under it what each option must change:
//   [library net]                     parts that are loaded before
//   before: LINE                      command lines that run first
//   run: LINE                         the command without the options
//   after: LINE                       command lines that show what the command left behind
//   fails                             without the option the command can't do
//   answer: PROMPT = REPLY            to questions, input boxes and dialogs that begin so
//     KEY=VALUE -> NAME               behind two blanks: the option, and what must change by it; "*end" stands for any
//                                     name that ends so
// Names are those of an observation (option_run.h).
#pragma once

#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace option_test {

struct option_case {
  std::string key, value, changes;
};

struct case_block {
  std::vector<std::string> parts, before, after;
  std::string run;
  bool fails = false;
  std::vector<std::pair<std::string, std::string>> answers;
  std::vector<option_case> cases;
  std::string command() const { return run.substr(0, run.find(' ')); }
};

// All blocks, from option_cases.cpp.
extern const char *const text_of_cases;

inline std::pair<std::string, std::string> split_at(const std::string &text, const std::string &mark) {
  const std::size_t at = text.find(mark);
  if (at == std::string::npos)
    throw std::runtime_error("no \"" + mark + "\" in " + text);
  return {text.substr(0, at), text.substr(at + mark.size())};
}

inline void read_line(const std::string &line, case_block &block) {
  const auto behind = [&](const std::string &start, std::string &rest) {
    if (!line.starts_with(start))
      return false;
    rest = line.substr(start.size());
    return true;
  };
  std::string rest;
  if (behind("  ", rest)) {
    const auto [option, changes] = split_at(rest, " -> ");
    const auto [key, value] = split_at(option, "=");
    block.cases.push_back({key, value, changes});
  } else if (behind("before: ", rest)) {
    block.before.push_back(rest);
  } else if (behind("after: ", rest)) {
    block.after.push_back(rest);
  } else if (behind("answer: ", rest)) {
    block.answers.push_back(split_at(rest, " = "));
  } else if (behind("run: ", rest)) {
    block.run = rest;
  } else if (line == "fails") {
    block.fails = true;
  } else if (!line.empty() && line[0] != '#') {
    throw std::runtime_error("not understood: " + line);
  }
}

inline std::vector<case_block> read_cases(const std::string &text) {
  std::vector<case_block> blocks;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("[")) {
      std::istringstream words(line.substr(1, line.find(']') - 1));
      blocks.emplace_back();
      for (std::string word; words >> word;)
        blocks.back().parts.push_back(word);
    } else if (!blocks.empty()) {
      read_line(line, blocks.back());
    }
  }
  return blocks;
}

} // namespace option_test
