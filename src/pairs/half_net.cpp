#include "pairs/half_net.h"

#include <algorithm>
#include <limits>

namespace orb {

bool half_net::compare(overlap_rows &rows, std::int32_t n,
                       const std::function<bool(std::int32_t, std::int32_t)> &chunk_done,
                       const overlap_rows::go_on_function &go_on) {
  n_ = n;
  parts_.clear();
  return rows.run(
      1,
      [&](std::int32_t first, std::int32_t last) {
        part made{first, {0}, {}};
        std::size_t n_records = 0;
        for (std::int32_t e = first; e <= last; ++e)
          made.begin.push_back(n_records += rows.row(e).size());
        made.records.reserve(n_records);
        for (std::int32_t e = first; e <= last; ++e)
          made.records.insert(made.records.end(), rows.row(e).begin(), rows.row(e).end());
        parts_.push_back(std::move(made));
        return chunk_done(first, last);
      },
      go_on);
}

// Elements come in ascending order: when the turn is at e, its run holds all of its neighbours of lower number, each
// put there by that neighbour's row, and its own row follows.
half_net::mirror_end half_net::mirrored_into(class_net &net, const std::function<double(double)> &stored,
                                             const std::function<bool()> &go_on) {
  std::size_t n_records = 0;
  for (const part &one : parts_)
    n_records += one.records.size();
  if (2 * n_records > static_cast<std::size_t>(std::numeric_limits<edge_adress>::max() - 2))
    return mirror_end::too_large;
  std::vector<std::int32_t> degree(static_cast<std::size_t>(n_) + 1, 0);
  for (const part &one : parts_) {
    for (const pair_record &record : one.records)
      ++degree[static_cast<std::size_t>(record.partner)];
    for (std::int32_t e = one.first; e < one.first + one.n_rows(); ++e)
      degree[static_cast<std::size_t>(e)] += static_cast<std::int32_t>(one.row(e).size());
  }
  net.inicializate_net_of_degrees(degree);
  std::vector<edge_adress> next(degree.size(), 0);
  for (std::int32_t v = 1; v <= n_; ++v)
    next[static_cast<std::size_t>(v)] = net.adress_of_first_edge_get(v);
  constexpr std::size_t records_between_polls = 1 << 19;
  std::size_t n_unpolled = records_between_polls;                // once before all
  double value = 0, kept_value = stored ? stored(value) : value; // in a stack one value follows the other
  for (part &one : parts_) {
    for (std::int32_t e = one.first; e < one.first + one.n_rows(); ++e) {
      n_unpolled += one.row(e).size();
      if (n_unpolled >= records_between_polls) {
        n_unpolled = 0;
        if (!go_on()) {
          net = {};
          parts_.clear();
          return mirror_end::stopped;
        }
      }
      for (const pair_record &record : one.row(e)) {
        if (record.value != value) {
          value = record.value;
          kept_value = stored ? stored(value) : value;
        }
        net.place_edge(next[static_cast<std::size_t>(e)]++, {record.partner, 0, record.code, kept_value});
        net.place_edge(next[static_cast<std::size_t>(record.partner)]++, {e, 0, record.code_mirrored, kept_value});
      }
    }
    one = {};
  }
  parts_.clear();
  net.test_neighbours_sorted();
  return mirror_end::done;
}

} // namespace orb
