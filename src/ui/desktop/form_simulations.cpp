// form_simul_1, "Simulations": p-values of common bands by formula, by simulation, and from tables.
#include <QGroupBox>
#include <QPointer>
#include <QVBoxLayout>

#include "commands/command_table.h"
#include "metrics/class_clone_dist_simul.h"
#include "metrics/form_simul_1.h"
#include "ui/desktop/command_form.h"
#include "ui/desktop/form_parts.h"
#include "ui/desktop/forms.h"
#include "ui/desktop/qt_text.h"

namespace orb {

namespace {

using panel_of_simulations = form_simul_1;

// Stays open while its buttons work; beside it lies the main window with the stop button.
class simulations_form : public command_form {
public:
  simulations_form(desktop_session &session, QWidget *parent);

private:
  using setter = std::function<void(bound_command &)>;
  QWidget *pair_frame();
  QWidget *table_frame();
  void press(const char *id, const setter &set);
  void set_sizes(bound_command &command) const;
  static void set_line(bound_command &command, const char *key, const QLineEdit *line);

  QLineEdit *m_ = nullptr, *n_ = nullptr, *k_ = nullptr, *lg_ = nullptr, *min_ = nullptr, *step_ = nullptr,
            *steps_ = nullptr, *runs_ = nullptr, *folder_ = nullptr;
  QCheckBox *iid_ = nullptr;
  QComboBox *known_ = nullptr;
  QLabel *shown_ = new QLabel(this);
};

simulations_form::simulations_form(desktop_session &session, QWidget *parent)
    : command_form(session, "form_simul_1", panel_of_simulations::caption, parent) {
  setModal(false);
  auto *whole = new QVBoxLayout(this);
  auto *side_by_side = new QHBoxLayout;
  whole->addLayout(side_by_side);
  side_by_side->addWidget(pair_frame());
  side_by_side->addWidget(table_frame());
  whole->addWidget(folder_row({"t_folder", "c_folder", tr("&Folder of tables and reports")}, folder_));
  folder_->setText(qt_path(session.project().working_folder()));
  whole->addWidget(wrong_label());
  auto *close = new QDialogButtonBox(QDialogButtonBox::Close, this);
  whole->addWidget(close);
  connect(close, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(&session, &desktop_session::running_changed, this, [this](bool running) { setEnabled(!running); });
}

QWidget *simulations_form::pair_frame() {
  const panel_of_simulations values;
  auto *frame = new QGroupBox(tr("Two clones"), this);
  auto *inside = new QFormLayout(frame);
  m_ = add_line(inside, "t_m", tr("Bands of the one"), qt_text(values.t_m));
  n_ = add_line(inside, "t_n", tr("Bands of the other"), qt_text(values.t_n));
  k_ = add_line(inside, "t_k", tr("K, common bands"), {});
  lg_ = add_line(inside, "t_lg_P_val", tr("-Lg p-value"), {});
  iid_ = check_box("ch_iid", panel_of_simulations::ch_iid_caption, values.ch_iid);
  inside->addRow(iid_);
  QPushButton *calculate = push_button("b_calculate", panel_of_simulations::b_calculate_caption);
  QPushButton *value = push_button("b_value_of_k", panel_of_simulations::b_value_of_k_caption);
  QPushButton *count = push_button("b_k_of_value", panel_of_simulations::b_k_of_value_caption);
  shown_->setObjectName("l_lg_P_val");
  inside->addRow(calculate, shown_);
  auto *look_ups = new QHBoxLayout;
  look_ups->addWidget(value);
  look_ups->addWidget(count);
  inside->addRow(look_ups);
  connect(calculate, &QPushButton::clicked, this, [this] {
    press("pvalue.score", [this](bound_command &command) {
      set_sizes(command);
      set_line(command, "k", k_);
    });
  });
  const auto look_up = [this](const char *key, const QLineEdit *known) {
    press("pvalue.lookup", [this, key, known](bound_command &command) {
      set_line(command, "folder", folder_);
      set_sizes(command);
      set_line(command, key, known);
      command.set("mode", iid_->isChecked() ? "iid" : "fr");
    });
  };
  connect(value, &QPushButton::clicked, this, [this, look_up] { look_up("count", k_); });
  connect(count, &QPushButton::clicked, this, [this, look_up] { look_up("value", lg_); });
  return frame;
}

QWidget *simulations_form::table_frame() {
  auto *frame = new QGroupBox(tr("By simulation"), this);
  auto *inside = new QFormLayout(frame);
  runs_ = add_line(inside, "t_n_estimations", tr("Random pairs"), qt_text(panel_of_simulations().t_n_estimations));
  min_ = add_line(inside, "t_min_bands", tr("Smallest size in the table"), {});
  step_ = add_line(inside, "t_shag", tr("Step"), {});
  steps_ = add_line(inside, "t_n_shag", tr("Number of steps"), {});
  QStringList names;
  for (std::int32_t i = 1; i <= class_clone_simul::known_problem_n_get(); ++i)
    names << qt_text(class_clone_simul::known_problem_name_get(i));
  known_ = choice("combo_known_problem", tr("Known problem"), names, 0);
  QPushButton *estimate = push_button("b_estimate", panel_of_simulations::b_estimate_caption);
  QPushButton *table = push_button("b_create_table", panel_of_simulations::b_create_table_caption);
  QPushButton *known = push_button("b_known_problem", tr("Known problem"));
  auto *works = new QHBoxLayout;
  works->addWidget(estimate);
  works->addWidget(table);
  inside->addRow(works);
  inside->addRow(known, known_);
  const auto set_results = [this](bound_command &command) {
    set_line(command, "out", folder_);
    set_line(command, "runs", runs_);
    if (command.parameters().find("iid"))
      command.set("iid", yes_or_no(iid_->isChecked()));
  };
  connect(estimate, &QPushButton::clicked, this, [this, set_results] {
    press("pvalue.estimate", [this, set_results](bound_command &command) {
      set_sizes(command);
      set_results(command);
    });
  });
  connect(table, &QPushButton::clicked, this, [this, set_results] {
    press("pvalue.table", [this, set_results](bound_command &command) {
      set_results(command);
      set_line(command, "min-bands", min_);
      set_line(command, "step", step_);
      set_line(command, "steps", steps_);
    });
  });
  connect(known, &QPushButton::clicked, this, [this, set_results] {
    press("pvalue.preset", [this, set_results](bound_command &command) {
      command.set("preset", std::to_string(known_->currentIndex() + 1));
      set_results(command);
    });
  });
  return frame;
}

void simulations_form::set_line(bound_command &command, const char *key, const QLineEdit *line) {
  if (const QString text = line->text().trimmed(); !text.isEmpty())
    command.set(key, text.toStdString());
}

void simulations_form::set_sizes(bound_command &command) const {
  set_line(command, "n1", m_);
  set_line(command, "n2", n_);
}

// The answer goes to the field that it belongs to.
void simulations_form::press(const char *id, const setter &set) {
  bound_command command = command_by_id(id)->bind();
  try {
    set(command);
  } catch (const usage_error &wrong) {
    say_wrong(qt_lines(wrong.what()));
    return;
  }
  if (!can_do(command))
    return;
  const QPointer<simulations_form> self(this); // it may be closed while the command runs
  const command_result result = session().run(command);
  if (!self)
    return;
  const QString line = result.lines.empty() ? QString() : qt_text(result.lines.front());
  if (!result.completed || line.isEmpty())
    return;
  if (std::string(id) == "pvalue.score")
    shown_->setText(line);
  else if (std::string(id) == "pvalue.lookup")
    (command.parameters().find("count")->is_given() ? lg_ : k_)->setText(line);
}

} // namespace

QWidget *form_simulations(desktop_session &session, QWidget *parent) {
  return new simulations_form(session, parent);
}

} // namespace orb
