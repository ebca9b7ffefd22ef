// Which genetic markers were found in which clones. Hangs on the database; empty until something fills it: one of two
// text forms, or the native form that the program writes.
//
// The readers ask for a file when its name is empty. They fill an object of their own, so that what was loaded before
// stays whatever happens: they return false (cancelled, stopped, or refused with a message that names the line), or
// throw file_error or program_end. Lines that are wrong in themselves are reported and passed over; the command then
// ends with status 1.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "frame/class_ListOfElements.h"
#include "frame/class_ListOfSets.h"
#include "frame/lists.h"
#include "frame/process_frame.h"

namespace orb {

class class_DB_of_clones;

// What a reader found, for summaries.
struct marker_read_summary {
  std::int32_t n_lines = 0;               // not empty ones
  std::int32_t n_unknown_clone_names = 0; // names that the database doesn't have
  std::int32_t n_twice_marker_name = 0;   // lines of a marker that an earlier line had named
  std::int32_t n_problematic_lines = 0;   // lines that lack a name, or have more fields than are read
};

enum class marker_file_form {
  unknown,
  markers_of_clones_in_fields,     // clone, tab, marker, tab, marker...
  markers_of_clones_in_one_column, // clone, tab, markers with commas between them
  clones_of_markers,               // marker, tab, clones with commas between them, tab, position
  native
};

class class_markers {
public:
  std::int32_t total_number_of_markers_get() const { return static_cast<std::int32_t>(name_of_marker_.size()) - 1; }
  const std::string &name_of_marker_get(std::int32_t marker) const {
    return name_of_marker_[static_cast<std::size_t>(marker)];
  }
  // Free text, such as a zone of a chromosome; may be empty.
  const std::string &position_of_marker_get(std::int32_t marker) const {
    return position_of_marker_[static_cast<std::size_t>(marker)];
  }
  void position_of_marker_set(std::int32_t marker, std::string position) {
    position_of_marker_[static_cast<std::size_t>(marker)] = std::move(position);
  }
  std::int32_t n_clones_with_markers_get() const { return clones_with_markers_.n_members_in_list_get(); }

  // 0 for a clone without markers.
  std::int32_t n_markers_in_clone_get(clone_number clone) const {
    return static_cast<std::int32_t>(markers_of_clone(clone).size());
  }
  void list_of_markers_in_clone_get(clone_number clone, number_list &markers) const;
  // The clone's markers, ascending once `finish_of_adding` ran; empty for a clone without.
  std::span<const std::int32_t> markers_of_clone(clone_number clone) const {
    return markers_of_clone_.set_get(clones_with_markers_.element_adress_in_list_get(clone));
  }
  // The clones that bear a marker, in the order in which they were added. A clone that was added again counts with its
  // last set only.
  number_list list_of_clones_of_marker_get(std::int32_t marker) const;

  // Empties everything. `n_clones`: clones of the database; the other two are the room expected, and only a hint.
  void redim_private_arrays(std::int32_t n_clones, std::int32_t n_markers_max, std::int32_t array_length_max);
  // The number of a name, -1 when there is none; a new name is appended when `add_if_new`.
  void marker_number_for_given_marker_name(std::string_view name, std::int32_t &marker, bool add_if_new, bool &is_new);
  // Adds a clone with the markers names(1..n), each once; new names are numbered in the order of their first
  // appearance, and `is_new`(1..n) tells which were. A clone that is added again gets a new set in place of its old
  // one. A clone that the database doesn't have is refused. After the last one: `finish_of_adding`.
  void add_clone_with_markers_new(process_frame &frame, clone_number clone, const std::vector<std::string> &names,
                                  std::int32_t n, number_list &numbers, std::vector<bool> &is_new);
  // Sorts each clone's markers, and makes the lists of clones of each marker.
  void finish_of_adding();

  // A merge of two short ascending lists; 0 when one of the clones has no markers.
  void number_of_common_markers(clone_number clone_1, clone_number clone_2, std::int32_t &n_common) const;

  // The markers of all clones of list(1..n), in the order in which they are met first.
  void create_list_of_markers_for_list_of_clones(const number_list &list, std::int32_t n, number_list &markers) const;
  // A flag for each member of `markers` (1..count): does the clone bear it? A marker of the clone that is missing from
  // the list is reported in a message.
  void create_marker_presence_for_clone_and_list_of_markers(process_frame &frame, clone_number clone,
                                                            const number_list &markers,
                                                            std::vector<bool> &present) const;
  // One row a clone: its name, then for each marker of the union a tab, and the marker's name if the clone bears it.
  // An empty file name: Consec_markers_CAPTION.txt of the working folder.
  void print_marker_presence_for_list_of_clones(process_frame &frame, const class_DB_of_clones &database,
                                                const number_list &list, std::int32_t n, std::filesystem::path file,
                                                const std::string &caption) const;
  // Distinct positions of the markers of the list's clones: positions(1..n).
  void create_list_of_marker_position_for_list_of_clones(const number_list &list, std::vector<std::string> &positions,
                                                         std::int32_t &n) const;
  // "Zones of markers:", then a tab and the position for each that is not empty.
  void string_of_zones(const number_list &list, std::string &text) const;

  // The same against an array of marker names 1..n that the caller keeps.
  void create_marker_presence_in_list_of_marker_names(process_frame &frame, clone_number clone,
                                                      const std::vector<std::string> &names, std::int32_t n,
                                                      std::vector<bool> &present) const;
  // Appends the names of the clone's markers that are not in names(1..n) yet.
  void update_array_marker_name_by_markers_presented_in_clone(clone_number clone, std::vector<std::string> &names,
                                                              std::int32_t &n) const;

  // ---- text forms ----------------------------------------------------------------------------------------------

  // One line a clone: its name, and its markers. `one_column`: the markers stand in one field, with commas between
  // them; otherwise each has a field of its own, up to 19 of them; null asks. Names end at the first empty one. Blanks
  // around names don't count; a clone without markers is passed over; a clone that stands on several lines keeps the
  // markers of the last. With `create_new` the file replaces what is loaded, and the native form is saved; without it
  // the file is only compared with what is loaded.
  bool file_with_list_of_markers_for_each_clone_read(process_frame &frame, class_DB_of_clones &database,
                                                     bool create_new, std::filesystem::path file = {},
                                                     const bool *one_column = nullptr,
                                                     marker_read_summary *summary = nullptr);
  // One line a marker: its name, its clones (as list_of_clones_in_line_get takes them), its position. Every clone of
  // the database gets a place in the list of clones with markers.
  bool file_with_list_of_clones_for_each_marker_read(process_frame &frame, class_DB_of_clones &database,
                                                     std::filesystem::path file = {},
                                                     marker_read_summary *summary = nullptr);
  // One line a marker: its name and its position, for the markers that are loaded and have none. Saves the native form.
  bool read_file_with_marker_position(process_frame &frame, const class_DB_of_clones &database,
                                      std::filesystem::path file = {});
  // Any of the forms, told apart by what stands in the file, without a question:
  // - the native form by its first line; it is refused where its counts don't fit, see below;
  // - otherwise by the column that holds known names of clones. The first column holds them on at least as many lines
  //   as the second: markers for each clone; those are in one column unless a line has a third field. Names of clones
  //   in the second column on more lines: clones for each marker. In neither: the file is refused.
  // The form taken is told in `form` and in the log.
  bool read_markers_of_any_text_form(process_frame &frame, class_DB_of_clones &database,
                                     const std::filesystem::path &file, marker_file_form &form,
                                     marker_read_summary *summary = nullptr);
  // One row for each clone with markers: its name, tab, its markers with commas between them; the first form above. An
  // empty file name: clones_with_markers.txt of the working folder.
  void file_with_list_of_markers_for_each_clone_save(process_frame &frame, const class_DB_of_clones &database,
                                                     std::filesystem::path file = {}) const;

  // ---- native form ---------------------------------------------------------------------------------------------

  // Counts, places and members one a line. An empty file name: new_markers_in_clones.ORB of the working folder.
  void file_about_markers_ORB_format_save(process_frame &frame, const class_DB_of_clones &database,
                                          std::filesystem::path file = {}) const;
  // Takes, deliberately, one marker number more for each clone than the saving operation writes, so that a file written
  // by it is refused, unless no clone has markers; so is any other whose numbers end early or go on behind the last
  // clone. A count of clones other than the database's ends the program.
  bool run_file_about_markers_ORB_format_load(process_frame &frame, const class_DB_of_clones &database,
                                              std::filesystem::path file = {});

private:
  friend class native_marker_reader;
  friend class marker_clones_reader;
  void marker_presence(process_frame &frame, clone_number clone, const number_list &markers,
                       const position_table &place_of_marker, std::vector<bool> &present) const;
  class_ListOfElements clones_with_markers_;        // clone <-> place in the list of clones with markers
  class_ListOfSets clones_of_marker_;               // set m: the places of the clones that bear marker m
  std::vector<std::string> name_of_marker_{{}};     // from 1, in the order of first appearance
  std::vector<std::string> position_of_marker_{{}}; // from 1
  class_ListOfSets markers_of_clone_;               // set k: the markers of the k-th clone with markers
  std::unordered_map<std::string, std::int32_t> marker_of_name_;
};

} // namespace orb
