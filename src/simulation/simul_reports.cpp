// class_simul_clones: tables of clones, their statistics and true places.
#include <algorithm>
#include <cmath>

#include "frame/numbers.h"
#include "simulation/class_simul_clones.h"

namespace orb {

namespace {

void append_field(std::string &text, std::int64_t value) {
  text += '\t';
  whole_number_append(text, value);
}

// Sums over the clones of a list.
struct clone_sums {
  std::int64_t n = 0, length = 0, parts = 0, observed = 0, no_errors = 0, more_0 = 0, too_long = 0, ok_colored = 0;
  std::vector<std::int64_t> n_with_parts; // by the number of parts
  band_reading_sums readings;

  void add(const simul_clone &clone) {
    ++n;
    length += clone.length;
    parts += clone.n_parts();
    observed += clone.n_bands_obs;
    no_errors += clone.n_bands_obs_no_errors;
    more_0 += clone.n_bands_more_0;
    too_long += clone.n_bands_too_long;
    ok_colored += clone.n_bands_ok_colored;
    const auto k = static_cast<std::size_t>(clone.n_parts());
    if (n_with_parts.size() <= k)
      n_with_parts.resize(k + 1, 0);
    ++n_with_parts[k];
  }
};

std::string mean(double sum, std::int64_t n, int decimals) {
  return number_text(n > 0 ? sum / double(n) : 0, decimals);
}

} // namespace

void class_simul_clones::print_table_of_clones(const number_list &list, const std::string &name) const {
  std::int32_t most_parts = 0;
  for (const clone_number number : list.members())
    most_parts = std::max(most_parts, placed_.clones[static_cast<std::size_t>(number) - 1].n_parts());
  // Positions on several chromosomes mean nothing without them; with one the table is as it always was.
  const bool with_chromosomes = placed_.chromosomes.size() > 1;
  result_file file(frame_.path_in_working_folder(name));
  file.line("N_clones\t" + std::to_string(list.count()));
  std::string text = "c\tclone\tbins\tn_bands>0\tn_bands_too_long\tn_bands_ok_colored\tn_bands_obs_no_errors\t"
                     "n_bands_obs\tlength\tparts";
  for (std::int32_t k = 1; k <= most_parts; ++k)
    text += with_chromosomes ? "\tstart\tend\tchromosome" : "\tstart\tend";
  file.line(text);
  for (const clone_number number : list.members()) {
    const simul_clone &clone = placed_.clones[static_cast<std::size_t>(number) - 1];
    text.clear();
    whole_number_append(text, number);
    text += '\t' + clone.name;
    for (const std::int32_t field :
         {clone.n_bins, clone.n_bands_more_0, clone.n_bands_too_long, clone.n_bands_ok_colored,
          clone.n_bands_obs_no_errors, clone.n_bands_obs, clone.length, clone.n_parts()})
      append_field(text, field);
    for (const clone_part &part : clone.parts) {
      append_field(text, part.part_start);
      append_field(text, part.part_end);
      if (with_chromosomes)
        text += '\t' + placed_.chromosomes[static_cast<std::size_t>(part.chromosome) - 1];
    }
    file.line(text);
  }
  file.commit();
}

void class_simul_clones::print_statistics_of_clones(const number_list &list, const std::string &name) const {
  clone_sums sums;
  for (const clone_number number : list.members()) {
    sums.add(placed_.clones[static_cast<std::size_t>(number) - 1]);
    if (static_cast<std::size_t>(number) <= sums_.size())
      sums.readings += sums_[static_cast<std::size_t>(number) - 1];
  }
  const double mean_band =
      sums.readings.n_observed > 0 ? sums.readings.observed_length / double(sums.readings.n_observed) : 0;
  const double error = bands_.max_error_in_band_size_scoring_get();
  double same_at_mean = 0, same = 0;
  // The label stands for the value at the mean length of a band, deliberate; what a user can go by is the line behind
  // it: readings that err by the set error.
  class_Simul_CutEnzyme::probability_diff_obs_less_tolerance_get(
      mean_band, 2 * error, class_Simul_CutEnzyme::share_of_small_errors, same_at_mean);
  class_Simul_CutEnzyme::probability_diff_obs_less_tolerance_get(error, 2 * error,
                                                                 class_Simul_CutEnzyme::share_of_small_errors, same);

  result_file file(frame_.path_in_working_folder(name));
  const auto row = [&file](const std::string &label, const std::string &value) { file.line(label + "\t" + value); };
  row("N_clones", std::to_string(sums.n));
  row("seqence length (bp)", std::to_string(clonable_length_));
  row("Total number of bands", std::to_string(bands_.n_cuts_get()));
  row("Total number of bins", std::to_string(n_bins_));
  row("mean clone bin length (bp)", number_text(mean_bin_length(), 1));
  row("mean real band length (bp)", number_text(mean_real_band_length(), 1));
  row("Observed mean clone length (bp)", mean(double(sums.length), sums.n, 1));
  row("Observed coverage", mean(double(sums.length), clonable_length_, 4));
  row("Observed n_parts_max", std::to_string(sums.n_with_parts.empty() ? 0 : sums.n_with_parts.size() - 1));
  for (std::size_t k = 1; k < sums.n_with_parts.size(); ++k)
    row("n_clones with " + std::to_string(k) + " parts", std::to_string(sums.n_with_parts[k]));
  row("Observed mean clone part length (bp)", mean(double(sums.length), sums.parts, 1));
  row("mean_n_bands_currently_observed_get", mean(double(sums.observed), sums.n, 2));
  row("mean_n_bands_currently_observed_no_errors_get", mean(double(sums.no_errors), sums.n, 2));
  row("mean_n_bands_more_0", mean(double(sums.more_0), sums.n, 2));
  row("mean_n_bands_more_max_band_length_poka_int", mean(double(sums.too_long), sums.n, 2));
  row("mean_n_bands_more_min_less_max_colored", mean(double(sums.ok_colored), sums.n, 2));
  row("mean observed band length", number_text(mean_band, 2));
  row("Pr(obs1(b)=obs2(b))", number_text(same_at_mean, 3));
  row("Pr(two readings of a band within tolerance)", number_text(same, 3));
  file.commit();
}

// Bins are numbered through all chromosomes; a long gap is a bin of its own, in which no clone lies.
void class_simul_clones::print_bin_coverage(const number_list &list, const std::string &name) const {
  std::vector<std::int64_t> bins_before(1, 0); // by chromosome, from 0
  for (const std::vector<std::int32_t> &ends : ends_)
    bins_before.push_back(bins_before.back() + static_cast<std::int64_t>(ends.size()) - 1);
  const std::int64_t n_bins = bins_before.back();
  std::vector<std::int32_t> change(static_cast<std::size_t>(n_bins) + 2, 0);
  for (const clone_number number : list.members())
    for (const clone_part &part : placed_.clones[static_cast<std::size_t>(number) - 1].parts) {
      if (static_cast<std::size_t>(part.chromosome) > ends_.size())
        continue; // read from a table: its bins aren't known
      const std::int64_t before = bins_before[static_cast<std::size_t>(part.chromosome) - 1];
      ++change[static_cast<std::size_t>(before + part.part_bin_start + 1)];
      --change[static_cast<std::size_t>(before + part.part_bin_end + 1)];
    }
  result_file file(frame_.path_in_working_folder(name));
  file.line("bin\tTimes");
  std::int32_t times = 0;
  std::string text;
  for (std::int64_t bin = 1; bin <= n_bins; ++bin) {
    times += change[static_cast<std::size_t>(bin)];
    text.clear();
    whole_number_append(text, bin);
    append_field(text, times);
    file.line(text);
  }
  file.commit();
}

// LF line ends, as tables for other programs have them. A part without a letter is none, unless the clone has no other.
void class_simul_clones::print_true_positions(const number_list &list, const std::string &name) const {
  result_file file(frame_.path_in_working_folder(name));
  file.write("clone\tpart\tchromosome\tstart\tend\n");
  std::string text;
  for (const clone_number number : list.members()) {
    const simul_clone &clone = placed_.clones[static_cast<std::size_t>(number) - 1];
    std::int32_t k = 0;
    for (const clone_part &part : clone.parts) {
      if (part.part_start == part.part_end && clone.length > 0)
        continue;
      if (clone.length == 0 && k > 0)
        break;
      text = clone.name;
      append_field(text, ++k);
      text += '\t' + placed_.chromosomes[static_cast<std::size_t>(part.chromosome) - 1];
      append_field(text, part.part_start);
      append_field(text, part.part_end);
      file.write(text += '\n');
    }
  }
  file.commit();
}

} // namespace orb
