// form_mark_vertices, "Mark vertices": the net of a list of clones, drawn with further lists marked in it. Reads the
// lists as they are chosen, to show how many clones they hold; OK runs the command that does it all.
#include <QVBoxLayout>
#include <functional>

#include "commands/command_table.h"
#include "drawing/mark_vertices.h"
#include "ui/desktop/command_form.h"
#include "ui/desktop/form_parts.h"
#include "ui/desktop/forms.h"
#include "ui/desktop/qt_text.h"

namespace orb {

namespace {

class mark_vertices_form : public command_form {
public:
  mark_vertices_form(desktop_session &session, QWidget *parent);
  // Asks for the clones of the drawing; false when cancelled.
  bool start();

private:
  QLabel *add_label(QFormLayout *into, const char *control, const QString &caption);
  bool work(const std::function<bool()> &does);
  void show_state();
  void fill_values(int kind);
  void load_next();
  void draw();

  form_mark_vertices form_;
  QLabel *vertices_ = nullptr, *list_name_ = nullptr, *n_vertices_ = nullptr;
  QComboBox *kind_ = nullptr, *value_ = nullptr;
  QLineEdit *cutoff_ = nullptr;
};

mark_vertices_form::mark_vertices_form(desktop_session &session, QWidget *parent)
    : command_form(session, "form_mark_vertices", "Mark vertices", parent),
      form_(session.project().signif(), session.project().rule()) {
  auto *whole = new QVBoxLayout(this);
  auto *fields = new QFormLayout;
  whole->addLayout(fields);
  QStringList kinds;
  for (const std::string &word : form_mark_vertices::Combo_mark_by())
    kinds << qt_text(word);
  vertices_ = add_label(fields, "l_vertices", tr("Drawing:"));
  kind_ = choice("Combo_mark_by", tr("Mark by"), kinds, 0);
  value_ = choice("Combo1_index", tr("With"), {}, -1);
  fields->addRow(tr("&Mark by:"), kind_);
  fields->addRow(tr("&With:"), value_);
  QPushButton *load = push_button("Command_load", tr("&Load the next list of vertices"));
  fields->addRow(load);
  list_name_ = add_label(fields, "l_list_name", tr("List:"));
  n_vertices_ = add_label(fields, "l_n_vertices", tr("Marked:"));
  cutoff_ = add_line(fields, "t_cutoff", tr("Cutoff"), qt_text(form_.t_cutoff));
  whole->addWidget(wrong_label());
  const form_buttons buttons = two_buttons("Ok", tr("OK"), "Cancel", tr("Cancel"));
  whole->addWidget(buttons.box);
  fill_values(0);
  connect(kind_, &QComboBox::currentIndexChanged, this, &mark_vertices_form::fill_values);
  connect(load, &QPushButton::clicked, this, &mark_vertices_form::load_next);
  connect(buttons.box, &QDialogButtonBox::accepted, this, &mark_vertices_form::draw);
  connect(buttons.box, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

QLabel *mark_vertices_form::add_label(QFormLayout *into, const char *control, const QString &caption) {
  auto *label = new QLabel(this);
  label->setObjectName(control);
  into->addRow(caption, label);
  return label;
}

// Messages and dialogs of the form come through the frame.
bool mark_vertices_form::work(const std::function<bool()> &does) {
  if (session().is_running())
    return false;
  const desktop_session::busy_mark busy(session());
  const frame_scope scope(session().project().frame());
  try {
    return does();
  } catch (const std::exception &failed) {
    session().project().frame().alarm(failed.what());
    return false;
  }
}

bool mark_vertices_form::start() {
  const bool started = work([this] { return form_.start(); });
  show_state();
  return started;
}

void mark_vertices_form::fill_values(int kind) {
  value_->clear();
  for (const std::string &word : form_mark_vertices::Combo1(kind))
    value_->addItem(qt_text(word));
}

void mark_vertices_form::show_state() {
  list_name_->setText(qt_text(form_.l_list_name()));
  n_vertices_->setText(qt_text(form_.l_n_vertices()));
  vertices_->setText(qt_text(form_.l_vertices()));
}

void mark_vertices_form::load_next() {
  form_.mark_by_index = kind_->currentIndex();
  form_.Combo1_index = value_->currentIndex();
  work([this] { return form_.Command_load(); });
  show_state();
}

void mark_vertices_form::draw() {
  form_.t_cutoff = typed_number(cutoff_->text());
  double cutoff = 0;
  if (!work([&] { return form_.cutoff_is_number(cutoff); }))
    return;
  bound_command command = command_by_id("draw.vertices")->bind();
  try {
    command.set("list", form_.list_file().string());
    for (const vertex_mark &mark : form_.marks())
      command.set("mark", mark.text());
    command.set("cutoff", form_.t_cutoff);
  } catch (const usage_error &wrong) {
    say_wrong(qt_lines(wrong.what()));
    return;
  }
  run_and_close(std::move(command));
}

} // namespace

QWidget *mark_vertices(desktop_session &session, QWidget *parent) {
  auto *form = new mark_vertices_form(session, parent);
  if (form->start())
    return form;
  delete form;
  return nullptr;
}

} // namespace orb
