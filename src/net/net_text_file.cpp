// Loading a text net, whole or with the overlaps of crowded clones reduced.
#include <algorithm>
#include <array>
#include <vector>

#include "frame/files.h"
#include "frame/numbers.h"
#include "net/class_clone_net_signif.h"
#include "net/text_net_reader.h"

namespace orb {

namespace {

constexpr std::int32_t clones_between_polls = 500;
constexpr double unreachable_cutoff = 10000;

// How many overlaps of a clone there are: at 0 all, at 1 those that reach the reduction cutoff, at k = 2..10 those that
// reach 5k.
using overlap_counts = std::array<std::int32_t, 11>;

struct overlap_limits {
  std::int16_t n_status = 0;                    // 0: all overlaps are taken
  std::vector<std::int16_t> status;             // 1..N
  std::array<std::int32_t, 3> n_overlaps_max{}; // by status
  std::array<float, 3> cutoff_for_status{};     // by status

  bool keeps(clone_number i, clone_number j, double value) const {
    const auto reaches = [&](std::int16_t of) {
      return of == 0 || static_cast<float>(value) >= cutoff_for_status[static_cast<std::size_t>(of)];
    };
    return n_status == 0 ||
           (reaches(status[static_cast<std::size_t>(i)]) && reaches(status[static_cast<std::size_t>(j)]));
  }
};

// A number above 0 from an input box; otherwise the message that says what it should be.
bool positive_input(process_frame &frame, const std::string &prompt, const std::string &by_default, double &value) {
  const std::string reply = frame.input({prompt, "Loading of net of significant overlaps...", by_default});
  if (!number_from_text_silent(reply, value)) {
    frame.alarm("Should be numerical!");
    return false;
  }
  if (value > 0)
    return true;
  frame.alarm("Should be >0");
  return false;
}

class overlap_limits_choice {
public:
  overlap_limits_choice(const metric_context &context, overlap_limits &limits)
      : context_(context), frame_(context.frame), limits_(limits), n_(context.database.total_number_of_clones_get()) {}

  // False when the user dropped out, or the file is refused.
  bool run(const std::filesystem::path &file, overlaps_wanted wanted) {
    limits_.status.assign(static_cast<std::size_t>(n_) + 1, 0);
    question all;
    all.text = "All overlaps?";
    all.by_default = answer::yes;
    if (wanted == overlaps_wanted::all || (wanted == overlaps_wanted::ask && frame_.yes(all)))
      return true;
    limits_.n_status = 2;
    double typed = 0;
    if (!positive_input(frame_, "Input maximal number of overlap per clone:", "40", typed))
      return false;
    limits_.n_overlaps_max[0] = limits_.n_overlaps_max[1] = static_cast<std::int32_t>(std::min(typed, 2147483647.0));
    if (!positive_input(frame_, "Input cutoff to reduce number of clone overlaps:", number_text(15, 2), typed))
      return false;
    limits_.cutoff_for_status[1] = static_cast<float>(typed);
    limits_.cutoff_for_status[2] = static_cast<float>(unreachable_cutoff);
    if (!count_overlaps(file))
      return false;
    set_status();
    print_report();
    if (n_read_ != n_)
      frame_.alarm("i <> nClones: " + std::to_string(n_read_) + " <> " + std::to_string(n_));
    return true;
  }

private:
  bool count_overlaps(const std::filesystem::path &file) {
    frame_.step_text_set("Preprocess...");
    table_.assign(static_cast<std::size_t>(n_) + 1, {});
    text_net_reader reader(frame_, file, n_);
    clone_number i = 0;
    std::int32_t n_overlaps = 0;
    text_overlap overlap;
    while (reader.next_clone(i, n_overlaps)) {
      overlap_counts &counts = table_[static_cast<std::size_t>(i)];
      counts[0] = n_overlaps;
      for (std::int32_t k = 1; k <= n_overlaps; ++k) {
        if (!reader.next_overlap(overlap))
          return false;
        counts[1] += static_cast<float>(overlap.value) >= limits_.cutoff_for_status[1];
        for (std::size_t level = 2; level <= 10 && overlap.value >= 5.0 * static_cast<double>(level); ++level)
          ++counts[level];
      }
      if (i % clones_between_polls == 0) {
        frame_.progress(i, n_);
        frame_.local_process_text_set(std::to_string(i) + " of " + std::to_string(n_));
        if (frame_.stop_requested_get())
          return false;
      }
    }
    n_read_ = reader.n_clones_read();
    return !reader.refused();
  }

  void set_status() {
    for (clone_number i = 1; i <= n_; ++i) {
      const overlap_counts &counts = table_[static_cast<std::size_t>(i)];
      limits_.status[static_cast<std::size_t>(i)] = counts[0] <= limits_.n_overlaps_max[0]   ? std::int16_t{0}
                                                    : counts[1] <= limits_.n_overlaps_max[1] ? std::int16_t{1}
                                                                                             : std::int16_t{2};
    }
  }

  // Counts and averages of the clones of one status; -1: of all clones. A class without clones has nothing to divide
  // by: its averages print as 0.0.
  std::string averages(std::int16_t status, std::int32_t &n_clones) const {
    std::array<double, 11> sums{};
    n_clones = 0;
    for (clone_number i = 1; i <= n_; ++i) {
      if (status >= 0 && limits_.status[static_cast<std::size_t>(i)] != status)
        continue;
      ++n_clones;
      for (std::size_t k = 0; k <= 10; ++k)
        sums[k] += table_[static_cast<std::size_t>(i)][k];
    }
    std::string text;
    for (const double sum : sums)
      (text += '\t') += number_text(n_clones > 0 ? sum / n_clones : 0, 1);
    return text;
  }

  void print_report() const {
    result_file file(frame_.path_in_working_folder("\\overlaps.tsv"));
    std::string head = "c\tclone\tnOverlaps\tcutoff" + number_text(limits_.cutoff_for_status[1], 2);
    for (int k = 2; k <= 10; ++k)
      (head += '\t') += number_text(5 * k, 2);
    file.line(head);
    for (clone_number i = 1; i <= n_; ++i) {
      std::string row = std::to_string(i) + "\t" + context_.database.name_of_clone_get(i);
      for (const std::int32_t count : table_[static_cast<std::size_t>(i)])
        (row += '\t') += std::to_string(count);
      file.line(row);
    }
    std::int32_t n_clones = 0;
    const auto summary = [&](const std::string &caption, std::int16_t status) {
      const std::string text = averages(status, n_clones);
      file.line(caption + "\t" + std::to_string(n_clones) + text);
    };
    summary("Average", -1);
    summary("n<=" + std::to_string(limits_.n_overlaps_max[0]), 0);
    summary("n1<=" + std::to_string(limits_.n_overlaps_max[1]), 1);
    averages(2, n_clones);
    file.line("others\t" + std::to_string(n_clones) + "\t" +
              number_text(n_ > 0 ? static_cast<double>(n_clones) / n_ : 0, 1));
    file.commit();
  }

  const metric_context &context_;
  process_frame &frame_;
  overlap_limits &limits_;
  std::int32_t n_, n_read_ = 0;
  std::vector<overlap_counts> table_;
};

} // namespace

void class_clone_net_signif::read_text_net(const std::filesystem::path &file, class_net &net, bool &ok,
                                           overlaps_wanted wanted) {
  process_frame &frame = context_.frame;
  const std::int32_t n = context_.database.total_number_of_clones_get();
  ok = false;
  overlap_limits limits;
  if (!overlap_limits_choice(context_, limits).run(file, wanted))
    return;
  class_net read;
  read.inicializate_net(n, read.max_n_edges_for_n_of_vertices(n, -1));
  text_net_reader reader(frame, file, n);
  clone_number i = 0;
  std::int32_t n_overlaps = 0;
  text_overlap overlap;
  while (reader.next_clone(i, n_overlaps)) {
    read.add_vertex_fast(0);
    for (std::int32_t k = 1; k <= n_overlaps; ++k) {
      if (!reader.next_overlap(overlap))
        return;
      if (limits.keeps(i, overlap.partner, overlap.value))
        read.add_edge_fast(i, overlap.partner, overlap.value, 0, overlap.code);
    }
    if (i % clones_between_polls == 0) {
      frame.progress(i, n);
      frame.local_process_text_set(std::to_string(i) + " of " + std::to_string(n));
      if (frame.stop_requested_get())
        return;
    }
  }
  if (reader.refused())
    return;
  if (reader.n_clones_read() != n) { // only a part of the net: taken, but not in silence
    frame.refuse("i <> nnn: " + std::to_string(reader.n_clones_read()) + " <> " + std::to_string(n));
  }
  for (std::int32_t v = reader.n_clones_read(); v < n; ++v)
    read.add_vertex_fast(0); // a missing tail: without edges
  read.finish_of_adding();
  read.test_neighbours_sorted();
  frame.local_process_text_set("Finished");
  net = std::move(read);
  ok = true;
}

} // namespace orb
