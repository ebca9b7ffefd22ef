// The contig browser, the map beside it and the lanes, driven by the names of their controls.
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QToolButton>
#include <QWheelEvent>

#include "look_fixture.h"
#include "ui/desktop/contig_browser_window.h"
#include "ui/desktop/lanes_canvas.h"

namespace orb_test {

class browser : public look_session {
protected:
  template <class Window> static Window *window_named(const char *name) {
    for (QWidget *window : QApplication::topLevelWidgets())
      if (window->objectName() == name && window->isVisible())
        return static_cast<Window *>(window);
    return nullptr;
  }
  contig_browser_window *open_browser(const fs::path &run) {
    auto *window = static_cast<contig_browser_window *>(open_contig_browser(session, run, nullptr));
    QTest::qWait(20);
    return window;
  }
  static void choose_row(QWidget &window, const QString &name) {
    auto *table = window.findChild<QTableView *>("TxtClusters");
    for (int row = 0; row < table->model()->rowCount(); ++row)
      if (table->model()->index(row, 1).data().toString() == name)
        table->selectRow(row);
  }
};

TEST_F(browser, map_net_and_lanes_show_one_selection) {
  const fs::path run = assemble();
  contig_browser_window *window = open_browser(run);
  auto *status = window->findChild<QLabel *>("status");
  EXPECT_EQ(status->text(), "Select contig and press 'Go' button");
  choose_row(*window, "cl_10");
  EXPECT_EQ(status->text(), "Press 'Go' button to show this contig");
  map_canvas &map = window->map();
  ASSERT_EQ(map.values().bars.size(), 420u);

  const bar_piece &piece = map.page().lines.front().pieces.front();
  QTest::mouseClick(&map, Qt::LeftButton, {},
                    QPoint(static_cast<int>(piece.box.corner.x) + 3, static_cast<int>(piece.box.corner.y) + 3));
  EXPECT_EQ(session.selection().clones(), std::vector<std::int32_t>{piece.clone});
  QTest::mouseClick(window->findChild<QPushButton *>("CmdSelect"), Qt::LeftButton);
  auto *net = window_named<net_window>("form_net");
  ASSERT_NE(net, nullptr);
  ASSERT_EQ(net->view().net().Get_nOfSelectedNodes(), 1);
  EXPECT_FALSE(net->view().shows_nothing()) << "a net without places is unfolded";

  const double all = map.to() - map.from();
  QWheelEvent wheel(QPointF(200, 300), map.mapToGlobal(QPointF(200, 300)), {}, {0, 360}, {}, Qt::ControlModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(&map, &wheel);
  EXPECT_NEAR(map.to() - map.from(), all / 1.5 / 1.5 / 1.5, 1);
  EXPECT_EQ(map.page().lines.size(), 1u);
  for (int i = 0; i < 7; ++i)
    QTest::mouseClick(window->findChild<QToolButton *>("CmdZoomIn"), Qt::LeftButton);
  QTest::mouseClick(window->findChild<QPushButton *>("CmdLanes"), Qt::LeftButton);
  auto *lanes = window_named<QWidget>("form_lanes");
  ASSERT_NE(lanes, nullptr);
  const auto *canvas = lanes->findChild<lanes_canvas *>("lanes");
  EXPECT_EQ(canvas->values().lanes.size(), session.selection().clones().size());
  EXPECT_GT(canvas->values().lanes.size(), 2u);
  EXPECT_GT(canvas->values().joins.size(), 10u);
  net->view().select_nodes({});
  net->choose("mnuUnselectAll");
  EXPECT_TRUE(canvas->values().lanes.empty());
  EXPECT_EQ(lanes->findChild<QLabel *>("panel_lanes")->text().left(13), "Select clones");
}

TEST_F(browser, rows_are_sorted_searched_and_taken_apart) {
  const fs::path run = assemble();
  contig_browser_window *window = open_browser(run / "report_clusters.txt");
  auto *table = window->findChild<QTableView *>("TxtClusters");
  ASSERT_EQ(table->model()->rowCount(), 10);
  table->sortByColumn(1, Qt::DescendingOrder);
  EXPECT_EQ(table->model()->index(0, 1).data().toString(), "cl_10") << "numbers in names count";
  table->sortByColumn(3, Qt::AscendingOrder);
  EXPECT_EQ(table->model()->index(0, 1).data().toString(), "cl_9") << "three clones";
  window->findChild<QLineEdit *>("TxtFind")->setText("cl_8");
  EXPECT_EQ(table->model()->rowCount(), 1);
  window->findChild<QLineEdit *>("TxtFind")->clear();

  EXPECT_FALSE(window->findChild<QPushButton *>("CmdSelect")->isEnabled() && table->currentIndex().isValid() == false);
  choose_row(*window, "cl_7"); // was cut before it had a net
  EXPECT_TRUE(window->findChild<QLabel *>("status")->text().startsWith("This cluster has no net file. Press 'Go'"));
  EXPECT_TRUE(window->map().values().bars.empty());
  QTest::mouseClick(window->findChild<QPushButton *>("CmdSelect"), Qt::LeftButton);
  EXPECT_EQ(window_named<QWidget>("form_net"), nullptr);

  EXPECT_EQ(open_contig_browser(session, folder.path() / "absent.txt", nullptr), nullptr);
  EXPECT_EQ(open_contig_browser(session, {}, nullptr), nullptr) << "nobody chose a table";
}

TEST_F(browser, a_run_is_loaded_from_it) {
  const fs::path run = assemble();
  ASSERT_TRUE(look_session::run("contigs.reset").completed);
  contig_browser_window *window = open_browser(run);
  choose_row(*window, "cl_10");
  EXPECT_TRUE(window->map().values().bars.empty());
  auto *load = window->findChild<QPushButton *>("CmdLoadRun");
  ASSERT_TRUE(load->isVisible());
  QTest::mouseClick(load, Qt::LeftButton);
  EXPECT_FALSE(load->isVisible());
  EXPECT_EQ(window->map().values().bars.size(), 420u);
  EXPECT_TRUE(session.lines().back().startsWith("contigs.load folder="));
}

} // namespace orb_test
