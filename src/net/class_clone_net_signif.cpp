#include "net/class_clone_net_signif.h"

#include "frame/class_serv_raznoe.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_general.h"

namespace orb {

namespace {

constexpr const char *native_filter = "ORB-specific files (*.ORB)|*.ORB|ORB-Net Signif files (*.ORBns)|*.ORBns";
constexpr const char *text_filter = "Text files (*.txt)|*.txt";

} // namespace

class_clone_net_signif::class_clone_net_signif(metric_context &context) : context_(context) {}

void class_clone_net_signif::net_is_loaded_set() {
  context_.settings.use_file_with_connections = true;
  context_.settings.same_metric_as_net = true;
  context_.settings.same_metric_net_ord_as_net = true;
}

void class_clone_net_signif::read_file_with_significant_connections(std::filesystem::path file, const std::string &name,
                                                                    bool native_format, bool folder_of_files,
                                                                    bool &ok) {
  process_frame &frame = context_.frame;
  ok = false;
  frame.step_text_set("Load net of significant clone overlaps...");
  if (file.empty()) {
    frame.file_filter_set(native_format ? native_filter : text_filter);
    file = frame.open_file_dialog("Open file with significant connections");
    if (file.empty())
      return; // nothing was loaded, and nothing failed
  }
  if (folder_of_files)
    file = class_serv_raznoe::merge_files_of_folder_sort_del_rep_run(frame, file.parent_path());
  if (native_format)
    net_.read_net_type(frame, file, ok, context_.database.total_number_of_clones_get());
  else
    read_text_net_and_save(file, name, ok);
  if (ok)
    net_is_loaded_set();
  frame.step_text_reset();
  frame.local_process_text_reset();
}

// A text net is kept in the native format from its first load on: the net in memory is the file read back.
void class_clone_net_signif::read_text_net_and_save(const std::filesystem::path &file, const std::string &name,
                                                    bool &ok) {
  process_frame &frame = context_.frame;
  class_net read;
  read_text_net(file, read, ok);
  if (!ok)
    return;
  read.title_of_net_set(file.filename().string());
  read.FullFileNameSet(file.string());
  const std::filesystem::path native =
      frame.save_file_dialog_checked("Save net of significant clone overlaps in the ORB-specific format",
                                     "net_signif" + name + ".ORBns", "ORB-Net Signif files (*.ORBns)|*.ORBns");
  if (native.empty()) {
    frame.message("NB! File with net of significant clone overlaps in the ORB-specific format was not created.");
    net_ = std::move(read);
    return;
  }
  read.save_net_type(frame, native);
  net_.read_net_type(frame, native, ok, context_.database.total_number_of_clones_get());
}

void class_clone_net_signif::clones_can_be_overlapped(clone_number a, clone_number b, double &value,
                                                      std::int16_t &index1, std::int16_t &index2, const class_net &net,
                                                      bool &yes) const {
  value = 0;
  index1 = index2 = 0;
  yes = net.overlap_of_pair(a, b, value, index1, index2);
}

std::string net_signif_file_name(const project_settings &settings) {
  return "net_signif_" + class_clone_dist_general::name_of_cutoff_distance(settings.distance_index) + "_" +
         number_text(settings.cutoff, 2) + ".ORBns";
}

std::string net_noQQ_file_name(const project_settings &settings, double additional_cutoff) {
  return "net_signif_noQQ_" + number_text_shortest(settings.cutoff) + "_" + number_text_shortest(additional_cutoff) +
         ".ORBns";
}

} // namespace orb
