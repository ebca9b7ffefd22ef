#include "net/suspect_table.h"

#include "frame/files.h"

namespace orb {

namespace {

std::string bands_of(const class_DB_of_clones &database, clone_number clone, std::span<const std::int32_t> places) {
  const auto bands = database.bands_of_clone(clone);
  std::string text;
  for (const std::int32_t place : places) {
    if (!text.empty())
      text += ' ';
    text += std::to_string(bands[static_cast<std::size_t>(place)]);
  }
  return text;
}

} // namespace

std::string names_of_clones(const class_DB_of_clones &database, std::span<const clone_number> clones) {
  std::string text;
  for (const clone_number c : clones) {
    if (!text.empty())
      text += ' ';
    text += database.name_of_clone_get(c);
  }
  return text;
}

std::string suspect_row(const class_DB_of_clones &database, const clone_suspect &found) {
  const auto count = [](const auto &list) { return std::to_string(list.size()); };
  return database.name_of_clone_get(found.clone) + "\ttwo sides\t" +
         (found.partner > 0 ? database.name_of_clone_get(found.partner) : "") + "\t" + count(found.side_1) + "\t" +
         count(found.bands_1) + "\t" + count(found.side_2) + "\t" + count(found.bands_2) + "\t" +
         names_of_clones(database, found.between) + "\t" + names_of_clones(database, found.side_1) + "\t" +
         bands_of(database, found.clone, found.bands_1) + "\t" + names_of_clones(database, found.side_2) + "\t" +
         bands_of(database, found.clone, found.bands_2);
}

std::string suspects_head() {
  return "clone\twhy\tpartner\tn_clones_1\tn_bands_1\tn_clones_2\tn_bands_2\tbetween\tclones_1\tbands_1\tclones_"
         "2\tbands_2";
}

void print_suspects(const class_DB_of_clones &database, std::span<const clone_suspect> suspects,
                    const std::filesystem::path &file) {
  result_file out(file);
  out.line(suspects_head());
  for (const clone_suspect &found : suspects)
    out.line(suspect_row(database, found));
  out.commit();
}

} // namespace orb
