// FrmProject: what is loaded, frame by frame, and under it the processes of this session with the button that stops the
// one that runs.
#pragma once

#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

#include "ui/desktop/desktop_session.h"

namespace orb {

class project_panel : public QWidget {
  Q_OBJECT

public:
  explicit project_panel(desktop_session &session, QWidget *parent = nullptr);

private:
  void fill();
  void add_process_frame(QVBoxLayout *into);
  void add_log_line(const QString &text);

  desktop_session &session_;
  QWidget *frames_;
  QListWidget *processes_;
  QPushButton *stop_;
};

} // namespace orb
