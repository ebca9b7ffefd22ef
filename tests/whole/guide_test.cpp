// The user guide, done as it says: its commands run in their order, and show what it shows.
#include <sstream>

#include "support/program_run.h"

namespace {

struct guide_command {
  std::string text;               // may go on over lines, with a text at its standard input
  std::vector<std::string> shown; // "..." stands for lines left out, and within a line for any text
  int line = 0;
};

// The lines of all fenced blocks: "$ " begins a command, "<<'END'" takes the lines up to END with it.
std::vector<guide_command> commands_of(const std::string &text) {
  std::vector<guide_command> commands;
  std::istringstream lines(text);
  bool fenced = false, here = false;
  int number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    if (line.starts_with("```")) {
      fenced = !fenced;
      if (fenced)
        commands.emplace_back(); // what stands in front of the first command of a block belongs to none
      continue;
    }
    if (!fenced)
      continue;
    if (here) {
      commands.back().text += "\n" + line;
      here = line != "END";
    } else if (line.starts_with("$ ")) {
      commands.push_back({line.substr(2), {}, number});
      here = line.find("<<'END'") != std::string::npos;
    } else {
      commands.back().shown.push_back(line);
    }
  }
  std::erase_if(commands, [](const guide_command &command) { return command.text.empty(); });
  return commands;
}

bool fits(const std::string &shown, const std::string &line) {
  const std::size_t gap = shown.find("...");
  if (gap == std::string::npos)
    return shown == line;
  const std::string begin = shown.substr(0, gap), end = shown.substr(gap + 3);
  return line.size() >= begin.size() + end.size() && line.starts_with(begin) && line.ends_with(end);
}

// The first shown line that the output lacks; empty when it is as the guide shows it.
std::string missing_in(const std::string &output, const std::vector<std::string> &shown) {
  std::istringstream lines(output);
  std::string line;
  bool gap = false;
  for (const std::string &wanted : shown) {
    if (wanted == "...") {
      gap = true;
      continue;
    }
    bool found = false;
    while (!found && std::getline(lines, line)) {
      if (!line.empty() && line.back() == '\r')
        line.pop_back();
      found = fits(wanted, line);
      if (!found && !gap)
        return wanted;
    }
    if (!found)
      return wanted;
    gap = false;
  }
  return !gap && std::getline(lines, line) ? "nothing behind that; there is: " + line : "";
}

} // namespace

namespace fs = std::filesystem;

class guides : public whole::program_test, public testing::WithParamInterface<const char *> {};

TEST_P(guides, run_as_they_stand) {
  fs::create_directory_symlink(ORB_SOURCE_DIR "/examples", folder / "examples");
  const std::string page = std::string(ORB_SOURCE_DIR "/docs/") + GetParam();
  const std::vector<guide_command> commands = commands_of(whole::bytes_of(page));
  ASSERT_GT(commands.size(), 5u);
  for (const guide_command &command : commands) {
    whole::write_bytes(folder / "command.sh", command.text + "\n");
    const std::string line = "cd '" + folder.string() + "' && export ORB_HOME=\"$PWD/.home\" PATH='" +
                             fs::path(ORB_PROGRAM).parent_path().string() +
                             "':\"$PATH\" && sh command.sh >output 2>&1 </dev/null";
    const int status = std::system(line.c_str());
    const std::string output = whole::bytes_of(folder / "output"), told = command.text + "\n" + output;
    ASSERT_EQ(status, 0) << "line " << command.line << ": " << told;
    EXPECT_EQ(missing_in(output, command.shown), "") << "line " << command.line << ": " << told;
    EXPECT_EQ(output.find("[yes/no"), std::string::npos) << "a question that an option can answer: " << told;
  }
}

INSTANTIATE_TEST_SUITE_P(Pages, guides, testing::Values("user-guide.md", "pools.md", "work-with-what-you-have.md"));
