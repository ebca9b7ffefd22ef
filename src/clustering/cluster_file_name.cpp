#include "clustering/cluster_file_name.h"

namespace orb {

std::string cluster_file_name(std::string_view name) {
  std::string file_name(name);
  for (char &c : file_name) {
    if (c == '/' || c == '\\' || static_cast<unsigned char>(c) < 32)
      c = '_';
  }
  if (file_name.empty() || file_name == "." || file_name == "..")
    return std::string(1, '_');
  return file_name;
}

} // namespace orb
