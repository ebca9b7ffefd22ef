#include "ui/desktop/project_panel.h"

#include <QGroupBox>
#include <QLabel>

#include "project/project_file.h"
#include "ui/desktop/qt_text.h"

namespace orb {

namespace {

// A line that is too long for the panel is cut in its middle and whole in its tooltip.
class fitted_label : public QLabel {
public:
  explicit fitted_label(QWidget *parent) : QLabel(parent) {
    setMinimumWidth(40);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
  }
  void set_whole(const QString &text) {
    whole_ = text;
    setToolTip(text);
    setAccessibleName(text);
    fit();
  }

protected:
  void resizeEvent(QResizeEvent *event) override {
    QLabel::resizeEvent(event);
    fit();
  }

private:
  void fit() { setText(fontMetrics().elidedText(whole_, Qt::ElideMiddle, width())); }
  QString whole_;
};

} // namespace

project_panel::project_panel(desktop_session &session, QWidget *parent) : QWidget(parent), session_(session) {
  setObjectName("FrmProject");
  setAccessibleName(tr("Project"));
  auto *whole = new QVBoxLayout(this);
  frames_ = new QWidget(this);
  auto *frames = new QVBoxLayout(frames_);
  frames->setContentsMargins(0, 0, 0, 0);
  frames->setSpacing(6);
  whole->addWidget(frames_);
  for (const project_panel_frame &shown : project_panel_of(session.project())) {
    auto *frame = new QGroupBox(qt_text(shown.caption), frames_);
    frame->setObjectName(qt_text(shown.control));
    auto *lines = new QVBoxLayout(frame);
    lines->setContentsMargins(8, 4, 8, 6);
    lines->setSpacing(2);
    frames->addWidget(frame);
  }
  add_process_frame(whole);
  fill();
  connect(&session, &desktop_session::project_changed, this, &project_panel::fill);
  connect(&session, &desktop_session::log_shown, this, &project_panel::add_log_line);
  connect(&session, &desktop_session::stop_enabled, stop_, &QPushButton::setEnabled);
}

void project_panel::add_process_frame(QVBoxLayout *into) {
  auto *frame = new QGroupBox(tr("Run Processes"), this);
  frame->setObjectName("FrameRunProcesses");
  auto *inside = new QVBoxLayout(frame);
  inside->setContentsMargins(8, 4, 8, 6);
  processes_ = new QListWidget(frame);
  processes_->setObjectName("LstProcesses");
  processes_->setAccessibleName(tr("Run Processes"));
  processes_->setMinimumHeight(60);
  processes_->setTextElideMode(Qt::ElideRight);
  processes_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  inside->addWidget(processes_);
  stop_ = new QPushButton(tr("&Stop process"), frame);
  stop_->setObjectName("CmdStopProcess");
  stop_->setAccessibleName(tr("Stop process"));
  stop_->setEnabled(false);
  inside->addWidget(stop_);
  connect(stop_, &QPushButton::clicked, this, [this] { session_.ask_to_stop(); });
  into->addWidget(frame, 1);
}

void project_panel::fill() {
  for (const project_panel_frame &shown : project_panel_of(session_.project())) {
    auto *frame = frames_->findChild<QGroupBox *>(qt_text(shown.control));
    const bool is_metric = shown.control == "FrameMetrics";
    auto *lines = frame->layout();
    while (lines->count() > static_cast<int>(shown.lines.size()))
      delete lines->itemAt(lines->count() - 1)->widget(); // which takes its place in the layout along
    while (lines->count() < static_cast<int>(shown.lines.size())) {
      auto *label = new fitted_label(frame);
      if (is_metric && lines->isEmpty())
        label->setObjectName("combo_cutoff");
      lines->addWidget(label);
    }
    for (int i = 0; i < lines->count(); ++i)
      static_cast<fitted_label *>(lines->itemAt(i)->widget())
          ->set_whole(qt_text(shown.lines[static_cast<std::size_t>(i)]));
  }
}

void project_panel::add_log_line(const QString &text) {
  constexpr int most_lines = 2000;
  if (processes_->count() >= most_lines)
    delete processes_->takeItem(0);
  auto *item = new QListWidgetItem(text, processes_);
  item->setToolTip(text);
  processes_->scrollToBottom();
}

} // namespace orb
