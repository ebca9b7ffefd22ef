// class_simul_clones: the sequence, and where clones may begin and end on it.
#include <algorithm>
#include <limits>
#include <unordered_map>

#include "simulation/class_simul_clones.h"

namespace orb {

class_simul_clones::class_simul_clones(process_frame &frame, class_Simul_CutEnzyme &bands, clone_draw draw)
    : frame_(frame), bands_(bands), cut_clone_ends_(frame), draw_(draw) {
  cut_clone_ends_.start_for_cut_genome_into_clones();
}

bool class_simul_clones::start_Simul_CutEnzyme_CloneEnds_run_if_needed(std::filesystem::path sequence) {
  if (is_sequence_read_) {
    frame_.message("File with sequence is already selected: " + bands_.file_with_sequence_name_get().string());
    return true;
  }
  if (sequence.empty())
    sequence = frame_.open_file_dialog("Open file with sequence...");
  if (sequence.empty())
    return false;
  for (class_Simul_CutEnzyme *digest : {&bands_, &cut_clone_ends_})
    if (!digest->read_sequence_and_create_real_band_map(sequence, true))
      return false;
  find_stretches();
  if (n_bins_ == 0 || n_bins_ > std::numeric_limits<std::int32_t>::max()) {
    return frame_.refuse("The sequence holds no stretch that clones can come from: " + sequence.string());
  }
  placed_ = {};
  for (const digested_chromosome &chromosome : bands_.chromosomes())
    placed_.chromosomes.push_back(chromosome.name);
  return is_sequence_read_ = true;
}

// Cuts of the clone ends' enzyme, both ends of the chromosome and both borders of each long gap, ascending; gap[i]: the
// bin before end i is one. Breaks of short runs of unknown letters end no clone.
void class_simul_clones::ends_of_chromosome(const cut_list &cuts, std::vector<std::int32_t> &ends,
                                            std::vector<std::uint8_t> &gap) const {
  ends.assign(1, 0);
  gap.assign(1, 0);
  const auto add = [&](std::int32_t at, bool behind_gap) {
    if (at > ends.back()) {
      ends.push_back(at);
      gap.push_back(behind_gap ? 1 : 0);
    }
  };
  const std::size_t last = cuts.position.size() - 1;
  for (std::size_t i = 1; i < last; ++i) {
    if (cuts.enzyme[i] > 0)
      add(cuts.position[i], false);
    if (cuts.enzyme[i] != 0)
      continue;
    const bool has_more = i + 1 < last && cuts.is_inside_of_run(i + 1);
    const std::int32_t begin = cuts.position[i], end = cuts.position[has_more ? i + 1 : i] + 1; // of the run
    if (end - begin > draw_.longest_gap) {
      add(begin, false);
      add(end, true);
    }
  }
  add(cuts.position[last], false);
}

void class_simul_clones::find_stretches() {
  ends_.clear();
  stretches_.clear();
  n_bins_ = clonable_length_ = 0;
  std::vector<std::uint8_t> gap;
  for (const digested_chromosome &chromosome : cut_clone_ends_.chromosomes()) {
    std::vector<std::int32_t> &ends = ends_.emplace_back();
    ends_of_chromosome(chromosome.cuts, ends, gap);
    for (std::size_t i = 0; i < ends.size();) {
      std::size_t last = i; // the last end before the next gap
      while (last + 1 < ends.size() && gap[last + 1] == 0)
        ++last;
      if (last > i) {
        stretches_.push_back({static_cast<std::int32_t>(ends_.size()), static_cast<std::int32_t>(i),
                              static_cast<std::int32_t>(last - i), n_bins_});
        n_bins_ += static_cast<std::int64_t>(last - i);
        clonable_length_ += ends[last] - ends[i];
      }
      i = last + 1;
    }
  }
}

double class_simul_clones::mean_bin_length() const {
  return n_bins_ > 0 ? double(clonable_length_) / double(n_bins_) : 0;
}

double class_simul_clones::mean_real_band_length() const {
  return bands_.n_cuts_get() > 0 ? double(clonable_length_) / bands_.n_cuts_get() : 0;
}

// Clones that were read from a table get the numbers that their chromosomes have in the sequence. False: they belong to
// another sequence.
bool class_simul_clones::chromosomes_are_known() {
  std::unordered_map<std::string, std::int32_t> number_of_name;
  const auto &chromosomes = bands_.chromosomes();
  for (std::size_t i = 0; i < chromosomes.size(); ++i)
    number_of_name[chromosomes[i].name] = static_cast<std::int32_t>(i) + 1;
  std::vector<std::int32_t> number(1, 0);
  for (const std::string &name : placed_.chromosomes) {
    const auto known = number_of_name.find(name);
    const bool is_only_one = placed_.chromosomes.size() == 1 && chromosomes.size() == 1; // whatever it is called
    if (known == number_of_name.end() && !is_only_one)
      return false;
    number.push_back(is_only_one ? 1 : known->second);
  }
  for (const simul_clone &clone : placed_.clones)
    for (const clone_part &part : clone.parts)
      if (part.part_end >
          chromosomes[static_cast<std::size_t>(number[static_cast<std::size_t>(part.chromosome)]) - 1].length())
        return false;
  for (simul_clone &clone : placed_.clones)
    for (clone_part &part : clone.parts)
      part.chromosome = number[static_cast<std::size_t>(part.chromosome)];
  placed_.chromosomes.clear();
  for (const digested_chromosome &chromosome : chromosomes)
    placed_.chromosomes.push_back(chromosome.name);
  return true;
}

} // namespace orb
