// A generated library as a .sizes file.
#pragma once

#include <filesystem>
#include <string>

#include "database/class_DB_of_clones.h"
#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

// Bands get a decimal, as gel software writes them; the same bands give the same file.
inline void write_sizes_file(const std::filesystem::path &path, const class_DB_of_clones &database) {
  result_file file(path);
  std::string text;
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone) {
    const auto bands = database.bands_of_clone(clone);
    text = database.name_of_clone_get(clone) + "\t" + std::to_string(bands.size()) + "\tGel\n";
    for (const band_value band : bands) {
      whole_number_append(text, band);
      text += '.';
      text += static_cast<char>('0' + band % 5); // below .5, so that rounding gives the band back
      text += '\n';
    }
    file.write(text += "-1\n\n");
  }
  file.commit();
}

} // namespace orb
