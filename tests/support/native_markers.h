// A native file of markers as the reader takes it: it reads the last marker of each clone once more.
#pragma once

#include <string>

namespace orb_test {

// For a library of so many clones: clone 1 with the first of two markers, M1, clone 2 with both.
inline std::string native_markers(int n_clones) {
  std::string bytes = "Clones in database with bands:\r\n" + std::to_string(n_clones) +
                      "\r\nClones in database with markers:\r\n2\r\nTotal number of markers:\r\n2\r\nmmm:\r\n5\r\n"
                      "Clone adres in database with bands:\r\n1\r\n2\r\n"
                      "Clone adres in database with markers:\r\n1\r\n2\r\n";
  for (int clone = 3; clone <= n_clones; ++clone)
    bytes += "-1\r\n";
  return bytes + "Marker names:\r\nM1\t\r\nM2\t\r\nStarts:\r\n1\r\n2\r\nEnds:\r\n1\r\n3\r\n"
                 "Markers:\r\n1\r\n1\r\n1\r\n2\r\n2\r\n";
}

} // namespace orb_test
