// The computation on one contig: what happens on worker threads.
#include <algorithm>
#include <numeric>

#include "ordering/class_clone_ord_and_verif.h"

namespace orb {

namespace {

constexpr std::int32_t most_compared_with_all = 1200; // clones: of longer contigs, only near pairs are compared
constexpr double no_link = 10000;                     // distance of a pair at or below the cutoff
constexpr double link_less_score = 1000;              // distance of a pair above it, less its score
constexpr std::int32_t poll_stride = 8;               // pairs: some metrics take milliseconds for one

std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

bool stopped(const std::atomic<bool> *stop) {
  return stop != nullptr && stop->load(std::memory_order_relaxed);
}

// The generators of a run: one leaves out bands, one searches; each window searches with one of its own.
enum class drawn_for : std::uint64_t { bands = 0, search = 1 };
random_source generator_of(const project_settings &settings, const ordering_work &work, std::int32_t r, drawn_for use,
                           std::int32_t window = 0) {
  const std::uint64_t stream =
      (work.task.number + 1) << 24 | static_cast<std::uint64_t>(r) << 1 | static_cast<std::uint64_t>(use);
  constexpr std::uint64_t far_apart = 0x9E3779B97F4A7C15; // an odd number without a pattern in its bits
  return random_source(settings.seed + far_apart * static_cast<std::uint64_t>(window), stream);
}

double mean_step(const square_array<double> &matrix, const path_order &order) {
  double sum = 0;
  for (std::size_t i = 1; i < order.size(); ++i)
    sum += matrix(order[i - 1], order[i]);
  return order.empty() ? 0 : sum / static_cast<double>(order.size());
}

// A frame for a worker thread: it shows nothing and keeps the log lines for the calling thread.
front_end log_keeper(std::vector<std::string> &log) {
  front_end shown = null_front_end();
  shown.log_shown = [&log](const std::string &text) { log.push_back(text); };
  return shown;
}

// With what a run compares clones, on a thread of its own. The bands that it leaves out are its own; run 0 counts all.
class context_of_run {
public:
  context_of_run(const metric_context &shared, const ordering_work &work, std::int32_t r, double alpha,
                 std::vector<std::string> &log)
      : frame_(log_keeper(log)), as_they_are_(r == 0 && !shared.usable_values.JK_on_bands_get()),
        context{frame_, shared.settings, shared.database, as_they_are_ ? shared.usable_values : usable_, shared.table} {
    if (as_they_are_)
      return;
    usable_ = shared.usable_values;
    if (r == 0) {
      usable_.JK_on_bands_set(false);
      return;
    }
    random_source chance = generator_of(shared.settings, work, r, drawn_for::bands);
    usable_.create_band_is_not_excluded(frame_, alpha, shared.database, chance);
  }

private:
  process_frame frame_;
  class_usable_values usable_;
  bool as_they_are_;

public:
  const metric_context context;
};

// The numbers 1..n by their middles on the axis, the lower one of equals first.
template <class Middle> std::vector<std::int32_t> numbers_along(std::int32_t n, const Middle &middle_of) {
  std::vector<std::int32_t> along(place(n));
  std::iota(along.begin(), along.end(), 1);
  std::stable_sort(along.begin(), along.end(),
                   [&](std::int32_t a, std::int32_t b) { return middle_of(a) < middle_of(b); });
  return along;
}

} // namespace

// ---- steps of the computation --------------------------------------------------------------------------------------

void class_clone_ord_and_verif::create_clone_is_not_excluded(
    const number_list &list, std::int32_t n, const overlap_rule &rule, std::vector<std::int16_t> &clone_is_not_excluded,
    const metric_context &context, const std::atomic<bool> *stop, std::span<const std::int32_t> axis) {
  clone_is_not_excluded.assign(place(n) + 1, 1);
  class_clone_dist_calc calc(context, sums_weights(rule));
  std::int32_t n_looked_at = 0;
  const auto look_at = [&](std::int32_t i, std::int32_t j) { // false: stopped
    if (++n_looked_at % poll_stride == 0 && stopped(stop))
      return false;
    calc.start_of_distance_calculation(list(i), list(j));
    const std::int16_t buried = calc.burring_index_get(rule.burying);
    if (buried == 1 || buried == 3)
      clone_is_not_excluded[place(i)] = 0;
    else if (buried == 2)
      clone_is_not_excluded[place(j)] = 0;
    return true;
  };
  if (axis.empty()) {
    for (std::int32_t i = 1; i <= n; ++i)
      for (std::int32_t j = i + 1; j <= n; ++j)
        if (!look_at(i, j))
          return;
    return;
  }
  const std::vector<std::int32_t> along = numbers_along(n, [&](std::int32_t i) { return axis[place(i) - 1]; });
  std::int32_t most_bands = 0;
  for (const clone_number clone : list.members())
    most_bands = std::max(most_bands, context.database.number_of_bands_in_clone_get(clone));
  for (std::size_t first = 0; first < along.size(); ++first) {
    // middles up to the sum of both lengths apart: twice as far as clones that touch, as the axis isn't exact
    const std::int32_t i = along[first], n_bands = context.database.number_of_bands_in_clone_get(list(i));
    const std::int64_t reach = axis[place(i) - 1] + 2 * std::int64_t{n_bands + most_bands};
    for (std::size_t next = first + 1; next < along.size() && axis[place(along[next]) - 1] <= reach; ++next)
      if (!look_at(std::min(i, along[next]), std::max(i, along[next])))
        return;
  }
}

void class_clone_ord_and_verif::calculate_Rij(clone_number clone_1, clone_number clone_2, const overlap_rule &rule,
                                              class_clone_dist_calc &calc, std::int16_t &buried, double &Rij) const {
  double value = 0;
  buried = 0;
  if (context_->settings.net_in_ordering) {
    double value_of_net = 0;
    std::int16_t mark = 0;
    if (net_ != nullptr && net_->overlap_of_pair(clone_1, clone_2, value_of_net, mark, buried))
      value = calc.minus_log10_p_value_of_clone_overlapping(clone_1, clone_2, rule.distance_index);
  } else {
    value = calc.minus_log10_p_value_of_clone_overlapping(clone_1, clone_2, rule.distance_index);
    buried = calc.burring_index_get(rule.burying);
  }
  value = std::max(value, 1.0);
  Rij = value <= rule.cutoff ? no_link : link_less_score - value;
}

void class_clone_ord_and_verif::print_distance_matrix(const number_list &list, const number_list &list_not_excluded,
                                                      const overlap_rule &rule, const metric_context &context,
                                                      square_array<double> &matrix, std::int32_t &n_used,
                                                      double &time_limit, std::int32_t &neighbour_rank,
                                                      const std::atomic<bool> *stop) const {
  n_used = list_not_excluded.count();
  time_limit = options_.seconds;
  neighbour_rank = options_.neighbour_rank;
  matrix.assign(n_used);
  class_clone_dist_calc calc(context, rule.weights);
  std::int16_t buried = 0;
  for (std::int32_t i = 1; i <= n_used; ++i)
    for (std::int32_t j = i + 1; j <= n_used; ++j) {
      if (j % poll_stride == 0 && stopped(stop))
        return;
      double Rij = 0;
      calculate_Rij(list(list_not_excluded(i)), list(list_not_excluded(j)), rule, calc, buried, Rij);
      matrix(i, j) = matrix(j, i) = Rij;
    }
}

// ---- one contig, on worker threads ---------------------------------------------------------------------------------

void class_clone_ord_and_verif::prepare(const ordering_task &task, ordering_work &work,
                                        const std::atomic<bool> *stop) const {
  work = {};
  work.task = task;
  work.runs.resize(place(std::max(options_.t_JK_N, 0)) + 1);
  ordering_run &first = work.runs.front();
  process_frame own_frame(log_keeper(first.log));
  const metric_context own{own_frame, context_->settings, context_->database, context_->usable_values, context_->table};
  const bool all_pairs = task.list.count() <= most_compared_with_all;
  try {
    create_clone_is_not_excluded(task.list, task.list.count(), task.rule, work.clone_is_not_excluded, own, stop,
                                 all_pairs ? std::span<const std::int32_t>() : task.axis);
  } catch (const program_end &end) {
    first.failure = end.what();
    first.failure_status = end.status();
  }
  for (std::int32_t i = 1; i <= task.list.count(); ++i)
    if (work.clone_is_not_excluded[place(i)] != 0)
      work.list_not_excluded.add(i);
  if (task.axis.empty() || work.n_used() <= most_in_one_search || !first.failure.empty())
    return;
  work.along =
      numbers_along(work.n_used(), [&](std::int32_t p) { return task.axis[place(work.list_not_excluded(p)) - 1]; });
  work.rank.assign(place(work.n_used()) + 1, 0);
  for (std::size_t i = 0; i < work.along.size(); ++i)
    work.rank[place(work.along[i])] = static_cast<std::int32_t>(i);
  work.windows = windows_along_axis(work.n_used());
  for (ordering_run &run : work.runs)
    run.windows.resize(work.windows.size());
}

void class_clone_ord_and_verif::compute_run(ordering_work &work, std::int32_t r, const std::atomic<bool> *stop) const {
  ordering_run &run = work.runs[place(r)];
  square_array<double> matrix;
  std::int32_t n_used = 0, neighbour_rank = 0;
  double time_limit = 0;
  try {
    const context_of_run own(*context_, work, r, options_.t_JK_alpha, run.log);
    print_distance_matrix(work.task.list, work.list_not_excluded, work.task.rule, own.context, matrix, n_used,
                          time_limit, neighbour_rank, stop);
  } catch (const program_end &end) {
    run.failure = end.what();
    run.failure_status = end.status();
    return;
  }
  if (stopped(stop))
    return;
  random_source chance = generator_of(context_->settings, work, r, drawn_for::search);
  class_math_TSP tourer(chance,
                        {.steps = options_.steps, .prove = options_.prove, .stop = [stop] { return stopped(stop); }});
  std::string order_text;
  number_list order;
  run.report = tourer.Run_Tourer(false, n_used, time_limit, neighbour_rank, matrix, order_text, order, run.cost, false);
  run.order.assign(order.members().begin(), order.members().end());
  run.length = mean_step(matrix, run.order);
  path_order old(place(n_used));
  std::iota(old.begin(), old.end(), 1);
  run.length_old = mean_step(matrix, old);
  if (work.task.flag)
    for (std::int32_t i = 1; i <= n_used; ++i)
      for (std::int32_t j = i + 1; j <= n_used; ++j)
        run.distances.push_back(whole_distance(matrix(i, j)));
}

// A window by itself, on the distances of its own clones only. Without a proof the best order met on the way to one
// stands: the bounded work on it is the same on every machine, and long contigs have too many windows to spend the
// whole limit on each.
void class_clone_ord_and_verif::compute_window(ordering_work &work, std::int32_t r, std::int32_t window,
                                               const std::atomic<bool> *stop) const {
  window_search &search = work.runs[place(r)].windows[place(window)];
  const axis_window &ranks = work.windows[place(window)];
  std::vector<std::int32_t> places(work.along.begin() + ranks.first, work.along.begin() + ranks.last + 1);
  std::sort(places.begin(), places.end());
  number_list positions;
  for (const std::int32_t p : places)
    positions.add(work.list_not_excluded(p));
  square_array<double> matrix;
  std::int32_t n_used = 0, neighbour_rank = 0;
  double time_limit = 0;
  std::vector<std::string> log; // the run's own has these lines already
  try {
    const context_of_run own(*context_, work, r, options_.t_JK_alpha, log);
    print_distance_matrix(work.task.list, positions, work.task.rule, own.context, matrix, n_used, time_limit,
                          neighbour_rank, stop);
  } catch (const program_end &end) {
    search.failure = end.what();
    search.failure_status = end.status();
    return;
  }
  if (stopped(stop))
    return;
  random_source chance = generator_of(context_->settings, work, r, drawn_for::search, window);
  class_math_TSP tourer(chance, {.steps = options_.steps, .prove = options_.prove, .guided = false, .stop = [stop] {
                                   return stopped(stop);
                                 }});
  std::string order_text;
  number_list order;
  std::int64_t cost = 0;
  search.report = tourer.Run_Tourer(false, n_used, time_limit, neighbour_rank, matrix, order_text, order, cost, false);
  std::vector<path_order> pieces; // where no link leads on, the axis knows better than chance
  for (std::int32_t k = 1; k <= order.count(); ++k) {
    if (k == 1 || matrix(order(k - 1), order(k)) >= no_link)
      pieces.emplace_back();
    pieces.back().push_back(places[place(order(k)) - 1]);
  }
  search.order = pieces_along_axis(work.rank, std::move(pieces));
  if (work.task.flag)
    for (std::int32_t i = 1; i <= n_used; ++i)
      for (std::int32_t j = i + 1; j <= n_used; ++j)
        if (matrix(i, j) < no_link)
          search.distances.push_back({places[place(i) - 1], places[place(j) - 1], whole_distance(matrix(i, j))});
}

// The order of a run from those of its windows, its length, and what its searches say together.
void class_clone_ord_and_verif::join_run(ordering_work &work, std::int32_t r, const std::atomic<bool> *stop) const {
  ordering_run &run = work.runs[place(r)];
  std::vector<path_order> orders;
  for (window_search &window : run.windows) {
    orders.push_back(std::move(window.order));
    run.report.steps += window.report.steps;
    run.report.seconds += window.report.seconds;
    if (run.report.message.empty())
      run.report.message = window.report.message;
  }
  run.order = join_windows(work.rank, std::move(orders), run.joins);
  const context_of_run own(*context_, work, r, options_.t_JK_alpha, run.log);
  run.length = mean_step_along(work, run.order, own.context, stop);
  path_order old(place(work.n_used()));
  std::iota(old.begin(), old.end(), 1);
  run.length_old = mean_step_along(work, old, own.context, stop);
}

double class_clone_ord_and_verif::mean_step_along(const ordering_work &work, const path_order &order,
                                                  const metric_context &context, const std::atomic<bool> *stop) const {
  class_clone_dist_calc calc(context, work.task.rule.weights);
  const auto clone = [&](std::int32_t p) { return work.task.list(work.list_not_excluded(p)); };
  double sum = 0;
  for (std::size_t i = 1; i < order.size(); ++i) {
    if (i % place(poll_stride) == 0 && stopped(stop))
      return 0;
    std::int16_t buried = 0;
    double Rij = 0;
    calculate_Rij(clone(std::min(order[i - 1], order[i])), clone(std::max(order[i - 1], order[i])), work.task.rule,
                  calc, buried, Rij);
    sum += Rij;
  }
  return order.empty() ? 0 : sum / static_cast<double>(order.size());
}

} // namespace orb
