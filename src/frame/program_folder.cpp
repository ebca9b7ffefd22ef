#include "frame/program_folder.h"

#include <cstdlib>
#include <unistd.h>

namespace orb {

namespace fs = std::filesystem;

fs::path usual_program_folder() {
  if (const char *home = std::getenv("ORB_HOME"); home && *home)
    return home;
  std::error_code failed;
  const fs::path own = fs::read_symlink("/proc/self/exe", failed).parent_path();
  if (!failed && ::access(own.c_str(), W_OK) == 0)
    return own;
  fs::path state;
  if (const char *folder = std::getenv("XDG_STATE_HOME"); folder && *folder)
    state = folder;
  else if (const char *home = std::getenv("HOME"); home && *home)
    state = fs::path(home) / ".local" / "state";
  else
    return fs::temp_directory_path();
  return state / "orb";
}

fs::path program_folder() {
  const fs::path folder = usual_program_folder();
  std::error_code failed;
  fs::create_directories(folder, failed);
  return !failed && ::access(folder.c_str(), W_OK) == 0 ? folder : fs::path();
}

} // namespace orb
