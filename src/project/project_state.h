// What lives for a whole session: the frame, the settings, the rule by which clones are compared, and the parts that
// are loaded, each with where it came from. A project is made in one line; two projects don't know of each other.
//
// Parts change through one door, `loaded`: it drops what hangs on the old part and raises `version`, by which whoever
// shows the project sees that he must look again. A part is loaded whole or not at all (part_loading.h).
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "clustering/class_FPCto_import.h"
#include "contigs/class_contig_process.h"
#include "database/class_DB_of_clones.h"
#include "database/class_DB_of_clones_read.h"
#include "database/class_usable_values.h"
#include "database/library_parameters.h"
#include "frame/process_frame.h"
#include "frame/settings.h"
#include "metrics/metric_context.h"
#include "metrics/overlap_rule.h"
#include "net/class_clone_net_signif.h"
#include "pools/class_pools3D.h"
#include "project/files_in_hand.h"

namespace orb {

enum class project_part { library, markers, pvalue_tables, net, contigs, pools };
inline constexpr std::array<project_part, 6> all_project_parts{project_part::library,       project_part::markers,
                                                               project_part::pvalue_tables, project_part::net,
                                                               project_part::contigs,       project_part::pools};
// "a library", "a net of overlaps" and so on.
std::string name_of_part(project_part part);

struct part_origin {
  std::filesystem::path file; // or folder; empty for what was made here
  std::string made_by;        // id of the command
};

class project_state {
public:
  // `program_folder`: where ORB.log lies; empty: no log.
  explicit project_state(front_end shown = null_front_end(), const std::filesystem::path &program_folder = {});
  project_state(const project_state &) = delete;
  project_state &operator=(const project_state &) = delete;

  process_frame &frame() { return frame_; }
  const process_frame &frame() const { return frame_; }
  project_settings &settings() { return settings_; }
  const project_settings &settings() const { return settings_; }
  overlap_rule &rule() { return rule_; }
  const overlap_rule &rule() const { return rule_; }
  class_DB_of_clones &database() { return database_; }
  const class_DB_of_clones &database() const { return database_; }
  class_usable_values &usable_values() { return usable_values_; }
  const class_usable_values &usable_values() const { return usable_values_; }
  class_clone_dist_table &pvalue_tables() { return table_; }
  const class_clone_dist_table &pvalue_tables() const { return table_; }
  metric_context &context() { return context_; }
  class_clone_net_signif &signif() { return *signif_; }
  const class_clone_net_signif &signif() const { return *signif_; }
  class_DB_of_clones_read &reader() { return reader_; }
  class_pools3D &pools() { return pools_; }
  const class_pools3D &pools() const { return pools_; }
  // What the analysis of lists does while it isn't told otherwise.
  contig_process_options &analyses() { return analyses_; }
  const contig_process_options &analyses() const { return analyses_; }

  // ---- parts ---------------------------------------------------------------------------------------------------
  bool has(project_part part) const;
  const part_origin &origin(project_part part) const { return origins_[static_cast<std::size_t>(part)]; }
  // Grows with every change of a part.
  std::uint64_t version() const { return version_; }
  // The one door: the part is new. A new library drops markers, net, contigs and pools; a new net leaves the contigs,
  // which are lists of clones and stand by themselves.
  void loaded(project_part part, part_origin origin);
  void drop(project_part part);
  // An empty registry; with a library it holds one cluster "all" of all clones that is switched off, or with a net
  // nothing at all.
  std::shared_ptr<class_FPCto_import> registry_for_reading();
  // Puts such a one into the place of the present one: the contigs are gone.
  void reset_registry();
  // The rule by which the loaded net was made, where that is known.
  const std::optional<overlap_rule> &rule_of_net() const { return rule_of_net_; }
  void rule_of_net_set(std::optional<overlap_rule> rule) { rule_of_net_ = rule; }
  // Where results go that have no folder of their own; empty: the frame's own working folder.
  const std::filesystem::path &working_folder() const { return working_folder_; }
  void working_folder_set(std::filesystem::path folder) { working_folder_ = std::move(folder); }
  // What the commands that run read and write; their checks take note of it, though they leave the project as it is.
  files_in_hand &files() const { return *files_; }
  // As at the start of the program, but for the frame, seed and threads.
  void clear();

  // ---- the one command that runs -------------------------------------------------------------------------------
  const std::string &running() const { return running_; } // its id; empty: none
  void running_set(std::string id) { running_ = std::move(id); }

  // "Start of ORB program" in the log, panels at rest.
  void start();
  // "Exit the ORB program" in the log, where it takes it.
  void finish();

private:
  void renew_what_hangs_on_clones();
  void net_may_be_used(bool on);
  std::shared_ptr<class_FPCto_import> fresh_registry();

  process_frame frame_;
  project_settings settings_;
  overlap_rule rule_;
  contig_process_options analyses_;
  class_DB_of_clones database_;
  class_usable_values usable_values_;
  class_clone_dist_table table_;
  metric_context context_;
  std::unique_ptr<class_clone_net_signif> signif_;
  class_DB_of_clones_read reader_;
  class_pools3D pools_;
  std::array<part_origin, all_project_parts.size()> origins_;
  std::optional<overlap_rule> rule_of_net_;
  std::filesystem::path working_folder_;
  std::unique_ptr<files_in_hand> files_ = std::make_unique<files_in_hand>();
  std::uint64_t version_ = 0;
  std::string running_;
};

} // namespace orb
