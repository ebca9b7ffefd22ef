// A short path through all vertices of a matrix of distances: guided local search (Voudouris and Tsang 1999) with 2-opt
// moves and kicks, ended early when a path is proven to be the shortest.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "frame/lists.h"
#include "frame/random_source.h"
#include "ordering/search_clock.h"
#include "ordering/square_array.h"

namespace orb {

// How a search runs besides its instance.
struct tour_control {
  std::int64_t steps = 0;  // above 0: a limit of guided steps and kicks in place of the time, repeatable to the byte
  bool prove = true;       // look for a proof first; off: the guided search alone
  bool guided = true;      // then search on where there is no proof; off: the best order met on the way stands
  stop_question stop = {}; // asked at short strides; once it is answered with true the search ends within milliseconds
};

// What became of a search.
struct tour_report {
  std::string message;          // to be shown by the caller: the solver touches no frame; empty when all is well
  bool proven = false;          // no shorter path exists
  bool stopped = false;         // on request: the order is the best so far
  std::int64_t steps = 0;       // guided steps and kicks that were made
  double seconds = 0;           // wall time
  std::int64_t lower_bound = 0; // no path is shorter; 0: none was looked for
};

class class_math_TSP {
public:
  // Tour positions have 16 bits, which bounds the number of vertices.
  static constexpr std::int32_t most_vertices = 32765;

  // `random`: generator of the search; lent, used by this object only.
  explicit class_math_TSP(random_source &random, const tour_control &control = {});

  // The order of 1..n along a short path, as text (joined by blanks) and as list, and its cost: the sum of the integer
  // distances of its n - 1 steps. `time_limit`: seconds, 0 ends after the first guided step. `matrix`: 1-based, read
  // below the diagonal, d(i, j) = integer part of matrix(j, i) + 0.0001. `free_ends`: vertices 1 and n become the ends
  // of the path (the name is what it is). `from_file`: n, time limit, rank and distances come from `file` in the form
  // of "Input.dis"; throws file_error. Wrong input leaves the outputs empty and gives the report its message.
  tour_report Run_Tourer(bool from_file, std::int32_t n, double time_limit, std::int32_t neighbour_rank,
                         const square_array<double> &matrix, std::string &order_text, number_list &order,
                         std::int64_t &cost, bool free_ends, const std::filesystem::path &file = {});

private:
  using tour = std::vector<std::int16_t>; // n + 2 positions from 1, dummy 0 first and last; element 0 unused

  bool load_file(const std::filesystem::path &file, tour_report &report);
  void load_matrix(const square_array<double> &matrix);
  void set_ends(bool free_ends);
  void find_neighbour_radius();
  bool settled_by_proof(const search_clock &clock, bool free_ends, std::vector<std::int32_t> &order,
                        tour_report &report);
  void run_search(const search_clock &clock, tour_report &report, std::vector<std::int32_t> &order);

  std::int64_t cost_of(const tour &t) const;
  std::int64_t compared_cost_of(const tour &t) const;
  void optimise_tour(tour &t, const search_clock &clock, tour_report &report);
  bool limit_reached(const search_clock &clock, const tour_report &report) const;
  bool remember_if_better(const tour &t);
  void two_opt_sweep(tour &t, std::int32_t s, std::int32_t e, const search_clock &clock) const;
  std::int32_t choose_edge(const tour &t, square_array<std::int32_t> &penalty, double chance_of_random);
  void guided_step(tour &t, const search_clock &clock);
  void activate_around(const tour &t, std::int32_t p, std::int32_t q);
  void local_search(tour &t, bool use_true_cost, const search_clock &clock);
  bool local_scan(tour &t, const square_array<std::int32_t> &d, bool restart_after_move, const search_clock &clock,
                  bool &over);
  void list_active_positions(std::vector<std::int32_t> &entries);
  void kick(tour &t, const search_clock &clock);
  std::int32_t last_position() const { return n_ + 2; }

  random_source &random_;
  tour_control control_;
  std::int32_t n_ = 0;
  std::int32_t neighbour_rank_ = 0;            // the k of the k-th nearest neighbour, at most n
  double time_limit_ = 0;                      // seconds
  square_array<std::int32_t> dist_;            // 0..n, vertex 0 is the dummy
  square_array<std::int32_t> dist_augmented_;  // dist plus penalties
  square_array<std::int32_t> penalty_;         // of an edge, in guided steps
  square_array<std::int32_t> penalty_kick_;    // of an edge, in kicks
  std::vector<std::int32_t> neighbour_radius_; // 1..n: distance to the k-th nearest
  tour tour_best_;
  std::int64_t best_cost_ = 0;       // of tour_best, as compared
  std::int32_t lambda_ = 1;          // weight of a penalty
  std::vector<std::int16_t> active_; // by tour position: 1 = look here
  std::int32_t n_active_ = 0;
  std::int16_t kick_mode_ = 0; // 1 during kicks
  std::int32_t n_without_better_ = 0;
  std::uint32_t polls_ = 0;
};

} // namespace orb
