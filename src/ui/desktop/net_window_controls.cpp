// Menus, buttons and panels of the net viewer, made from the table of its controls.
#include <QAction>
#include <QCompleter>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QStatusBar>
#include <QStringListModel>
#include <QTime>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/desktop/look_windows.h"
#include "ui/desktop/net_window.h"
#include "ui/desktop/qt_text.h"
#include "ui/desktop/score_legend.h"
#include "viewer/view_hints.h"

namespace orb {

namespace {

// A letter behind Alt for each entry, another one for each of a menu as long as there are some.
QString with_mnemonic(const QList<QAction *> &others, const QString &caption) {
  QString taken;
  for (const QAction *other : others)
    if (const qsizetype at = other->text().indexOf('&'); at >= 0 && at + 1 < other->text().size())
      taken += other->text().at(at + 1).toLower();
  for (qsizetype i = 0; i < caption.size(); ++i)
    if (caption.at(i).isLetterOrNumber() && !taken.contains(caption.at(i).toLower()))
      return caption.left(i) + "&" + caption.mid(i);
  return caption;
}

QKeySequence shortcut_of(const std::string &control) {
  static const std::map<std::string, QKeySequence> keys{
      {"mnuUndo", QKeySequence(Qt::CTRL | Qt::Key_Z)},    {"mnuRedo", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)},
      {"mnuSave", QKeySequence(Qt::CTRL | Qt::Key_S)},    {"mnuFileNewNetFile", QKeySequence(Qt::CTRL | Qt::Key_O)},
      {"mnuFileNew", QKeySequence(Qt::CTRL | Qt::Key_N)}, {"mnuSelect_Delete", QKeySequence(Qt::Key_Delete)},
      {"mnuExit", QKeySequence(Qt::CTRL | Qt::Key_W)}};
  const auto found = keys.find(control);
  return found == keys.end() ? QKeySequence() : found->second;
}

// "CmdMove(3)" can't be the name of an object in a script: CmdMove_3.
QString object_name(const std::string &control) {
  QString name = qt_text(control);
  return name.replace('(', '_').remove(')');
}

} // namespace

// ---- menus ---------------------------------------------------------------------------------------------------------

QMenu *net_window::menu_of(const std::string &path) {
  if (const auto known = menus_.find(path); known != menus_.end())
    return known->second;
  const std::size_t cut = path.rfind('/');
  const QString caption = qt_text(cut == std::string::npos ? path : path.substr(cut + 1));
  QMenu *menu = nullptr;
  if (cut == std::string::npos) {
    menu = menuBar()->addMenu(with_mnemonic(menuBar()->actions(), caption));
  } else {
    QMenu *above = menu_of(path.substr(0, cut));
    menu = above->addMenu(with_mnemonic(above->actions(), caption));
  }
  menu->setToolTipsVisible(true);
  return menus_[path] = menu;
}

void net_window::make_menus() {
  for (const view_menu_item &item : table_of_view_menu())
    if (item.menu != view_menu::button && item.menu != view_menu::process)
      add_entry(item);
  add_entries_of_window();
  const view_menu_item &process = *view_menu_item_by_control("mnuProcess");
  QAction *run = menuBar()->addAction(with_mnemonic(menuBar()->actions(), qt_text(process.caption)));
  run->setObjectName("mnuProcess");
  connect(run, &QAction::triggered, this, [this] { choose("mnuProcess"); });
  actions_["mnuProcess"] = run;
}

void net_window::add_entry(const view_menu_item &item) {
  QMenu *menu = menu_of(item.path);
  if (item.value == "SHAPE")
    return add_shapes(item, menu);
  if (item.value == "COLUMN")
    return add_columns(item, menu);
  QAction *action = menu->addAction(with_mnemonic(menu->actions(), qt_text(item.caption).trimmed()));
  action->setObjectName(qt_text(item.control));
  action->setCheckable(static_cast<bool>(item.is_checked));
  action->setShortcut(shortcut_of(item.control));
  const bool takes_names = item.value == "NAMES" || item.control == "mnuFileMakeNetFromList";
  connect(action, &QAction::triggered, this, [this, control = item.control, takes_names] {
    if (takes_names)
      send_text_of_selected();
    choose(control);
  });
  actions_[item.control] = action;
}

void net_window::add_shapes(const view_menu_item &item, QMenu *menu) {
  QMenu *shapes = menu->addMenu(with_mnemonic(menu->actions(), qt_text(item.caption)));
  shapes->menuAction()->setObjectName(qt_text(item.control));
  for (std::int32_t shape = 0; shape < n_shapes; ++shape) {
    const std::string name(shape_name(shape));
    QAction *action = shapes->addAction(with_mnemonic(shapes->actions(), qt_text(name)));
    action->setObjectName(qt_text(item.control) + "_" + QString::number(shape));
    connect(action, &QAction::triggered, this, [this, control = item.control, name] { choose(control, name); });
  }
  actions_[item.control] = shapes->menuAction();
}

// An entry for each column of the table of clusters, made when the menu opens.
void net_window::add_columns(const view_menu_item &item, QMenu *menu) {
  actions_[item.control] = menu->menuAction();
  menu->menuAction()->setObjectName(qt_text(item.control));
  connect(menu, &QMenu::aboutToShow, this, [this, &item, menu] { fill_columns(item, menu); });
}

void net_window::fill_columns(const view_menu_item &item, QMenu *menu) {
  menu->clear();
  const class_net_elng_clust &table = view_->cluster_table();
  const bool is_radio = item.control == "mnuOptionsClustersCol";
  for (std::int32_t column = 1; table.is_loaded() && column <= table.n_columns_get(); ++column) {
    QAction *action = menu->addAction(QString::number(column) + " " + qt_text(table.heading_get(column)));
    action->setObjectName(qt_text(item.control) + "_" + QString::number(column));
    action->setCheckable(true);
    action->setChecked(is_radio ? table.cluster_column_get() == column : table.column_is_shown_get(column));
    connect(action, &QAction::triggered, this,
            [this, control = item.control, column] { choose(control, std::to_string(column)); });
  }
}

// What people expect beside the table, and the buttons once more for the keyboard.
void net_window::add_entries_of_window() {
  const auto add = [this](QMenu *menu, const char *name, const QString &caption, const QKeySequence &key,
                          const std::function<void()> &does) {
    QAction *action = menu->addAction(with_mnemonic(menu->actions(), caption));
    action->setObjectName(name);
    action->setShortcut(key);
    connect(action, &QAction::triggered, this, does);
    return action;
  };
  QMenu *view = menu_of("View");
  const std::pair<const char *, QKeySequence> moves[]{{"CmdMove(5)", QKeySequence::ZoomIn},
                                                      {"CmdMove(6)", QKeySequence::ZoomOut},
                                                      {"CmdMove(0)", QKeySequence(Qt::CTRL | Qt::Key_0)}};
  for (const auto &[control, key] : moves)
    add(view, ("mnu_" + object_name(control).toStdString()).c_str(),
        qt_text(view_menu_item_by_control(control)->caption).trimmed(), key,
        [this, name = std::string(control)] { choose(name); });
  view->addSeparator();
  add(view, "mnuFind", tr("Find a vertex"), QKeySequence::Find, [this] { search_begins(); });
  QMenu *selection = menu_of("Selection");
  selection->addSeparator();
  add(selection, "mnuSelectEveryVertex", tr("Select every vertex"), QKeySequence(Qt::CTRL | Qt::Key_A), [this] {
    choose("mnuSelectAll");
    choose("mnuSelectVertex"); // so that a click can choose again
  });
  add(selection, "mnuWhatEdge", tr("What is this edge?"), {}, [this] { show_edge(edge_in_question()); });
  add(selection, "mnuLanes", tr("Fingerprints of selected vertices"), QKeySequence(Qt::CTRL | Qt::Key_L),
      [this] { open_lanes(session_, this); });
  auto *stop = new QAction(this);
  stop->setObjectName("mnuEscape");
  stop->setShortcut(Qt::Key_Escape);
  connect(stop, &QAction::triggered, this, [this] { stop_or_cancel(); });
  addAction(stop);
}

// ---- buttons and panels --------------------------------------------------------------------------------------------

QToolButton *net_window::button_of(const char *control, const QString &text) {
  auto *button = new QToolButton(this);
  const QString caption = qt_text(view_menu_item_by_control(control)->caption).trimmed();
  button->setObjectName(object_name(control));
  button->setText(text);
  button->setToolTip(caption);
  button->setAccessibleName(caption);
  button->setFocusPolicy(Qt::TabFocus);
  connect(button, &QToolButton::clicked, this, [this, name = std::string(control)] {
    if (name == "CmdClockwise" || name == "CmdCounterClockwise")
      if (const std::string angle = angle_->text().toStdString(); angle != view_->panels().TxtAngle)
        choose("TxtAngle", angle);
    choose(name);
  });
  buttons_[control] = button;
  return button;
}

void net_window::make_buttons() {
  QToolBar *bar = addToolBar(tr("Picture"));
  bar->setObjectName("bar_picture");
  bar->setMovable(false);
  const std::pair<const char *, const char *> buttons[]{
      {"CmdMove(0)", "Fit"},    {"CmdMove(1)", "\u2190"}, {"CmdMove(2)", "\u2193"}, {"CmdMove(3)", "\u2192"},
      {"CmdMove(4)", "\u2191"}, {"CmdMove(5)", "+"},      {"CmdMove(6)", "\u2212"}};
  for (const auto &[control, text] : buttons)
    bar->addWidget(button_of(control, QString::fromUtf8(text)));
  bar->addSeparator();
  bar->addWidget(new QLabel(tr("Find: "), this));
  search_ = new QLineEdit(this);
  search_->setObjectName("TxtFind");
  search_->setAccessibleName(tr("Find a vertex by its name"));
  search_->setPlaceholderText(tr("name of a vertex"));
  search_->setClearButtonEnabled(true);
  search_->setMaximumWidth(260);
  captions_ = new QStringListModel(this);
  auto *completer = new QCompleter(captions_, this);
  completer->setFilterMode(Qt::MatchContains);
  completer->setCaseSensitivity(Qt::CaseInsensitive);
  search_->setCompleter(completer);
  bar->addWidget(search_);
  connect(search_, &QLineEdit::textEdited, this, [this](const QString &text) {
    if (text.size() == 1) // a new search
      fill_completions();
  });
  connect(search_, &QLineEdit::returnPressed, this, &net_window::search);
  connect(completer, qOverload<const QString &>(&QCompleter::activated), this, &net_window::search,
          Qt::QueuedConnection);
  bar->addSeparator();
  const std::pair<const char *, QLineEdit **> names[]{{"From: ", &from_}, {"To: ", &to_}};
  for (const auto &[label, field] : names) {
    bar->addWidget(new QLabel(tr(label), this));
    *field = new QLineEdit(this);
    (*field)->setReadOnly(true);
    (*field)->setFocusPolicy(Qt::ClickFocus);
    (*field)->setMaximumWidth(220);
    bar->addWidget(*field);
  }
  from_->setObjectName("txtFrom");
  from_->setAccessibleName(tr("Name of the net that is open"));
  to_->setObjectName("txtTo");
  to_->setAccessibleName(tr("Name of the file that was saved"));
}

QWidget *net_window::make_rotate_panel() {
  auto *panel = new QGroupBox(tr("Rotation of selected vertices"), this);
  auto *row = new QHBoxLayout(panel);
  row->addWidget(button_of("CmdActivateRotate", tr("Activate")));
  row->addWidget(button_of("CmdCancelRotate", tr("Cancel")));
  angle_ = new QLineEdit(qt_text(view_->panels().TxtAngle), panel);
  angle_->setObjectName("TxtAngle");
  angle_->setAccessibleName(tr("Angle in degrees"));
  angle_->setMaximumWidth(60);
  row->addWidget(button_of("CmdClockwise", QString::fromUtf8("\u21BB")));
  row->addWidget(angle_);
  row->addWidget(button_of("CmdCounterClockwise", QString::fromUtf8("\u21BA")));
  row->addStretch();
  return panel;
}

QWidget *net_window::make_side() {
  auto *side = new QWidget(this);
  auto *column = new QVBoxLayout(side);
  auto *label = new QLabel(tr("Selected &vertices, one a line:"), side);
  names_ = new QPlainTextEdit(side);
  names_->setObjectName("TextSelVertices");
  names_->setAccessibleName(tr("Names of the selected vertices"));
  names_->setTabChangesFocus(true);
  label->setBuddy(names_);
  connect(names_, &QPlainTextEdit::textChanged, this, [this] { text_is_edited_ = text_is_edited_ || !shows_panels_; });
  heading_ = new QLabel(side);
  heading_->setObjectName("TxtClustersCapture");
  heading_->setFont(QFont("DejaVu Sans Mono", heading_->font().pointSize()));
  clusters_ = new QListWidget(side);
  clusters_->setObjectName("TxtClusters");
  clusters_->setAccessibleName(tr("Clusters of the net"));
  clusters_->setFont(heading_->font());
  clusters_->setSelectionMode(QAbstractItemView::NoSelection);
  connect(clusters_, &QListWidget::itemClicked, this, [this](QListWidgetItem *item) {
    const std::int32_t row = clusters_->row(item) + 1;
    act([&] { view_->cluster_row_clicked(row); }, false);
  });
  column->addWidget(label);
  column->addWidget(names_, 2);
  column->addWidget(heading_);
  column->addWidget(clusters_, 3);
  column->addWidget(new QLabel(tr("Scores of edges:"), side));
  column->addWidget(new score_legend(side));
  column->addWidget(make_rotate_panel());
  side->setMinimumWidth(230);
  auto *splitter = new QSplitter(this);
  splitter->addWidget(canvas_);
  splitter->addWidget(side);
  splitter->setStretchFactor(0, 1);
  splitter->setSizes({880, 280});
  splitter->setChildrenCollapsible(false);
  return splitter;
}

void net_window::make_status() {
  const std::pair<const char *, QLabel **> panels[]{{"panel_time", &panel_time_},
                                                    {"panel_selection", &panel_selection_},
                                                    {"panel_count", &panel_count_},
                                                    {"panel_message", &panel_message_}};
  for (const auto &[name, label] : panels) {
    *label = new QLabel(this);
    (*label)->setObjectName(name);
    statusBar()->addWidget(*label, label == &panel_message_ ? 1 : 0);
  }
  panel_message_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  panel_time_->setText(QTime::currentTime().toString("hh:mm:ss"));
}

void net_window::timerEvent(QTimerEvent *) {
  panel_time_->setText(QTime::currentTime().toString("hh:mm:ss"));
}

// ---- what is shown -------------------------------------------------------------------------------------------------

void net_window::refresh_controls() {
  const bool others_work = depth_ == 0 && session_.is_running();
  const auto is_on = [&](const std::string &control) {
    return !others_work && is_enabled(*view_menu_item_by_control(control), *view_);
  };
  for (const auto &[control, action] : actions_) {
    const view_menu_item &item = *view_menu_item_by_control(control);
    action->setVisible(!item.is_shown || item.is_shown(*view_));
    action->setEnabled(is_on(control));
    if (item.is_checked && action->isCheckable())
      action->setChecked(item.is_checked(*view_));
  }
  for (const auto &[control, button] : buttons_)
    button->setEnabled(is_on(control));
  actions_.at("mnuOptionsEdgesBigger")->setText(qt_text(view_->picture().edges.caption_of_bigger));
  actions_.at("mnuOptionsEdgesSmaller")->setText(qt_text(view_->picture().edges.caption_of_smaller));
  const bool idle = view_->process_state() == view_process::idle;
  actions_.at("mnuProcess")->setText(idle ? tr("&Run process") : tr("&Stop process"));
  const bool may_look = view_->has_net() && idle && !others_work;
  for (const char *own : {"mnuSelectEveryVertex", "mnuFind", "mnu_CmdMove_0", "mnu_CmdMove_5", "mnu_CmdMove_6"})
    findChild<QAction *>(own)->setEnabled(may_look);
  findChild<QAction *>("mnuWhatEdge")->setEnabled(may_look && edge_in_question() > 0);
  findChild<QAction *>("mnuLanes")->setEnabled(may_look && !clones_seen_.empty());
  search_->setEnabled(may_look);
}

void net_window::show_clusters() {
  const auto &rows = view_->panels().TxtClusters;
  heading_->setText(qt_text(view_->panels().TxtClustersCapture).replace('\t', "  "));
  heading_->setVisible(!rows.empty());
  while (clusters_->count() > static_cast<int>(rows.size()))
    delete clusters_->takeItem(clusters_->count() - 1);
  while (clusters_->count() < static_cast<int>(rows.size()))
    clusters_->addItem(QString());
  for (int i = 0; i < clusters_->count(); ++i) {
    const cluster_line &line = rows[static_cast<std::size_t>(i)];
    QListWidgetItem *item = clusters_->item(i);
    item->setText(qt_text(line.text).replace('\t', "  "));
    QPixmap swatch(12, 12);
    swatch.fill(qt_colour(line.color));
    item->setIcon(swatch);
    QFont font = clusters_->font();
    font.setBold(line.is_selected);
    item->setFont(font);
  }
  if (const std::int32_t row = view_->panels().row_of_clusters; row > 0 && row <= clusters_->count())
    clusters_->scrollToItem(clusters_->item(row - 1));
}

void net_window::show_panels() {
  if (view_ == nullptr || names_ == nullptr || panel_message_ == nullptr)
    return;
  const view_panels &panels = view_->panels();
  panel_message_->setText(qt_lines(panels.message));
  panel_message_->setToolTip(qt_lines(panels.message));
  panel_selection_->setText(qt_text(view_->label_of_mode()));
  panel_count_->setText(qt_text(view_->text_of_selected()));
  for (const auto &[field, text] : {std::pair(from_, &panels.txtFrom), std::pair(to_, &panels.txtTo)})
    if (const QString name = qt_text(*text); field->text() != name) {
      field->setText(name);
      field->setToolTip(name);
      field->setCursorPosition(0);
    }
  shows_panels_ = true;
  const QString names = qt_lines(panels.TextSelVertices);
  if (names_->property("shown").toString() != names) {
    names_->setProperty("shown", names);
    names_->setPlainText(names);
    text_is_edited_ = false;
  }
  shows_panels_ = false;
  if (depth_ == 0 || view_->process_state() == view_process::idle)
    show_clusters();
  canvas_->words_set(!view_->has_net() ? tr("No net is open. Open a .net file, or make a net for clones: menu File.")
                     : view_->shows_nothing()
                         ? tr("The vertices have no places yet. \"Run process\", or \"Unfold net\" in Options, "
                              "gives them some.")
                         : QString());
  setWindowTitle(tr("Net viewer") + (panels.txtFrom.empty() ? QString() : " - " + qt_text(panels.txtFrom)) + "[*]");
  setWindowModified(!view_->is_clean());
  if (depth_ == 0)
    publish_selection();
  refresh_controls();
}

// The text that the user has made of the names goes to the view before something takes it.
void net_window::send_text_of_selected() {
  if (!text_is_edited_)
    return;
  choose("TextSelVertices", names_->toPlainText().replace('\n', '\t').toStdString()); // a script's line is one line
  text_is_edited_ = false;
}

void net_window::fill_completions() {
  QStringList captions;
  for (const node_elng &node : view_->net().nodes().subspan(1))
    captions << qt_text(node.caption);
  if (captions != captions_->stringList())
    captions_->setStringList(captions);
}

void net_window::search_begins() {
  fill_completions();
  search_->setFocus(Qt::ShortcutFocusReason);
  search_->selectAll();
}

void net_window::search() {
  const QString wanted = search_->text().trimmed();
  if (wanted.isEmpty() || !may_act())
    return;
  const vertex_number node = node_by_name(view_->net(), wanted.toStdString());
  if (node < 1) {
    panel_message_->setText(tr("No vertex has %1 in its name").arg(wanted));
    return;
  }
  act(
      [&] {
        view_->select_nodes({node});
        view_->bring_into_view(node);
      },
      false);
}

} // namespace orb
