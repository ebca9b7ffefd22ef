// The settings belong to the session: what lies below it reads them and gets what it compares by as an argument.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

const std::vector<std::string> folders_of_owners{"project", "reports", "commands", "ui"};
// Whose job it is to write some of them.
const std::vector<std::string> files_of_writers{"database/class_clone_serv.h", "database/clone_name_formats.cpp",
                                                "metrics/class_clone_text_distance.h",
                                                "metrics/class_clone_text_distance.cpp"};

bool is_one_of(const std::vector<std::string> &names, const std::string &name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// Without comments and without what stands between quotes.
std::string code_of(const fs::path &file) {
  std::ifstream in(file, std::ios::binary);
  std::stringstream bytes;
  bytes << in.rdbuf();
  const std::regex left_out("//[^\n]*|/\\*[^*]*\\*+(?:[^/*][^*]*\\*+)*/|\"(?:[^\"\\\\\n]|\\\\.)*\"");
  return std::regex_replace(bytes.str(), left_out, "");
}

// Why a text below the session breaks the rule; empty: it doesn't.
std::string breach(const std::string &code) {
  const std::regex assignment("\\bsettings_?(?:\\(\\))?\\s*(?:\\.|->)\\s*\\w+\\s*(?:[-+*/|&^%]?=(?!=)|\\+\\+|--)"
                              "|(?:\\+\\+|--)\\s*(?:\\w+(?:\\(\\))?(?:\\.|->))*settings_?(?:\\(\\))?\\s*(?:\\.|->)");
  const std::regex holder("(const\\s+)?\\b(?:orb::)?project_settings\\b(\\s+const)?\\s*[&*]");
  std::smatch found;
  if (std::regex_search(code, found, assignment))
    return found.str();
  for (std::sregex_iterator at(code.begin(), code.end(), holder), end; at != end; ++at)
    if (!(*at)[1].matched && !(*at)[2].matched)
      return at->str();
  return {};
}

std::vector<fs::path> sources() {
  std::vector<fs::path> files;
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator(fs::path(ORB_SOURCE_DIR) / "src"))
    if (entry.path().extension() == ".h" || entry.path().extension() == ".cpp")
      files.push_back(entry.path());
  return files;
}

TEST(architecture, nothing_below_the_session_writes_its_settings) {
  for (const char *wrong : {"context_.settings.cutoff = 3;", "settings->burying=0.8;", "state.settings().threads += 1;",
                            "++context.settings.seed;", "project_settings &settings", "project_settings *settings_;",
                            "f(int, orb::project_settings& s)"})
    EXPECT_NE(breach(wrong), "") << wrong;
  for (const char *right :
       {"if (context.settings.seed == 3)", "const project_settings &settings", "project_settings s;",
        "project_settings const &s", "const double cutoff = settings.cutoff;"})
    EXPECT_EQ(breach(right), "") << right;
  int n_read = 0;
  std::size_t n_writers = 0;
  const fs::path source = fs::path(ORB_SOURCE_DIR) / "src";
  for (const fs::path &file : sources()) {
    const fs::path inside = fs::relative(file, source);
    if (is_one_of(folders_of_owners, inside.begin()->string()))
      continue;
    ++n_read;
    const std::string why = breach(code_of(file));
    if (is_one_of(files_of_writers, inside.generic_string()))
      n_writers += why.empty() ? 0 : 1;
    else
      EXPECT_EQ(why, "") << inside;
  }
  EXPECT_GT(n_read, 100);
  EXPECT_EQ(n_writers, files_of_writers.size()); // who has no need any more loses the right
}

TEST(architecture, the_standard_burying_fraction_stands_once) {
  // A member, constant or argument that bears the fraction's name in any of its uses and has a number of its own.
  const std::regex number_of_its_own(
      "\\b\\w*(?:burying|absorb|pogloshenie)\\w*\\s*(?:=|\\{|\\.value_or\\()\\s*0?\\.\\d+");
  std::vector<std::string> where;
  for (const fs::path &file : sources())
    if (const std::string code = code_of(file); std::regex_search(code, number_of_its_own))
      where.push_back(file.filename().string());
  EXPECT_EQ(where, std::vector<std::string>{"overlap_rule.h"});
}

} // namespace
