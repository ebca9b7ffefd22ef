// Q-overlaps and Q-clones: what breaks the locally linear structure of a net of clone overlaps.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <optional>
#include <vector>

#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "frame/worker_batch.h"
#include "frame/worker_blocks.h"
#include "graph/component_lists.h"
#include "net/class_clone_net_signif.h"
#include "net/clone_depth.h"
#include "net/clone_test.h"
#include "net/form_setting_QQ.h"
#include "net/q_mark.h"
#include "net/suspect_table.h"

namespace orb {

namespace {

// Ends of the reports' names.
constexpr const char *overlaps_report = "_Q_overlaps.txt";
constexpr const char *test_report_of_clones = "_test_of_clones_for_Q.txt";
constexpr const char *clones_report = "_Q_clones.txt";
constexpr const char *depths_report = "_Q_clones_depth.txt";
constexpr const char *suspects_report = "_suspects.txt";
constexpr std::int32_t largest_rank = 50;
constexpr vertex_number vertices_in_block = 1024, vertices_in_piece = 16; // blocks that take long are smaller
constexpr std::int64_t status_stride = 100;                               // records, or clones

// Name and number of bands of a clone, with a tab between; empty and 0 beyond the library.
std::string name_and_bands(const class_DB_of_clones &database, clone_number clone) {
  if (clone > database.total_number_of_clones_get())
    return "\t0";
  return database.name_of_clone_get(clone) + "\t" + std::to_string(database.number_of_bands_in_clone_get(clone));
}

// What a worker writes into while it judges one vertex.
struct worker_space {
  net_workspace walk;
  std::vector<std::uint64_t> neighbour_bits; // bit v % 64 of word v / 64; all 0 between two vertices
};

// n_clusters of each record of v, in run order: 1 means that the record is supported within `max_rank` steps. A common
// neighbour supports it at any rank; a scan for one in bits that stay in the nearest cache settles almost all records.
void clusters_of_edges(const class_net &net, vertex_number v, std::int32_t max_rank, worker_space &space,
                       const std::atomic<bool> &stopped, std::vector<std::int32_t> &n_clusters) {
  const auto run = net.edges_of_vertex(v);
  std::vector<std::uint64_t> &bits = space.neighbour_bits;
  bits.resize(static_cast<std::size_t>(net.number_of_vertices_get()) / 64 + 1);
  for (const net_edge &edge : run)
    bits[static_cast<std::size_t>(edge.neighbour) / 64] |= std::uint64_t{1} << edge.neighbour % 64;
  n_clusters.assign(run.size(), 2);
  for (std::size_t k = 0; k < run.size() && !stopped; ++k) {
    const auto other = net.edges_of_vertex(run[k].neighbour);
    const bool supported = std::any_of(other.begin(), other.end(), [&bits](const net_edge &edge) {
      return (bits[static_cast<std::size_t>(edge.neighbour) / 64] >> edge.neighbour % 64 & 1) != 0;
    });
    if (supported)
      n_clusters[k] = 1;
    else if (max_rank > 1)
      net.edge_net_characteristic(v, static_cast<std::int32_t>(k) + 1, n_clusters[k], max_rank, space.walk);
  }
  for (const net_edge &edge : run)
    bits[static_cast<std::size_t>(edge.neighbour) / 64] = 0;
}

// Blocks as large as fit a tenth of a second, so that the status follows the work at any rank. What is found depends on
// no size.
class block_size {
public:
  vertex_number get() const { return size_; }
  void block_done() {
    const auto now = std::chrono::steady_clock::now();
    if (now - began_ > wanted)
      size_ = std::max(size_ / 2, vertices_in_piece);
    else if (now - began_ < wanted / 4)
      size_ = std::min(size_ * 2, vertices_in_block);
    began_ = now;
  }

private:
  static constexpr std::chrono::milliseconds wanted{100};
  vertex_number size_ = 4 * vertices_in_piece;
  std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
};

// Runs `judge(v, place in block, space, stopped)` for all vertices on the workers and `report(v, place)` for each in
// order on the calling thread, which polls for a stop meanwhile. True when all was done; after a stop nothing of the
// block at work is reported.
template <class judge_function, class report_function>
bool for_all_vertices(process_frame &frame, const class_net &net, int threads, judge_function &&judge,
                      report_function &&report) {
  std::vector<worker_space> spaces(static_cast<std::size_t>(worker_count(threads)));
  const vertex_number n = net.number_of_vertices_get();
  block_size block;
  for (vertex_number first = 1, last = 0; first <= n; first = last + 1) {
    last = std::min(n, first + block.get() - 1);
    const std::int64_t n_pieces = (last - first) / vertices_in_piece + 1;
    const auto judge_piece = [&](std::int64_t piece, int worker, const std::atomic<bool> &stopped) {
      const auto begin = static_cast<vertex_number>(first + (piece - 1) * vertices_in_piece);
      for (vertex_number v = begin; v <= std::min(last, begin + vertices_in_piece - 1) && !stopped; ++v)
        judge(v, static_cast<std::size_t>(v - first), spaces[static_cast<std::size_t>(worker)], stopped);
    };
    if (!run_and_poll(n_pieces, threads, judge_piece, [&](std::int64_t) { return frame.goes_on(); }))
      return false;
    for (vertex_number v = first; v <= last; ++v)
      report(v, static_cast<std::size_t>(v - first));
    block.block_done();
  }
  return true;
}

constexpr const char *overlaps_head = "k\ti1\tclone1\tn_bands\tn_overlaps\ti2\tclone2\tn_bands\tn_overlaps\t"
                                      "-log(Pr(overlap))\tburied\tn_clusters";

std::string overlap_row(const class_net &net, const class_DB_of_clones &database, std::int32_t n_Q, vertex_number v,
                        const net_edge &edge, std::int32_t n_clusters) {
  const auto end_of = [&](vertex_number at) {
    return std::to_string(at) + "\t" + name_and_bands(database, at) + "\t" +
           std::to_string(net.number_of_edges_for_vertex_total_get(at));
  };
  return std::to_string(n_Q) + "\t" + end_of(v) + "\t" + end_of(edge.neighbour) + "\t" + number_text(edge.value, 2) +
         "\t" + (edge.index2 >= 1 ? "abs" + std::to_string(edge.index2) : "") + "\t" + std::to_string(n_clusters);
}

// A net that is revised where it stands, and becomes what it was unless the revision is kept.
class revision_in_place {
public:
  explicit revision_in_place(class_net &net) : net_(net) {}
  ~revision_in_place() {
    if (taken_.empty())
      return;
    for (; !taken_.empty(); taken_.pop_back())
      net_.put_back_edges(std::move(taken_.back()));
    net_.test_neighbours_sorted();
  }
  revision_in_place(const revision_in_place &) = delete;
  revision_in_place &operator=(const revision_in_place &) = delete;

  // The overlaps at these ascending places, and those that bore the mark before.
  void take_out_overlaps(const std::vector<edge_adress> &found) {
    auto next = found.begin();
    take_out([&](vertex_number, edge_adress e, const net_edge &edge) {
      const bool is_found = next != found.end() && *next == e;
      next += is_found;
      return is_found || edge.index1 == q_mark;
    });
  }
  // These clones, and those that bore the mark before, stay as marked vertices without overlaps.
  void disconnect(const std::vector<vertex_number> &found) {
    std::vector<char> is_Q(static_cast<std::size_t>(net_.number_of_vertices_get()) + 1, 0);
    for (vertex_number v = 1; v <= net_.number_of_vertices_get(); ++v)
      is_Q[static_cast<std::size_t>(v)] = net_.index_of_vertex_get(v) == q_mark;
    for (const vertex_number v : found)
      is_Q[static_cast<std::size_t>(v)] = 1;
    take_out([&](vertex_number v, edge_adress, const net_edge &edge) {
      return is_Q[static_cast<std::size_t>(v)] != 0 || is_Q[static_cast<std::size_t>(edge.neighbour)] != 0;
    });
    for (const vertex_number v : found)
      net_.change_vertex_index(v, q_mark);
  }
  void keep() { taken_.clear(); }

private:
  template <class function> void take_out(const function &is_wanted) {
    std::vector<edge_adress> places;
    edge_adress e = 0;
    for (vertex_number v = 1; v <= net_.number_of_vertices_get(); ++v)
      for (const net_edge &edge : net_.edges_of_vertex(v))
        if (is_wanted(v, ++e, edge))
          places.push_back(e);
    taken_.push_back(net_.take_out_edges(std::move(places)));
  }

  class_net &net_;
  std::vector<class_net::edges_taken> taken_;
};

struct clone_verdict {
  std::vector<std::int32_t> n_in_rank;
  std::int32_t n_clusters = 0;
};

std::string clone_row(const class_DB_of_clones &database, vertex_number v, std::int32_t max_rank,
                      const clone_verdict &verdict) {
  std::string row = std::to_string(v) + "\t" + name_and_bands(database, v);
  for (std::int32_t j = 1; j <= max_rank; ++j) {
    const auto at = static_cast<std::size_t>(j);
    (row += '\t') += std::to_string(at < verdict.n_in_rank.size() ? verdict.n_in_rank[at] : 0);
  }
  return row + "\t" + std::to_string(verdict.n_clusters);
}

std::string clones_head(std::int32_t max_rank) {
  std::string head = "clone\tname\tn_bands\tn_overlaps";
  for (std::int32_t j = 2; j <= max_rank; ++j)
    head += "\tn_rank(" + std::to_string(j) + ")";
  return head + "\tn_clusters";
}

} // namespace

std::string QQ_additional_cutoff_refused(const std::string &text, double current_cutoff) {
  double value = 0;
  if (!number_from_text_silent(text, value))
    return "Additional cutoff has to be numeric and more than current cutoff";
  return value > current_cutoff ? "" : "Additional cutoff has to be more than current cutoff";
}

std::string QQ_report_base(const overlap_rule &rule) {
  return "cutoff" + class_serv_raznoe::string_with_letters_and_numbers_only_get(number_text_shortest(rule.cutoff));
}

std::vector<std::string> QQ_report_names(const overlap_rule &rule, bool q_overlaps, bool q_clones, bool clone_test) {
  const std::string base = QQ_report_base(rule);
  std::vector<std::string> names;
  if (clone_test)
    names.push_back(base + suspects_report);
  if (q_overlaps)
    names.push_back(base + overlaps_report);
  if (q_clones) {
    names.push_back(base + test_report_of_clones);
    names.push_back(base + clones_report);
    names.push_back(base + depths_report);
  }
  return names;
}

void class_clone_net_signif::identify_all_Q_connections(const class_net &net, std::int32_t max_rank,
                                                        class_net &marked_net, std::int16_t index, bool print,
                                                        const std::filesystem::path &file, std::int32_t &n_Q) {
  std::vector<edge_adress> found;
  find_Q_connections(net, max_rank, print, file, found);
  n_Q = static_cast<std::int32_t>(found.size());
  class_net marked;
  net.create_net_copy(marked);
  for (const edge_adress e : found)
    marked.change_edge_index(e, index);
  marked_net = std::move(marked);
}

// Places of the records, ascending; after a stop request those found by then.
void class_clone_net_signif::find_Q_connections(const class_net &net, std::int32_t max_rank, bool print,
                                                const std::filesystem::path &file, std::vector<edge_adress> &found) {
  process_frame &frame = context_.frame;
  frame.step_text_set("Test for Q-coonections");
  std::optional<result_file> report;
  if (print) {
    report.emplace(file.empty() ? frame.path_in_working_folder("\\Q_connections.txt") : file);
    report->line(overlaps_head);
  }
  found.clear();
  std::vector<std::vector<std::int32_t>> n_clusters(vertices_in_block);
  const std::int64_t n_edges = net.number_of_edges_get();
  const std::string of_edges = " of " + std::to_string(n_edges) + ", nQ=";
  const bool completed = for_all_vertices(
      frame, net, context_.settings.threads,
      [&](vertex_number v, std::size_t place, worker_space &space, const std::atomic<bool> &stopped) {
        clusters_of_edges(net, v, max_rank, space, stopped, n_clusters[place]);
      },
      [&](vertex_number v, std::size_t place) {
        const auto run = net.edges_of_vertex(v);
        for (std::size_t k = 0; k < run.size(); ++k) {
          const edge_adress e = net.adress_of_first_edge_get(v) + static_cast<edge_adress>(k);
          if (n_clusters[place][k] != 1) {
            found.push_back(e);
            if (report)
              report->line(overlap_row(net, context_.database, static_cast<std::int32_t>(found.size()), v, run[k],
                                       n_clusters[place][k]));
          }
          if (e % status_stride == 0) {
            frame.progress(e, n_edges);
            frame.local_process_text_set(std::to_string(e) + of_edges + std::to_string(found.size()));
          }
        }
      });
  if (completed && report)
    report->commit();
  if (completed)
    frame.local_process_text_set("Finished, " + std::to_string(found.size()) + " Q-connections found");
}

void class_clone_net_signif::identify_all_Q_clones(const class_net &net, std::int32_t max_rank,
                                                   std::optional<double> additional_cutoff, class_net &marked_net,
                                                   std::int16_t index, bool print,
                                                   const std::filesystem::path &file_test,
                                                   const std::filesystem::path &file_Q, std::int32_t &n_Q) {
  std::vector<vertex_number> found;
  find_Q_clones(net, max_rank, additional_cutoff, print, file_test, file_Q, found);
  n_Q = static_cast<std::int32_t>(found.size());
  class_net marked;
  net.create_net_copy(marked);
  for (const vertex_number v : found)
    marked.change_vertex_index(v, index);
  marked_net = std::move(marked);
}

// Ascending; after a stop request those found by then.
void class_clone_net_signif::find_Q_clones(const class_net &net, std::int32_t max_rank,
                                           std::optional<double> additional_cutoff, bool print,
                                           const std::filesystem::path &file_test, const std::filesystem::path &file_Q,
                                           std::vector<vertex_number> &found) {
  process_frame &frame = context_.frame;
  frame.step_text_set("Test for Q-clones");
  std::optional<result_file> test_report, q_report;
  if (print) {
    test_report.emplace(file_test.empty() ? frame.path_in_working_folder("\\clone_connection_revision.txt")
                                          : file_test);
    q_report.emplace(file_Q.empty() ? frame.path_in_working_folder("\\Q_clones.txt") : file_Q);
    test_report->line(clones_head(max_rank));
    q_report->line("k\t" + clones_head(max_rank));
  }
  found.clear();
  std::vector<clone_verdict> verdicts(vertices_in_block);
  const vertex_number n = net.number_of_vertices_get();
  std::optional<component_lists> components; // a ball of one step is its centre's records
  if (max_rank > 1)
    components.emplace(net);
  const bool completed = for_all_vertices(
      frame, net, context_.settings.threads,
      [&](vertex_number v, std::size_t place, worker_space &space, const std::atomic<bool> &) {
        net.vertex_net_characteristics(v, additional_cutoff.has_value(), additional_cutoff.value_or(0),
                                       verdicts[place].n_in_rank, verdicts[place].n_clusters, max_rank, space.walk,
                                       components ? &*components : nullptr);
      },
      [&](vertex_number v, std::size_t place) {
        const bool is_Q = verdicts[place].n_clusters >= 2;
        if (is_Q)
          found.push_back(v);
        if (print) {
          const std::string row = clone_row(context_.database, v, max_rank, verdicts[place]);
          test_report->line(row);
          if (is_Q)
            q_report->line(std::to_string(found.size()) + "\t" + row);
        }
        if (v % status_stride == 0) {
          frame.progress(v, n);
          frame.local_process_text_set(std::to_string(v) + " of " + std::to_string(n));
        }
      });
  if (completed && print) {
    test_report->commit();
    q_report->commit();
  }
  if (completed)
    frame.local_process_text_set("Finished, " + std::to_string(found.size()) + " Q-clones found");
}

// Ascending; nothing after a stop request.
void class_clone_net_signif::find_suspect_clones(const std::filesystem::path &file, std::vector<vertex_number> &found) {
  process_frame &frame = context_.frame;
  const int threads = context_.settings.threads;
  frame.step_text_set("Test for clones of two places");
  const clone_bands clones(context_.database);
  const band_scale scale = band_scale_of(clones, context_.settings.seed);
  const scored_net net(net_, clones, scale, scale.cutoff, threads, [&frame] { return frame.goes_on(); });
  const std::vector<clone_suspect> suspects =
      find_suspects(clones, scale, net, threads, [&frame](double) { return frame.goes_on(); });
  found.clear();
  if (frame.stop_requested_get())
    return;
  for (const clone_suspect &suspect : suspects)
    found.push_back(suspect.clone);
  print_suspects(context_.database, suspects, file);
}

// Nothing when the form's rules refuse the options or no file was chosen.
bool class_clone_net_signif::revise_connections(const overlap_rule &rule, const revision_options &options,
                                                revision_summary &summary) {
  process_frame &frame = context_.frame;
  summary = {};
  FrmSettingQQ form;
  form.show(rule.cutoff);
  if (!options.additional_cutoff.empty())
    form.t_min_cutoff = options.additional_cutoff;
  if (!form.c_ok(frame, options.file))
    return false;
  const std::string status = "Revise connections (Q-overlaps & Q-clones)...";
  const std::filesystem::path &file = form.QQ_file, folder = file.parent_path();
  frame.process_start(status);
  frame.step_text_set(file.string());
  frame.log_line(status + " to file " + file.string());
  const std::string base = QQ_report_base(rule);
  std::int32_t max_rank = options.max_rank;
  if (max_rank < 1 || max_rank > largest_rank)
    max_rank =
        class_serv_raznoe::parameter_get_fromInputBox_Integer(frame, "max rank connections", "ORB", 1, 1, largest_rank);
  const auto stopped = [&frame] { // what was found is not all then, and nothing of it is taken out
    if (!frame.stop_requested_get())
      return false;
    frame.process_stopped_manually();
    return true;
  };
  revision_in_place changed(net_);
  if (options.clone_test) {
    std::vector<vertex_number> found;
    find_suspect_clones(folder / (base + suspects_report), found);
    if (stopped())
      return false;
    summary.n_suspects = static_cast<std::int32_t>(found.size());
    changed.disconnect(found);
    net_.test_neighbours_sorted();
  }
  if (options.q_overlaps) {
    std::vector<edge_adress> found;
    find_Q_connections(net_, max_rank, true, folder / (base + overlaps_report), found);
    if (stopped())
      return false;
    summary.n_q_overlaps = static_cast<std::int32_t>(found.size()) / 2; // both records of an overlap count
    changed.take_out_overlaps(found);
    net_.test_neighbours_sorted();
  }
  if (options.q_clones) {
    std::vector<vertex_number> found;
    find_Q_clones(net_, max_rank, form.QQ_additional_cutoff, true, folder / (base + test_report_of_clones),
                  folder / (base + clones_report), found);
    if (stopped())
      return false;
    summary.n_q_clones = static_cast<std::int32_t>(found.size());
    summary.n_q_clones_thin = print_depths(net_, clone_bands(context_.database), found, folder / (base + depths_report),
                                           [&frame] { return frame.goes_on(); });
    if (stopped())
      return false;
    changed.disconnect(found);
  }
  if (!net_.save_net_type(frame, file)) {
    frame.process_stopped_manually();
    return false;
  }
  frame.log_line("New net saved to file " + file.string());
  changed.keep();
  net_.title_of_net_set(file.stem().string()); // the net is what the file holds: reading it back would give no other
  net_.FullFileNameSet(file.string());
  net_.test_neighbours_sorted();
  net_is_loaded_set();
  frame.all_panels_reset();
  summary.completed = true;
  frame.message("Net of significant clone overlaps is revized");
  return true;
}

} // namespace orb
