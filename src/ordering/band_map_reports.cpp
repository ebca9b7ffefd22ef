// What is printed of a map of bands.
#include <algorithm>
#include <map>

#include "frame/files.h"
#include "frame/numbers.h"
#include "ordering/class_map_of_bands4.h"

namespace orb {

band_map_clones band_map_clones_of(const class_DB_of_clones &database, const number_list &list, double lost) {
  band_map_clones clones;
  clones.metric.tolerance = database.index_of_band_type_get() == 0 ? database.tollerance_get() : 0;
  clones.metric.n_positions = database.total_number_of_different_bands_get();
  clones.metric.lost = lost;
  for (const clone_number clone : list.members()) {
    const std::span<const band_value> bands = database.bands_of_clone(clone);
    clones.names.push_back(database.name_of_clone_get(clone));
    clones.bands.emplace_back(bands.begin(), bands.end());
  }
  return clones;
}

std::vector<std::int32_t> numbers_of_bands(const band_map_clones &clones) {
  std::vector<std::int32_t> numbers;
  for (const std::vector<band_value> &bands : clones.bands)
    if (!bands.empty())
      numbers.push_back(static_cast<std::int32_t>(bands.size()));
  return numbers;
}

std::vector<std::string> class_map_of_bands4::names_of_files() const {
  std::vector<std::string> names{"test_band_frec_M_W.txt", "band_map.txt", "band_map_all_clones.txt"};
  if (map_.size() <= static_cast<std::size_t>(most_bands_of_tour))
    names.emplace_back("band_dist.txt");
  return names;
}

namespace fs = std::filesystem;

namespace {

// The map is shown on a scale of so many units, whatever the number of different bands.
constexpr double length_of_scale = 1000;

std::string line_of_map(std::size_t place, band_value band, double unit) {
  return std::to_string(place + 1) + "\t" + std::to_string(band) + "\t" + number_text(band * unit, 1);
}

} // namespace

// Of each band value: its place on the scale, and the share of the clones that have it.
void class_map_of_bands4::print_frequencies(const band_map_clones &clones, const fs::path &path) const {
  std::map<band_value, std::int32_t> n_having;
  for (const auto &bands : clones.bands)
    for (std::size_t i = 0; i < bands.size(); ++i)
      if (i == 0 || bands[i] != bands[i - 1])
        ++n_having[bands[i]];
  const double scale = length_of_scale / std::max(clones.metric.n_positions, 1);
  result_file file(path);
  file.line("band\tb\tf");
  for (const auto &[band, n] : n_having)
    file.line(std::to_string(band) + "\t" + number_text(band * scale, 4) + "\t" +
              number_text(n / static_cast<double>(clones.count()), 4));
  file.commit();
}

bool class_map_of_bands4::print_distances(const square_array<double> &distances, const fs::path &path) const {
  const std::int32_t n = distances.count();
  result_file file(path);
  std::string text = "i\tlen\\len";
  for (const band_of_map &band : bands_)
    text += "\t" + number_text(band.value * unit_, 1);
  file.line(text);
  for (std::int32_t i = 1; i <= n; ++i) {
    if (i % 100 == 0 && !frame_.goes_on())
      return false;
    text = std::to_string(i) + "\t" + number_text(bands_[static_cast<std::size_t>(i) - 1].value * unit_, 1);
    for (std::int32_t j = 1; j <= n; ++j) { // whole numbers all of them
      text += '\t';
      whole_number_append(text, static_cast<std::int64_t>(distances(i, j)));
      text += ".0";
    }
    file.line(text);
  }
  file.commit();
  return true;
}

void class_map_of_bands4::print_map(const fs::path &path) const {
  result_file file(path);
  file.line("b\tband\tlength");
  for (std::size_t i = 0; i < map_.size(); ++i)
    file.line(line_of_map(i, map_[i], unit_));
  file.commit();
}

void class_map_of_bands4::print_sorted_clones(const band_map_clones &clones, const fs::path &path) const {
  result_file file(path);
  file.line("Length_of_Map\t" + std::to_string(map_.size()));
  file.line("Old clone order:");
  for (const std::string &name : clones.names)
    file.line(name);
  file.line("New order based on Band Map");
  for (const std::int32_t c : order_)
    file.line(clones.names[static_cast<std::size_t>(c)]);
  file.line("Aligment of clones:");
  file.line("c\tc_old\tclone\tstart\tend\tlength");
  for (std::size_t i = 0; i < order_.size(); ++i) {
    const auto c = static_cast<std::size_t>(order_[i]);
    const class_map_of_bands3 &found = alignments_[c];
    file.line(std::to_string(i + 1) + "\t" + std::to_string(c + 1) + "\t" + clones.names[c] + "\t" +
              std::to_string(found.adres_start()) + "\t" + std::to_string(found.adres_end()) + "\t" +
              std::to_string(found.adres_start() == 0 ? 0 : found.adres_end() - found.adres_start() + 1));
  }
  file.line("b\tband\tlength");
  for (std::size_t i = 0; i < map_.size(); ++i)
    file.line(line_of_map(i, map_[i], unit_));
  file.commit();
}

// Each band of the map, then those of the clone that the stretch lacks: "+" present, "-" absent, "0" outside of the
// stretch, "x" false. The mark of the map says what the clone has, that of the clone what the stretch asks for.
fs::path class_map_of_bands4::print_aligment_of_one_clone(const band_map_clones &clones, std::size_t i,
                                                          const fs::path &folder) const {
  const class_map_of_bands3 &found = alignments_[i];
  std::string name = clones.names[i];
  std::replace_if(
      name.begin(), name.end(), [](char c) { return c == '/' || c == '\\'; }, '_');
  const fs::path path = folder / ("band_map_and_clone_" + name + ".txt");
  result_file file(path);
  file.line("Clone\t" + clones.names[i]);
  file.line("Length_of_Map\t" + std::to_string(map_.size()));
  file.line("Trait\t" + number_text(found.trait_of_aligment_best(), 1));
  file.line("adres_start\t" + std::to_string(found.adres_start()));
  file.line("adres_end\t" + std::to_string(found.adres_end()));
  file.line("n_absent_bands_in_clone\t" + std::to_string(found.n_absent_bands_in_clone()));
  file.line("n_false_bands_in_clone\t" + std::to_string(found.n_false_bands_in_clone()));
  std::string text = "list_of_false_bands (" + std::to_string(found.n_false_bands_in_clone()) + "):";
  for (const band_value band : found.list_of_false_bands().members())
    text += "\t" + std::to_string(band);
  file.line(text);
  file.line("b\tband\tb_map\tb_clone\tb1");
  for (std::int32_t b = 1; b <= static_cast<std::int32_t>(map_.size()); ++b) {
    const std::int32_t presence = found.band_of_map_presentance(b);
    const bool inside = found.adres_start() <= b && b <= found.adres_end();
    file.line(std::to_string(b) + "\t" + std::to_string(map_[static_cast<std::size_t>(b) - 1]) + "\t" +
              (inside ? "+" : "0") + "\t" +
              (!inside         ? "0"
               : presence == 1 ? "+"
                               : "-") +
              "\t" + std::to_string(presence));
  }
  for (const band_value band : found.list_of_false_bands().members())
    file.line("\t" + std::to_string(band) + "\t-\tx\t");
  file.commit();
  return path;
}

} // namespace orb
