#include "ui/desktop/mark_vertices_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "ui/desktop/qt_text.h"

namespace orb {

mark_vertices_dialog::mark_vertices_dialog(desktop_session &session, QWidget *parent)
    : QDialog(parent), session_(session), form_(session.project().signif(), session.project().rule()),
      kind_(new QComboBox(this)), value_(new QComboBox(this)), list_name_(new QLabel(this)),
      n_vertices_(new QLabel(this)), vertices_(new QLabel(this)),
      cutoff_(new QLineEdit(qt_text(form_.t_cutoff), this)) {
  setObjectName("form_mark_vertices");
  setWindowTitle("Mark vertices");
  setAttribute(Qt::WA_DeleteOnClose);
  setModal(true);
  kind_->setObjectName("Combo_mark_by");
  value_->setObjectName("Combo1_index");
  list_name_->setObjectName("l_list_name");
  n_vertices_->setObjectName("l_n_vertices");
  vertices_->setObjectName("l_vertices");
  cutoff_->setObjectName("t_cutoff");
  for (const std::string &word : form_mark_vertices::Combo_mark_by())
    kind_->addItem(qt_text(word));
  connect(kind_, &QComboBox::currentIndexChanged, this, &mark_vertices_dialog::kind_chosen);
  kind_chosen(0);
  auto *load = new QPushButton("&Load the next list of vertices", this);
  load->setObjectName("Command_load");
  connect(load, &QPushButton::clicked, this, [this] { load_next(); });
  auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, [this] { write(); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto *fields = new QFormLayout(this);
  fields->addRow(tr("Drawing:"), vertices_);
  fields->addRow(tr("&Mark by:"), kind_);
  fields->addRow(tr("&With:"), value_);
  fields->addRow(load);
  fields->addRow(tr("List:"), list_name_);
  fields->addRow(tr("Marked:"), n_vertices_);
  fields->addRow(tr("&Cutoff:"), cutoff_);
  fields->addRow(buttons);
}

bool mark_vertices_dialog::work(const std::function<bool()> &does) {
  if (session_.is_running())
    return false;
  const desktop_session::busy_mark busy(session_);
  const frame_scope scope(session_.project().frame());
  try {
    return does();
  } catch (const std::exception &failed) {
    session_.project().frame().alarm(failed.what());
    return false;
  }
}

bool mark_vertices_dialog::start() {
  const bool started = work([this] { return form_.start(); });
  show_state();
  return started;
}

void mark_vertices_dialog::kind_chosen(int kind) {
  value_->clear();
  for (const std::string &word : form_mark_vertices::Combo1(kind))
    value_->addItem(qt_text(word));
}

void mark_vertices_dialog::show_state() {
  list_name_->setText(qt_text(form_.l_list_name()));
  n_vertices_->setText(qt_text(form_.l_n_vertices()));
  vertices_->setText(qt_text(form_.l_vertices()));
}

void mark_vertices_dialog::load_next() {
  form_.mark_by_index = kind_->currentIndex();
  form_.Combo1_index = value_->currentIndex();
  work([this] { return form_.Command_load(); });
  show_state();
}

void mark_vertices_dialog::write() {
  form_.t_cutoff = cutoff_->text().toStdString();
  if (work([this] { return form_.ok(); }))
    accept();
}

} // namespace orb
