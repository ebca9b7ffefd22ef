// Fields for the parameters of a command, made from its rows: a check box for a flag, a choice for words, a line with a
// button for a path, a line for anything else. The name of each field is the parameter's key.
#pragma once

#include <QGridLayout>
#include <QStringList>
#include <QWidget>
#include <vector>

#include "commands/command_row.h"

namespace orb {

class parameter_fields : public QWidget {
  Q_OBJECT

public:
  // Leaves the `hidden` keys out, and those that `shown` was given already.
  explicit parameter_fields(const bound_command &shown, const QStringList &hidden = {}, QWidget *parent = nullptr);

  bool is_empty() const { return fields_.empty(); }
  // Sets what isn't as it was at first; throws usage_error for a value that isn't taken.
  void put_into(bound_command &command) const;
  void focus_first() const;

private:
  struct field {
    std::string key;
    QWidget *editor;
    bool is_list = false, is_number = false;
    QString at_first;
  };
  void add(const parameter_row &row, QGridLayout *into);
  QWidget *editor_of(const parameter_row &row, QWidget *&shown);
  QWidget *path_line(const parameter_row &row, QWidget *&shown);
  static QString value_of(const field &asked);

  std::vector<field> fields_;
};

// "Ordering seconds" for the key "ordering-seconds".
QString caption_of(const parameter_row &row);

} // namespace orb
