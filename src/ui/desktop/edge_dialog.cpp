#include "ui/desktop/edge_dialog.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>

#include "frame/numbers.h"
#include "ui/desktop/lanes_window.h"
#include "ui/desktop/qt_text.h"

namespace orb {

namespace {

void put(QTableWidget *table, int row, int column, const lane_band &band, bool is_common) {
  auto *item = new QTableWidgetItem(QString::number(band.size));
  item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
  QFont font = item->font();
  font.setBold(is_common);
  item->setFont(font);
  table->setItem(row, column, item);
}

// Bands in the order of their sizes, common ones in one row.
QTableWidget *table_of_bands(const lane_values &values, QWidget *parent) {
  auto *table = new QTableWidget(0, 3, parent);
  table->setObjectName("bands");
  table->setAccessibleName(QObject::tr("Bands of both clones; common ones stand in one row"));
  table->setHorizontalHeaderLabels(
      {qt_text(values.lanes[0].name), qt_text(values.lanes[1].name), QObject::tr("apart")});
  const auto &a = values.lanes[0].bands, &b = values.lanes[1].bands;
  std::size_t i = 0, j = 0, k = 0;
  while (i < a.size() || j < b.size()) {
    const int row = table->rowCount();
    table->insertRow(row);
    const std::size_t next_i = k < values.joins.size() ? static_cast<std::size_t>(values.joins[k].band) : a.size();
    const std::size_t next_j =
        k < values.joins.size() ? static_cast<std::size_t>(values.joins[k].band_of_next) : b.size();
    const bool is_common = i == next_i && j == next_j;
    if (is_common) {
      put(table, row, 0, a[i], true);
      put(table, row, 1, b[j], true);
      auto *apart = new QTableWidgetItem(QString::number(b[j].size - a[i].size));
      apart->setFlags(Qt::ItemIsEnabled);
      apart->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      table->setItem(row, 2, apart);
      ++i;
      ++j;
      ++k;
    } else if (i < next_i && (j == next_j || a[i].size <= b[j].size)) {
      put(table, row, 0, a[i++], false);
    } else {
      put(table, row, 1, b[j++], false);
    }
  }
  table->verticalHeader()->hide();
  table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 6);
  table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  return table;
}

} // namespace

void run_edge_dialog(desktop_session &session, clone_number clone_1, clone_number clone_2, const QString &heading,
                     QWidget *parent) {
  QDialog dialog(parent);
  dialog.setObjectName("form_edge");
  dialog.setWindowTitle(QObject::tr("What is this edge?"));
  dialog.resize(1000, 520);
  auto *column = new QVBoxLayout(&dialog);
  auto *text = new QLabel(heading, &dialog);
  text->setObjectName("l_edge");
  text->setTextInteractionFlags(Qt::TextSelectableByMouse);
  column->addWidget(text);
  if (clone_1 < 1 || clone_2 < 1) {
    text->setText(heading + "\n" + QObject::tr("Both ends have to be clones of the loaded library."));
  } else {
    lane_values values = lane_values_of(session.project().database(), {clone_1, clone_2},
                                        [](clone_number, clone_number) { return true; });
    text->setText(heading + "\n" +
                  QObject::tr("%1 common bands of %2 and %3, within %4")
                      .arg(values.joins.size())
                      .arg(values.lanes[0].bands.size())
                      .arg(values.lanes[1].bands.size())
                      .arg(session.project().database().tollerance_get()));
    auto *row = new QHBoxLayout;
    auto *canvas = new lanes_canvas(&dialog);
    row->addWidget(framed_axis(canvas, &dialog), 3);
    row->addWidget(table_of_bands(values, &dialog), 1);
    column->addLayout(row, 1);
    canvas->values_set(std::move(values));
  }
  auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, &dialog);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  column->addWidget(buttons);
  dialog.exec();
}

} // namespace orb
