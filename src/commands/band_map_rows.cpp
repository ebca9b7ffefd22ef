// Consensus maps of bands, of the clones of a list or of simulated ones.
#include <algorithm>
#include <fmt/format.h>

#include "commands/command_table.h"
#include "commands/row_steps.h"
#include "frame/numbers.h"
#include "ordering/class_map_of_bands1.h"
#include "ordering/class_map_of_bands4.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

struct band_map_parameters {
  fs::path list, out;
  bool alignments = false, groups = false, simulate = false;
  band_map_options options;
  double lost = band_map_metric{}.lost;
  band_map_simulation simulation;
};

void describe_band_map(parameter_list &list, band_map_parameters &p) {
  list.add("list", p.list, "clones of one contig, one a line").type("LIST").needed();
  list.add("out", p.out, "folder of the files; without it the working folder").type("DIR");
  list.add("alignments", p.alignments, "a file for each clone, with its bands against the map");
  list.add("groups", p.groups, "the older map besides: groups of bands, from the clones in the order of the list");
  list.add("expected-lost", p.lost, "share of the bands that clones are believed to miss").limits(0.001, 0.5);
  list.add("tour-steps", p.options.steps, "limit of the search for the order of the bands").limits(1, 1e9);
  const char *group = "Simulation";
  list.add("simulate", p.simulate, "clones with as many bands as those of the list, read from a random map")
      .in_group(group);
  list.add("coverage", p.simulation.coverage, "how often the clones cover the map").limits(0.5, 1000).in_group(group);
  list.add("lost", p.simulation.lost, "chance of a band to be missed").limits(0, 0.9).in_group(group);
  list.add("false", p.simulation.added, "false bands, as a share of a clone's bands").limits(0, 0.9).in_group(group);
  list.add("error", p.simulation.error, "largest error of a band, in band units").limits(0, 1000).in_group(group);
}

void check_band_map(const project_state &, const parts_there &, const band_map_parameters &p) {
  check_input(p.list);
}

void put_files(const class_map_of_bands4 &map, const fs::path &folder, command_result &result) {
  for (const std::string &name : map.names_of_files())
    result.file(name, folder / name);
  result.figure("bands", map.map().size());
  result.lines.push_back((folder / "band_map_all_clones.txt").string());
}

bool make_of_clones(project_state &project, const band_map_parameters &p, const band_map_clones &clones,
                    class_map_of_bands4 &map, command_result &result) {
  const fs::path folder = project.frame().working_folder_get();
  if (!map.make_all_work(clones, folder))
    return false;
  double n_absent = 0, n_false = 0, n_bands = 0;
  for (std::size_t i = 0; i < clones.count(); ++i) {
    n_absent += map.alignment(i).n_absent_bands_in_clone();
    n_false += map.alignment(i).n_false_bands_in_clone();
    n_bands += map.alignment(i).number_of_bands_in_clone();
    if (p.alignments)
      result.file("alignment", map.print_aligment_of_one_clone(clones, i, folder));
  }
  if (p.groups) {
    class_map_of_bands1 older(project.frame(), clones.metric);
    older.creation_of_initial_map_of_bands(clones);
    older.creation_of_initial_borders(clones);
    older.print(clones, folder / "band_map_groups.txt");
    result.file("groups", folder / "band_map_groups.txt");
  }
  result.figure("absent", n_absent);
  result.figure("false", n_false);
  result.summary =
      fmt::format("{} bands in the map; of {} clones it lacks {} % of the bands, and they lack {} % of theirs",
                  map.map().size(), clones.count(), number_text(100 * n_false / std::max(n_bands, 1.0), 1),
                  number_text(100 * n_absent / std::max(n_bands - n_false + n_absent, 1.0), 1));
  return true;
}

bool make_of_simulated(project_state &project, const band_map_parameters &p, const band_map_clones &clones,
                       class_map_of_bands4 &map, command_result &result) {
  band_map_simulation wanted = p.simulation;
  wanted.seed = project.settings().seed;
  const fs::path folder = project.frame().working_folder_get();
  band_map_quality quality;
  if (!map.simulate_make_all_work(numbers_of_bands(clones), clones.metric, wanted, folder, quality))
    return false;
  result.file("simulation", folder / "band_map_simulation.txt");
  result.parameter("coverage", wanted.coverage);
  result.parameter("lost", wanted.lost);
  result.parameter("false", wanted.added);
  result.parameter("error", wanted.error);
  result.figure("bands_found", quality.bands_found);
  result.figure("bands_true", quality.bands_true);
  result.figure("neighbours_right", quality.neighbours_right);
  result.figure("tau", quality.tau);
  result.summary =
      fmt::format("{} bands in the map; found {} % of the bands, neighbours in order {} %, tau of the clones {}",
                  map.map().size(), number_text(100 * quality.bands_found, 1),
                  number_text(100 * quality.neighbours_right, 1), number_text(quality.tau, 4));
  return true;
}

command_result run_band_map(project_state &project, const band_map_parameters &p) {
  work_in(project, p.out);
  number_list list;
  std::string name;
  if (!read_list(project, p.list, list, name) || list.empty())
    return stopped_or_failed(project);
  band_map_options options = p.options;
  options.seed = project.settings().seed;
  class_map_of_bands4 map(project.frame(), options);
  const band_map_clones clones = band_map_clones_of(project.database(), list, p.lost);
  command_result result;
  result.inputs.push_back(p.list);
  result.parameter("expected_lost", p.lost);
  result.parameter("tour_steps", p.options.steps);
  if (!(p.simulate ? make_of_simulated : make_of_clones)(project, p, clones, map, result))
    return stopped_or_failed(project);
  put_files(map, project.frame().working_folder_get(), result);
  return result;
}

} // namespace

void add_band_map_rows(command_rows &rows) {
  rows.push_back(command_maker<band_map_parameters>("bandmap.make")
                     .captioned("Band map")
                     .purpose("one row of bands in which each clone of a contig is a stretch, and the clones along it")
                     .example("bandmap.make list=contig.txt out=map")
                     .needs({project_part::library})
                     .parameters(describe_band_map)
                     .checked_by(check_band_map)
                     .runs(run_band_map)
                     .row());
}

} // namespace orb
