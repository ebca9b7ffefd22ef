#include "frame/front_end.h"

#include <string_view>

namespace orb {

front_end null_front_end() {
  front_end shown;
  shown.panel_set = [](panel, const std::string &, panel_colour) {};
  shown.log_shown = [](const std::string &) {};
  shown.message = [](const std::string &, const std::string &) {};
  shown.ask = [](const question &asked) { return asked.by_default; };
  shown.input = [](const input_box &asked) { return asked.by_default; };
  shown.choose_file = [](const file_dialog &) { return std::string(); };
  shown.note = [](const std::string &) {};
  shown.warning = [](const std::string &) {};
  shown.progress = [](std::int64_t, std::int64_t) {};
  shown.yield = [] { return false; };
  shown.stop_button_enable = [](bool) {};
  return shown;
}

front_end scripted_front_end(answer_book &book, front_end_record &record) {
  front_end shown = null_front_end();
  shown.panel_set = [&record](panel which, const std::string &text, panel_colour) {
    record.panels.push_back(std::to_string(static_cast<int>(which) + 1) + ": " + text);
  };
  shown.log_shown = [&record](const std::string &text) { record.log.push_back(text); };
  shown.message = [&record](const std::string &text, const std::string &) { record.messages.push_back(text); };
  shown.note = [&record](const std::string &text) { record.notes.push_back(text); };
  shown.warning = [&record](const std::string &text) { record.warnings.push_back(text); };
  shown.ask = [&book, &record](const question &asked) {
    record.questions.push_back(asked.text);
    std::string reply;
    answer given = asked.by_default;
    if (book.take(asked.text, reply))
      answer_from_text(reply, given);
    return given;
  };
  shown.input = [&book, &record](const input_box &asked) {
    record.questions.push_back(asked.prompt);
    std::string reply;
    return book.take(asked.prompt, reply) ? reply : asked.by_default;
  };
  shown.choose_file = [&book, &record](const file_dialog &asked) {
    record.questions.push_back(asked.title);
    std::string reply;
    book.take(asked.title, reply);
    return reply;
  };
  return shown;
}

} // namespace orb
