// The clones of a drawing: captions, marks, positions.
#include "drawing/class_clone_net_draw.h"

#include <algorithm>

#include "database/class_clone_serv.h"
#include "drawing/interval_rows.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"

namespace orb {

namespace {

constexpr std::int16_t format_whole = 7; // from here on names are not cut to a length

} // namespace

class_clone_net_draw::class_clone_net_draw(class_clone_net_signif &signif, const overlap_rule &rule)
    : signif_(&signif), rule_(rule), metric_(signif.context(), &signif.net()), net_draw_(signif.context().frame) {
  clone_vertex_.resize(1);
}

void class_clone_net_draw::start_nets_of_clones_draw(std::int32_t n, const number_list &list,
                                                     const std::string &caption, const std::filesystem::path &folder) {
  n = std::clamp(n, 0, std::max(list.count(), 0));
  const std::int32_t n_all = signif_->context().database.total_number_of_clones_get();
  list_of_clones_.clear();
  for (const clone_number clone : list.members().first(static_cast<std::size_t>(n)))
    if (clone >= 1 && clone <= n_all) // -1 stands for no clone
      list_of_clones_.add(clone);
  clone_vertex_.assign(static_cast<std::size_t>(n_clones_get()) + 1, {});
  places_.clear();
  caption_of_net_ = caption;
  folder_ = folder;
  if (!folder.empty())
    return;
  process_frame &frame = signif_->context().frame;
  folder_ = frame.working_folder_get() /
            ("Net_control_" + name_in_file_name(caption) + "_" + class_serv_raznoe::date_and_time_string(frame));
  create_folder(folder_);
}

std::string class_clone_net_draw::name_in_file_name(std::string_view name) {
  std::string safe(name);
  for (char &c : safe)
    if (c == '/' || c == '\\' || static_cast<unsigned char>(c) < 32)
      c = '_';
  return safe;
}

std::string class_clone_net_draw::create_caption_for_clone(std::int32_t k, const class_DB_of_clones &database) const {
  const project_settings &settings = signif_->context().settings;
  const clone_number clone = list_of_clones_(k);
  std::string caption;
  if (options_.caption_name) {
    // names stand in the database in the output format already; a shorter format cuts them
    const std::int16_t format = settings.clone_name_format_output;
    const std::string &name = database.name_of_clone_get(clone);
    caption = format >= format_whole ? name : class_clone_serv::extract_clone_name(name, format, format, settings);
  }
  if (options_.caption_n_bands)
    caption += "[" + std::to_string(database.number_of_bands_in_clone_get(clone)) + "]";
  const std::string number = std::to_string(k);
  return caption.empty() ? number : caption + "<" + number + ">";
}

void class_clone_net_draw::run_create_caption_for_vertex_corresponding_to_clone(const class_DB_of_clones &database) {
  for (std::int32_t k = 1; k <= n_clones_get(); ++k)
    clone_caption_set(k, create_caption_for_clone(k, database));
}

void class_clone_net_draw::mark_clones(const number_list &list, mark_kind kind, std::int32_t value,
                                       const std::string &prefix, bool add_number, const std::string &name) {
  const class_DB_of_clones &database = signif_->context().database;
  const std::int32_t n_all = database.total_number_of_clones_get();
  position_table place_in_list;
  place_in_list.start(n_all);
  for (std::int32_t i = 1; i <= list.count(); ++i)
    if (list(i) >= 1 && list(i) <= n_all && !place_in_list.has(list(i)))
      place_in_list.set(list(i), i);
  if (kind == mark_kind::original_name)
    for (clone_look &look : clone_vertex_)
      look.caption.clear();
  for (std::int32_t k = 1; k <= n_clones_get(); ++k) {
    const clone_number clone = list_of_clones_(k);
    if (!place_in_list.has(clone))
      continue;
    clone_look &look = clone_vertex_[static_cast<std::size_t>(k)];
    look.set(kind, value);
    if (kind == mark_kind::original_name)
      look.caption = database.name_of_clone_get(clone);
    look.caption += prefix;
    if (add_number)
      look.caption += "(" + std::to_string(place_in_list.get(clone)) + ")";
    if (!name.empty())
      look.marks += (look.marks.empty() ? "" : ";") + name;
  }
}

void class_clone_net_draw::clone_look::set(mark_kind kind, std::int32_t value) {
  switch (kind) {
  case mark_kind::border_colour:
    bc = value;
    break;
  case mark_kind::size:
    size = value;
    break;
  case mark_kind::inside_colour:
    ic = value;
    break;
  case mark_kind::shape:
    shape = value;
    break;
  case mark_kind::caption:
  case mark_kind::original_name:
    break;
  }
}

void class_clone_net_draw::clone_coordinates_set(std::span<const std::int32_t> left,
                                                 std::span<const std::int32_t> right) {
  places_.clear();
  if (left.size() != static_cast<std::size_t>(n_clones_get()) || right.size() != left.size())
    return;
  const std::vector<std::int32_t> rows = rows_of_intervals(left, right);
  places_.reserve(rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i)
    places_.push_back({(static_cast<double>(left[i]) + right[i]) / 2, static_cast<double>(rows[i])});
}

} // namespace orb
