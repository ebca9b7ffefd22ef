#include "net/clone_depth.h"

#include <algorithm>

#include "frame/files.h"
#include "frame/numbers.h"
#include "metrics/band_merge.h"

namespace orb {

namespace {

constexpr std::int32_t most_looked_at = 500; // clones, for the usual depth
constexpr std::size_t most_neighbours = 500; // of a stack of clones a part speaks for all
constexpr std::int32_t between_looks = 64;   // at the user, clones
constexpr double thin = 0.5;                 // times the usual depth

} // namespace

double depth_at_clone(const class_net &net, const clone_bands &clones, clone_number clone) {
  if (clones.count(clone) == 0)
    return 0;
  const auto run = net.edges_of_vertex(clone);
  const std::size_t stride = 1 + run.size() / most_neighbours;
  std::int64_t shown = 0;
  for (std::size_t i = 0; i < run.size(); i += stride)
    if (run[i].neighbour <= clones.n)
      shown += common_bands(clones.of(clone), clones.of(run[i].neighbour), clones.t);
  shown = clones.count(clone) + shown * static_cast<std::int64_t>(stride);
  return static_cast<double>(shown) / clones.count(clone);
}

double usual_depth(const class_net &net, const clone_bands &clones) {
  std::vector<double> depths;
  const std::int32_t n = std::min(clones.n, net.number_of_vertices_get());
  for (clone_number c = 1; c <= n; c += 1 + n / most_looked_at)
    depths.push_back(depth_at_clone(net, clones, c));
  if (depths.empty())
    return 0;
  const auto middle = depths.begin() + static_cast<std::ptrdiff_t>(depths.size() / 2);
  std::nth_element(depths.begin(), middle, depths.end());
  return *middle;
}

std::int32_t print_depths(const class_net &net, const clone_bands &clones, std::span<const vertex_number> found,
                          const std::filesystem::path &file, const std::function<bool()> &go_on) {
  const double usual = usual_depth(net, clones);
  std::int32_t n_thin = 0, k = 0;
  result_file out(file);
  out.line("k\tclone\tname\tn_bands\tdepth\tusual_depth");
  for (const vertex_number c : found) {
    if (c > clones.n)
      continue;
    if (k % between_looks == 0 && !go_on())
      return 0;
    const double depth = depth_at_clone(net, clones, c);
    n_thin += depth < thin * usual;
    out.line(std::to_string(++k) + "\t" + std::to_string(c) + "\t" + clones.database->name_of_clone_get(c) + "\t" +
             std::to_string(clones.count(c)) + "\t" + number_text(depth, 1) + "\t" + number_text(usual, 1));
  }
  out.commit();
  return n_thin;
}

} // namespace orb
