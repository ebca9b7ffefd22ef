// The number types of the system, and the list whose count stands in element 0.
#pragma once

#include <cassert>
#include <cstdint>
#include <span>
#include <vector>

namespace orb {

using clone_number = std::int32_t;  // 1..number of clones; -1: no such clone
using band_value = std::int32_t;    // a length in gel units, or a bin number
using band_adress = std::int32_t;   // 1-based place in the flat band array
using vertex_number = std::int32_t; // 1..number of vertices
using edge_adress = std::int32_t;   // 1-based place in the flat array of edge records
using rank_number = std::int32_t;   // steps in a net; -1: not reached
using cluster_id = std::int32_t;    // 1-based; 0: none

// A 1-based list of signed 32-bit numbers. Element 0 of its array holds the count, so list(0) = n and
// list(1)..list(n) are the members; -1 in element 0 marks a list that could not be read.
class number_list {
public:
  number_list() : data_(1, 0) {}
  explicit number_list(std::span<const std::int32_t> members) : data_(1, static_cast<std::int32_t>(members.size())) {
    data_.insert(data_.end(), members.begin(), members.end());
  }
  number_list(std::initializer_list<std::int32_t> members)
      : number_list(std::span<const std::int32_t>(members.begin(), members.size())) {}

  static number_list range(std::int32_t first, std::int32_t last) {
    number_list list;
    for (std::int32_t i = first; i <= last; ++i)
      list.add(i);
    return list;
  }

  std::int32_t count() const { return data_[0]; }
  bool empty() const { return data_[0] <= 0; }
  bool unreadable() const { return data_[0] < 0; }

  // i from 0 (the count) to the number of members held.
  std::int32_t operator()(std::int32_t i) const {
    assert(i >= 0 && static_cast<std::size_t>(i) < data_.size());
    return data_[static_cast<std::size_t>(i)];
  }
  // The count is read through this one too where the list isn't const; only `add` and `resize` may change it.
  std::int32_t &operator()(std::int32_t i) {
    assert(i >= 0 && static_cast<std::size_t>(i) < data_.size());
    return data_[static_cast<std::size_t>(i)];
  }

  void add(std::int32_t member) {
    data_.push_back(member);
    data_[0] = static_cast<std::int32_t>(data_.size()) - 1;
  }
  // Makes room for `count` members; new ones are 0.
  void resize(std::int32_t count) {
    data_.resize(static_cast<std::size_t>(count) + 1, 0);
    data_[0] = count;
  }
  void clear() { resize(0); }
  void mark_unreadable() {
    resize(0);
    data_[0] = -1;
  }
  void reserve(std::int32_t count) { data_.reserve(static_cast<std::size_t>(count) + 1); }

  std::span<const std::int32_t> members() const { return {data_.data() + 1, data_.size() - 1}; }
  std::span<std::int32_t> members() { return {data_.data() + 1, data_.size() - 1}; }

  friend bool operator==(const number_list &, const number_list &) = default;

private:
  std::vector<std::int32_t> data_;
};

// Maps numbers 1..n to positions, and forgets all of them in constant time: the scratch table of everything that
// works on a small part of something large. One owner, one user at a time.
class position_table {
public:
  // Makes room for numbers up to `largest` and forgets what was set.
  void start(std::int32_t largest) {
    if (stamp_of_.size() < static_cast<std::size_t>(largest) + 1) {
      stamp_of_.resize(static_cast<std::size_t>(largest) + 1, 0);
      position_of_.resize(static_cast<std::size_t>(largest) + 1, 0);
    }
    if (++stamp_ == 0) {
      stamp_of_.assign(stamp_of_.size(), 0);
      stamp_ = 1;
    }
  }
  void set(std::int32_t number, std::int32_t position) {
    stamp_of_[static_cast<std::size_t>(number)] = stamp_;
    position_of_[static_cast<std::size_t>(number)] = position;
  }
  bool has(std::int32_t number) const { return stamp_of_[static_cast<std::size_t>(number)] == stamp_; }
  // The position set for the number, or `otherwise`.
  std::int32_t get(std::int32_t number, std::int32_t otherwise = -1) const {
    return has(number) ? position_of_[static_cast<std::size_t>(number)] : otherwise;
  }

private:
  std::vector<std::uint32_t> stamp_of_;
  std::vector<std::int32_t> position_of_;
  std::uint32_t stamp_ = 0;
};

} // namespace orb
