#include "pools/pools_search.h"

#include <algorithm>
#include <fmt/format.h>
#include <unordered_set>

#include "drawing/class_clone_net_draw.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "pools/linked_groups.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr std::int32_t standard_rank = 1, largest_usual_rank = 10;

// The answer of a rank box. What is no whole number from 0 on becomes 1, and so does a rank that is too large for who
// is asked.
std::int32_t rank_asked(process_frame &frame) {
  const std::string text = frame.input({"Inuput rank of additional clones:", "Subdividing found clones into groups",
                                        std::to_string(standard_rank),
                                        "Clones that overlaps join to the found ones in so many steps are added before "
                                        "the groups are made."});
  std::int32_t rank = standard_rank;
  if (!whole_number_parse(text, rank) || rank < 0)
    rank = standard_rank;
  if (rank <= largest_usual_rank)
    return rank;
  question sure;
  sure.text = "Rank=" + std::to_string(rank) + " is too mach. Are you sure? (or use 1)";
  return frame.yes(sure) ? rank : standard_rank;
}

bool asked_to_subdivide(process_frame &frame, std::int32_t n) {
  question subdivide;
  subdivide.text = std::to_string(n) + " clones found." + " Do you want to subdivide found clones into groups" +
                   " of linked and exclude singletones?";
  return frame.yes(subdivide);
}

// Fewer than two clones, or fewer than the pools ask for: what that means. Empty otherwise.
std::string answer_of_few(std::int32_t n, const pool_lists &lists) {
  std::int32_t longest = 0;
  for (const number_list &list : lists)
    longest = std::max(longest, list.count());
  if (n == 0)
    return "No clones in overlapping of pools => problem!!! :(";
  if (n == 1)
    return longest == 1 ? "Uniqe clone in overlapping succesfully found :)"
                        : "Only one clone found, but more were expected => problem!!! :(";
  return longest > n ? "Only " + std::to_string(n) + " clones found, but more were expected => problem!!! :("
                     : std::string();
}

class group_writer {
public:
  group_writer(const class_pools3D &pools, class_clone_net_signif &signif, const overlap_rule &rule,
               const pool_lists &lists, pools_search_result &result)
      : pools_(pools), signif_(signif), rule_(rule), lists_(lists), positive_(pools.sizes(), lists), result_(result),
        found_(result.clones.members().begin(), result.clones.members().end()),
        report_(path("\\clustering_report.txt")) {
    report_.line("cluster\tclones\tfound\tpools\tunexplained");
  }

  bool write(std::int32_t k, const number_list &group) {
    positive_pools covered(pools_.sizes());
    const bool all_covered = pools_.find_list_of_clones_in_pools(lists_, group.members(), covered);
    const auto n_found = std::count_if(group.members().begin(), group.members().end(),
                                       [&](clone_number clone) { return found_.contains(clone); });
    report_.line(fmt::format("clust_{}\t{}\t{}\t{}\t{}", k, group.count(), n_found, all_covered ? "+" : "-",
                             pools_.text_of_unexplained_pools(group.members(), positive_)));
    if (group.count() < 2)
      return true;
    table(fmt::format("\\clust_{}_clones_in_pools.txt", k), group.members());
    class_clone_net_draw draw(signif_, rule_);
    draw.mark_names_set({"in pools", "", ""});
    if (!draw.quick_run(group, fmt::format("clust_{}", k), frame().working_folder_get(), rule_.burying, rule_.cutoff,
                        pools_.coded_clones()))
      return false;
    result_.files.insert(result_.files.end(), draw.files_written().begin(), draw.files_written().end());
    return true;
  }
  void table(const std::string &name, std::span<const clone_number> clones) {
    pools_.print_clones_in_pools(signif_.context().database, clones, path(name));
    result_.files.push_back(path(name));
  }
  void commit() {
    report_.commit();
    result_.files.push_back(report_.path());
  }

private:
  process_frame &frame() const { return signif_.context().frame; }
  fs::path path(const std::string &name) const { return frame().path_in_working_folder(name); }

  const class_pools3D &pools_;
  class_clone_net_signif &signif_;
  const overlap_rule &rule_;
  const pool_lists &lists_;
  const positive_pools positive_;
  pools_search_result &result_;
  const std::unordered_set<clone_number> found_;
  result_file report_;
};

} // namespace

bool subdivide_found_clones_into_groups(const class_pools3D &pools, class_clone_net_signif &signif,
                                        const overlap_rule &rule, const pool_lists &lists, std::int32_t rank,
                                        pools_search_result &result) {
  process_frame &frame = signif.context().frame;
  number_list extended, by_group;
  if (!list_with_linked_clones(signif, rule, result.clones, rank, "PxPxP_PlusPodkachka", extended))
    return false;
  const std::int32_t n = extended.count(), n_found = result.clones.count();
  frame.message(fmt::format("N={}-{}={}", n, n_found, n - n_found));
  const std::vector<number_list> groups = linked_groups_of(signif, rule, extended);
  for (const number_list &group : groups)
    for (const clone_number clone : group.members())
      by_group.add(clone);
  group_writer writer(pools, signif, rule, lists, result);
  writer.table("\\in pools_.txt", extended.members());
  writer.table("\\in pools__.txt", by_group.members());
  for (std::size_t k = 0; k < groups.size(); ++k)
    if (!frame.goes_on() || !writer.write(static_cast<std::int32_t>(k) + 1, groups[k]))
      return false;
  writer.commit();
  result.n_groups = static_cast<std::int32_t>(groups.size());
  return true;
}

bool work_with_list_of_positive_pools_run(const class_pools3D &pools, class_clone_net_signif &signif,
                                          const overlap_rule &rule, const pools_search_wishes &wishes,
                                          pools_search_result &result) {
  process_frame &frame = signif.context().frame;
  const class_DB_of_clones &database = signif.context().database;
  const fs::path file = wishes.file.empty() ? frame.open_file_dialog("Open file with positive pools") : wishes.file;
  pool_lists lists;
  if (file.empty() || !read_list_of_positive_pools(frame, file, pools.sizes(), lists))
    return false;
  for (std::size_t d = 0; d < n_pool_dimensions; ++d)
    if (lists[d].empty())
      return frame.refuse("A list of positive pools is empty: no clone is sought.\r\n" + file.string());
  pools.create_list_of_clones_in_pool_intersections(lists, result.clones);
  result.files = {frame.path_in_working_folder("\\clones_PxPxP.txt"), frame.path_in_working_folder("\\in pools.txt")};
  class_pools3D::print_list_of_clones_in_pool_intersections(database, result.clones, result.files[0]);
  pools.print_clones_in_pools(database, result.clones.members(), result.files[1]);
  const std::int32_t n = result.clones.count();
  result.answer = answer_of_few(n, lists);
  if (!result.answer.empty()) {
    frame.message(result.answer);
    return true;
  }
  result.answer = std::to_string(n) + " clones found.";
  if (!(wishes.subdivide ? *wishes.subdivide : asked_to_subdivide(frame, n)))
    return true;
  return subdivide_found_clones_into_groups(pools, signif, rule, lists, wishes.rank ? *wishes.rank : rank_asked(frame),
                                            result);
}

} // namespace orb
