// "Mark vertices": the net of a list of clones, drawn with further lists marked in it; the form without its widgets.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "drawing/class_clone_net_draw.h"

namespace orb {

// One list to be marked, as one text: KIND=VALUE=FILE, where KIND is color, border, size, shape, caption or name, VALUE
// the name of a colour or shape, a size from 1 to 10, the caption, or nothing. A caption may hold "=", a file name
// can't.
struct vertex_mark {
  std::int32_t mark_by_index = 0, Combo1_index = 0; // from 0
  std::string caption;
  std::filesystem::path file;

  std::string text() const;
  // Nothing when the text isn't of this form.
  static std::optional<vertex_mark> of(const std::string &text);
};

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

  // "Load the next list of vertices": asks for a list and a caption and marks it. False when nothing was marked.
  bool Command_load(std::filesystem::path file = {});
  // The same when nothing is left to be asked.
  bool mark(const vertex_mark &wanted);
  // False after a word.
  bool cutoff_is_number(double &cutoff);
  // OK writes the drawing into a new folder of the working folder, or to `file`. False when nothing was drawn.
  bool ok(std::filesystem::path file = {});

  const std::filesystem::path &list_file() const { return list_file_; }
  const std::vector<vertex_mark> &marks() const { return marks_; }
  const std::string &l_list_name() const { return l_list_name_; }
  const std::string &l_n_vertices() const { return l_n_vertices_; }
  const std::string &l_vertices() const { return l_vertices_; }
  const std::vector<std::filesystem::path> &files_written() const { return drawing_.files_written(); }

private:
  bool read(std::filesystem::path &file, const char *title, number_list &list);

  class_clone_net_signif &signif_;
  overlap_rule rule_;
  class_clone_net_draw drawing_;
  std::filesystem::path list_file_;
  std::vector<vertex_mark> marks_;
  std::string l_list_name_, l_n_vertices_, l_vertices_;
};

} // namespace orb
