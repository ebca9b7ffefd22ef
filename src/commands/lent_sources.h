// What the session lends to an open net, for as long as its parts stay the same.
#pragma once

#include "project/project_state.h"
#include "viewer/net_sources.h"

namespace orb {

struct lent_sources {
  explicit lent_sources(project_state &project)
      : gate(project.context(), &project.signif().net()),
        chance(project.settings().seed), sources{project.frame(),         project.database(),
                                                 project.signif(),        gate,
                                                 project.rule(),          chance,
                                                 project.working_folder()} {}
  lent_sources(const lent_sources &) = delete;
  lent_sources &operator=(const lent_sources &) = delete;

  class_clone_dist_my gate;
  random_source chance;
  net_sources sources;
};

} // namespace orb
