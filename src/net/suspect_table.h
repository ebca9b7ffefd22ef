// Clones that the clone test took for two, as a table: the two sides of their bands and who stands for each.
#pragma once

#include <filesystem>
#include <span>
#include <string>

#include "net/clone_test.h"

namespace orb {

std::string suspects_head();
std::string suspect_row(const class_DB_of_clones &database, const clone_suspect &found);
// Names with a blank between.
std::string names_of_clones(const class_DB_of_clones &database, std::span<const clone_number> clones);
// Throws file_error.
void print_suspects(const class_DB_of_clones &database, std::span<const clone_suspect> suspects,
                    const std::filesystem::path &file);

} // namespace orb
