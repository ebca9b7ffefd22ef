// The table of commands, and the menu tree over it.
#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "commands/command_row.h"

namespace orb {

const std::vector<command_row> &table_of_commands();
// Null when there is none.
const command_row *command_by_id(const std::string &id);

// An entry of the menu tree.
struct menu_entry {
  std::string control; // "mnu_Analysis_RevizeNetSignif_QQ"
  std::string place;   // the menus above it: "Analysis", "File|Load"
  std::string caption;
  std::string command; // id; empty: a window, or an entry that does nothing, deliberately
  std::vector<std::pair<std::string, std::string>> presets; // keys of the command and their values here
  bool opens_window = false;                                // that is all it does: only the window program has it
  std::vector<project_part> window_needs{};                 // what has to be loaded for that
  bool has_action() const { return opens_window || !command.empty(); }
};

// The parts that an entry needs and that aren't there, in words: "a library, a net of overlaps"; empty: it can run.
std::string parts_missing_for(const menu_entry &entry, const parts_there &there);

const std::vector<menu_entry> &table_of_menu_entries();
const menu_entry *menu_entry_by_control(const std::string &control);

// The command of an id or of a control name, with the presets of the menu entry; throws usage_error for an unknown one
// and for an entry without a command.
bound_command bound_by_name(const std::string &id_or_control);

// The rows of each subject, in the order of the table.
using command_rows = std::vector<command_row>;
void add_project_rows(command_rows &rows);
void add_by_library_rows(command_rows &rows);
void add_library_rows(command_rows &rows);
void add_marker_rows(command_rows &rows);
void add_list_rows(command_rows &rows);
void add_net_rows(command_rows &rows);
void add_net_analysis_rows(command_rows &rows);
void add_revision_rows(command_rows &rows);
void add_supercontig_rows(command_rows &rows);
void add_contig_rows(command_rows &rows);
void add_given_contig_rows(command_rows &rows);
void add_registry_rows(command_rows &rows);
void add_fpc_rows(command_rows &rows);
void add_cluster_rows(command_rows &rows);
void add_analyse_rows(command_rows &rows);
void add_order_rows(command_rows &rows);
void add_drawing_rows(command_rows &rows);
void add_pvalue_rows(command_rows &rows);
void add_simulation_rows(command_rows &rows);
void add_band_map_rows(command_rows &rows);
void add_pools_rows(command_rows &rows);
void add_report_rows(command_rows &rows);
void add_export_rows(command_rows &rows);
void add_map_rows(command_rows &rows);
void add_picture_rows(command_rows &rows);
void add_layout_rows(command_rows &rows);
void add_viewer_rows(command_rows &rows);

} // namespace orb
