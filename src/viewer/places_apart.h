// Where the first node of a component goes, so that it is in nobody's way.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

namespace orb {

// The points placed so far, their box with the origin, and places a step of 15 away from all of them.
class places_apart {
public:
  void clear();
  void add(float x, float y);
  // The first place of a grid in the box, column by column, that is at least a step from all points; otherwise one
  // beside the shorter way out of the box.
  std::pair<float, float> next() const;

private:
  struct cell {
    std::int64_t x, y;
    friend bool operator==(const cell &, const cell &) = default;
  };
  struct cell_hash {
    std::size_t operator()(const cell &c) const {
      return static_cast<std::size_t>(static_cast<std::uint64_t>(c.x) * 0x9e3779b97f4a7c15u +
                                      static_cast<std::uint64_t>(c.y) * 0xc2b2ae3d27d4eb4fu);
    }
  };
  struct point {
    double x, y;
    std::int64_t next_in_cell; // -1: the last
  };
  static cell cell_of(double x, double y);
  bool is_apart(double x, double y) const;

  std::vector<point> points_;
  std::unordered_map<cell, std::int64_t, cell_hash> last_in_cell_; // only looked up, so its order decides nothing
  float x_min_ = 0, x_max_ = 0, y_min_ = 0, y_max_ = 0;
};

} // namespace orb
