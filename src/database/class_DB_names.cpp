// Names of clones: the sorted index, repeated names, looking up.
#include <algorithm>

#include "database/class_DB_of_clones.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/text_lines.h"

namespace orb {

namespace {

std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

} // namespace

const std::string &class_DB_of_clones::clone_name_sorted_get(std::int32_t position) const {
  return clone_name_sorted_[place(position)];
}

clone_number class_DB_of_clones::clone_name_sorted_initial_adress_get(std::int32_t position) const {
  return clone_name_sorted_initial_adress_[place(position)];
}

// The place in the sorted index at which the search ends; which one of equal names that is, is the search's affair,
// but always the same one.
std::int32_t class_DB_of_clones::clone_name_sorted_find(std::string_view name) const {
  const auto n = static_cast<std::int32_t>(clone_name_sorted_.size()) - 1;
  if (n < 1)
    return -1;
  bool found = false;
  std::int32_t position = 0;
  class_serv_raznoe::finnd_in_partially_ordered_list_string(name, clone_name_sorted_, found, position, 1, n);
  return found ? position : -1;
}

clone_number class_DB_of_clones::clone_number_get(std::string_view name) const {
  if (clone_name_sorted_is_created_) {
    const std::int32_t position = clone_name_sorted_find(name);
    return position > 0 ? clone_name_sorted_initial_adress_get(position) : -1;
  }
  for (clone_number i = 1; i <= total_number_of_clones_; ++i)
    if (name_of_clone_get(i) == name)
      return i;
  return -1;
}

number_list class_DB_of_clones::clone_number_get_with_repeats(std::string_view name) const {
  number_list clones;
  const std::int32_t hit = clone_name_sorted_is_created_ ? clone_name_sorted_find(name) : -1;
  if (hit < 1)
    return clones;
  if (nRepeatsCloneName_get(clone_name_sorted_initial_adress_get(hit)) == 1)
    return number_list{clone_name_sorted_initial_adress_get(hit)};
  const auto run = std::equal_range(clone_name_sorted_.begin() + 1, clone_name_sorted_.end(), name);
  for (auto it = run.first; it != run.second; ++it)
    clones.add(clone_name_sorted_initial_adress_get(static_cast<std::int32_t>(it - clone_name_sorted_.begin())));
  return clones;
}

std::int32_t class_DB_of_clones::nRepeatsCloneName_get(clone_number clone) const {
  return IsDBContainRepeatsCloneNames_ ? nRepeatsCloneName_[place(clone)] : 1;
}

void class_DB_of_clones::sort_clones_by_name(process_frame &frame) {
  frame.local_process_text_set("Sorting clone names...");
  const std::int32_t n = total_number_of_clones_;
  if (n > 0) {
    clone_name_sorted_ = create_list_of_all_clone_names();
    class_serv_raznoe::quicksort_string(clone_name_sorted_, clone_name_sorted_initial_adress_, 1, n, true);
    clone_name_sorted_is_created_ = true;
    std::vector<std::int32_t> runs; // pairs: first place of a run of equal names, its size
    for (std::int32_t i = 2; i <= n; ++i) {
      if (clone_name_sorted_get(i) != clone_name_sorted_get(i - 1))
        continue;
      if (runs.empty() || runs[runs.size() - 2] + runs.back() != i)
        runs.insert(runs.end(), {i - 1, 1});
      ++runs.back();
    }
    IsDBContainRepeatsCloneNames_ = !runs.empty();
    nRepeatsCloneName_.clear();
    if (!runs.empty())
      note_repeated_names(frame, runs);
  }
  frame.local_process_text_reset();
}

void class_DB_of_clones::note_repeated_names(process_frame &frame, std::span<const std::int32_t> runs) {
  nRepeatsCloneName_.assign(place(total_number_of_clones_) + 2, 1);
  std::int32_t n_repeats = 0;
  std::string rows;
  for (std::size_t r = 0; r < runs.size(); r += 2) {
    const std::int32_t first = runs[r], size = runs[r + 1];
    const std::string &name = clone_name_sorted_get(first);
    const clone_number primary = clone_name_sorted_initial_adress_get(clone_name_sorted_find(name));
    for (std::int32_t i = first; i < first + size; ++i)
      nRepeatsCloneName_[place(clone_name_sorted_initial_adress_get(i))] = -primary;
    nRepeatsCloneName_[place(primary)] = size;
    n_repeats += size - 1;
    rows += std::to_string(r / 2 + 1) + "\t" + name + "\t" + std::to_string(size) + "\r\n";
  }
  frame.alarm("Loaded database contain " + std::to_string(runs.size() / 2) +
              " repeated clones (see file repeats.txt)!\rRepeats should be deleted!");
  result_file report(frame.path_in_working_folder("\\repeats.txt"));
  report.line("clone\ttimes (Total " + std::to_string(n_repeats) + ")");
  report.write(rows);
  report.commit();
}

void class_DB_of_clones::list_of_clones_in_line_get(std::string_view text, number_list &clones,
                                                    std::vector<std::string> &unknown_names,
                                                    std::int32_t &n_unknown) const {
  clones.clear();
  text = trimmed(text, " ");
  std::string name;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool comma = text[i] == ',' || text[i] == ';' || text[i] == ' ';
    if (!comma)
      name += text[i];
    // A name of one character is deliberately not closed: it runs on into the next.
    if ((!comma && i + 1 < text.size()) || name.size() < 2)
      continue;
    const clone_number clone = clone_number_get(name);
    if (clone >= 1) {
      clones.add(clone);
    } else {
      ++n_unknown;
      unknown_names.resize(place(n_unknown) + 1);
      unknown_names[place(n_unknown)] = name;
    }
    name.clear();
  }
}

} // namespace orb
