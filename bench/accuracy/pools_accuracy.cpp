// How well clones and places behind probes are found, where the truth is known: a library of clones of a random genome,
// pooled; probes at one or two points, positive in the pools of all clones that cover one; pools lost and added by
// chance. Prints a table of recall and precision, by the groups of overlapping clones and by the best hypotheses.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fmt/format.h>
#include <map>

#include "pools/pool_hypotheses.h"
#include "pools/pools_deconvolution.h"
#include "support/pools_generator.h"

namespace {

using namespace orb;

struct tally {
  double clones_true = 0, clones_told = 0, clones_right = 0, places_true = 0, places_found = 0, places_told = 0,
         places_right = 0, probes = 0, one_place = 0, one_place_right = 0;
};

// A place that is told is right when at least half of its clones are true ones of one place; a true place is found when
// a right place that is told has a clone of it.
void judge(const simulated_probe &truth, const std::vector<std::vector<clone_number>> &told, tally &sum) {
  std::vector<clone_number> all, of_truth = truth.clones();
  std::vector<bool> found(truth.places.size());
  for (const auto &place : told) {
    all.insert(all.end(), place.begin(), place.end());
    bool right = false;
    for (std::size_t k = 0; k < truth.places.size(); ++k) {
      const auto n = std::count_if(place.begin(), place.end(), [&](clone_number clone) {
        return std::binary_search(truth.places[k].begin(), truth.places[k].end(), clone);
      });
      if (n > 0 && 2 * static_cast<std::size_t>(n) >= place.size())
        right = found[k] = true;
    }
    sum.places_told += 1;
    sum.places_right += right ? 1 : 0;
  }
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end()), all.end());
  sum.places_true += double(truth.places.size());
  sum.places_found += double(std::count(found.begin(), found.end(), true));
  sum.clones_true += double(of_truth.size());
  sum.clones_told += double(all.size());
  for (const clone_number clone : all)
    sum.clones_right += std::binary_search(of_truth.begin(), of_truth.end(), clone) ? 1 : 0;
  sum.probes += 1;
  sum.one_place += told.size() == 1 ? 1 : 0;
}

std::string share(double a, double b) {
  return b > 0 ? fmt::format("{:.1f} %", 100 * a / b) : "-";
}

void print(const std::string &way, const std::string &clones, const tally &t) {
  fmt::print("| {} | {} | {} | {} | {} | {} | {} |\n", way, clones, t.probes, share(t.clones_right, t.clones_true),
             share(t.clones_right, t.clones_told), share(t.places_found, t.places_true),
             share(t.places_right, t.places_told));
}

const char *name_of_size(std::size_t n) {
  return n <= 3 ? "1-3" : n <= 6 ? "4-6" : n <= 9 ? "7-9" : "10-12";
}

// Of a group only the clones in three positive pools are told.
std::vector<std::vector<clone_number>> told_by_groups(const class_pools3D &pools, const positive_pools &positive,
                                                      const deconvolved_probe &made) {
  std::vector<std::vector<clone_number>> told;
  pool_place place;
  for (const number_list &group : made.groups) {
    std::vector<clone_number> clones;
    for (const clone_number clone : group.members())
      if (pools.find_clone_in_pools(clone, place) && positive.n_of(place) == 3)
        clones.push_back(clone);
    if (!clones.empty())
      told.push_back(clones);
  }
  return told;
}

std::vector<std::vector<clone_number>> told_by_hypotheses(const std::vector<pool_hypothesis> &ranked) {
  return ranked.empty() ? std::vector<std::vector<clone_number>>{} : ranked.front().places;
}

double number_of(int n, char **words, int i, double otherwise) {
  return n > i ? std::atof(words[i]) : otherwise;
}

} // namespace

// pools_accuracy [probes [coverage [missing-rate [false-rate]]]]
int main(int n_words, char **words) {
  pools_generator made(number_of(n_words, words, 2, 5), 1);
  hypothesis_options options;
  options.missing_rate = number_of(n_words, words, 3, options.missing_rate);
  options.false_rate = number_of(n_words, words, 4, options.false_rate);
  const pools_deconvolution groups(made.pools, made.library.signif, made.library.rule);
  const pool_hypotheses hypotheses(made.pools, made.library.signif, made.library.rule, options);
  const auto n_probes = static_cast<int>(number_of(n_words, words, 1, 1000));
  std::map<std::string, tally> by_groups, by_hypotheses;
  double seconds = 0;
  int n_missed = 0, n_dear = 0;
  for (int i = 0; i < n_probes; ++i) {
    const simulated_probe probe = made.draw_probe();
    deconvolved_probe found;
    groups.deconvolve(probe.positive, found);
    const auto start = std::chrono::steady_clock::now();
    const std::vector<pool_hypothesis> ranked = hypotheses.ranked(probe.positive);
    const auto told = told_by_hypotheses(ranked);
    seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (tally one; !ranked.empty()) {
      judge(probe, told, one);
      const bool is_missed = one.places_found < one.places_true || one.places_right < one.places_told;
      n_missed += is_missed ? 1 : 0;
      n_dear += is_missed && hypotheses.cost_of(probe.positive, probe.places) >= ranked.front().cost ? 1 : 0;
    }
    for (const char *size : {name_of_size(probe.clones().size()), "all"}) {
      judge(probe, told_by_groups(made.pools, probe.positive, found), by_groups[size]);
      judge(probe, told, by_hypotheses[size]);
    }
  }
  fmt::print("| way | true clones | probes | clones: recall | precision | places: recall | precision |\n");
  fmt::print("|---|---|---|---|---|---|---|\n");
  for (const char *size : {"all", "1-3", "4-6", "7-9", "10-12"}) {
    print("groups", size, by_groups[size]);
    print("likelihood", size, by_hypotheses[size]);
  }
  fmt::print(stderr,
             "{} probes with a place wrong or not found; in {} of them the truth isn't cheaper than what was told\n",
             n_missed, n_dear);
  fmt::print(stderr, "{:.2f} s for the hypotheses of {} probes on one thread\n", seconds, n_probes);
}
