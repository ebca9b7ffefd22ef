// The scheme of a pooled clone library: each clone lies in one well, and so in one plate pool, one row pool and one
// column pool. Which pools a clone is in, which clones a well has, and how well a set of clones explains positive
// pools.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "database/class_DB_of_clones.h"
#include "frame/lists.h"
#include "frame/process_frame.h"
#include "frame/settings.h"
#include "pools/positive_pools.h"

namespace orb {

// What a file of the recoding stands for.
struct pools_wishes {
  std::string prefix = "TaaCsp1BS"; // of the names of clones
  pool_sizes sizes = standard_pool_sizes;
};

class class_pools3D {
public:
  // Chances of a pool: 0.3 that a clone in it fails to show, 0.1 that it turns positive by a clone outside of it.
  static constexpr double standard_error_rate_1 = 0.3, standard_error_rate_2 = 0.1;

  bool is_loaded() const { return n_coded_clones_ > 0; }

  // Two lines of heads, then a line a clone: source plate, source well, anything, pool plate, pool well (letter and
  // column). Tabs separate fields where a line has some, blanks do otherwise. The clone's name is the prefix, the plate
  // in three digits, the letter and the column in two digits; a name that isn't in the database leaves its pool
  // position unfilled. An empty file asks. False, and the tables as they were, when that was cancelled, the database is
  // empty, a line can't be read or none names a clone of the database (messages). Throws file_error.
  bool read_pools_recoding(process_frame &frame, const class_DB_of_clones &database, std::filesystem::path file,
                           const pools_wishes &wishes);

  const pool_sizes &sizes() const { return sizes_; }
  std::int32_t n_coded_clones_get() const { return n_coded_clones_; }
  std::int32_t n_unknown_names_get() const { return n_unknown_names_; }
  // Each once, ascending.
  const number_list &coded_clones() const { return coded_clones_; }
  // -1: an empty well.
  clone_number clone_in_pool(std::int32_t column, std::int32_t row, std::int32_t plate) const {
    return clone_in_pool_[place_of_well({plate, row, column})];
  }
  // False when the clone is in no pool.
  bool find_clone_in_pools(clone_number clone, pool_place &place) const;
  // "P3_B12"; "no" for a clone that is in no pool.
  std::string position_of_clone_in_pools_text_get(clone_number clone) const;

  // ---- positive pools ----

  // The clone of every well in a plate, a row and a column of the lists, plate by plate; none where a list is empty or
  // unreadable.
  void create_list_of_clones_in_pool_intersections(const pool_lists &lists, number_list &clones) const;
  // Coded clones with all three pools positive, ascending.
  void create_list_of_clones_in_positive_pools(const positive_pools &positive, number_list &clones) const;
  // Which positive pools the clones cover: marks of the pools, set by those clones whose three pools all are in the
  // lists. False when a listed pool stays without mark.
  bool find_list_of_clones_in_pools(const pool_lists &lists, std::span<const clone_number> clones,
                                    positive_pools &covered) const;
  // Positive pools without a clone of the group by name, and pools with one that aren't positive in brackets, separated
  // by blanks; "all positive pools are explained" when there is neither.
  std::string text_of_unexplained_pools(std::span<const clone_number> clones, const positive_pools &positive) const;

  // ---- likelihood ----

  double pool_error_rate(int row, std::size_t dimension, std::int32_t pool) const {
    return error_rates_[static_cast<std::size_t>(row) - 1][dimension][static_cast<std::size_t>(pool)];
  }
  // Row 1: a clone in a pool fails to show; row 2: a pool turns positive by a clone outside of it.
  void pool_error_rates_set(double row_1, double row_2);
  // -ln of the probability of what was observed, if exactly these clones of the scheme were positive: a pool with c of
  // the n clones stays negative with chance row_1^c (1 - row_2)^(n - c). Lower is better. `exact`: the positive pools
  // are just those with a clone; `all_explained`: each positive pool has one.
  void putatively_positive_clones_based_on_likelyhood(std::span<const clone_number> clones,
                                                      const positive_pools &positive, double &score, bool &exact,
                                                      bool &all_explained) const;

  // ---- reports ----

  // i, clone, pools: a line a clone, into pools_for_clones_NAME.txt of the folder; returns its path.
  std::filesystem::path pools_for_list_of_clones(const class_DB_of_clones &database, const number_list &list,
                                                 const std::string &name, const std::filesystem::path &folder) const;
  // The same for a list from a file (an empty one asks), beside it unless a folder is given. False when it can't be
  // read.
  bool pools_for_list_of_clones_run(process_frame &frame, const project_settings &settings,
                                    class_DB_of_clones &database, const std::filesystem::path &file,
                                    const std::filesystem::path &folder, std::filesystem::path &written) const;
  // Names of clones, one a line.
  static void print_list_of_clones_in_pool_intersections(const class_DB_of_clones &database, const number_list &clones,
                                                         const std::filesystem::path &file);
  // A line a clone with a "+" in its plate, row and column: one column for each pool of the scheme.
  void print_clones_in_pools(const class_DB_of_clones &database, std::span<const clone_number> clones,
                             const std::filesystem::path &file) const;
  // Which wells have a clone: a block a plate.
  void print_filling_of_tables(const std::filesystem::path &file) const;

private:
  friend class pools_recoding_reader;

  void start(const pool_sizes &sizes);
  void put_clone(clone_number clone, const pool_place &place);
  void finish();
  std::size_t place_of_well(const pool_place &place) const {
    return (static_cast<std::size_t>(place[0] - 1) * static_cast<std::size_t>(sizes_[1]) +
            static_cast<std::size_t>(place[1] - 1)) *
               static_cast<std::size_t>(sizes_[2]) +
           static_cast<std::size_t>(place[2] - 1);
  }
  // How many of the clones lie in each pool.
  using pool_counts = std::array<std::vector<std::int32_t>, n_pool_dimensions>;
  pool_counts counts_of(std::span<const clone_number> clones) const;

  pool_sizes sizes_ = standard_pool_sizes;
  std::vector<clone_number> clone_in_pool_;  // by well: plate, row, column
  std::int32_t n_coded_clones_ = 0;          // lines that named a clone of the database
  std::int32_t n_unknown_names_ = 0;         // lines that didn't
  std::vector<pool_place> coordinates_;      // of the k-th coded clone, from 1
  std::vector<std::int32_t> index_of_clone_; // k by clone; 0: in no pool
  number_list coded_clones_;
  std::array<std::array<std::vector<double>, n_pool_dimensions>, 2> error_rates_;
};

} // namespace orb
