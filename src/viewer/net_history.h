// Undo and redo by whole copies: five documents in a ring, of which one is open.
//
// The open document is worked on in its slot. `store` copies it into the next slot and goes on there, so that the slot
// left behind keeps what it was. Copies use the memory of their slot again.
#pragma once

#include <array>
#include <cstdint>
#include <functional>

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
  // Of all documents of the ring.
  void for_each(const std::function<void(class_net_elng &)> &change) {
    for (class_net_elng &slot : ring_)
      change(slot);
  }
  std::int32_t k_net_elng_get() const { return k_net_elng_; }
  std::int32_t n_Undo_get() const { return n_Undo_; }
  std::int32_t n_Redo_get() const { return n_Redo_; }

  // A drag or the like changed the open net: it counts as one step once it is stored. A change of the selection
  // leaves the content as it is.
  void change_is_pending_set(bool of_content = true);
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

  // What the net is has changed, not only what is selected in it.
  void content_is_new() { content_[static_cast<std::size_t>(k_net_elng_)] = ++newest_content_; }
  // Whether the open net is the one of the last `clean_set`, however it came back.
  bool is_clean() const { return content_[static_cast<std::size_t>(k_net_elng_)] == clean_content_; }
  void clean_set() { clean_content_ = content_[static_cast<std::size_t>(k_net_elng_)]; }

  // The menu's entries.
  bool undo_is_enabled() const { return undo_is_enabled_; }
  bool redo_is_enabled() const { return redo_is_enabled_; }
  bool do_is_enabled() const { return do_is_enabled_; }

private:
  static constexpr std::int32_t n_Undo_max = 4, n_Redo_max = 3;
  static constexpr std::int32_t after(std::int32_t k) { return (k + 1) % ring_size; }
  static constexpr std::int32_t before(std::int32_t k) { return (k + ring_size - 1) % ring_size; }

  std::array<class_net_elng, ring_size> ring_;
  std::array<std::uint64_t, ring_size> content_{}; // a number for what is in each slot
  std::uint64_t newest_content_ = 0, clean_content_ = 0;
  std::int32_t k_net_elng_ = 1;
  std::int32_t n_Undo_ = 0, n_Redo_ = 0;
  bool is_change_pending_ = false;
  bool undo_is_enabled_ = false, redo_is_enabled_ = false, do_is_enabled_ = false;
};

} // namespace orb
