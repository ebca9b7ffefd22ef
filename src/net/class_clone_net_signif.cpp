#include "net/class_clone_net_signif.h"

#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_general.h"

namespace orb {

namespace {

constexpr const char *native_filter = "ORB-specific files (*.ORB)|*.ORB|ORB-Net Signif files (*.ORBns)|*.ORBns";
constexpr const char *text_filter = "Text files (*.txt)|*.txt";

} // namespace

class_clone_net_signif::class_clone_net_signif(const metric_context &context, std::function<void()> net_is_loaded)
    : context_(context), net_is_loaded_(std::move(net_is_loaded)) {}

void class_clone_net_signif::net_is_loaded_set() const {
  if (net_is_loaded_)
    net_is_loaded_();
}

// Empty: cancelled.
static std::filesystem::path asked_net_file(process_frame &frame, const char *filter) {
  frame.file_filter_set(filter);
  return frame.open_file_dialog("Open file with significant connections");
}

void class_clone_net_signif::read_file_with_significant_connections(std::filesystem::path file, const std::string &name,
                                                                    bool native_format, bool folder_of_files,
                                                                    bool &ok) {
  process_frame &frame = context_.frame;
  if (!native_format)
    return read_text_net_run({std::move(file), folder_of_files, {}, name, overlaps_wanted::ask}, ok);
  ok = false;
  frame.step_text_set("Load net of significant clone overlaps...");
  if (file.empty())
    file = asked_net_file(frame, native_filter);
  if (file.empty())
    return; // nothing was loaded, and nothing failed
  net_.read_net_type(frame, file, ok, context_.database.total_number_of_clones_get());
  if (ok)
    net_is_loaded_set();
  frame.step_text_reset();
  frame.local_process_text_reset();
}

void class_clone_net_signif::read_text_net_run(text_net_reading wanted, bool &ok) {
  process_frame &frame = context_.frame;
  ok = false;
  frame.step_text_set("Load net of significant clone overlaps...");
  if (wanted.file.empty())
    wanted.file = asked_net_file(frame, text_filter);
  if (wanted.file.empty())
    return; // nothing was loaded, and nothing failed
  std::filesystem::path file = wanted.file;
  if (wanted.folder_of_files)
    file = class_serv_raznoe::merge_files_of_folder_sort_del_rep_run(
        frame, std::filesystem::is_directory(file) ? file : file.parent_path());
  const passing_file joined(wanted.folder_of_files ? file : std::filesystem::path()); // not among the user's inputs
  read_text_net_and_save(wanted, file, ok);
  if (ok)
    net_is_loaded_set();
  frame.step_text_reset();
  frame.local_process_text_reset();
}

// The net in memory is the native file read back: sorted and tested.
void class_clone_net_signif::read_text_net_and_save(const text_net_reading &wanted, const std::filesystem::path &file,
                                                    bool &ok) {
  process_frame &frame = context_.frame;
  class_net read;
  read_text_net(file, read, ok, wanted.overlaps);
  if (!ok)
    return;
  read.title_of_net_set(file.filename().string());
  read.FullFileNameSet(file.string());
  std::filesystem::path native = wanted.native;
  if (native.empty())
    native =
        frame.save_file_dialog_checked("Save net of significant clone overlaps in the ORB-specific format",
                                       "net_signif" + wanted.name + ".ORBns", "ORB-Net Signif files (*.ORBns)|*.ORBns");
  if (native.empty()) {
    frame.alarm("NB! File with net of significant clone overlaps in the ORB-specific format was not created.");
    net_ = std::move(read);
    return;
  }
  ok = read.save_net_type(frame, native);
  if (ok)
    net_.read_net_type(frame, native, ok, context_.database.total_number_of_clones_get());
}

void class_clone_net_signif::clones_can_be_overlapped(clone_number a, clone_number b, double &value,
                                                      std::int16_t &index1, std::int16_t &index2, const class_net &net,
                                                      bool &yes) const {
  value = 0;
  index1 = index2 = 0;
  yes = net.overlap_of_pair(a, b, value, index1, index2);
}

std::string net_signif_file_name(const overlap_rule &rule) {
  return "net_signif_" + class_clone_dist_general::name_of_cutoff_distance(rule.distance_index) + "_" +
         number_text(rule.cutoff, 2) + ".ORBns";
}

std::string net_noQQ_file_name(const overlap_rule &rule, double additional_cutoff) {
  return "net_signif_noQQ_" + number_text_shortest(rule.cutoff) + "_" + number_text_shortest(additional_cutoff) +
         ".ORBns";
}

} // namespace orb
