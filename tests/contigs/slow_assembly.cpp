#include "support/slow_assembly.h"

#include "frame/numbers.h"

namespace orb_test {

slow_assembly::rank_map slow_assembly::ranks(const std::vector<int> &list, double cutoff, clone_set from,
                                             int limit) const {
  rank_map found;
  for (int step = 0; !from.empty(); ++step) {
    for (const int c : from)
      found[c] = step;
    clone_set next;
    for (const int c : from) {
      for (const int d : list) {
        if (step < limit && joined(c, d, cutoff) && found.count(d) == 0)
          next.insert(d);
      }
    }
    from = next;
  }
  return found;
}

int slow_assembly::end_width(const std::vector<int> &list, double cutoff, int start) const {
  const rank_map r = ranks(list, cutoff, {start}, 1 << 30);
  clone_set second, third;
  for (const auto &[c, rank] : r) {
    if (rank == 2)
      second.insert(c);
    if (rank == 3)
      third.insert(c);
  }
  const auto outside = [&](const clone_set &from) {
    const rank_map ball = ranks(list, cutoff, from, 2);
    return static_cast<int>(
        std::count_if(second.begin(), second.end(), [&](int c) { return ball.find(c) == ball.end(); }));
  };
  if (!third.empty())
    return outside(third);
  int smallest = static_cast<int>(second.size()) - 1;
  for (const int c : second)
    smallest = std::min(smallest, outside({c}));
  return smallest;
}

std::vector<int> slow_assembly::diametric_path(const std::vector<int> &list, double cutoff) const {
  const auto farthest = [](const rank_map &r) {
    int e = 0;
    for (const auto &[c, rank] : r)
      e = std::max(e, rank);
    return e;
  };
  const rank_map first = ranks(list, cutoff, {list[0]}, 1 << 30);
  if (first.size() < list.size())
    return {};
  std::map<int, int> weight;
  int diameter = 0, start = 0;
  for (const auto &[c, rank] : first) {
    if (rank != farthest(first))
      continue;
    if (start == 0)
      start = c;
    const int e = farthest(ranks(list, cutoff, {c}, 1 << 30));
    if (e + 1 > diameter)
      diameter = e + 1, start = c;
    if (diameter == e + 1 && e >= 2) {
      weight[c] = end_width(list, cutoff, c);
      if (weight[c] < weight[start])
        start = c;
    }
  }
  rank_map r = ranks(list, cutoff, {start}, 1 << 30);
  int end = 0;
  for (const auto &[c, rank] : r) {
    if (rank == farthest(r) && (end == 0 || weight[c] < weight[end]))
      end = c;
  }
  std::vector<int> path{end};
  while (r[path.front()] > 0) {
    for (const int d : list) {
      if (!joined(path.front(), d, cutoff) || r[d] != r[path.front()] - 1)
        continue;
      path.insert(path.begin(), d);
      break;
    }
  }
  return path;
}

void slow_assembly::lay_path(const std::vector<int> &path) {
  left_[path[0]] = 1;
  right_[path[0]] = n_bands(path[0]);
  for (std::size_t i = 1; i < path.size(); ++i) {
    const int current = path[i];
    int previous = path[i - 1], common = common_bands(data_, previous, current);
    if (0.85 * n_bands(previous) <= common) {
      if (i == 1) {
        left_[current] = 1;
        right_[current] = n_bands(current);
        continue;
      }
      previous = path[i - 2];
      common = common_bands(data_, previous, current);
    }
    left_[current] = right_[previous] + 1 - common;
    right_[current] = left_[current] + n_bands(current) - 1;
  }
}

int slow_assembly::common_with_pair(int c, int a, int b) const {
  const auto &x = data_.bands[static_cast<std::size_t>(c)], &y = data_.bands[static_cast<std::size_t>(a)],
             &z = data_.bands[static_cast<std::size_t>(b)];
  std::size_t i = 0, j = 0, k = 0;
  int common = 0;
  while (i < x.size() && j < y.size() && k < z.size()) {
    const int da = y[j] - x[i], db = z[k] - x[i];
    const bool near_a = std::abs(da) <= data_.t, near_b = std::abs(db) <= data_.t;
    if (near_a || near_b) {
      ++common, ++i;
      j += near_a ? 1 : 0;
      k += near_b ? 1 : 0;
    } else if (da > 0 && db > 0) {
      ++i;
    } else {
      j += da < 0 ? 1 : 0;
      k += db < 0 ? 1 : 0;
    }
  }
  return common;
}

void slow_assembly::lay_out(const std::vector<int> &list, double cutoff, const shape &s) {
  left_.clear();
  right_.clear();
  lay_path(s.path);
  std::map<int, int> L, R;
  const int n = static_cast<int>(s.path.size());
  for (int i = 1; i <= n; ++i)
    L[s.path[static_cast<std::size_t>(i - 1)]] = i - 1, R[s.path[static_cast<std::size_t>(i - 1)]] = i + 1;
  const rank_map r = ranks(list, cutoff, clone_set(s.path.begin(), s.path.end()), 1 << 30);
  for (int rank = 1; rank <= s.width; ++rank) {
    for (const int a : list) {
      if (r.at(a) != rank)
        continue;
      int b = 0;
      for (const int d : list) {
        if (joined(a, d, cutoff) && r.at(d) < rank && (b == 0 || common_bands(data_, a, d) > common_bands(data_, a, b)))
          b = d;
      }
      const auto on_path = [&](int place) { return s.path[static_cast<std::size_t>(place - 1)]; };
      bool to_right = false;
      int third = 0;
      if (L[b] >= 1 && R[b] <= n) {
        third = on_path(R[b]);
        to_right = common_with_pair(a, b, on_path(L[b])) <= common_with_pair(a, b, third);
      } else if (L[b] >= 1) {
        third = on_path(L[b]);
        to_right = n_bands(b) - 5 > common_with_pair(a, b, third);
      } else {
        third = on_path(R[b]);
        to_right = n_bands(b) - 5 <= common_with_pair(a, b, third);
      }
      const int common = common_bands(data_, a, b);
      if (to_right) {
        left_[a] = right_[b] + 1 - common;
        right_[a] = left_[a] + n_bands(third) - 1;
        R[a] = R[b], L[a] = R[a] - 1;
      } else {
        right_[a] = left_[b] + common - 1;
        left_[a] = right_[a] - n_bands(third) + 1;
        L[a] = L[b], R[a] = L[a] + 1;
      }
    }
  }
}

slow_assembly::shape slow_assembly::analyse(const std::vector<int> &list, double cutoff) {
  shape s;
  s.path = diametric_path(list, cutoff);
  s.diam = static_cast<int>(s.path.size());
  const rank_map r = ranks(list, cutoff, clone_set(s.path.begin(), s.path.end()), 1 << 30);
  for (const int c : list) {
    s.width = std::max(s.width, r.at(c));
    if (r.at(c) > 1)
      s.far.push_back(c);
  }
  lay_out(list, cutoff, s);
  int leftmost = s.path.front(), rightmost = s.path.back();
  for (const int c : list) {
    if (left_[c] < left_[leftmost])
      leftmost = c;
    if (right_[c] > right_[rightmost])
      rightmost = c;
  }
  const int shift = std::max(0, 1 - left_[leftmost]);
  for (const int c : list)
    left_[c] += shift, right_[c] += shift;
  s.MTP = s.path;
  if (rightmost != s.path.back())
    s.MTP.push_back(rightmost);
  if (leftmost != s.path.front())
    s.MTP.insert(s.MTP.begin(), leftmost);
  return s;
}

std::vector<std::vector<int>> slow_assembly::parts(const std::vector<int> &list, double cutoff) const {
  std::vector<std::vector<int>> out;
  clone_set done;
  for (const int c : list) {
    if (done.count(c) > 0)
      continue;
    out.emplace_back();
    for (const auto &[d, rank] : ranks(list, cutoff, {c}, 1 << 30))
      out.back().push_back(d), done.insert(d);
  }
  return out;
}

lines slow_assembly::names(const std::vector<int> &list) const {
  lines out;
  for (const int c : list)
    out.push_back(name(c));
  return out;
}

void slow_assembly::write_contig(const std::string &folder, const std::string &cluster, const entry &e, const shape &s,
                                 const std::vector<int> &far_at_base) {
  if (e.list.size() < 3)
    return;
  files[folder + "MTP_" + cluster + ".txt"] = names(s.MTP);
  const std::vector<int> &far = far_at_base.empty() ? s.far : far_at_base;
  if (!far.empty())
    files[folder + "far_from_MTP_" + cluster + ".txt"] = names(far);
  lines &coordinates = files[folder + "coor_" + cluster + ".txt"];
  coordinates.push_back("clone\tcoor_left\tcoor_right");
  for (const int c : e.list)
    coordinates.push_back(name(c) + "\t" + std::to_string(left_[c]) + "\t" + std::to_string(right_[c]));
}

// True when the cluster is kept; otherwise its parts.
bool slow_assembly::test(std::size_t m, entry &e, std::vector<std::vector<int>> &of_parts) {
  if (e.list.size() < 2) {
    ++n_clones_alone;
    return true;
  }
  const std::string cluster = "cl_" + std::to_string(m);
  const double cutoff = cutoff_of(e.level);
  of_parts = e.connected ? std::vector<std::vector<int>>{e.list} : parts(e.list, cutoff);
  e.connected = of_parts.size() == 1;
  const int n = static_cast<int>(e.list.size());
  const bool too_large = n > p_.n_clones_max, heap = n < p_.minimal_cluster_size;
  const std::string folder = heap ? "Heaps/" : cluster + "/";
  files[folder + cluster + ".txt"] = names(e.list);
  bool final = e.connected && too_large && e.level == p_.n_steps, contig = final;
  shape s;
  std::string measured = "\t\t\t";
  std::vector<int> far;
  int width = 0;
  if (e.connected && !too_large) {
    s = analyse(e.list, cutoff);
    const rank_map r = ranks(e.list, base_, clone_set(s.MTP.begin(), s.MTP.end()), 1 << 30);
    for (const int c : e.list) {
      width = std::max(width, r.at(c));
      if (r.at(c) > 1)
        far.push_back(c);
    }
    contig = !heap && (width <= p_.width_max || e.level > p_.n_steps);
    final = heap || contig;
    measured = std::to_string(s.diam) + "\t" + std::to_string(width) + "\t0\t" + std::to_string(far.size());
    write_contig(folder, cluster, e, s, far);
  }
  const bool wide = contig && !too_large && width > p_.width_max;
  const std::string remark = !e.connected ? "Not connected"
                             : too_large  ? "Too large"
                             : wide       ? "Wide: may join apart places"
                                          : "";
  clusters.push_back(std::to_string(m) + "\t" + cluster + "\t" + std::to_string(n) + "\t" +
                     (contig ? "True" : "False") + "\t" + number_text(cutoff, 2) + "\t" + measured + "\t" + remark +
                     "\t" + e.name_long);
  if (!contig)
    return final;
  contigs.push_back(clusters.back());
  for (std::size_t i = 0; i < s.MTP.size(); ++i) {
    const int c = s.MTP[i], before = i > 0 ? s.MTP[i - 1] : 0;
    std::string line = cluster + "\t" + std::to_string(n) + "\t" + std::to_string(s.MTP.size()) + "\t" + e.name_long +
                       "\t" + std::to_string(i + 1) + "\t" + std::to_string(c) + "\t" + name(c) + "\t" +
                       std::to_string(n_bands(c)) + "\t" +
                       (i > 0 ? std::to_string(common_bands(data_, before, c)) : "") + "\t" + std::to_string(left_[c]) +
                       "\t" + std::to_string(right_[c]);
    if (i > 0)
      line += "\t" + std::to_string(right_[before] - left_[c] + 1);
    details.push_back(line);
    MTP.push_back(name(c));
    bridges.push_back(name(c));
  }
  for (const int c : far)
    bridges.push_back(name(c));
  return final;
}

void slow_assembly::run() {
  std::vector<entry> work{{}, {{}, "all", 0, false}};
  for (int c = 1; c <= data_.count(); ++c)
    work[1].list.push_back(c);
  for (std::size_t i = 1; i < work.size(); ++i) {
    std::vector<std::vector<int>> of_parts;
    if (test(i, work[i], of_parts))
      continue;
    const entry parent = work[i];
    for (const auto &part : of_parts) {
      entry e{part, parent.name_long, parent.level, !parent.connected};
      if (parent.connected) {
        e.name_long += "_pr" + number_text(cutoff_of(++e.level), 2);
      } else {
        e.name_long += "_cl" + number_text(cutoff_of(e.level), 2) + "_" + std::to_string(part.size()) + "_" +
                       std::to_string(of_parts.size());
      }
      work.push_back(e);
    }
  }
}

} // namespace orb_test
