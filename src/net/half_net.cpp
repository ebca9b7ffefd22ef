#include "net/half_net.h"

#include <algorithm>
#include <limits>

#include "frame/worker_blocks.h"

namespace orb {

std::int64_t rows_in_block(std::int64_t partners_of_row, int threads) {
  const std::int64_t workers = worker_count(threads);
  const std::int64_t pairs = 100000 * workers;
  return std::clamp<std::int64_t>(pairs / std::max<std::int64_t>(partners_of_row, 1), workers, 1024);
}

bool half_net::compare(pair_kernel &kernel, const pair_elements &elements, int threads,
                       const std::function<bool(std::int32_t, std::int32_t)> &between) {
  const std::int32_t n = elements.count();
  rows_.assign(static_cast<std::size_t>(n) + 1, {});
  bool completed = true;
  std::int32_t done = 0;
  const auto row = [&](std::int64_t first, std::int64_t last, int worker) {
    std::vector<pair_record> found;
    for (auto i = static_cast<std::int32_t>(first); i <= last; ++i) {
      found.clear();
      kernel.row(elements, i, i + 1, n, worker, found);
      rows_[static_cast<std::size_t>(i)].assign(found.begin(), found.end()); // exactly as much room as needed
    }
  };
  run_in_blocks(1, n, rows_in_block(n / 2, threads), 4, threads, row, [&](std::int64_t last) {
    completed = between(done + 1, static_cast<std::int32_t>(last));
    done = static_cast<std::int32_t>(last);
    return completed;
  });
  return completed;
}

bool half_net::mirrored_into(class_net &net, const std::function<double(double)> &stored) const {
  const std::size_t n = rows_.size() - 1;
  // Where the lower neighbours of each vertex stand: first_[v] .. first_[v + 1] - 1.
  std::vector<std::int64_t> first(n + 2, 0);
  for (const auto &row : rows_)
    for (const pair_record &record : row)
      ++first[static_cast<std::size_t>(record.partner) + 1];
  for (std::size_t v = 1; v < first.size(); ++v)
    first[v] += first[v - 1];
  const std::int64_t n_pairs = first.back();
  if (2 * n_pairs > std::numeric_limits<edge_adress>::max() - 2)
    return false;
  std::vector<pair_record> lower(static_cast<std::size_t>(n_pairs));
  std::vector<std::int64_t> next(first);
  for (std::size_t i = 1; i <= n; ++i)
    for (const pair_record &record : rows_[i]) {
      const auto at = static_cast<std::size_t>(next[static_cast<std::size_t>(record.partner)]++);
      lower[at] = {static_cast<std::int32_t>(i), record.code_mirrored, record.code, record.value};
    }
  net.inicializate_net(static_cast<std::int32_t>(n), 2 * n_pairs);
  for (std::size_t v = 1; v <= n; ++v) {
    const auto vertex = static_cast<vertex_number>(v);
    net.add_vertex_fast(0);
    const auto add = [&](const pair_record &record) {
      net.add_edge_fast(vertex, record.partner, stored ? stored(record.value) : record.value, 0, record.code);
    };
    std::for_each(lower.begin() + first[v], lower.begin() + first[v + 1], add);
    std::for_each(rows_[v].begin(), rows_[v].end(), add);
  }
  net.finish_of_adding();
  net.test_neighbours_sorted();
  return true;
}

} // namespace orb
