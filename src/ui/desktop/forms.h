// The forms that commands have of their own. Each runs the command of its menu entry, as a line of a script does.
#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <string>

#include "commands/command_table.h"
#include "ui/desktop/desktop_session.h"

namespace orb {

// The form of a menu entry, made but not shown yet; nothing when its command has none, null when the user cancelled
// before it stood. Deletes itself when closed.
std::optional<QWidget *> form_of_entry(desktop_session &session, const menu_entry &entry, QWidget *parent);

// A plain window of text.
QWidget *results_window(const QString &title, const QString &text, QWidget *parent);

// The forms by their names.
QWidget *form_param(desktop_session &session, QWidget *parent);
QWidget *form_formats(desktop_session &session, QWidget *parent);
QWidget *form_options(desktop_session &session, QWidget *parent); // Form1
QWidget *form_metric(desktop_session &session, QWidget *parent);
// `control`: of the menu entry whose presets hold.
QWidget *form_setting_QQ(desktop_session &session, const std::string &control, QWidget *parent);
QWidget *form_adapt_clust(desktop_session &session, QWidget *parent);
// Asks for the list of clones to be drawn; null when cancelled.
QWidget *mark_vertices(desktop_session &session, QWidget *parent);
QWidget *form_simulations(desktop_session &session, QWidget *parent); // form_simul_1

} // namespace orb
