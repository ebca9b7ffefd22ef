// "What is this edge?": the bands of two clones side by side, the common ones joined.
#pragma once

#include <QString>

#include "ui/desktop/desktop_session.h"

namespace orb {

// A clone below 1: the vertex is no clone of the library.
void run_edge_dialog(desktop_session &session, clone_number clone_1, clone_number clone_2, const QString &heading,
                     QWidget *parent);

} // namespace orb
