#include "net/parameter_proposals.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "frame/numbers.h"
#include "frame/random_source.h"
#include "metrics/band_merge.h"
#include "net/band_scale.h"
#include "net/class_clone_net_signif.h"

namespace orb {

namespace {

constexpr double false_pairs = 0.01; // expected in the whole library
constexpr std::uint64_t seed = 1;    // proposals are the same whatever the run's seed is

// ---- kind and tolerance ----

bool is_near(double value, double known) {
  return value > 0 && std::abs(std::log(value / known)) < std::log(1.5);
}

// Of the known kinds with the gel that fits the one of the nearest tolerance; 0: none has it.
std::int32_t nearest_kind(double gel_length, double tolerance) {
  std::int32_t best = 0;
  double distance = 0;
  for (std::int32_t kind = 1; const auto known = parameters_of_kind(kind); ++kind) {
    const double d = std::abs(std::log(std::max(tolerance, 1.0) / known->tolerance));
    if (known->gel_length == gel_length && (best == 0 || d < distance)) {
      best = kind;
      distance = d;
    }
  }
  return best;
}

std::optional<proposal> preset_for(double gel_length, double tolerance, double median_bands) {
  constexpr double most_on_agarose = 80; // bands of a clone
  const std::int32_t best = nearest_kind(gel_length, tolerance);
  if (best == 0)
    return std::nullopt;
  const library_parameters known = *parameters_of_kind(best);
  const bool bands_fit = best != 1 || median_bands <= most_on_agarose;
  const bool fits = bands_fit && is_near(tolerance, known.tolerance);
  return proposal{double(best), 0, fits ? certainty::fairly : certainty::hardly,
                  !bands_fit ? "the gel fits, but so many bands don't"
                  : fits     ? "gel length and tolerance are near it"
                             : "gel length only; its tolerance is " + std::to_string(known.tolerance)};
}

std::string text_of_pairs(const reading_spread &spread) {
  return number_text_thousands(spread.n_pairs) +
         (spread.of_one_name ? " pairs of one name" : " pairs of clones much alike");
}

proposal tolerance_for(const reading_spread &spread, double gel_length) {
  constexpr std::int64_t many = 2000;
  if (spread.tolerance > 0)
    return {double(spread.tolerance), 0, spread.n_readings >= many ? certainty::well : certainty::fairly,
            fmt::format("holds {} % of like bands of {}", number_text(100 * spread.share_within, 0),
                        text_of_pairs(spread))};
  std::int32_t tolerance = 0; // of a kind with the gel; of two the larger one is the lesser risk
  for (std::int32_t kind = 1; const auto known = parameters_of_kind(kind); ++kind)
    if (known->gel_length == gel_length)
      tolerance = std::max<std::int32_t>(tolerance, known->tolerance);
  return {double(tolerance > 0 ? tolerance : library_parameters{}.tolerance), 0, certainty::hardly,
          fmt::format("usual for such a gel; {} don't tell", text_of_pairs(spread))};
}

// ---- cutoff ----

constexpr double finest_score = 0.1, largest_score = 60;

// How often pairs of clones reach a score whose bands were dealt anew among the clones.
class dealt_library {
public:
  // `positions`: that bands take, whatever the scale counts with.
  dealt_library(const clone_bands &clones, const band_scale &scale, double positions,
                const asked_whether_to_go_on &goes_on)
      : scale_(scale), t_(clones.t), chance_(seed, 0xdea1) {
    constexpr std::int32_t most_clones = 4000;
    const std::int32_t n = std::min(clones.n, most_clones);
    for (std::int32_t i = 0; i < n; ++i) {
      const auto bands = clones.of(1 + static_cast<clone_number>(std::int64_t{i} * clones.n / n));
      bands_.insert(bands_.end(), bands.begin(), bands.end());
      first_.push_back(bands_.size());
    }
    find_nearest();
    constexpr std::int64_t most_pairs = 500000, most_rounds = 10;
    const std::int64_t pairs = std::int64_t{n} * (n - 1) / 2;
    for (std::int64_t round = 0; pairs > 0 && round < most_rounds && n_pairs_ < most_pairs && goes_on(); ++round) {
      deal();
      if (round == 0)
        scale_.n_positions *= positions_dealt() / positions;
      count(std::min(pairs, most_pairs), goes_on);
    }
  }

  // The score that so many pairs are expected to reach of so many; nothing where too few pairs came high to tell.
  std::optional<double> score_of(double expected, double of_pairs) const {
    constexpr std::int64_t enough = 20;
    const auto common = static_cast<std::int64_t>(0.001 * static_cast<double>(n_pairs_));
    std::size_t low = 0, high = 0;
    std::int64_t n = 0, n_low = 0, n_high = 0;
    for (std::size_t i = n_at_score_.size(); i-- > 0 && n_low == 0;) {
      n += n_at_score_[i];
      if (n_high == 0 && n >= enough) {
        high = i;
        n_high = n;
      }
      if (n >= common) {
        low = i;
        n_low = n;
      }
    }
    if (n_high == 0 || n_low == 0 || high < low + 5)
      return std::nullopt;
    const double steps = finest_score * static_cast<double>(high - low);
    const double fall = std::clamp(std::log10(double(n_low) / double(n_high)) / steps, 0.3, 1.0);
    const double there = std::log10(double(n_high) / double(n_pairs_) * of_pairs);
    return finest_score * static_cast<double>(high) + (there - std::log10(expected)) / fall;
  }

private:
  // Two bands of a clone that are nearer than those of real clones are one: a gel shows them so.
  void deal() {
    for (std::size_t i = bands_.size(); i > 1; --i)
      std::swap(bands_[i - 1],
                bands_[static_cast<std::size_t>(chance_.number_up_to(static_cast<std::int32_t>(i))) - 1]);
    dealt_.clear();
    first_dealt_.assign(1, 0);
    std::vector<band_value> clone;
    for (std::size_t c = 0; c + 1 < first_.size(); ++c) {
      clone.assign(bands_.begin() + std::ptrdiff_t(first_[c]), bands_.begin() + std::ptrdiff_t(first_[c + 1]));
      std::sort(clone.begin(), clone.end());
      for (const band_value band : clone)
        if (dealt_.size() == first_dealt_.back() || band - dealt_.back() >= nearest_)
          dealt_.push_back(band);
      first_dealt_.push_back(dealt_.size());
    }
  }

  // Of 200 neighbours in real clones one is nearer.
  void find_nearest() {
    std::vector<band_value> gaps;
    for (std::size_t c = 0; c + 1 < first_.size(); ++c)
      for (std::size_t i = first_[c] + 1; i < first_[c + 1]; ++i)
        gaps.push_back(bands_[i] - bands_[i - 1]);
    if (gaps.empty())
      return;
    const auto at = gaps.begin() + std::ptrdiff_t(gaps.size() / 200);
    std::nth_element(gaps.begin(), at, gaps.end());
    nearest_ = *at;
  }

  std::span<const band_value> bands_of(std::int32_t clone) const {
    const auto c = static_cast<std::size_t>(clone);
    return {dealt_.data() + first_dealt_[c - 1], first_dealt_[c] - first_dealt_[c - 1]};
  }

  // Fewer than bands take: bands of one place of the genome, which no two dealt clones have in common, are met as
  // chance. That is no matter of the tail, so the scale gives way.
  double positions_dealt() {
    constexpr int n_drawn = 20000;
    const auto n = static_cast<std::int32_t>(first_.size()) - 1;
    double common = 0, product = 0;
    for (int i = 0; i < n_drawn; ++i) {
      const std::int32_t a = chance_.number_up_to(n), b = chance_.number_up_to(n);
      if (a == b)
        continue;
      common += common_bands(bands_of(a), bands_of(b), t_);
      product += double(bands_of(a).size()) * double(bands_of(b).size());
    }
    return common > 0 ? product / common : 1;
  }

  void count(std::int64_t pairs, const asked_whether_to_go_on &goes_on) {
    constexpr std::int64_t stride = 20000;
    const auto n = static_cast<std::int32_t>(first_.size()) - 1;
    for (std::int64_t i = 0; i < pairs && (i % stride != 0 || goes_on()); ++i) {
      const std::int32_t a = chance_.number_up_to(n), b = chance_.number_up_to(n);
      if (a == b)
        continue;
      ++n_pairs_;
      const auto of_a = bands_of(a), of_b = bands_of(b);
      const std::int32_t k = common_bands(of_a, of_b, t_);
      const double usual = double(of_a.size()) * double(of_b.size()) / scale_.n_positions;
      if (k <= usual + std::sqrt(usual))
        continue;
      const double score = scale_.score(k, std::int32_t(of_a.size()), std::int32_t(of_b.size()));
      ++n_at_score_[static_cast<std::size_t>(std::min(score, largest_score) / finest_score)];
    }
  }

  band_scale scale_;
  std::int32_t t_;
  random_source chance_;
  std::vector<band_value> bands_, dealt_;
  std::vector<std::size_t> first_{0}, first_dealt_; // of each clone; the end of the last one
  band_value nearest_ = 0;
  std::int64_t n_pairs_ = 0;
  std::vector<std::int64_t> n_at_score_ =
      std::vector<std::int64_t>(static_cast<std::size_t>(largest_score / finest_score) + 1);
};

proposal cutoff_for(const clone_bands &clones, const band_scale &scale, double positions,
                    const asked_whether_to_go_on &goes_on) {
  const double n = clones.n, pairs = std::max(1.0, n * (n - 1) / 2);
  const double by_positions = std::log10(pairs / false_pairs);
  const auto dealt = dealt_library(clones, scale, positions, goes_on).score_of(false_pairs, pairs);
  // A score is the chance of so many common bands and more, and these are whole: on average pairs reach a score less
  // often than it says, with 15 bands a clone by a factor of 5. Dealt bands show how often.
  const double cutoff = std::ceil(10 * dealt.value_or(by_positions)) / 10;
  if (!dealt)
    return {cutoff, 1, certainty::fairly, "0.01 false pairs expected in all, by positions"};
  return {cutoff, 1, std::abs(*dealt - by_positions) < 2 ? certainty::well : certainty::fairly,
          fmt::format("0.01 false pairs by bands dealt anew; positions say {}", number_text(by_positions, 1))};
}

// ---- what is seen with them ----

// Of two clones of n bands; n where no number reaches it.
std::int32_t least_common_at(double cutoff, const band_scale &scale, std::int32_t n) {
  std::int32_t k = 1;
  while (k < n && scale.score(k, n, n) < cutoff)
    ++k;
  return k;
}

proposal least_overlap_at(double cutoff, const band_scale &scale) {
  const auto n = static_cast<std::int32_t>(scale.median_bands);
  const std::int32_t k = least_common_at(cutoff, scale, n);
  if (n < 1)
    return {0, 0, certainty::hardly, "no clone has a band"};
  const bool seen = scale.score(k, n, n) >= cutoff;
  return {100 * scale.overlap(k, n, n) / n, 0, seen ? certainty::well : certainty::hardly,
          seen ? fmt::format("percent: {} common bands of two clones of {}", k, n)
               : fmt::format("percent: clones of {} bands can't reach the cutoff", n)};
}

// Clones of one length whose overlap has to be a share s of it have 2 (1 - s) neighbours for each one that covers a
// place.
std::optional<proposal> depth_at(const clone_bands &clones, const band_scale &scale, double cutoff, double least_share,
                                 const asked_whether_to_go_on &goes_on) {
  const std::vector<clone_number> compared = clones_to_compare(clones.n);
  if (clones.n < 10 || least_share > 0.9)
    return std::nullopt;
  const least_common_table least(clones, scale, cutoff);
  std::vector<std::int32_t> neighbours;
  for (const clone_number a : compared) {
    if (!goes_on())
      return std::nullopt;
    std::int32_t n = 0;
    for (clone_number b = 1; b <= clones.n; ++b)
      n += a != b && clones.count(a) > 0 && clones.count(b) > 0 &&
           common_bands(clones.of(a), clones.of(b), clones.t) >= least(clones.count(a), clones.count(b));
    neighbours.push_back(n);
  }
  const auto middle = neighbours.begin() + static_cast<std::ptrdiff_t>(neighbours.size() / 2);
  std::nth_element(neighbours.begin(), middle, neighbours.end());
  const double depth = *middle / (2 * (1 - least_share));
  return proposal{depth, 1, neighbours.size() >= 100 ? certainty::fairly : certainty::hardly,
                  fmt::format("the middle clone of {} overlaps {} others", neighbours.size(), *middle)};
}

double largest_band(const class_DB_of_clones &database) {
  band_value largest = 0;
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone)
    if (const auto bands = database.bands_of_clone(clone); !bands.empty())
      largest = std::max(largest, bands.back());
  return largest;
}

} // namespace

const char *word_of(certainty how_sure) {
  return how_sure == certainty::well ? "well" : how_sure == certainty::fairly ? "fairly" : "hardly";
}

double additional_cutoff_for(double cutoff) {
  constexpr double standard = 15;
  return std::round(10 * cutoff * (standard + QQ_proposed_step) / standard) / 10;
}

double cutoff_step_for(double cutoff, const library_parameters &fields, double median_bands) {
  constexpr double usual_step = 3;
  const std::int32_t kind = nearest_kind(fields.gel_length, fields.tolerance);
  band_scale here, usual;
  here.n_positions = fields.n_bands;
  usual.n_positions = parameters_of_kind(kind).value_or(library_parameters{}).n_bands;
  const auto n = static_cast<std::int32_t>(median_bands);
  const std::int32_t k = least_common_at(cutoff, here, n);
  const double score = usual.score(k, n, n);
  return score > 0 ? std::max(0.1, std::round(10 * usual_step * here.score(k, n, n) / score) / 10) : usual_step;
}

double gel_length_for(double largest) {
  double shortest = 0;
  for (std::int32_t kind = 1; const auto known = parameters_of_kind(kind); ++kind)
    if (known->gel_length >= largest && (shortest == 0 || known->gel_length < shortest))
      shortest = known->gel_length;
  return shortest > 0 ? shortest : std::ceil(largest / 1000) * 1000;
}

parameter_proposals proposals_of(const class_DB_of_clones &database, const settled_parameters &settled,
                                 const asked_whether_to_go_on &goes_on) {
  parameter_proposals made;
  clone_bands clones(database);
  const double median = median_of_band_counts(database);
  if (database.index_of_band_type_get() == 0) {
    const double largest = largest_band(database), gel = gel_length_for(largest);
    made.gel_length = proposal{gel, 0, largest > 0.7 * gel ? certainty::well : certainty::fairly,
                               "holds the largest band, " + number_text_shortest(largest)};
    made.tolerance = tolerance_for(spread_of_readings(database, goes_on), gel);
    if (settled.tolerance)
      made.tolerance = proposal{double(*settled.tolerance), 0, certainty::well, "as asked for"};
    made.preset = preset_for(gel, made.tolerance->value, median);
    clones.t = static_cast<std::int32_t>(made.tolerance->value);
  }
  band_scale scale = band_scale_of(clones, seed);
  const double positions = scale.n_positions;
  made.n_bands = {double(positions_of_library(scale)), 0, clones.n >= 100 ? certainty::well : certainty::fairly,
                  "positions that bands take, by pairs alike by chance"};
  if (settled.n_bands) {
    scale.n_positions = *settled.n_bands;
    made.n_bands = {double(*settled.n_bands), 0, certainty::well, "as asked for"};
  }
  made.cutoff = cutoff_for(clones, scale, positions, goes_on);
  made.additional_cutoff = {additional_cutoff_for(made.cutoff.value), 1, made.cutoff.how_sure,
                            "as far above the cutoff as usual, in proportion"};
  library_parameters fields; // as it will be compared; bins keep what they were made with
  fields.tolerance = static_cast<std::int16_t>(clones.t > 0 ? clones.t : database.tollerance_get());
  fields.gel_length = made.gel_length ? made.gel_length->value : database.max_band_length_get();
  fields.n_bands = static_cast<std::int32_t>(made.n_bands.value);
  made.step = {cutoff_step_for(made.cutoff.value, fields, median), 1, made.cutoff.how_sure,
               "as many common bands a level as usual"};
  made.least_overlap = least_overlap_at(made.cutoff.value, scale);
  made.depth = depth_at(clones, scale, made.cutoff.value, made.least_overlap.value / 100, goes_on);
  return made;
}

} // namespace orb
