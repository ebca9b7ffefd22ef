// Tables of pairs over a list of clones: each clone with its predecessor, and all pairs.
#include <optional>
#include <string_view>

#include "database/class_clone_serv.h"
#include "database/class_markers.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "lists/class_list_of_clones.h"
#include "metrics/class_clone_text_distance.h"

namespace orb {

namespace {

constexpr std::int64_t pairs_between_reports = 2000, slow_pairs_between_reports = 50; // below half a second each
constexpr std::string_view clone_heads = "CloneName\tnBands\tN\tN/n\t";

// The columns of one clone, each with a tab behind it: name, bands, their weight, weight of a band.
void add_clone_columns(std::string &row, clone_number clone, const class_DB_of_clones &database) {
  const std::int32_t n = database.number_of_bands_in_clone_get(clone);
  const double weight = class_clone_serv::weighted_number_of_bands_in_clone(clone, database);
  row += database.name_of_clone_get(clone);
  row += '\t';
  whole_number_append(row, n);
  row += '\t';
  number_text_append(row, weight, 2);
  row += '\t';
  number_text_append(row, n > 0 ? weight / n : 0, 2);
  row += '\t';
}

// The columns of all clones of a list in one text: those of place i are part(i).
class clone_column_texts {
public:
  clone_column_texts(const number_list &list, const class_DB_of_clones &database) : end_of_{0} {
    for (const clone_number clone : list.members()) {
      add_clone_columns(text_, clone, database);
      end_of_.push_back(text_.size());
    }
  }
  std::string_view part(std::int32_t i) const {
    const auto place = static_cast<std::size_t>(i);
    return std::string_view(text_).substr(end_of_[place - 1], end_of_[place] - end_of_[place - 1]);
  }

private:
  std::string text_;
  std::vector<std::size_t> end_of_;
};

// The zones belong to the whole list: one line behind the rows, not a column of each.
void add_zones(result_file &table, const number_list &list, const metric_context &context) {
  if (!context.settings.markers_in_clones)
    return;
  std::string zones;
  context.database.markers().string_of_zones(list, zones);
  table.line(zones);
}

// The clones that a net joins to one clone. Asked for one clone after another, each at the cost of its edges.
class net_partners {
public:
  net_partners(const class_net *net, std::int32_t n_clones) : net_(net), n_clones_(n_clones) {}
  void take(clone_number clone) {
    partner_.start(n_clones_);
    if (net_ == nullptr || clone > net_->number_of_vertices_get())
      return;
    for (const net_edge &edge : net_->edges_of_vertex(clone))
      if (edge.neighbour <= n_clones_)
        partner_.set(edge.neighbour, 1);
  }
  bool has(clone_number clone) const { return partner_.has(clone); }

private:
  const class_net *net_;
  std::int32_t n_clones_;
  position_table partner_;
};

// Tells how far a table is, at a stride, and whether to go on.
class table_progress {
public:
  table_progress(process_frame &frame, const class_clone_text_distance &distance, std::int64_t n)
      : frame_(frame), n_(n), stride_(distance.pairs_are_slow() ? slow_pairs_between_reports : pairs_between_reports) {}
  bool goes_on_after(std::int64_t i) {
    if (i < next_)
      return true;
    next_ = i + stride_;
    frame_.progress(i, n_);
    frame_.local_process_text_set(std::to_string(i) + " of " + std::to_string(n_));
    return !frame_.stop_requested_get();
  }

private:
  process_frame &frame_;
  std::int64_t n_, stride_, next_ = 1; // the first row is reported, too, so that a stop request before it counts
};

} // namespace

bool class_list_of_clones::print_consecuent_dist(std::int32_t n, const number_list &list, const std::string &file_word,
                                                 std::filesystem::path file, std::vector<std::int32_t> &gaps,
                                                 bool print, const overlap_rule &rule, const metric_context &context) {
  constexpr std::int16_t last_metric = class_clone_dist_general::number_distance_index_get() + 1;
  std::vector<std::int32_t> counted(static_cast<std::size_t>(last_metric) + 1, 0);
  class_clone_text_distance distance(context, rule);
  std::optional<result_file> table;
  if (print) {
    table.emplace(file.empty() ? frame_.path_in_working_folder("\\Consec_dist_" + file_word + ".txt") : file);
    table->line("i\tIndex\t" + std::string(clone_heads) + distance.text_of_distance_shapka());
  }
  table_progress progress(frame_, distance, n);
  std::string row;
  for (std::int32_t i = 1; i <= n; ++i) {
    row.clear();
    if (print) {
      whole_number_append(row, i);
      row += '\t';
      whole_number_append(row, list(i));
      row += '\t';
      add_clone_columns(row, list(i), context.database);
    }
    if (i > 1) {
      if (print)
        distance.text_of_distance_append(list(i - 1), list(i), row);
      else
        distance.distance_of_pair(list(i - 1), list(i));
      for (std::int16_t j = 0; j <= last_metric; ++j)
        counted[static_cast<std::size_t>(j)] += distance.is_weak_get(j);
    }
    if (print)
      table->line(row);
    if (!progress.goes_on_after(i))
      return false;
  }
  if (print) {
    add_zones(*table, list, context);
    table->commit();
  }
  gaps = std::move(counted);
  return true;
}

bool class_list_of_clones::print_all_dist(const number_list &list, const std::string &file_word,
                                          std::filesystem::path file, const overlap_rule &rule,
                                          const metric_context &context, const class_net *net, pairs_of_table pairs) {
  if (pairs == pairs_of_table::ask) {
    question from_net;
    from_net.text = "From the net only?";
    from_net.by_default = from_net.to_go_on = answer::no;
    pairs = frame_.yes(from_net) ? pairs_of_table::from_net_only : pairs_of_table::all;
  }
  class_clone_text_distance distance(context, rule);
  result_file table(file.empty() ? frame_.path_in_working_folder("\\All_dist_" + file_word + ".txt") : file);
  table.line(std::string(clone_heads) + std::string(clone_heads) + distance.text_of_distance_shapka());
  const clone_column_texts columns(list, context.database);
  const std::int32_t n = list.count();
  const std::int64_t n_pairs = static_cast<std::int64_t>(n) * (n - 1) / 2;
  table_progress progress(frame_, distance, n_pairs);
  const bool from_net_only = pairs == pairs_of_table::from_net_only;
  net_partners partners(net, context.database.total_number_of_clones_get());
  std::int64_t n_done = 0;
  std::string row;
  for (std::int32_t i = 1; i < n; ++i) {
    if (from_net_only)
      partners.take(list(i));
    for (std::int32_t j = i + 1; j <= n; ++j) {
      if (!progress.goes_on_after(++n_done))
        return false;
      if (from_net_only && !partners.has(list(j)))
        continue;
      row = columns.part(i);
      row += columns.part(j);
      distance.text_of_distance_append(list(i), list(j), row);
      table.line(row);
    }
  }
  add_zones(table, list, context);
  table.commit();
  return true;
}

} // namespace orb
