// Sequences by chance, and files of them.
#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>
#include <zlib.h>

#include "frame/random_source.h"
#include "support/scripted_frame.h"

namespace orb_test {

namespace fs = std::filesystem;

inline void write_gzip(const fs::path &file, const std::string &bytes) {
  gzFile out = gzopen(file.c_str(), "wb");
  gzwrite(out, bytes.data(), static_cast<unsigned>(bytes.size()));
  gzclose(out);
}

// Letters by chance with sites sown among them, about one every `distance` letters.
inline std::string random_sequence(std::size_t length, double distance, orb::random_source &chance) {
  static const std::vector<std::string> sites{"GGCC", "GAATTC", "GGATCC", "TCTAGA", "CTCGAG", "AAGCTT", "GGCCTCTAGA"};
  std::string text;
  while (text.size() < length)
    if (chance.uniform() * distance < 1)
      text += sites[chance.next() % sites.size()];
    else
      text += "ACGT"[chance.next() % 4];
  text.resize(length);
  return text;
}

// A frame that writes its log; `seen` is what it recorded.
class sequence_test : public testing::Test, public orb::scripted_frame {
protected:
  sequence_test() : scripted_frame(true) {}
  orb::front_end_record &seen = record;
};

} // namespace orb_test
