// form_adapt_clust: how the net is cut into contigs.
#include <QGroupBox>
#include <QScrollArea>
#include <QVBoxLayout>

#include "commands/command_table.h"
#include "ui/desktop/command_form.h"
#include "ui/desktop/form_parts.h"
#include "ui/desktop/forms.h"
#include "ui/desktop/parameter_fields.h"
#include "ui/desktop/qt_text.h"

namespace orb {

namespace {

class adapt_clust_form : public command_form {
public:
  adapt_clust_form(desktop_session &session, QWidget *parent);

private:
  struct line_of_key {
    const char *key;
    QLineEdit *line;
    QString at_first;
  };
  QFormLayout *add_frame(QBoxLayout *into, const QString &caption);
  void add_field(QFormLayout *into, const char *control, const QString &caption, const char *key);
  QWidget *methods();
  void start();

  const bound_command shown_ = command_by_id("contigs.assemble")->bind();
  std::vector<line_of_key> lines_;
  QLineEdit *folder_ = nullptr;
  parameter_fields *more_;
};

adapt_clust_form::adapt_clust_form(desktop_session &session, QWidget *parent)
    : command_form(session, "form_adapt_clust", tr("Adaptive clustering"), parent) {
  auto *whole = new QVBoxLayout(this);
  auto *side_by_side = new QHBoxLayout;
  whole->addLayout(side_by_side);
  QFormLayout *go_on = add_frame(side_by_side, tr("Continue if"));
  add_field(go_on, "t_n_clones_max", tr("N clones in cluster >"), "max-clones");
  add_field(go_on, "t_width_max", tr("Width of net >"), "max-width");
  add_field(go_on, "t_minimal_cluster_size", tr("Minimal cluster size"), "min-size");
  QFormLayout *rise = add_frame(side_by_side, tr("Cutoff increasing"));
  add_field(rise, "t_step_cutoff", tr("Step size = 10^"), "step");
  add_field(rise, "t_meth_cutoff_n_steps", tr("N steps"), "steps");
  side_by_side->addWidget(methods());
  whole->addWidget(folder_row({"t_out", "c_out", tr("&Folder of the results")}, folder_));
  folder_->setPlaceholderText(qt_path(session.project().working_folder()));
  more_ = new parameter_fields(shown_, {"out", "max-clones", "max-width", "min-size", "step", "steps"});
  auto *scroll = new QScrollArea(this);
  scroll->setFocusPolicy(Qt::NoFocus); // the tab key goes to its fields
  scroll->setWidgetResizable(true);
  scroll->setWidget(more_);
  scroll->setMinimumHeight(260);
  scroll->hide();
  QPushButton *button = push_button("c_more", tr("&More options"));
  button->setCheckable(true);
  connect(button, &QPushButton::toggled, this, [this, scroll](bool on) {
    scroll->setVisible(on);
    resize(on ? 860 : sizeHint().width(), on ? 640 : minimumSizeHint().height());
  });
  auto *row = new QHBoxLayout;
  row->addWidget(button);
  row->addStretch(1);
  whole->addLayout(row);
  whole->addWidget(scroll, 1);
  whole->addWidget(wrong_label());
  const form_buttons two = two_buttons("c_start", tr("Start"), "c_canclel", tr("Cancel"));
  whole->addWidget(two.box);
  connect(two.box, &QDialogButtonBox::accepted, this, &adapt_clust_form::start);
  connect(two.box, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

QFormLayout *adapt_clust_form::add_frame(QBoxLayout *into, const QString &caption) {
  auto *frame = new QGroupBox(caption, this);
  into->addWidget(frame);
  return new QFormLayout(frame);
}

void adapt_clust_form::add_field(QFormLayout *into, const char *control, const QString &caption, const char *key) {
  const QString text = qt_text(shown_.parameters().find(key)->text());
  lines_.push_back({key, add_line(into, control, caption, text), text});
}

// Reserved: kept in sight, and nothing goes by them.
QWidget *adapt_clust_form::methods() {
  auto *frame = new QGroupBox(tr("Methods"), this);
  auto *inside = new QFormLayout(frame);
  inside->addRow(check_box("ch_Excluding_branching", tr("Excluding branching"), false));
  add_line(inside, "t_rank_relative_to_diam_path", tr("Rank relative to diam path "), "2");
  add_line(inside, "t_minimal_branch_size", tr("Minimal branch size"), "3");
  frame->setEnabled(false);
  frame->setToolTip(tr("Reserved: nothing goes by these yet."));
  return frame;
}

void adapt_clust_form::start() {
  bound_command command = command_by_id("contigs.assemble")->bind();
  try {
    for (const line_of_key &field : lines_)
      if (const QString text = field.line->text().trimmed(); text != field.at_first)
        command.set(field.key, typed_number(text));
    if (const QString folder = folder_->text().trimmed(); !folder.isEmpty())
      command.set("out", path_of(folder).string());
    more_->put_into(command);
  } catch (const usage_error &wrong) {
    say_wrong(qt_lines(wrong.what()));
    return;
  }
  run_and_close(command);
}

} // namespace

QWidget *form_adapt_clust(desktop_session &session, QWidget *parent) {
  return new adapt_clust_form(session, parent);
}

} // namespace orb
