#include "ui/desktop/parameter_dialog.h"

#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>

#include "frame/failures.h"
#include "ui/desktop/qt_text.h"

namespace orb {

parameter_dialog::parameter_dialog(desktop_session &session, std::function<bound_command()> fresh, const QString &name,
                                   const QString &caption, QWidget *parent)
    : command_form(session, name, caption, parent), fresh_(std::move(fresh)) {
  const bound_command command = fresh_();
  fields_ = new parameter_fields(command);
  auto *whole = new QVBoxLayout(this);
  QString purpose = qt_text(command.row().purpose);
  auto *head = new QLabel(purpose.left(1).toUpper() + purpose.mid(1) + ".", this);
  head->setWordWrap(true);
  whole->addWidget(head);
  auto *scroll = new QScrollArea(this);
  scroll->setFocusPolicy(Qt::NoFocus); // the tab key goes to its fields
  scroll->setWidgetResizable(true);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidget(fields_);
  whole->addWidget(scroll, 1);
  whole->addWidget(wrong_label());
  auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  buttons->button(QDialogButtonBox::Ok)->setObjectName("c_ok");
  buttons->button(QDialogButtonBox::Cancel)->setObjectName("c_Cancel");
  buttons->setToolTip(qt_text(command.row().id));
  whole->addWidget(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, &parameter_dialog::start);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  const QSize room = screen() ? screen()->availableSize() : QSize(1280, 800);
  const QSize wanted = fields_->sizeHint();
  resize(std::min(std::max(wanted.width() + 60, 700), room.width() - 80),
         std::min(wanted.height() + 130, room.height() - 100));
  fields_->focus_first();
}

void parameter_dialog::start() {
  bound_command command = fresh_();
  try {
    fields_->put_into(command);
  } catch (const usage_error &wrong) {
    say_wrong(qt_lines(wrong.what()));
    return;
  }
  run_and_close(command);
}

} // namespace orb
