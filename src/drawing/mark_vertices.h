// "Mark vertices": the net of a list of clones, drawn with further lists marked in it; the form without its widgets.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "drawing/class_clone_net_draw.h"

namespace orb {

class form_mark_vertices {
public:
  form_mark_vertices(class_clone_net_signif &signif, const overlap_rule &rule);

  // Asks for the list of all clones of the drawing. False when cancelled or unreadable.
  bool start(std::filesystem::path file = {});

  // "Color", "Color of border", "Size", "Shape", "Caption", "Caption original name".
  static const std::vector<std::string> &Combo_mark_by();
  // What the chosen kind of mark can be; "------" for captions.
  static std::vector<std::string> Combo1(std::int32_t mark_by);
  std::int32_t mark_by_index = 0, Combo1_index = 0; // from 0
  std::string t_cutoff;                             // of the drawing

  // "Load the next list of vertices": asks for a list and marks it. False when nothing was marked.
  bool Command_load(std::filesystem::path file = {});
  // OK writes the drawing into a new folder of the working folder, or to `file`. False when nothing was drawn.
  bool ok(std::filesystem::path file = {});

  const std::string &l_list_name() const { return l_list_name_; }
  const std::string &l_n_vertices() const { return l_n_vertices_; }
  const std::string &l_vertices() const { return l_vertices_; }
  const std::vector<std::filesystem::path> &files_written() const { return drawing_.files_written(); }

private:
  bool read(std::filesystem::path file, const char *title, number_list &list, std::string &name);

  class_clone_net_signif &signif_;
  overlap_rule rule_;
  class_clone_net_draw drawing_;
  std::string l_list_name_, l_n_vertices_, l_vertices_;
};

} // namespace orb
