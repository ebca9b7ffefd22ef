#include "contigs/layout_neighbours.h"

namespace orb {

std::span<const neighbour_place> layout_neighbours::of(clone_number clone) {
  std::int32_t &number = run_of_[static_cast<std::size_t>(clone)];
  if (number >= 0)
    return runs_[static_cast<std::size_t>(number)];
  number = static_cast<std::int32_t>(gathered_.size());
  if (gathered_.size() == runs_.size())
    runs_.emplace_back();
  gathered_.push_back(clone);
  std::vector<neighbour_place> &run = runs_[static_cast<std::size_t>(number)];
  run.clear();
  const auto all = layout_.net.of(clone);
  const std::size_t stride = 1 + all.size() / most;
  for (std::size_t i = 0; i < all.size(); i += stride)
    if (layout_.is_overlap(all[i]) && layout_.piece(all[i].to) == layout_.piece(clone))
      run.push_back(place_of(all[i].to));
  return run;
}

void layout_neighbours::forget() {
  for (const clone_number c : gathered_)
    run_of_[static_cast<std::size_t>(c)] = -1;
  gathered_.clear();
}

bool layout_neighbours::linked_by_bands(clone_number a, clone_number b) {
  if (a > b)
    std::swap(a, b);
  const std::uint64_t pair = (static_cast<std::uint64_t>(a) << 32 | static_cast<std::uint64_t>(b)) << 1;
  std::uint64_t &known = remembered_[(pair * 0x9e3779b97f4a7c15U) >> 50];
  if ((known & ~std::uint64_t{1}) != pair)
    known = pair | (layout_.linked_by_bands(a, b) ? 1 : 0);
  return (known & 1) != 0;
}

} // namespace orb
