// What `orb info` says of one library, net, fingerprint file or run: one ordered report, shown as text or as JSON.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "frame/process_frame.h"
#include "frame/settings.h"

namespace orb {

using report = nlohmann::ordered_json;

// `settings`: in which format clone names are read. Nothing of a project is read or changed. A missing path throws
// file_error; a damaged file is told in messages and in the report.
report report_on_library(process_frame &frame, const project_settings &settings, const std::filesystem::path &file);
report report_on_net(process_frame &frame, const std::filesystem::path &file);
report report_on_text_net(const std::filesystem::path &file);
report report_on_fingerprints(process_frame &frame, const project_settings &settings,
                              const std::filesystem::path &path);
report report_on_run(process_frame &frame, const std::filesystem::path &folder);
report report_on_results(process_frame &frame, const project_settings &settings, const std::filesystem::path &folder);
// Of a text file that a run or another program wrote: what can be counted in it.
report report_on_text(const std::filesystem::path &file);
report report_on_other(const std::filesystem::path &path);
// Path, kind and size, with which all of them begin.
report head_of_report(const std::filesystem::path &path);
// By the kind of the path.
report report_on(process_frame &frame, const project_settings &settings, const std::filesystem::path &path);

// "key: value" lines, nested reports indented, lists of reports as tables.
std::string text_of_report(const report &shown);

} // namespace orb
