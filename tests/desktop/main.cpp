// The tests of the window program: one application for all of them.
#include <QApplication>
#include <clocale>
#include <gtest/gtest.h>

int main(int count, char **values) {
  testing::InitGoogleTest(&count, values);
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  QApplication program(count, values);
  QApplication::setQuitOnLastWindowClosed(false);
  std::setlocale(LC_NUMERIC, "C");
  return RUN_ALL_TESTS();
}
