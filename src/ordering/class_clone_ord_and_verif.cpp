#include "ordering/class_clone_ord_and_verif.h"

#include <algorithm>
#include <numeric>

#include "frame/files.h"
#include "frame/numbers.h"
#include "frame/worker_batch.h"
#include "metrics/class_clone_dist_general.h"
#include "ordering/distance_file.h"

namespace orb {

namespace {

constexpr double no_link = 10000;        // distance of a pair at or below the cutoff
constexpr double link_less_score = 1000; // distance of a pair above it, less its score
constexpr std::int32_t poll_stride = 8;  // pairs: some metrics take milliseconds for one

std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

bool stopped(const std::atomic<bool> *stop) {
  return stop != nullptr && stop->load(std::memory_order_relaxed);
}

// The two generators of a run: one leaves out bands, one searches.
enum class drawn_for : std::uint64_t { bands = 0, search = 1 };
random_source generator_of(const project_settings &settings, const ordering_work &work, std::int32_t r, drawn_for use) {
  const std::uint64_t stream =
      (work.task.number + 1) << 24 | static_cast<std::uint64_t>(r) << 1 | static_cast<std::uint64_t>(use);
  return random_source(settings.seed, stream);
}

double mean_step(const square_array<double> &matrix, const std::vector<std::int32_t> &order) {
  double sum = 0;
  for (std::size_t i = 1; i < order.size(); ++i)
    sum += matrix(order[i - 1], order[i]);
  return order.empty() ? 0 : sum / static_cast<double>(order.size());
}

// A path and its mirror image are the same order. Run 0 is written so that its end of the lower number comes first, the
// others so that they go along with run 0: only then it makes sense to count who follows whom.
void turn_by_first_end(std::vector<std::int32_t> &order) {
  if (!order.empty() && order.front() > order.back())
    std::reverse(order.begin(), order.end());
}
void turn_along(const std::vector<std::int32_t> &leading, std::vector<std::int32_t> &order) {
  std::vector<std::int64_t> where(leading.size() + 1);
  for (std::size_t i = 0; i < leading.size(); ++i)
    where[place(leading[i])] = static_cast<std::int64_t>(i);
  const auto n = static_cast<std::int64_t>(order.size());
  std::int64_t together = 0; // sum of products of both places, each from the middle
  for (std::int64_t i = 0; i < n; ++i)
    together += (2 * i - n + 1) * (2 * where[place(order[static_cast<std::size_t>(i)])] - n + 1);
  if (together < 0)
    std::reverse(order.begin(), order.end());
}

// How often each clone followed each other one over all runs; row 0: how often it was an end.
void count_adjacency(ordering_work &work) {
  work.adjacency.assign(work.n_used());
  for (const ordering_run &run : work.runs) {
    if (run.order.empty())
      continue;
    ++work.adjacency(0, run.order.front());
    ++work.adjacency(0, run.order.back());
    for (std::size_t i = 1; i < run.order.size(); ++i)
      ++work.adjacency(run.order[i], run.order[i - 1]);
  }
}

std::vector<std::int32_t> consensus_order(const square_array<std::int32_t> &adjacency) {
  const std::int32_t n = adjacency.count();
  std::vector<std::int32_t> order;
  std::vector<std::uint8_t> used(place(n) + 1, 0);
  while (static_cast<std::int32_t>(order.size()) < n) {
    const auto votes = [&](std::int32_t v) { // as the next clone
      return order.empty() ? adjacency(0, v) : adjacency(v, order.back());
    };
    std::int32_t best = 0;
    for (std::int32_t v = 1; v <= n; ++v)
      if (used[place(v)] == 0 && (best == 0 || votes(v) > votes(best)))
        best = v;
    order.push_back(best);
    used[place(best)] = 1;
  }
  return order;
}

// A frame for a worker thread: it shows nothing and keeps the log lines for the calling thread.
front_end log_keeper(std::vector<std::string> &log) {
  front_end shown = null_front_end();
  shown.log_shown = [&log](const std::string &text) { log.push_back(text); };
  return shown;
}

} // namespace

bool ordering_work::proven() const {
  return !runs.empty() && runs.front().report.proven;
}

class_clone_ord_and_verif::class_clone_ord_and_verif(const metric_context &context, const class_net *net,
                                                     const ordering_options &options)
    : context_(&context), net_(net != nullptr && net->number_of_vertices_get() > 0 ? net : nullptr), options_(options) {
}

// ---- steps of the computation --------------------------------------------------------------------------------------

void class_clone_ord_and_verif::create_clone_is_not_excluded(const number_list &list, std::int32_t n,
                                                             const overlap_rule &rule,
                                                             std::vector<std::int16_t> &clone_is_not_excluded,
                                                             const metric_context &context,
                                                             const std::atomic<bool> *stop) {
  clone_is_not_excluded.assign(place(n) + 1, 1);
  class_clone_dist_calc calc(context, sums_weights(rule));
  for (std::int32_t i = 1; i <= n; ++i)
    for (std::int32_t j = i + 1; j <= n; ++j) {
      if (j % poll_stride == 0 && stopped(stop))
        return;
      calc.start_of_distance_calculation(list(i), list(j));
      const std::int16_t buried = calc.burring_index_get(rule.burying);
      if (buried == 1 || buried == 3)
        clone_is_not_excluded[place(i)] = 0;
      else if (buried == 2)
        clone_is_not_excluded[place(j)] = 0;
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
  try {
    create_clone_is_not_excluded(task.list, task.list.count(), task.rule, work.clone_is_not_excluded, own, stop);
  } catch (const program_end &end) {
    first.failure = end.what();
    first.failure_status = end.status();
  }
  for (std::int32_t i = 1; i <= task.list.count(); ++i)
    if (work.clone_is_not_excluded[place(i)] != 0)
      work.list_not_excluded.add(i);
}

void class_clone_ord_and_verif::compute_run(ordering_work &work, std::int32_t r, const std::atomic<bool> *stop) const {
  ordering_run &run = work.runs[place(r)];
  process_frame own_frame(log_keeper(run.log));
  // The exclusions are this run's own; run 0 counts all bands.
  class_usable_values own_usable;
  const bool as_they_are = r == 0 && !context_->usable_values.JK_on_bands_get();
  if (!as_they_are)
    own_usable = context_->usable_values;
  const metric_context own{own_frame, context_->settings, context_->database,
                           as_they_are ? context_->usable_values : own_usable, context_->table};
  square_array<double> matrix;
  std::int32_t n_used = 0, neighbour_rank = 0;
  double time_limit = 0;
  try {
    if (r > 0) {
      random_source chance = generator_of(context_->settings, work, r, drawn_for::bands);
      own_usable.create_band_is_not_excluded(own_frame, options_.t_JK_alpha, context_->database, chance);
    } else if (!as_they_are) {
      own_usable.JK_on_bands_set(false);
    }
    print_distance_matrix(work.task.list, work.list_not_excluded, work.task.rule, own, matrix, n_used, time_limit,
                          neighbour_rank, stop);
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
  std::vector<std::int32_t> old(place(n_used));
  std::iota(old.begin(), old.end(), 1);
  run.length_old = mean_step(matrix, old);
  if (work.task.flag)
    for (std::int32_t i = 1; i <= n_used; ++i)
      for (std::int32_t j = i + 1; j <= n_used; ++j)
        run.distances.push_back(whole_distance(matrix(i, j)));
}

// ---- all of them, on the calling thread ----------------------------------------------------------------------------

// The items on the worker threads while the frame is polled. `show` is called when the number of done items changed.
bool class_clone_ord_and_verif::run_batch(std::int64_t n,
                                          const std::function<void(std::int64_t, const std::atomic<bool> &)> &body,
                                          const std::function<void(std::int64_t)> &show) const {
  process_frame &frame = context_->frame;
  std::int64_t shown = -1;
  return run_and_poll(
      n, context_->settings.threads, [&](std::int64_t item, int, const std::atomic<bool> &stop) { body(item, stop); },
      [&](std::int64_t done) {
        if (done != shown)
          show(done);
        else
          frame.yield();
        shown = done;
        return !frame.stop_requested_get();
      });
}

bool class_clone_ord_and_verif::compute_all(std::span<const ordering_task> tasks, std::vector<ordering_work> &works) {
  process_frame &frame = context_->frame;
  works.assign(tasks.size(), {});
  const std::int32_t N = std::max(options_.t_JK_N, 0);
  const auto n_tasks = static_cast<std::int64_t>(tasks.size());
  const bool prepared = run_batch(
      n_tasks,
      [&](std::int64_t item, const std::atomic<bool> &stop) {
        prepare(tasks[static_cast<std::size_t>(item) - 1], works[static_cast<std::size_t>(item) - 1], &stop);
      },
      [&](std::int64_t) { frame.yield(); });
  if (!prepared)
    return false;
  // Every run of every contig is a piece of work; the largest contigs come first, so that none is left for the end.
  std::vector<std::pair<std::size_t, std::int32_t>> searches;
  for (std::size_t w = 0; w < works.size(); ++w)
    for (std::int32_t r = 0; r <= N; ++r)
      searches.emplace_back(w, r);
  std::stable_sort(searches.begin(), searches.end(),
                   [&](const auto &x, const auto &y) { return works[x.first].n_used() > works[y.first].n_used(); });
  const auto n_searches = static_cast<std::int64_t>(searches.size());
  if (N >= 1)
    frame.step_text_set("JK from " + std::to_string(N));
  const bool done = run_batch(
      n_searches,
      [&](std::int64_t item, const std::atomic<bool> &stop) {
        const auto [w, r] = searches[static_cast<std::size_t>(item) - 1];
        if (works[w].runs[place(r)].failure.empty())
          compute_run(works[w], r, &stop);
      },
      [&](std::int64_t n_done) {
        frame.local_process_text_set(n_tasks == 1
                                         ? "JK" + std::to_string(std::max<std::int64_t>(n_done - 1, 0))
                                         : "Orders " + std::to_string(n_done) + " from " + std::to_string(n_searches));
      });
  for (const ordering_work &work : works)
    for (const ordering_run &run : work.runs)
      if (!run.failure.empty())
        frame.program_end_now(run.failure, run.failure_status);
  if (!done)
    return false;
  for (ordering_work &work : works)
    conclude(work);
  return true;
}

// Adjacency over all runs and the consensus order from it.
void class_clone_ord_and_verif::conclude(ordering_work &work) const {
  turn_by_first_end(work.runs.front().order);
  for (std::size_t r = 1; r < work.runs.size(); ++r)
    turn_along(work.runs.front().order, work.runs[r].order);
  count_adjacency(work);
  work.consensus.order = consensus_order(work.adjacency);
  work.consensus.length_old = work.runs.front().length_old;
  // Measured on all bands, as the optimal order is, so that both lengths can be compared.
  class_usable_values all_bands;
  const bool as_they_are = !context_->usable_values.JK_on_bands_get();
  if (!as_they_are) {
    all_bands = context_->usable_values;
    all_bands.JK_on_bands_set(false);
  }
  const metric_context own{context_->frame, context_->settings, context_->database,
                           as_they_are ? context_->usable_values : all_bands, context_->table};
  class_clone_dist_calc calc(own, work.task.rule.weights);
  const std::vector<std::int32_t> &order = work.consensus.order;
  double sum = 0;
  for (std::size_t i = 1; i < order.size(); ++i) {
    std::int16_t buried = 0;
    double Rij = 0;
    const auto clone = [&](std::int32_t p) { return work.task.list(work.list_not_excluded(p)); };
    calculate_Rij(clone(std::min(order[i - 1], order[i])), clone(std::max(order[i - 1], order[i])), work.task.rule,
                  calc, buried, Rij);
    sum += Rij;
  }
  work.consensus.length = order.empty() ? 0 : sum / static_cast<double>(order.size());
  work.completed = true;
}

// ---- one contig by itself ------------------------------------------------------------------------------------------

void class_clone_ord_and_verif::run_JK_on_bands(const number_list &list, std::int32_t n, const overlap_rule &rule,
                                                const std::string &name, bool flag, const std::filesystem::path &folder,
                                                std::filesystem::path &file_order, std::uint64_t number) {
  std::vector<std::int16_t> clone_is_not_excluded;
  number_list order;
  run_JK_on_bands_new(list, n, rule, name, flag, folder, file_order, clone_is_not_excluded, order, number);
}

bool class_clone_ord_and_verif::run_JK_on_bands_new(const number_list &list, std::int32_t n, const overlap_rule &rule,
                                                    const std::string &name, bool flag,
                                                    const std::filesystem::path &folder,
                                                    std::filesystem::path &file_order,
                                                    std::vector<std::int16_t> &clone_is_not_excluded,
                                                    number_list &order, std::uint64_t number) {
  file_order.clear();
  clone_is_not_excluded.clear();
  order.clear();
  const ordering_task task{number_list(list.members().first(place(n))), rule, name, flag, folder, number};
  std::vector<ordering_work> works;
  if (!compute_all(std::span(&task, 1), works))
    return false;
  write(works.front(), file_order);
  clone_is_not_excluded = works.front().clone_is_not_excluded;
  order = order_of(works.front());
  return true;
}

// With jackknife runs this is the order of the last one, not that of run 0, which the order file holds, or of the
// consensus: deliberate, the column is the one that the later stages always took.
number_list class_clone_ord_and_verif::order_of(const ordering_work &work) {
  return work.runs.empty() ? number_list() : number_list(work.runs.back().order);
}

void class_clone_ord_and_verif::create_list_of_clones_after_ordering(
    const number_list &list, std::int32_t n, const std::vector<std::int16_t> &clone_is_not_excluded,
    const number_list &order, number_list &list_without_buried, number_list &list_ordered) {
  list_without_buried.clear();
  list_ordered.clear();
  for (std::int32_t i = 1; i <= n; ++i)
    if (clone_is_not_excluded[place(i)] != 0)
      list_without_buried.add(list(i));
  for (const std::int32_t p : order.members())
    list_ordered.add(list_without_buried(p));
}

} // namespace orb
