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

TEST(architecture, includes_point_down_the_list_of_layers_only) {
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

// Headers of Qt with or without their folder, in < > or quotes; those of the other ways to a window.
const std::regex window(R"(^\s*#\s*include\s*[<"](Q\w+|q\w+\.h|qt[56]?/|gtk\w*/|gdk\w*/|X11/|wayland\w*|SDL|wx/))");

TEST(architecture, windowing_headers_are_known_when_met) {
  for (const char *line :
       {"#include <QWidget>", "#include <QtWidgets/QWidget>", "# include \"QtGui/qpainter.h\"",
        "#include <qt6/QtWidgets/QWidget>", "#include <qwidget.h>", "#include <gtk/gtk.h>", "#include <SDL2/SDL.h>"})
    EXPECT_TRUE(std::regex_search(line, window)) << line;
  for (const char *line : {"#include <queue>", "#include \"pairs/q_clones.h\"", "// #include <QWidget>",
                           "#include \"net/class_net_QQ.h\""})
    EXPECT_FALSE(std::regex_search(line, window)) << line;
}

TEST(architecture, windows_and_command_line_stay_in_their_programs) {
  const std::pair<std::string, std::regex> kept[]{{"/ui/desktop/", window},
                                                  {"/ui/console/", std::regex("^\\s*#\\s*include\\s*[<\"]CLI/")}};
  int n_command_line = 0;
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator(fs::path(ORB_SOURCE_DIR) / "src")) {
    if (!entry.is_regular_file())
      continue;
    std::ifstream in(entry.path());
    for (std::string line; std::getline(in, line);)
      for (const auto &[folder, header] : kept)
        if (std::regex_search(line, header)) {
          EXPECT_NE(entry.path().string().find(folder), std::string::npos) << entry.path() << ": " << line;
          n_command_line += folder == "/ui/console/" ? 1 : 0;
        }
  }
  EXPECT_GT(n_command_line, 0) << "the pattern finds it where it is";
}

} // namespace
