#include "reports/proposal_report.h"

#include "database/class_DB_of_clones_read.h"
#include "frame/failures.h"
#include "frame/numbers.h"

namespace orb {

namespace fs = std::filesystem;

report rows_of_proposals(const parameter_proposals &proposals) {
  report rows = report::array();
  const auto add = [&](const char *name, const std::optional<proposal> &made) {
    if (made)
      rows.push_back({{"parameter", name},
                      {"value", made->decimals > 0 ? report(std::stod(number_text(made->value, made->decimals)))
                                                   : report(std::llround(made->value))},
                      {"sure", word_of(made->how_sure)},
                      {"reason", made->reason}});
  };
  add("preset", proposals.preset);
  add("tolerance", proposals.tolerance);
  add("gel-length", proposals.gel_length);
  add("n-bands", proposals.n_bands);
  add("cutoff", proposals.cutoff);
  add("additional-cutoff", proposals.additional_cutoff);
  add("step", proposals.step);
  add("least overlap seen", proposals.least_overlap);
  add("depth", proposals.depth);
  return rows;
}

std::optional<parameter_proposals> proposals_from_files(const process_frame &frame, const project_settings &settings,
                                                        const fs::path &path, double largest_band) {
  if (largest_band > longest_usual_gel)
    return std::nullopt;
  process_frame unseen;
  unseen.working_folder_set(frame.working_folder_get());
  class_DB_of_clones database;
  database.tollerance_parameters_set(library_parameters{}.tolerance, 1);
  database.total_number_of_different_bands_set_by_eff_len(gel_length_for(largest_band));
  class_usable_values usable_values;
  class_DB_of_clones_read reader(unseen, settings);
  bool loaded = false;
  try {
    reader.read_database_from_folder_of_sizes_files(path, !fs::is_directory(path), true, loaded, database,
                                                    usable_values);
  } catch (const program_end &) { // wrong bands: the survey has told them
  }
  if (!loaded)
    return std::nullopt;
  return proposals_of(database);
}

} // namespace orb
