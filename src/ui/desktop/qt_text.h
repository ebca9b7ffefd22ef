// Texts and paths between the standard library and Qt.
#pragma once

#include <QFile>
#include <QString>
#include <filesystem>
#include <string>

namespace orb {

inline QString qt_text(const std::string &text) {
  return QString::fromStdString(text);
}

// As a widget shows it: CR and CR LF end a line too.
inline QString qt_lines(const std::string &text) {
  QString shown = QString::fromStdString(text);
  shown.replace("\r\n", "\n");
  shown.replace('\r', '\n');
  return shown;
}

inline QString qt_path(const std::filesystem::path &path) {
  return QFile::decodeName(path.c_str());
}

inline std::filesystem::path path_of(const QString &text) {
  return QFile::encodeName(text).toStdString();
}

} // namespace orb
