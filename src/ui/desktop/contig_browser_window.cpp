#include "ui/desktop/contig_browser_window.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QStandardItemModel>
#include <QStatusBar>
#include <QTableView>
#include <QVBoxLayout>

#include "commands/command_table.h"
#include "commands/contig_map_values.h"
#include "frame/class_math1.h"
#include "frame/numbers.h"
#include "ui/desktop/look_windows.h"
#include "ui/desktop/qt_text.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// Numbers by their size, names with the numbers in them.
class sorted_rows : public QSortFilterProxyModel {
public:
  explicit sorted_rows(QObject *parent) : QSortFilterProxyModel(parent) {
    setFilterKeyColumn(-1);
    setFilterCaseSensitivity(Qt::CaseInsensitive);
  }

protected:
  bool lessThan(const QModelIndex &a, const QModelIndex &b) const override {
    const QString of_a = a.data().toString(), of_b = b.data().toString();
    double number_a = 0, number_b = 0;
    if (number_parse(of_a.toStdString(), number_a) && number_parse(of_b.toStdString(), number_b) &&
        number_a != number_b)
      return number_a < number_b;
    return of_a != of_b ? class_math1::string1less2(of_a.toStdString(), of_b.toStdString()) : a.row() < b.row();
  }
};

} // namespace

contig_browser_window::contig_browser_window(desktop_session &session, QWidget *parent)
    : QMainWindow(parent, Qt::Window), session_(session) {
  setObjectName("FrmContigSelect");
  setAttribute(Qt::WA_DeleteOnClose);
  resize(1240, 700);
  auto *splitter = new QSplitter(this);
  splitter->addWidget(make_list());
  splitter->addWidget(make_map());
  splitter->setSizes({670, 570});
  splitter->setChildrenCollapsible(false);
  setCentralWidget(splitter);
  status_ = new QLabel(this);
  status_->setObjectName("status");
  statusBar()->addWidget(status_, 1);
  connect(&session_, &desktop_session::project_changed, this, [this] {
    refresh();
    if (session_.project().version() != version_of_map_)
      show_map();
  });
  connect(&session_, &desktop_session::running_changed, this, &contig_browser_window::refresh);
}

QWidget *contig_browser_window::make_list() {
  auto *side = new QWidget(this);
  auto *column = new QVBoxLayout(side);
  search_ = new QLineEdit(side);
  search_->setObjectName("TxtFind");
  search_->setPlaceholderText(tr("search"));
  search_->setAccessibleName(tr("Search in the table"));
  search_->setClearButtonEnabled(true);
  rows_ = new QStandardItemModel(this);
  shown_ = new sorted_rows(this);
  shown_->setSourceModel(rows_);
  connect(search_, &QLineEdit::textChanged, shown_, &QSortFilterProxyModel::setFilterFixedString);
  table_ = new QTableView(side);
  table_->setObjectName("TxtClusters");
  table_->setAccessibleName(tr("Contigs and other clusters of the run"));
  table_->setModel(shown_);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setSortingEnabled(true);
  table_->setTabKeyNavigation(false);
  table_->setWordWrap(false);
  table_->verticalHeader()->hide();
  table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + 6);
  connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] { row_chosen(); });
  connect(table_, &QTableView::doubleClicked, this, [this] { go(); });
  go_ = new QPushButton(tr("&Go"), side);
  go_->setObjectName("CmdSelect");
  connect(go_, &QPushButton::clicked, this, [this] { go(); });
  auto *buttons = new QHBoxLayout;
  buttons->addWidget(search_, 1);
  buttons->addWidget(go_);
  column->addLayout(buttons);
  column->addWidget(table_, 1);
  return side;
}

QWidget *contig_browser_window::make_map() {
  auto *side = new QWidget(this);
  auto *column = new QVBoxLayout(side);
  map_ = new map_canvas(session_.selection(), side);
  load_ = new QPushButton(tr("&Load this run"), side);
  load_->setObjectName("CmdLoadRun");
  connect(load_, &QPushButton::clicked, this, [this] { load_run(); });
  lanes_ = new QPushButton(tr("&Fingerprints of this stretch"), side);
  lanes_->setObjectName("CmdLanes");
  connect(lanes_, &QPushButton::clicked, this, [this] { show_fingerprints(); });
  auto *buttons = new QHBoxLayout;
  buttons->addWidget(load_);
  buttons->addWidget(lanes_);
  buttons->addStretch();
  column->addLayout(buttons);
  column->addWidget(framed_axis(map_, side), 1);
  return side;
}

// ---- the table -----------------------------------------------------------------------------------------------------

bool contig_browser_window::open_table(const fs::path &table) {
  table_file_ = table;
  if (!form_.SetContigsName(table)) {
    session_.project().frame().alarm("The table of contigs " + table.string() + " can't be read.");
    return false;
  }
  setWindowTitle(tr("Contigs") + " - " + qt_path(table));
  fill_table();
  status_->setText(qt_text(form_.status()));
  show_map();
  refresh();
  return true;
}

void contig_browser_window::fill_table() {
  const QStringList headings = qt_text(form_.TxtClustersCapture()).split('\t');
  rows_->clear();
  rows_->setHorizontalHeaderLabels(headings);
  for (const std::string &text : form_.TxtClusters()) {
    const QStringList cells = qt_text(text).split('\t');
    QList<QStandardItem *> row;
    for (int column = 0; column < headings.size() && column < cells.size(); ++column) {
      auto *cell = new QStandardItem(cells.at(column));
      if (column != 1)
        cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      row << cell;
    }
    rows_->appendRow(row);
  }
  table_->sortByColumn(-1, Qt::AscendingOrder); // as in the file
  table_->resizeColumnsToContents();
}

void contig_browser_window::row_chosen() {
  const QModelIndex at = table_->currentIndex();
  if (!at.isValid())
    return;
  form_.row_clicked(shown_->mapToSource(at).row() + 1);
  status_->setText(qt_text(form_.status()));
  show_map();
  refresh();
}

void contig_browser_window::refresh() {
  const bool free = !session_.is_running();
  const project_state &project = session_.project();
  go_->setEnabled(free && form_.GetSelectedIndex() > 0);
  load_->setVisible(!is_run_of_session(project, table_file_.parent_path()));
  load_->setEnabled(free && project.has(project_part::library));
  lanes_->setEnabled(free && !map_->values().bars.empty());
}

// ---- the map -------------------------------------------------------------------------------------------------------

void contig_browser_window::show_map() {
  project_state &project = session_.project();
  if (!project.running().empty())
    return;
  if (!is_run_of_session(project, table_file_.parent_path())) {
    map_is_made_ = false;
    map_->text_set(project.has(project_part::library)
                       ? tr("Maps are drawn of the run that is loaded. Press \"Load this run\".")
                       : tr("Load the library of this run first, then the run: maps are drawn from them."));
    return;
  }
  if (!map_is_made_ || version_of_map_ != project.version()) {
    map_is_made_ = true;
    version_of_map_ = project.version();
    contigs_ = {};
    has_map_ = make_contig_map_of(project, contigs_);
  }
  const std::string name = form_.contigs().GetContig(form_.GetSelectedIndex()).cluster_get();
  const std::size_t place = !has_map_ || name.empty() ? 0 : place_in_map(contigs_, name);
  if (name.empty())
    return map_->text_set(tr("Choose a contig: its map stands here."));
  if (place == 0 || !contigs_.contigs[place].is_placed)
    return map_->text_set(tr("%1 has no coordinates: there is no map of it.").arg(qt_text(name)));
  contig_values values;
  if (contig_values_for(project, contigs_, place, values) && !values.bars.empty())
    map_->values_set(std::move(values));
}

void contig_browser_window::load_run() {
  bound_command load = bound_by_name("contigs.load");
  load.set("folder", table_file_.parent_path().string());
  session_.run(load);
  refresh();
  show_map();
}

void contig_browser_window::show_fingerprints() {
  session_.selection().set(map_->clones_in_stretch(), this);
  open_lanes(session_, this);
}

// ---- Go ------------------------------------------------------------------------------------------------------------

// The window stays, so that map and net are seen side by side.
void contig_browser_window::go() {
  if (session_.is_running() || form_.GetSelectedIndex() < 1)
    return;
  form_.CmdSelect();
  if (form_.GetNetFileName().empty())
    status_->setText(tr("There is no file of this cluster beside the table."));
  else if (form_.is_to_be_separated())
    separate();
  else
    open_net_viewer(session_, form_.GetNetFileName(), parentWidget());
}

void contig_browser_window::separate() {
  const C_Contig contig = form_.contigs().GetContig(form_.GetSelectedIndex());
  if (!is_run_of_session(session_.project(), table_file_.parent_path())) {
    session_.project().frame().message("Load this run first: the clones of " + contig.cluster_get() +
                                       " are known from it.");
    return;
  }
  bound_command command = bound_by_name("contigs.separate");
  command.set("cluster", contig.cluster_get());
  command.set("cutoff", number_text_shortest(contig.cutoff_get()));
  session_.run(command);
}

} // namespace orb
