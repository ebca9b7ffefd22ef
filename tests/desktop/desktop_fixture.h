// The main window on a project of its own in a folder of its own, and somebody who answers its boxes.
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <deque>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "commands/command_table.h"
#include "support/scripted_frame.h"
#include "ui/desktop/main_window.h"
#include "ui/desktop/qt_text.h"

namespace orb_test {

// Looks every few milliseconds whether a box waits, notes what it says, and answers it: by the first prepared answer
// whose beginning fits, else with "no", cancel or OK.
class box_answerer : public QObject {
public:
  box_answerer() {
    connect(&timer_, &QTimer::timeout, this, &box_answerer::look);
    timer_.start(2);
  }
  void answer(const QString &start, const QString &reply) { prepared_.push_back({start, reply}); }
  QStringList seen; // texts of boxes

  bool saw(const QString &start) const {
    return std::any_of(seen.begin(), seen.end(), [&](const QString &text) { return text.startsWith(start); });
  }

private:
  QString reply_to(const QString &text) {
    seen << text;
    for (auto at = prepared_.begin(); at != prepared_.end(); ++at)
      if (text.startsWith(at->first)) {
        const QString reply = at->second;
        prepared_.erase(at);
        return reply;
      }
    return {};
  }
  void look() {
    if (QWidget *popup = QApplication::activePopupWidget())
      popup->close();
    QWidget *top = QApplication::activeModalWidget();
    if (auto *box = qobject_cast<QMessageBox *>(top)) {
      const QString reply = reply_to(box->text());
      const bool yes = reply == "yes";
      QAbstractButton *button = box->button(yes ? QMessageBox::Yes : QMessageBox::No);
      if (!button || reply == "cancel")
        button = box->button(QMessageBox::Cancel) ? box->button(QMessageBox::Cancel) : box->button(QMessageBox::Ok);
      if (button)
        button->click();
      else
        box->reject();
    } else if (auto *input = qobject_cast<QInputDialog *>(top)) {
      const QString reply = reply_to(input->labelText());
      input->setTextValue(reply);
      reply.isEmpty() ? input->reject() : input->accept();
    } else if (auto *files = qobject_cast<QFileDialog *>(top)) {
      const QString reply = reply_to(files->windowTitle());
      if (reply.isEmpty()) {
        files->reject();
        return;
      }
      files->findChild<QLineEdit *>("fileNameEdit")->setText(reply);
      QMetaObject::invokeMethod(files, "accept");
    }
  }

  QTimer timer_;
  std::deque<std::pair<QString, QString>> prepared_;
};

class desktop_test : public testing::Test {
protected:
  desktop_test() : session(folder.path()), window(session, nullptr) {
    session.project().working_folder_set(folder.path());
    window.show();
    settle();
  }
  static std::string example() { return ORB_SOURCE_DIR "/examples/ecoli536"; }
  std::string in_folder(const std::string &name) const { return (folder.path() / name).string(); }

  // Until all that was begun is done.
  void settle() {
    for (int i = 0; i < 3 || session.is_running(); ++i)
      QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  bool run(const std::string &line) {
    const bool completed = session.run(orb::bound_by_name(line)).completed;
    settle();
    return completed;
  }
  bool run(const std::string &id, const std::vector<std::pair<std::string, std::string>> &values) {
    orb::bound_command command = orb::bound_by_name(id);
    for (const auto &[key, value] : values)
      command.set(key, value);
    const bool completed = session.run(command).completed;
    settle();
    return completed;
  }
  // The window of a name that is on the screen; null when there is none.
  static QWidget *shown(const QString &name) {
    for (QWidget *top : QApplication::topLevelWidgets())
      if (top->isVisible() && top->objectName() == name)
        return top;
    return nullptr;
  }
  QWidget *choose(const std::string &control, const QString &form) {
    QAction *action = window.action(control);
    EXPECT_TRUE(action && action->isEnabled()) << control;
    action->trigger();
    settle();
    QWidget *opened = shown(form);
    EXPECT_TRUE(opened) << form.toStdString();
    return opened;
  }
  static void fill(QWidget *form, const QString &control, const QString &text) {
    auto *line = form->findChild<QLineEdit *>(control);
    ASSERT_TRUE(line) << control.toStdString();
    line->setFocus();
    line->selectAll();
    QTest::keyClick(line, Qt::Key_Delete);
    QTest::keyClicks(line, text);
  }
  void press(QWidget *form, const QString &control) {
    auto *button = form->findChild<QAbstractButton *>(control);
    ASSERT_TRUE(button) << control.toStdString();
    QTest::mouseClick(button, Qt::LeftButton);
    settle();
  }
  QString panel(int i) const {
    return window.findChild<QWidget *>(QString("panel_%1").arg(i))->property("plain_text").toString();
  }

  const orb::pinned_clock clock{1'700'000'000};
  orb::temporary_folder folder;
  box_answerer boxes;
  orb::desktop_session session;
  orb::main_window window;
};

} // namespace orb_test
