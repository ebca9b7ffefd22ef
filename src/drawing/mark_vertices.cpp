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
constexpr const char *words_of_kinds[]{"color", "border", "size", "shape", "caption", "name"};
constexpr std::int32_t n_sizes = 10;

bool has_value(std::int32_t mark_by) {
  return mark_by < 4;
}

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

std::string vertex_mark::text() const {
  const std::string value = has_value(mark_by_index)
                                ? form_mark_vertices::Combo1(mark_by_index).at(static_cast<std::size_t>(Combo1_index))
                                : caption;
  return std::string(words_of_kinds[mark_by_index]) + "=" + value + "=" + file.string();
}

std::optional<vertex_mark> vertex_mark::of(const std::string &text) {
  const std::size_t first = text.find('='), last = text.rfind('=');
  if (first == last)
    return std::nullopt;
  vertex_mark mark;
  mark.file = text.substr(last + 1);
  mark.caption = text.substr(first + 1, last - first - 1);
  const auto kind = std::find(std::begin(words_of_kinds), std::end(words_of_kinds), text.substr(0, first));
  if (kind == std::end(words_of_kinds) || mark.file.empty())
    return std::nullopt;
  mark.mark_by_index = static_cast<std::int32_t>(kind - std::begin(words_of_kinds));
  if (!has_value(mark.mark_by_index))
    return mark;
  const std::vector<std::string> values = form_mark_vertices::Combo1(mark.mark_by_index);
  const auto value = std::find(values.begin(), values.end(), mark.caption);
  if (value == values.end())
    return std::nullopt;
  mark.Combo1_index = static_cast<std::int32_t>(value - values.begin());
  mark.caption.clear();
  return mark;
}

// `file` comes out as it was chosen.
bool form_mark_vertices::read(fs::path &file, const char *title, number_list &list) {
  const metric_context &context = signif_.context();
  if (file.empty())
    file = context.frame.open_file_dialog(title);
  if (file.empty())
    return false;
  std::string pure_name;
  return class_list_of_clones(context.frame, context.settings)
      .run_reading_file_with_list_of_clones(file, list, pure_name, context.database);
}

bool form_mark_vertices::start(fs::path file) {
  number_list list;
  if (!read(file, "Open file with all interesting clones", list))
    return false;
  drawing_.start_nets_of_clones_draw(list.count(), list, file.stem().string(), {});
  drawing_.run_create_caption_for_vertex_corresponding_to_clone(signif_.context().database);
  l_vertices_ = std::to_string(list.count()) + " clones from " + file.filename().string();
  list_file_ = std::move(file);
  marks_.clear();
  return true;
}

bool form_mark_vertices::Command_load(fs::path file) {
  vertex_mark wanted{std::clamp(mark_by_index, 0, 5), Combo1_index, {}, std::move(file)};
  process_frame &frame = signif_.context().frame;
  if (wanted.file.empty())
    wanted.file = frame.open_file_dialog("Open file with list of marked clones");
  if (wanted.file.empty())
    return false;
  if (kinds[wanted.mark_by_index] == mark_kind::caption)
    wanted.caption = frame.input({"Input caption for marking vertices", "Mark vertices", {}});
  return mark(wanted);
}

bool form_mark_vertices::mark(const vertex_mark &wanted) {
  number_list list;
  fs::path file = wanted.file;
  if (!read(file, "Open file with list of marked clones", list))
    return false;
  const mark_kind kind = kinds[wanted.mark_by_index];
  // sizes count from 1, colours and shapes from 0
  const std::int32_t value = wanted.Combo1_index + (kind == mark_kind::size ? 1 : 0);
  drawing_.mark_clones(list, kind, value, wanted.caption, false, file.stem().string());
  l_list_name_ = file.filename().string();
  l_n_vertices_ = std::to_string(list.count()) + " clones from " + l_list_name_;
  marks_.push_back(wanted);
  return true;
}

bool form_mark_vertices::cutoff_is_number(double &cutoff) {
  if (number_parse(t_cutoff, cutoff))
    return true;
  signif_.context().frame.message("Cutoff should be numerical!");
  return false;
}

bool form_mark_vertices::ok(fs::path file) {
  const metric_context &context = signif_.context();
  double cutoff = rule_.cutoff;
  if (!cutoff_is_number(cutoff))
    return false;
  drawing_options options = drawing_.options_get();
  options.file = std::move(file);
  drawing_.options_set(options);
  return drawing_.print_files_for_drawing_net(rule_.burying, false, cutoff, false, drawing_kind::overlaps,
                                              context.database);
}

} // namespace orb
