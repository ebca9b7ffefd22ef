// The five status panels of the running process, and how far it has come.
#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QWidget>
#include <array>

#include "frame/progress_estimate.h"
#include "ui/desktop/desktop_session.h"

namespace orb {

class status_panels : public QWidget {
  Q_OBJECT

public:
  explicit status_panels(desktop_session &session, QWidget *parent = nullptr);

private:
  void show_panel(int panel, const QString &text, int colour);
  void show_progress(qint64 done, qint64 total);
  void show_running(bool running);

  std::array<QLabel *, 5> panels_{};
  QProgressBar *bar_;
  QLabel *rest_;
  progress_estimate estimate_;
};

} // namespace orb
