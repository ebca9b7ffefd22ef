// The dialog that asks for cutoff and rank, over `form_netElng`.
#pragma once

#include "viewer/elongation_form.h"

class QWidget;

namespace orb {

// False: cancelled.
bool run_elongation_dialog(form_netElng &form, process_frame &frame, QWidget *parent);

} // namespace orb
