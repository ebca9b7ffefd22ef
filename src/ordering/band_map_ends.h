// The order of the ends of clones along a row of bands: the one that explains best which clones have which bands.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "frame/process_frame.h"
#include "ordering/band_map_layout.h"

namespace orb {

// Sets of clones as words of bits.
class clone_sets {
public:
  clone_sets(std::size_t n_sets, std::size_t n_clones) : n_words_((n_clones + 63) / 64), words_(n_sets * n_words_, 0) {}
  void add(std::size_t set, std::size_t clone) { word(set, clone) |= bit(clone); }
  bool has(std::size_t set, std::size_t clone) const { return (words_[set * n_words_ + clone / 64] & bit(clone)) != 0; }
  void change(std::size_t set, std::size_t clone) { word(set, clone) ^= bit(clone); }
  std::span<std::uint64_t> operator[](std::size_t set) { return {words_.data() + set * n_words_, n_words_}; }
  std::span<const std::uint64_t> operator[](std::size_t set) const {
    return {words_.data() + set * n_words_, n_words_};
  }

private:
  std::uint64_t &word(std::size_t set, std::size_t clone) { return words_[set * n_words_ + clone / 64]; }
  static std::uint64_t bit(std::size_t clone) { return std::uint64_t{1} << (clone % 64); }

  std::size_t n_words_;
  std::vector<std::uint64_t> words_;
};

// Of two sets of equal width.
std::int32_t n_common(std::span<const std::uint64_t> a, std::span<const std::uint64_t> b);
std::int32_t n_different(std::span<const std::uint64_t> a, std::span<const std::uint64_t> b);

// Moves ends of stretches past others as long as the bands, each at its best place, are explained better. `having`: for
// each band the clones that have it. Ends keep their sequence in the new stretches, whose coordinates count bands.
// False after a stop request, with the stretches as they were.
bool sort_ends_of_stretches(process_frame &frame, const clone_sets &having, std::size_t n_bands,
                            const band_map_weights &weights, std::vector<clone_stretch> &stretches);

} // namespace orb
