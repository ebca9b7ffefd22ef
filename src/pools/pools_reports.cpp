// What is printed of a scheme: pools of clones, clones in pools, which wells are filled.
#include "frame/files.h"
#include "lists/class_list_of_clones.h"
#include "pools/class_pools3D.h"

namespace orb {

namespace fs = std::filesystem;

fs::path class_pools3D::pools_for_list_of_clones(const class_DB_of_clones &database, const number_list &list,
                                                 const std::string &name, const fs::path &folder) const {
  const fs::path path = folder / ("pools_for_clones_" + name + ".txt");
  result_file file(path);
  file.line("i\tclone\tpools");
  for (std::int32_t i = 1; i <= list.count(); ++i)
    file.line(std::to_string(i) + "\t" + database.name_of_clone_get(list(i)) + "\t" +
              position_of_clone_in_pools_text_get(list(i)));
  file.commit();
  return path;
}

bool class_pools3D::pools_for_list_of_clones_run(process_frame &frame, const project_settings &settings,
                                                 class_DB_of_clones &database, const fs::path &file,
                                                 const fs::path &folder, fs::path &written) const {
  fs::path chosen = file;
  frame.step_text_set("Load list of clones");
  if (chosen.empty())
    chosen = frame.open_file_dialog("Open file with clones to select");
  number_list list;
  std::string name;
  if (chosen.empty() ||
      !class_list_of_clones(frame, settings).run_reading_file_with_list_of_clones(chosen, list, name, database))
    return false;
  frame.step_text_set("List of clones is loaded");
  written = pools_for_list_of_clones(database, list, name, folder.empty() ? chosen.parent_path() : folder);
  return true;
}

void class_pools3D::print_list_of_clones_in_pool_intersections(const class_DB_of_clones &database,
                                                               const number_list &clones, const fs::path &path) {
  result_file file(path);
  for (const clone_number clone : clones.members())
    file.line(database.name_of_clone_get(clone));
  file.commit();
}

void class_pools3D::print_clones_in_pools(const class_DB_of_clones &database, std::span<const clone_number> clones,
                                          const fs::path &path) const {
  constexpr std::array heads_of_dimensions{"Plate", "row", "column"};
  std::string text = "i\tclone\tplace";
  for (std::size_t d = 0; d < n_pool_dimensions; ++d) {
    text += std::string("\t") + heads_of_dimensions[d];
    for (std::int32_t pool = 1; pool <= sizes_[d]; ++pool)
      text += "\t" + name_of_pool(d, pool);
  }
  result_file file(path);
  file.line(text);
  std::int32_t i = 0;
  for (const clone_number clone : clones) {
    pool_place place{};
    find_clone_in_pools(clone, place); // a clone that is in no pool keeps 0, which no pool has
    text = std::to_string(++i) + "\t" + database.name_of_clone_get(clone) + "\t" +
           position_of_clone_in_pools_text_get(clone);
    for (std::size_t d = 0; d < n_pool_dimensions; ++d) {
      text += "\t"; // below the head of the dimension
      for (std::int32_t pool = 1; pool <= sizes_[d]; ++pool)
        text += place[d] == pool ? "\t+" : "\t";
    }
    file.line(text);
  }
  file.commit();
}

void class_pools3D::print_filling_of_tables(const fs::path &path) const {
  result_file file(path);
  for (std::int32_t plate = 1; plate <= sizes_[pool_plates]; ++plate) {
    file.line(name_of_pool(pool_plates, plate));
    std::string text = "coor";
    for (std::int32_t column = 1; column <= sizes_[pool_columns]; ++column)
      text += "\t" + std::to_string(column);
    file.line(text);
    for (std::int32_t row = 1; row <= sizes_[pool_rows]; ++row) {
      text = name_of_pool(pool_rows, row);
      for (std::int32_t column = 1; column <= sizes_[pool_columns]; ++column)
        text += clone_in_pool(column, row, plate) >= 1 ? "\t*" : "\t ";
      file.line(text);
    }
  }
  file.commit();
}

} // namespace orb
