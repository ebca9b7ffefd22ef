// The form of the revision's settings, without its window: its texts, its two fields, and what its buttons do.
#pragma once

#include <filesystem>
#include <string>

#include "frame/process_frame.h"

namespace orb {

struct FrmSettingQQ {
  static constexpr const char *caption = "QQ settimg";
  static constexpr const char *l_cur_cutoff = "Current cutoff =";
  static constexpr const char *l_min_cutoff = "Additional cutoff=";
  static constexpr const char *c_ok_caption = "Ok";
  static constexpr const char *c_Cancel_caption = "Cancel";

  std::string t_cur_cutoff, t_min_cutoff;
  bool is_open = false;

  // What the form settled.
  bool QQ_use_additional_cutoff = false;
  double QQ_additional_cutoff = 0; // on the scale of the metric
  std::filesystem::path QQ_file;   // for the revised net

  // Opens the form: the cutoff in use, and 10 above it as the proposal. What an earlier form settled no longer holds.
  void show(double current_cutoff);
  // The button "Ok". A wrong field gives a message, and the form stays open; so it does when no file is chosen in the
  // save dialog, which is not shown when `file` is given. True when the form closed.
  bool c_ok(process_frame &frame, const std::filesystem::path &file = {});
  // The button "Cancel".
  void c_Cancel();

private:
  double current_cutoff_ = 0;
};

} // namespace orb
