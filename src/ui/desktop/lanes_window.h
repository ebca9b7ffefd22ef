// Fingerprints of the selected clones as lanes; follows the selection.
#pragma once

#include <QMainWindow>

#include "ui/desktop/desktop_session.h"
#include "ui/desktop/lanes_canvas.h"

class QLabel;

namespace orb {

class lanes_window : public QMainWindow {
  Q_OBJECT

public:
  lanes_window(desktop_session &session, QWidget *parent);

private:
  void show_selection();

  desktop_session &session_;
  lanes_canvas *canvas_;
  QLabel *state_;
};

} // namespace orb
