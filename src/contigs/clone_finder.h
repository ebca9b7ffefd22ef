// Clone numbers for the names in a run's files.
#pragma once

#include <string>
#include <vector>

#include "database/class_DB_of_clones.h"

namespace orb {

// A name that occurs several times in the library goes to the clone that speaks for it first (the others have no
// overlaps and so stay alone), then to the others in their order.
class clone_finder {
public:
  // The names of the library must be sorted.
  explicit clone_finder(class_DB_of_clones &database)
      : database_(database), taken_(static_cast<std::size_t>(database.total_number_of_clones_get()) + 1, 0) {}

  // -1: unknown; 0: taken already. `proposed`: its number when the file was written, which counts when that clone still
  // bears the name.
  clone_number take(const std::string &name, clone_number proposed = 0) {
    clone_number chosen = 0;
    if (proposed >= 1 && proposed <= database_.total_number_of_clones_get() && !is_taken(proposed) &&
        database_.name_of_clone_get(proposed) == name) {
      chosen = proposed;
    } else {
      const number_list clones = database_.clone_number_get_with_repeats(name);
      if (clones.empty())
        return -1;
      chosen = first_free(clones);
    }
    if (chosen > 0)
      taken_[static_cast<std::size_t>(chosen)] = 1;
    return chosen;
  }

private:
  bool is_taken(clone_number clone) const { return taken_[static_cast<std::size_t>(clone)] != 0; }
  clone_number first_free(const number_list &clones) const {
    clone_number chosen = 0;
    bool chosen_speaks = false;
    for (const clone_number clone : clones.members()) {
      if (is_taken(clone))
        continue;
      const bool speaks = clones.count() > 1 && database_.nRepeatsCloneName_get(clone) > 1;
      if (chosen == 0 || (speaks && !chosen_speaks) || (speaks == chosen_speaks && clone < chosen)) {
        chosen = clone;
        chosen_speaks = speaks;
      }
    }
    return chosen;
  }

  class_DB_of_clones &database_;
  std::vector<char> taken_;
};

} // namespace orb
