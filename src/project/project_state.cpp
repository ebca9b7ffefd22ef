#include "project/project_state.h"

#include "database/class_markers.h"
#include "frame/failures.h"

namespace orb {

std::string name_of_part(project_part part) {
  switch (part) {
  case project_part::library:
    return "a library";
  case project_part::markers:
    return "markers";
  case project_part::pvalue_tables:
    return "tables of p-values";
  case project_part::net:
    return "a net of overlaps";
  case project_part::contigs:
    return "contigs";
  case project_part::pools:
    return "a scheme of pools";
  }
  return {};
}

project_state::project_state(front_end shown, const std::filesystem::path &program_folder)
    : frame_(std::move(shown), program_folder), context_{frame_, settings_, database_, usable_values_, table_},
      reader_(frame_, settings_, [this] { loaded(project_part::library, {}); }) {
  renew_what_hangs_on_clones();
}

void project_state::start() {
  frame_.all_panels_reset();
  frame_.log_line("Start of ORB program");
}

// All is done by then: a log that can't take its last line makes nothing fail.
void project_state::finish() {
  try {
    frame_.log_line("Exit the ORB program");
  } catch (const file_error &failed) {
    frame_.note(failed.what());
  }
}

bool project_state::has(project_part part) const {
  switch (part) {
  case project_part::library:
    return database_.total_number_of_clones_get() > 0;
  case project_part::markers:
    return database_.markers().total_number_of_markers_get() > 0;
  case project_part::pvalue_tables:
    return table_.is_loaded();
  case project_part::net:
    return signif_->net().number_of_vertices_get() > 0;
  case project_part::contigs:
    return database_.contigs_are_specified_get();
  case project_part::pools:
    return pools_.is_loaded();
  }
  return false;
}

void project_state::loaded(project_part part, part_origin origin) {
  if (part == project_part::library && origin.made_by.empty()) { // the reader has just replaced the clones
    origins_[static_cast<std::size_t>(project_part::markers)] = {};
    settings_.markers_in_clones = false;
    renew_what_hangs_on_clones();
  }
  if (part == project_part::contigs)
    database_.contigs_are_specified_set(true);
  origins_[static_cast<std::size_t>(part)] = std::move(origin);
  ++version_;
}

void project_state::drop(project_part part) {
  origins_[static_cast<std::size_t>(part)] = {};
  ++version_;
  switch (part) {
  case project_part::library:
    database_ = class_DB_of_clones();
    usable_values_ = class_usable_values();
    drop(project_part::markers);
    renew_what_hangs_on_clones();
    return;
  case project_part::markers:
    database_.markers().redim_private_arrays(database_.total_number_of_clones_get(), 0, 0);
    settings_.markers_in_clones = false;
    return;
  case project_part::pvalue_tables:
    table_.no_tables();
    return;
  case project_part::net:
    signif_ = std::make_unique<class_clone_net_signif>(context_, [this] {
      net_may_be_used(true);
      origins_[static_cast<std::size_t>(project_part::net)] = {}; // the command says it
      rule_of_net_.reset();
      ++version_;
    });
    rule_of_net_.reset();
    net_may_be_used(false);
    return;
  case project_part::contigs:
    database_.contigs_are_specified_set(false);
    database_.contigs_set(fresh_registry());
    return;
  case project_part::pools:
    pools_ = {};
    return;
  }
}

void project_state::net_may_be_used(bool on) {
  settings_.use_file_with_connections = on;
  settings_.same_metric_as_net = on;
  settings_.same_metric_net_ord_as_net = on;
}

std::shared_ptr<class_FPCto_import> project_state::fresh_registry() {
  auto registry = std::make_shared<class_FPCto_import>(frame_, settings_, database_);
  registry->clear_all_run(0, false);
  return registry;
}

void project_state::renew_what_hangs_on_clones() {
  drop(project_part::net);
  drop(project_part::contigs);
  drop(project_part::pools);
}

std::shared_ptr<class_FPCto_import> project_state::registry_for_reading() {
  auto registry = std::make_shared<class_FPCto_import>(frame_, settings_, database_);
  if (has(project_part::library) && has(project_part::net)) {
    registry->clear_all_run(0, true);
  } else {
    registry->clear_all_and_create_cluster_AllDB(0, "all", "");
    registry->cluster_off_clusterName("all");
  }
  return registry;
}

void project_state::reset_registry() {
  origins_[static_cast<std::size_t>(project_part::contigs)] = {};
  database_.contigs_are_specified_set(false);
  database_.contigs_set(registry_for_reading());
  ++version_;
}

void project_state::clear() {
  drop(project_part::library);
  drop(project_part::pvalue_tables);
  const project_settings fresh;
  const std::uint64_t seed = settings_.seed;
  const int threads = settings_.threads;
  settings_ = fresh;
  settings_.seed = seed;
  settings_.threads = threads;
  rule_ = {};
  analyses_ = {};
  working_folder_.clear();
}

} // namespace orb
