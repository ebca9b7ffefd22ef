// Many files of bands as one.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "frame/process_frame.h"

namespace orb {

// Joins all files of a folder with the extension of `any_file`, in byte order of their names, into one. What isn't
// given is asked for. Empty when cancelled or stopped.
std::filesystem::path run_reload_new_version_of_database(process_frame &frame, std::filesystem::path any_file,
                                                         std::filesystem::path target,
                                                         std::optional<std::int32_t> n_files = {});

} // namespace orb
