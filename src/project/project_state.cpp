#include "project/project_state.h"

namespace orb {

project_state::project_state(front_end shown, const std::filesystem::path &program_folder)
    : frame_(std::move(shown), program_folder), context_{frame_, settings_, database_, usable_values_, table_},
      signif_(std::make_unique<class_clone_net_signif>(context_)),
      reader_(frame_, settings_, [this] { renew_net_and_registry(); }) {}

void project_state::start() {
  frame_.all_panels_reset();
  frame_.log_line("Start of ORB program");
}

void project_state::finish() {
  frame_.log_line("Exit the ORB program");
}

void project_state::renew_net_and_registry() {
  signif_ = std::make_unique<class_clone_net_signif>(context_);
  settings_.use_file_with_connections = false;
  settings_.same_metric_as_net = false;
  settings_.same_metric_net_ord_as_net = false;
  database_.contigs_are_specified_set(false);
  auto registry = std::make_shared<class_FPCto_import>(frame_, settings_, database_);
  database_.contigs_set(registry);
  registry->clear_all_run(0, false);
}

} // namespace orb
