#include "commands/length_parameters.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "clustering/class_FPCto_import.h"
#include "clustering/contig_statistics.h"
#include "commands/row_steps.h"
#include "frame/numbers.h"

namespace orb {

namespace {

constexpr const char *estimate_word = "estimate";
constexpr double least_bp = 1, most_bp = largest_band_size;

double mean_bands_of_clones(const class_DB_of_clones &database) {
  const std::int32_t n = database.total_number_of_clones_get();
  return n > 0 ? static_cast<double>(database.first_band_adress_get(n + 1) - 1) / n : 0;
}

double bands_of_contigs(const class_FPCto_import &registry) {
  double sum = 0;
  for (const cluster_id id : registry.current_list_of_clusters_in_use_get().members())
    sum += registry.length_of_cluster_bands_get(id);
  return sum;
}

std::string shown(double bp) {
  const bool is_small = bp < 1000 && bp != std::floor(bp);
  return is_small ? number_text(bp, 1) : number_text_thousands(static_cast<std::int64_t>(bp + 0.5));
}

} // namespace

band_length band_length_of(const class_DB_of_clones &database, const length_parameters &p) {
  double given = 0;
  if (!p.bp_per_band.empty() && p.bp_per_band != estimate_word && number_parse(p.bp_per_band, given))
    return {given, "as given"};
  band_length found = estimated_band_length(database, p);
  found.bp = std::min(std::max(found.bp, least_bp), most_bp);
  return found;
}

std::string text_of(const band_length &length) {
  return fmt::format("Base pairs a band: {} ({}).", shown(length.bp), length.words);
}

bool is_wanted(const length_parameters &p) {
  return (!p.bp_per_band.empty() && p.bp_per_band != estimate_word) || p.clone_length || p.genome_length;
}

void describe_lengths(parameter_list &list, length_parameters &p) {
  const char *group = "Lengths in base pairs";
  list.add("bp-per-band", p.bp_per_band, "base pairs a band, or estimate: by the options below, else 1200")
      .type("X|estimate")
      .asked_else("estimate")
      .in_group(group);
  list.add("clone-length", p.clone_length, "mean length of the clones in bp, for the estimate")
      .limits(least_bp, most_bp)
      .unset("unknown")
      .in_group(group);
  list.add("genome-length", p.genome_length, "length of the genome in bp that the contigs cover, for the estimate")
      .limits(least_bp, 1e15)
      .unset("unknown")
      .in_group(group);
}

void check_lengths(const length_parameters &p) {
  double bp = 0;
  const bool is_word = p.bp_per_band.empty() || p.bp_per_band == estimate_word;
  if (!is_word && !(number_parse(p.bp_per_band, bp) && bp >= least_bp && bp <= most_bp))
    throw usage_error("--bp-per-band takes a number of at least 1, or estimate");
}

band_length estimated_band_length(const class_DB_of_clones &database, const length_parameters &p) {
  const double n_bands = mean_bands_of_clones(database);
  if (p.clone_length && n_bands > 0) {
    const double bp = *p.clone_length / n_bands;
    return {bp, fmt::format("clones of {} bp have {} bands", shown(*p.clone_length), number_text(n_bands, 1))};
  }
  const double in_contigs = database.contigs() ? bands_of_contigs(*database.contigs()) : 0;
  if (p.genome_length && in_contigs > 0)
    return {*p.genome_length / in_contigs,
            fmt::format("{} bp lie in contigs of {} bands", shown(*p.genome_length), shown(in_contigs))};
  return {standard_band_size, "assumed; --bp-per-band, --clone-length or --genome-length tell it better"};
}

std::shared_ptr<const std::string> answer_band_lengths_ahead(project_state &project, const length_parameters &p) {
  auto told = std::make_shared<std::string>();
  if (p.bp_per_band.empty() && !p.clone_length && !p.genome_length)
    return told;
  const auto bp = [&project, p, told] { // asked for at the end of a run, when its contigs are there
    const band_length found = band_length_of(project.database(), p);
    *told = text_of(found);
    return found.bp;
  };
  project.frame().answer_ahead("Virtual band size (bp", [bp] { return number_text(bp(), 0); });
  project.frame().answer_ahead("Virtual band size:", [bp] { return number_text_shortest(bp() / 1000); });
  return told;
}

void describe_browse(parameter_list &list, std::optional<bool> &browse) {
  list.add("browse", browse, "FPC_like_pp.fpc for a genome browser: from 0 in each contig, in kb").asked_else("no");
}

void answer_browse_ahead(project_state &project, const std::optional<bool> &browse) {
  if (browse)
    answer_ahead(project, "For Browse", *browse);
}

} // namespace orb
