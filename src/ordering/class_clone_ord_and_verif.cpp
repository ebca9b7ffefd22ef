#include "ordering/class_clone_ord_and_verif.h"

#include <algorithm>
#include <numeric>

#include "frame/worker_batch.h"

namespace orb {

namespace {

std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
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

} // namespace

bool ordering_work::proven() const {
  return !runs.empty() && runs.front().report.proven;
}

std::int32_t ordering_work::n_windows_proven() const {
  const std::vector<window_search> &searches = runs.front().windows;
  return static_cast<std::int32_t>(
      std::count_if(searches.begin(), searches.end(), [](const window_search &w) { return w.report.proven; }));
}

std::int32_t ordering_work::n_weak_joins() const {
  const std::vector<window_join> &joins = runs.front().joins;
  return static_cast<std::int32_t>(
      std::count_if(joins.begin(), joins.end(), [](const window_join &join) { return join.is_weak(); }));
}

class_clone_ord_and_verif::class_clone_ord_and_verif(const metric_context &context, const class_net *net,
                                                     const ordering_options &options)
    : context_(&context), net_(net != nullptr && net->number_of_vertices_get() > 0 ? net : nullptr), options_(options) {
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

// Every run of every contig is a piece of work, and every window of a long one; the largest come first, so that none is
// left for the end.
std::vector<class_clone_ord_and_verif::search_piece>
class_clone_ord_and_verif::pieces_of(const std::vector<ordering_work> &works) const {
  std::vector<search_piece> pieces;
  for (std::size_t i = 0; i < works.size(); ++i)
    for (std::int32_t r = 0; r <= works[i].n_jackknife(); ++r) {
      if (!works[i].in_windows())
        pieces.push_back({i, r});
      for (std::int32_t window = 0; window < static_cast<std::int32_t>(works[i].windows.size()); ++window)
        pieces.push_back({i, r, window});
    }
  const auto size_of = [&works](const search_piece &piece) {
    const ordering_work &work = works[piece.work];
    return piece.window == search_piece::whole ? work.n_used() : work.windows[place(piece.window)].count();
  };
  std::stable_sort(pieces.begin(), pieces.end(),
                   [&](const search_piece &x, const search_piece &y) { return size_of(x) > size_of(y); });
  return pieces;
}

class_clone_ord_and_verif::open_searches::open_searches(const std::vector<ordering_work> &works)
    : pieces(works.size()), runs(works.size()) {
  for (std::size_t i = 0; i < works.size(); ++i) {
    runs[i] = static_cast<std::int32_t>(works[i].runs.size());
    pieces[i] = std::vector<std::atomic<std::int32_t>>(works[i].runs.size());
    for (std::atomic<std::int32_t> &of_run : pieces[i])
      of_run = std::max(static_cast<std::int32_t>(works[i].windows.size()), 1);
  }
}

// On a worker thread. Whoever does the last window of a run joins them. What was told to stop stays open.
void class_clone_ord_and_verif::search(std::vector<ordering_work> &works, const search_piece &piece,
                                       open_searches &open, const std::atomic<bool> &stop) const {
  ordering_work &work = works[piece.work];
  if (piece.window != search_piece::whole)
    compute_window(work, piece.r, piece.window, &stop);
  else if (work.runs[place(piece.r)].failure.empty())
    compute_run(work, piece.r, &stop);
  if (stop || --open.pieces[piece.work][place(piece.r)] > 0)
    return;
  if (work.in_windows())
    join_run(work, piece.r, &stop);
  if (!stop)
    --open.runs[piece.work];
}

void class_clone_ord_and_verif::end_on_failure(const ordering_work &work) const {
  for (const ordering_run &run : work.runs) {
    if (!run.failure.empty())
      context_->frame.program_end_now(run.failure, run.failure_status);
    for (const window_search &window : run.windows)
      if (!window.failure.empty())
        context_->frame.program_end_now(window.failure, window.failure_status);
  }
}

bool class_clone_ord_and_verif::compute_all(std::span<const ordering_task> tasks, std::vector<ordering_work> &works,
                                            const std::function<void(std::size_t)> &finished) {
  process_frame &frame = context_->frame;
  works.assign(tasks.size(), {});
  const bool prepared = run_batch(
      static_cast<std::int64_t>(tasks.size()),
      [&](std::int64_t item, const std::atomic<bool> &stop) {
        prepare(tasks[static_cast<std::size_t>(item) - 1], works[static_cast<std::size_t>(item) - 1], &stop);
      },
      [&](std::int64_t) { frame.yield(); });
  if (!prepared)
    return false;
  const std::vector<search_piece> pieces = pieces_of(works);
  const auto n_pieces = static_cast<std::int64_t>(pieces.size());
  const bool runs_only = works.size() == 1 && !works.front().in_windows();
  open_searches open(works);
  std::size_t next = 0;
  const auto finish = [&](std::size_t i) {
    end_on_failure(works[i]);
    conclude(works[i]);
    if (finished)
      finished(i);
  };
  if (options_.t_JK_N >= 1)
    frame.step_text_set("JK from " + std::to_string(options_.t_JK_N));
  const bool done = run_batch(
      n_pieces,
      [&](std::int64_t item, const std::atomic<bool> &stop) {
        search(works, pieces[static_cast<std::size_t>(item) - 1], open, stop);
      },
      [&](std::int64_t n_done) {
        frame.progress(n_done, n_pieces);
        frame.local_process_text_set(runs_only
                                         ? "JK" + std::to_string(std::max<std::int64_t>(n_done - 1, 0))
                                         : "Orders " + std::to_string(n_done) + " from " + std::to_string(n_pieces));
        while (next < works.size() && open.runs[next] == 0 && !frame.stop_requested_get())
          finish(next++);
      });
  for (; next < works.size(); ++next)
    if (open.runs[next] == 0)
      finish(next);
  return done;
}

// Adjacency over all runs and the consensus order from it.
void class_clone_ord_and_verif::conclude(ordering_work &work) const {
  turn_by_first_end(work.runs.front().order);
  for (std::size_t r = 1; r < work.runs.size(); ++r)
    turn_along(work.runs.front().order, work.runs[r].order);
  work.adjacency = follower_counts(work.n_used());
  for (const ordering_run &run : work.runs)
    work.adjacency.count(run.order);
  work.consensus.order = work.adjacency.consensus();
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
  work.consensus.length = mean_step_along(work, work.consensus.order, own);
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
