// form_formats, "Data formats", and Form1, "Options for analysis".
#include <QGroupBox>
#include <QVBoxLayout>

#include "commands/analysis_switches.h"
#include "commands/command_table.h"
#include "database/class_clone_serv.h"
#include "metrics/class_clone_text_distance.h"
#include "ui/desktop/command_form.h"
#include "ui/desktop/form_parts.h"
#include "ui/desktop/forms.h"
#include "ui/desktop/qt_text.h"

namespace orb {

namespace {

class formats_form : public command_form {
public:
  formats_form(desktop_session &session, QWidget *parent)
      : command_form(session, "form_formats", tr("Data formats"), parent) {
    const project_settings &now = session.project().settings();
    QStringList names, files;
    for (std::int32_t i = 0; i < class_clone_serv::n_clone_formats_get(); ++i)
      names << QString("%1: %2").arg(i).arg(qt_text(class_clone_serv::clone_format_example_get(i)));
    for (std::int32_t i = 0; i < class_clone_serv::n_file_format_caption_get(); ++i)
      files << qt_text(class_clone_serv::file_format_caption_get(i));
    auto *whole = new QVBoxLayout(this);
    auto *fields = new QFormLayout;
    whole->addLayout(fields);
    input_ = choice("combo_format_input", tr("Clone names that are read"), names, now.clone_name_format_input);
    output_ = choice("combo_format_output", tr("Clone names that are written"), names, now.clone_name_format_output);
    file_ = choice("combo_file_format", tr("Files"), files, now.file_format_index);
    fields->addRow(tr("Clone names that are &read"), input_);
    fields->addRow(tr("Clone names that are &written"), output_);
    fields->addRow(tr("&Files"), file_);
    whole->addWidget(wrong_label());
    const form_buttons two = two_buttons("c_ok", tr("OK"), "c_Cancel", tr("Cancel"));
    whole->addWidget(two.box);
    connect(two.box, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(two.box, &QDialogButtonBox::accepted, this, [this] {
      bound_command command = command_by_id("formats.set")->bind();
      command.set("name-format-in", std::to_string(input_->currentIndex()));
      command.set("name-format-out", std::to_string(output_->currentIndex()));
      command.set("file-format", std::to_string(file_->currentIndex()));
      run_and_close(command);
    });
  }

private:
  QComboBox *input_, *output_, *file_;
};

class options_form : public command_form {
public:
  options_form(desktop_session &session, QWidget *parent)
      : command_form(session, "Form1", tr("Options for analysis"), parent) {
    const project_settings &now = session.project().settings();
    QStringList formats;
    for (std::int32_t i = 0; i < class_clone_text_distance::table_format_n_text_get(); ++i)
      formats << qt_text(class_clone_text_distance::table_format_text_get(i));
    auto *whole = new QVBoxLayout(this);
    auto *fields = new QFormLayout;
    whole->addLayout(fields);
    table_ = choice("combo_table_format", tr("Columns of pair tables"), formats,
                    class_clone_text_distance::table_format_of_text(now.table_format_text));
    fields->addRow(tr("&Columns of pair tables"), table_);
    fast_ = check_box("ch_fast_FPC", tr("fast FPC"), now.for_FPC_fast_indicator);
    net_ =
        check_box("ch_net_in_ordering", tr("Orders of clones link only pairs that the net joins"), now.net_in_ordering);
    clustering_ = check_box("ch_fast_clustering", tr("Single linkage on the net"), now.fast_clustering);
    singletones_ =
        check_box("ch_singletones", tr("Ask whether clones outside contigs go into one set"), now.singletones);
    for (QCheckBox *box : {fast_, net_, clustering_, singletones_})
      whole->addWidget(box);
    whole->addWidget(analyses_frame());
    whole->addWidget(wrong_label());
    const form_buttons two = two_buttons("c_ok", tr("OK"), "c_Cancel", tr("Cancel"));
    whole->addWidget(two.box);
    connect(two.box, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(two.box, &QDialogButtonBox::accepted, this, &options_form::store);
  }

private:
  QGroupBox *analyses_frame() {
    auto *frame = new QGroupBox(tr("Analysis of lists of clones"), this);
    auto *inside = new QVBoxLayout(frame);
    for (const analysis_switch &one : analysis_switches()) {
      if (*one.control == '\0')
        continue;
      QCheckBox *box = check_box(one.control, tr(one.caption), session().project().analyses().*one.value);
      inside->addWidget(box);
      switches_.emplace_back(box, one.word);
    }
    return frame;
  }

  // The switches that are ticked, and what else is on.
  bound_command analyses() {
    std::string words;
    const auto add = [&words](const std::string &word) { words += (words.empty() ? "" : ",") + word; };
    for (const auto &[box, word] : switches_)
      if (box->isChecked())
        add(word);
    for (const analysis_switch &one : analysis_switches())
      if (*one.control == '\0' && session().project().analyses().*one.value)
        add(one.word);
    bound_command command = command_by_id("analyse.options")->bind();
    command.set("clear", "yes");
    if (!words.empty())
      command.set("do", words);
    return command;
  }

  void store() {
    bound_command command = command_by_id("options.set")->bind();
    if (table_->currentIndex() >= 0)
      command.set("table-format", std::to_string(table_->currentIndex()));
    command.set("fast-fpc", yes_or_no(fast_->isChecked()));
    command.set("net-in-ordering", yes_or_no(net_->isChecked()));
    command.set("fast-clustering", yes_or_no(clustering_->isChecked()));
    command.set("singletones", yes_or_no(singletones_->isChecked()));
    run_and_close({command, analyses()});
  }

  QComboBox *table_;
  QCheckBox *fast_, *net_, *clustering_, *singletones_;
  std::vector<std::pair<QCheckBox *, const char *>> switches_; // with their words
};

} // namespace

QWidget *form_formats(desktop_session &session, QWidget *parent) {
  return new formats_form(session, parent);
}

QWidget *form_options(desktop_session &session, QWidget *parent) {
  return new options_form(session, parent);
}

} // namespace orb
