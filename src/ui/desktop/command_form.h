// A modal form that ends with a command: it stays open while its fields won't do, closes, and then the command runs.
#pragma once

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <utility>
#include <vector>

#include "ui/desktop/desktop_session.h"

namespace orb {

class command_form : public QDialog {
  Q_OBJECT

public:
  // `name`: of the window. Deletes itself when closed.
  command_form(desktop_session &session, const QString &name, const QString &caption, QWidget *parent);

protected:
  desktop_session &session() { return session_; }
  // What is wrong with a command's parameters; empty: nothing. Where its result is there already this asks whether to
  // overwrite it; "cancel" and "no" leave the form open without a word.
  bool can_do(bound_command &command);
  // Shows what is wrong, under the fields.
  void say_wrong(const QString &text);
  QLabel *wrong_label() { return wrong_; }
  // Closes the form and runs the commands, one after the other, unless one of them can't.
  void run_and_close(std::vector<bound_command> commands);
  void run_and_close(bound_command command) { run_and_close(std::vector{std::move(command)}); }

private:
  desktop_session &session_;
  QLabel *wrong_;
};

} // namespace orb
