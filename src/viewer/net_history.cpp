#include "viewer/net_history.h"

#include <algorithm>

namespace orb {

void net_history::reset() {
  for (class_net_elng &slot : ring_)
    slot = class_net_elng();
  content_.fill(++newest_content_);
  clean_set();
  k_net_elng_ = 1;
  n_Undo_ = n_Redo_ = 0;
  is_change_pending_ = undo_is_enabled_ = redo_is_enabled_ = do_is_enabled_ = false;
}

void net_history::change_is_pending_set(bool of_content) {
  if (of_content)
    content_is_new();
  is_change_pending_ = undo_is_enabled_ = do_is_enabled_ = true;
}

void net_history::store_net_snapshot() {
  const std::int32_t next = after(k_net_elng_);
  ring_[static_cast<std::size_t>(next)].copy_all_from(open());
  content_[static_cast<std::size_t>(next)] = content_[static_cast<std::size_t>(k_net_elng_)];
  k_net_elng_ = next;
  n_Redo_ = 0;
  n_Undo_ = std::min(n_Undo_ + 1, n_Undo_max);
  redo_is_enabled_ = do_is_enabled_ = is_change_pending_ = false;
  undo_is_enabled_ = true;
}

bool net_history::store_pending() {
  if (!is_change_pending_)
    return false;
  store_net_snapshot();
  return true;
}

void net_history::begin_here() {
  content_is_new();
  store_net_snapshot();
  undo_is_enabled_ = false;
  clean_set();
}

bool net_history::undo() {
  if (!undo_is_enabled_ || n_Undo_ < 1)
    return false;
  k_net_elng_ = before(k_net_elng_);
  n_Redo_ = std::min(n_Redo_ + 1, n_Redo_max);
  if (--n_Undo_ == 0) {
    // the oldest document is about to be worked on: one slot further back keeps it
    const std::int32_t kept_n_Redo = n_Redo_, old = k_net_elng_;
    k_net_elng_ = before(old);
    open().copy_all_from(ring_[static_cast<std::size_t>(old)]);
    content_[static_cast<std::size_t>(k_net_elng_)] = content_[static_cast<std::size_t>(old)];
    store_net_snapshot();
    n_Redo_ = kept_n_Redo;
    undo_is_enabled_ = false;
  }
  redo_is_enabled_ = true;
  do_is_enabled_ = is_change_pending_ = false;
  return true;
}

bool net_history::redo() {
  if (!redo_is_enabled_ || n_Redo_ < 1)
    return false;
  k_net_elng_ = after(k_net_elng_);
  --n_Redo_;
  n_Undo_ = std::min(n_Undo_ + 1, n_Undo_max);
  redo_is_enabled_ = n_Redo_ > 0;
  undo_is_enabled_ = true;
  do_is_enabled_ = is_change_pending_ = false;
  return true;
}

} // namespace orb
