// Scripts: how a line is cut into words, what a wrong line says, and that nothing of what is refused leaves a trace.
#include "frame/random_source.h"
#include "support/project_session.h"

using namespace orb_test;

namespace {

std::string quoted_when_needed(const std::string &text) {
  if (!text.empty() && text.find_first_of(" \t\"#\\") == std::string::npos)
    return text;
  std::string quoted = "\"";
  for (const char c : text)
    quoted += (c == '"' || c == '\\' ? "\\" : "") + std::string(1, c);
  return quoted + '"';
}

// A line that means the same command.
std::string text_of_script_line(const script_line &line) {
  std::string text = line.command;
  for (const auto &[key, value] : line.values)
    text += " " + key + "=" + quoted_when_needed(value);
  return text;
}

using values = std::vector<std::pair<std::string, std::string>>;

// The lines of a script; what people are told and what results are.
struct script_end {
  exit_status status = exit_status::done;
  std::vector<std::string> results, people;
};

script_end run_text(session &run, const std::string &text) {
  script_end end;
  const auto people = [&](const std::string &line) { end.people.push_back(line); };
  end.status = run_script(text, "day.orbscript", run.project,
                          {[&](const std::string &line) { end.results.push_back(line); }, people, people});
  return end;
}

class script : public session_test {
protected:
  script() : before_(fs::current_path()) { fs::current_path(folder.path()); }
  ~script() override { fs::current_path(before_); }

private:
  fs::path before_;
};

} // namespace

TEST_F(script, a_line_is_cut_into_words) {
  const struct {
    std::string text, command;
    values found;
  } cases[]{
      {"", "", {}},
      {" \t \r", "", {}},
      {"# net.create", "", {}},
      {"\tnet.create\r", "net.create", {}},
      {"a k=v#w # rest x=\"open", "a", {{"k", "v#w"}}},
      {"a flag other=no", "a", {{"flag", "yes"}, {"other", "no"}}},
      {"a k= k==", "a", {{"k", ""}, {"k", "="}}},
      {"a k=\"b c\" l=x\" y \"z", "a", {{"k", "b c"}, {"l", "x y z"}}},
      {R"(a k="say \"no\"" l="C:\\d" m=C:\d n="\e")",
       "a",
       {{"k", "say \"no\""}, {"l", "C:\\d"}, {"m", "C:\\d"}, {"n", "\\e"}}},
      {"a \"k=x # y\"", "a", {{"k", "x # y"}}},
      {"\"a\" k=\"\"", "a", {{"k", ""}}},
  };
  for (const auto &c : cases) {
    const script_line line = parse_script_line(c.text, 7);
    EXPECT_EQ(line.command, c.command) << c.text;
    EXPECT_EQ(line.values, c.found) << c.text;
    EXPECT_EQ(line.number, 7);
  }
  for (const char *wrong : {"a k=\"b", "\"", "a k=\"b\\\"", "a =b"})
    EXPECT_THROW(parse_script_line(wrong, 1), usage_error) << wrong;
}

TEST_F(script, stops_at_the_first_line_that_fails_and_says_which) {
  const std::string ok = "# begin\n\nproject.show # what is there\r\n";
  const struct {
    std::string line, said;
    exit_status status;
  } cases[]{
      {"net.crate", "net.crate: unknown command net.crate; did you mean net.create?", exit_status::wrong_command},
      {"net.create", "net.create: net.create needs a library, and there is none", exit_status::wrong_command},
      {"library.load fil=x", "library.load: unknown key fil; did you mean file?", exit_status::wrong_command},
      {"library.load capacity=0", "library.load: capacity: \"0\" isn't a whole number from 1 to",
       exit_status::wrong_command},
      {"mnuNewProject", "mnuNewProject: mnuNewProject is an entry without an action", exit_status::wrong_command},
      {"project.show \"", "a double quote is open", exit_status::wrong_command},
      {"markers.load", "markers.load needs a library", exit_status::wrong_command},
      {"project.open file=none.orb", "can't open none.orb", exit_status::no_input_or_output},
      {"library.load file=bad", "failed", exit_status::run_failed},
  };
  for (const auto &c : cases) {
    session run;
    const script_end end = run_text(run, ok + c.line + "\nproject.show\n");
    EXPECT_EQ(end.status, c.status) << c.line;
    ASSERT_EQ(end.people.size(), 1u) << c.line;
    EXPECT_TRUE(end.people[0].starts_with("orb script: day.orbscript, line 4, ")) << end.people[0];
    EXPECT_NE(end.people[0].find(c.said), std::string::npos) << end.people[0];
    EXPECT_EQ(end.results.size(), 1u) << "the lines before it ran, the one behind it didn't";
  }
  session run;
  const script_end whole = run_text(run, "library.load file=plates\nmnu_View_metrics cutoff=20\nproject.show");
  EXPECT_EQ(whole.status, exit_status::done);
  EXPECT_NE(whole.results.at(0).find("-Log_10 (Cutoff) = 20.00"), std::string::npos) << whole.results[0];
}

TEST_F(script, random_lines_end_in_words_and_go_there_and_back) {
  random_source chance(7);
  const std::string signs = "ab.=\"\\# \t\r\x01\xff,01-";
  int n_taken = 0;
  for (int i = 0; i < 2000; ++i) {
    std::string text;
    for (int n = chance.number_up_to(25); n > 0; --n)
      text += signs[static_cast<std::size_t>(chance.number_up_to(static_cast<std::int32_t>(signs.size()))) - 1];
    try {
      script_line line = parse_script_line(text, i);
      ++n_taken;
      if (line.command.find_first_of(" \t\r\"#\\=") != std::string::npos)
        line.command = "c"; // a name of a command has none of these
      bool plain_keys = true;
      for (const auto &[key, value] : line.values)
        plain_keys = plain_keys && key.find_first_of(" \t\r\"#\\") == std::string::npos;
      if (line.command.empty() || !plain_keys)
        continue;
      const script_line again = parse_script_line(text_of_script_line(line), i);
      EXPECT_EQ(again.command, line.command) << text;
      EXPECT_EQ(again.values, line.values) << text << "\n" << text_of_script_line(line);
    } catch (const usage_error &wrong) {
      EXPECT_NE(std::string(wrong.what()), "");
    }
  }
  EXPECT_GT(n_taken, 500);
}

// Every command with random values, stopped at its first yield: whatever is refused leaves the project as it was.
TEST_F(script, random_values_are_taken_or_refused_in_words) {
  random_source chance(11);
  const auto any_of = [&](const auto &list) -> const auto & {
    return list[static_cast<std::size_t>(chance.number_up_to(static_cast<std::int32_t>(list.size()))) - 1];
  };
  const std::vector<std::string> texts{"",
                                       "yes",
                                       "no",
                                       "0",
                                       "1",
                                       "-1",
                                       "2",
                                       "7",
                                       "1e9",
                                       "nan",
                                       "inf",
                                       "1e400",
                                       "x",
                                       "1,5",
                                       "plates",
                                       "part.txt",
                                       "bad",
                                       "markers.txt",
                                       "/dev/null",
                                       "/dev/null/x",
                                       std::string(3000, 'a'),
                                       std::string("\0\xff", 2),
                                       "Lnn",
                                       "made/out"};
  session run;
  run.done({load(), "metric.set cutoff=10", "net.create"});
  std::array<int, 2> n_refused_and_taken{};
  for (int i = 0; i < 2000; ++i) {
    bound_command command = any_of(table_of_commands()).bind();
    if (command.row().id == "project.close" || command.row().id == "library.kill_bands") // these change it, rightly
      continue;
    const std::uint64_t version = run.project.version();
    std::string line = command.row().id;
    exit_status status = exit_status::wrong_command;
    try {
      for (int n = chance.number_up_to(4) - 1; n > 0 && !command.parameters().rows().empty(); --n) {
        const parameter_row &row = any_of(command.parameters().rows());
        const std::string value = !row.words.empty() && chance.uniform() < 0.7 ? any_of(row.words) : any_of(texts);
        line += " " + row.key + "=" + value;
        command.set(row.key, value);
      }
      run.on_yield = [] { return true; };
      const command_result result = run_command(run.project, command);
      status = result.status;
      EXPECT_TRUE(status != exit_status::wrong_command || !result.why.empty()) << line;
      EXPECT_NE(status, exit_status::broken_invariant) << line << ": " << result.why;
    } catch (const usage_error &wrong) {
      EXPECT_NE(std::string(wrong.what()), "") << line;
    }
    run.on_yield = nullptr;
    const bool refused = status == exit_status::wrong_command || status == exit_status::no_input_or_output;
    ++n_refused_and_taken[refused ? 0 : 1];
    EXPECT_TRUE(!refused || run.project.version() == version) << line;
    EXPECT_EQ(run.project.running(), "");
    if (!run.project.has(project_part::net)) // a net that was dropped rightly, by another library
      run.done({load(), "net.create"});
  }
  EXPECT_GT(n_refused_and_taken[0], 200);
  EXPECT_GT(n_refused_and_taken[1], 200);
}
