// A frame whose answers are prepared and that records what it shows, working in a folder of its own. The fixtures of
// the single folders are this one and what they add to it.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/front_end.h"
#include "frame/process_frame.h"
#include "support/temporary_folder.h"

namespace orb {

// The clock of every frame made while it lives stands still; 0 is the beginning of 1970.
struct pinned_clock {
  explicit pinned_clock(long seconds) { ::setenv("SOURCE_DATE_EPOCH", std::to_string(seconds).c_str(), 1); }
  ~pinned_clock() { ::unsetenv("SOURCE_DATE_EPOCH"); }
  pinned_clock(const pinned_clock &) = delete;
  pinned_clock &operator=(const pinned_clock &) = delete;
};

struct scripted_frame {
  temporary_folder own_folder;
  const std::filesystem::path folder = own_folder.path();
  answer_book book;
  front_end_record record;
  // What happens in the midst of the work: called at each yield, true stops it; and for each text of a panel.
  std::function<bool()> on_yield;
  std::function<void(const std::string &text)> on_panel;
  std::vector<std::pair<std::int64_t, std::int64_t>> progress; // done, total
  process_frame frame;

  // With a program folder ORB.log lies in `folder`, without there is no log.
  explicit scripted_frame(bool with_log = false) : frame(watched(), with_log ? folder : std::filesystem::path{}) {
    frame.working_folder_set(folder);
  }
  scripted_frame(const scripted_frame &) = delete;
  scripted_frame &operator=(const scripted_frame &) = delete;

  void answer(const std::string &prompt, const std::string &reply) { book.add({prompt, reply, false}); }
  void answer_always(const std::string &prompt, const std::string &reply) { book.add({prompt, reply, true}); }
  std::string last_message() const { return record.messages.empty() ? "" : record.messages.back(); }

  std::string bytes(const std::string &name) const { return own_folder.bytes(name); }
  std::filesystem::path write(const std::string &name, std::string_view text) const {
    return own_folder.write(name, text);
  }

private:
  front_end watched() {
    front_end shown = scripted_front_end(book, record);
    shown.yield = [this] { return on_yield && on_yield(); };
    shown.progress = [this](std::int64_t done, std::int64_t total) { progress.emplace_back(done, total); };
    shown.panel_set = [this, recorded = shown.panel_set](panel which, const std::string &text, panel_colour colour) {
      recorded(which, text, colour);
      if (on_panel)
        on_panel(text);
    };
    return shown;
  }
};

} // namespace orb
