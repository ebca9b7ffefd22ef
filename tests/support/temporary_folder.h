// A folder of its own for a test, gone with the test.
#pragma once

#include <atomic>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <unistd.h>

namespace orb {

class temporary_folder {
public:
  temporary_folder() {
    static std::atomic<int> count{0};
    path_ = std::filesystem::temp_directory_path() /
            ("orb_test_" + std::to_string(::getpid()) + "_" + std::to_string(count++));
    std::filesystem::create_directories(path_);
  }
  ~temporary_folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  temporary_folder(const temporary_folder &) = delete;
  temporary_folder &operator=(const temporary_folder &) = delete;

  const std::filesystem::path &path() const { return path_; }
  std::filesystem::path write(const std::string &name, std::string_view bytes) const {
    std::ofstream(path_ / name, std::ios::binary) << bytes;
    return path_ / name;
  }

private:
  std::filesystem::path path_;
};

} // namespace orb
