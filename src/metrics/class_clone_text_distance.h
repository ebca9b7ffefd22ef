// The scores of a pair of clones as a row of a table: which columns a table format shows, their heads and their texts,
// and which metrics call the pair weak.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "frame/settings.h"
#include "metrics/class_clone_dist_calc.h"
#include "metrics/metric_context.h"
#include "metrics/overlap_rule.h"

namespace orb {

class class_clone_text_distance {
public:
  // The columns are those of the format that the settings name at this moment (`table_format_text`); with a text that
  // names no format every column stays on. The weights of bands are summed when the rule says so and for formats with
  // columns of weights. Each metric starts with its standard cutoff, but the metric of the rule, which is the one that
  // speaks in the column "weak?", with the rule's. `context` must outlive the object. The row of a pair changes the
  // tolerance of the database for a moment: one thread at a time.
  class_clone_text_distance(const metric_context &context, const overlap_rule &rule);

  static constexpr std::int32_t table_format_n_text_get() { return 5; }
  // The name of format 0..4; empty outside of that.
  static std::string table_format_text_get(std::int32_t format);
  // The format of a name, -1 when there is none.
  static std::int32_t table_format_of_text(std::string_view text);
  // The format of the options panel was chosen (0..4, others change nothing).
  static void table_format_select(project_settings &settings, std::int32_t format);

  // The cutoff of a metric, which becomes the metric of the column "weak?".
  void cutoff_set(std::int16_t distance_index, double cutoff);
  // Did the pair last taken lie below the cutoff of this metric? False for a metric without a cutoff, and for one that
  // was not computed: a metric other than the one of the column "weak?" is when its column is on, or when what it
  // needs (weights of bands, tables, markers) is there anyway.
  bool is_weak_get(std::int16_t distance_index) const;

  // True when a pair costs milliseconds, not microseconds: LnnSulston is computed. For the stride of status calls.
  bool pairs_are_slow() const { return is_judged_[class_clone_dist_general::DISTANCE_INDEX_LnnSulston_get()]; }

  // The heads of the columns with tabs between them, in their fixed order.
  std::string text_of_distance_shapka() const;
  // The fields under these heads, with tabs between them: counts of bands and markers as whole numbers, all else in
  // the format "0.00".
  std::string text_of_distance(clone_number clone_1, clone_number clone_2);
  // The same at the end of a row that exists already: for tables of many rows. Allocates only while the row grows.
  void text_of_distance_append(clone_number clone_1, clone_number clone_2, std::string &row);
  // Only what `is_weak_get` tells, without a text.
  void distance_of_pair(clone_number clone_1, clone_number clone_2);

private:
  static constexpr std::int16_t n_metrics = class_clone_dist_general::number_distance_index_get() + 1;
  // Switches of columns; those that are never off have none. `weights` are "K", "K/k" and "K2/mn".
  struct columns_on {
    bool weights = true, k2mn = true, nof = true, lnn = true, lnn_cuted = true, sulston = true, sulston_frec = true,
         soderlund = true, lnn_sulston = true, markers = true;
  };
  static columns_on columns_of_format(std::int32_t format);
  // The format whose columns are shown.
  static std::int32_t format_of_columns(const metric_context &context);
  bool column_of_metric_is_on(std::int16_t distance_index) const;
  void choose_metrics();
  void calculate(clone_number clone_1, clone_number clone_2);
  double value_of_metric(std::int16_t distance_index);

  const metric_context *context_;
  class_clone_dist_calc calc_;
  double burying_;
  bool weights_; // are summed for each pair
  columns_on columns_;
  std::int16_t metric_of_mark_;
  std::array<double, n_metrics> cutoff_{};
  std::array<bool, n_metrics> is_judged_{}; // its value is computed for each pair
  std::array<bool, n_metrics> is_weak_{};
  std::array<double, n_metrics> value_{}; // of the pair last taken
  std::int32_t n_common_markers_ = 0;
};

} // namespace orb
