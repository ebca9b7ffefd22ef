// The middle of the main window: the road from fingerprints to contigs as buttons, what is said on the way, and the
// lines of a script that repeat it.
#pragma once

#include <QLabel>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QWidget>
#include <vector>

#include "ui/desktop/desktop_session.h"
#include "ui/desktop/main_menu.h"

namespace orb {

class work_panel : public QWidget {
  Q_OBJECT

public:
  work_panel(desktop_session &session, const main_menu &menu, QWidget *parent = nullptr);

  // A line among the messages.
  void say(const QString &text, bool is_warning);

private:
  QWidget *road(const main_menu &menu);
  QPlainTextEdit *page(const char *name, const QString &caption);
  void fill_states();
  void begin(const QString &caption);
  void end(int status, const QString &end, const QString &results);

  desktop_session &session_;
  QTabWidget *pages_;
  QPlainTextEdit *messages_, *script_;
  std::vector<QLabel *> states_; // of the steps of the road
  QString caption_;
};

} // namespace orb
