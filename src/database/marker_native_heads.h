// The head lines of the native marker file, to the letter.
#pragma once

#include <string_view>

namespace orb::marker_native_heads {

inline constexpr std::string_view n_clones_head = "Clones in database with bands:";
inline constexpr std::string_view n_with_markers_head = "Clones in database with markers:";
inline constexpr std::string_view n_markers_head = "Total number of markers:";
inline constexpr std::string_view array_head = "mmm:";
inline constexpr std::string_view clones_head = "Clone adres in database with bands:";
inline constexpr std::string_view places_head = "Clone adres in database with markers:";
inline constexpr std::string_view names_head = "Marker names:";
inline constexpr std::string_view starts_head = "Starts:";
inline constexpr std::string_view ends_head = "Ends:";
inline constexpr std::string_view markers_head = "Markers:";

} // namespace orb::marker_native_heads
