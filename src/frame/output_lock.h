// One command at a time works on an output. A lock is a small file that names its holder: DIR/orb.lock for a folder,
// FILE.orb.lock for a file that is to be written. It is made by a link, which also network file systems make whole or
// not at all, and goes with its object. A lock whose process is gone is taken over, if it was one of this host; a lock
// of another host is never touched.
#pragma once

#include <filesystem>
#include <string>

namespace orb {

class output_lock {
public:
  // The folder has to be there. Both throw file_error when another command works there, with who it is; a folder isn't
  // free while a file in it is locked, and the other way round. Temporary files that processes now gone left at the
  // place are removed.
  static output_lock of_folder(const std::filesystem::path &folder, const std::string &command);
  static output_lock of_file(const std::filesystem::path &file, const std::string &command);
  ~output_lock();
  output_lock(output_lock &&other) noexcept;
  output_lock &operator=(output_lock &&other) = delete;

  // Says whose lock was taken over; empty when there was none.
  const std::string &taken_over() const { return taken_over_; }

private:
  output_lock(std::filesystem::path lock, const std::string &command);
  void take();
  bool replace(const std::string &stale);

  std::filesystem::path lock_; // empty: not held any more
  std::string text_, taken_over_;
};

} // namespace orb
