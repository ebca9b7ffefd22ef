// class_Simul_CutEnzyme: letters, enzymes and parameters.
#include <algorithm>
#include <array>
#include <cmath>

#include "simulation/class_Simul_CutEnzyme.h"

namespace orb {

class_Simul_CutEnzyme::class_Simul_CutEnzyme(process_frame &frame) : frame_(frame), enzyme_list_(1) {
  add_enzyme("HaeIII", "GGCC", 2, "No", 0);
  add_enzyme("EcoRI", "GAATTC", 1, "Green", 15000);
  add_enzyme("BamHI", "GGATCC", 1, "Blue", 0);
  add_enzyme("XbaI", "TCTAGA", 1, "Yellow", 30000);
  add_enzyme("XhoI", "CTCGAG", 1, "Red", 45000);
}

std::int16_t class_Simul_CutEnzyme::LetterIndex_get(char letter) {
  switch (letter) {
  case 'A':
  case 'a':
    return 1;
  case 'C':
  case 'c':
    return 2;
  case 'G':
  case 'g':
    return 3;
  case 'T':
  case 't':
    return 4;
  default:
    return 0;
  }
}

void class_Simul_CutEnzyme::LetterIndexes_get(std::string_view text, std::vector<std::int16_t> &letters) {
  letters.assign(1, 0);
  letters.reserve(text.size() + 1);
  for (const char letter : text)
    letters.push_back(LetterIndex_get(letter));
}

void class_Simul_CutEnzyme::add_enzyme(const char *name, const char *site, std::int32_t cut_after, const char *color,
                                       std::int32_t term) {
  enzyme_rec enzyme;
  enzyme.name = name;
  enzyme.site = site;
  LetterIndexes_get(enzyme.site, enzyme.letter_index);
  enzyme.site_length = static_cast<std::int32_t>(enzyme.site.size());
  enzyme.cut_after = cut_after;
  enzyme.color = color;
  enzyme.term = term;
  enzyme_list_.push_back(std::move(enzyme));
}

void class_Simul_CutEnzyme::start_for_cut_genome_into_clones() {
  enzyme_list_.resize(1);
  add_enzyme("HindIII", "AAGCTT", 1, "No", 0);
}

void class_Simul_CutEnzyme::start_for_agarose() {
  start_for_cut_genome_into_clones();
  enzyme_list_[1].color = "Stain";
  is_on_agarose_ = true;
}

double class_Simul_CutEnzyme::position_on_agarose(double length) const {
  const double of_longest = 1 / max_band_length_;
  return length_of_agarose * (1 / length - of_longest) / (1 / min_band_length_ - of_longest);
}

bool class_Simul_CutEnzyme::clone_end_site_set(const std::string &name, const std::string &site) {
  std::vector<std::int16_t> letters;
  LetterIndexes_get(site, letters);
  if (site.empty() || site.size() > 100 || std::find(letters.begin() + 1, letters.end(), 0) != letters.end())
    return false;
  enzyme_list_.resize(1);
  add_enzyme(name.c_str(), site.c_str(), 1, "No", 0);
  return true;
}

void class_Simul_CutEnzyme::max_band_length_set(double length) {
  max_band_length_ = length;
  max_band_table_ = static_cast<std::int32_t>(20 * max_error_in_band_size_scoring_ + length);
}

// From the distance in use, so that a second change isn't a change of the first one's result by 15000 again.
void class_Simul_CutEnzyme::shift_of_scaled_bands_set(std::int32_t shift) {
  if (shift == shift_ || shift <= 0)
    return;
  for (std::size_t e = 1; e < enzyme_list_.size(); ++e)
    enzyme_list_[e].term = static_cast<std::int32_t>(std::floor(double(enzyme_list_[e].term) / shift_ * shift));
  shift_ = shift;
}

void class_Simul_CutEnzyme::probability_diff_obs_less_tolerance_get(double length, double tolerance, double p,
                                                                    double &probability) {
  probability = 1;
  if (length <= 0)
    return;
  const double q = 1 - p, small = 1 - tolerance / (2 * length), large = 1 - tolerance / (6 * length);
  probability = p * p * (1 - small * small) + q * q * (1 - large * large) + 2 * p * q * tolerance / (3 * length);
}

} // namespace orb
