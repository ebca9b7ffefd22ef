// Lists of clones: reading them from text files, looking them up, combining, printing, and tables of pairs over them.
//
// Operations that take a file ask for it when its name is empty, and return false when that was cancelled. A list or
// an array that an operation fills is changed only when it returns true. Files that can't be opened or written throw
// file_error; no operation changes the database, but for the sorting of its names when they aren't sorted yet.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "database/class_DB_of_clones.h"
#include "frame/lists.h"
#include "frame/process_frame.h"
#include "frame/settings.h"
#include "graph/class_net.h"
#include "metrics/metric_context.h"
#include "metrics/overlap_rule.h"

namespace orb {

// Which pairs a table of all pairs shows; `ask` puts the question "From the net only?".
enum class pairs_of_table { ask, all, from_net_only };

class class_list_of_clones {
public:
  class_list_of_clones(process_frame &frame, const project_settings &settings) : frame_(frame), settings_(settings) {}

  // ---- reading -------------------------------------------------------------------------------------------------

  // Names only, separated by line ends, commas or blanks, through the name formats. A file that is no text is refused.
  // `lines_of_names`, when given, gets the line of each name, from 1 as the names.
  bool reading_file_with_list_of_clones(std::filesystem::path file, std::vector<std::string> &names,
                                        std::int32_t &count, std::string &pure_name,
                                        std::vector<std::int64_t> *lines_of_names = nullptr);
  // Names and their clone numbers, in the order of the file; an unknown name asks whether to stop the program,
  // and is a doubt about the input.
  bool run_reading_file_with_list_of_clones(std::filesystem::path file, number_list &list, std::string &pure_name,
                                            class_DB_of_clones &database);
  // All clones of each name. Unknown names are told at the end, by their number.
  bool run_reading_file_with_list_of_clones_rep(std::filesystem::path file, number_list &list, std::int32_t &count,
                                                class_DB_of_clones &database);

  // ---- files from lists ----------------------------------------------------------------------------------------

  void print_list_of_clones(const number_list &list, const std::filesystem::path &file,
                            const class_DB_of_clones &database) const;
  // Reads names and writes them again, one a line, in the output format. An empty `result`: new_NAME.txt of the
  // working folder.
  bool transform_list_of_clones(std::filesystem::path file = {}, std::filesystem::path result = {});
  // Reads a list, then copies its clones from a fingerprint file.
  bool select_clones_from_database(class_DB_of_clones &database, const std::filesystem::path &file_with_list = {},
                                   const std::filesystem::path &file_with_bands = {},
                                   const std::filesystem::path &result = {});
  // Copies the records of clones list(1..n) from a file of fingerprint records, or a folder of .sizes files, line by
  // line as they are, leaving out each band whose frequency among the clones of the database is above a cutoff, which
  // is asked for when it is empty (1.00: all stay). An empty `result`: selected_clones_NAME.txt of the working folder.
  // One pass over the file, whatever its size. False also after a stop request; no file is left then.
  bool create_file_with_clons_with_list_of_bands(const number_list &list, std::int32_t n,
                                                 const class_DB_of_clones &database, std::filesystem::path file = {},
                                                 std::filesystem::path result = {},
                                                 std::string frequency_cutoff_text = {});

  // ---- lists as sets -------------------------------------------------------------------------------------------

  // Ascending by clone number, without repeats. n log n.
  void sort_list_of_clones_and_delete_repeats(number_list &list) const;
  // Of two ascending lists; the result may be one of them.
  static void intersection_list1_list2_long(const number_list &list_1, const number_list &list_2, number_list &common);
  // Of any two lists: ascending, without repeats.
  static void find_intersection_of_contigs(const number_list &list_1, const number_list &list_2, number_list &result);
  static void find_ctg1_minus_ctg2(const number_list &list_1, const number_list &list_2, number_list &result);
  static void find_ctg1_plus_ctg2(const number_list &list_1, const number_list &list_2, number_list &result);
  // The same from two files into a third one; an empty `result`: intersection_, minus_ or plus_ NAME1_NAME2.txt of the
  // working folder.
  bool find_intersection_of_contigs(class_DB_of_clones &database, const std::filesystem::path &file_1 = {},
                                    const std::filesystem::path &file_2 = {}, std::filesystem::path result = {});
  bool find_ctg1_minus_ctg2(class_DB_of_clones &database, const std::filesystem::path &file_1 = {},
                            const std::filesystem::path &file_2 = {}, std::filesystem::path result = {});
  bool find_ctg1_plus_ctg2(class_DB_of_clones &database, const std::filesystem::path &file_1 = {},
                           const std::filesystem::path &file_2 = {}, std::filesystem::path result = {});

  // ---- tables of pairs -----------------------------------------------------------------------------------------
  // They ask nothing (but for `pairs_of_table::ask`), so that a run may call them for each contig; the columns are
  // those of class_clone_text_distance with the project's format and the rule's metric and cutoff. With markers on in
  // the settings a last line holds the zones of the list's markers. After a stop request they return false and leave no
  // file, nor is a former one touched. One thread at a time.

  // A row for each of list(1..n) with its scores against the clone before it. gaps(j) counts the steps that are weak by
  // metric j, for j from 0 to the highest metric index + 1; it is filled with `print` off as well, and then no file is
  // written. An empty file name: Consec_dist_WORD.txt of the working folder.
  bool print_consecuent_dist(std::int32_t n, const number_list &list, const std::string &file_word,
                             std::filesystem::path file, std::vector<std::int32_t> &gaps, bool print,
                             const overlap_rule &rule, const metric_context &context);
  // A row for each pair i < j of the list; n^2 / 2 rows. From the net only: the pairs that the net holds, in the same
  // order; `net` may be null, and then no pair is in it. An empty file name: All_dist_WORD.txt of the working folder.
  bool print_all_dist(const number_list &list, const std::string &file_word, std::filesystem::path file,
                      const overlap_rule &rule, const metric_context &context, const class_net *net,
                      pairs_of_table pairs = pairs_of_table::ask);

private:
  using set_operation = void (*)(const number_list &, const number_list &, number_list &);
  bool lists_of_two_files(class_DB_of_clones &database, std::filesystem::path file_1, std::filesystem::path file_2,
                          std::filesystem::path result, const std::string &file_start, set_operation operation);

  process_frame &frame_;
  const project_settings &settings_;
};

} // namespace orb
