#include "ordering/tour_solver.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "ordering/distance_file.h"
#include "ordering/tour_proof.h"

namespace orb {

namespace {

constexpr double share_for_proof = 0.5;           // of the time limit, at most
constexpr std::int32_t most_for_proof = 5000;     // vertices: beyond it only the guided search looks at the clock often
constexpr double chance_of_random_step = 0.00001; // of a guided step taking any edge
constexpr double chance_of_random_kick = 0.001;
constexpr std::int32_t most_without_better = 200; // guided steps before a kick
constexpr std::int32_t least_active = 20;         // positions, for a kick
constexpr std::int32_t many_active = 100;         // positions, with which a scan goes on after a move
constexpr std::uint32_t poll_stride = 1u << 14;   // pairs of positions

std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

std::int32_t rounded(double value) {
  return static_cast<std::int32_t>(std::nearbyint(value));
}

std::string joined_by_blanks(const number_list &order) {
  std::string text;
  for (const std::int32_t v : order.members())
    text += (text.empty() ? "" : " ") + std::to_string(v);
  return text;
}

} // namespace

class_math_TSP::class_math_TSP(random_source &random, const tour_control &control)
    : random_(random), control_(control) {}

// ---- loading -------------------------------------------------------------------------------------------------------

bool class_math_TSP::load_file(const std::filesystem::path &file, tour_report &report) {
  distance_instance instance;
  if (!read_distance_file(file, instance, report.message))
    return false;
  if (instance.n > most_vertices) {
    report.message = "TSP: n>" + std::to_string(most_vertices);
    return false;
  }
  n_ = instance.n;
  time_limit_ = instance.time_limit;
  neighbour_rank_ = std::clamp(instance.neighbour_rank, std::min(n_, 1), n_);
  dist_ = std::move(instance.dist);
  return true;
}

void class_math_TSP::load_matrix(const square_array<double> &matrix) {
  dist_.assign(n_, distance_instance::no_distance);
  for (std::int32_t v = 0; v <= n_; ++v)
    dist_(v, v) = 0;
  for (std::int32_t i = 1; i <= n_; ++i)
    for (std::int32_t j = i + 1; j <= n_; ++j)
      dist_(i, j) = dist_(j, i) = whole_distance(matrix(j, i));
}

// The dummy then costs nothing at 1 and n only, which makes them the ends of the path.
void class_math_TSP::set_ends(bool free_ends) {
  if (free_ends && n_ > 0)
    dist_(0, 1) = dist_(1, 0) = dist_(0, n_) = dist_(n_, 0) = 0;
}

void class_math_TSP::find_neighbour_radius() {
  neighbour_radius_.assign(place(n_) + 1, 0);
  std::vector<std::int32_t> row(place(n_));
  for (std::int32_t v = 1; v <= n_; ++v) {
    std::copy_n(dist_.row(v) + 1, n_, row.begin());
    const auto kth = row.begin() + neighbour_rank_ - 1; // the vertex's own 0 counts as the first
    std::nth_element(row.begin(), kth, row.end());
    neighbour_radius_[place(v)] = *kth;
  }
}

// ---- the run -------------------------------------------------------------------------------------------------------

tour_report class_math_TSP::Run_Tourer(bool from_file, std::int32_t n, double time_limit, std::int32_t neighbour_rank,
                                       const square_array<double> &matrix, std::string &order_text, number_list &order,
                                       std::int64_t &cost, bool free_ends, const std::filesystem::path &file) {
  tour_report report;
  order_text.clear();
  order.clear();
  cost = 0;
  if (from_file) {
    if (!load_file(file, report))
      return report;
  } else if (n < 0 || n > most_vertices) {
    report.message = n < 0 ? "TSP: n<0" : "TSP: n>" + std::to_string(most_vertices);
    return report;
  } else {
    n_ = n;
    time_limit_ = time_limit;
    neighbour_rank_ = std::clamp(neighbour_rank, std::min(n_, 1), n_);
    load_matrix(matrix);
  }
  set_ends(free_ends);
  const search_clock clock(control_.steps > 0 ? -1 : std::max(time_limit_, 0.0), &control_.stop);
  path_order found(place(n_));
  std::iota(found.begin(), found.end(), 1);
  if (n_ <= 2)
    report.proven = true;
  else if (!settled_by_proof(clock, free_ends, found, report))
    run_search(clock, report, found);
  order = number_list(found);
  order_text = joined_by_blanks(order);
  cost = cost_of_path(dist_, found);
  report.seconds = clock.seconds_used();
  report.stopped = !report.proven && clock.stopped();
  if (report.proven)
    report.lower_bound = cost;
  return report;
}

// True when `order` is known to be the shortest path, or when nothing more is to be tried; otherwise it is the best
// that was met on the way.
bool class_math_TSP::settled_by_proof(const search_clock &clock, bool free_ends, path_order &order,
                                      tour_report &report) {
  if (!control_.prove || clock.stopped())
    return false;
  if (n_ <= most_for_subsets) { // quicker than one look at the time limit
    shortest_path_by_subsets(dist_, n_, free_ends ? 1 : 0, free_ends ? n_ : 0, order);
    report.proven = true;
  } else if (!free_ends && n_ <= most_for_proof && (time_limit_ > 0 || control_.steps > 0)) {
    // the bound is one of paths whose ends are free to choose
    proof_outcome outcome = prove_shortest_path(dist_, n_, clock.share(control_.guided ? share_for_proof : 1));
    order = std::move(outcome.order);
    report.proven = outcome.proven;
    report.lower_bound = std::max<std::int64_t>(outcome.lower_bound, 0);
    return report.proven || !control_.guided;
  }
  return report.proven;
}

// The guided search from the order of numbers; `order` keeps what it holds when that is shorter.
void class_math_TSP::run_search(const search_clock &clock, tour_report &report, path_order &order) {
  find_neighbour_radius();
  tour t(place(last_position()) + 1, 0);
  for (std::int32_t v = 1; v <= n_; ++v)
    t[place(v) + 1] = static_cast<std::int16_t>(v);
  optimise_tour(t, clock, report);
  path_order of_tour(tour_best_.begin() + 2, tour_best_.begin() + 2 + n_);
  const bool ends_are_given = dist_(0, 1) == 0; // then nothing else was searched
  if (ends_are_given || cost_of_path(dist_, of_tour) < cost_of_path(dist_, order))
    order = std::move(of_tour);
}

// ---- the guided search ---------------------------------------------------------------------------------------------

// The steps to the dummy don't count.
std::int64_t class_math_TSP::cost_of(const tour &t) const {
  std::int64_t cost = 0;
  for (std::int32_t k = 2; k <= n_; ++k)
    cost += dist_(t[place(k)], t[place(k) + 1]);
  return cost;
}

// With the steps to the dummy, which are all alike unless the ends are given: a tour with other ends never counts as
// better then.
std::int64_t class_math_TSP::compared_cost_of(const tour &t) const {
  return cost_of(t) + dist_(0, t[2]) + dist_(t[place(n_) + 1], 0);
}

bool class_math_TSP::limit_reached(const search_clock &clock, const tour_report &report) const {
  return clock.over() || (control_.steps > 0 && report.steps >= control_.steps);
}

void class_math_TSP::optimise_tour(tour &t, const search_clock &clock, tour_report &report) {
  tour_best_ = t;
  best_cost_ = compared_cost_of(t);
  dist_augmented_ = dist_;
  penalty_.assign(n_);
  penalty_kick_.assign(n_);
  active_.assign(place(last_position()) + 1, 0);
  n_active_ = 0;
  n_without_better_ = 0;
  two_opt_sweep(t, 1, n_, clock);
  remember_if_better(t);
  lambda_ = std::max(rounded(0.01 * static_cast<double>(cost_of(tour_best_)) / last_position()), 1);
  for (;;) {
    n_without_better_ = 0;
    do {
      guided_step(t, clock);
      ++report.steps;
      remember_if_better(t);
      if (limit_reached(clock, report))
        return;
    } while (n_without_better_ < most_without_better || n_active_ < least_active);
    do {
      kick(t, clock);
      ++report.steps;
      if (limit_reached(clock, report)) {
        remember_if_better(t);
        return;
      }
    } while (remember_if_better(t));
  }
}

bool class_math_TSP::remember_if_better(const tour &t) {
  const std::int64_t cost = compared_cost_of(t);
  if (cost >= best_cost_) {
    ++n_without_better_;
    return false;
  }
  best_cost_ = cost;
  tour_best_ = t;
  n_without_better_ = 0;
  // Deliberate: the weight that was computed at the start serves until the first new best only, then it is 1 for good.
  // The term that would renew it was never set, and orders are compared with those found so.
  lambda_ = 1;
  return true;
}

// One pass of plain 2-opt over the positions s to e, on the true distances; e + 2 is the dummy's place at the end.
void class_math_TSP::two_opt_sweep(tour &t, std::int32_t s, std::int32_t e, const search_clock &clock) const {
  for (std::int32_t i = s; i <= e - 2; ++i) {
    if (i % 64 == 0 && clock.over())
      return;
    for (std::int32_t j = i + 2; j <= e - 1; ++j) {
      const std::int32_t a = t[place(i)], b = t[place(i) + 1], c = t[place(j)], d = t[place(j) + 1];
      if (std::int64_t{dist_(c, a)} + dist_(b, d) < std::int64_t{dist_(b, a)} + dist_(c, d))
        std::reverse(t.begin() + i + 1, t.begin() + j + 1);
    }
  }
}

// The position of the edge to be punished: that of largest utility distance / (penalty + 1), the first of equals, or
// now and then any. Its penalty rises, and the positions around it become active.
std::int32_t class_math_TSP::choose_edge(const tour &t, square_array<std::int32_t> &penalty, double chance_of_random) {
  std::fill(active_.begin(), active_.end(), std::int16_t{0});
  std::int32_t chosen = 2;
  if (random_.uniform() > chance_of_random) {
    double largest = -std::numeric_limits<double>::max();
    for (std::int32_t k = 2; k <= n_; ++k) {
      const std::int32_t a = t[place(k)], b = t[place(k) + 1];
      const double utility = static_cast<double>(dist_(a, b)) / (penalty(a, b) + 1);
      if (utility > largest) {
        largest = utility;
        chosen = k;
      }
    }
  } else {
    chosen = rounded((last_position() - 4) * random_.uniform() + 2);
  }
  const std::int32_t a = t[place(chosen)], b = t[place(chosen) + 1];
  penalty(b, a) = ++penalty(a, b);
  activate_around(t, chosen, chosen + 1);
  return chosen;
}

void class_math_TSP::activate_around(const tour &t, std::int32_t p, std::int32_t q) {
  active_[place(p)] = active_[place(q)] = 1;
  const std::int32_t a = t[place(p)], b = t[place(q)];
  const std::int32_t radius_a = neighbour_radius_[place(a)], radius_b = neighbour_radius_[place(b)];
  n_active_ = 0;
  for (std::int32_t k = 2; k <= n_ + 1; ++k) {
    const std::int32_t v = t[place(k)];
    if (dist_(a, v) < radius_a || dist_(b, v) < radius_b)
      active_[place(k)] = 1;
    n_active_ += active_[place(k)];
  }
}

void class_math_TSP::guided_step(tour &t, const search_clock &clock) {
  kick_mode_ = 0;
  const std::int32_t k = choose_edge(t, penalty_, chance_of_random_step);
  const std::int32_t a = t[place(k)], b = t[place(k) + 1];
  dist_augmented_(a, b) += lambda_;
  dist_augmented_(b, a) = dist_augmented_(a, b);
  local_search(t, false, clock);
}

// 2-opt moves between active positions until a whole scan finds none. Flags are set here and never cleared: deliberate.
void class_math_TSP::local_search(tour &t, bool use_true_cost, const search_clock &clock) {
  const square_array<std::int32_t> &d = use_true_cost ? dist_ : dist_augmented_;
  const bool restart_after_move = !(use_true_cost && n_active_ >= many_active);
  bool over = false;
  while (local_scan(t, d, restart_after_move, clock, over) && !over) {
  }
}

// One scan; true when it made a move. `restart_after_move`: it ends with the first one.
bool class_math_TSP::local_scan(tour &t, const square_array<std::int32_t> &d, bool restart_after_move,
                                const search_clock &clock, bool &over) {
  std::int32_t first = 2, last = n_ + 1;
  while (first <= n_ - 1 && active_[place(first)] == 0)
    ++first;
  while (last > first && active_[place(last)] == 0)
    --last;
  if (first > n_ - 1 || last <= first)
    return false;
  bool moved = false;
  for (std::int32_t i = first; i <= last; ++i) {
    if (active_[place(i)] == 0)
      continue;
    for (std::int32_t j = i + 1; j <= last; ++j) {
      if (++polls_ % poll_stride == 0 && clock.over()) {
        over = true;
        return moved;
      }
      if (active_[place(j)] == 0)
        continue;
      const std::int32_t p = t[place(i) - 1], a = t[place(i)], b = t[place(j)], q = t[place(j) + 1];
      if (std::int64_t{d(b, p)} + d(q, a) >= std::int64_t{d(a, p)} + d(q, b))
        continue;
      std::reverse(t.begin() + i, t.begin() + j + 1);
      std::reverse(active_.begin() + i, active_.begin() + j + 1);
      active_[place(i) + 1] = active_[place(j) - 1] = 1;
      if (i > 2)
        active_[place(i) - 1] = 1;
      if (j < n_ + 1)
        active_[place(j) + 1] = 1;
      moved = true;
      if (restart_after_move)
        return true;
    }
  }
  return moved;
}

// Entry c takes every position from the c-th active one on, so that it ends up with the last one before the next active
// position: deliberate, the swaps of a kick then reach positions that aren't active.
void class_math_TSP::list_active_positions(std::vector<std::int32_t> &entries) {
  entries.assign(place(n_) + 1, 0);
  n_active_ = 0;
  for (std::int32_t k = 2; k <= n_ + 1; ++k) {
    n_active_ += active_[place(k)];
    entries[place(n_active_)] = k;
  }
}

void class_math_TSP::kick(tour &t, const search_clock &clock) {
  kick_mode_ = 1;
  tour copy = tour_best_;
  choose_edge(copy, penalty_kick_, chance_of_random_kick);
  std::vector<std::int32_t> entries;
  list_active_positions(entries);
  const double r = random_.uniform();
  for (std::int32_t swaps = rounded(20 * r * r + 5); swaps > 0; --swaps) {
    // the two ends of the edge are active, so that there are two entries at least
    const std::int32_t x = rounded((n_active_ - 1) * random_.uniform() + 1);
    std::int32_t y = x;
    while (y == x)
      y = rounded((n_active_ - 1) * random_.uniform() + 1);
    std::swap(copy[place(entries[place(x)])], copy[place(entries[place(y)])]);
  }
  local_search(copy, true, clock);
  if (compared_cost_of(copy) < best_cost_)
    t = std::move(copy);
}

} // namespace orb
