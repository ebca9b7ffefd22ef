#include "pairs/half_net.h"

#include <algorithm>
#include <limits>

namespace orb {

bool half_net::compare(overlap_rows &rows, std::int32_t n,
                       const std::function<bool(std::int32_t, std::int32_t)> &chunk_done,
                       const overlap_rows::go_on_function &go_on) {
  n_ = n;
  first_.assign(static_cast<std::size_t>(n) + 2, 0);
  records_.clear();
  return rows.run(
      1,
      [&](std::int32_t first, std::int32_t last) {
        for (std::int32_t e = first; e <= last; ++e) {
          const auto row = rows.row(e);
          records_.insert(records_.end(), row.begin(), row.end());
          first_[static_cast<std::size_t>(e) + 1] = records_.size();
        }
        return chunk_done(first, last);
      },
      go_on);
}

bool half_net::mirrored_into(class_net &net, const std::function<double(double)> &stored) const {
  const auto n = static_cast<std::size_t>(n_);
  if (2 * records_.size() > static_cast<std::size_t>(std::numeric_limits<edge_adress>::max() - 2))
    return false;
  // Where the lower neighbours of each vertex stand: first[v] .. first[v + 1] - 1.
  std::vector<std::size_t> first(n + 2, 0);
  for (const pair_record &record : records_)
    ++first[static_cast<std::size_t>(record.partner) + 1];
  for (std::size_t v = 1; v < first.size(); ++v)
    first[v] += first[v - 1];
  std::vector<pair_record> lower(records_.size());
  std::vector<std::size_t> next(first);
  for (std::int32_t e = 1; e <= n_; ++e)
    for (const pair_record &record : row(e))
      lower[next[static_cast<std::size_t>(record.partner)]++] = {e, record.code_mirrored, record.code, record.value};
  net.inicializate_net(n_, static_cast<std::int64_t>(2 * records_.size()));
  for (std::int32_t vertex = 1; vertex <= n_; ++vertex) {
    net.add_vertex_fast(0);
    const auto add = [&](const pair_record &record) {
      net.add_edge_fast(vertex, record.partner, stored ? stored(record.value) : record.value, 0, record.code);
    };
    const auto v = static_cast<std::size_t>(vertex);
    for (std::size_t at = first[v]; at < first[v + 1]; ++at)
      add(lower[at]);
    for (const pair_record &record : row(vertex))
      add(record);
  }
  net.finish_of_adding();
  net.test_neighbours_sorted();
  return true;
}

} // namespace orb
