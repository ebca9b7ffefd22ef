// The lines of a file, the plain way: each of CR LF, CR and LF ends one. An encoding mark in front is left out.
#pragma once

#include <string>
#include <vector>

namespace orb_test {

inline std::vector<std::string> plainly_cut(const std::string &bytes) {
  std::vector<std::string> lines;
  std::string line;
  for (std::size_t i = bytes.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0; i < bytes.size(); ++i) {
    if (bytes[i] != '\r' && bytes[i] != '\n') {
      line += bytes[i];
      continue;
    }
    i += bytes.compare(i, 2, "\r\n") == 0 ? 1 : 0;
    lines.push_back(line);
    line.clear();
  }
  if (!line.empty())
    lines.push_back(line);
  return lines;
}

} // namespace orb_test
