// How deep clones lie at a clone, by the bands that they share: where it is low, a good clone alone can bridge a place.
#pragma once

#include <filesystem>
#include <functional>
#include <span>
#include <vector>

#include "graph/class_net.h"
#include "net/band_scale.h"

namespace orb {

// Clones, itself among them, that show a band of the clone, on average over its bands. 0 for a clone without bands.
double depth_at_clone(const class_net &net, const clone_bands &clones, clone_number clone);
// Median over clones of the library, at most some thousand evenly from it.
double usual_depth(const class_net &net, const clone_bands &clones);
// A table of these clones, and how many lie less than half as deep as usual. No file after `go_on` answered false.
// Throws file_error.
std::int32_t print_depths(const class_net &net, const clone_bands &clones, std::span<const vertex_number> found,
                          const std::filesystem::path &file, const std::function<bool()> &go_on);

} // namespace orb
