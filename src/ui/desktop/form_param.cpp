// form_param, "Parameters": three pages chosen by buttons.
#include <QButtonGroup>
#include <QPointer>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "commands/command_table.h"
#include "frame/numbers.h"
#include "project/part_loading.h"
#include "ui/desktop/command_form.h"
#include "ui/desktop/form_parts.h"
#include "ui/desktop/forms.h"
#include "ui/desktop/qt_text.h"

namespace orb {

namespace {

class parameters_form : public command_form {
public:
  parameters_form(desktop_session &session, QWidget *parent);

private:
  QWidget *net_page();
  QWidget *database_page();
  QWidget *tolerance_page();
  void add_page(QHBoxLayout *buttons, const QString &caption, const char *name, QWidget *page);
  void show_values();
  bool fill(bound_command &command);
  void recalculate();

  QStackedWidget *pages_ = new QStackedWidget(this);
  QButtonGroup *page_buttons_ = new QButtonGroup(this);
  QCheckBox *use_net_ = nullptr, *same_metric_ = nullptr, *same_in_order_ = nullptr;
  QLineEdit *max_clones_ = nullptr, *tolerance_ = nullptr, *index_ = nullptr, *length_ = nullptr, *n_fpc_ = nullptr;
  QLabel *n_bands_ = new QLabel(this);
};

parameters_form::parameters_form(desktop_session &session, QWidget *parent)
    : command_form(session, "form_param", tr("Parameters"), parent) {
  auto *whole = new QVBoxLayout(this);
  auto *buttons = new QHBoxLayout;
  whole->addLayout(buttons);
  whole->addWidget(pages_, 1);
  add_page(buttons, tr("&Net of clone overlaps"), "c_page_net", net_page());
  add_page(buttons, tr("&Database"), "c_page_database", database_page());
  add_page(buttons, tr("&Tolerance"), "c_page_tolerance", tolerance_page());
  page_buttons_->button(2)->setChecked(true);
  pages_->setCurrentIndex(2);
  connect(page_buttons_, &QButtonGroup::idClicked, pages_, &QStackedWidget::setCurrentIndex);
  whole->addWidget(wrong_label());
  const form_buttons two = two_buttons("c_ok", tr("OK"), "c_Cancel", tr("Cancel"));
  whole->addWidget(two.box);
  connect(two.box, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(two.box, &QDialogButtonBox::accepted, this, [this] {
    bound_command command = command_by_id("parameters.set")->bind();
    if (fill(command))
      run_and_close(command);
  });
  show_values();
}

void parameters_form::add_page(QHBoxLayout *buttons, const QString &caption, const char *name, QWidget *page) {
  auto *button = push_button(name, caption);
  button->setCheckable(true);
  page_buttons_->addButton(button, pages_->addWidget(page));
  buttons->addWidget(button);
}

QWidget *parameters_form::net_page() {
  const project_settings &settings = session().project().settings();
  auto *page = new QWidget;
  auto *inside = new QVBoxLayout(page);
  use_net_ = check_box("ch_use_file_with_connections", tr("Use current LOADED file with significant clone overlaps"),
                       settings.use_file_with_connections);
  same_metric_ =
      check_box("ch_same_metric", tr("Same metric like in current LOADED file with net"), settings.same_metric_as_net);
  same_in_order_ = check_box("ch_same_metric_net_ord", tr("Use same metric also for nets and clone ordering"),
                             settings.same_metric_net_ord_as_net);
  for (QCheckBox *box : {use_net_, same_metric_, same_in_order_})
    inside->addWidget(box);
  inside->addStretch(1);
  return page;
}

QWidget *parameters_form::database_page() {
  auto *page = new QWidget;
  auto *inside = new QFormLayout(page);
  max_clones_ = add_line(inside, "t_max_n_clones", tr("Max N_of_clones ="), {});
  return page;
}

QWidget *parameters_form::tolerance_page() {
  auto *page = new QWidget;
  auto *inside = new QFormLayout(page);
  tolerance_ = add_line(inside, "t_tolerance", tr("Tolerance, t ="), {});
  index_ = add_line(inside, "t_tolerance_index", tr("Tolerance index, 0 or 1 ="), {});
  length_ = add_line(inside, "t_image_length", tr("Gel length, L ="), {});
  n_fpc_ = add_line(inside, "t_n_bands_FPC", tr("N_bands_Sulston ="), {});
  n_bands_->setObjectName("l_n_bands");
  inside->addRow(tr("N_bands ="), n_bands_);
  QPushButton *again = push_button("cmd_recalc_n_bands", tr("Recalculate"));
  inside->addRow(QString(), again);
  connect(again, &QPushButton::clicked, this, &parameters_form::recalculate);
  return page;
}

void parameters_form::show_values() {
  const library_parameters now = parameters_of(session().project().database());
  max_clones_->setText(QString::number(now.max_n_clones));
  tolerance_->setText(QString::number(now.tolerance));
  index_->setText(QString::number(now.tolerance_index));
  length_->setText(qt_text(number_text_shortest(now.gel_length)));
  n_fpc_->setText(QString::number(now.n_bands));
  n_bands_->setText(QString::number(session().project().database().total_number_of_different_bands_get()));
}

// What isn't as it is in the project goes into the command.
bool parameters_form::fill(bound_command &command) {
  const library_parameters now = parameters_of(session().project().database());
  const project_settings &settings = session().project().settings();
  const auto set_changed = [&](const char *key, const QString &value, const QString &before) {
    if (value.trimmed() != before)
      command.set(key, value.trimmed().toStdString());
  };
  const auto set_flag = [&](const char *key, const QCheckBox *box, bool before) {
    if (box->isChecked() != before)
      command.set(key, yes_or_no(box->isChecked()));
  };
  try {
    set_changed("tolerance", tolerance_->text(), QString::number(now.tolerance));
    set_changed("tolerance-index", index_->text(), QString::number(now.tolerance_index));
    set_changed("gel-length", length_->text(), qt_text(number_text_shortest(now.gel_length)));
    set_changed("n-bands", n_fpc_->text(), QString::number(now.n_bands));
    set_changed("max-clones", max_clones_->text(), QString::number(now.max_n_clones));
    set_flag("use-net", use_net_, settings.use_file_with_connections);
    set_flag("same-metric", same_metric_, settings.same_metric_as_net);
    set_flag("same-metric-in-order", same_in_order_, settings.same_metric_net_ord_as_net);
    return true;
  } catch (const usage_error &wrong) {
    say_wrong(qt_lines(wrong.what()));
    return false;
  }
}

void parameters_form::recalculate() {
  bound_command command = command_by_id("parameters.set")->bind();
  if (!fill(command) || !can_do(command))
    return;
  const QPointer<parameters_form> self(this); // it may be closed while the command runs
  session().run(command);
  if (self)
    show_values();
}

} // namespace

QWidget *form_param(desktop_session &session, QWidget *parent) {
  return new parameters_form(session, parent);
}

} // namespace orb
