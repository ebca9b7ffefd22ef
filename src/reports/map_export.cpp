#include "reports/map_export.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string_view>

#include "database/class_markers.h"
#include "frame/files.h"

namespace orb {

namespace {

const mapped_clone &of(const contig_map &map, clone_number clone) {
  return map.clones[static_cast<std::size_t>(clone)];
}

std::string joined_markers(const class_DB_of_clones &database, clone_number clone, char between,
                           std::string (*written)(std::string_view)) {
  std::string text;
  for (const std::int32_t marker : database.markers().markers_of_clone(clone))
    text += (text.empty() ? "" : std::string(1, between)) + written(database.markers().name_of_marker_get(marker));
  return text;
}

// ---- the table -----------------------------------------------------------------------------------------------------

// Control characters would end a cell.
std::string cell(std::string_view text) {
  std::string written(text);
  std::replace_if(
      written.begin(), written.end(), [](char c) { return static_cast<unsigned char>(c) < 32; }, ' ');
  return written;
}

void write_row(const class_DB_of_clones &database, const contig_map &map, clone_number clone, result_file &file) {
  const mapped_clone &at = of(map, clone);
  const mapped_contig *contig = at.contig > 0 ? &map.contigs[static_cast<std::size_t>(at.contig)] : nullptr;
  const auto number = [](bool known, std::int64_t value) { return known ? std::to_string(value) : std::string(); };
  const bool placed = contig != nullptr && contig->is_placed;
  const char *verdict = at.verdict == Q_verdict::Q_clone ? "Q-clone" : at.verdict == Q_verdict::kept ? "kept" : "";
  file.write(fmt::format("{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\n", contig != nullptr ? cell(contig->name) : "",
                         cell(database.name_of_clone_get(clone)), number(placed, at.left), number(placed, at.right),
                         number(at.place_on_path > 0, at.place_on_path),
                         at.buried_in > 0 ? cell(database.name_of_clone_get(at.buried_in)) : "", verdict,
                         database.number_of_bands_in_clone_get(clone), joined_markers(database, clone, ';', cell)));
}

// ---- base pairs ----------------------------------------------------------------------------------------------------

struct base_pairs {
  std::int64_t start = 0, end = 0; // from 0, the end not included
};

base_pairs place_of(const mapped_contig &contig, std::int64_t left, std::int64_t right, double band_size) {
  const auto pairs = [&](std::int64_t bands) { return std::llround(static_cast<double>(bands) * band_size); };
  return {pairs(left - contig.left), pairs(right - contig.left + 1)};
}

// "%3B" for a character that has a meaning of its own where the text stands.
std::string percent_encoded(std::string_view text, bool (*plain)(unsigned char)) {
  std::string written;
  for (const char c : text)
    if (const auto byte = static_cast<unsigned char>(c); plain(byte))
      written += c;
    else
      written += fmt::format("%{:02X}", byte);
  return written;
}

std::string attribute(std::string_view text) {
  return percent_encoded(text, [](unsigned char c) {
    return c >= 32 && c != 127 && std::string_view("%;=&,").find(static_cast<char>(c)) == std::string_view::npos;
  });
}

std::string sequence_name(std::string_view text) {
  return percent_encoded(text, [](unsigned char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           (c != 0 && std::string_view(".:^*$@!+_?-|").find(static_cast<char>(c)) != std::string_view::npos);
  });
}

std::string feature(const std::string &contig, const char *type, const base_pairs &place,
                    const std::string &attributes) {
  return fmt::format("{}\tORB\t{}\t{}\t{}\t.\t.\t.\t{}\n", contig, type, place.start + 1, place.end, attributes);
}

std::string attributes_of(const class_DB_of_clones &database, const contig_map &map, clone_number clone) {
  const mapped_clone &at = of(map, clone);
  const std::string name = attribute(database.name_of_clone_get(clone));
  // Names may repeat, numbers don't.
  std::string text =
      fmt::format("ID=clone:{};Name={};bands={}", clone, name, database.number_of_bands_in_clone_get(clone));
  std::string note;
  if (at.place_on_path > 0) {
    text += fmt::format(";tiling_path={}", at.place_on_path);
    note = fmt::format("on the tiling path at place {}", at.place_on_path);
  }
  if (at.buried_in > 0) {
    const std::string holder = attribute(database.name_of_clone_get(at.buried_in));
    text += ";buried_in=" + holder;
    note += (note.empty() ? "" : ",") + ("buried in " + holder);
  }
  if (const std::string markers = joined_markers(database, clone, ',', attribute); !markers.empty())
    text += ";markers=" + markers;
  return text + (note.empty() ? "" : ";Note=" + note);
}

} // namespace

void write_map_table(const class_DB_of_clones &database, const contig_map &map, const std::filesystem::path &path) {
  result_file file(path);
  file.write("contig\tclone\tleft\tright\tpath\tburied_in\tq_verdict\tbands\tmarkers\n");
  for (const mapped_contig &contig : map.contigs)
    for (const clone_number clone : contig.clones)
      write_row(database, map, clone, file);
  for (const clone_number clone : map.alone)
    write_row(database, map, clone, file);
  file.commit();
}

void write_map_gff3(const class_DB_of_clones &database, const contig_map &map, double band_size,
                    const std::filesystem::path &path) {
  result_file file(path);
  file.write("##gff-version 3\n");
  const auto whole = [band_size](const mapped_contig &contig) {
    return place_of(contig, contig.left, contig.right, band_size);
  };
  for (const mapped_contig &contig : map.contigs)
    if (contig.is_placed)
      file.write(fmt::format("##sequence-region {} 1 {}\n", sequence_name(contig.name), whole(contig).end));
  for (const mapped_contig &contig : map.contigs) {
    if (!contig.is_placed)
      continue;
    const std::string name = sequence_name(contig.name);
    file.write(feature(
        name, "contig", whole(contig),
        fmt::format("ID=contig:{};Name={};clones={}", contig.id, attribute(contig.name), contig.clones.size())));
    for (const clone_number clone : contig.clones) {
      const mapped_clone &at = of(map, clone);
      file.write(
          feature(name, "clone", place_of(contig, at.left, at.right, band_size), attributes_of(database, map, clone)));
    }
  }
  file.commit();
}

void write_map_bed(const class_DB_of_clones &database, const contig_map &map, double band_size,
                   const std::filesystem::path &path) {
  std::vector<std::pair<std::string, const mapped_contig *>> by_name;
  for (const mapped_contig &contig : map.contigs)
    if (contig.is_placed)
      by_name.emplace_back(sequence_name(contig.name), &contig);
  std::sort(by_name.begin(), by_name.end());
  result_file file(path);
  for (const auto &[name, contig] : by_name)
    for (const clone_number clone : contig->clones) {
      const mapped_clone &at = of(map, clone);
      const base_pairs place = place_of(*contig, at.left, at.right, band_size);
      const int score = at.place_on_path > 0 ? 1000 : at.buried_in > 0 ? 200 : 500;
      file.write(fmt::format("{}\t{}\t{}\t{}\t{}\t.\n", name, place.start, place.end,
                             sequence_name(database.name_of_clone_get(clone)), score));
    }
  file.commit();
}

} // namespace orb
