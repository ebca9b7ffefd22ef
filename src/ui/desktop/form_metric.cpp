// form_metric, "Clone overlaps": metric, cutoff, burying fraction.
#include <QVBoxLayout>

#include "commands/command_table.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_general.h"
#include "ui/desktop/command_form.h"
#include "ui/desktop/form_parts.h"
#include "ui/desktop/forms.h"
#include "ui/desktop/qt_text.h"

namespace orb {

namespace {

using family = class_clone_dist_general;

QStringList names_of_metrics() {
  QStringList names;
  for (std::int16_t i = 0; i <= family::number_distance_index_get(); ++i)
    names << qt_text(family::name_of_cutoff_distance(i));
  return names;
}

class metric_form : public command_form {
public:
  metric_form(desktop_session &session, QWidget *parent);

private:
  void show_standard_cutoff(int metric);
  void store();

  QComboBox *metric_;
  QLineEdit *cutoff_, *burying_;
  QCheckBox *several_, *markers_;
};

metric_form::metric_form(desktop_session &session, QWidget *parent)
    : command_form(session, "form_metric", tr("Clone overlaps"), parent) {
  const overlap_rule &rule = session.project().rule();
  const project_settings &settings = session.project().settings();
  auto *whole = new QVBoxLayout(this);
  auto *fields = new QFormLayout;
  whole->addLayout(fields);
  metric_ = choice("combo_cutoff", tr("Metric"), names_of_metrics(), rule.distance_index);
  fields->addRow(tr("&Metric"), metric_);
  cutoff_ = add_line(fields, "t_cutoff", tr("-Log_10 (Cutoff) ="), qt_text(number_text(rule.cutoff, 2)));
  auto *burying = new QHBoxLayout;
  burying_ = new QLineEdit(qt_text(number_text_shortest(rule.burying)));
  burying_->setObjectName("t_pogloshenie");
  burying_->setAccessibleName(tr("Fraction of common bands resulting buring"));
  burying_->setMaximumWidth(80);
  burying->addWidget(new QLabel(tr("Clone C1 is buried in clone C2 if ")));
  burying->addWidget(burying_);
  burying->addWidget(new QLabel(tr("of C1 bands are presented in clone C2")));
  burying->addStretch(1);
  whole->addLayout(burying);
  several_ = check_box("ch_several", tr("Several metrics and cutoffs"), settings.several_metrics_and_cutoffs);
  markers_ = check_box("ch_markers", tr("Markers"), settings.markers_in_clones);
  whole->addWidget(several_);
  whole->addWidget(markers_);
  whole->addWidget(wrong_label());
  const form_buttons two = two_buttons("c_ok", tr("OK"), "c_Cancel", tr("Cancel"));
  whole->addWidget(two.box);
  connect(metric_, &QComboBox::currentIndexChanged, this, &metric_form::show_standard_cutoff);
  connect(two.box, &QDialogButtonBox::accepted, this, &metric_form::store);
  connect(two.box, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void metric_form::show_standard_cutoff(int metric) {
  if (const double standard = family::standard_cutoff(static_cast<std::int16_t>(metric)); standard >= 0)
    cutoff_->setText(qt_text(number_text(standard, 2)));
}

// All that the form shows, so that the line of the script stands by itself. A text that shows the value in use stands
// for that value.
void metric_form::store() {
  const overlap_rule &rule = session().project().rule();
  const QString cutoff = cutoff_->text().trimmed(), burying = burying_->text().trimmed();
  bound_command command = command_by_id("metric.set")->bind();
  try {
    command.set("metric", metric_->currentText().toStdString());
    command.set("cutoff", cutoff == qt_text(number_text(rule.cutoff, 2)) ? number_text_shortest(rule.cutoff)
                                                                         : typed_number(cutoff));
    command.set("burying", typed_number(burying));
    command.set("several", yes_or_no(several_->isChecked()));
    command.set("use-markers", yes_or_no(markers_->isChecked()));
  } catch (const usage_error &wrong) {
    say_wrong(qt_lines(wrong.what()));
    return;
  }
  run_and_close(command);
}

} // namespace

QWidget *form_metric(desktop_session &session, QWidget *parent) {
  return new metric_form(session, parent);
}

} // namespace orb
