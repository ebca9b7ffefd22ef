// The axis of a list of clones that is to be put into order.
#pragma once

#include "net/class_clone_net_signif.h"
#include "ordering/class_clone_ord_and_verif.h"

namespace orb {

// A long list that hangs together is ordered along its axis; without one the work grows with the square of the list,
// and a very long one is refused, with a message. Short lists need none.
bool find_axis(class_clone_net_signif &signif, ordering_task &task);

} // namespace orb
