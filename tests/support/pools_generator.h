// A pooled library of clones with known places, and probes on it.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "pools/class_pools3D.h"
#include "support/net_fixture.h"

namespace orb {

struct simulated_probe {
  std::vector<std::vector<clone_number>> places; // the clones that cover each point, ascending
  positive_pools positive;
  std::vector<clone_number> clones() const {
    std::vector<clone_number> all;
    for (const auto &place : places)
      all.insert(all.end(), place.begin(), place.end());
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
  }
};

// Fills the wells of the scheme, plate by plate, with the clones of a generated library, which are in random order, and
// makes their net.
class pools_generator {
public:
  pools_generator(double coverage, std::uint64_t seed, std::int32_t n_clones = 17 * 16 * 24)
      : library(wanted(coverage, seed, n_clones)), chance_(seed, 7) {
    // the same library once more, for the places of its clones
    class_DB_of_clones again;
    generate_library(library.frame, wanted(coverage, seed, n_clones), again, library.usable_values, &starts_);
    std::string recoding = "pools of clones\nsource plate\twell\tnote\tpool plate\twell\n";
    for (clone_number clone = 1; clone <= n_clones; ++clone) {
      const std::int32_t well = (clone - 1) % (16 * 24);
      const std::string name = std::string(1, static_cast<char>('A' + well / 24)) + std::to_string(well % 24 + 1);
      const std::string plate = std::to_string((clone - 1) / (16 * 24) + 1);
      recoding += plate + "\t" + name + "\t\t" + plate + "\t" + name + "\n";
      library.database.name_of_clone_set(clone, name_of(clone));
    }
    library.database.sort_clones_by_name(library.frame);
    library.write("recoding.txt", recoding);
    pools_wishes wishes;
    pools.read_pools_recoding(library.frame, library.database, library.folder / "recoding.txt", wishes);
    net_creation_summary summary;
    library.signif.create_net_in_memory(library.rule, summary);
    library.record = {};
  }

  // One or two points, of which 1 to 12 clones are positive; a pool of theirs is lost with chance `lost`, any other one
  // turns positive with chance `added`.
  simulated_probe draw_probe(double lost = 0.05, double added = 0.01) {
    for (;;) {
      simulated_probe probe{{}, positive_pools(pools.sizes())};
      const std::int32_t n_points = chance_.number_up_to(2);
      bool all_covered = true;
      for (std::int32_t i = 0; i < n_points; ++i) {
        probe.places.push_back(clones_over(chance_.number_up_to(last_start())));
        all_covered = all_covered && !probe.places.back().empty();
      }
      const std::size_t n = probe.clones().size();
      if (!all_covered || n < 1 || n > 12)
        continue;
      mark_pools(probe, lost, added);
      return probe;
    }
  }

  net_fixture library;
  class_pools3D pools;

private:
  static generated_library wanted(double coverage, std::uint64_t seed, std::int32_t n_clones) {
    generated_library made;
    made.n_clones = n_clones;
    made.coverage = coverage;
    made.seed = seed;
    return made;
  }
  static std::string name_of(clone_number clone) {
    const std::int32_t plate = (clone - 1) / (16 * 24) + 1, well = (clone - 1) % (16 * 24);
    std::string name = std::to_string(plate), column = std::to_string(well % 24 + 1);
    name.insert(0, 3 - name.size(), '0');
    column.insert(0, 2 - column.size(), '0');
    return "TaaCsp1BS" + name + static_cast<char>('A' + well / 24) + column;
  }
  std::int32_t last_start() const { return *std::max_element(starts_.begin(), starts_.end()); }

  std::vector<clone_number> clones_over(std::int32_t fragment) const {
    std::vector<clone_number> clones;
    for (clone_number clone = 1; clone < static_cast<clone_number>(starts_.size()); ++clone) {
      const std::int32_t start = starts_[static_cast<std::size_t>(clone)];
      if (start <= fragment && fragment < start + library.database.number_of_bands_in_clone_get(clone))
        clones.push_back(clone);
    }
    return clones;
  }

  void mark_pools(simulated_probe &probe, double lost, double added) {
    const positive_pools truth = [&] {
      positive_pools marked(pools.sizes());
      pool_place place;
      for (const clone_number clone : probe.clones())
        if (pools.find_clone_in_pools(clone, place))
          for (std::size_t d = 0; d < n_pool_dimensions; ++d)
            marked.set(d, place[d]);
      return marked;
    }();
    for (std::size_t d = 0; d < n_pool_dimensions; ++d)
      for (std::int32_t pool = 1; pool <= pools.sizes()[d]; ++pool)
        if (truth.has(d, pool) ? chance_.uniform() >= lost : chance_.uniform() < added)
          probe.positive.set(d, pool);
  }

  random_source chance_;
  std::vector<std::int32_t> starts_; // first fragment of each clone
};

} // namespace orb
