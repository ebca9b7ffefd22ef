// A square array in one piece, numbered 0..n or 1..n as its user likes: row and column 0 exist always.
#pragma once

#include <cstdint>
#include <vector>

namespace orb {

template <class number> class square_array {
public:
  square_array() { assign(0); }
  explicit square_array(std::int32_t n, number value = number()) { assign(n, value); }

  // Rows and columns 0..n, all of the value. Keeps the memory it has.
  void assign(std::int32_t n, number value = number()) {
    n_ = n;
    stride_ = static_cast<std::size_t>(n) + 1;
    data_.assign(stride_ * stride_, value);
  }
  std::int32_t count() const { return n_; }
  number &operator()(std::int32_t i, std::int32_t j) {
    return data_[static_cast<std::size_t>(i) * stride_ + static_cast<std::size_t>(j)];
  }
  number operator()(std::int32_t i, std::int32_t j) const {
    return data_[static_cast<std::size_t>(i) * stride_ + static_cast<std::size_t>(j)];
  }
  const number *row(std::int32_t i) const { return data_.data() + static_cast<std::size_t>(i) * stride_; }

private:
  std::int32_t n_ = 0;
  std::size_t stride_ = 1;
  std::vector<number> data_;
};

} // namespace orb
