// Drawings in one call: a list with marking lists, from lists or from their files.
#include "drawing/class_clone_net_draw.h"
#include "frame/class_serv_raznoe.h"
#include "lists/class_list_of_clones.h"

namespace orb {

namespace {

constexpr std::int32_t colour_yellow = 1, colour_green = 4, colour_red = 7, shape_box = 1;

// Puts the working folder back on every way out.
class folder_of_work {
public:
  folder_of_work(process_frame &frame, std::string_view name)
      : frame_(frame), former_(class_serv_raznoe::create_folder_and_make_it_current(frame, name)) {}
  ~folder_of_work() { class_serv_raznoe::finish_of_work_with_folder(frame_, former_); }
  folder_of_work(const folder_of_work &) = delete;
  folder_of_work &operator=(const folder_of_work &) = delete;

private:
  process_frame &frame_;
  std::filesystem::path former_;
};

} // namespace

void class_clone_net_draw::quick_run_coordinates_set(std::span<const std::int32_t> left,
                                                     std::span<const std::int32_t> right) {
  quick_left_.assign(left.begin(), left.end());
  quick_right_.assign(right.begin(), right.end());
}

void class_clone_net_draw::start_quick_run(const number_list &list, const std::string &caption,
                                           const std::filesystem::path &folder) {
  start_nets_of_clones_draw(list.count(), list, caption, folder);
  run_create_caption_for_vertex_corresponding_to_clone(signif_->context().database);
  clone_coordinates_set(quick_left_, quick_right_);
  quick_left_.clear();
  quick_right_.clear();
}

bool class_clone_net_draw::quick_run(const number_list &list, const std::string &caption,
                                     const std::filesystem::path &folder, double burying_border, double cutoff,
                                     const number_list &list_1, bool all_metrics, bool print_values,
                                     drawing_kind kind) {
  start_quick_run(list, caption, folder);
  mark_clones(list_1, mark_kind::inside_colour, colour_red, {}, options_.caption_number, mark_names_[0]);
  return print_files_for_drawing_net(burying_border, all_metrics, cutoff, print_values, kind,
                                     signif_->context().database);
}

bool class_clone_net_draw::quick_run_two_lists_of_marking(const number_list &list, const std::string &caption,
                                                          const std::filesystem::path &folder, double burying_border,
                                                          double cutoff, const number_list &list_1,
                                                          const number_list &list_2, bool all_metrics,
                                                          bool print_values, drawing_kind kind) {
  start_quick_run(list, caption, folder);
  mark_clones(list_1, mark_kind::inside_colour, colour_red, {}, options_.caption_number, mark_names_[0]);
  mark_clones(list_2, mark_kind::shape, shape_box, {}, options_.caption_number, mark_names_[1]);
  return print_files_for_drawing_net(burying_border, all_metrics, cutoff, print_values, kind,
                                     signif_->context().database);
}

bool class_clone_net_draw::quick_run_three_lists_of_marking(const number_list &list, const std::string &caption,
                                                            const std::filesystem::path &folder, double burying_border,
                                                            double cutoff, const number_list &list_1,
                                                            const number_list &list_2, const number_list &list_3,
                                                            bool all_metrics, bool print_values, drawing_kind kind) {
  start_quick_run(list, caption, folder);
  number_list of_both;
  class_list_of_clones::find_intersection_of_contigs(list_1, list_2, of_both);
  const bool add_number = options_.caption_number;
  mark_clones(list_1, mark_kind::inside_colour, colour_red, {}, add_number, mark_names_[0]);
  mark_clones(list_2, mark_kind::inside_colour, colour_green, {}, add_number, mark_names_[1]);
  mark_clones(of_both, mark_kind::inside_colour, colour_yellow, {}, add_number);
  mark_clones(list_3, mark_kind::shape, shape_box, {}, add_number, mark_names_[2]);
  return print_files_for_drawing_net(burying_border, all_metrics, cutoff, print_values, kind,
                                     signif_->context().database);
}

// ---- from files ----------------------------------------------------------------------------------------------------

bool class_clone_net_draw::read_list(std::filesystem::path file, const std::string &dialog_title, number_list &list,
                                     std::string &pure_name, class_DB_of_clones &database) const {
  const metric_context &context = signif_->context();
  if (file.empty())
    file = context.frame.open_file_dialog(dialog_title);
  if (file.empty())
    return false;
  return class_list_of_clones(context.frame, context.settings)
             .run_reading_file_with_list_of_clones(file, list, pure_name, database) &&
         !list.unreadable();
}

bool class_clone_net_draw::list_with_marking_quick_run(const std::filesystem::path &file,
                                                       const std::filesystem::path &file_marked_1,
                                                       const std::filesystem::path &file_marked_2,
                                                       const std::filesystem::path &folder, double burying_border,
                                                       double cutoff, class_DB_of_clones &database) {
  number_list list, list_1, list_2;
  std::string name, name_1, name_2;
  if (!read_list(file, "Open file with all interesting clones", list, name, database))
    return false;
  const bool two_lists = options_.mark_two_lists, one_list = options_.mark_MTP || two_lists;
  if (one_list && !read_list(file_marked_1, "Open file with clones to be marked", list_1, name_1, database))
    return false;
  if (two_lists && !read_list(file_marked_2, "Open file with clones to be marked", list_2, name_2, database))
    return false;
  mark_names_set({name_1, name_2, {}});
  return two_lists ? quick_run_two_lists_of_marking(list, name, folder, burying_border, cutoff, list_1, list_2)
                   : quick_run(list, name, folder, burying_border, cutoff, list_1);
}

bool class_clone_net_draw::compare_nets_for_two_metrics_quick_run(const std::filesystem::path &file,
                                                                  const std::filesystem::path &file_marked,
                                                                  const std::filesystem::path &folder,
                                                                  class_DB_of_clones &database) {
  constexpr double cutoff = 10;
  number_list list, marked;
  std::string name, name_of_marked;
  if (!read_list(file, "Open file with all interesting clones", list, name, database))
    return false;
  bool mark = !file_marked.empty();
  if (!mark) {
    question asked;
    asked.text = "Mark some clones?";
    asked.title = "Comparison of nets for two metrics";
    mark = signif_->context().frame.yes(asked);
  }
  if (mark && !read_list(file_marked, "Open file with clones to be marked", marked, name_of_marked, database))
    return false;
  start_quick_run(list, name, folder);
  mark_clones(marked, mark_kind::inside_colour, colour_red, {}, options_.caption_number, name_of_marked);
  return print_files_for_drawing_net_for_given_distance_index(overlap_rule::standard_burying, -1, cutoff, false,
                                                              drawing_kind::two_metrics, false, database);
}

bool class_clone_net_draw::nets_with_shown_list_of_clones(const std::filesystem::path &file_all,
                                                          std::filesystem::path any_file,
                                                          class_DB_of_clones &database) {
  process_frame &frame = signif_->context().frame;
  number_list all;
  std::string name;
  if (!read_list(file_all, "Open file with all interesting clones", all, name, database))
    return false;
  if (any_file.empty())
    any_file = frame.open_file_dialog("Click any file from directory");
  if (any_file.empty())
    return false;
  const std::filesystem::path lists = any_file.parent_path().empty() ? "." : any_file.parent_path();
  std::string extension = any_file.extension().string();
  if (!extension.empty())
    extension.erase(0, 1); // its point
  const std::vector<std::string> files = class_serv_raznoe::create_ordered_list_of_files_in_folder(lists, extension);
  const drawing_options as_asked = options_;
  options_.file.clear(); // each list has a drawing of its own
  const bool all_drawn = draw_list_files(all, lists, files, database);
  options_ = as_asked;
  return all_drawn;
}

bool class_clone_net_draw::draw_list_files(const number_list &all, const std::filesystem::path &lists,
                                           const std::vector<std::string> &files, class_DB_of_clones &database) {
  process_frame &frame = signif_->context().frame;
  const folder_of_work marked(frame, "Nets_marked");
  frame.process_start("Drawing nets with marked lists");
  frame.step_text_set("Drawing nets...");
  const std::string n = std::to_string(files.size());
  bool all_drawn = true;
  for (std::size_t k = 0; k < files.size(); ++k) {
    frame.progress(static_cast<std::int64_t>(k), static_cast<std::int64_t>(files.size()));
    frame.local_process_text_set(std::to_string(k + 1) + " of " + n);
    if (frame.stop_requested_get()) {
      frame.process_stopped_manually();
      return false;
    }
    number_list list;
    std::string name;
    if (!read_list(lists / files[k], {}, list, name, database)) {
      all_drawn = false; // why was told
      continue;
    }
    mark_names_set({name, {}, {}});
    all_drawn = quick_run(all, name, frame.working_folder_get(), overlap_rule::standard_burying, -1, list) && all_drawn;
  }
  if (frame.stop_requested_get()) {
    frame.process_stopped_manually();
    return false;
  }
  frame.process_done();
  frame.message("Analysis of all " + n + " files from the selected folder is completed.");
  return all_drawn;
}

} // namespace orb
