// The text of an .fpc file in the many forms in which such files are met: what its head says, and its clones one by
// one.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/files.h"

namespace orb {

// What the lines in front of the clones say of the parameters; unset: nothing.
struct fpc_head {
  std::optional<double> tolerance, gel_length;
  std::optional<double> cutoff; // as -log10 of the probability in the file
};

// A clone as its block tells it. The views hold until the next one is read.
struct fpc_clone_block {
  std::string_view name, contig, old_contig; // contig: empty for none
  double left = 0, right = 0;                // in bands, both ends included
  std::string_view gel_number;
  std::optional<std::int32_t> first_band, n_bands; // place in the .cor file, from 1
  std::vector<std::string_view> markers;
  std::string_view created, modified; // dates as the file writes them; empty: not told
  bool map_is_wrong = false;          // its lines about the contig can't be understood
  std::string lines_1_to_3;           // then: the lines themselves, for the message
  std::int64_t line_number = 0;       // of its first line
};

// Blocks are parted by lines that are empty or begin with a blank or a tab. A clone is a block of at least 3 lines that
// begins with its kind (BAC, Clone, ...) and its name, quoted or not; its lines about the contig are the two that begin
// with Map. What isn't used is passed over. Clones end where the markers' or the contigs' section begins. Throws
// file_error.
class fpc_file_reader {
public:
  explicit fpc_file_reader(const std::filesystem::path &file) : lines_(file) {}
  bool next(fpc_clone_block &clone); // false at the end of the clones
  // Complete once a clone was read, or there is none.
  const fpc_head &head() const { return head_; }
  const line_reader &lines() const { return lines_; }
  std::string place(std::int64_t line_number) const; // "file NAME, line N"

private:
  bool next_block();
  std::string_view line(std::size_t i) const {
    return std::string_view(text_).substr(ends_[i], ends_[i + 1] - ends_[i]);
  }
  std::size_t n_lines() const { return ends_.size() - 1; }
  void read_head_line(std::string_view line);
  void read_clone(fpc_clone_block &clone);
  bool read_map(std::size_t i, fpc_clone_block &clone);
  void read_word(std::string_view line, fpc_clone_block &clone) const;

  line_reader lines_;
  fpc_head head_;
  std::string text_;                 // the lines of a block, one behind the other
  std::vector<std::size_t> ends_{0}; // where each begins, and the end of the last
  std::int64_t first_line_ = 0;
  bool at_end_ = false;
};

// What the head of a file says; throws file_error.
fpc_head head_of_fpc_file(const std::filesystem::path &file);
// Where the bands go that belong to an .fpc file.
std::filesystem::path cor_file_of(const std::filesystem::path &fpc_file);

} // namespace orb
