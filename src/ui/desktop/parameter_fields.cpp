#include "ui/desktop/parameter_fields.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "frame/failures.h"
#include "ui/desktop/form_parts.h"
#include "ui/desktop/qt_text.h"

namespace orb {

namespace {

enum class path_use { file_to_read, folder, file_or_folder, file_to_write };

path_use use_of(const parameter_row &row) {
  const std::string &type = row.type_shown;
  const auto says = [&type](const char *word) { return type.find(word) != std::string::npos; };
  if (says("INPUT") || says("FOLDER") || (says("RUN") && says("|")))
    return path_use::file_or_folder;
  if (says("DIR") || says("RUN"))
    return path_use::folder;
  return row.key == "out" || row.key == "save" ? path_use::file_to_write : path_use::file_to_read;
}

QString limits_of(const parameter_row &row) {
  constexpr double unlimited = 1e6; // beyond that a limit says nothing to people
  if (!row.low)
    return {};
  const QString least = QString::number(*row.low, 'g', 10);
  if (*row.low < -unlimited)
    return {};
  return *row.high < unlimited ? QObject::tr("%1 to %2").arg(least, QString::number(*row.high, 'g', 10))
                               : QObject::tr("at least %1").arg(least);
}

// What stands beside a field: meaning, unit, limits.
QString words_on(const parameter_row &row) {
  QString text = qt_text(row.meaning);
  for (const char *of_lines : {"; without it a dialog asks"})
    text.replace(of_lines, QObject::tr("; empty: a dialog asks"));
  QStringList more;
  if (!row.unit.empty() && row.meaning.find(row.unit) == std::string::npos)
    more << qt_text(row.unit);
  if (const QString limits = limits_of(row); !limits.isEmpty() && row.is_number())
    more << limits;
  return more.isEmpty() ? text : text + " (" + more.join(", ") + ")";
}

QString placeholder_of(const parameter_row &row) {
  if (row.required)
    return QObject::tr("needed");
  return qt_text(row.default_shown);
}

void add_choice(QComboBox *box, const parameter_row &row) {
  const bool has_value = !row.text().empty();
  if (!has_value)
    box->addItem(placeholder_of(row).isEmpty() ? QString("-") : placeholder_of(row), QString());
  for (const std::string &word : row.words)
    box->addItem(qt_text(word), qt_text(word));
  if (has_value)
    box->setCurrentIndex(box->findData(qt_text(row.text())));
}

// A choice by a dialog goes into the line.
void choose_path(QWidget *parent, QWidget *line, bool is_list, path_use use, bool folder) {
  const QString caption = line->accessibleName();
  QString chosen;
  if (folder)
    chosen = QFileDialog::getExistingDirectory(parent, caption);
  else if (use == path_use::file_to_write)
    chosen = QFileDialog::getSaveFileName(parent, caption, {}, {}, nullptr, QFileDialog::DontConfirmOverwrite);
  else
    chosen = QFileDialog::getOpenFileName(parent, caption);
  if (chosen.isEmpty())
    return;
  if (is_list)
    static_cast<QPlainTextEdit *>(line)->appendPlainText(chosen);
  else
    static_cast<QLineEdit *>(line)->setText(chosen);
}

} // namespace

QString caption_of(const parameter_row &row) {
  if (!row.caption.empty())
    return qt_text(row.caption).trimmed();
  QString text = qt_text(row.key);
  text.replace('-', ' ');
  return text.left(1).toUpper() + text.mid(1);
}

parameter_fields::parameter_fields(const bound_command &shown, const QStringList &hidden, QWidget *parent)
    : QWidget(parent) {
  auto *whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  const auto &rows = shown.parameters().rows();
  std::vector<std::string> groups{""};
  for (const parameter_row &row : rows)
    if (std::find(groups.begin(), groups.end(), row.group) == groups.end())
      groups.push_back(row.group);
  for (const std::string &group : groups) {
    auto *box = new QGroupBox(qt_text(group), this);
    box->setFlat(group.empty());
    auto *grid = new QGridLayout(box);
    grid->setColumnStretch(1, 3);
    grid->setColumnStretch(2, 4);
    grid->setColumnMinimumWidth(1, 180);
    for (const parameter_row &row : rows)
      if (row.group == group && !row.is_given() && !hidden.contains(qt_text(row.key)))
        add(row, grid);
    if (grid->count() == 0)
      delete box;
    else
      whole->addWidget(box);
  }
  whole->addStretch(1);
}

void parameter_fields::add(const parameter_row &row, QGridLayout *into) {
  const int line = into->rowCount();
  QWidget *shown = nullptr;
  QWidget *editor = editor_of(row, shown);
  editor->setObjectName(qt_text(row.key));
  editor->setAccessibleName(caption_of(row));
  editor->setToolTip(words_on(row));
  if (!row.is_flag()) {
    auto *label = new QLabel(caption_of(row).replace("&", "&&"), this);
    label->setBuddy(editor);
    into->addWidget(label, line, 0);
  } else if (qobject_cast<QComboBox *>(editor)) {
    into->addWidget(new QLabel(caption_of(row), this), line, 0);
  }
  auto *words = new QLabel(words_on(row), this);
  words->setWordWrap(true);
  words->setTextFormat(Qt::PlainText);
  words->setForegroundRole(QPalette::PlaceholderText); // steps back behind the fields
  words->setMinimumWidth(220);
  if (row.is_path()) { // needs the room of both columns
    into->addWidget(shown, line, 1, 1, 2);
    into->addWidget(words, line + 1, 1, 1, 2);
  } else {
    const bool is_box = qobject_cast<QCheckBox *>(editor);
    into->addWidget(shown, line, is_box ? 0 : 1, 1, is_box ? 2 : 1);
    into->addWidget(words, line, 2);
  }
  fields_.push_back({row.key, editor, row.is_list(), row.is_number(), {}});
  fields_.back().at_first = value_of(fields_.back());
}

QWidget *parameter_fields::editor_of(const parameter_row &row, QWidget *&shown) {
  if (std::holds_alternative<bool *>(row.target)) {
    auto *box = new QCheckBox(caption_of(row), this);
    box->setChecked(row.text() == "yes");
    return shown = box;
  }
  if (row.is_flag() || !row.words.empty()) {
    auto *box = new QComboBox(this);
    if (row.is_flag()) {
      box->addItem(placeholder_of(row).isEmpty() ? QString("-") : placeholder_of(row), QString());
      box->addItem(tr("yes"), "yes");
      box->addItem(tr("no"), "no");
    } else {
      add_choice(box, row);
    }
    return shown = box;
  }
  if (row.is_path())
    return path_line(row, shown);
  auto *line = new QLineEdit(this);
  line->setPlaceholderText(placeholder_of(row));
  line->setText(row.required ? QString() : qt_text(row.text()));
  return shown = line;
}

QWidget *parameter_fields::path_line(const parameter_row &row, QWidget *&shown) {
  const bool is_list = row.is_list();
  shown = new QWidget(this);
  auto *side_by_side = new QHBoxLayout(shown);
  side_by_side->setContentsMargins(0, 0, 0, 0);
  QWidget *line = nullptr;
  if (is_list) {
    auto *lines = new QPlainTextEdit(shown);
    lines->setPlaceholderText(tr("one a line"));
    lines->setMaximumHeight(70);
    lines->setTabChangesFocus(true);
    line = lines;
  } else {
    auto *one = new QLineEdit(shown);
    one->setPlaceholderText(placeholder_of(row));
    one->setText(row.required ? QString() : qt_text(row.text()));
    line = one;
  }
  side_by_side->addWidget(line, 1);
  const path_use use = use_of(row);
  const auto add_button = [&](const QString &text, const char *name, bool folder) {
    auto *button = new QPushButton(text, shown);
    button->setObjectName(qt_text(row.key) + name);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this,
            [this, line, is_list, use, folder] { choose_path(this, line, is_list, use, folder); });
    side_by_side->addWidget(button);
  };
  if (use != path_use::folder)
    add_button(tr("File..."), "_file", false);
  if (use == path_use::folder || use == path_use::file_or_folder)
    add_button(tr("Folder..."), "_folder", true);
  return line;
}

QString parameter_fields::value_of(const field &asked) {
  if (const auto *box = qobject_cast<QCheckBox *>(asked.editor))
    return box->isChecked() ? "yes" : "no";
  if (const auto *choice = qobject_cast<QComboBox *>(asked.editor))
    return choice->currentData().toString();
  if (const auto *lines = qobject_cast<QPlainTextEdit *>(asked.editor))
    return lines->toPlainText().trimmed();
  return static_cast<QLineEdit *>(asked.editor)->text().trimmed();
}

void parameter_fields::put_into(bound_command &command) const {
  for (const field &asked : fields_) {
    const QString value = value_of(asked);
    if (value == asked.at_first || value.isEmpty())
      continue;
    if (!asked.is_list) {
      command.set(asked.key, asked.is_number ? typed_number(value) : value.toStdString());
      continue;
    }
    for (const QString &line : value.split('\n', Qt::SkipEmptyParts))
      command.set(asked.key, line.trimmed().toStdString());
  }
}

void parameter_fields::focus_first() const {
  if (!fields_.empty())
    fields_.front().editor->setFocus();
}

} // namespace orb
