// Each option of each command changes what it says it changes: a command runs without and with the option on two fresh
// projects, and what the case names must come out different. No command and no option lacks a case.
#include <cstdlib>
#include <gtest/gtest.h>
#include <set>

#include "option_inputs.h"

namespace option_test {

static std::vector<std::string> commands() {
  std::vector<std::string> ids;
  for (const orb::command_row &row : orb::table_of_commands())
    ids.push_back(row.id);
  return ids;
}

static const std::vector<case_block> &all_blocks() {
  static const std::vector<case_block> blocks = read_cases(text_of_cases);
  return blocks;
}

class every_option : public testing::TestWithParam<std::string> {
protected:
  static void SetUpTestSuite() {
    ::setenv("SOURCE_DATE_EPOCH", "1000000000", 1);
    inputs = new case_inputs;
  }
  static void TearDownTestSuite() {
    EXPECT_EQ(joined(inputs->changes()), "") << "a command wrote among its inputs";
    delete inputs;
  }
  static inline case_inputs *inputs = nullptr;
};

static bool is_done(const observation &seen) {
  std::istringstream lines(seen.at("status"));
  for (std::string line; std::getline(lines, line);)
    if (line != "0 true")
      return false;
  return true;
}

static std::string end_of(const observation &seen) {
  return seen.at("status") + seen.at("why") + "\n" + seen.at("messages");
}

static bool names(const std::string &changes, const std::string &name) {
  return changes.starts_with("*") ? name.ends_with(changes.substr(1)) : name == changes;
}

static bool is_named(const case_block &block, const std::string &name) {
  return std::any_of(block.cases.begin(), block.cases.end(),
                     [&](const option_case &option) { return names(option.changes, name); });
}

static void check_case(const case_block &block, const option_case &option, const observation &base,
                       const fs::path &inputs) {
  const observation with = observed(block, &option, inputs);
  std::vector<std::string> differing = differences(base, with);
  bool changed = false;
  for (const std::string &name : differing)
    changed = changed || names(option.changes, name);
  constexpr std::size_t most_told = 12;
  differing.resize(std::min(differing.size(), most_told));
  const std::string told = block.run + " with " + option.key + "=" + option.value;
  EXPECT_TRUE(changed) << told << " doesn't change " << option.changes << "; it changes:\n"
                       << joined(differing) << "end: " << end_of(with);
  EXPECT_TRUE(is_done(with)) << told << " ends with " << end_of(with);
}

TEST_P(every_option, changes_what_it_names) {
  for (const case_block &block : all_blocks()) {
    if (block.command() != GetParam())
      continue;
    const observation base = observed(block, nullptr, inputs->path());
    EXPECT_NE(is_done(base), block.fails) << block.run << " ends with " << end_of(base);
    if (block.cases.empty())
      continue;
    // panels depend on threads and time, the rest never does
    for (const std::string &name : differences(base, observed(block, nullptr, inputs->path())))
      EXPECT_TRUE(name == "panels" && !is_named(block, name)) << block.run << " twice differs in " << name;
    for (const option_case &option : block.cases)
      check_case(block, option, base, inputs->path());
  }
}

static std::string test_name(const testing::TestParamInfo<std::string> &command) {
  std::string name = command.param;
  std::replace(name.begin(), name.end(), '.', '_');
  return name;
}
INSTANTIATE_TEST_SUITE_P(Commands, every_option, testing::ValuesIn(commands()), test_name);

TEST(every_option_table, no_command_and_no_option_lacks_a_case) {
  std::map<std::string, std::set<std::string>> covered;
  std::set<std::string> without_options;
  for (const case_block &block : all_blocks()) {
    const orb::bound_command bound = bound_line(block.run);
    bool only_needed = true;
    for (const orb::parameter_row &key : bound.parameters().rows()) {
      only_needed = only_needed && key.required == key.is_given();
      if (key.required && key.is_given())
        covered[block.command()].insert(key.key);
    }
    if (only_needed)
      without_options.insert(block.command());
    for (const option_case &option : block.cases) {
      EXPECT_NE(bound.parameters().find(option.key), nullptr) << block.command() << " has no " << option.key;
      covered[block.command()].insert(option.key);
    }
  }
  for (const orb::command_row &row : orb::table_of_commands()) {
    EXPECT_TRUE(without_options.contains(row.id)) << row.id << " never runs without options";
    const orb::bound_command bound = row.bind();
    std::set<const void *> targets;
    for (const orb::parameter_row &key : bound.parameters().rows()) {
      EXPECT_TRUE(covered[row.id].contains(key.key)) << row.id << ": no case for " << key.key;
      const void *target = std::visit([](auto *held) { return static_cast<const void *>(held); }, key.target);
      EXPECT_TRUE(targets.insert(target).second) << row.id << ": " << key.key << " goes where another key goes";
    }
  }
}

} // namespace option_test
