// Steps on an open net as words, so that what was done in a window can be done again without one.
//
// A step is a control, with "=" and a value where it takes one, or one of these, whose numbers are pixels unless told
// otherwise and have commas between them:
//   press=X,Y  shift-press=X,Y  move=X,Y  release=X,Y     the mouse
//   drag=X1,Y1,X2,Y2                                      press, half of the way, all of it, release
//   row=N                                                 a click on a row of the clusters
//   select=N,N,...                                        these nodes, or none
//   zoom=STEPS,X,Y  pan=DX,DY  size=W,H                   the picture
//   stop-after=N                                          the next run of the springs has so many steps
#pragma once

#include <string>
#include <vector>

#include "viewer/net_view.h"

namespace orb {

// The words above, and all controls.
std::vector<std::string> words_of_view_steps();
std::string control_of_step(const std::string &step);

// False: the control is grey now, or no such one. Throws usage_error for numbers that aren't as wanted.
bool do_view_step(net_view &view, const std::string &step);

} // namespace orb
