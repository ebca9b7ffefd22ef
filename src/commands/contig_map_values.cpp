#include "commands/contig_map_values.h"

#include <algorithm>
#include <unordered_map>

#include "contigs/run_folder.h"

namespace orb {

namespace fs = std::filesystem;

bool make_contig_map_of(project_state &project, contig_map &map) {
  const class_DB_of_clones &database = project.database();
  if (!project.has(project_part::contigs) || database.contigs() == nullptr)
    return false;
  return make_contig_map(project.frame(), database, *database.contigs(),
                         project.has(project_part::net) ? &project.signif().net() : nullptr, map);
}

std::size_t place_in_map(const contig_map &map, const std::string &contig) {
  const auto found = std::find_if(map.contigs.begin() + 1, map.contigs.end(),
                                  [&contig](const mapped_contig &known) { return known.name == contig; });
  return found == map.contigs.end() ? 0 : static_cast<std::size_t>(found - map.contigs.begin());
}

// By the run's own list. False after a message: a clone of the list isn't in the contig.
static bool find_far_clones(project_state &project, const mapped_contig &contig, std::vector<clone_number> &far) {
  std::vector<std::string> names;
  const fs::path run = project.origin(project_part::contigs).file;
  if (!read_far_clones(project.frame(), run, contig.name, names))
    return false;
  std::unordered_map<std::string_view, clone_number> clone_of_name;
  for (const clone_number clone : contig.clones)
    clone_of_name.emplace(project.database().name_of_clone_get(clone), clone);
  for (const std::string &name : names) {
    const auto found = clone_of_name.find(name);
    if (found == clone_of_name.end())
      return project.frame().refuse("Clone " + name + " of the run's list of far clones isn't in contig " +
                                    contig.name + ".");
    far.push_back(found->second);
  }
  std::sort(far.begin(), far.end());
  return true;
}

bool contig_values_for(project_state &project, const contig_map &map, std::size_t contig, contig_values &values) {
  std::vector<clone_number> far;
  if (!find_far_clones(project, map.contigs[contig], far))
    return false;
  values = contig_values_of(project.database(), map, contig, far);
  return true;
}

bool is_run_of_session(const project_state &project, const fs::path &folder) {
  std::error_code failed;
  return project.has(project_part::contigs) &&
         fs::equivalent(project.origin(project_part::contigs).file, folder, failed) && !failed;
}

} // namespace orb
