// Where a program keeps what isn't a result: its log.
#pragma once

#include <filesystem>

namespace orb {

// $ORB_HOME, else the executable's folder when it can be written, else the user's state folder.
std::filesystem::path usual_program_folder();
// That folder, made when it is missing. Empty, which makes a frame without a log, where it can't be made or written: no
// log is no reason to stop.
std::filesystem::path program_folder();

} // namespace orb
