// FrmSettingQQ: the additional cutoff of a revision and the file of the revised net. Its fields and buttons are those
// of the struct without a window; here they are shown.
#include "net/form_setting_QQ.h"

#include <QVBoxLayout>

#include "ui/desktop/command_form.h"
#include "ui/desktop/form_parts.h"
#include "ui/desktop/forms.h"
#include "ui/desktop/qt_text.h"

namespace orb {

namespace {

class QQ_form : public command_form {
public:
  QQ_form(desktop_session &session, const std::string &control, QWidget *parent)
      : command_form(session, "FrmSettingQQ", FrmSettingQQ::caption, parent), control_(control) {
    form_.show(session.project().rule().cutoff);
    auto *whole = new QVBoxLayout(this);
    auto *fields = new QFormLayout;
    whole->addLayout(fields);
    auto *current = add_line(fields, "t_cur_cutoff", FrmSettingQQ::l_cur_cutoff, qt_text(form_.t_cur_cutoff));
    current->setReadOnly(true);
    additional_ = add_line(fields, "t_min_cutoff", FrmSettingQQ::l_min_cutoff, qt_text(form_.t_min_cutoff));
    additional_->setFocus();
    whole->addWidget(wrong_label());
    const form_buttons two =
        two_buttons("c_ok", FrmSettingQQ::c_ok_caption, "c_Cancel", FrmSettingQQ::c_Cancel_caption);
    whole->addWidget(two.box);
    connect(two.box, &QDialogButtonBox::accepted, this, &QQ_form::press_ok);
    connect(two.box, &QDialogButtonBox::rejected, this, [this] {
      form_.c_Cancel();
      reject();
    });
  }

private:
  // The struct asks for the file, and whether one that exists may be overwritten.
  void press_ok() {
    project_state &project = session().project();
    if (session().is_running())
      return;
    if (!project.working_folder().empty())
      project.frame().working_folder_set(project.working_folder());
    form_.t_min_cutoff = additional_->text().trimmed().toStdString();
    if (!form_.c_ok(project.frame()))
      return;
    bound_command command = bound_by_name(control_);
    command.set("out", form_.QQ_file.string());
    command.set("additional-cutoff", form_.t_min_cutoff);
    std::error_code failed;
    if (std::filesystem::exists(form_.QQ_file, failed))
      command.set("force", "yes");
    form_.is_open = true; // until the command can run
    run_and_close(command);
  }

  const std::string control_;
  FrmSettingQQ form_;
  QLineEdit *additional_;
};

} // namespace

QWidget *form_setting_QQ(desktop_session &session, const std::string &control, QWidget *parent) {
  return new QQ_form(session, control, parent);
}

} // namespace orb
