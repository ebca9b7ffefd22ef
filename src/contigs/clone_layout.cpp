#include "contigs/clone_layout.h"

#include "metrics/band_merge.h"

namespace orb {

bool clone_layout::linked(clone_number a, clone_number b) const {
  const scored_edge *edge = net.find(a, b);
  return (edge != nullptr && edge->score >= scale.linked_cutoff()) || linked_by_bands(a, b);
}

bool clone_layout::linked_by_bands(clone_number a, clone_number b) const {
  return common_bands(clones.of(a), clones.of(b), clones.t) >= linked_least(clones.count(a), clones.count(b));
}

void clone_layout::sort_piece(std::int32_t piece) {
  auto &members = pieces[static_cast<std::size_t>(piece)];
  std::sort(members.begin(), members.end(), [this](clone_number a, clone_number b) {
    const double x = centre[static_cast<std::size_t>(a)], y = centre[static_cast<std::size_t>(b)];
    return x != y ? x < y : a < b;
  });
}

double clone_layout::reach_of(std::int32_t piece, bool at_right) const {
  const auto &members = pieces[static_cast<std::size_t>(piece)];
  double reach = -1e300;
  for (std::size_t i = 0; i < members.size(); ++i) {
    const clone_number c = at_right ? members[members.size() - 1 - i] : members[i];
    const double x = centre[static_cast<std::size_t>(c)];
    if ((at_right ? x : -x) + most_bands / 2 < reach)
      break;
    reach = std::max(reach, outer_end(c, at_right));
  }
  return reach;
}

} // namespace orb
