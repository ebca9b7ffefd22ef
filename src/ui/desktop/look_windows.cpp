#include "ui/desktop/look_windows.h"

#include "contigs/run_folder.h"
#include "project/input_kind.h"
#include "ui/desktop/contig_browser_window.h"
#include "ui/desktop/lanes_window.h"
#include "ui/desktop/net_window.h"

namespace orb {

namespace fs = std::filesystem;

QWidget *open_net_viewer(desktop_session &session, const fs::path &net_file, QWidget *parent) {
  auto *window = new net_window(session, parent);
  window->show();
  if (!net_file.empty())
    window->open_file(net_file);
  return window;
}

// The table in a run's folder, in the folder of an assembly, or the file itself.
static fs::path table_of(const fs::path &given) {
  std::error_code failed;
  if (!fs::is_directory(given, failed))
    return given;
  const fs::path run = is_run_folder(given) ? given : run_folder_of_results(given);
  return (run.empty() ? given : run) / "report_contigs.txt";
}

QWidget *open_contig_browser(desktop_session &session, const fs::path &run_or_table, QWidget *parent) {
  constexpr std::size_t least_name = 5; // characters: anything shorter is no path of a file
  fs::path table = table_of(run_or_table);
  if (table.empty()) {
    session.project().frame().file_filter_set("Txt files |*.txt|TSV files |*.tsv|All files|*.*");
    table = session.project().frame().open_file_dialog("Open table of contigs");
  }
  if (table.string().size() < least_name)
    return nullptr;
  auto *window = new contig_browser_window(session, parent);
  if (!window->open_table(table)) {
    delete window;
    return nullptr;
  }
  window->show();
  return window;
}

QWidget *open_lanes(desktop_session &session, QWidget *parent) {
  auto *window = new lanes_window(session, parent);
  window->show();
  return window;
}

} // namespace orb
