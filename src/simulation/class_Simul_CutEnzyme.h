// Turns DNA sequence into the band lists that a fingerprinting machine would report: a digest by one cutter without a
// label and four labelled ones, each label with its own window on the gel axis (high information content
// fingerprinting; Luo et al. 2003, Genomics 82:378).
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "frame/process_frame.h"
#include "frame/random_source.h"
#include "simulation/cut_list.h"

namespace orb {

struct enzyme_rec {
  std::string name;
  std::string site;                       // recognition sequence
  std::vector<std::int16_t> letter_index; // `site` as letter numbers; element 0 is unused
  std::int32_t site_length = 0;
  std::int32_t cut_after = 0; // letters from the start of the site to the cut
  std::string color;          // "No": no label
  std::int32_t term = 0;      // offset of the colour's window, in gel units
};

class class_Simul_CutEnzyme {
public:
  static constexpr double share_of_small_errors = 0.9; // of readings; the others may err by three times as much

  // Starts with the five enzymes of a four-colour digest: HaeIII, EcoRI, BamHI, XbaI, XhoI.
  explicit class_Simul_CutEnzyme(process_frame &frame);

  // ---- letters and parameters ----------------------------------------------------------------------------------

  // 1 A, 2 C, 3 G, 4 T in either case, 0 anything else.
  static std::int16_t LetterIndex_get(char letter);
  // The letter numbers of a text; element 0 is unused.
  static void LetterIndexes_get(std::string_view text, std::vector<std::int16_t> &letters);

  const std::vector<enzyme_rec> &enzyme_list() const { return enzyme_list_; } // element 0 is unused
  std::int32_t n_enzymes() const { return static_cast<std::int32_t>(enzyme_list_.size()) - 1; }
  // Replaces the list by HindIII alone, without a label: on its sites clone ends fall.
  void start_for_cut_genome_into_clones();
  // Replaces the list by HindIII, all of whose fragments are seen once by a stain, where they came to a stop on an
  // agarose gel. Bands are then positions from 0, of the longest fragment seen, to `length_of_agarose`, of the
  // shortest, and they are misread by gel units; scale and shift don't count.
  void start_for_agarose();
  bool is_on_agarose() const { return is_on_agarose_; }
  static constexpr double length_of_agarose = 3300;
  // Another site in its place, of letters A, C, G, T, cut behind its first letter. False for anything else.
  bool clone_end_site_set(const std::string &name, const std::string &site);

  // Base pairs; on agarose gel units.
  double max_error_in_band_size_scoring_get() const { return max_error_in_band_size_scoring_; }
  void max_error_in_band_size_scoring_set(double error) { max_error_in_band_size_scoring_ = error; }
  double probability_to_miss_band_get() const { return probability_to_miss_band_; }
  void probability_to_miss_band_set(double probability) { probability_to_miss_band_ = probability; }
  double min_band_length_get() const { return min_band_length_; } // base pairs
  void min_band_length_set(double length) { min_band_length_ = length; }
  double max_band_length_get() const { return max_band_length_; } // base pairs
  void max_band_length_set(double length);                        // and the bound of the tables
  std::int32_t max_band_table_get() const { return max_band_table_; }
  double scale_get() const { return scale_; } // gel units a base pair
  void scale_set(double scale) { scale_ = scale; }
  double merge_distance_get() const { return merge_distance_; } // gel units
  void merge_distance_set(double distance) { merge_distance_ = distance; }
  // Moves the windows of the colours, 15000 gel units apart at first, to another distance.
  void shift_of_scaled_bands_set(std::int32_t shift);
  std::int32_t shift_of_scaled_bands_get() const { return shift_; }

  // Asks for tolerance, shift, order of the enzymes, scale and band window. `ok` false: an entry was no number above 0,
  // which was shown; what came before it is changed. Declining both questions of the order ends the program.
  void update_parameters_of_scalaling(bool &ok);

  // ---- finding cuts --------------------------------------------------------------------------------------------

  // Positions and enzymes of the cuts, n of them behind entry 0. With breaks the ends get enzyme 0 and each letter "N"
  // or "," a break of its own. This one compares texts as they are, case and all, and knows sites of 6 letters for the
  // enzymes from 2 and of 4 letters for enzyme 1 only.
  void cut_band_after_letter_and_enz_from_s(std::string_view sequence, std::vector<std::int32_t> &position,
                                            std::vector<std::int32_t> &enzyme, std::int32_t &n, bool with_breaks) const;
  // On letters(from..to), element 0 unused, with sites of any length; of the enzymes whose sites begin at a letter the
  // first in the list cuts. A letter of 0 is a break. Positions count from the first letter of the array.
  void cut_band_after_letter_and_enz_from_LetterIndexes(const std::vector<std::int16_t> &letters, std::int32_t from,
                                                        std::int32_t to, std::vector<std::int32_t> &position,
                                                        std::vector<std::int32_t> &enzyme, std::int32_t &n,
                                                        bool with_breaks) const;
  // Reads a file, plain or gzip by its content, and keeps the cuts of each record; memory is bounded by the cuts. A
  // line that begins with ">" begins a record named by its first word; letters may be of either case; N and the other
  // letters for more than one base break (only with `with_breaks`). About 5 ns a letter; yields and polls at each
  // megabyte. False with a message when the file is empty, holds anything else than DNA (file and line are named), or
  // the user stopped: what was read before stays then. Throws file_error.
  bool read_sequence_and_create_real_band_map(const std::filesystem::path &file, bool with_breaks);

  const std::vector<digested_chromosome> &chromosomes() const { return chromosomes_; }
  std::int32_t n_cuts_get() const { return n_cuts_; } // of all chromosomes: entries behind the first
  std::int64_t sequence_length_get() const { return sequence_length_; }
  // The position of cut i (0 the start) of a chromosome (from 1).
  std::int32_t cut_after_letter_get(std::int32_t chromosome, std::int32_t i) const {
    return chromosomes_[static_cast<std::size_t>(chromosome) - 1].cuts.position[static_cast<std::size_t>(i)];
  }
  const std::filesystem::path &file_with_sequence_name_get() const { return file_with_sequence_name_; }

  // ---- bands ---------------------------------------------------------------------------------------------------

  // Adds the bands between neighbouring cuts to a table that was started. `exclude_clustered` leaves out the first and
  // the last band and those beside a band of at most 6 letters.
  void create_band_presented_times(const cut_list &cuts, bool exclude_clustered, band_table &table) const;
  void start_table(band_table &table, bool with_both_ends) const {
    table.start(max_band_table_, n_enzymes(), with_both_ends);
  }
  // The bands that are seen, in gel units and any order: without errors, or each lost or misread by chance. At most
  // 10000; the rest isn't there.
  void cutSingleSeqByEnzymes_and_createListOfBands_run(const band_table &table, bool no_errors, random_source &chance,
                                                       std::vector<double> &bands, band_reading_sums &sums) const;
  // Ascending; bands within the merge distance of the last kept one are dropped.
  void sort_bands_and_exclude_repeats_based_on_tolerance(std::vector<double> &bands, band_reading_sums &sums) const;
  // Both steps: the band list of a table.
  void transform_band_presented_times_to_list_of_bands_dbl(const band_table &table, bool no_errors,
                                                           random_source &chance, std::vector<double> &bands,
                                                           band_reading_sums &sums) const;
  // The band list of a text; its ends are ends of bands.
  void cutSingleSeqByEnzymes_and_createListOfBands(std::string_view sequence, bool no_errors, random_source &chance,
                                                   std::vector<double> &bands) const;
  // A band list for each of several texts.
  void cutArrayOfSeqByEnzymes_and_createListOfBands2D(const std::vector<std::string> &sequences, bool no_errors,
                                                      random_source &chance,
                                                      std::vector<std::vector<double>> &bands) const;
  // The cuts of a chromosome (from 1) within [start, end), whose ends become ends of bands (enzyme 1).
  void cuts_of_part(std::int32_t chromosome, std::int32_t start, std::int32_t end, cut_list &cuts) const;
  // The one band list of several parts on one gel lane: their bands go into one table, and close ones merge.
  void list_of_bands_for_several_parts(const std::vector<cut_list> &parts, bool no_errors, random_source &chance,
                                       std::vector<double> &bands, band_reading_sums &sums) const;
  // Counts over the cuts first..last; a run of unknown letters is no band.
  band_counts calculate_real_number_of_bands(const cut_list &cuts, std::int32_t first, std::int32_t last) const;
  // Counts for each enzyme (element 0 unused) as if only it and enzyme 1 had cut.
  std::vector<band_counts> calculate_real_number_of_bands_NONRIGHT(const cut_list &cuts, std::int32_t first,
                                                                   std::int32_t last) const;
  // The chance that two readings of one band differ by less than the tolerance, where a reading errs evenly within
  // +-length with chance p and within +-3 length otherwise; 1 for a length that isn't above 0.
  static void probability_diff_obs_less_tolerance_get(double length, double tolerance, double p, double &probability);

  // ---- files in the working folder -----------------------------------------------------------------------------

  // "my_bands.txt": the fingerprint of a text, read with errors.
  void cut_sequence_by_enzymes_test(std::string_view sequence, random_source &chance) const;
  // "enz_NAME_statistics.txt" for each enzyme: lengths of its bands by the enzyme of the other end, and the parts of
  // the sequence of a chosen length (base pairs) with the enzyme's cuts in them.
  void print_seq_statistics(std::int32_t length_of_part) const;

private:
  void add_enzyme(const char *name, const char *site, std::int32_t cut_after, const char *color, std::int32_t term);
  void ask_order_of_enzymes();
  // A fragment's place on agarose: among those that a gel sets apart the way is about inverse to the size.
  double position_on_agarose(double length) const;

  process_frame &frame_;
  std::vector<enzyme_rec> enzyme_list_;
  bool is_on_agarose_ = false;
  double min_band_length_ = 50, max_band_length_ = 500; // shorter and longer bands aren't observed
  std::int32_t max_band_table_ = 600;                   // above the longest observable size
  double scale_ = 30;
  double max_error_in_band_size_scoring_ = 0.2; // half of the tolerance
  double probability_to_miss_band_ = 0;
  double merge_distance_ = 12; // closer bands show as one
  std::int32_t shift_ = 15000;
  std::int32_t n_cuts_ = 0;
  std::int64_t sequence_length_ = 0;
  std::vector<digested_chromosome> chromosomes_;
  std::filesystem::path file_with_sequence_name_;
};

} // namespace orb
