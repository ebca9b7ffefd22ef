// What a command is asked to do: filled by the command line, or by whoever calls the handlers directly.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "commands/draw_options.h"
#include "commands/evaluate_options.h"
#include "commands/pvalue_options.h"
#include "commands/simulate_options.h"
#include "reports/run_record.h"

namespace orb {

struct command_options {
  std::string command;                   // by the table of commands
  std::vector<std::string> command_line; // as given, for run.json

  std::filesystem::path input; // INPUT or LIB
  std::filesystem::path net;   // NET
  std::filesystem::path out;
  std::vector<std::filesystem::path> info_paths;
  std::string clone; // of info
  bool json = false;

  // reading
  bool plain_text = false;
  std::int32_t capacity = 80000;
  std::int16_t name_format_in = 7, name_format_out = 7;

  // parameters of the library; unset: the default, or what the library file says
  std::optional<std::int16_t> tolerance, tolerance_index;
  std::optional<double> gel_length;
  std::optional<std::int32_t> n_bands;
  std::optional<std::int32_t> preset;

  // metric
  std::string metric; // name or index; empty: Sulston_1988, or what a run in hand was made with
  std::optional<double> cutoff;
  std::optional<double> burying;            // unset: 0.9, or what a run in hand was made with
  std::optional<std::int16_t> table_format; // columns of pair tables
  std::filesystem::path markers;            // of clones
  std::filesystem::path pvalue_tables;      // folder

  // net
  std::filesystem::path text;
  std::int32_t start = 1;
  bool parts = false;

  // revision
  std::int32_t rank = 1;
  std::string additional_cutoff;
  bool no_overlaps = false, no_clones = false;

  // contigs
  std::int32_t max_clones = 1200, min_size = 6, max_width = 1, steps = 6;
  double step = 3;
  bool no_ordering = false, no_pair_tables = false, no_drawings = false;

  // order of the clones
  double ordering_seconds = 2;     // of each search
  std::int64_t ordering_steps = 0; // above 0: in place of the seconds
  std::int32_t jackknife = 0;      // runs
  double jackknife_alpha = 0.05;   // chance of leaving a band out

  bool resume = false;

  // lists of clones: order, draw, list, table
  std::filesystem::path list, list_2;
  draw_wishes draw;
  std::string format = "net";                            // of a drawing: "net", "graphml" or "both"
  std::filesystem::path fingerprints;                    // from which records are selected
  std::string frequency_cutoff;                          // of their bands; empty: asked
  bool only_consecutive = false, only_all_pairs = false; // which tables

  // a finished run, read back: retain, report
  std::filesystem::path run;
  std::filesystem::path library; // empty: what the run's record names
  std::filesystem::path old_MTP, sequenced;
  std::optional<std::int32_t> which_clusters;
  bool use_maximal_subcluster = false, increase_cutoff = false;
  std::filesystem::path new_names;
  bool separated_by_spaces = false;

  // markers
  std::filesystem::path positions; // of markers

  evaluation_options evaluate;
  pvalue_options pvalue;
  simulate_options simulate;

  // every command
  int threads = 0;
  std::uint64_t seed = 1;
  bool quiet = false, verbose = false, force = false, yes = false;
  std::filesystem::path answers;
  std::filesystem::path log;
};

inline run_identity identity_of(const command_options &options) {
  return {options.command, options.command_line, options.seed, options.threads};
}

} // namespace orb
