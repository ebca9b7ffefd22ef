#include "net/contamination.h"

#include <cmath>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "frame/numbers.h"
#include "lists/class_list_of_clones.h"

namespace orb {

namespace {

constexpr std::int32_t clones_between_reports = 100;
constexpr std::int32_t standard_distance = 5;
constexpr double largest_distance = 1000000;

struct well_place {
  std::string_view plate; // may be empty
  int row = 0;            // code of a character
  int column = 0;
  bool is_there = false;
};

// A name that is a well alone lies on the plate without a name. A column that isn't of digits can't be compared.
well_place well_of_name(std::string_view name) {
  if (name.size() <= 2)
    return {};
  const std::string_view last = name.substr(name.size() - 3);
  well_place well{{}, static_cast<unsigned char>(last[0]), 0, true};
  for (const char c : last.substr(1)) {
    if (c < '0' || c > '9')
      return {};
    well.column = 10 * well.column + (c - '0');
  }
  well.plate = name.substr(0, name.size() - 3);
  return well;
}

// The default stands for a reply that is no number or the proposal as it was shown, which is rounded.
double asked_cutoff(process_frame &frame, const std::optional<double> &given, double least) {
  double value = least;
  if (given && *given <= 0)
    return least;
  if (given) {
    value = *given;
  } else {
    const std::string proposed = number_text(least, 2);
    const std::string reply = frame.input({"Cutoff for overlap:", {}, proposed});
    if (reply == proposed || !number_from_text_silent(reply, value))
      return least;
  }
  if (value >= least)
    return value;
  frame.alarm("Cutoff was not changed (should be at least equal to the most weak overlap in the net)!");
  return least;
}

std::int32_t asked_distance(process_frame &frame, const std::optional<double> &given) {
  double value = standard_distance;
  if (given)
    value = *given;
  else if (!number_from_text_silent(frame.input({"Max dist between wells:", {}, std::to_string(standard_distance)}),
                                    value))
    return standard_distance;
  if (value >= 1)
    return static_cast<std::int32_t>(std::min(value, largest_distance));
  frame.alarm("maxDist was not changed (should be at least equal to 1)!");
  return standard_distance;
}

// Wells of all clones that the net can join.
class well_table {
public:
  well_table(const class_DB_of_clones &database, std::int32_t n) : database_(database), wells_(1) {
    for (clone_number clone = 1; clone <= n; ++clone)
      wells_.push_back(well_of_name(database.name_of_clone_get(clone)));
  }
  bool are_neighbours(clone_number a, clone_number b, std::int32_t max_distance) const {
    const well_place &at = wells_[static_cast<std::size_t>(a)], &other = wells_[static_cast<std::size_t>(b)];
    return at.is_there && other.is_there && at.plate == other.plate && std::abs(at.row - other.row) <= max_distance &&
           std::abs(at.column - other.column) <= max_distance &&
           database_.name_of_clone_get(a) != database_.name_of_clone_get(b);
  }

private:
  const class_DB_of_clones &database_;
  std::vector<well_place> wells_;
};

// False after a stop request.
bool mark_neighbours(process_frame &frame, const class_net &net, const well_table &wells, clone_number n,
                     const contamination_result &wanted, std::vector<char> &marked) {
  for (clone_number a = 1; a <= n; ++a) {
    for (const net_edge &edge : net.edges_of_vertex(a)) {
      if (edge.value < wanted.cutoff || edge.neighbour > n)
        continue;
      char &own = marked[static_cast<std::size_t>(a)], &other = marked[static_cast<std::size_t>(edge.neighbour)];
      if ((own == 0 || other == 0) && wells.are_neighbours(a, edge.neighbour, wanted.max_distance))
        own = other = 1;
    }
    if (a % clones_between_reports != 0)
      continue;
    frame.progress(a, n);
    frame.local_process_text_set(std::to_string(a) + " of " + std::to_string(n));
    if (frame.stop_requested_get())
      return false;
  }
  return frame.goes_on();
}

} // namespace

bool search_for_contamination(const class_clone_net_signif &signif, const contamination_options &options,
                              contamination_result &result) {
  const metric_context &context = signif.context();
  process_frame &frame = context.frame;
  const class_net &net = signif.net();
  result = {};
  frame.process_start("Searching for contamination");
  result.cutoff = asked_cutoff(frame, options.cutoff, net.minimal_edge_value_get());
  result.max_distance = asked_distance(frame, options.max_distance);
  frame.message("Currently clone name is: .....<letter><cifra><cifra>, e.g., 007A05");
  const clone_number n = std::min(net.number_of_vertices_get(), context.database.total_number_of_clones_get());
  std::vector<char> marked(static_cast<std::size_t>(n) + 1, 0);
  if (!mark_neighbours(frame, net, well_table(context.database, n), n, result, marked)) {
    frame.process_stopped_manually();
    return false;
  }
  frame.step_text_set("Summaring...");
  for (clone_number clone = 1; clone <= n; ++clone)
    if (marked[static_cast<std::size_t>(clone)] != 0)
      result.clones.add(clone);
  result.file = options.file;
  if (result.file.empty())
    result.file = frame.path_in_working_folder("\\cl_contominat_" + number_text(result.cutoff, 2) + "_" +
                                               std::to_string(result.max_distance) + ".txt");
  class_list_of_clones(frame, context.settings).print_list_of_clones(result.clones, result.file, context.database);
  frame.all_panels_reset();
  return true;
}

} // namespace orb
