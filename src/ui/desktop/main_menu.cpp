#include "ui/desktop/main_menu.h"

#include <QMenu>
#include <QRegularExpression>
#include <QSet>

#include "ui/desktop/qt_text.h"

namespace orb {

main_menu::main_menu(desktop_session &session, QMenuBar *bar, std::function<void(const menu_entry &)> chosen)
    : QObject(bar), session_(session), bar_(bar) {
  for (const menu_entry &entry : table_of_menu_entries())
    add(entry, chosen);
  update();
  connect(&session, &desktop_session::project_changed, this, &main_menu::update);
  connect(&session, &desktop_session::running_changed, this, &main_menu::update);
}

QMenu *main_menu::menu(const std::string &place) {
  QMenu *&known = menus_[place];
  if (known)
    return known;
  const std::size_t bar = place.rfind('|');
  const QString caption = qt_text(bar == std::string::npos ? place : place.substr(bar + 1));
  known = bar == std::string::npos ? bar_->addMenu(caption) : menu(place.substr(0, bar))->addMenu(caption);
  known->setObjectName("menu_" + qt_text(place).replace(QRegularExpression("[^A-Za-z0-9]+"), "_"));
  known->setToolTipsVisible(true);
  return known;
}

void main_menu::add(const menu_entry &entry, const std::function<void(const menu_entry &)> &chosen) {
  auto *action = new QAction(qt_text(entry.caption).simplified().replace("&", "&&"), bar_);
  action->setObjectName(qt_text(entry.control));
  const menu_entry *of_table = menu_entry_by_control(entry.control);
  connect(action, &QAction::triggered, this, [chosen, of_table] { chosen(*of_table); });
  menu(entry.place)->addAction(action);
  actions_[entry.control] = action;
}

QAction *main_menu::action(const std::string &control) const {
  const auto at = actions_.find(control);
  return at == actions_.end() ? nullptr : at->second;
}

void main_menu::update() {
  const parts_there there = parts_there::of(session_.project());
  for (const menu_entry &entry : table_of_menu_entries()) {
    QAction *action = actions_.at(entry.control);
    const std::string missing = parts_missing_for(entry, there);
    const command_row *row = entry.command.empty() ? nullptr : command_by_id(entry.command);
    QString why;
    if (!entry.has_action())
      why = tr("An entry without an action");
    else if (session_.is_running())
      why = tr("Not while a command runs");
    else if (!missing.empty())
      why = tr("Needs %1").arg(qt_text(missing));
    action->setEnabled(why.isEmpty());
    QString tip = why.isEmpty() && row ? qt_text(row->purpose) : why;
    action->setToolTip(tip.left(1).toUpper() + tip.mid(1));
    action->setStatusTip(action->toolTip());
  }
}

void main_menu::give_mnemonics() {
  std::map<QObject *, QSet<QChar>> taken; // by menu
  const auto give = [&taken](QAction *action, QObject *of) {
    QString text = action->text();
    if (text.contains(QRegularExpression("&[^&]")) || text.contains("&&"))
      return;
    QSet<QChar> &letters = taken[of];
    for (qsizetype i = 0; i < text.size(); ++i)
      if (text[i].isLetter() && !letters.contains(text[i].toLower())) {
        letters.insert(text[i].toLower());
        action->setText(text.insert(i, '&'));
        return;
      }
  };
  for (QAction *action : bar_->actions())
    give(action, bar_);
  for (QMenu *menu : bar_->findChildren<QMenu *>())
    for (QAction *action : menu->actions())
      if (!action->isSeparator())
        give(action, menu);
}

} // namespace orb
