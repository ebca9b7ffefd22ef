#include "ui/desktop/command_form.h"

#include <QMessageBox>
#include <QTimer>

#include "frame/failures.h"
#include "ui/desktop/qt_text.h"

namespace orb {

command_form::command_form(desktop_session &session, const QString &name, const QString &caption, QWidget *parent)
    : QDialog(parent), session_(session), wrong_(new QLabel(this)) {
  setObjectName(name);
  setWindowTitle(caption.trimmed());
  setAttribute(Qt::WA_DeleteOnClose);
  setModal(true);
  wrong_->setObjectName("wrong");
  wrong_->setWordWrap(true);
  wrong_->setTextFormat(Qt::PlainText);
  wrong_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  QFont bold = wrong_->font();
  bold.setBold(true);
  wrong_->setFont(bold);
  wrong_->hide();
}

void command_form::say_wrong(const QString &text) {
  wrong_->setText(text);
  wrong_->setVisible(!text.isEmpty());
}

// A result that is there already: yes overwrites it.
static bool may_overwrite(bound_command &command, QWidget *parent) {
  const parameter_row *out = command.parameters().find("out");
  const parameter_row *force = command.parameters().find("force");
  if (!out || !force || force->text() == "yes" || out->text().empty())
    return true;
  std::error_code failed;
  if (!std::filesystem::is_regular_file(out->text(), failed))
    return true;
  const auto pressed =
      QMessageBox::question(parent, "ORB", QObject::tr("File %1 already exists! Overwrite?").arg(qt_text(out->text())),
                            QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
  if (pressed == QMessageBox::Yes)
    command.set("force", "yes");
  return pressed == QMessageBox::Yes;
}

bool command_form::can_do(bound_command &command) {
  say_wrong({});
  if (session_.is_running()) {
    say_wrong(tr("Another command is running."));
    return false;
  }
  try {
    if (!may_overwrite(command, this))
      return false;
    command.check(session_.project(), parts_there::of(session_.project()));
    return true;
  } catch (const usage_error &wrong) {
    say_wrong(qt_lines(wrong.what()));
  } catch (const file_error &wrong) {
    say_wrong(qt_lines(wrong.what()));
  }
  return false;
}

void command_form::run_and_close(std::vector<bound_command> commands) {
  for (bound_command &command : commands)
    if (!can_do(command))
      return;
  desktop_session *const session = &session_;
  accept();
  // when this click is over, so that the form is gone while the commands run
  QTimer::singleShot(0, session, [session, commands] {
    for (const bound_command &command : commands)
      if (!session->run(command).completed)
        return;
  });
}

} // namespace orb
