#include "ui/desktop/lanes_window.h"

#include <QLabel>
#include <QStatusBar>

#include "commands/lanes_of_clones.h"

namespace orb {

lanes_window::lanes_window(desktop_session &session, QWidget *parent)
    : QMainWindow(parent, Qt::Window), session_(session), canvas_(new lanes_canvas(this)), state_(new QLabel(this)) {
  setObjectName("form_lanes");
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(tr("Fingerprints"));
  resize(1100, 560);
  setCentralWidget(framed_axis(canvas_, this));
  state_->setObjectName("panel_lanes");
  statusBar()->addWidget(state_, 1);
  connect(&session_.selection(), &selection_model::changed, this, [this] { show_selection(); });
  connect(&session_, &desktop_session::project_changed, this, [this] { show_selection(); });
  // scores are kept away from a command that runs; what was selected meanwhile is shown at its end
  connect(&session_, &desktop_session::running_changed, this, [this](bool running) {
    if (!running)
      show_selection();
  });
  show_selection();
}

void lanes_window::show_selection() {
  if (!session_.project().running().empty())
    return;
  const auto &clones = session_.selection().clones();
  lane_values values = lanes_of_clones(session_.project(), clones);
  const auto n_shown = values.lanes.size();
  canvas_->values_set(std::move(values));
  state_->setText(
      clones.empty() ? tr("Select clones in a net, a map or a list to see their fingerprints")
      : n_shown < clones.size()
          ? tr("The first %1 of %2 selected clones").arg(n_shown).arg(clones.size())
          : tr("%n selected clones", nullptr, static_cast<int>(n_shown)).replace("%n", QString::number(n_shown)));
}

} // namespace orb
