#include "ui/desktop/selection_model.h"

#include <algorithm>

namespace orb {

bool selection_model::contains(std::int32_t clone) const {
  return std::binary_search(clones_.begin(), clones_.end(), clone);
}

void selection_model::set(std::vector<std::int32_t> clones, const QObject *by) {
  std::sort(clones.begin(), clones.end());
  clones.erase(std::unique(clones.begin(), clones.end()), clones.end());
  if (clones == clones_)
    return;
  clones_ = std::move(clones);
  emit changed(by);
}

} // namespace orb
