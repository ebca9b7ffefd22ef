// Connected components of a net as lists, for walks that go the other way round: from what isn't reached yet.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "graph/class_net.h"

namespace orb {

class component_lists {
public:
  // n + m; `net` may change afterwards, but then these lists tell of what it was.
  explicit component_lists(const class_net &net);

  // Vertices of the component of v, ascending.
  std::span<const vertex_number> members_of_component(vertex_number v) const;
  // Records of all these together.
  std::int64_t n_records_of_component(vertex_number v) const { return n_records_[component_of(v)]; }

private:
  std::size_t component_of(vertex_number v) const { return static_cast<std::size_t>(component_(v)); }

  number_list component_; // by vertex, from 1
  std::vector<vertex_number> members_;
  std::vector<std::size_t> first_; // of component c in `members_`
  std::vector<std::int64_t> n_records_;
};

} // namespace orb
