// class_Simul_CutEnzyme: from cuts to bands.
#include <algorithm>
#include <cmath>

#include "frame/files.h"
#include "frame/numbers.h"
#include "simulation/class_Simul_CutEnzyme.h"

namespace orb {

namespace {

constexpr std::size_t most_bands = 10000;      // of a list
constexpr std::int32_t shortest_neighbour = 6; // a band beside a shorter one, or as short, is in a cluster of cuts
constexpr std::int32_t overhang = 4;           // letters between the cuts of the two strands

} // namespace

void class_Simul_CutEnzyme::create_band_presented_times(const cut_list &cuts, bool exclude_clustered,
                                                        band_table &table) const {
  const std::size_t last = cuts.position.size() - 1;
  const auto length = [&cuts](std::size_t i) { return cuts.position[i] - cuts.position[i - 1]; };
  for (std::size_t i = 1; i <= last; ++i) {
    const std::int32_t d = length(i);
    const std::int32_t a = cuts.enzyme[i - 1], b = cuts.enzyme[i];
    if (cuts.is_inside_of_run(i)) { // as if each letter of the run were a part of its own
      table.sums.broken += d;
      continue;
    }
    if (d > table.max_length) {
      table.sums.too_long += d;
      continue;
    }
    if (a < 1 || b < 1) {
      table.sums.broken += d;
      continue;
    }
    if (exclude_clustered &&
        (i == 1 || i == last || length(i - 1) <= shortest_neighbour || length(i + 1) <= shortest_neighbour))
      continue;
    ++table.times(d, b);
    // A label on the far side of the overhang reads 4 shorter; only this one of the two ends, and both_ends always at
    // d: deliberate.
    const std::int32_t d_of_a = b == 1 && a > b ? d - overhang : d;
    if (!is_on_agarose_ && (d_of_a == d || d >= overhang + 1)) // a stain shows the fragment once
      ++table.times(d_of_a, a);
    if (!table.both_ends.empty())
      ++table.both_ends[table.pair_cell(d, b, a)];
    std::int64_t &sum = a != b   ? table.sums.different_ends
                        : a == 1 ? table.sums.both_ends_1
                                 : table.sums.same_other_ends;
    sum += d;
  }
}

void class_Simul_CutEnzyme::cutSingleSeqByEnzymes_and_createListOfBands_run(const band_table &table, bool no_errors,
                                                                            random_source &chance,
                                                                            std::vector<double> &bands,
                                                                            band_reading_sums &sums) const {
  bands.clear();
  const auto misreading = [&]() -> double {
    chance.uniform(); // drawn and dropped, deliberate: it is part of the order of draws
    const double spread = chance.uniform() < share_of_small_errors ? 1 : 3;
    return (2 * chance.uniform() - 1) * spread * max_error_in_band_size_scoring_;
  };
  for (std::int32_t e = 1; e <= n_enzymes(); ++e) {
    const enzyme_rec &enzyme = enzyme_list_[static_cast<std::size_t>(e)];
    if (enzyme.color == "No")
      continue;
    for (std::int32_t length = 1; length <= table.max_length; ++length)
      for (std::int32_t k = table.times(length, e); k > 0; --k) {
        const bool is_lost = !no_errors && probability_to_miss_band_ > chance.uniform();
        const double error = no_errors || is_lost ? 0 : misreading();
        const double size = is_on_agarose_ ? length : length + error;
        if (is_lost || size < min_band_length_ || size > max_band_length_) {
          sums.lost_length += length;
        } else if (bands.size() < most_bands) {
          bands.push_back(is_on_agarose_ ? std::clamp(position_on_agarose(length) + error, 0.0, length_of_agarose)
                                         : enzyme.term + size * scale_);
          sums.observed_length += size;
          ++sums.n_observed;
        }
      }
  }
}

void class_Simul_CutEnzyme::sort_bands_and_exclude_repeats_based_on_tolerance(std::vector<double> &bands,
                                                                              band_reading_sums &sums) const {
  if (bands.size() < 2)
    return; // not even truncated, deliberate
  std::sort(bands.begin(), bands.end());
  std::size_t kept = 0;
  for (std::size_t i = 1; i < bands.size(); ++i) {
    if (bands[i] - bands[kept] <= merge_distance_)
      // 15000 and 30 whatever shift and scale are, deliberate: the lost length is only a statistic
      sums.lost_length += std::fmod(bands[i], 15000.0) / 30.0;
    else
      bands[++kept] = bands[i];
  }
  bands.resize(kept + 1);
  for (double &band : bands)
    band = std::trunc(band);
}

void class_Simul_CutEnzyme::transform_band_presented_times_to_list_of_bands_dbl(const band_table &table, bool no_errors,
                                                                                random_source &chance,
                                                                                std::vector<double> &bands,
                                                                                band_reading_sums &sums) const {
  cutSingleSeqByEnzymes_and_createListOfBands_run(table, no_errors, chance, bands, sums);
  sort_bands_and_exclude_repeats_based_on_tolerance(bands, sums);
}

static cut_list cuts_of_text(const class_Simul_CutEnzyme &cutter, std::string_view sequence) {
  std::vector<std::int32_t> position, enzyme;
  std::int32_t n = 0;
  cutter.cut_band_after_letter_and_enz_from_s(sequence, position, enzyme, n, false);
  cut_list cuts;
  for (std::size_t i = 0; i < position.size(); ++i)
    cuts.add(position[i], enzyme[i]);
  return cuts;
}

void class_Simul_CutEnzyme::cutSingleSeqByEnzymes_and_createListOfBands(std::string_view sequence, bool no_errors,
                                                                        random_source &chance,
                                                                        std::vector<double> &bands) const {
  band_table table;
  start_table(table, false);
  create_band_presented_times(cuts_of_text(*this, sequence), false, table);
  band_reading_sums sums;
  transform_band_presented_times_to_list_of_bands_dbl(table, no_errors, chance, bands, sums);
}

void class_Simul_CutEnzyme::cutArrayOfSeqByEnzymes_and_createListOfBands2D(
    const std::vector<std::string> &sequences, bool no_errors, random_source &chance,
    std::vector<std::vector<double>> &bands) const {
  bands.resize(sequences.size());
  for (std::size_t i = 0; i < sequences.size(); ++i)
    cutSingleSeqByEnzymes_and_createListOfBands(sequences[i], no_errors, chance, bands[i]);
}

void class_Simul_CutEnzyme::cuts_of_part(std::int32_t chromosome, std::int32_t start, std::int32_t end,
                                         cut_list &cuts) const {
  const cut_list &all = chromosomes_[static_cast<std::size_t>(chromosome) - 1].cuts;
  cuts.clear();
  cuts.add(start, 1);
  if (end <= start) {
    cuts.add(start, 1);
    return;
  }
  const auto inner_begin = all.position.begin() + 1, inner_end = all.position.end() - 1;
  const auto first = std::upper_bound(inner_begin, inner_end, start), last = std::lower_bound(first, inner_end, end);
  const std::ptrdiff_t from = first - all.position.begin(), to = last - all.position.begin();
  cuts.position.insert(cuts.position.end(), first, last);
  cuts.enzyme.insert(cuts.enzyme.end(), all.enzyme.begin() + from, all.enzyme.begin() + to);
  cuts.add(end, 1);
}

void class_Simul_CutEnzyme::list_of_bands_for_several_parts(const std::vector<cut_list> &parts, bool no_errors,
                                                            random_source &chance, std::vector<double> &bands,
                                                            band_reading_sums &sums) const {
  band_table table;
  start_table(table, false);
  for (const cut_list &part : parts)
    create_band_presented_times(part, false, table);
  transform_band_presented_times_to_list_of_bands_dbl(table, no_errors, chance, bands, sums);
}

band_counts class_Simul_CutEnzyme::calculate_real_number_of_bands(const cut_list &cuts, std::int32_t first,
                                                                  std::int32_t last) const {
  band_counts counts;
  for (std::int32_t i = first + 1; i <= last; ++i) {
    const auto place = static_cast<std::size_t>(i);
    const std::int32_t d = cuts.position[place] - cuts.position[place - 1];
    const std::int32_t a = cuts.enzyme[place - 1], b = cuts.enzyme[place];
    if (d <= 0 || cuts.is_inside_of_run(place))
      continue;
    ++counts.more_0;
    if (d > max_band_table_)
      ++counts.too_long;
    const bool is_seen = is_on_agarose_ ? a > 0 && b > 0 : (a > 1 && b > 0) || (b > 1 && a > 0);
    if (d >= min_band_length_ && d <= max_band_length_ && is_seen)
      ++counts.ok_colored;
  }
  return counts;
}

std::vector<band_counts> class_Simul_CutEnzyme::calculate_real_number_of_bands_NONRIGHT(const cut_list &cuts,
                                                                                        std::int32_t first,
                                                                                        std::int32_t last) const {
  std::vector<band_counts> counts(enzyme_list_.size());
  for (std::int32_t e = 1; e <= n_enzymes(); ++e) {
    band_counts &of_e = counts[static_cast<std::size_t>(e)];
    std::int32_t before = -1; // the cut before, of those taken
    for (std::int32_t i = first; i <= last; ++i) {
      const auto place = static_cast<std::size_t>(i);
      const std::int32_t b = cuts.enzyme[place];
      if (b > 1 && b != e)
        continue;
      if (before >= 0) {
        const std::int32_t a = cuts.enzyme[static_cast<std::size_t>(before)];
        const std::int32_t d = cuts.position[place] - cuts.position[static_cast<std::size_t>(before)];
        if (d > 0 && !cuts.is_inside_of_run(place)) {
          ++of_e.more_0;
          of_e.too_long += d > max_band_table_ ? 1 : 0;
          const bool ends = (a == e && b > 0) || (b == e && a > 0);
          of_e.ok_colored += d >= min_band_length_ && d <= max_band_length_ && ends ? 1 : 0;
        }
      }
      before = i;
    }
  }
  return counts;
}

void class_Simul_CutEnzyme::cut_sequence_by_enzymes_test(std::string_view sequence, random_source &chance) const {
  std::vector<double> bands;
  cutSingleSeqByEnzymes_and_createListOfBands(sequence, false, chance, bands);
  result_file file(frame_.path_in_working_folder("\\my_bands.txt"));
  file.line("my_clone\t" + std::to_string(bands.size()) + "\tGel");
  for (const double band : bands)
    file.line(number_text(band, 1));
  file.line("-1");
  file.commit();
}

} // namespace orb
