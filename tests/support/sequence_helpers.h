// Sequences by chance, files of them, and a folder that goes away.
#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <unistd.h>
#include <vector>
#include <zlib.h>

#include "frame/random_source.h"

namespace orb_test {

namespace fs = std::filesystem;

inline std::string bytes_of(const fs::path &file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

inline void write_bytes(const fs::path &file, const std::string &bytes) {
  std::ofstream(file, std::ios::binary) << bytes;
}

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

class folder_test : public testing::Test {
protected:
  folder_test() {
    const testing::TestInfo *info = testing::UnitTest::GetInstance()->current_test_info();
    folder = fs::temp_directory_path() / ("orb-simulation-" + std::to_string(::getpid()) + "-" + info->name());
    fs::remove_all(folder);
    fs::create_directories(folder);
  }
  ~folder_test() override {
    std::error_code failed;
    fs::remove_all(folder, failed);
  }
  fs::path folder;
};

} // namespace orb_test
