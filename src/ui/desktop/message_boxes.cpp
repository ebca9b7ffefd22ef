#include "ui/desktop/message_boxes.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>

#include "ui/desktop/qt_text.h"

namespace orb {

namespace {

constexpr const char *usual_title = "ORB";

QString title_of(const std::string &title) {
  return title.empty() ? usual_title : qt_text(title);
}

QMessageBox::StandardButtons buttons_of(answer_choice choice) {
  switch (choice) {
  case answer_choice::yes_no:
    return QMessageBox::Yes | QMessageBox::No;
  case answer_choice::yes_no_cancel:
    return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
  case answer_choice::ok_cancel:
    return QMessageBox::Ok | QMessageBox::Cancel;
  }
  return QMessageBox::NoButton;
}

QMessageBox::StandardButton button_of(answer given, answer_choice choice) {
  if (choice == answer_choice::ok_cancel)
    return given == answer::yes ? QMessageBox::Ok : QMessageBox::Cancel;
  return given == answer::yes ? QMessageBox::Yes : given == answer::no ? QMessageBox::No : QMessageBox::Cancel;
}

// A dialog asks for what exists, or for a place: the frame itself asks whether a file may be overwritten.
void put_into(QFileDialog &dialog, const file_dialog &asked) {
  dialog.setObjectName("file_dialog");
  dialog.setWindowTitle(title_of(asked.title));
  dialog.setDirectory(qt_text(asked.folder));
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  dialog.setAcceptMode(asked.to_save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(asked.to_save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  if (!asked.filter.empty())
    dialog.setNameFilter(qt_filter(asked.filter));
  if (!asked.proposed_name.empty())
    dialog.selectFile(qt_text(asked.proposed_name));
}

} // namespace

void show_message_box(const std::string &text, const std::string &title, bool is_trouble) {
  QMessageBox box(is_trouble ? QMessageBox::Warning : QMessageBox::Information, title_of(title), qt_lines(text),
                  QMessageBox::Ok, QApplication::activeWindow());
  box.setObjectName("message_box");
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  box.exec();
}

answer ask_in_a_box(const question &asked) {
  QMessageBox box(QMessageBox::Question, title_of(asked.title), qt_lines(asked.text), buttons_of(asked.choice),
                  QApplication::activeWindow());
  box.setObjectName("question_box");
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(button_of(asked.by_default, asked.choice));
  if (!asked.explanation.empty())
    box.setInformativeText(qt_lines(asked.explanation));
  const QMessageBox::StandardButton pressed = static_cast<QMessageBox::StandardButton>(box.exec());
  if (pressed == QMessageBox::Yes || pressed == QMessageBox::Ok)
    return answer::yes;
  return pressed == QMessageBox::No ? answer::no : answer::cancel;
}

std::string ask_for_a_text(const input_box &asked) {
  QInputDialog dialog(QApplication::activeWindow());
  dialog.setObjectName("input_box");
  dialog.setWindowTitle(title_of(asked.title));
  dialog.setLabelText(qt_lines(asked.prompt));
  dialog.setTextValue(qt_text(asked.by_default));
  dialog.setWhatsThis(qt_lines(asked.explanation));
  return dialog.exec() == QDialog::Accepted ? dialog.textValue().toStdString() : std::string();
}

std::string ask_for_a_file(const file_dialog &asked) {
  QFileDialog dialog(QApplication::activeWindow());
  put_into(dialog, asked);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
    return {};
  return path_of(dialog.selectedFiles().front()).string();
}

QString qt_filter(const std::string &filter) {
  const QStringList parts = qt_text(filter).split('|');
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    const QString pattern = parts[i + 1] == "*.*" ? QString("*") : parts[i + 1];
    filters << parts[i].trimmed().section(" (", 0, 0) + " (" + QString(pattern).replace(';', ' ') + ")";
  }
  return filters.join(";;");
}

} // namespace orb
