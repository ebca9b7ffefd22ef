#include "metrics/class_clone_text_distance.h"

#include <algorithm>

#include "database/class_markers.h"
#include "frame/numbers.h"

namespace orb {

namespace {

using family = class_clone_dist_general;

constexpr std::array<std::string_view, 5> format_texts{
    "Sulston score only", "Sulston & markers", "Sulston and Sulston_frec", "Lnn, Nof, Sulston", "All known distances"};

std::size_t place(std::int16_t distance_index) {
  return static_cast<std::size_t>(distance_index);
}

void add_head(std::string &row, bool on, std::string_view text) {
  if (!on)
    return;
  row += text;
  row += '\t';
}

void add_value(std::string &row, bool on, double value) {
  if (!on)
    return;
  number_text_append(row, value, 2);
  row += '\t';
}

void add_count(std::string &row, double value) {
  whole_number_append(row, static_cast<std::int64_t>(value));
  row += '\t';
}

std::string_view burying_word(std::int16_t code) {
  constexpr std::array<std::string_view, 4> words{"", "buried<", "buried>", "buried="};
  return words[place(code)];
}

} // namespace

// ---- formats -------------------------------------------------------------------------------------------------------

std::string class_clone_text_distance::table_format_text_get(std::int32_t format) {
  return format < 0 || format >= table_format_n_text_get()
             ? std::string()
             : std::string(format_texts[static_cast<std::size_t>(format)]);
}

std::int32_t class_clone_text_distance::table_format_of_text(std::string_view text) {
  const auto found = std::find(format_texts.begin(), format_texts.end(), text);
  return found == format_texts.end() ? -1 : static_cast<std::int32_t>(found - format_texts.begin());
}

void class_clone_text_distance::table_format_select(project_settings &settings, std::int32_t format) {
  if (format < 0 || format >= table_format_n_text_get())
    return;
  settings.table_format_text = table_format_text_get(format);
}

class_clone_text_distance::columns_on class_clone_text_distance::columns_of_format(std::int32_t format) {
  columns_on on;
  if (format < 0 || format > 3)
    return on;
  on.lnn_cuted = on.soderlund = on.lnn_sulston = false;
  if (format == 3)
    return on;
  on.weights = on.k2mn = on.nof = on.lnn = false;
  on.sulston_frec = format == 2;
  on.markers = format == 1;
  return on;
}

// ---- cutoffs -------------------------------------------------------------------------------------------------------

std::int32_t class_clone_text_distance::format_of_columns(const metric_context &context) {
  const std::int32_t format = table_format_of_text(context.settings.table_format_text);
  const bool fast = context.usable_values.for_FPC_fast_indicator_get();
  return format == 4 && fast ? 3 : format; // the other columns belong to the slow scores
}

class_clone_text_distance::class_clone_text_distance(const metric_context &context, const overlap_rule &rule)
    : context_(&context), calc_(context), burying_(rule.burying), metric_of_mark_(rule.distance_index) {
  const std::int32_t format = format_of_columns(context);
  columns_ = columns_of_format(format);
  weights_ = sums_weights(rule) || format < 0 || format > 1; // such formats have columns of weights
  for (std::int16_t j = 0; j < n_metrics; ++j)
    cutoff_[place(j)] = j == rule.distance_index ? rule.cutoff : family::standard_cutoff(j);
  choose_metrics();
}

bool class_clone_text_distance::column_of_metric_is_on(std::int16_t distance_index) const {
  switch (distance_index) {
  case family::DISTANCE_INDEX_k2_frac_mn_get():
    return columns_.k2mn;
  case family::DISTANCE_INDEX_KK2_frac_mn_get():
    return columns_.weights && columns_.k2mn;
  case family::DISTANCE_INDEX_Nof_get():
    return columns_.nof;
  case family::DISTANCE_INDEX_Lnn_get():
    return columns_.lnn;
  case family::DISTANCE_INDEX_LnnCuted_get():
    return columns_.lnn_cuted;
  case family::DISTANCE_INDEX_Sulston_1988_get():
    return columns_.sulston;
  case family::DISTANCE_INDEX_Sulston_1988_frec_get():
    return columns_.sulston_frec;
  case family::DISTANCE_INDEX_Soderlund_1997_get():
    return columns_.soderlund;
  case family::DISTANCE_INDEX_LnnSulston_get():
    return columns_.lnn_sulston;
  default:
    return false;
  }
}

void class_clone_text_distance::choose_metrics() {
  weights_ = weights_ || family::need_take_band_abundances_into_account_get(metric_of_mark_);
  calc_ = class_clone_dist_calc(*context_, weights_);
  const bool markers_are_loaded = context_->database.markers().total_number_of_markers_get() > 0;
  for (std::int16_t j = 0; j < n_metrics; ++j) {
    const bool weights_are_there = weights_ || !family::need_take_band_abundances_into_account_get(j);
    const bool at_hand =
        cutoff_[place(j)] > 0 && weights_are_there &&
        family::why_only_zero(j, context_->table.is_loaded(j == family::DISTANCE_INDEX_Nof_get() ? 0 : 1),
                              markers_are_loaded)
            .empty();
    is_judged_[place(j)] = column_of_metric_is_on(j) || j == metric_of_mark_ || at_hand;
  }
}

void class_clone_text_distance::cutoff_set(std::int16_t distance_index, double cutoff) {
  if (distance_index < 0 || distance_index >= n_metrics)
    return;
  metric_of_mark_ = distance_index;
  cutoff_[place(distance_index)] = cutoff;
  choose_metrics();
}

bool class_clone_text_distance::is_weak_get(std::int16_t distance_index) const {
  return distance_index >= 0 && distance_index < n_metrics && is_weak_[place(distance_index)];
}

// ---- one pair ------------------------------------------------------------------------------------------------------

// The two metrics on class frequencies count the bands anew, so that they come before the counts of all others.
void class_clone_text_distance::calculate(clone_number clone_1, clone_number clone_2) {
  for (const std::int16_t j : {family::DISTANCE_INDEX_LnnSulston_get(), family::DISTANCE_INDEX_LnnCuted_get()})
    if (is_judged_[place(j)])
      value_[place(j)] = calc_.minus_log10_p_value_of_clone_overlapping(clone_1, clone_2, j);
  calc_.start_of_distance_calculation(clone_1, clone_2);
  context_->database.markers().number_of_common_markers(clone_1, clone_2, n_common_markers_);
  for (std::int16_t j = 0; j < n_metrics; ++j) {
    if (!is_judged_[place(j)])
      continue;
    if (j != family::DISTANCE_INDEX_LnnSulston_get() && j != family::DISTANCE_INDEX_LnnCuted_get())
      value_[place(j)] = value_of_metric(j);
    is_weak_[place(j)] = value_[place(j)] < cutoff_[place(j)];
  }
}

// The metric "k" has no score: its value is the count itself. The two shares are per 1000, as their cutoffs are.
double class_clone_text_distance::value_of_metric(std::int16_t distance_index) {
  if (distance_index == family::DISTANCE_INDEX_k_get())
    return calc_.x_iid_get();
  return calc_.minus_log10_p_value_of_clone_overlapping_no_clones(n_common_markers_, distance_index);
}

void class_clone_text_distance::distance_of_pair(clone_number clone_1, clone_number clone_2) {
  calculate(clone_1, clone_2);
}

std::string class_clone_text_distance::text_of_distance_shapka() const {
  std::string row = "k\tk_double_tolerance\t";
  add_head(row, columns_.weights, "K");
  add_head(row, columns_.weights, "K/k");
  add_head(row, columns_.k2mn, "k2/mn");
  add_head(row, columns_.weights && columns_.k2mn, "K2/mn");
  add_head(row, columns_.nof, "NOF");
  add_head(row, columns_.lnn, "Lnn");
  add_head(row, columns_.lnn_cuted, "LnnCuted");
  add_head(row, columns_.sulston, "Sulston_1988");
  add_head(row, columns_.sulston_frec, "Sulston_frec");
  add_head(row, columns_.soderlund, "Soderlund_1997");
  add_head(row, columns_.lnn_sulston, "LnnSulston");
  add_head(row, columns_.markers, "Markers");
  return row + "Absorption\tweak?";
}

std::string class_clone_text_distance::text_of_distance(clone_number clone_1, clone_number clone_2) {
  std::string row;
  text_of_distance_append(clone_1, clone_2, row);
  return row;
}

void class_clone_text_distance::text_of_distance_append(clone_number clone_1, clone_number clone_2, std::string &row) {
  const std::int32_t double_tolerance = std::min(2 * context_->database.tollerance_get(), 32767);
  calc_.start_of_distance_calculation_alternative_tollerance(clone_1, clone_2, true,
                                                             static_cast<std::int16_t>(double_tolerance));
  const double k_double_tolerance = calc_.x_iid_get();
  calculate(clone_1, clone_2);
  const double k = calc_.x_iid_get(), K = calc_.x_fr_get();
  add_count(row, k);
  add_count(row, k_double_tolerance);
  add_value(row, columns_.weights, K);
  add_value(row, columns_.weights, k > 0 ? K / k : 0);
  add_value(row, columns_.k2mn, calc_.value_k2mn_get());
  add_value(row, columns_.weights && columns_.k2mn, calc_.value_kk2mn_get());
  const auto add_metric = [&](bool on, std::int16_t j) { add_value(row, on, value_[place(j)]); };
  add_metric(columns_.nof, family::DISTANCE_INDEX_Nof_get());
  add_metric(columns_.lnn, family::DISTANCE_INDEX_Lnn_get());
  add_metric(columns_.lnn_cuted, family::DISTANCE_INDEX_LnnCuted_get());
  add_metric(columns_.sulston, family::DISTANCE_INDEX_Sulston_1988_get());
  add_metric(columns_.sulston_frec, family::DISTANCE_INDEX_Sulston_1988_frec_get());
  add_metric(columns_.soderlund, family::DISTANCE_INDEX_Soderlund_1997_get());
  add_metric(columns_.lnn_sulston, family::DISTANCE_INDEX_LnnSulston_get());
  if (columns_.markers)
    add_count(row, n_common_markers_);
  row += burying_word(calc_.burring_index_get(burying_));
  row += '\t';
  if (is_weak_get(metric_of_mark_))
    row += "Weak";
}

} // namespace orb
