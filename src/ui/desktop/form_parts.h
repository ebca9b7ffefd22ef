// Pieces of which the forms are made.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <string>

#include "frame/numbers.h"

namespace orb {

// A line named as its control, under a caption.
inline QLineEdit *add_line(QFormLayout *into, const char *control, const QString &caption, const QString &text) {
  auto *line = new QLineEdit(text);
  line->setObjectName(control);
  line->setAccessibleName(caption.trimmed());
  auto *label = new QLabel(caption.trimmed());
  label->setBuddy(line);
  into->addRow(label, line);
  return line;
}

inline QCheckBox *check_box(const char *control, const QString &caption, bool on) {
  auto *box = new QCheckBox(caption.trimmed());
  box->setObjectName(control);
  box->setAccessibleName(caption.trimmed());
  box->setChecked(on);
  return box;
}

inline QComboBox *choice(const char *control, const QString &caption, const QStringList &texts, int current) {
  auto *box = new QComboBox;
  box->setObjectName(control);
  box->setAccessibleName(caption.trimmed());
  box->addItems(texts);
  box->setCurrentIndex(current);
  return box;
}

inline QPushButton *push_button(const char *control, const QString &caption) {
  auto *button = new QPushButton(caption.simplified());
  button->setObjectName(control);
  button->setAccessibleName(caption.simplified());
  button->setAutoDefault(false);
  return button;
}

// A line for a folder, with a button that chooses one. `line`: comes out.
struct folder_names {
  const char *line, *button;
  QString caption;
};
inline QWidget *folder_row(const folder_names &names, QLineEdit *&line) {
  auto *row = new QWidget;
  auto *inside = new QHBoxLayout(row);
  inside->setContentsMargins(0, 0, 0, 0);
  line = new QLineEdit(row);
  line->setObjectName(names.line);
  line->setAccessibleName(QString(names.caption).remove('&'));
  QPushButton *choose = push_button(names.button, QObject::tr("Folder..."));
  QObject::connect(choose, &QPushButton::clicked, row, [row, line] {
    if (const QString chosen = QFileDialog::getExistingDirectory(row, line->accessibleName()); !chosen.isEmpty())
      line->setText(chosen);
  });
  auto *label = new QLabel(names.caption, row);
  label->setBuddy(line);
  inside->addWidget(label);
  inside->addWidget(line, 1);
  inside->addWidget(choose);
  return row;
}

// Two buttons with the names and captions of a form.
struct form_buttons {
  QDialogButtonBox *box;
  QPushButton *ok, *cancel;
};
inline form_buttons two_buttons(const char *ok, const QString &ok_caption, const char *cancel,
                                const QString &cancel_caption) {
  auto *box = new QDialogButtonBox;
  QPushButton *yes = box->addButton(ok_caption, QDialogButtonBox::AcceptRole);
  QPushButton *no = box->addButton(cancel_caption, QDialogButtonBox::RejectRole);
  yes->setObjectName(ok);
  yes->setDefault(true);
  no->setObjectName(cancel);
  return {box, yes, no};
}

// What was typed for a number, as a script takes it: a comma for the point is allowed, as in all files.
inline std::string typed_number(const QString &text) {
  double value = 0;
  const std::string typed = text.trimmed().toStdString();
  return typed.find(',') != std::string::npos && number_parse(typed, value) ? number_text_shortest(value) : typed;
}

inline std::string yes_or_no(bool on) {
  return on ? "yes" : "no";
}

} // namespace orb
