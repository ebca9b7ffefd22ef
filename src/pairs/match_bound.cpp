#include "pairs/match_bound.h"

namespace orb {

namespace {

bool always() {
  return true;
}

// The order is that of speed.
const scan_path paths[] = {
    {"plain", scan_plain, always},
#if defined(__x86_64__)
    {"sse2", scan_sse2, always},
    {"avx2", scan_avx2, [] { return __builtin_cpu_supports("avx2") != 0; }},
    {"avx512", scan_avx512, [] { return __builtin_cpu_supports("avx512f") != 0; }},
#endif
};

} // namespace

scan_paths all_scan_paths() {
  return {paths, static_cast<int>(sizeof paths / sizeof *paths)};
}

const scan_path &best_scan_path() {
  const scan_path *best = paths;
  for (const scan_path &path : all_scan_paths())
    if (path.runs_here())
      best = &path;
  return *best;
}

} // namespace orb
