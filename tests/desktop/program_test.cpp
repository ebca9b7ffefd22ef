// The program from outside: a script as soon as it stands, a picture, and an end with a status.
#include <QImage>
#include <QProcess>
#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace {

class program : public testing::Test {
protected:
  // The exit status; what it said on standard error in `said`.
  int start(const QStringList &arguments) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("ORB_HOME", QString::fromStdString(folder.path().string()));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(QString::fromStdString(folder.path().string()));
    process.start(ORB_DESKTOP_PROGRAM, arguments);
    EXPECT_TRUE(process.waitForFinished(60000));
    said = process.readAllStandardError().toStdString();
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
  }
  QString in_folder(const char *name) const { return QString::fromStdString((folder.path() / name).string()); }

  orb::temporary_folder folder;
  std::string said;
};

} // namespace

TEST_F(program, runs_a_script_takes_a_picture_and_ends) {
  folder.write("s.orbscript", "# a library and its net\nlibrary.load file=" ORB_SOURCE_DIR "/examples/ecoli536\n"
                              "net.create\nnet.save out=n.ORBns\nlibrary.save\n");
  folder.write("answers.txt", "Save lists of bands for clones\tkept.ORBdb\n");
  EXPECT_EQ(start({"--script", "s.orbscript", "--answers", "answers.txt", "--screenshot", "p.png", "--size", "1000x700",
                   "--quit"}),
            0)
      << said;
  EXPECT_EQ(QImage(in_folder("p.png")).size(), QSize(1000, 700));
  EXPECT_GT(folder.bytes("n.ORBns").size(), 100000u);
  EXPECT_GT(folder.bytes("kept.ORBdb").size(), 100000u);
  EXPECT_NE(folder.bytes("ORB.log").find("Exit the ORB program"), std::string::npos);
}

TEST_F(program, opens_what_is_named) {
  EXPECT_EQ(
      start({ORB_SOURCE_DIR "/examples/ecoli536", "--choose", "mnu_View_metrics", "--screenshot", "p.png", "--quit"}),
      0)
      << said;
  EXPECT_NE(folder.bytes("ORB.log").find("library.load done"), std::string::npos);
  EXPECT_LT(QImage(in_folder("p.png")).width(), 900) << "the form, not the main window";
}

TEST_F(program, ends_with_a_status_when_something_is_wrong) {
  folder.write("wrong.orbscript", "net.create\nlibrary.save out=never.ORBdb\n");
  EXPECT_EQ(start({"--script", "wrong.orbscript", "--quit"}), 1);
  EXPECT_NE(said.find("wrong.orbscript, line 1"), std::string::npos) << said;
  EXPECT_EQ(start({"--script", "nowhere.orbscript", "--quit"}), 1) << said;
  EXPECT_EQ(start({"--screenshot", "no_folder/p.png", "--quit"}), 3) << said;
  EXPECT_EQ(start({"--size", "10x10"}), 2) << said;
  EXPECT_EQ(start({"--version"}), 0);
}
