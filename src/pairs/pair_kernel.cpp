#include "pairs/pair_kernel.h"

#include <algorithm>
#include <cmath>

#include "database/class_markers.h"
#include "frame/worker_blocks.h"
#include "metrics/class_clone_dist_general.h"

namespace orb {

using family = class_clone_dist_general;

pair_elements pair_elements::of_list(std::span<const clone_number> clones) {
  pair_elements elements;
  elements.clones_.assign(clones.begin(), clones.end());
  elements.first_.resize(clones.size() + 2);
  for (std::size_t e = 1; e <= clones.size() + 1; ++e)
    elements.first_[e] = e - 1;
  return elements;
}

pair_elements pair_elements::of_library(const class_DB_of_clones &database, bool unite_versions) {
  const std::int32_t n = database.total_number_of_clones_get();
  pair_elements elements;
  elements.first_.assign(static_cast<std::size_t>(n) + 2, 0);
  for (clone_number clone = 1; clone <= n; ++clone) {
    const std::int32_t versions = unite_versions ? database.nRepeatsCloneName_get(clone) : 1;
    if (versions == 1) {
      elements.clones_.push_back(clone);
    } else if (versions > 1) {
      const number_list all = database.clone_number_get_with_repeats(database.name_of_clone_get(clone));
      elements.clones_.insert(elements.clones_.end(), all.members().begin(), all.members().end());
    }
    elements.first_[static_cast<std::size_t>(clone) + 1] = elements.clones_.size();
  }
  return elements;
}

pair_kernel::pair_kernel(const metric_context &context, const overlap_rule &rule,
                         const class_clone_dist_FPC *significant, int threads)
    : context_(context), distance_index_(rule.distance_index), cutoff_(rule.cutoff), burying_(rule.burying),
      significant_(significant), skip_by_table_(significant != nullptr && rule.cutoff > 0 &&
                                                rule.distance_index == family::DISTANCE_INDEX_Sulston_1988_get()),
      with_weights_(sums_weights(rule)),
      exclude_bands_(!with_weights_ && context.usable_values.JK_on_bands_get() &&
                     context.database.taking_tollerance_into_account_index_get() > 0),
      with_markers_(distance_index_ == family::DISTANCE_INDEX_LnnMarkers_get() ||
                    distance_index_ == family::DISTANCE_INDEX_k2_frac_mn_Markers_get()),
      score_by_counts_(distance_index_ == family::DISTANCE_INDEX_LnnSulston_get() ||
                       distance_index_ == family::DISTANCE_INDEX_Sulston_1988_get() ||
                       distance_index_ == family::DISTANCE_INDEX_Soderlund_1997_get()),
      t_(context.database.taking_tollerance_into_account_index_get() > 0 ? context.database.tollerance_get() : 0),
      most_(context.database.total_number_of_different_bands_get()),
      frequencies_(context.database, distance_index_ == family::DISTANCE_INDEX_LnnSulston_get() ||
                                             distance_index_ == family::DISTANCE_INDEX_LnnCuted_get()
                                         ? &context.usable_values
                                         : nullptr),
      bands_(context.database.band_array()), first_(context.database.first_band_adress_array()),
      remembered_(static_cast<std::size_t>(worker_count(threads))) {
  if (exclude_bands_ || (with_weights_ && context.usable_values.JK_on_bands_get()))
    leave_excluded_bands_out();
  const std::int32_t n_clones = context.database.total_number_of_clones_get();
  for (clone_number clone = 1; clone <= n_clones; ++clone)
    if (context.database.bands_of_clone(clone).size() != static_cast<std::size_t>(n_bands(clone))) {
      no_bands_.assign(static_cast<std::size_t>(n_clones) + 2, 0); // the bands were given back: all lists are empty
      first_ = no_bands_.data();
      break;
    }
  if (with_weights_)
    weigh_clones();
  count_together_ = !with_weights_ && !exclude_bands_ && t_ >= 0;
  if (count_together_)
    lanes_ = band_merge_lanes(bands_, first_, n_clones);
  least_common_ = std::make_unique<least_common_bands>(context, distance_index_, cutoff_, significant,
                                                       with_weights_ ? largest_weight() : 0);
}

void pair_kernel::weigh_clones() {
  const std::int32_t n_clones = context_.database.total_number_of_clones_get();
  bands_ = first_usable_.empty() ? bands_ : usable_bands_.data();
  first_ = first_usable_.empty() ? first_ : first_usable_.data();
  weight_of_clone_.assign(static_cast<std::size_t>(n_clones) + 1, 0);
  for (clone_number clone = 1; clone <= n_clones; ++clone)
    weight_of_clone_[static_cast<std::size_t>(clone)] = frequencies_.weight_of_list(bands_of(clone));
}

double pair_kernel::largest_weight() const {
  std::vector<char> seen;
  double largest = 0;
  for (clone_number clone = 1; clone <= context_.database.total_number_of_clones_get(); ++clone)
    for (const band_value band : bands_of(clone)) {
      const auto at = static_cast<std::size_t>(band);
      if (at >= seen.size())
        seen.resize(at + 1, 0);
      if (seen[at] == 0)
        largest = std::max(largest, std::abs(band_frequencies::weight(frequencies_.of_band(band))));
      seen[at] = 1;
    }
  return largest;
}

void pair_kernel::leave_excluded_bands_out() {
  const class_DB_of_clones &database = context_.database;
  const std::int32_t n = database.total_number_of_clones_get();
  first_usable_.assign(static_cast<std::size_t>(n) + 2, 0);
  for (clone_number clone = 1; clone <= n; ++clone) {
    for (const band_value band : database.bands_of_clone(clone))
      if (context_.usable_values.band_is_not_excluded_get(band))
        usable_bands_.push_back(band);
    first_usable_[static_cast<std::size_t>(clone) + 1] = static_cast<band_adress>(usable_bands_.size());
  }
  usable_bands_.push_back(0); // so that an empty library has an address too
}

void pair_kernel::count_plain(clone_number a, clone_number b, pair_counts &counts) const {
  if (!exclude_bands_) {
    counts.x_iid = common_bands(bands_of(a), bands_of(b), t_);
  } else {
    // Excluded bands still move the merge on; they only don't count.
    std::int32_t common = 0;
    const class_usable_values &usable = context_.usable_values;
    merge_bands(bands_of(a), bands_of(b), t_, [&](band_value x, band_value y) {
      common += usable.band_is_not_excluded_get(x) && usable.band_is_not_excluded_get(y);
    });
    counts.x_iid = common;
    const auto usable_of = [&](clone_number clone) {
      return first_usable_[static_cast<std::size_t>(clone) + 1] - first_usable_[static_cast<std::size_t>(clone)];
    };
    counts.n1 = usable_of(a);
    counts.n2 = usable_of(b);
  }
  counts.x_fr = counts.x_iid;
}

void pair_kernel::count_with_weights(clone_number a, clone_number b, pair_counts &counts) const {
  frequencies_.weighted_common(bands_of(a), bands_of(b), counts.x_iid, counts.x_fr);
  counts.weight1 = weight_of_clone_[static_cast<std::size_t>(a)];
  counts.weight2 = weight_of_clone_[static_cast<std::size_t>(b)];
}

double pair_kernel::score(clone_number a, clone_number b, const pair_counts &counts, int worker) {
  std::int32_t n_common_markers = 0;
  if (with_markers_)
    context_.database.markers().number_of_common_markers(a, b, n_common_markers);
  const auto compute = [&] {
    return score_of_counts(counts, n_common_markers, distance_index_, context_.database, context_.usable_values,
                           context_.table, significant_);
  };
  if (!score_by_counts_)
    return compute();
  constexpr double most = (1 << 21) - 2;
  // The cast cuts off what floor would: counts below 0 score as 0.
  const double count = distance_index_ == family::DISTANCE_INDEX_LnnSulston_get() ? counts.x_fr : counts.x_iid;
  const auto part = [](std::int32_t n) { return static_cast<std::uint32_t>(n); };
  return remembered_[static_cast<std::size_t>(worker)].get(static_cast<std::uint32_t>(std::clamp(count, 0.0, most)),
                                                           part(std::min(counts.n1, counts.n2)),
                                                           part(std::max(counts.n1, counts.n2)), compute);
}

bool pair_kernel::pair(clone_number a, clone_number b, int worker, double &value, std::int16_t &code) {
  pair_counts counts;
  counts.n1 = n_bands(a);
  counts.n2 = n_bands(b);
  if (skip_by_table_ && !exclude_bands_ && std::max(counts.n1, counts.n2) <= significant_->table_size_get() &&
      significant_->sulston_significant_table_get(counts.n1, counts.n2) > std::min(counts.n1, counts.n2))
    return false;
  if (with_weights_)
    count_with_weights(a, b, counts);
  else
    count_plain(a, b, counts);
  return pair_of_counts(a, b, counts, worker, value, code);
}

bool pair_kernel::pair_of_common(clone_number a, clone_number b, std::int32_t common, int worker, double &value,
                                 std::int16_t &code) {
  pair_counts counts;
  counts.n1 = n_bands(a);
  counts.n2 = n_bands(b);
  counts.x_iid = counts.x_fr = common;
  return pair_of_counts(a, b, counts, worker, value, code);
}

bool pair_kernel::pair_of_counts(clone_number a, clone_number b, pair_counts &counts, int worker, double &value,
                                 std::int16_t &code) {
  counts.x_iid = std::min(counts.x_iid, most_);
  counts.x_fr = std::min(counts.x_fr, most_);
  if (skip_by_table_ && !exclude_bands_ && std::max(counts.n1, counts.n2) <= significant_->table_size_get() &&
      counts.x_iid < significant_->sulston_significant_table_get(counts.n1, counts.n2))
    return false;
  value = score(a, b, counts, worker);
  if (!(value >= cutoff_))
    return false;
  code = burying_code_of_counts(counts, burying_);
  return true;
}

bool pair_kernel::united_pair(std::span<const clone_number> clones_1, std::span<const clone_number> clones_2,
                              int worker, pair_record &record) {
  bool found = false;
  std::size_t best_2 = 0; // version of the partner in the pair that the partner's own walk would end with
  for (const clone_number a : clones_1) {
    for (std::size_t j = 0; j < clones_2.size(); ++j) {
      double value = 0;
      std::int16_t code = 0;
      if (!pair(a, clones_2[j], worker, value, code) || (found && value < record.value))
        continue;
      // Of equal values the later pair counts, and the two ends walk the pairs in different orders.
      if (!found || value > record.value || j >= best_2) {
        record.code_mirrored = burial_code_mirrored(code);
        best_2 = j;
      }
      record.value = value;
      record.code = code;
      found = true;
    }
  }
  return found;
}

bool pair_kernel::element_pair(const pair_elements &elements, std::int32_t element, std::int32_t partner, int worker,
                               pair_record &record) {
  const auto own = elements.clones_of(element), others = elements.clones_of(partner);
  if (own.empty() || others.empty())
    return false;
  record.partner = partner;
  if (own.size() > 1 || others.size() > 1)
    return united_pair(own, others, worker, record);
  const bool found = pair(own[0], others[0], worker, record.value, record.code);
  record.code_mirrored = burial_code_mirrored(record.code);
  return found;
}

} // namespace orb
