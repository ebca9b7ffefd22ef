// Contigs as files that other programs read whole.
#include <fmt/format.h>

#include "clustering/contig_map.h"
#include "commands/command_table.h"
#include "commands/length_parameters.h"
#include "commands/row_steps.h"
#include "fpc/fpc_blocks.h"
#include "fpc/fpc_export.h"
#include "metrics/class_clone_dist_general.h"
#include "reports/map_export.h"
#include "reports/run_record.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

struct export_parameters {
  std::string to;
  output_wishes output;
  length_parameters lengths;
};

bool in_base_pairs(const export_parameters &p) {
  return p.to == "gff3" || p.to == "bed";
}

void describe_export(parameter_list &list, export_parameters &p) {
  list.add("to", p.to, "form of the file: fpc, gff3, bed or tsv").one_of({"fpc", "gff3", "bed", "tsv"}).needed();
  describe_output(list, p.output, "FILE");
  describe_lengths(list, p.lengths);
}

void check_export(const project_state &project, const parts_there &, const export_parameters &p) {
  check_lengths(p.lengths);
  if (is_wanted(p.lengths) && !in_base_pairs(p))
    throw usage_error("--bp-per-band, --clone-length and --genome-length belong to --to gff3 and --to bed");
  if (p.to == "fpc") {
    if (cor_file_of(p.output.out) == p.output.out)
      throw usage_error("--out names the file of the bands; the .fpc file needs another ending");
    check_output(project, cor_file_of(p.output.out), p.output.force);
  }
  check_output(project, p.output.out, p.output.force);
}

// The cutoff of the run as an exponent of P, where the metric is known and such a probability; without a record of the
// run that of the net.
std::optional<double> exponent_of(const project_state &project) {
  const fs::path run = fs::absolute(project.origin(project_part::contigs).file).lexically_normal();
  const auto record = run_record_read((run.has_filename() ? run : run.parent_path()).parent_path() / "run.json");
  std::optional<overlap_rule> rule = record ? rule_of_record(*record) : std::nullopt;
  if (!rule)
    rule = project.rule_of_net();
  if (!rule || (rule->distance_index != class_clone_dist_general::DISTANCE_INDEX_Sulston_1988_get() &&
                rule->distance_index != class_clone_dist_general::DISTANCE_INDEX_Soderlund_1997_get()))
    return std::nullopt;
  return rule->cutoff;
}

std::string names_of_some(const std::vector<std::string> &names) {
  constexpr std::size_t most = 10;
  std::string text;
  for (std::size_t i = 0; i < names.size() && i < most; ++i)
    text += (i > 0 ? ", " : "") + names[i];
  return names.size() > most ? text + fmt::format(" and {} more", names.size() - most) : text;
}

std::int32_t clones_with_repeated_names(const class_DB_of_clones &database) {
  std::int32_t n = 0;
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone)
    n += database.nRepeatsCloneName_get(clone) < 0 ? 1 : 0;
  return n;
}

// What the file lacks, or holds in another way than one would think.
void say_what_is_missing(process_frame &frame, const export_parameters &p, const class_DB_of_clones &database,
                         const contig_map &map, const band_length &length, bool with_net) {
  std::vector<std::string> unplaced;
  for (std::size_t c = 1; c < map.contigs.size(); ++c)
    if (!map.contigs[c].is_placed)
      unplaced.push_back(map.contigs[c].name);
  if (!unplaced.empty())
    frame.note(fmt::format("Contigs without coordinates: {}. {}: {}.", unplaced.size(),
                           p.to == "fpc"   ? "Each of their clones stands at 0 to its bands less 1"
                           : p.to == "tsv" ? "Their clones have no ends"
                                           : "They and their clones are left out",
                           names_of_some(unplaced)));
  if (const std::int32_t n = p.to == "fpc" ? clones_with_repeated_names(database) : 0; n > 0)
    frame.note(fmt::format("{} clones bear a name that another clone has: readers of .fpc files keep one of each.", n));
  if (in_base_pairs(p)) {
    frame.note(text_of(length));
    if (!map.alone.empty())
      frame.note(fmt::format("{} clones alone have no place and are left out.", map.alone.size()));
  }
  if (!with_net)
    frame.note("No net is known: nothing is said of buried clones and Q-clones.");
}

command_result run_export(project_state &project, const export_parameters &p) {
  process_frame &frame = project.frame();
  const class_DB_of_clones &database = project.database();
  const bool with_net = project.has(project_part::net);
  const band_length length = band_length_of(database, p.lengths);
  contig_map map;
  if (!make_contig_map(frame, database, *database.contigs(), with_net ? &project.signif().net() : nullptr, map))
    return stopped_or_failed(project);
  command_result result;
  result.parameter("to", p.to);
  result.file("export", p.output.out);
  if (p.to == "fpc") {
    if (!write_fpc_export(frame, database, map, exponent_of(project), p.output.out))
      return stopped_or_failed(project);
    result.file("bands", cor_file_of(p.output.out));
  } else if (p.to == "tsv") {
    write_map_table(database, map, p.output.out);
  } else {
    result.parameter("bp_per_band", length.bp);
    (p.to == "bed" ? write_map_bed : write_map_gff3)(database, map, length.bp, p.output.out);
  }
  say_what_is_missing(frame, p, database, map, length, with_net);
  result.figure("contigs", map.contigs.size() - 1);
  result.figure("clones_alone", map.alone.size());
  return result;
}

} // namespace

void add_export_rows(command_rows &rows) {
  rows.push_back(command_maker<export_parameters>("contigs.export")
                     .captioned("Export contigs")
                     .purpose("the contigs as one file that other programs read")
                     .example("contigs.export to=gff3 out=contigs.gff3")
                     .needs({project_part::library, project_part::contigs})
                     .parameters(describe_export)
                     .checked_by(check_export)
                     .runs(run_export)
                     .row());
}

} // namespace orb
