// The measures of an evaluation as one ordered report: for JSON, for people, and as tables.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "simulation/map_quality.h"

namespace orb {

// {"measures": {section: {key: value or null}}, "contigs": [one object a contig], "damage": {kind: [rows]}}. Lengths in
// base pairs unless the key says otherwise, shares from 0 to 1; null: the run has no files for it.
nlohmann::ordered_json report_of_quality(const map_quality &quality, const true_map &truth);
// The measures with their names, "-" for what isn't known, and the first damages of each kind.
std::string text_of_quality(const map_quality &quality, const nlohmann::ordered_json &report);
// Tables with a head line: one row a contig; one row a damage. "-" for what isn't known. Throw file_error.
void write_table_of_contigs(const nlohmann::ordered_json &report, const std::filesystem::path &file);
void write_table_of_damage(const nlohmann::ordered_json &report, const std::filesystem::path &file);

} // namespace orb
