#include "ui/desktop/work_panel.h"

#include <QFontDatabase>
#include <QGridLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "frame/failures.h"
#include "frame/numbers.h"
#include "ui/desktop/qt_text.h"

namespace orb {

namespace {

struct road_button {
  const char *control, *caption;
};
struct road_step {
  const char *name;
  std::vector<road_button> buttons;
};

const std::vector<road_step> &steps_of_road() {
  static const std::vector<road_step> steps{
      {"1  Fingerprints",
       {{"mnu_File_open_Database_folder_text", "From .sizes files..."},
        {"mnu_File_open_Database_type", "From a library..."},
        {"mnu_View_GenParam", "Parameters..."}}},
      {"2  Net of overlaps",
       {{"mnu_View_metrics", "Metric and cutoff..."},
        {"mnu_Analysis_MakeNet", "Make net"},
        {"mnu_File_ReadNet_type", "Load net..."},
        {"mnu_File_SaveNet", "Save net..."}}},
      {"3  Revision", {{"mnu_Analysis_RevizeNetSignif_QQ", "Remove Q-overlaps and Q-clones..."}}},
      {"4  Contigs",
       {{"mnu_Analysis_WholeDB_AdaptClustering", "Adaptive clustering..."},
        {"mnu_Edit_Clusters_LoadRun", "Load a run..."},
        {"mnu_Edit_Clusters_Export", "Export..."},
        {"mnu_Edit_Clusters_Map", "Print a map..."}}},
      {"5  Look and repair",
       {{"mnu_View_contigs", "Contigs..."}, {"mnu_View_net", "Net viewer"}, {"mnu_View_lanes", "Fingerprints"}}}};
  return steps;
}

QString count_of(std::int64_t n, const QString &what) {
  return qt_text(number_text_thousands(n)) + " " + what;
}

} // namespace

work_panel::work_panel(desktop_session &session, const main_menu &menu, QWidget *parent)
    : QWidget(parent), session_(session) {
  setObjectName("work_panel");
  auto *whole = new QVBoxLayout(this);
  whole->addWidget(road(menu));
  pages_ = new QTabWidget(this);
  pages_->setObjectName("pages");
  whole->addWidget(pages_, 1);
  messages_ = page("messages", tr("&Messages"));
  script_ = page("script_lines", tr("S&cript"));
  messages_->setMaximumBlockCount(5000);
  messages_->setPlaceholderText(
      tr("Open a folder of .sizes files, a library, a net, a run or a drawing: by the buttons "
         "above, or drop it on this window."));
  script_->setPlaceholderText(tr("Each command that runs here becomes a line; orb script repeats them."));
  fill_states();
  connect(&session, &desktop_session::project_changed, this, &work_panel::fill_states);
  connect(&session.selection(), &selection_model::changed, this, &work_panel::fill_states);
  connect(&session, &desktop_session::begun, this, &work_panel::begin);
  connect(&session, &desktop_session::ended, this, &work_panel::end);
  connect(&session, &desktop_session::note_shown, this, &work_panel::say);
  connect(&session, &desktop_session::line_noted, this,
          [this](const QString &line) { script_->appendPlainText(line); });
}

QWidget *work_panel::road(const main_menu &menu) {
  auto *panel = new QWidget(this);
  panel->setObjectName("road");
  auto *grid = new QGridLayout(panel);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setColumnStretch(2, 1);
  int row = 0;
  for (const road_step &step : steps_of_road()) {
    auto *name = new QLabel(step.name, panel);
    QFont bold = name->font();
    bold.setBold(true);
    name->setFont(bold);
    grid->addWidget(name, row, 0);
    auto *buttons = new QHBoxLayout;
    for (const road_button &wanted : step.buttons) {
      QAction *action = menu.action(wanted.control);
      auto *button = new QPushButton(wanted.caption, panel);
      button->setObjectName(QString("road_") + wanted.control);
      button->setAccessibleName(wanted.caption);
      const auto follow = [button, action] {
        button->setEnabled(action->isEnabled());
        button->setToolTip(action->toolTip());
      };
      follow();
      connect(action, &QAction::changed, button, follow);
      connect(button, &QPushButton::clicked, action, &QAction::trigger);
      buttons->addWidget(button);
    }
    buttons->addStretch(1);
    grid->addLayout(buttons, row, 1);
    auto *state = new QLabel(panel);
    state->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    state->setObjectName(QString("road_state_%1").arg(row + 1));
    states_.push_back(state);
    grid->addWidget(state, row, 2);
    ++row;
  }
  return panel;
}

QPlainTextEdit *work_panel::page(const char *name, const QString &caption) {
  auto *text = new QPlainTextEdit(pages_);
  text->setObjectName(name);
  text->setAccessibleName(QString(caption).remove('&'));
  text->setReadOnly(true);
  text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont)); // tables stand in columns
  pages_->addTab(text, caption);
  return text;
}

void work_panel::fill_states() {
  project_state &project = session_.project();
  const class_net &net = project.signif().net();
  const bool has_net = project.has(project_part::net), has_contigs = project.has(project_part::contigs);
  const bool is_revised = has_net && project.origin(project_part::net).made_by == "net.revise";
  std::int64_t n_contigs = 0;
  if (has_contigs)
    n_contigs = project.database().contigs()->current_list_of_clusters_in_use_get().count();
  const std::int32_t n_clones = project.database().total_number_of_clones_get();
  const std::size_t n_selected = session_.selection().clones().size();
  states_[0]->setText(project.has(project_part::library) ? count_of(n_clones, tr("clones")) : tr("none"));
  states_[1]->setText(has_net ? count_of(net.number_of_edges_get() / 2, tr("overlaps")) : tr("none"));
  states_[2]->setText(is_revised ? tr("done") : tr("not yet"));
  states_[3]->setText(has_contigs ? count_of(n_contigs, tr("clusters")) : tr("none"));
  states_[4]->setText(n_selected == 0 ? QString() : count_of(static_cast<std::int64_t>(n_selected), tr("selected")));
}

void work_panel::begin(const QString &caption) {
  caption_ = caption.simplified();
}

void work_panel::end(int status, const QString &end, const QString &results) {
  const bool well = status == static_cast<int>(exit_status::done);
  say(caption_ + ": " + (results.isEmpty() || !well ? end : results), !well);
  if (!well && !results.isEmpty())
    say(results, false);
}

void work_panel::say(const QString &text, bool is_warning) {
  // own words of the kind first, so that no eye depends on a colour
  messages_->appendPlainText(is_warning ? tr("Warning: %1").arg(text) : text);
}

} // namespace orb
