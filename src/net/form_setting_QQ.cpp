#include "net/form_setting_QQ.h"

#include "frame/numbers.h"
#include "net/class_clone_net_signif.h"

namespace orb {

void FrmSettingQQ::show(double current_cutoff) {
  current_cutoff_ = current_cutoff;
  t_cur_cutoff = number_text_shortest(current_cutoff);
  t_min_cutoff = number_text_shortest(current_cutoff + QQ_proposed_step);
  QQ_use_additional_cutoff = false;
  is_open = true;
}

bool FrmSettingQQ::c_ok(process_frame &frame, const std::filesystem::path &file) {
  const std::string refused = QQ_additional_cutoff_refused(t_min_cutoff, current_cutoff_);
  if (!refused.empty()) {
    frame.message(refused);
    return false;
  }
  double additional = 0;
  number_from_text_silent(t_min_cutoff, additional);
  const std::filesystem::path chosen =
      !file.empty() ? file
                    : frame.save_file_dialog_checked(
                          "Resulted net of significant clone overlaps (without Qs) save to... (in the ORB-specific "
                          "format)",
                          "net_signif_noQQ_" + number_text_shortest(current_cutoff_) + "_" +
                              number_text_shortest(additional) + ".ORBns",
                          "ORB-Net Signif files (*.ORBns)|*.ORBns");
  if (chosen.empty())
    return false;
  QQ_use_additional_cutoff = true;
  QQ_additional_cutoff = additional;
  QQ_file = chosen;
  is_open = false;
  return true;
}

void FrmSettingQQ::c_Cancel() {
  QQ_use_additional_cutoff = false;
  is_open = false;
}

} // namespace orb
