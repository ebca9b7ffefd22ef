// The program orb-desktop: the whole work in one window.
#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QPalette>
#include <QStandardPaths>
#include <QStyle>
#include <QTimer>
#include <clocale>
#include <cstdio>
#include <unistd.h>

#include "frame/files.h"
#include "frame/program_folder.h"
#include "frame/version.h"
#include "ui/desktop/main_window.h"
#include "ui/desktop/program_icon.h"
#include "ui/desktop/qt_text.h"

namespace {

namespace fs = std::filesystem;

struct wishes {
  QStringList files;
  QString script, screenshot, answers, chosen;
  QSize size;
  bool quit = false, dark = false;
};

// Places of windows and recent files: in $ORB_HOME, else where the user's programs keep theirs.
QString settings_file() {
  const QString home = qEnvironmentVariable("ORB_HOME");
  return (home.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/orb" : home) +
         "/desktop.ini";
}

// "1280x800"; an invalid size otherwise.
QSize size_of(const QString &text) {
  const QStringList sides = text.split('x');
  return sides.size() == 2 ? QSize(sides[0].toInt(), sides[1].toInt()) : QSize();
}

wishes wishes_of(const QApplication &program) {
  QCommandLineParser parser;
  parser.setApplicationDescription("From the restriction fingerprints of BAC clones to contigs, in a window.");
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addPositionalArgument("FILE", "fingerprints, libraries, nets, runs and drawings that are opened", "[FILE...]");
  const QCommandLineOption script("script", "run its lines as soon as the window stands", "FILE");
  const QCommandLineOption answers("answers", "answers to questions, as orb takes them", "FILE");
  const QCommandLineOption screenshot("screenshot", "a picture of the window in front when all that is done",
                                      "FILE.png");
  const QCommandLineOption size("size", "of the main window, in pixels", "WxH");
  const QCommandLineOption chosen("choose", "an entry of the menu that is chosen then, by its control", "CONTROL");
  const QCommandLineOption dark("dark", "dark colours, whatever those of the desktop are");
  const QCommandLineOption quit("quit", "end then, whatever isn't saved; questions get their defaults");
  parser.addOptions({script, answers, chosen, screenshot, size, dark, quit});
  parser.process(program);
  wishes wanted{parser.positionalArguments(), parser.value(script), parser.value(screenshot),
                parser.value(answers),        parser.value(chosen), size_of(parser.value(size)),
                parser.isSet(quit),           parser.isSet(dark)};
  if (parser.isSet(size) && (wanted.size.width() < 300 || wanted.size.height() < 300)) {
    std::fputs("orb-desktop: --size takes width and height of at least 300, as in 1280x800\n", stderr);
    std::exit(2);
  }
  return wanted;
}

bool save_screenshot(orb::main_window &window, const QString &file) {
  QWidget *shown = QApplication::activeModalWidget();
  for (QWidget *top : QApplication::topLevelWidgets())
    if (!shown && top != &window && top->isVisible() && top->isWindow())
      shown = top;
  if ((shown ? shown : &window)->grab().save(file, "PNG"))
    return true;
  std::fprintf(stderr, "orb-desktop: can't write %s\n", qPrintable(file));
  return false;
}

// All that was asked for on the command line, once the window stands. The exit status.
int do_wishes(orb::main_window &window, orb::desktop_session &session, const wishes &wanted) {
  int status = 0;
  session.keep_quiet(wanted.quit || !wanted.script.isEmpty(), wanted.quit);
  for (const QString &file : wanted.files)
    window.open_path(orb::path_of(file));
  if (!wanted.script.isEmpty() && !window.run_script_file(orb::path_of(wanted.script)))
    status = 1;
  session.keep_quiet(false, false);
  if (QAction *action = window.action(wanted.chosen.toStdString()))
    action->trigger();
  if (wanted.screenshot.isEmpty())
    return status;
  for (int i = 0; i < 5; ++i) // windows that were opened are laid out and painted
    QApplication::processEvents(QEventLoop::AllEvents, 50);
  return save_screenshot(window, wanted.screenshot) ? status : 3;
}

// As the style would make it of a dark desktop.
QPalette dark_palette() {
  QPalette palette(QColor(66, 70, 75), QColor(52, 55, 60));
  palette.setColor(QPalette::Base, QColor(34, 36, 39));
  palette.setColor(QPalette::AlternateBase, QColor(42, 45, 49));
  palette.setColor(QPalette::ToolTipBase, QColor(60, 64, 69));
  palette.setColor(QPalette::ToolTipText, Qt::white);
  palette.setColor(QPalette::Highlight, QColor(42, 110, 180));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Link, QColor(110, 175, 240));
  palette.setColor(QPalette::PlaceholderText, QColor(140, 146, 152));
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QColor(125, 130, 136));
  return palette;
}

int run(QApplication &program, const wishes &wanted) {
  if (wanted.dark) {
    QApplication::setStyle("fusion");
    QApplication::setPalette(dark_palette());
  }
  orb::desktop_session session(orb::program_folder());
  orb::answer_book book;
  std::string problem;
  if (!wanted.answers.isEmpty() &&
      !orb::answer_book::parse(orb::file_bytes(orb::path_of(wanted.answers)), book, problem)) {
    std::fprintf(stderr, "orb-desktop: --answers: %s\n", problem.c_str());
    return 2;
  }
  session.answers_set(std::move(book));
  session.project().working_folder_set(fs::current_path());
  QSettings settings(settings_file(), QSettings::IniFormat);
  orb::main_window window(session, &settings);
  if (wanted.size.isValid())
    window.resize(wanted.size);
  QObject::connect(&window, &orb::main_window::closed, &program, [] { QApplication::exit(); });
  window.show();
  int status = 0;
  QTimer::singleShot(0, &window, [&] {
    status = do_wishes(window, session, wanted);
    if (wanted.quit) // no window asks: nobody is there to answer
      QApplication::exit();
  });
  const int end = program.exec();
  return status != 0 ? status : end;
}

} // namespace

int main(int count, char **values) {
  QApplication program(count, values);
  std::setlocale(LC_NUMERIC, "C"); // numbers are read and written alike everywhere
  QApplication::setApplicationName("orb-desktop");
  QApplication::setApplicationDisplayName("ORB");
  QApplication::setApplicationVersion(orb::qt_text(std::string(orb::program_version())));
  QApplication::setDesktopFileName("orb-desktop");
  QApplication::setWindowIcon(orb::program_icon());
  QApplication::setQuitOnLastWindowClosed(false);
  try {
    return run(program, wishes_of(program));
  } catch (const orb::file_error &failed) {
    std::fprintf(stderr, "orb-desktop: %s\n", failed.what());
    return 3;
  }
}
