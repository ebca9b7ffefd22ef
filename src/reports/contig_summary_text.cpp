#include "reports/contig_summary_text.h"

#include <algorithm>
#include <fmt/format.h>
#include <numeric>

#include "frame/numbers.h"

namespace orb {

namespace {

constexpr std::size_t rows_shown = 12;  // of the table of contigs
constexpr std::size_t names_shown = 10; // of the contigs that lack something

void finish_figures(contig_figures &figures) {
  std::stable_sort(figures.contigs.begin(), figures.contigs.end(),
                   [](const contig_summary &a, const contig_summary &b) { return a.length_bands > b.length_bands; });
  std::vector<std::int32_t> lengths;
  for (const contig_summary &contig : figures.contigs)
    lengths.push_back(contig.length_bands);
  figures.N50_bands = N50_of_lengths(std::move(lengths));
}

void add_cluster(contig_figures &figures, const contig_summary &cluster) {
  if (cluster.n_clones >= figures.min_size) {
    figures.contigs.push_back(cluster);
    figures.n_clones_in_contigs += cluster.n_clones;
  } else {
    ++figures.n_heaps;
    figures.n_clones_in_heaps += cluster.n_clones;
  }
}

// Those of a kind by name. `what`: they lack, with why and what helps.
template <class Kind>
std::string text_of_contigs_without(const contig_figures &figures, const std::string &what, const Kind &is_of_kind) {
  std::string names;
  std::size_t n_contigs = 0;
  std::int64_t n_clones = 0;
  for (const contig_summary &contig : figures.contigs) {
    if (!is_of_kind(contig))
      continue;
    n_clones += contig.n_clones;
    if (++n_contigs <= names_shown)
      names += fmt::format("{}{} ({} clones)", n_contigs > 1 ? ", " : "", contig.name,
                           number_text_thousands(contig.n_clones));
  }
  if (n_contigs == 0)
    return {};
  if (n_contigs > names_shown)
    names += fmt::format(" and {} more", n_contigs - names_shown);
  return fmt::format("Contigs without {}: {}, with {} clones:\n  {}.\n", what, n_contigs,
                     number_text_thousands(n_clones), names);
}

std::string text_of_what_is_missing(const contig_figures &figures) {
  const auto is_too_large = [](const contig_summary &contig) { return contig.remark == remark_too_large; };
  const auto has_no_map = [](const contig_summary &contig) { return contig.length_bands == 0; };
  std::string text = text_of_contigs_without(
      figures, "map, tiling path and order, being larger than --max-clones (none keeps them whole)",
      [&](const contig_summary &contig) { return has_no_map(contig) && is_too_large(contig); });
  text += text_of_contigs_without(
      figures, "map, tiling path and order, not connected at the cutoff (a lower --cutoff may join them)",
      [&](const contig_summary &contig) { return has_no_map(contig) && !is_too_large(contig); });
  if (figures.ordering)
    text += text_of_contigs_without(
        figures,
        fmt::format("order, of more than {} clones and wider than {} (more --steps or a smaller --max-width cut them)",
                    n_clones_of_any_width, width_to_order - 1),
        [&](const contig_summary &contig) {
          return !has_no_map(contig) && contig.n_clones > n_clones_of_any_width &&
                 !is_shape_to_order(contig.n_clones, contig.width);
        });
  return text;
}

// What stayed wide is where false joins are: a contig told as good as any other would mislead.
std::string text_of_wide_contigs(const contig_figures &figures) {
  std::string names;
  std::size_t n_contigs = 0;
  std::int64_t n_clones = 0, n_far = 0;
  for (const contig_summary &contig : figures.contigs) {
    if (contig.remark != remark_wide)
      continue;
    n_clones += contig.n_clones;
    n_far += std::max(contig.n_far, 0);
    if (++n_contigs <= names_shown)
      names += fmt::format("{}{} ({} clones, width {}, {} far)", n_contigs > 1 ? ", " : "", contig.name,
                           number_text_thousands(contig.n_clones), contig.width,
                           number_text_thousands(std::max(contig.n_far, 0)));
  }
  if (n_contigs == 0)
    return {};
  if (n_contigs > names_shown)
    names += fmt::format(" and {} more", n_contigs - names_shown);
  return fmt::format(
      "Wider than --max-width to the end: {} contigs, with {} clones, {} of them far from their tiling "
      "path:\n  {}.\n"
      "  Most contigs that fold or join apart places are such: chimeras that hide each other, or false "
      "overlaps.\n"
      "  Take no path of theirs on trust: try --clone-test or --method layout, see far_from_MTP_cl_N.txt, "
      "or look at a picture\n  (orb draw).\n",
      n_contigs, number_text_thousands(n_clones), number_text_thousands(n_far), names);
}

std::string text_of_windows(const window_totals &windows) {
  if (windows.n_contigs == 0)
    return {};
  return fmt::format("Contigs ordered in windows, with more than {} clones that aren't buried: {}. Weak joins of their "
                     "windows (see order_control_): {} of {}.\n",
                     most_in_one_search, windows.n_contigs, windows.n_weak_joins, windows.n_joins);
}

} // namespace

std::int32_t N50_of_lengths(std::vector<std::int32_t> lengths) {
  std::sort(lengths.begin(), lengths.end(), std::greater<>());
  const std::int64_t total = std::accumulate(lengths.begin(), lengths.end(), std::int64_t{0});
  std::int64_t sum = 0;
  for (std::int32_t length : lengths)
    if ((sum += length) * 2 >= total)
      return length;
  return 0;
}

contig_figures contig_figures_of(const adapt_clust_result &result, std::int32_t min_size) {
  contig_figures figures;
  figures.folder = result.folder;
  figures.min_size = min_size;
  figures.n_clones_alone = result.n_clones_alone;
  figures.windows = result.windows;
  for (const contig_summary &cluster : result.clusters)
    add_cluster(figures, cluster);
  finish_figures(figures);
  return figures;
}

contig_figures contig_figures_of(const run_folder &run, std::int32_t min_size, std::int32_t n_clones) {
  contig_figures figures;
  figures.folder = run.folder;
  figures.min_size = min_size;
  for (std::size_t i = 0; i < run.clusters.size(); ++i) {
    const cluster_row &row = run.clusters[i];
    contig_summary cluster{row.name,
                           row.n_clones,
                           0,
                           row.cutoff,
                           row.diam < 0 ? -1 : row.width,
                           static_cast<std::int32_t>(run.tiling_path[i].size()),
                           row.contig,
                           row.remark,
                           row.n_far};
    double left = 0, right = -1;
    for (const auto &place : run.coordinates[i]) {
      left = right < left ? place.left : std::min(left, place.left);
      right = std::max(right, place.right);
    }
    if (!run.coordinates[i].empty())
      cluster.length_bands = static_cast<std::int32_t>(right - left + 1);
    add_cluster(figures, cluster);
  }
  figures.n_clones_alone = n_clones - figures.n_clones_in_contigs - figures.n_clones_in_heaps;
  finish_figures(figures);
  return figures;
}

std::string text_of_contigs(const contig_figures &figures, const std::string &band_length) {
  std::string text = fmt::format("\n{:<10} {:>7} {:>11} {:>7} {:>6} {:>12}\n", "Contig", "clones", "bands long",
                                 "cutoff", "width", "tiling path");
  for (std::size_t i = 0; i < std::min(rows_shown, figures.contigs.size()); ++i) {
    const contig_summary &contig = figures.contigs[i];
    text += fmt::format("{:<10} {:>7} {:>11} {:>7} {:>6} {:>12}\n", contig.name, contig.n_clones,
                        contig.length_bands ? std::to_string(contig.length_bands) : "-", number_text(contig.cutoff, 2),
                        contig.width >= 0 ? std::to_string(contig.width) : "-", contig.n_clones_MTP);
  }
  if (figures.contigs.size() > rows_shown)
    text += fmt::format("... and {} more, in report_contigs.txt\n", figures.contigs.size() - rows_shown);
  text += fmt::format("\nContigs of at least {} clones: {}, with {} clones.\n", figures.min_size,
                      figures.contigs.size(), number_text_thousands(figures.n_clones_in_contigs));
  text += fmt::format("In {} smaller heaps: {} clones. Alone: {} clones.\n", figures.n_heaps,
                      number_text_thousands(figures.n_clones_in_heaps), number_text_thousands(figures.n_clones_alone));
  text += fmt::format("N50 of the contigs: {} bands.\n", number_text_thousands(figures.N50_bands));
  if (!band_length.empty())
    text += band_length + "\n";
  text += text_of_windows(figures.windows) + text_of_what_is_missing(figures);
  text += text_of_wide_contigs(figures);
  text += "\nOpen next, in " + figures.folder.string() + ":\n";
  text += "  report_contigs.txt      one line a contig\n";
  text += "  clones_in_MTP.txt       the clones to sequence\n";
  text += "  cl_N/coor_cl_N.txt      where each clone of contig cl_N lies, in bands\n";
  text += "  FPC_like_pp.fpc         all contigs, for the FPC program";
  return text;
}

} // namespace orb
