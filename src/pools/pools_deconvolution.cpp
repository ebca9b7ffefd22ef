#include "pools/pools_deconvolution.h"

#include <algorithm>

#include "frame/files.h"
#include "pools/linked_groups.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t few_groups = 5;   // below it all groups are reported
constexpr std::int32_t most_lines = 30; // of clones in a block
constexpr std::int32_t few_clones = 9;  // below it the last line of a block names all of them
constexpr std::int64_t probes_between_reports = 50;

std::size_t largest_of(const std::vector<number_list> &groups) {
  std::size_t largest = 0;
  for (std::size_t k = 1; k < groups.size(); ++k)
    if (groups[k].count() > groups[largest].count())
      largest = k;
  return largest;
}

} // namespace

std::int32_t pools_deconvolution::n_candidates(const number_list &group, const positive_pools &positive) const {
  pool_place place;
  return static_cast<std::int32_t>(
      std::count_if(group.members().begin(), group.members().end(), [&](clone_number clone) {
        return pools_.find_clone_in_pools(clone, place) && positive.n_of(place) == n_pool_dimensions;
      }));
}

bool pools_deconvolution::deconvolve(const positive_pools &positive, deconvolved_probe &made) const {
  made = {};
  number_list candidates;
  pools_.create_list_of_clones_in_positive_pools(positive, candidates);
  if (candidates.empty())
    return true;
  std::vector<number_list> groups = linked_groups_of(signif_, rule_, candidates);
  if (groups.size() > 1 && groups[largest_of(groups)].count() < 2) {
    const std::size_t n_before = groups.size();
    number_list extended;
    if (!list_with_linked_clones(signif_, rule_, candidates, 1, "", extended))
      return false;
    groups = linked_groups_of(signif_, rule_, extended);
    if (groups.size() >= n_before && groups.size() >= few_groups) {
      made.unclear = true;
      return true;
    }
  }
  report_groups(groups, positive, made);
  return true;
}

void pools_deconvolution::report_groups(const std::vector<number_list> &groups, const positive_pools &positive,
                                        deconvolved_probe &made) const {
  const number_list &largest = groups[largest_of(groups)];
  // A group that by itself explains each positive pool settles the probe: the others are there by chance.
  std::vector<clone_number> explaining;
  pool_place place;
  for (const clone_number clone : largest.members())
    if (pools_.find_clone_in_pools(clone, place) && positive.n_of(place) == n_pool_dimensions)
      explaining.push_back(clone);
  double score = 0;
  bool exact = false, all_explained = false;
  pools_.putatively_positive_clones_based_on_likelyhood(explaining, positive, score, exact, all_explained);
  made.largest_decides = groups.size() > 1 && explaining.size() > 1 && all_explained;
  for (const number_list &group : groups) {
    const std::int32_t n = n_candidates(group, positive);
    if (made.largest_decides ? &group == &largest : n >= 2 || groups.size() < few_groups) {
      made.groups.push_back(group);
      made.n_candidates.push_back(n);
    }
  }
}

void pools_deconvolution::add_block(const number_list &group, std::int32_t candidates, const probe &of, bool decides,
                                    std::string &text) const {
  const class_DB_of_clones &database = signif_.context().database;
  constexpr std::array<std::pair<std::size_t, char>, 3> marks{
      {{pool_plates, 'P'}, {pool_columns, 'C'}, {pool_rows, 'R'}}};
  std::int32_t n_listed = 0;
  pool_place place;
  for (const clone_number clone : group.members()) {
    if (!pools_.find_clone_in_pools(clone, place))
      continue;
    if (n_listed == most_lines) {
      text += "...\r\n";
      break;
    }
    ++n_listed;
    text += database.name_of_clone_get(clone) + "\t" + pools_.position_of_clone_in_pools_text_get(clone) + "\t";
    for (const auto &[dimension, mark] : marks)
      if (of.positive.has(dimension, place[dimension]))
        text += mark;
    text += "\r\n";
  }
  text += pools_.text_of_unexplained_pools(group.members(), of.positive) + "\t" + std::to_string(of.n_positive) + "\t" +
          std::to_string(group.count()) + (decides ? " clones" : "") + "\t" + std::to_string(candidates) + "\t" +
          database.name_of_clone_get(group(1));
  if (n_listed < few_clones)
    for (std::int32_t i = 1; i <= group.count(); ++i)
      text += (i == 1 ? "," : " ") + database.name_of_clone_get(group(i));
  text += "\r\n";
}

std::string pools_deconvolution::text_of(const probe &of, const deconvolved_probe &made) const {
  std::string text = pools_.text_of_unexplained_pools({}, of.positive) + "\r\n";
  if (made.unclear)
    text += "unclear\r\n";
  for (std::size_t k = 0; k < made.groups.size(); ++k)
    add_block(made.groups[k], made.n_candidates[k], of, made.largest_decides, text);
  return text;
}

bool for_deconv(const class_pools3D &pools, class_clone_net_signif &signif, const overlap_rule &rule, fs::path table,
                const fs::path &folder, deconvolution_summary &summary) {
  process_frame &frame = signif.context().frame;
  if (table.empty())
    table = frame.open_file_dialog("Open file");
  if (table.empty())
    return false;
  const pools_deconvolution work(pools, signif, rule);
  probe_reader reader(frame, table, pools.sizes());
  summary.file = (folder.empty() ? table.parent_path() : folder) / "res_for_deconv.txt";
  result_file file(summary.file);
  file.line(reader.heads());
  probe read{{}, {}, positive_pools(pools.sizes()), 0};
  deconvolved_probe made;
  for (auto piece = reader.next(read); piece != probe_reader::piece::end; piece = reader.next(read)) {
    if (summary.n_probes++ % probes_between_reports == 0) {
      frame.progress(reader.position(), reader.size());
      frame.local_process_text_set("probe " + std::to_string(summary.n_probes));
    }
    if (piece == probe_reader::piece::refused || frame.stop_requested_get() || !work.deconvolve(read.positive, made))
      return false;
    file.line(read.line);
    file.write(work.text_of(read, made));
    summary.n_unclear += made.unclear ? 1 : 0;
    summary.n_with_groups += made.groups.empty() ? 0 : 1;
  }
  file.commit();
  return true;
}

} // namespace orb
