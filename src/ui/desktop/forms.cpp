#include "ui/desktop/forms.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "ui/desktop/parameter_dialog.h"
#include "ui/desktop/qt_text.h"

namespace orb {

std::optional<QWidget *> form_of_entry(desktop_session &session, const menu_entry &entry, QWidget *parent) {
  const std::string &id = entry.command;
  if (id == "parameters.set")
    return form_param(session, parent);
  if (id == "metric.set")
    return form_metric(session, parent);
  if (id == "formats.set")
    return form_formats(session, parent);
  if (id == "options.set")
    return form_options(session, parent);
  if (id == "net.revise")
    return form_setting_QQ(session, entry.control, parent);
  if (id == "contigs.assemble")
    return form_adapt_clust(session, parent);
  if (id == "draw.vertices")
    return mark_vertices(session, parent);
  static const std::string of_simulations[]{"pvalue.score", "pvalue.estimate", "pvalue.table", "pvalue.lookup",
                                            "pvalue.preset"};
  if (std::find(std::begin(of_simulations), std::end(of_simulations), id) != std::end(of_simulations))
    return form_simulations(session, parent);
  const bound_command command = bound_by_name(entry.control);
  const auto &rows = command.parameters().rows();
  if (std::all_of(rows.begin(), rows.end(), [](const parameter_row &row) { return row.is_given(); }))
    return std::nullopt; // nothing is left to be asked
  return new parameter_dialog(
      session, [control = entry.control] { return bound_by_name(control); }, qt_text(entry.control),
      qt_text(entry.caption), parent);
}

QWidget *results_window(const QString &title, const QString &text, QWidget *parent) {
  auto *window = new QDialog(parent);
  window->setObjectName("results");
  window->setWindowTitle(title);
  window->setAttribute(Qt::WA_DeleteOnClose);
  auto *inside = new QVBoxLayout(window);
  auto *shown = new QPlainTextEdit(text, window);
  shown->setObjectName("t_results");
  shown->setAccessibleName(QObject::tr("Results"));
  shown->setReadOnly(true);
  shown->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  shown->setLineWrapMode(QPlainTextEdit::NoWrap);
  inside->addWidget(shown);
  auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, window);
  inside->addWidget(buttons);
  QObject::connect(buttons, &QDialogButtonBox::rejected, window, &QDialog::close);
  window->resize(720, 480);
  return window;
}

} // namespace orb
