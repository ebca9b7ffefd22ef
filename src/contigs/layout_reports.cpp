#include "contigs/layout_reports.h"

#include "frame/files.h"
#include "frame/numbers.h"
#include "net/suspect_table.h"

namespace orb {

namespace {

void print_doubts(const class_DB_of_clones &database, const layout_result &found,
                  std::span<const std::string> contig_names, const std::filesystem::path &file) {
  result_file out(file);
  out.line("contig\tclone\tcoor_left\tcoor_right\tno_column\tno_column_around\todd_overlaps\todd_overlaps_around\t"
           "not_linked");
  for (std::size_t k = 0; k < found.contigs.size(); ++k) {
    const laid_contig &contig = found.contigs[k];
    for (std::size_t i = 0; i < contig.clones.size(); ++i) {
      const clone_doubt &doubt = contig.doubt[i];
      std::string row = contig_names[k] + "\t" + database.name_of_clone_get(contig.clones[i]) + "\t" +
                        number_text(static_cast<double>(contig.left_exact[i]), 2) + "\t" +
                        number_text(static_cast<double>(contig.right_exact[i]), 2);
      for (const float value :
           {doubt.no_column, doubt.no_column_around, doubt.odd_edges, doubt.odd_edges_around, doubt.not_linked})
        row += "\t" + number_text(static_cast<double>(value), 3);
      out.line(row);
    }
  }
  out.commit();
}

void print_dropped(const class_DB_of_clones &database, const layout_result &found, const std::filesystem::path &file) {
  result_file out(file);
  out.line("clone_1\tclone_2\twhy\tfor\tagainst\toverlap\toverlap_laid");
  for (const dropped_edge &edge : found.dropped)
    out.line(database.name_of_clone_get(edge.a) + "\t" + database.name_of_clone_get(edge.b) + "\t" +
             (edge.why == edge_end::third_clones ? "third clones" : "too far apart") + "\t" +
             std::to_string(edge.n_for) + "\t" + std::to_string(edge.n_against) + "\t" + number_text(edge.overlap, 1) +
             "\t" + number_text(edge.overlap_laid, 1));
  out.commit();
}

std::string kind_of(const layout_join &join) {
  return join.kind == join_kind::end_stretch ? "end stretches" : join.kind == join_kind::edges ? "overlaps" : "bridge";
}

std::string support_of(const layout_join &join) {
  if (join.kind != join_kind::end_stretch)
    return "";
  return join.support == join_support::both_sides ? "both sides"
         : join.support == join_support::one_side ? "one side"
                                                  : "two clones";
}

void print_joins(const class_DB_of_clones &database, const layout_result &found,
                 std::span<const std::string> contig_names, const std::filesystem::path &file) {
  std::vector<std::int32_t> contig_of(static_cast<std::size_t>(database.total_number_of_clones_get()) + 1, -1);
  for (std::size_t k = 0; k < found.contigs.size(); ++k)
    for (const clone_number c : found.contigs[k].clones)
      contig_of[static_cast<std::size_t>(c)] = static_cast<std::int32_t>(k);
  result_file out(file);
  out.line("contig\tkind\tsupport\tclone_1\tclone_2\toverlap\tscore\tcommon\tn_1\tn_2\twitnesses");
  for (const layout_join &join : found.joins) {
    const std::int32_t contig = contig_of[static_cast<std::size_t>(join.a)];
    out.line((contig < 0 ? "" : contig_names[static_cast<std::size_t>(contig)]) + "\t" + kind_of(join) + "\t" +
             support_of(join) + "\t" + database.name_of_clone_get(join.a) + "\t" + database.name_of_clone_get(join.b) +
             "\t" + number_text(join.overlap, 1) + "\t" + number_text(join.score, 2) + "\t" +
             std::to_string(join.common) + "\t" + std::to_string(join.n_a) + "\t" + std::to_string(join.n_b) + "\t" +
             names_of_clones(database, join.witnesses));
  }
  out.commit();
}

} // namespace

void print_layout_reports(const class_DB_of_clones &database, const layout_result &found,
                          std::span<const std::string> contig_names, const std::filesystem::path &folder) {
  print_doubts(database, found, contig_names, folder / layout_doubts_name);
  print_dropped(database, found, folder / layout_dropped_name);
  print_joins(database, found, contig_names, folder / layout_joins_name);
  const auto is_listed = [&](clone_number c) { // attached again
    return std::any_of(found.suspects.begin(), found.suspects.end(),
                       [c](const clone_suspect &s) { return s.clone == c; }) ||
           std::find(found.misfits.begin(), found.misfits.end(), c) != found.misfits.end();
  };
  result_file out(folder / layout_suspects_name);
  out.line(suspects_head());
  for (const clone_suspect &suspect : found.suspects)
    out.line(suspect_row(database, suspect));
  for (const clone_number c : found.misfits)
    out.line(database.name_of_clone_get(c) + "\tmisfit\t\t\t\t\t\t\t\t\t\t");
  for (const laid_contig &contig : found.contigs)
    for (const clone_number c : contig.loose_bands)
      if (!is_listed(c))
        out.line(database.name_of_clone_get(c) + "\tloose bands\t\t\t\t\t\t\t\t\t\t");
  out.commit();
}

} // namespace orb
