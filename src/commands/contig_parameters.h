// What is asked of the contigs of a run: how clusters are cut, which files each contig gets, how its order is found.
#pragma once

#include <string>

#include "commands/command_row.h"
#include "commands/length_parameters.h"
#include "contigs/class_contig_adapt_clust.h"
#include "reports/contig_summary_text.h"

namespace orb {

struct ordering_parameters {
  double seconds = 2;     // of each search
  std::int64_t steps = 0; // above 0: in place of the seconds
  std::int32_t jackknife = 0;
  double jackknife_alpha = 0.05; // chance of leaving a band out
};

struct contig_file_parameters {
  bool no_ordering = false, no_pair_tables = false, no_drawings = false;
  std::string drawing_format = "net"; // "net", "graphml" or "both"
  std::optional<bool> from_net_only;  // tables of pairs
  length_parameters lengths;
  drawing_options drawing; // captions and marks, as in draw.list
  ordering_parameters ordering;
};

void describe_ordering(parameter_list &list, ordering_parameters &p);
ordering_options ordering_of(const ordering_parameters &p);
void put_ordering(const ordering_parameters &p, command_result &result);

void describe_drawing_panel(parameter_list &list, drawing_options &p);
void set_drawing_format(const std::string &format, drawing_options &drawing);

void describe_contig_files(parameter_list &list, contig_file_parameters &p);
// The question that each table of pairs would ask is asked here, once a run.
contig_files files_of_contigs(process_frame &frame, const contig_file_parameters &p);
void put_contig_files(const contig_file_parameters &p, command_result &result);
void put_figures(const contig_figures &figures, command_result &result);

} // namespace orb
