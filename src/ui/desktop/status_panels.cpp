#include "ui/desktop/status_panels.h"

#include <QGridLayout>

#include "ui/desktop/qt_text.h"

namespace orb {

namespace {

constexpr std::array<const char *, 5> resting_texts{"Process", "Step", "Local process", "Control", "Search for clones"};

// A lamp beside the text says the state, so that no text is hard to read on a light or a dark ground: red at work,
// green done, yellow ended early. The shapes differ too, for who doesn't tell the colours.
QString lamp_of(int colour) {
  switch (static_cast<panel_colour>(colour)) {
  case panel_colour::running:
    return QStringLiteral("<span style='color:#d0342c'>\u25b6</span> ");
  case panel_colour::done:
    return QStringLiteral("<span style='color:#2a9d4a'>\u2714</span> ");
  case panel_colour::ended:
    return QStringLiteral("<span style='color:#c79200'>\u25a0</span> ");
  case panel_colour::resting:
    break;
  }
  return {};
}

} // namespace

status_panels::status_panels(desktop_session &session, QWidget *parent) : QWidget(parent) {
  setObjectName("status_panels");
  auto *grid = new QGridLayout(this);
  grid->setContentsMargins(6, 2, 6, 4);
  grid->setVerticalSpacing(3);
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    auto *label = new QLabel(resting_texts[i], this);
    label->setObjectName(QString("panel_%1").arg(i + 1));
    label->setAccessibleName(resting_texts[i]);
    label->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    label->setMinimumWidth(80);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    label->setMargin(2);
    label->setTextFormat(Qt::RichText);
    panels_[i] = label;
    grid->addWidget(label, 0, static_cast<int>(i));
    grid->setColumnStretch(static_cast<int>(i), i < 2 ? 3 : 2);
  }
  bar_ = new QProgressBar(this);
  bar_->setObjectName("progress");
  bar_->setAccessibleName(tr("Progress"));
  bar_->setRange(0, 1000);
  bar_->setTextVisible(true);
  grid->addWidget(bar_, 1, 0, 1, 4);
  rest_ = new QLabel(this);
  rest_->setObjectName("time_left");
  rest_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  grid->addWidget(rest_, 1, 4);
  show_running(false);
  connect(&session, &desktop_session::panel_shown, this, &status_panels::show_panel);
  connect(&session, &desktop_session::progress_shown, this, &status_panels::show_progress);
  connect(&session, &desktop_session::running_changed, this, &status_panels::show_running);
}

void status_panels::show_panel(int panel, const QString &text, int colour) {
  QLabel *label = panels_.at(static_cast<std::size_t>(panel));
  label->setText(lamp_of(colour) + text.toHtmlEscaped());
  label->setToolTip(text);
  label->setProperty("plain_text", text);
  label->setProperty("panel_colour", colour);
}

void status_panels::show_progress(qint64 done, qint64 total) {
  estimate_.progress(done, total);
  bar_->setMaximum(1000);
  bar_->setValue(static_cast<int>(1000 * estimate_.share()));
  rest_->setText(qt_text(estimate_.text_of_rest()));
}

void status_panels::show_running(bool running) {
  estimate_.begin();
  bar_->setRange(0, running ? 0 : 1000); // moving, until the work says how far it is
  bar_->setValue(0);
  bar_->setEnabled(running);
  bar_->setTextVisible(running);
  rest_->clear();
}

} // namespace orb
