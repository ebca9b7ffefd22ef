// Orders the clones of a contig as a shortest path through a distance derived from the overlap score, and tests how
// stable the order is by repeating the run with bands left out at random (a jackknife on bands).
//
// The work on one contig is a computation that reads only (library, net, settings), draws from generators of its own
// and excludes bands in a copy of its own, so that any number of contigs and runs go side by side; and a writing of
// files and messages, which belongs to the calling thread. Results don't depend on the number of threads, but for
// searches that end by time.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "frame/lists.h"
#include "graph/class_net.h"
#include "metrics/class_clone_dist_calc.h"
#include "metrics/metric_context.h"
#include "metrics/overlap_rule.h"
#include "ordering/distance_file.h"
#include "ordering/follower_counts.h"
#include "ordering/square_array.h"
#include "ordering/tour_solver.h"
#include "ordering/window_joining.h"

namespace orb {

struct ordering_options {
  double seconds = 2;               // limit of each search
  std::int64_t steps = 0;           // above 0: limit of each search by steps in place of time
  std::int32_t t_JK_N = 0;          // jackknife runs
  double t_JK_alpha = 0.05;         // chance of leaving a band out, at most 0.8
  std::int32_t neighbour_rank = 30; // of the search
  bool prove = true;                // end a search at once when its order is proven to be the shortest
};

// One contig to be ordered.
struct ordering_task {
  number_list list;             // its clones
  overlap_rule rule;            // cutoff of links, burying fraction of clones left out
  std::string name;             // begins the tail of the file names
  bool flag = true;             // write "Input.dis" and its copies; off: consensus table and solution file instead
  std::filesystem::path folder; // of the files; empty: the working folder
  std::uint64_t number = 0;     // of the contig: its generators are streams of it
  // Twice the middle of each clone on the contig's axis, in bands, by position in the list from 0. With it a contig of
  // more than `most_in_one_search` clones is ordered in windows along the axis; without it as a whole, whatever that
  // takes.
  std::vector<std::int32_t> axis = {};
  bool shares_folder = false; // with other contigs: "Input.dis" bears the contig's name then, "Input_NAME.dis"
};

// The search for the order of one window of a long contig.
struct window_search {
  path_order order; // places in list_not_excluded
  tour_report report;
  std::vector<pair_distance> distances; // links of places i < j; only for "Input.dis"
  std::string failure;                  // why the program has to end; empty: it doesn't
  exit_status failure_status = exit_status::run_failed;
};

// One search: run 0 on all bands, the others on what the jackknife left.
struct ordering_run {
  std::vector<std::int32_t> order; // places 1..n_used in list_not_excluded, along the path
  double length = 0;               // mean step: sum of the steps divided by n_used
  double length_old = 0;           // of the list's own order
  std::int64_t cost = 0;           // of the search, in whole distances
  tour_report report;
  std::vector<std::int32_t> distances; // whole distances of the pairs i < j, row by row; only for "Input.dis"
  std::vector<window_search> windows;  // of a contig that is ordered in windows; their orders go into `order`
  std::vector<window_join> joins;      // of each window but the first with the one before it
  std::vector<std::string> log;        // lines for the log
  std::string failure;                 // why the program has to end; empty: it doesn't
  exit_status failure_status = exit_status::run_failed;
};

// What the computation gives and the writing takes.
struct ordering_work {
  ordering_task task;
  std::vector<std::int16_t> clone_is_not_excluded; // 1..n by position in the list; 0: buried
  number_list list_not_excluded;                   // positions in the list
  std::vector<ordering_run> runs;                  // 0..N
  ordering_run consensus;
  follower_counts adjacency;        // over all runs
  std::vector<std::int32_t> along;  // places in the order of the axis; empty: ordered as a whole
  std::vector<std::int32_t> rank;   // by place: where it stands there, from 0
  std::vector<axis_window> windows; // of these
  bool completed = false;           // false: stopped, nothing is to be written

  std::int32_t n_used() const { return list_not_excluded.count(); }
  std::int32_t n_jackknife() const { return static_cast<std::int32_t>(runs.size()) - 1; }
  // Column `r` of the orders: 0..N the runs, N + 1 the consensus.
  const ordering_run &column(std::int32_t r) const {
    return r > n_jackknife() ? consensus : runs[static_cast<std::size_t>(r)];
  }
  bool proven() const; // the order of run 0 is the shortest there is
  bool in_windows() const { return !windows.empty(); }
  std::int32_t n_windows_proven() const; // in run 0
  std::int32_t n_weak_joins() const;     // in run 0
};

class class_clone_ord_and_verif {
public:
  // `net`: the loaded net, asked only when the setting net_in_ordering is on; may be null or empty. Both must outlive
  // this.
  class_clone_ord_and_verif(const metric_context &context, const class_net *net, const ordering_options &options = {});

  // --- side by side ---
  // Orders all tasks on the worker threads of the settings while the calling thread polls the frame, which shows how
  // many searches are done in panels 2 and 3. False when the user stopped: works that aren't `completed` are to be
  // dropped. What ends the program on a worker thread ends it here.
  // `finished(i)`: on the calling thread, for each work from 0 as soon as it and all before it are completed; after a
  // stop for those behind that are completed all the same.
  bool compute_all(std::span<const ordering_task> tasks, std::vector<ordering_work> &works,
                   const std::function<void(std::size_t)> &finished = {});
  // Writes the files of a work, shows its messages and logs its lines. The file of the order is given back; empty when
  // the work isn't completed. Throws file_error.
  void write(const ordering_work &work, std::filesystem::path &file_order);

  // --- one contig ---
  void run_JK_on_bands(const number_list &list, std::int32_t n, const overlap_rule &rule, const std::string &name,
                       bool flag, const std::filesystem::path &folder, std::filesystem::path &file_order,
                       std::uint64_t number = 0);
  // compute_all of one task and write. `order`: places among the clones that aren't excluded. `number`: of the contig,
  // whose generators are its own. Returns false, with empty results and no file, when the user stopped.
  bool run_JK_on_bands_new(const number_list &list, std::int32_t n, const overlap_rule &rule, const std::string &name,
                           bool flag, const std::filesystem::path &folder, std::filesystem::path &file_order,
                           std::vector<std::int16_t> &clone_is_not_excluded, number_list &order,
                           std::uint64_t number = 0);
  // `list_without_buried`: the list without excluded clones, in list order; `list_ordered`: the same in the order.
  static void create_list_of_clones_after_ordering(const number_list &list, std::int32_t n,
                                                   const std::vector<std::int16_t> &clone_is_not_excluded,
                                                   const number_list &order, number_list &list_without_buried,
                                                   number_list &list_ordered);
  // The order that a work gives back: column N of the orders.
  static number_list order_of(const ordering_work &work);

  // --- steps of the computation; safe on worker threads with a context of their own ---
  // Every pair of the list is looked at, those with a clone that is excluded already too: O(n^2) band comparisons. With
  // an `axis` (see ordering_task) only the pairs that can be near each other on it. `stop` may be null; when it turns
  // true the rest isn't looked at.
  static void create_clone_is_not_excluded(const number_list &list, std::int32_t n, const overlap_rule &rule,
                                           std::vector<std::int16_t> &clone_is_not_excluded,
                                           const metric_context &context, const std::atomic<bool> *stop = nullptr,
                                           std::span<const std::int32_t> axis = {});
  // Distances of all pairs of clones that aren't excluded, 1-based both ways, and what the search is run with.
  void print_distance_matrix(const number_list &list, const number_list &list_not_excluded, const overlap_rule &rule,
                             const metric_context &context, square_array<double> &matrix, std::int32_t &n_used,
                             double &time_limit, std::int32_t &neighbour_rank,
                             const std::atomic<bool> *stop = nullptr) const;
  // Rij: 1000 minus the score of a pair above the cutoff, otherwise 10000, which is no link. `buried`: burial code as
  // seen from clone 1.
  void calculate_Rij(clone_number clone_1, clone_number clone_2, const overlap_rule &rule, class_clone_dist_calc &calc,
                     std::int16_t &buried, double &Rij) const;

  // --- texts of the files, lines with their ends ---
  // The table of column `r` of the orders (N + 1: the consensus).
  static std::string print_order_control(const ordering_work &work, std::int32_t r, const class_DB_of_clones &database);
  static std::string solution_text(const ordering_work &work, const class_DB_of_clones &database);
  // NAME_METRIC_CfCUTOFF_pABSORB.txt
  static std::string tail_of_files(const ordering_task &task);

private:
  // A run of a work (both from 0), whole or a window of it (from 0).
  struct search_piece {
    std::size_t work;
    std::int32_t r, window = whole;
    static constexpr std::int32_t whole = -1;
  };
  // What is left to be done: pieces of each run, and runs of each work.
  struct open_searches {
    explicit open_searches(const std::vector<ordering_work> &works);
    std::vector<std::vector<std::atomic<std::int32_t>>> pieces;
    std::vector<std::atomic<std::int32_t>> runs;
  };
  void prepare(const ordering_task &task, ordering_work &work, const std::atomic<bool> *stop) const;
  std::vector<search_piece> pieces_of(const std::vector<ordering_work> &works) const;
  void search(std::vector<ordering_work> &works, const search_piece &piece, open_searches &open,
              const std::atomic<bool> &stop) const;
  void end_on_failure(const ordering_work &work) const;
  void compute_run(ordering_work &work, std::int32_t r, const std::atomic<bool> *stop) const;
  void compute_window(ordering_work &work, std::int32_t r, std::int32_t window, const std::atomic<bool> *stop) const;
  void join_run(ordering_work &work, std::int32_t r, const std::atomic<bool> *stop) const;
  double mean_step_along(const ordering_work &work, const path_order &order, const metric_context &context,
                         const std::atomic<bool> *stop = nullptr) const;
  bool run_batch(std::int64_t n, const std::function<void(std::int64_t, const std::atomic<bool> &)> &body,
                 const std::function<void(std::int64_t)> &show) const;
  void conclude(ordering_work &work) const;
  void write_distance_files(const ordering_work &work, const std::filesystem::path &folder) const;

  const metric_context *context_;
  const class_net *net_;
  ordering_options options_;
};

} // namespace orb
