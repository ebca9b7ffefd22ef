#include "frame/version.h"

#include "program_version.h" // written when it is built, so that a new commit compiles this file alone

namespace orb {

std::string_view program_version() {
  return ORB_PROGRAM_VERSION;
}

std::string_view program_commit() {
  return ORB_PROGRAM_COMMIT;
}

} // namespace orb
