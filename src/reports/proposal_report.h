// Proposed parameters as rows of a report.
#pragma once

#include <filesystem>
#include <optional>

#include "frame/process_frame.h"
#include "frame/settings.h"
#include "net/parameter_proposals.h"
#include "reports/info_report.h"

namespace orb {

// A row a parameter: its option's name, value, how sure, reason.
report rows_of_proposals(const parameter_proposals &proposals);
// Nothing is proposed for longer ones: no gel is so long, and a library has tables of its gel's length.
inline constexpr double longest_usual_gel = 1e6;
// From fingerprints that are read for it, silently; nothing when a load would refuse them, or no gel is long enough.
std::optional<parameter_proposals> proposals_from_files(const process_frame &frame, const project_settings &settings,
                                                        const std::filesystem::path &path, double largest_band);

} // namespace orb
