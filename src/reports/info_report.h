// What `orb info` says of one library, net, fingerprint file or run: one ordered report, shown as text or as JSON.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "contigs/run_folder.h"
#include "graph/class_net.h"
#include "project/project_state.h"

namespace orb {

using report = nlohmann::ordered_json;

report report_on_library(project_state &session, const std::filesystem::path &file);
report report_on_net(project_state &session, const std::filesystem::path &file);
report report_on_text_net(const std::filesystem::path &file);
report report_on_fingerprints(const std::filesystem::path &path);
report report_on_run(project_state &session, const std::filesystem::path &folder);
report report_on_results(project_state &session, const std::filesystem::path &folder);
report report_on_other(const std::filesystem::path &path);
// By the kind of the path.
report report_on(project_state &session, const std::filesystem::path &path);

// "key: value" lines, nested reports indented, lists of reports as tables.
std::string text_of_report(const report &shown);

} // namespace orb
