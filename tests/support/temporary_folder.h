// A folder of its own for a test, gone with the test.
#pragma once

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

namespace orb {

// All bytes of a file; none of one that isn't there.
inline std::string bytes_of(const std::filesystem::path &file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// Makes the folder of the file as well.
inline void write_bytes(const std::filesystem::path &file, std::string_view bytes) {
  std::filesystem::create_directories(file.parent_path());
  std::ofstream out(file, std::ios::binary);
  out << bytes;
  if (!out.flush())
    throw std::system_error(errno, std::generic_category(), "can't write " + file.string());
}

class temporary_folder {
public:
  temporary_folder() {
    std::string name = (std::filesystem::temp_directory_path() / "orb_test_XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
      throw std::system_error(errno, std::generic_category(), "can't make " + name);
    path_ = name;
  }
  ~temporary_folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  temporary_folder(const temporary_folder &) = delete;
  temporary_folder &operator=(const temporary_folder &) = delete;

  const std::filesystem::path &path() const { return path_; }
  std::string bytes(const std::string &name) const { return bytes_of(path_ / name); }
  std::filesystem::path write(const std::string &name, std::string_view bytes) const {
    write_bytes(path_ / name, bytes);
    return path_ / name;
  }

private:
  std::filesystem::path path_;
};

} // namespace orb
