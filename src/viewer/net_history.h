// Undo and redo by whole copies: five documents in a ring, of which one is open.
//
// The open document is worked on in its slot. `store` copies it into the next slot and goes on there, so that the slot
// left behind keeps what it was. Copies use the memory of their slot again.
#pragma once

#include <array>
#include <cstdint>

#include "viewer/class_net_elng.h"

namespace orb {

class net_history {
public:
  static constexpr std::int32_t ring_size = 5;

  net_history() { reset(); }
  // A new net: five fresh documents.
  void reset();

  class_net_elng &open() { return ring_[static_cast<std::size_t>(k_net_elng_)]; }
  const class_net_elng &open() const { return ring_[static_cast<std::size_t>(k_net_elng_)]; }
  std::int32_t k_net_elng_get() const { return k_net_elng_; }
  std::int32_t n_Undo_get() const { return n_Undo_; }
  std::int32_t n_Redo_get() const { return n_Redo_; }

  // A drag or the like changed the open net: it counts as one step once it is stored.
  void change_is_pending_set();
  bool is_change_pending() const { return is_change_pending_; }

  // After every change.
  void store_net_snapshot();
  // What a command that changes the net does first; also the menu's "Do". False: nothing was pending.
  bool store_pending();
  // False when there is nothing to go to; otherwise another document is open.
  bool undo();
  bool redo();
  // After a file was opened: its first snapshot isn't for going back.
  void begin_here();

  // The menu's entries.
  bool undo_is_enabled() const { return undo_is_enabled_; }
  bool redo_is_enabled() const { return redo_is_enabled_; }
  bool do_is_enabled() const { return do_is_enabled_; }

private:
  static constexpr std::int32_t n_Undo_max = 4, n_Redo_max = 3;
  static constexpr std::int32_t after(std::int32_t k) { return (k + 1) % ring_size; }
  static constexpr std::int32_t before(std::int32_t k) { return (k + ring_size - 1) % ring_size; }

  std::array<class_net_elng, ring_size> ring_;
  std::int32_t k_net_elng_ = 1;
  std::int32_t n_Undo_ = 0, n_Redo_ = 0;
  bool is_change_pending_ = false;
  bool undo_is_enabled_ = false, redo_is_enabled_ = false, do_is_enabled_ = false;
};

} // namespace orb
