// A small library with its net, loaded as a session would have it; the scores are plain counts of common bands, so that
// the tests of contigs depend on no metric.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "contigs/class_contig_adapt_clust.h"
#include "contigs/run_folder.h"
#include "database/band_statistics.h"
#include "frame/random_source.h"
#include "support/scripted_frame.h"

namespace orb_test {

using namespace orb;
using lines = std::vector<std::string>;

// Clones from 1; element 0 unused.
struct library_data {
  std::vector<std::string> names{""};
  std::vector<std::vector<std::int32_t>> bands{{}};
  std::int16_t t = 4;
  int count() const { return static_cast<int>(names.size()) - 1; }
  void add(const std::string &name, std::vector<std::int32_t> of_clone) {
    std::sort(of_clone.begin(), of_clone.end());
    names.push_back(name);
    bands.push_back(std::move(of_clone));
  }
};

// Common bands, each used once, by the plain merge.
inline int common_bands(const library_data &data, int a, int b) {
  std::size_t i = 0, j = 0;
  int common = 0;
  const auto &x = data.bands[static_cast<std::size_t>(a)], &y = data.bands[static_cast<std::size_t>(b)];
  while (i < x.size() && j < y.size()) {
    if (std::abs(x[i] - y[j]) <= data.t) {
      ++common, ++i, ++j;
    } else if (x[i] < y[j]) {
      ++i;
    } else {
      ++j;
    }
  }
  return common;
}

// Clones are windows on an axis of random bands, read with small errors and losses; some are two windows joined.
inline library_data random_library(std::uint64_t seed, int n_clones, int n_axis, double chimeras) {
  random_source random(seed);
  library_data data;
  std::vector<std::int32_t> axis;
  for (int i = 0; i < n_axis; ++i)
    axis.push_back(500 + random.number_up_to(19000));
  for (int c = 1; c <= n_clones; ++c) {
    std::vector<std::int32_t> bands;
    const bool chimera = random.uniform() < chimeras;
    for (int part = 0; part < (chimera ? 2 : 1); ++part) {
      const int length = (chimera ? 10 : 16) + random.number_up_to(12), start = random.number_up_to(n_axis) - 1;
      for (int i = start; i < std::min(start + length, n_axis); ++i) {
        if (random.uniform() > 0.05)
          bands.push_back(axis[static_cast<std::size_t>(i)] + random.number_up_to(3) - 2);
      }
    }
    data.add("C" + std::to_string(1000 + c), bands);
  }
  return data;
}

inline lines lines_of_file(const std::filesystem::path &file) {
  lines out;
  std::string text = bytes_of(file);
  for (std::size_t at; (at = text.find("\r\n")) != std::string::npos; text.erase(0, at + 2))
    out.push_back(text.substr(0, at));
  if (!text.empty())
    out.push_back(text + "<no line end>");
  return out;
}

class contig_session : public scripted_frame {
public:
  project_settings settings;
  overlap_rule rule;
  class_DB_of_clones database;
  class_usable_values usable_values;
  class_clone_dist_table table;
  metric_context context{frame, settings, database, usable_values, table};
  class_clone_net_signif signif{context, [this] {
                                  settings.use_file_with_connections = settings.same_metric_as_net =
                                      settings.same_metric_net_ord_as_net = true;
                                }};

  // Overlaps of at least `cutoff` common bands become the net.
  contig_session(const library_data &data, double cutoff) {
    load(data);
    load_net(data, cutoff);
  }
  // The one run folder of the working folder.
  std::filesystem::path run() const {
    for (const auto &entry : std::filesystem::directory_iterator(folder)) {
      if (entry.path().filename().string().rfind("ORB_contigs_", 0) == 0)
        return entry.path();
    }
    return {};
  }

private:
  void load(const library_data &data) {
    database.tollerance_parameters_set(data.t, 1);
    database.total_number_of_different_bands_set_by_eff_len(1000000);
    database.inicalise_database(frame, data.count(), 0);
    for (int c = 1; c <= data.count(); ++c) {
      const auto &bands = data.bands[static_cast<std::size_t>(c)];
      database.ListOfBands_from_real_database_fast_all_bands_set(c, std::span<const std::int32_t>(bands));
      database.name_of_clone_set(c, data.names[static_cast<std::size_t>(c)]);
    }
    database.total_number_of_clones_set(data.count());
    database.sort_clones_by_name(frame);
    make_band_statistics(frame, database, usable_values);
  }
  void load_net(const library_data &data, double cutoff) {
    class_net &net = signif.net();
    net.inicializate_net(data.count(), data.count());
    for (int a = 1; a <= data.count(); ++a) {
      net.add_vertex_fast(0);
      for (int b = 1; b <= data.count(); ++b) {
        const int common = a == b ? 0 : common_bands(data, a, b);
        if (a != b && common >= cutoff)
          net.add_edge_fast(a, b, common, 0, 0);
      }
    }
    net.finish_of_adding();
    net.test_neighbours_sorted();
    signif.net_is_loaded_set();
    rule.cutoff = cutoff;
  }
};

} // namespace orb_test
