#include "commands/command_table.h"

#include <algorithm>

namespace orb {

const std::vector<command_row> &table_of_commands() {
  static const std::vector<command_row> table = [] {
    command_rows rows;
    for (auto *add :
         {add_project_rows,      add_by_library_rows,   add_library_rows,  add_marker_rows,      add_list_rows,
          add_net_rows,          add_net_analysis_rows, add_revision_rows, add_supercontig_rows, add_contig_rows,
          add_given_contig_rows, add_registry_rows,     add_fpc_rows,      add_cluster_rows,     add_analyse_rows,
          add_order_rows,        add_drawing_rows,      add_pvalue_rows,   add_simulation_rows,  add_pools_rows,
          add_band_map_rows,     add_report_rows,       add_export_rows,   add_map_rows,         add_picture_rows,
          add_layout_rows,       add_viewer_rows})
      add(rows);
    return rows;
  }();
  return table;
}

const command_row *command_by_id(const std::string &id) {
  const auto &table = table_of_commands();
  const auto at = std::find_if(table.begin(), table.end(), [&](const command_row &row) { return row.id == id; });
  return at == table.end() ? nullptr : &*at;
}

const menu_entry *menu_entry_by_control(const std::string &control) {
  const auto &table = table_of_menu_entries();
  const auto at =
      std::find_if(table.begin(), table.end(), [&](const menu_entry &entry) { return entry.control == control; });
  return at == table.end() ? nullptr : &*at;
}

std::string parts_missing_for(const menu_entry &entry, const parts_there &there) {
  std::string missing;
  for (const project_part part : entry.command.empty() ? entry.window_needs : command_by_id(entry.command)->needs)
    if (!there.has(part))
      missing += (missing.empty() ? "" : ", ") + name_of_part(part);
  return missing;
}

static std::vector<std::string> known_names() {
  std::vector<std::string> names;
  for (const command_row &row : table_of_commands())
    names.push_back(row.id);
  for (const menu_entry &entry : table_of_menu_entries())
    names.push_back(entry.control);
  return names;
}

bound_command bound_by_name(const std::string &id_or_control) {
  if (const command_row *row = command_by_id(id_or_control))
    return row->bind();
  const menu_entry *entry = menu_entry_by_control(id_or_control);
  if (!entry) {
    const std::string near = nearest_word(id_or_control, known_names());
    throw usage_error("unknown command " + id_or_control + (near.empty() ? "" : "; did you mean " + near + "?"));
  }
  if (entry->opens_window)
    throw usage_error(id_or_control + " opens a window, which only orb-desktop has");
  if (entry->command.empty())
    throw usage_error(id_or_control + " is an entry without an action");
  bound_command bound = command_by_id(entry->command)->bind();
  for (const auto &[key, value] : entry->presets)
    bound.set(key, value);
  return bound;
}

} // namespace orb
