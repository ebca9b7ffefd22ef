// The menu tree of the main window, made from the table: each entry an action under the name of its control, grey with
// the reason in its tooltip until what it needs is loaded, and while something runs.
#pragma once

#include <QAction>
#include <QMenuBar>
#include <functional>
#include <map>
#include <string>

#include "commands/command_table.h"
#include "ui/desktop/desktop_session.h"

namespace orb {

class main_menu : public QObject {
  Q_OBJECT

public:
  main_menu(desktop_session &session, QMenuBar *bar, std::function<void(const menu_entry &)> chosen);

  QAction *action(const std::string &control) const;
  // The menu of a place: "File", "File|Load clones"; made when it isn't there.
  QMenu *menu(const std::string &place);
  void update();
  // Gives each entry without a mnemonic a letter of its own menu; when all entries are there.
  void give_mnemonics();

private:
  void add(const menu_entry &entry, const std::function<void(const menu_entry &)> &chosen);

  desktop_session &session_;
  QMenuBar *bar_;
  std::map<std::string, QMenu *> menus_;     // by place
  std::map<std::string, QAction *> actions_; // by control
};

} // namespace orb
