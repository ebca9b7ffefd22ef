// The layers of the code: a folder may include only itself and folders before it.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

const std::vector<std::string> layers{"frame",   "database",   "graph",    "metrics",  "pairs",   "lists",      "net",
                                      "drawing", "clustering", "ordering", "fpc",      "contigs", "simulation", "pools",
                                      "viewer",  "project",    "reports",  "commands", "ui"};

std::size_t layer_of(const std::string &folder) {
  return static_cast<std::size_t>(std::find(layers.begin(), layers.end(), folder) - layers.begin());
}

TEST(Architecture, IncludesPointDownTheListOfLayersOnly) {
  const fs::path source = fs::path(ORB_SOURCE_DIR) / "src";
  const std::regex include_line("^\\s*#\\s*include\\s+\"([^/\"]+)/[^\"]*\"");
  int n_includes = 0;
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator(source)) {
    if (entry.path().extension() != ".h" && entry.path().extension() != ".cpp")
      continue;
    const std::string own = fs::relative(entry.path(), source).begin()->string();
    ASSERT_LT(layer_of(own), layers.size()) << "no such layer: " << entry.path();
    std::ifstream in(entry.path());
    for (std::string line; std::getline(in, line);) {
      std::smatch found;
      if (!std::regex_search(line, found, include_line))
        continue;
      ++n_includes;
      EXPECT_LE(layer_of(found[1]), layer_of(own)) << entry.path() << ": " << line;
    }
  }
  EXPECT_GT(n_includes, 50);
}

TEST(Architecture, WindowingHeadersStayInTheDesktopProgram) {
  const std::regex window("#\\s*include\\s*<(Q[A-Z]\\w*|gtk/|X11/|SDL)");
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator(fs::path(ORB_SOURCE_DIR) / "src")) {
    if (!entry.is_regular_file() || entry.path().string().find("/ui/desktop/") != std::string::npos)
      continue;
    std::ifstream in(entry.path());
    for (std::string line; std::getline(in, line);)
      EXPECT_FALSE(std::regex_search(line, window)) << entry.path() << ": " << line;
  }
}

} // namespace
