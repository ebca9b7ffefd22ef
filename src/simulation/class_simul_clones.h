// A library of clones drawn from a real sequence, so that the whole road can be tested on clones whose places are
// known: clones of realistic length, some of them chimeric, cut and read by the band model.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "frame/files.h"
#include "frame/lists.h"
#include "frame/process_frame.h"
#include "simulation/class_Simul_CutEnzyme.h"
#include "simulation/folder_of_contigs_test.h"
#include "simulation/simul_clone.h"

namespace orb {

// How clones are drawn.
struct clone_draw {
  double mean_length = 126500;     // base pairs
  double length_deviation = 44000; // standard deviation
  double chimera_chance = 0.1;     // of each further part
  std::int32_t max_parts = 4;
  double coverage = 15;                         // of the sequence by clones
  std::optional<std::int32_t> n_clones;         // unset: by the coverage
  bool ask_number_of_clones = true;             // where it is unset
  std::int32_t min_bands = 50, max_bands = 250; // a usable clone has so many
  std::int32_t longest_gap = 10000; // a longer run of unknown letters ends clones as a chromosome's end does
  std::uint64_t seed = 1;
  int threads = 0; // 0: all
};

class class_simul_clones {
public:
  // `bands`: the digest by the enzymes of the fingerprint; must outlive this object.
  class_simul_clones(process_frame &frame, class_Simul_CutEnzyme &bands, clone_draw draw = {});

  class_Simul_CutEnzyme &cut_clone_ends() { return cut_clone_ends_; }
  bool is_sequence_read() const { return is_sequence_read_; }
  const placed_clones &clones() const { return placed_; }
  std::int32_t n_clones() const { return static_cast<std::int32_t>(placed_.clones.size()); }
  // Length of the stretches that clones can come from: the sequence without its long gaps.
  std::int64_t clonable_length() const { return clonable_length_; }

  // Reads the sequence (an empty path asks for it) twice: once with the enzymes of the bands, once with that of the
  // clone ends. Once read it stays, and a message says so. False: cancelled, refused (the message was shown), stopped,
  // or without a site for clone ends to choose from. Throws file_error.
  bool start_Simul_CutEnzyme_CloneEnds_run_if_needed(std::filesystem::path sequence = {});

  // Draws the clones, counts their bands, writes all_clones.txt and statistics_all_clones.txt. Clone i's readings come
  // from a generator of the seed and i, so that the result is the same for any number of threads. False when stopped.
  bool create_clones();

  // Writes the fingerprints of the clones of the list (numbers from 1) into DataBase_Simul.txt, as many of them as are
  // kept, and the table of the list into clones.txt. `filter`: only clones of min_bands to max_bands bands, counted as
  // read with errors when `use_observed`, else without. `update_obs`: n_bands_obs takes the count printed.
  bool print_list_of_clones_with_bands(const number_list &list, bool update_obs, bool filter, bool use_observed,
                                       number_list &kept);
  // One record: name, number of bands and "Gel" (left out without names), the bands, -1. Bands with errors, ascending.
  void print_clone_with_bands(clone_number clone, std::vector<double> &bands, std::int32_t &n, result_file &file,
                              bool with_names) const;
  // Asks how to filter (an answer given here isn't asked for), prints all clones, and writes selected_clones.txt,
  // statistics_selected_clones.txt, clone_bin_coverage.txt and truth.tsv. False when stopped.
  bool print_list_of_clones_with_bands_run(std::optional<bool> filter, std::optional<bool> use_observed,
                                           number_list &kept);

  // Reads a table of clones as clones.txt is one (an empty path asks): its clones replace those here. False with a
  // message (file and line) when it is damaged; the clones stay as they were. Throws file_error.
  bool file_clones_with_parts_read_run(std::filesystem::path file = {});

  // Sets the contigs of a run against these clones; see folder_of_contigs_test.h.
  bool test_folder_of_contigs(const std::filesystem::path &folder, const std::vector<std::string> &Q_clones) const {
    return orb::test_folder_of_contigs(frame_, folder, placed_, Q_clones);
  }

  // Files of a list, in the working folder or under a full path.
  void print_table_of_clones(const number_list &list, const std::string &name) const;
  void print_statistics_of_clones(const number_list &list, const std::string &name) const;
  void print_bin_coverage(const number_list &list, const std::string &name) const;
  // The true places: clone, part, chromosome, start, end.
  void print_true_positions(const number_list &list, const std::string &name) const;

private:
  // Bins between ends of clones with no long gap among them.
  struct stretch {
    std::int32_t chromosome = 0; // from 1
    std::int32_t first_end = 0;  // its bins lie between first_end and first_end + n_bins of the chromosome's ends
    std::int32_t n_bins = 0;
    std::int64_t bins_before = 0; // in the stretches before it
  };
  struct reading;        // of one clone
  struct printed_record; // of one clone

  // the ends that clones can have (simul_sequence.cpp)
  void find_stretches();
  void ends_of_chromosome(const cut_list &cuts, std::vector<std::int32_t> &ends, std::vector<std::uint8_t> &gap) const;
  bool chromosomes_are_known();

  // drawing (simul_creation.cpp)
  void show_summary() const;
  std::int32_t number_of_clones_asked() const;
  void draw_clone(std::int32_t number, random_source &chance, simul_clone &clone) const;
  clone_part draw_part(random_source &chance) const;
  void read_bands(clone_number clone, bool no_errors, reading &work) const;
  void make_record(clone_number clone, reading &work, printed_record &made) const;
  bool count_bands_of_all();
  double mean_bin_length() const;
  double mean_real_band_length() const;

  process_frame &frame_;
  class_Simul_CutEnzyme &bands_;
  class_Simul_CutEnzyme cut_clone_ends_;
  clone_draw draw_;
  placed_clones placed_;
  bool is_sequence_read_ = false;
  std::vector<std::vector<std::int32_t>>
      ends_; // of clones, by chromosome (from 0): positions, 0 and the end among them
  std::vector<stretch> stretches_;
  std::int64_t n_bins_ = 0, clonable_length_ = 0;
  std::vector<band_reading_sums> sums_; // of the readings with errors, by clone (from 0)
};

// Reads a table of clones as class_simul_clones writes it. Its chromosomes are those of its "chromosome" columns, or
// one named "sequence". False with a message; `placed` stays as it was then. Throws file_error.
bool read_table_of_clones(process_frame &frame, const std::filesystem::path &file, placed_clones &placed);

} // namespace orb
