#include "drawing/mark_vertices.h"

#include <algorithm>

#include "drawing/palette.h"
#include "frame/numbers.h"
#include "lists/class_list_of_clones.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// In the order of Combo_mark_by.
constexpr mark_kind kinds[]{mark_kind::inside_colour, mark_kind::border_colour, mark_kind::size,
                            mark_kind::shape,         mark_kind::caption,       mark_kind::original_name};
constexpr std::int32_t n_sizes = 10;

} // namespace

form_mark_vertices::form_mark_vertices(class_clone_net_signif &signif, const overlap_rule &rule)
    : t_cutoff(number_text(rule.cutoff, 2)), signif_(signif), rule_(rule), drawing_(signif, rule) {}

const std::vector<std::string> &form_mark_vertices::Combo_mark_by() {
  static const std::vector<std::string> words{"Color", "Color of border", "Size",
                                              "Shape", "Caption",         "Caption original name"};
  return words;
}

std::vector<std::string> form_mark_vertices::Combo1(std::int32_t mark_by) {
  std::vector<std::string> words;
  switch (mark_by) {
  case 0:
  case 1:
    for (std::int32_t i = 0; i < n_scale_colours; ++i) {
      std::string_view name;
      color_name_of_scale(i, name);
      words.emplace_back(name);
    }
    break;
  case 2:
    for (std::int32_t i = 1; i <= n_sizes; ++i)
      words.push_back(std::to_string(i));
    break;
  case 3:
    for (std::int32_t i = 0; i < n_shapes; ++i)
      words.emplace_back(shape_name(i));
    break;
  default:
    words.emplace_back("------");
  }
  return words;
}

bool form_mark_vertices::read(fs::path file, const char *title, number_list &list, std::string &name) {
  const metric_context &context = signif_.context();
  if (file.empty())
    file = context.frame.open_file_dialog(title);
  if (file.empty())
    return false;
  name = file.filename().string();
  std::string pure_name;
  return class_list_of_clones(context.frame, context.settings)
      .run_reading_file_with_list_of_clones(file, list, pure_name, context.database);
}

bool form_mark_vertices::start(fs::path file) {
  number_list list;
  std::string name;
  if (!read(std::move(file), "Open file with all interesting clones", list, name))
    return false;
  drawing_.start_nets_of_clones_draw(list.count(), list, fs::path(name).stem().string(), {});
  drawing_.run_create_caption_for_vertex_corresponding_to_clone(signif_.context().database);
  l_vertices_ = std::to_string(list.count()) + " clones from " + name;
  return true;
}

bool form_mark_vertices::Command_load(fs::path file) {
  number_list list;
  std::string name;
  if (!read(std::move(file), "Open file with list of marked clones", list, name))
    return false;
  const auto by = static_cast<std::size_t>(std::clamp(mark_by_index, 0, 5));
  std::string prefix;
  if (kinds[by] == mark_kind::caption)
    prefix = signif_.context().frame.input({"Input caption for marking vertices", "Mark vertices", {}});
  // sizes count from 1, colours and shapes from 0
  const std::int32_t value = Combo1_index + (kinds[by] == mark_kind::size ? 1 : 0);
  drawing_.mark_clones(list, kinds[by], value, prefix, false, fs::path(name).stem().string());
  l_list_name_ = name;
  l_n_vertices_ = std::to_string(list.count()) + " clones from " + name;
  return true;
}

bool form_mark_vertices::ok(fs::path file) {
  const metric_context &context = signif_.context();
  double cutoff = rule_.cutoff;
  if (!number_parse(t_cutoff, cutoff)) {
    context.frame.message("Cutoff should be numerical!");
    return false;
  }
  drawing_options options = drawing_.options_get();
  options.file = std::move(file);
  drawing_.options_set(options);
  return drawing_.print_files_for_drawing_net(rule_.burying, false, cutoff, false, drawing_kind::overlaps,
                                              context.database);
}

} // namespace orb
