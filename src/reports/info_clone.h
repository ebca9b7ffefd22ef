// All that files hold about one clone.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "reports/info_report.h"

namespace orb {

// Looks in the libraries, nets and runs among the paths, and in those that lie in results folders among them. With
// `found` false the report says where it was looked for.
report report_on_clone(process_frame &frame, const project_settings &settings,
                       const std::vector<std::filesystem::path> &paths, const std::string &name, bool &found);

} // namespace orb
