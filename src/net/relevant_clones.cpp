#include "net/relevant_clones.h"

#include <algorithm>
#include <vector>

#include "frame/class_math1.h"
#include "frame/numbers.h"
#include "lists/class_list_of_clones.h"
#include "net/pair_by_rule.h"

namespace orb {

namespace {

// What the lists found by a net are printed under, whatever the rule of the net: deliberate.
constexpr overlap_rule rule_in_names{class_clone_dist_general::DISTANCE_INDEX_Nof_get(), 1.00};

std::filesystem::path relevant_clones_of_net(const metric_context &context, const number_list &start_list,
                                             std::int32_t n_rank, bool use_cutoff, double cutoff, bool print,
                                             const class_net &net, number_list &list, number_list &ranks) {
  number_list start = start_list, on_net;
  class_math1::sort_list_of_long_and_delete_repeats(start);
  number_list reached = n_rank >= 0 ? start : number_list(), rank_of;
  for (const clone_number clone : start.members())
    if (clone >= 1 && clone <= net.number_of_vertices_get())
      on_net.add(clone);
  if (n_rank >= 1 && !on_net.empty()) {
    number_list around;
    std::vector<std::int32_t> n_in_rank;
    bool connected = false;
    net.calculate_ranks_of_vertices(on_net, rank_of, 1, use_cutoff, cutoff, n_rank, around, n_in_rank, connected);
    class_list_of_clones::find_ctg1_plus_ctg2(start, around, reached);
  }
  list = std::move(reached);
  ranks.clear();
  for (const clone_number clone : list.members())
    ranks.add(clone >= 1 && clone <= rank_of.count() ? rank_of(clone) : 0);
  return print ? print_relevant_clones(context, list, rule_in_names, "relevants", 1) : std::filesystem::path();
}

// The list that grows, and how far each candidate has been compared with it.
class clone_pump {
public:
  clone_pump(const metric_context &context, const overlap_rule &rule, const pumping_options &options,
             pumping_result &result)
      : context_(context), frame_(context.frame), rule_(rule), options_(options), result_(result), pair_(context, rule),
        n_(context.database.total_number_of_clones_get()), n_compared_(static_cast<std::size_t>(n_) + 1, 0),
        is_out_(static_cast<std::size_t>(n_) + 1, 0) {
    for (const clone_number clone : options.black_list.members())
      if (is_clone(clone))
        is_out_[static_cast<std::size_t>(clone)] = 1;
    for (const clone_number clone : options.start_list.members())
      if (is_clone(clone) && !in_list(clone))
        add(clone, 0);
    n_start_ = result_.list.count();
  }

  // False after a stop request.
  bool run() {
    bool added = true;
    while (added)
      if (!pass(added))
        return false;
    return true;
  }
  void print() { result_.file = print_relevant_clones(context_, result_.list, rule_, options_.name, k()); }

private:
  static constexpr std::int32_t candidates_between_reports = 100, added_between_prints = 30;
  static constexpr char listed = 2;

  bool is_clone(clone_number clone) const { return clone >= 1 && clone <= n_; }
  bool in_list(clone_number clone) const { return is_out_[static_cast<std::size_t>(clone)] == listed; }
  std::int32_t k() const { return options_.n_rank_limit; }
  void add(clone_number clone, std::int32_t step) {
    result_.list.add(clone);
    result_.step.add(step);
    is_out_[static_cast<std::size_t>(clone)] = listed;
  }
  bool report(clone_number clone) {
    frame_.local_process_text_set(std::to_string(result_.list.count()) + ", " + std::to_string(clone));
    return !frame_.stop_requested_get();
  }

  // Up to the first candidate that is added. False after a stop request.
  bool pass(bool &added) {
    const std::int32_t n_candidates = options_.candidates ? options_.candidates->count() : n_;
    added = false;
    for (std::int32_t i = 1; i <= n_candidates && !added; ++i) {
      const clone_number clone = options_.candidates ? (*options_.candidates)(i) : i;
      if (i % candidates_between_reports == 0 && !report(clone))
        return false;
      if (!is_clone(clone) || is_out_[static_cast<std::size_t>(clone)] != 0)
        continue;
      const std::int32_t step = step_of(clone);
      if (step < 0)
        continue;
      add(clone, step);
      added = true;
      if (options_.print && (result_.list.count() - n_start_) % added_between_prints == 0)
        print();
      if (!report(clone))
        return false;
    }
    return added || frame_.goes_on();
  }

  // Steps from the start by way of the members that the candidate wasn't compared with yet; -1: it overlaps none.
  std::int32_t step_of(clone_number clone) {
    std::int32_t &n_compared = n_compared_[static_cast<std::size_t>(clone)];
    const std::int32_t limit = options_.n_rank_limit;
    std::int32_t least = -1;
    while (n_compared < result_.list.count() && (limit >= 0 || least < 0)) {
      const std::int32_t at = ++n_compared, step = result_.step(at) + 1;
      const bool counts = limit < 0 || step <= limit;
      if (counts && (least < 0 || step < least) && pair_.overlaps(clone, result_.list(at)))
        least = step;
    }
    return least;
  }

  const metric_context &context_;
  process_frame &frame_;
  overlap_rule rule_;
  const pumping_options &options_;
  pumping_result &result_;
  pair_by_rule pair_;
  clone_number n_;
  std::vector<std::int32_t> n_compared_; // by clone: members of the list, from the first
  std::vector<char> is_out_;             // by clone: 1 barred, `listed`, or 0 a candidate
  std::int32_t n_start_ = 0;
};

} // namespace

std::filesystem::path create_relevant_clones_using_net(const metric_context &context, const number_list &start_list,
                                                       std::int32_t n_rank, bool print, const class_net &net,
                                                       number_list &list, number_list &ranks) {
  return relevant_clones_of_net(context, start_list, n_rank, false, 0, print, net, list, ranks);
}

std::filesystem::path create_relevant_clones_using_net2(const metric_context &context, const number_list &start_list,
                                                        std::int32_t n_rank, double cutoff, bool print,
                                                        const class_net &net, number_list &list, number_list &ranks) {
  return relevant_clones_of_net(context, start_list, n_rank, true, cutoff, print, net, list, ranks);
}

std::filesystem::path print_relevant_clones(const metric_context &context, const number_list &list,
                                            const overlap_rule &rule, std::string name, std::int32_t k) {
  if (name.empty() && !list.empty())
    name = context.database.name_of_clone_get(list(1));
  for (char &c : name)
    if (c == '/' || c == '\\')
      c = '_'; // the name is a part of a file's name, not of its folder's
  const std::filesystem::path file = context.frame.path_in_working_folder(
      "\\found_clones_" + class_clone_dist_general::name_of_cutoff_distance(rule.distance_index) + "_" +
      number_text(rule.cutoff, 2) + "_" + name + "_plus" + std::to_string(k) + ".txt");
  class_list_of_clones(context.frame, context.settings).print_list_of_clones(list, file, context.database);
  return file;
}

void nasos_clones(const metric_context &context, const overlap_rule &rule, const pumping_options &options,
                  pumping_result &result) {
  result = {};
  clone_pump pump(context, rule, options, result);
  result.completed = pump.run();
  if (options.print)
    pump.print(); // what was found before a stop counts as well
  if (result.completed)
    context.frame.local_process_text_set("Ok: " + std::to_string(result.list.count()));
}

} // namespace orb
