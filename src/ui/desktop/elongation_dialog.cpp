#include "ui/desktop/elongation_dialog.h"

#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "ui/desktop/qt_text.h"

namespace orb {

bool run_elongation_dialog(form_netElng &form, process_frame &frame, QWidget *parent) {
  QDialog dialog(parent);
  dialog.setObjectName("form_netElng");
  dialog.setWindowTitle(qt_text(form.title));
  auto *fields = new QFormLayout(&dialog);
  const auto label = [&](const char *name, const QString &text) {
    auto *made = new QLabel(text, &dialog);
    made->setObjectName(name);
    return made;
  };
  const auto field = [&](const char *name, const std::string &text, const char *meaning) {
    auto *made = new QLineEdit(qt_text(text), &dialog);
    made->setObjectName(name);
    made->setAccessibleName(meaning);
    return made;
  };
  QLineEdit *cutoff = field("t_Cutoff", form.t_Cutoff, "Cutoff");
  QLineEdit *rank = field("t_rank", form.t_rank, "Rank");
  auto *use_net = new QCheckBox(QString("&") + form_netElng::ch_useNet_caption, &dialog);
  use_net->setObjectName("ch_useNet");
  use_net->setChecked(form.ch_useNet);
  use_net->setEnabled(form.ch_useNet_is_enabled);
  QLabel *cutoff_label = label("l_Cutoff", QString(form_netElng::l_Cutoff).replace("Log", "&Log"));
  QLabel *rank_label = label("l_rank", QString("&") + form_netElng::l_rank);
  if (form.cutoff_is_shown) {
    fields->addRow(cutoff_label, cutoff);
    cutoff_label->setBuddy(cutoff);
    fields->addRow(use_net,
                   label("l_CutoffNet", QObject::tr("smallest score of the net: ") + qt_text(form.l_CutoffNet)));
  } else {
    fields->addRow(label("l_ranks", qt_lines(form.l_ranks)));
  }
  if (form.rank_is_shown) {
    fields->addRow(rank_label, rank);
    rank_label->setBuddy(rank);
  }
  for (QWidget *hidden :
       {static_cast<QWidget *>(cutoff), static_cast<QWidget *>(cutoff_label), static_cast<QWidget *>(use_net)})
    hidden->setVisible(form.cutoff_is_shown);
  for (QWidget *hidden : {static_cast<QWidget *>(rank), static_cast<QWidget *>(rank_label)})
    hidden->setVisible(form.rank_is_shown);
  auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
  buttons->button(QDialogButtonBox::Ok)->setText("Ok");
  buttons->button(QDialogButtonBox::Ok)->setObjectName("Ok");
  buttons->button(QDialogButtonBox::Cancel)->setText("Cancel");
  buttons->button(QDialogButtonBox::Cancel)->setObjectName("Cancel");
  fields->addRow(buttons);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, [&] {
    form.t_Cutoff = cutoff->text().toStdString();
    form.t_rank = rank->text().toStdString();
    form.ch_useNet = use_net->isChecked();
    if (form.ok(frame))
      dialog.accept();
  });
  return dialog.exec() == QDialog::Accepted;
}

} // namespace orb
