// The project's cutoff is lent to each cluster and put back on every way out.
#pragma once

#include "frame/settings.h"

namespace orb {

class cutoff_keeper {
public:
  explicit cutoff_keeper(project_settings &settings) : settings_(settings), cutoff_(settings.cutoff) {}
  ~cutoff_keeper() { settings_.cutoff = cutoff_; }
  cutoff_keeper(const cutoff_keeper &) = delete;
  cutoff_keeper &operator=(const cutoff_keeper &) = delete;
  double cutoff() const { return cutoff_; }

private:
  project_settings &settings_;
  double cutoff_;
};

} // namespace orb
