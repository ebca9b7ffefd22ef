// `FrmContigSelect` in a window: the table of a run's contigs, and beside it the map of the chosen one.
#pragma once

#include <QMainWindow>
#include <filesystem>

#include "clustering/contig_map.h"
#include "ui/desktop/desktop_session.h"
#include "ui/desktop/map_canvas.h"
#include "viewer/contig_browser.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QSortFilterProxyModel;
class QStandardItemModel;
class QTableView;

namespace orb {

class contig_browser_window : public QMainWindow {
  Q_OBJECT

public:
  contig_browser_window(desktop_session &session, QWidget *parent);
  // False after a message: the table can't be read.
  bool open_table(const std::filesystem::path &table);
  map_canvas &map() { return *map_; }

private:
  QWidget *make_list();
  QWidget *make_map();
  void fill_table();
  void row_chosen();
  void show_map();
  void load_run();
  void go();
  void separate();
  void show_fingerprints();
  void refresh();

  desktop_session &session_;
  std::filesystem::path table_file_;
  FrmContigSelect form_;
  contig_map contigs_; // of the session, as it was at version_of_map_
  std::uint64_t version_of_map_ = 0;
  bool map_is_made_ = false, has_map_ = false;

  QStandardItemModel *rows_ = nullptr;
  QSortFilterProxyModel *shown_ = nullptr;
  QTableView *table_ = nullptr;
  QLineEdit *search_ = nullptr;
  QPushButton *go_ = nullptr, *load_ = nullptr, *lanes_ = nullptr;
  QLabel *status_ = nullptr;
  map_canvas *map_ = nullptr;
};

} // namespace orb
