#include "database/class_markers.h"

#include <algorithm>

#include "database/class_DB_of_clones.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"

namespace orb {

void class_markers::list_of_markers_in_clone_get(clone_number clone, number_list &markers) const {
  const std::span<const std::int32_t> of_clone = markers_of_clone(clone);
  markers.resize(static_cast<std::int32_t>(of_clone.size()));
  std::copy(of_clone.begin(), of_clone.end(), markers.members().begin());
}

number_list class_markers::list_of_clones_of_marker_get(std::int32_t marker) const {
  number_list clones;
  for (const std::int32_t place : clones_of_marker_.set_get(marker)) {
    const clone_number clone = clones_with_markers_.member_of_list_antiadres_get(place);
    if (clones_with_markers_.element_adress_in_list_get(clone) == place)
      clones.add(clone);
  }
  return clones;
}

void class_markers::redim_private_arrays(std::int32_t n_clones, std::int32_t n_markers_max,
                                         std::int32_t array_length_max) {
  constexpr std::int32_t most_reserved = 1 << 20; // the counts may come from a file
  *this = class_markers();
  clones_with_markers_.n_elements_set(n_clones, true);
  clones_with_markers_.n_members_in_list_set(0, true);
  markers_of_clone_.n_sets_max_set(std::min(n_clones, most_reserved));
  markers_of_clone_.n_array_of_sets_max_set(std::clamp(array_length_max, 0, most_reserved));
  clones_of_marker_.n_sets_max_set(std::clamp(n_markers_max, 0, most_reserved));
}

void class_markers::marker_number_for_given_marker_name(std::string_view name, std::int32_t &marker, bool add_if_new,
                                                        bool &is_new) {
  const auto known = marker_of_name_.find(std::string(name));
  is_new = known == marker_of_name_.end();
  marker = is_new ? -1 : known->second;
  if (!is_new || !add_if_new)
    return;
  name_of_marker_.emplace_back(name);
  position_of_marker_.emplace_back();
  marker = total_number_of_markers_get();
  marker_of_name_.emplace(name, marker);
}

void class_markers::add_clone_with_markers_new(process_frame &frame, clone_number clone,
                                               const std::vector<std::string> &names, std::int32_t n,
                                               number_list &numbers, std::vector<bool> &is_new) {
  numbers.clear();
  is_new.assign(static_cast<std::size_t>(n) + 1, false);
  if (!clones_with_markers_.add_member(clone))
    return;
  const std::int32_t place = clones_with_markers_.n_members_in_list_get();
  for (std::int32_t i = 1; i <= n; ++i) {
    std::int32_t marker = -1;
    bool new_name = false;
    marker_number_for_given_marker_name(names[static_cast<std::size_t>(i)], marker, true, new_name);
    is_new[static_cast<std::size_t>(i)] = new_name;
    numbers.add(marker);
  }
  std::vector<std::int32_t> set(numbers.members().begin(), numbers.members().end());
  std::sort(set.begin(), set.end());
  set.erase(std::unique(set.begin(), set.end()), set.end()); // a name may stand twice on a line
  for (const std::int32_t marker : set)
    clones_of_marker_.add_to_temp_list_of_elements_for_set(frame, marker, place);
  markers_of_clone_.add_set(set);
}

void class_markers::finish_of_adding() {
  markers_of_clone_.sort_array_of_sets();
  clones_of_marker_.temp_list_of_elements_for_set_set_number_max_set(total_number_of_markers_get());
  clones_of_marker_.update_from_lists_of_pairs();
  clones_of_marker_.sort_array_of_sets();
}

void class_markers::number_of_common_markers(clone_number clone_1, clone_number clone_2, std::int32_t &n_common) const {
  const std::span<const std::int32_t> a = markers_of_clone(clone_1), b = markers_of_clone(clone_2);
  n_common = 0;
  for (std::size_t i = 0, j = 0; i < a.size() && j < b.size();) {
    if (a[i] == b[j]) {
      ++n_common;
      ++i;
      ++j;
    } else if (a[i] < b[j]) {
      ++i;
    } else {
      ++j;
    }
  }
}

void class_markers::create_list_of_markers_for_list_of_clones(const number_list &list, std::int32_t n,
                                                              number_list &markers) const {
  position_table met;
  met.start(total_number_of_markers_get());
  markers.clear();
  for (std::int32_t i = 1; i <= n; ++i)
    for (const std::int32_t marker : markers_of_clone(list(i)))
      if (!met.has(marker)) {
        markers.add(marker);
        met.set(marker, markers.count());
      }
}

void class_markers::create_marker_presence_for_clone_and_list_of_markers(process_frame &frame, clone_number clone,
                                                                         const number_list &markers,
                                                                         std::vector<bool> &present) const {
  position_table place_of_marker;
  place_of_marker.start(total_number_of_markers_get());
  for (std::int32_t i = markers.count(); i >= 1; --i)
    place_of_marker.set(markers(i), i);
  marker_presence(frame, clone, markers, place_of_marker, present);
}

void class_markers::marker_presence(process_frame &frame, clone_number clone, const number_list &markers,
                                    const position_table &place_of_marker, std::vector<bool> &present) const {
  present.assign(static_cast<std::size_t>(markers.count()) + 1, false);
  for (const std::int32_t marker : markers_of_clone(clone)) {
    if (place_of_marker.has(marker))
      present[static_cast<std::size_t>(place_of_marker.get(marker))] = true;
    else
      frame.alarm("Marker " + name_of_marker_get(marker) + " of clone " + std::to_string(clone) +
                  " is not in list_of_markers()");
  }
}

void class_markers::print_marker_presence_for_list_of_clones(process_frame &frame, const class_DB_of_clones &database,
                                                             const number_list &list, std::int32_t n,
                                                             std::filesystem::path file,
                                                             const std::string &caption) const {
  if (file.empty())
    file = frame.path_in_working_folder("\\Consec_markers_" + caption + ".txt");
  number_list markers;
  create_list_of_markers_for_list_of_clones(list, n, markers);
  position_table place_of_marker;
  place_of_marker.start(total_number_of_markers_get());
  for (std::int32_t k = 1; k <= markers.count(); ++k)
    place_of_marker.set(markers(k), k);
  result_file table(file);
  std::vector<bool> present;
  for (std::int32_t i = 1; i <= n; ++i) {
    marker_presence(frame, list(i), markers, place_of_marker, present);
    std::string row = database.name_of_clone_get(list(i));
    for (std::int32_t k = 1; k <= markers.count(); ++k) {
      row += '\t';
      if (present[static_cast<std::size_t>(k)])
        row += name_of_marker_get(markers(k));
    }
    table.line(row);
  }
  table.commit();
}

void class_markers::create_list_of_marker_position_for_list_of_clones(const number_list &list,
                                                                      std::vector<std::string> &positions,
                                                                      std::int32_t &n) const {
  number_list markers;
  create_list_of_markers_for_list_of_clones(list, list.count(), markers);
  positions.assign(1, {});
  for (const std::int32_t marker : markers.members())
    if (class_serv_raznoe::find_text(position_of_marker_get(marker), positions) < 0)
      positions.push_back(position_of_marker_get(marker));
  n = static_cast<std::int32_t>(positions.size()) - 1;
}

void class_markers::string_of_zones(const number_list &list, std::string &text) const {
  std::vector<std::string> positions;
  std::int32_t n = 0;
  create_list_of_marker_position_for_list_of_clones(list, positions, n);
  text = "Zones of markers:";
  for (std::int32_t i = 1; i <= n; ++i)
    if (!positions[static_cast<std::size_t>(i)].empty())
      text += "\t" + positions[static_cast<std::size_t>(i)];
}

void class_markers::create_marker_presence_in_list_of_marker_names(process_frame &frame, clone_number clone,
                                                                   const std::vector<std::string> &names,
                                                                   std::int32_t n, std::vector<bool> &present) const {
  const std::vector<std::string> kept(names.begin(), names.begin() + n + 1);
  present.assign(static_cast<std::size_t>(n) + 1, false);
  for (const std::int32_t marker : markers_of_clone(clone)) {
    const std::int32_t place = class_serv_raznoe::find_text(name_of_marker_get(marker), kept);
    if (place > 0)
      present[static_cast<std::size_t>(place)] = true;
    else
      frame.alarm("Marker " + name_of_marker_get(marker) + " of clone " + std::to_string(clone) +
                  " is not in list_of_markers()");
  }
}

void class_markers::update_array_marker_name_by_markers_presented_in_clone(clone_number clone,
                                                                           std::vector<std::string> &names,
                                                                           std::int32_t &n) const {
  names.resize(static_cast<std::size_t>(n) + 1);
  for (const std::int32_t marker : markers_of_clone(clone))
    if (class_serv_raznoe::find_text(name_of_marker_get(marker), names) < 0)
      names.push_back(name_of_marker_get(marker));
  n = static_cast<std::int32_t>(names.size()) - 1;
}

} // namespace orb
