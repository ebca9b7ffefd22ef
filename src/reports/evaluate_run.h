// A finished run judged against the true places of its clones: what is read for it, the report, and its files.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "contigs/run_folder.h"
#include "frame/process_frame.h"
#include "simulation/evaluation_files.h"
#include "simulation/map_quality.h"
#include "simulation/simul_clone.h"

namespace orb {

struct evaluation_sources {
  std::filesystem::path run;      // folder of the run itself
  std::filesystem::path truth;    // table of true positions
  std::filesystem::path Q_clones; // report of Q-clones or list of names; empty: the report beside the run
  std::int64_t genome_length = 0; // of all chromosomes, base pairs; 0: by the largest ends of the truth
};

struct run_evaluation {
  placed_clones truth;
  run_folder run;
  std::vector<clone_order> orders;   // of each cluster
  std::filesystem::path Q_file;      // empty: Q-clones aren't known
  std::vector<std::string> Q_clones; // names
  map_quality quality;
  nlohmann::ordered_json report; // "run", "truth", "Q_clones" (null: not known), then as `report_of_quality` makes it
};

// Reads and judges. Of several reports of Q-clones beside the run the one of the run's own cutoff counts; a note says
// when none is. False after its message: something is damaged, or the truth knows none of the run's clones. Throws
// file_error.
bool evaluate_run(process_frame &frame, const evaluation_sources &sources, run_evaluation &made);

// The files that `write_evaluation` makes, beside the tables of the clones' coordinates.
inline constexpr const char *names_of_evaluation_files[] = {"report.txt", "contigs.tsv", "damage.tsv",
                                                            "evaluation.json"};
// Writes them into the working folder. False when the user stopped; throws file_error.
bool write_evaluation(process_frame &frame, const run_evaluation &made);

} // namespace orb
