// Where the clones of one contig lie on an axis that is counted in bands: a clone of n bands covers n units, and the
// first clone of the diametric path starts at 1.
#pragma once

#include <cstdint>
#include <vector>

#include "database/class_DB_of_clones.h"
#include "frame/lists.h"
#include "frame/process_frame.h"
#include "graph/class_net.h"

namespace orb {

// Clones are meant by their positions in the list, from 1. The scratch belongs to one contig: nothing here has the size
// of the library. The arguments of the constructor must outlive the object.
class contig_coordinates {
public:
  contig_coordinates(process_frame &frame, const class_DB_of_clones &database, const number_list &list_of_clones);

  // path: positions along the diametric path, at least one. ranks: steps from the path, by position. width: the largest
  // of them. net: of the list at the current cutoff; net_list(v) is the position of its vertex v.
  // Cost: one comparison of bands for each record that leads to a smaller rank. A stop request leaves the rest
  // unplaced.
  void make_clone_coordinates(number_list path, const number_list &ranks, std::int32_t width, const class_net &net,
                              const number_list &net_list);
  // Moves all clones so that the contig starts at 1, if it starts below; one that starts above stays. The extremes are
  // positions: those of smallest left and largest right, in favour of the two ends of the path.
  void shift_coordinates_to_positive(std::int32_t path_start, std::int32_t path_end, std::int32_t &left_extreme,
                                     std::int32_t &right_extreme);

  std::vector<std::int32_t> left, right; // by position, element 0 unused

private:
  struct pair_counts {
    std::int32_t n_1 = 0, n_2 = 0, common = 0;
    bool first_is_inside() const; // nearly all of the first clone's bands are common
    bool is_proper() const;       // neither clone is nearly all inside the other
  };
  // What the best neighbour of smaller rank of a clone is.
  struct best_neighbour {
    std::int32_t position = 0; // 0: none known
    std::int32_t common = 0;
  };

  pair_counts compare(std::int32_t position_1, std::int32_t position_2) const;
  void place(std::int32_t position, std::int32_t left_coor, std::int32_t right_coor);
  void make_coordinates_on_diam_path(const number_list &path);
  void make_coordinates_short_path(number_list &path);
  void make_coordinates_by_rank(const number_list &path, const number_list &ranks, std::int32_t width,
                                const class_net &net, const number_list &net_list);
  void start_places_on_path(const number_list &path);
  void find_best_neighbour(std::int32_t position, vertex_number vertex, const number_list &ranks, const class_net &net,
                           const number_list &net_list, best_neighbour &best);
  void place_beside(std::int32_t position, std::int32_t neighbour, const number_list &path);
  bool goes_right(std::int32_t position, std::int32_t neighbour, const number_list &path, std::int32_t &n_third) const;

  process_frame &frame_;
  const class_DB_of_clones &database_;
  const number_list &list_;
  std::vector<char> placed_;                               // by position
  std::vector<std::int32_t> left_on_path_, right_on_path_; // by position: between which places of the path it lies
  std::int32_t first_relevant_ = 0; // first neighbour of smaller rank of the clone placed last; 0: none yet
};

} // namespace orb
