// Truths and runs made by hand or by chance, for tests of the evaluation.
#pragma once

#include <map>
#include <random>
#include <string>
#include <vector>

#include "contigs/run_folder.h"
#include "simulation/map_quality.h"

namespace orb_test {

struct part_of_clone {
  std::string clone;
  int chromosome; // from 1
  int start, end;
};

inline orb::placed_clones truth_of(const std::vector<part_of_clone> &parts, int n_chromosomes) {
  orb::placed_clones truth;
  for (int c = 1; c <= n_chromosomes; ++c)
    truth.chromosomes.push_back("chr" + std::to_string(c));
  std::map<std::string, std::size_t> known;
  for (const part_of_clone &part : parts) {
    const auto [place, is_new] = known.try_emplace(part.clone, truth.clones.size());
    if (is_new)
      truth.clones.emplace_back().name = part.clone;
    orb::clone_part made;
    made.chromosome = part.chromosome;
    made.part_start = part.start;
    made.part_end = part.end;
    truth.clones[place->second].parts.push_back(made);
  }
  return truth;
}

struct row_of_coordinates {
  std::string clone;
  double left, right;
};

inline void add_cluster(orb::run_folder &run, const std::string &name, bool contig,
                        const std::vector<row_of_coordinates> &rows, const std::vector<std::string> &path,
                        bool with_coordinates = true) {
  orb::cluster_row row;
  row.name = name;
  row.n_clones = static_cast<std::int32_t>(rows.size());
  row.contig = contig;
  run.clusters.push_back(row);
  run.clones.emplace_back();
  run.coordinates.emplace_back();
  run.tiling_path.push_back(path);
  for (const row_of_coordinates &one : rows) {
    run.clones.back().push_back(one.clone);
    if (with_coordinates)
      run.coordinates.back().push_back({one.clone, one.left, one.right});
  }
}

// A small genome in which everything can be counted base by base, and contigs thrown together without any sense.
struct random_case {
  orb::placed_clones truth;
  orb::run_folder run;
};
inline random_case random_run(unsigned seed) {
  std::mt19937 chance(seed);
  const auto below = [&](int n) { return static_cast<int>(chance() % static_cast<unsigned>(n)); };
  const int n_chromosomes = 1 + below(3), n_clones = 5 + below(40);
  std::vector<part_of_clone> parts;
  for (int i = 0; i < n_clones; ++i)
    for (int part = 0; part == 0 || below(5) == 0; ++part) {
      const int start = below(300);
      parts.push_back({"c" + std::to_string(i), 1 + below(n_chromosomes), start, start + below(40)});
    }
  random_case made;
  made.truth = truth_of(parts, n_chromosomes);
  std::vector<std::vector<row_of_coordinates>> contigs(static_cast<std::size_t>(1 + below(5)));
  for (int i = 0; i < n_clones + 3; ++i) // the last three are unknown
    if (below(8) > 0) {
      const double left = below(50);
      contigs[static_cast<std::size_t>(below(static_cast<int>(contigs.size())))].push_back(
          {"c" + std::to_string(i), left, left + below(20)});
    }
  for (std::size_t c = 0; c < contigs.size(); ++c) {
    std::vector<std::string> path;
    for (const row_of_coordinates &row : contigs[c])
      if (below(2) == 0)
        path.push_back(row.clone);
    add_cluster(made.run, "cl_" + std::to_string(c + 1), below(6) > 0, contigs[c], path);
  }
  return made;
}

} // namespace orb_test
