// class_simul_clones: the fingerprints of the clones as a database of records.
#include <algorithm>

#include "frame/numbers.h"
#include "frame/worker_blocks.h"
#include "simulation/simul_reading.h"

namespace orb {

namespace {

void append_record(std::string &text, const std::string *name, const std::vector<double> &bands) {
  if (name != nullptr) {
    text += *name;
    text += '\t';
    whole_number_append(text, static_cast<std::int64_t>(bands.size()));
    text += "\tGel\r\n";
  }
  for (const double band : bands) {
    number_text_append(text, band, 1);
    text += "\r\n";
  }
  text += "-1\r\n";
}

} // namespace

void class_simul_clones::print_clone_with_bands(clone_number clone, std::vector<double> &bands, std::int32_t &n,
                                                result_file &file, bool with_names) const {
  reading work;
  read_bands(clone, false, work);
  bands = std::move(work.bands);
  n = static_cast<std::int32_t>(bands.size());
  std::string text;
  append_record(text, with_names ? &placed_.clones[static_cast<std::size_t>(clone) - 1].name : nullptr, bands);
  file.write(text);
}

struct class_simul_clones::printed_record {
  std::string text;
  std::int32_t n_bands = 0, n_without_errors = 0;
};

void class_simul_clones::make_record(clone_number clone, reading &work, printed_record &made) const {
  read_bands(clone, true, work);
  made.n_without_errors = static_cast<std::int32_t>(work.bands.size());
  read_bands(clone, false, work);
  made.n_bands = static_cast<std::int32_t>(work.bands.size());
  made.text.clear();
  append_record(made.text, &placed_.clones[static_cast<std::size_t>(clone) - 1].name, work.bands);
}

bool class_simul_clones::print_list_of_clones_with_bands(const number_list &list, bool update_obs, bool filter,
                                                         bool use_observed, number_list &kept) {
  kept.clear();
  if (!chromosomes_are_known()) {
    return frame_.refuse("The clones don't belong to the sequence " + bands_.file_with_sequence_name_get().string());
  }
  // The same records once more under the name that a folder of fingerprints is read by.
  result_file file(frame_.path_in_working_folder("\\DataBase_Simul.txt"));
  result_file sizes(frame_.path_in_working_folder("\\DataBase_Simul.sizes"));
  std::vector<printed_record> records(static_cast<std::size_t>(std::min<std::int64_t>(clones_a_block, list.count())));
  std::vector<reading> works(static_cast<std::size_t>(worker_count(draw_.threads)));
  const auto body = [&](std::int64_t first, std::int64_t last, int worker) {
    reading &work = works[static_cast<std::size_t>(worker)];
    for (std::int64_t i = first; i <= last; ++i)
      make_record(list(static_cast<std::int32_t>(i)), work,
                  records[static_cast<std::size_t>((i - 1) % clones_a_block)]);
  };
  std::int64_t written = 0;
  const auto write = [&](std::int64_t done) {
    for (std::int64_t i = written + 1; i <= done; ++i) {
      const clone_number number = list(static_cast<std::int32_t>(i));
      const printed_record &made = records[static_cast<std::size_t>((i - 1) % clones_a_block)];
      simul_clone &clone = placed_.clones[static_cast<std::size_t>(number) - 1];
      clone.n_bands_obs_no_errors = made.n_without_errors;
      if (update_obs)
        clone.n_bands_obs = made.n_bands;
      const std::int32_t counted = use_observed ? made.n_bands : made.n_without_errors;
      if (filter && (counted < draw_.min_bands || counted > draw_.max_bands))
        continue;
      file.write(made.text);
      sizes.write(made.text);
      kept.add(number);
    }
    written = done;
    frame_.progress(done, list.count());
    frame_.local_process_text_set(std::to_string(done) + " out of " + std::to_string(list.count()) +
                                  " clones printed.");
    return !frame_.stop_requested_get();
  };
  if (!run_in_blocks(1, list.count(), clones_a_block, clones_a_piece, draw_.threads, body, write))
    return false;
  file.commit();
  sizes.commit();
  print_table_of_clones(list, "\\clones.txt");
  frame_.local_process_text_set("All of " + std::to_string(list.count()) + " clones completed.");
  return true;
}

bool class_simul_clones::print_list_of_clones_with_bands_run(std::optional<bool> filter,
                                                             std::optional<bool> use_observed, number_list &kept) {
  kept.clear();
  if (!is_sequence_read_ && !start_Simul_CutEnzyme_CloneEnds_run_if_needed())
    return false;
  if (!filter) {
    question exclude;
    exclude.text = "Do you want to exclude too short (<" + std::to_string(draw_.min_bands) + " bands) and too long (>" +
                   std::to_string(draw_.max_bands) + " bands) clones?";
    exclude.by_default = answer::yes; // as laboratories do
    filter = frame_.yes(exclude);
  }
  if (*filter && !use_observed) {
    question observed;
    observed.text = "Do you want to use observed number of bands (after noising band size and band missing) instead of "
                    "putative number of bands (no errors)?";
    observed.by_default = answer::yes; // what a laboratory can count
    use_observed = frame_.yes(observed);
  }
  frame_.process_start("Print clones with bands...");
  const number_list all = number_list::range(1, n_clones());
  if (!print_list_of_clones_with_bands(all, true, *filter, use_observed.value_or(false), kept)) {
    if (frame_.stop_requested_get())
      frame_.process_stopped_manually();
    else
      frame_.process_aborted();
    return false;
  }
  print_table_of_clones(kept, "\\selected_clones.txt");
  print_statistics_of_clones(kept, "\\statistics_selected_clones.txt");
  print_bin_coverage(kept, "\\clone_bin_coverage.txt");
  print_true_positions(kept, "\\truth.tsv");
  frame_.process_done();
  return true;
}

} // namespace orb
