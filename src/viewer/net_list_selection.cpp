// Nodes that lists of names or clones select.
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/text_lines.h"
#include "viewer/class_net_elng.h"
#include "viewer/clone_records.h"

namespace orb {

namespace {

constexpr std::size_t lines_between_polls = 100;

bool is_clone(const net_sources &sources, clone_number clone) {
  return clone >= 1 && clone <= sources.database.total_number_of_clones_get();
}

std::filesystem::path results_file(const net_sources &sources, std::string_view name) {
  return process_frame::path_in_folder(sources.results_folder, name);
}

} // namespace

void class_net_elng::textSelectedNodes_get(const net_sources &sources, std::vector<std::string> &lines,
                                           bool numbered) const {
  lines.clear();
  lines.reserve(static_cast<std::size_t>(selected_.count()));
  for (const vertex_number n : selected_.members()) {
    const node_elng &node = nodes_[static_cast<std::size_t>(n)];
    std::string line;
    if (numbered)
      line = (node.clone_id > 0 ? "" : "v") + std::to_string(n) + "\t";
    lines.push_back(
        line + (is_clone(sources, node.clone_id) ? sources.database.name_of_clone_get(node.clone_id) : node.caption));
  }
}

// One exact match is enough for parts of later captions to count no more.
bool class_net_elng::select_nodes_of_line(const net_sources &sources, const std::string &line, bool &show_parts) {
  const clone_number clone = sources.clones_exist() ? sources.database.clone_number_get(line) : -1;
  bool found = false, found_exactly = false;
  for (vertex_number n = 1; n <= private_n_vertices_; ++n) {
    const node_elng &node = nodes_[static_cast<std::size_t>(n)];
    if (node.caption == line || (clone > 0 && node.clone_id == clone)) {
      found_exactly = true;
    } else if (found_exactly || node.caption.find(line) == std::string::npos) {
      continue;
    } else if (show_parts) {
      question part;
      part.text = "NB! " + line + " is only subline of " + node.caption + "!\r\nShow such messages for other sublines?";
      part.explanation = "The vertex is selected in any case; no selects the further ones without these questions.";
      show_parts = sources.frame.yes(part);
    }
    found = true;
    AddSelectedNode(n);
  }
  return found;
}

void class_net_elng::AddToSelectedNodes_list_of_clones_from_text(const net_sources &sources, std::string_view text) {
  const std::vector<std::string> lines = names_in_text(text);
  std::vector<std::string> not_found(1); // from 1
  bool show_parts = true;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (!select_nodes_of_line(sources, lines[i], show_parts))
      not_found.push_back(lines[i]);
    if (i % lines_between_polls == lines_between_polls - 1 && !sources.frame.goes_on())
      return;
  }
  const std::string told = std::to_string(not_found.size() - 1) + " nodes from list were not found!";
  if (not_found.size() == 1)
    return sources.frame.message(told);
  class_serv_raznoe::array_string_print_to_file(results_file(sources, "\\nodes_not_in_net.txt"), not_found);
  sources.frame.alarm(told);
}

bool class_net_elng::AddToSelectedNodes_list_of_clones_from_file(const net_sources &sources,
                                                                 std::filesystem::path file) {
  std::string text;
  if (!text_of_list_file(sources, std::move(file), text))
    return false;
  AddToSelectedNodes_list_of_clones_from_text(sources, text);
  return true;
}

void class_net_elng::FindNodes_list_of_clones(const net_sources &sources, const number_list &list,
                                              number_list &nodes_found, number_list &clones_found,
                                              number_list &clones_not_found) const {
  nodes_found.clear();
  clones_found.clear();
  clones_not_found.clear();
  std::vector<vertex_number> node_of(static_cast<std::size_t>(sources.database.total_number_of_clones_get()) + 1, 0);
  for (vertex_number n = 1; n <= private_n_vertices_; ++n) {
    const clone_number clone = nodes_[static_cast<std::size_t>(n)].clone_id;
    if (!is_clone(sources, clone))
      continue;
    vertex_number &node = node_of[static_cast<std::size_t>(clone)];
    if (node > 0)
      sources.frame.alarm("Clone " + std::to_string(clone) + " " + sources.database.name_of_clone_get(clone) +
                          " presented in net more than once?!");
    else
      node = n;
  }
  for (const clone_number clone : list.members()) {
    if (!is_clone(sources, clone) || node_of[static_cast<std::size_t>(clone)] == 0) {
      clones_not_found.add(clone);
      continue;
    }
    nodes_found.add(node_of[static_cast<std::size_t>(clone)]);
    clones_found.add(clone);
  }
}

void class_net_elng::AddToSelectedNodes_list_of_clones(const net_sources &sources, const number_list &list) {
  number_list nodes_found, clones_found, clones_not_found;
  FindNodes_list_of_clones(sources, list, nodes_found, clones_found, clones_not_found);
  for (const vertex_number n : nodes_found.members())
    AddSelectedNode(n);
  if (clones_not_found.empty())
    return;
  question save;
  save.text = "In total, " + std::to_string(clones_not_found.count()) +
              " clones did not found in the net!\r\nDo you want to save corresponding lists?";
  save.explanation = "Yes writes the names of these clones to clones_not_in_net.txt.";
  if (!sources.frame.yes(save))
    return;
  std::vector<std::string> names(1);
  for (const clone_number clone : clones_not_found.members())
    names.push_back(is_clone(sources, clone) ? sources.database.name_of_clone_get(clone) : std::to_string(clone));
  class_serv_raznoe::array_string_print_to_file(results_file(sources, "\\clones_not_in_net.txt"), names);
}

bool text_of_list_file(const net_sources &sources, std::filesystem::path file, std::string &text) {
  if (file.empty())
    file = sources.frame.open_file_dialog("Open file with clones to select");
  if (file.empty())
    return false;
  if (const std::string why = why_no_text_file(file); !why.empty())
    return sources.frame.refuse("File " + file.string() + " is no text: " + why);
  text = file_bytes(file);
  if (text.starts_with(encoding_mark))
    text.erase(0, encoding_mark.size());
  return true;
}

} // namespace orb
