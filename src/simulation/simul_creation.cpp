// class_simul_clones: drawing clones and reading their bands.
#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "frame/class_math1.h"
#include "frame/class_serv_raznoe.h"
#include "frame/numbers.h"
#include "frame/worker_blocks.h"
#include "simulation/simul_reading.h"

namespace orb {

namespace {

constexpr std::int32_t most_clones = 10000000;
std::string number_with_one_decimal(double value) { // "#,##0.0"
  const std::string text = number_text(value, 1);
  return number_text_thousands(static_cast<std::int64_t>(std::stoll(text.substr(0, text.size() - 2)))) +
         text.substr(text.size() - 2);
}

} // namespace

void class_simul_clones::show_summary() const {
  const double b = mean_bin_length(), g = mean_real_band_length();
  const double typical = draw_.mean_length / 1.1; // 115000 of 126500: without what close ends lose
  frame_.message("Mean length of clone bin = " + number_with_one_decimal(b) + " bp,\rPr(Cut in bin end) = " +
                 number_text(b / typical, 5) + "\rMean length of real band = " + number_text(g, 1) +
                 " bp\rMean length of clone (STDV) = " + number_text_shortest(draw_.mean_length) + " (" +
                 number_text_shortest(draw_.length_deviation) + ") bp\rMean number of bins per clone (STDV) = " +
                 number_text(draw_.mean_length / b, 1) + " (" + number_text(draw_.length_deviation / b, 1) +
                 ")\rMean number of real bands per clone = " + number_text(typical / g, 1) +
                 "\rPr(artificial merging of clones) = " + number_text_shortest(draw_.chimera_chance));
  frame_.message("NB! For ORB presence of copies of chimerical clones is critical!\r"
                 " Number of clones can't cause cycles in RND: its period is 2^256-1.\r"
                 " Currently, each clone part need 5 RNDs:\r"
                 " 1 for presence of part, 1 for position of start, 2 for length, 1 for direction.");
}

std::int32_t class_simul_clones::number_of_clones_asked() const {
  const double by_coverage = std::round(draw_.coverage * double(clonable_length_) / draw_.mean_length);
  const auto n = static_cast<std::int32_t>(std::clamp(by_coverage, 1.0, double(most_clones)));
  frame_.message("Seqence length = " + std::to_string(clonable_length_) +
                 " bp\rMean clone length = " + number_text_shortest(draw_.mean_length) +
                 " bp\r1/5 of clones usualy excluded out from the analysis because of too low or too high number of "
                 "bands.\rTo have coverage about x " +
                 number_text_shortest(draw_.coverage) + " you need about " + std::to_string(n) + " clones");
  if (draw_.n_clones)
    return *draw_.n_clones;
  if (!draw_.ask_number_of_clones)
    return n;
  std::int32_t asked = n;
  const std::string entered = frame_.input(
      {"Input number of clones (" + std::to_string(n) + "): ", "Cut sequence into clones", std::to_string(n)});
  return whole_number_parse(entered, asked) && asked >= 1 && asked <= most_clones ? asked : n;
}

clone_part class_simul_clones::draw_part(random_source &chance) const {
  const double b = mean_bin_length();
  const double drawn = std::floor(class_math1::gauss_value(draw_.mean_length / b, draw_.length_deviation / b, chance));
  const auto length = drawn < 1 ? 0 : static_cast<std::int64_t>(std::min(drawn, double(n_bins_)));
  const auto s = static_cast<std::int64_t>(chance.uniform() * double(n_bins_));
  const bool forward = chance.uniform() >= 0.5;
  const auto above = std::upper_bound(stretches_.begin(), stretches_.end(), s,
                                      [](std::int64_t bin, const stretch &one) { return bin < one.bins_before; });
  const stretch &from = *(above - 1);
  // A stretch is to its clones what the whole sequence is: what reaches over its ends is cut off.
  const std::int64_t here = s - from.bins_before;
  const std::int64_t start = forward ? here : std::max<std::int64_t>(here - length, 0);
  const std::int64_t end = forward ? std::min<std::int64_t>(here + length, from.n_bins) : here;
  clone_part part;
  part.chromosome = from.chromosome;
  part.part_bin_start = from.first_end + static_cast<std::int32_t>(start);
  part.part_bin_end = from.first_end + static_cast<std::int32_t>(end);
  const std::vector<std::int32_t> &ends = ends_[static_cast<std::size_t>(from.chromosome) - 1];
  part.part_start = ends[static_cast<std::size_t>(part.part_bin_start)];
  part.part_end = ends[static_cast<std::size_t>(part.part_bin_end)];
  return part;
}

void class_simul_clones::draw_clone(std::int32_t number, random_source &chance, simul_clone &clone) const {
  clone.name = "SimulBAC" + class_serv_raznoe::string_with_added_zeros(number, 6);
  std::int32_t n_parts = 1;
  while (n_parts < draw_.max_parts && chance.uniform() < draw_.chimera_chance)
    ++n_parts;
  clone.parts.reserve(static_cast<std::size_t>(n_parts));
  for (std::int32_t k = 1; k <= n_parts; ++k) {
    const clone_part part = draw_part(chance);
    clone.n_bins += part.part_bin_end - part.part_bin_start;
    // four parts of 2^31 letters don't fit the field
    clone.length = static_cast<std::int32_t>(
        std::min<std::int64_t>(INT32_MAX, std::int64_t(clone.length) + part.part_end - part.part_start));
    clone.parts.push_back(part);
  }
}

// The band list of a clone: without errors, or as its own generator of the seed and its number has it read. The same
// clone is read the same each time.
void class_simul_clones::read_bands(clone_number clone, bool no_errors, reading &work) const {
  bands_.start_table(work.table, false);
  work.counts = {};
  work.sums = {};
  for (const clone_part &part : placed_.clones[static_cast<std::size_t>(clone) - 1].parts) {
    bands_.cuts_of_part(part.chromosome, part.part_start, part.part_end, work.cuts);
    work.counts += bands_.calculate_real_number_of_bands(work.cuts, 0, work.cuts.n_cuts());
    bands_.create_band_presented_times(work.cuts, false, work.table);
  }
  random_source chance(draw_.seed, static_cast<std::uint64_t>(clone));
  bands_.transform_band_presented_times_to_list_of_bands_dbl(work.table, no_errors, chance, work.bands, work.sums);
}

bool class_simul_clones::count_bands_of_all() {
  sums_.assign(placed_.clones.size(), {});
  std::vector<reading> works(static_cast<std::size_t>(worker_count(draw_.threads)));
  const auto body = [&](std::int64_t first, std::int64_t last, int worker) {
    reading &work = works[static_cast<std::size_t>(worker)];
    for (std::int64_t i = first; i <= last; ++i) {
      simul_clone &clone = placed_.clones[static_cast<std::size_t>(i) - 1];
      read_bands(static_cast<clone_number>(i), true, work);
      clone.n_bands_more_0 = work.counts.more_0;
      clone.n_bands_too_long = work.counts.too_long;
      clone.n_bands_ok_colored = work.counts.ok_colored;
      clone.n_bands_obs_no_errors = static_cast<std::int32_t>(work.bands.size());
      read_bands(static_cast<clone_number>(i), false, work);
      clone.n_bands_obs = static_cast<std::int32_t>(work.bands.size());
      sums_[static_cast<std::size_t>(i) - 1] = work.sums;
    }
  };
  const auto between = [&](std::int64_t done) {
    frame_.progress(done, n_clones());
    frame_.local_process_text_set(fmt::format("{} out of {} clones created", done, n_clones()));
    return !frame_.stop_requested_get();
  };
  return run_in_blocks(1, n_clones(), clones_a_block, clones_a_piece, draw_.threads, body, between);
}

bool class_simul_clones::create_clones() {
  if (!is_sequence_read_ && !start_Simul_CutEnzyme_CloneEnds_run_if_needed())
    return false;
  frame_.process_start("Simulation of DNA cloning...");
  show_summary();
  const std::int32_t n = number_of_clones_asked();
  placed_.clones.clear();
  placed_.clones.resize(static_cast<std::size_t>(n));
  random_source chance(draw_.seed);
  for (std::int32_t i = 1; i <= n; ++i)
    draw_clone(i, chance, placed_.clones[static_cast<std::size_t>(i) - 1]);
  if (!count_bands_of_all()) {
    placed_.clones.clear();
    frame_.process_stopped_manually();
    return false;
  }
  frame_.local_process_text_set("All of " + std::to_string(n) + " clones created.");
  const number_list all = number_list::range(1, n);
  print_table_of_clones(all, "\\all_clones.txt");
  print_statistics_of_clones(all, "\\statistics_all_clones.txt");
  frame_.process_done();
  frame_.message("Clones are created.");
  return true;
}

} // namespace orb
