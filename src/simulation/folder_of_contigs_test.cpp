#include "simulation/folder_of_contigs_test.h"

#include <algorithm>
#include <numeric>
#include <optional>

#include "contigs/run_reports.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "simulation/map_quality.h"

namespace orb {

namespace {

constexpr std::int32_t most_unknown_shown = 20; // in messages; the report holds them all

// True stretches of some clones of a contig.
struct true_extent {
  std::optional<true_position> start, end;
  std::size_t n_places = 0;
};

class contig_tester {
public:
  contig_tester(process_frame &frame, const run_folder &run, std::span<const clone_order> orders,
                const placed_clones &clones, const std::vector<std::string> &Q_clones)
      : frame_(frame), run_(run), orders_(orders), clones_(clones), truth_(clones), is_Q_(clones.clones.size(), 0),
        report_(frame.path_in_working_folder("\\report.txt")) {
    for (true_clone clone = 0; clone < truth_.n_clones(); ++clone)
      is_Q_[static_cast<std::size_t>(clone)] = truth_.is_chimeric(clone);
    for (const std::string &name : Q_clones)
      if (const true_clone clone = truth_.find(name); clone >= 0)
        is_Q_[static_cast<std::size_t>(clone)] = 1;
    const evaluation_input input{&run, orders, nullptr, 0};
    quality_ = map_quality_of(input, truth_);
  }

  // False: the user stopped, and there is no report.
  bool write() {
    report_.line("Results of preprocessing " + frame_.clock().log_date());
    report_.line("f\tctg\tn_clones\tn_Qclones\tn_unburied\tx_start\tx_end\tx_start_noQQ\tx_end_no_QQ\tn_clust\t"
                 "n_clust_nonQ\tn>\tn<");
    std::size_t n = 0;
    for (std::size_t cluster = 0; cluster < run_.clusters.size(); ++cluster) {
      if (!run_.clusters[cluster].contig)
        continue;
      ++n;
      frame_.progress(static_cast<std::int64_t>(n) - 1, static_cast<std::int64_t>(quality_.contigs.size()));
      frame_.step_text_set("Process <" + run_.clusters[cluster].name + "> (" + std::to_string(n) + " of " +
                           std::to_string(quality_.contigs.size()) + ")");
      if (frame_.stop_requested_get())
        return false;
      test_contig(cluster, n);
    }
    report_.commit();
    if (n_unknown_ > most_unknown_shown)
      frame_.alarm(std::to_string(n_unknown_ - most_unknown_shown) + " more unknown clones stand in the report.");
    frame_.step_text_set("All " + std::to_string(n) + " completed");
    return true;
  }

private:
  void test_contig(std::size_t cluster, std::size_t number) {
    find_clones(cluster);
    const contig_quality &contig = quality_.contigs[number - 1];
    const true_extent all = extent(true), without_Q = extent(false);
    const auto n_Q = std::count_if(members_.begin(), members_.end(), [&](true_clone clone) { return is_Q(clone); });
    std::string line = std::to_string(number) + "\t" + contig.name + "\t" + std::to_string(contig.n_clones) + "\t" +
                       std::to_string(n_Q) + "\t";
    line += cluster < orders_.size() && orders_[cluster] ? std::to_string(orders_[cluster]->size()) : "-";
    for (const true_extent &found : {all, without_Q})
      line += "\t" + position_text(found.start) + "\t" + position_text(found.end);
    line += "\t" + std::to_string(all.n_places) + "\t" + std::to_string(without_Q.n_places);
    if (const auto &order = contig.coordinates)
      line += "\t" + std::to_string(order->n_neighbours - order->n_out_of_order) + "\t" +
              std::to_string(order->n_out_of_order);
    else
      line += "\t-\t-";
    report_.line(line + (without_Q.n_places > 1 || contig.n_unknown > 0 ? "\tNB!" : ""));
    write_clones(cluster, true);
    write_clones(cluster, false);
  }

  bool is_Q(true_clone clone) const { return clone >= 0 && is_Q_[static_cast<std::size_t>(clone)] == 1; }

  void find_clones(std::size_t cluster) {
    members_.clear();
    for (const std::string &name : run_.clones[cluster]) {
      members_.push_back(truth_.find(name));
      if (members_.back() >= 0 && truth_.is_placed(members_.back()))
        continue;
      members_.back() = -1;
      const std::string text = "Unknown clone " + name + " in contig " + run_.clusters[cluster].name;
      report_.line(text);
      if (++n_unknown_ <= most_unknown_shown)
        frame_.alarm(text);
    }
  }

  true_extent extent(bool with_Q) const {
    std::vector<true_stretch> stretches;
    for (const true_clone clone : members_)
      if (clone >= 0 && (with_Q || !is_Q(clone)))
        stretches.insert(stretches.end(), truth_.stretches(clone).begin(), truth_.stretches(clone).end());
    std::vector<true_place> places;
    std::vector<std::int32_t> ignored;
    places_of_stretches(stretches, places, ignored);
    true_extent found;
    found.n_places = places.size();
    if (!places.empty()) {
      found.start = places.front().begin;
      found.end = places.back().end;
    }
    return found;
  }

  std::string position_text(const std::optional<true_position> &position) const {
    if (!position)
      return "-";
    const std::string number = std::to_string(truth_.on_chromosome(*position));
    return truth_.n_chromosomes() > 1 ? std::to_string(truth_.chromosome_of(*position) + 1) + ":" + number : number;
  }

  void write_clones(std::size_t cluster, bool with_Q) {
    const auto &coordinates = run_.coordinates[cluster];
    std::vector<std::size_t> along(members_.size());
    std::iota(along.begin(), along.end(), std::size_t{0});
    if (!coordinates.empty())
      std::stable_sort(along.begin(), along.end(), [&](std::size_t a, std::size_t b) {
        return coordinates[a].left + coordinates[a].right < coordinates[b].left + coordinates[b].right;
      });
    result_file table(frame_.path_in_working_folder((with_Q ? "\\clones_coor_" : "\\clones_coor_noQQ_") +
                                                    cluster_file_name(run_.clusters[cluster].name) + ".txt"));
    table.line("clone\tcoor_left\tcoor_right\tQ\tparts\tchromosome\tstart\tend");
    for (const std::size_t i : along) {
      const true_clone clone = members_[i];
      if (!with_Q && is_Q(clone))
        continue;
      std::string line = run_.clones[cluster][i];
      if (coordinates.empty())
        line += "\t-\t-";
      else
        line += "\t" + number_text_shortest(coordinates[i].left) + "\t" + number_text_shortest(coordinates[i].right);
      line += is_Q(clone) ? "\tQ\t" : "\t\t";
      if (clone < 0) {
        table.line(line + "-");
        continue;
      }
      const simul_clone &known = clones_.clones[static_cast<std::size_t>(clone)];
      line += std::to_string(known.n_parts());
      for (const clone_part &part : known.parts)
        line += "\t" + clones_.chromosomes[static_cast<std::size_t>(part.chromosome) - 1] + "\t" +
                std::to_string(part.part_start) + "\t" + std::to_string(part.part_end);
      table.line(line);
    }
    table.commit();
  }

  process_frame &frame_;
  const run_folder &run_;
  std::span<const clone_order> orders_;
  const placed_clones &clones_;
  const true_map truth_;
  std::vector<char> is_Q_; // of each clone of the truth
  map_quality quality_;
  result_file report_;
  std::vector<true_clone> members_; // of the contig at work, in order of its list; -1: unknown
  std::int32_t n_unknown_ = 0;
};

} // namespace

bool test_folder_of_contigs(process_frame &frame, const run_folder &run, std::span<const clone_order> orders,
                            const placed_clones &clones, const std::vector<std::string> &Q_clones) {
  frame.process_start("Test of contigs");
  const bool written = contig_tester(frame, run, orders, clones, Q_clones).write();
  if (written)
    frame.process_done();
  else
    frame.process_stopped_manually();
  return written;
}

bool test_folder_of_contigs(process_frame &frame, std::filesystem::path folder, const placed_clones &clones,
                            const std::vector<std::string> &Q_clones) {
  if (folder.empty()) {
    const std::filesystem::path clicked = frame.open_file_dialog("Click any file from directory");
    if (clicked.empty())
      return false;
    folder = clicked.parent_path();
  }
  run_folder run;
  std::vector<clone_order> orders;
  if (!read_run_folder(frame, folder, run) || !read_orders_of_run(frame, run, orders))
    return false;
  return test_folder_of_contigs(frame, run, orders, clones, Q_clones);
}

} // namespace orb
