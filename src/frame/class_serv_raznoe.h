// Text, file and list services that every reader and writer calls by name.
//
// Arrays of strings that are sorted or searched are numbered from 1: element 0 of the vector is unused. The fields that
// a cut gives stand from 0.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "frame/lists.h"

namespace orb {

class process_frame;
class line_reader;

class class_serv_raznoe {
public:
  // ---- reading lines -------------------------------------------------------------------------------------------

  // The next line, whatever its end; false, and an empty line, at the end of the file.
  static bool input_my_asc10(line_reader &file, std::string &line);
  // One line input; an empty line at the end of the file.
  static void input_my_asc10_nenado(line_reader &file, std::string &line);
  // Flag off: `input_my_asc10`; on: one line input. Both take every line end.
  static bool ReadLine(line_reader &file, bool flag, std::string &line);
  // Do the first 100 characters of the file hold a CR LF? Throws file_error.
  static bool IsAscii13(const std::filesystem::path &path);
  // Reads up to `count` characters and counts line ends and decimal signs. Results: readable; the decimal sign is the
  // point (also when there is no fraction at all); most lines end in CR LF. Both signs: message, not readable.
  static void read_first_symbols_of_file_and_detect_type(process_frame &frame, std::int64_t count,
                                                         const std::filesystem::path &file, bool &readable, bool &point,
                                                         bool &crlf);

  // ---- cutting texts -------------------------------------------------------------------------------------------

  // What follows the first `marker`, up to the next one or the end; empty without a marker. With a double quote as
  // the marker this is the quoted text.
  static std::string take_text(std::string_view text, std::string_view marker);
  // Up to the first blank, tab, CR or LF; the whole text when it has none. A text that starts with one of them shows
  // "Strig start from empty!" and gives an empty token.
  static std::string take_text_from_begin(process_frame &frame, std::string_view text);
  // Splits at tabs, n tabs giving n + 1 fields. With a count of at least 0 the cut stops after so many fields.
  // Returns the number of fields; `fields` has exactly so many.
  static std::int32_t cut_string(std::string_view text, std::vector<std::string> &fields, std::int32_t count = -1);
  // The same without copies: the views point into `text`. Allocates only while `fields` grows.
  static std::int32_t cut_string_views(std::string_view text, std::vector<std::string_view> &fields,
                                       std::int32_t count = -1);
  // The same for who keeps no array: all fields of a line.
  static std::vector<std::string_view> fields_of(std::string_view line);
  // Splits at each blank. `complete`: all of the text was cut; false when there are more fields than `count`.
  static std::int32_t cut_string_spaces(std::string_view text, std::vector<std::string> &fields, std::int32_t count,
                                        bool &complete);
  // Splits at runs of blanks, so that no field is empty; a blank inside double quotes doesn't split.
  static std::int32_t cut_string_spaces_several_no_emty(std::string_view text, std::vector<std::string> &fields,
                                                        std::int32_t count, bool &complete);
  // Splits at a separator of any length (an empty one doesn't split). Too many fields for a count of at least 0: a
  // message with the counts and the text.
  static std::int32_t cut_string_general(process_frame &frame, std::string_view text, std::vector<std::string> &fields,
                                         std::string_view separator, std::int32_t count, bool &complete);
  // `quoted`: at least 2 characters, the first and the last a double quote. Returns the text without quotes when
  // `quoted` and at least 3 characters long, else an empty text.
  static std::string antikovichki(std::string_view text, bool &quoted);

  // ---- plain text helpers --------------------------------------------------------------------------------------

  // The number of the first string of the array (from 1) that equals `text`; -1 when none does.
  static std::int32_t find_text(std::string_view text, const std::vector<std::string> &list);
  // Every `what` replaced; an empty `what` changes nothing.
  static std::string replace_text(std::string_view text, std::string_view what, std::string_view with);
  static std::string text_transform_to_lower_case(std::string_view text); // A to Z only
  static std::string string_with_letters_and_numbers_only_get(std::string_view text);
  // Leading zeros up to a width; a number that is longer stays whole.
  static std::string string_with_added_zeros(std::int64_t number, std::int32_t width);
  // Range tests of input fields: is the text a number between the limits? `value` is set only then.
  static bool test_value_double(std::string_view text, double minimum, double maximum, double &value);
  static bool test_value_long(std::string_view text, std::int32_t minimum, std::int32_t maximum, std::int32_t &value);
  // Input boxes with limits: the prompt is `text` with " (min=..., max=...)" behind it. An empty, non-numeric or
  // out-of-range answer is refused: the old value comes back.
  static std::int16_t parameter_get_fromInputBox_Integer(process_frame &frame, const std::string &text,
                                                         const std::string &title, std::int16_t old_value,
                                                         std::int16_t minimum, std::int16_t maximum);
  static std::int32_t parameter_get_fromInputBox_Long(process_frame &frame, const std::string &text,
                                                      const std::string &title, std::int32_t old_value,
                                                      std::int32_t minimum, std::int32_t maximum);
  static double parameter_get_fromInputBox_Double(process_frame &frame, const std::string &text,
                                                  const std::string &title, double old_value, double minimum,
                                                  double maximum);
  // "YYYY-MM-dd_HH-mm-ss" of the frame's clock, for file names.
  static std::string date_and_time_string(const process_frame &frame);

  // ---- sorting and searching arrays of strings -----------------------------------------------------------------

  // Sorts list(first..last) ascending by bytes and carries index(first..last) along, so that index(i) tells where
  // string i came from; `fill_index` first fills the index of the range with the positions. Equal strings keep their
  // order, so that results are the same everywhere. The index is made long enough. n log n.
  static void quicksort_string(std::vector<std::string> &list, std::vector<std::int32_t> &index, std::int32_t first,
                               std::int32_t last, bool fill_index);
  // Binary search by bytes on an ascending part of a list. A hit: `found`, and `position` is its place. A miss:
  // first - 1 below the part, last above it, otherwise the place behind which the key belongs. An empty part
  // (last < first) gives first - 1.
  static void finnd_in_partially_ordered_list_string(std::string_view key, const std::vector<std::string> &list,
                                                     bool &found, std::int32_t &position, std::int32_t first,
                                                     std::int32_t last);
  // Linear search; an absent value is added at the end when `add` is set, and `position` is then its place.
  // Otherwise the position of an absent value is -1.
  static void find_number_long(std::int32_t value, number_list &list, bool &not_found, bool add,
                               std::int32_t &position);

  // Set operations on ascending arrays of strings without repeats (numbered from 1).
  static void array_string_1_minus_2(const std::vector<std::string> &list_1, const std::vector<std::string> &list_2,
                                     std::vector<std::string> &result);
  static void array_string_1_and_2(const std::vector<std::string> &list_1, const std::vector<std::string> &list_2,
                                   std::vector<std::string> &result);
  // The lines that two files have in common, sorted, without repeats, as a third file.
  static void array_string_1_and_2_run(const std::filesystem::path &file_1, const std::filesystem::path &file_2,
                                       const std::filesystem::path &result);
  // The lines of a file, sorted, without repeats, as another file.
  static void array_string_sort_run(const std::filesystem::path &file, const std::filesystem::path &result);
  // Line files to string arrays (numbered from 1) and back. Throw file_error.
  static void read_array_string_from_file(const std::filesystem::path &file, std::vector<std::string> &list);
  static void array_string_print_to_file(const std::filesystem::path &file, const std::vector<std::string> &list);

  // ---- files and folders ---------------------------------------------------------------------------------------

  // The folder of a file name with its separator; empty without one. "/" and "\" both separate.
  static std::string path_of_file(std::string_view file);
  // The file name without folder and extension.
  static std::string extract_pure_file_name(std::string_view file);
  // The same, with the extension (without its point) split off into a result of its own.
  static std::string extract_pure_file_name_new(std::string_view file, std::string &extension);
  // Names (without folder) of the files of a folder with an extension, compared without case; an empty extension
  // takes all files. Hidden files (a leading point) are left out. Throws file_error when the folder can't be listed.
  static std::vector<std::string> ListOfFilesInFolder(const std::filesystem::path &folder, std::string_view extension);
  // The same in byte order of the names.
  static std::vector<std::string> create_ordered_list_of_files_in_folder(const std::filesystem::path &folder,
                                                                         std::string_view extension);
  // Creates a folder under the working folder and makes it the working folder; returns the former one, which
  // `finish_of_work_with_folder` restores.
  static std::filesystem::path create_folder_and_make_it_current(process_frame &frame, std::string_view name);
  static void finish_of_work_with_folder(process_frame &frame, const std::filesystem::path &former_folder);
  // Joins the files of a folder in byte order of their names into one file "NAME_merged.txt" beside the folder and
  // returns its path. The name speaks of sorting and of repeats for historical reasons: parts of a text net are
  // joined whole and in order. A part that lacks its last line end gets one. Empty, and no file, after a stop request.
  static std::filesystem::path merge_files_of_folder_sort_del_rep_run(process_frame &frame,
                                                                      const std::filesystem::path &folder,
                                                                      std::string_view extension = "txt");
};

} // namespace orb
