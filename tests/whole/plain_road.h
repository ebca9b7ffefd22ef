// The road from fingerprints to a revised net in the plainest way, by which the program's results are judged.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/program_run.h"

namespace plain {

namespace fs = std::filesystem;
using whole::bytes_of;

struct record {
  std::string header;
  std::vector<int> bands;
};

// The example read in the plainest way: sorted by header line, exact copies dropped.
inline std::vector<record> naive_library(const std::string &folder) {
  std::vector<record> records;
  for (const std::string file : {"EC001.sizes", "EC002.sizes"}) {
    std::istringstream in(bytes_of(fs::path(folder) / file));
    bool inside = false;
    for (std::string line; std::getline(in, line);) {
      if (!line.empty() && line.back() == '\r')
        line.pop_back();
      if (line.empty())
        continue;
      if (!inside) {
        records.push_back({line, {}});
        inside = true;
      } else if (line == "-1") {
        inside = false;
      } else {
        records.back().bands.push_back(int(std::floor(float(std::stod(line)))));
      }
    }
  }
  std::stable_sort(records.begin(), records.end(),
                   [](const record &a, const record &b) { return a.header < b.header; });
  std::vector<record> kept;
  for (const record &r : records)
    if (std::none_of(kept.begin(), kept.end(),
                     [&](const record &k) { return k.header == r.header && k.bands == r.bands; }))
      kept.push_back(r);
  return kept;
}

inline int naive_common(const std::vector<int> &a, const std::vector<int> &b, int t) {
  int common = 0;
  for (std::size_t i = 0, j = 0; i < a.size() && j < b.size();) {
    if (std::abs(a[i] - b[j]) <= t)
      ++common, ++i, ++j;
    else if (a[i] < b[j])
      ++i;
    else
      ++j;
  }
  return common;
}

inline double ln_factorial(double n) {
  return n < 1 ? 1.0 : n * std::log(n) - n + std::log(n * (1 + 4 * n * (1 + 2 * n))) / 6 + std::log(3.1415) / 2;
}

inline double naive_score(int k, int n1, int n2) {
  const int n_min = std::min(n1, n2), n_max = std::max(n1, n2);
  if (n_min == 0)
    return 0;
  const double p = 1 - std::pow(1 - 1 / 2250.0, n_max);
  std::vector<double> terms;
  for (int m = k; m <= n_min; ++m)
    terms.push_back(ln_factorial(n_min) - ln_factorial(m) - ln_factorial(n_min - m) + m * std::log(p) +
                    (n_min - m) * std::log(1 - p));
  const double top = *std::max_element(terms.begin(), terms.end());
  double sum = 0;
  for (double term : terms)
    sum += std::exp(term - top);
  return -(top + std::log(sum)) / std::log(10.0);
}

struct overlap {
  int neighbour;
  double value;
  int code;
  bool operator==(const overlap &) const = default;
};
using naive_net = std::vector<std::vector<overlap>>;

inline naive_net net_of_library(const std::vector<record> &library) {
  naive_net net(library.size() + 1);
  for (std::size_t i = 0; i < library.size(); ++i)
    for (std::size_t j = 0; j < library.size(); ++j) {
      if (i == j)
        continue;
      const int n1 = int(library[i].bands.size()), n2 = int(library[j].bands.size());
      const int k = naive_common(library[i].bands, library[j].bands, 12);
      const double score = naive_score(k, n1, n2);
      if (score < 15)
        continue;
      char text[40];
      std::snprintf(text, sizeof text, "%.2f", score);
      net[i + 1].push_back({int(j) + 1, std::stod(text), (n1 * 0.9 <= k ? 1 : 0) + (n2 * 0.9 <= k ? 2 : 0)});
    }
  return net;
}

// The native file taken apart field by field.
inline naive_net net_of_file(const fs::path &file, std::vector<int> &marks) {
  const std::string bytes = bytes_of(file);
  const auto number = [&](std::size_t at, auto value) {
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
  };
  const std::int32_t n = number(0, std::int32_t{}), e = number(4, std::int32_t{});
  EXPECT_EQ(bytes.size(), 8u + 6u * (std::size_t(n) + 1) + 16u * std::size_t(e));
  naive_net net(std::size_t(n) + 1);
  marks.assign(std::size_t(n) + 1, 0);
  const std::size_t edges = 8 + 6 * (std::size_t(n) + 1);
  for (std::size_t v = 1; v <= std::size_t(n); ++v) {
    const std::size_t at = 8 + 6 * (v - 1);
    marks[v] = number(at + 4, std::int16_t{});
    for (std::int32_t a = number(at, std::int32_t{}); a < number(at + 6, std::int32_t{}); ++a) {
      const std::size_t edge = edges + 16 * (std::size_t(a) - 1);
      net[v].push_back({number(edge, std::int32_t{}), number(edge + 4, double{}), number(edge + 14, std::int16_t{})});
    }
  }
  return net;
}

inline bool joined(const naive_net &net, int a, int b) {
  return std::any_of(net[std::size_t(a)].begin(), net[std::size_t(a)].end(),
                     [&](const overlap &o) { return o.neighbour == b; });
}

// Number of components of the members in the net.
inline int components(const naive_net &net, std::set<int> members) {
  int n = 0;
  while (!members.empty()) {
    ++n;
    std::vector<int> front{*members.begin()};
    members.erase(members.begin());
    while (!front.empty()) {
      const int v = front.back();
      front.pop_back();
      for (const overlap &o : net[std::size_t(v)])
        if (members.erase(o.neighbour))
          front.push_back(o.neighbour);
    }
  }
  return n;
}

inline naive_net revised(const naive_net &net, double additional, std::set<int> &q_clones) {
  naive_net without(net.size());
  for (std::size_t v = 1; v < net.size(); ++v)
    for (const overlap &o : net[v])
      if (std::any_of(net[v].begin(), net[v].end(),
                      [&](const overlap &third) { return joined(net, o.neighbour, third.neighbour); }))
        without[v].push_back(o);
  for (std::size_t v = 1; v < net.size(); ++v) {
    std::set<int> ball;
    for (const overlap &o : without[v])
      if (o.value >= additional)
        ball.insert(o.neighbour);
    if (components(without, ball) >= 2)
      q_clones.insert(int(v));
  }
  naive_net kept(net.size());
  for (std::size_t v = 1; v < net.size(); ++v)
    for (const overlap &o : without[v])
      if (!q_clones.count(int(v)) && !q_clones.count(o.neighbour))
        kept[v].push_back(o);
  return kept;
}

} // namespace plain
