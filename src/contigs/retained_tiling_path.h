// Keeping an older tiling path in use: what is asked, and the tables that a re-analysis writes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "frame/files.h"
#include "frame/lists.h"
#include "frame/process_frame.h"

namespace orb {

// Preference of a clone for the tiling path.
inline constexpr std::int16_t no_MTP_preference = 0;
inline constexpr std::int16_t allowed_in_MTP = 1;   // stands in the old tiling path
inline constexpr std::int16_t preferred_in_MTP = 2; // sequenced

// Which clusters are re-analysed: all in use, or those with a clone of at least this preference.
enum class retained_clusters : std::int16_t { all_in_use = 0, with_allowed = 1, with_preferred = 2 };

struct retained_path_options {
  std::filesystem::path old_MTP, sequenced;  // lists of clones; empty: asked for
  bool no_sequenced = false;                 // there is no list of sequenced clones
  std::optional<retained_clusters> clusters; // not set: asked
};

// The tables of a re-analysis in the run's folder, all separated by tabs. They grow contig by contig.
struct retain_files {
  growing_file MTP_new;  // list_of_clones_MTP_new.tsv: a line a contig, then a line a clone of its path
  growing_file not_used; // list_of_clones_from_allow_to_use_not_used.tsv: the same for clones off it
  growing_file overlaps; // old_MTP_all_overlaps_from_net.tsv: pairs of these clones that the net joins
  growing_file review;   // table_for_Review.txt: a line a clone of the path

  void open(const process_frame &frame); // throws file_error
  void flush();
  void close();
};

// "old_MTP", "sequenced" or "unknown".
const char *MTP_preference_text(std::int16_t preference);

} // namespace orb
