#include "ui/console/console_front_end.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <map>
#include <unistd.h>

namespace orb {

namespace {

volatile std::sig_atomic_t interrupts = 0;

extern "C" void on_interrupt(int) {
  if (interrupts > 0)
    _exit(130);
  interrupts = 1;
}

// Message texts carry CR or CR LF between their lines; a terminal wants LF.
std::string for_terminal(const std::string &text) {
  std::string shown;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r') {
      shown += '\n';
      if (i + 1 < text.size() && text[i + 1] == '\n')
        ++i;
    } else {
      shown += text[i];
    }
  }
  return shown;
}

bool progress_line_open = false;

// Panels on a terminal share one line that is written over; elsewhere only the large steps make lines.
class panel_line {
public:
  explicit panel_line(const console_manner &manner) : manner_(manner), terminal_(isatty(STDERR_FILENO) != 0) {}

  void set(panel which, const std::string &text) {
    texts_[static_cast<std::size_t>(which)] = text;
    if (manner_.quiet)
      return;
    if (terminal_)
      return redraw(which);
    const bool large = which == panel::process || which == panel::step;
    if ((large || manner_.verbose) && !text.empty() && !is_resting(text) && is_news(text))
      std::fprintf(stderr, "%s\n", for_terminal(text).c_str());
  }

private:
  static bool is_resting(const std::string &text) {
    return text == "Process" || text == "Step" || text == "Local process" || text == "Control" ||
           text == "Search for clones";
  }
  // Texts that differ only behind their first digit are a counter: one line in a while is enough.
  bool is_news(const std::string &text) {
    const auto now = std::chrono::steady_clock::now();
    const auto [at, is_new] = shown_.try_emplace(text.substr(0, text.find_first_of("0123456789")), now);
    if (!is_new && now - at->second < std::chrono::seconds(5))
      return false;
    at->second = now;
    return true;
  }
  void redraw(panel which) {
    const auto now = std::chrono::steady_clock::now();
    if (which != panel::process && which != panel::step && now - drawn_ < std::chrono::milliseconds(100))
      return;
    drawn_ = now;
    std::string line;
    for (const std::string &text : texts_)
      if (!text.empty() && !is_resting(text))
        line += (line.empty() ? "" : " | ") + for_terminal(text);
    if (line.size() > 110)
      line.resize(110);
    std::fprintf(stderr, "\r\033[K%s", line.c_str());
    progress_line_open = !line.empty();
  }

  console_manner manner_;
  bool terminal_;
  std::string texts_[5];
  std::map<std::string, std::chrono::steady_clock::time_point> shown_; // beginnings of texts, with their time
  std::chrono::steady_clock::time_point drawn_{};
};

std::string prompt_with_choices(const question &asked) {
  const char *choices = asked.choice == answer_choice::yes_no          ? " [yes/no] "
                        : asked.choice == answer_choice::yes_no_cancel ? " [yes/no/cancel] "
                                                                       : " [ok/cancel] ";
  return for_terminal(asked.text) + choices;
}

std::string text_of_answer(answer given) {
  return given == answer::yes ? "yes" : given == answer::no ? "no" : "cancel";
}

void say(const std::string &text) {
  progress_line_end();
  std::fprintf(stderr, "%s\n", text.c_str());
}

answer answer_question(const console_manner &manner, answer_book &book, const question &asked) {
  std::string reply;
  answer given = asked.by_default;
  if (book.take(asked.text, reply) && answer_from_text(reply, given)) {
  } else if (manner.yes) {
    given = asked.to_go_on;
  } else if (isatty(STDIN_FILENO)) {
    progress_line_end();
    for (;;) {
      std::fputs(prompt_with_choices(asked).c_str(), stderr);
      if (!std::getline(std::cin, reply) || reply.empty() || answer_from_text(reply, given))
        break;
    }
    return given;
  }
  say(prompt_with_choices(asked) + text_of_answer(given));
  return given;
}

std::string answer_input(const console_manner &manner, answer_book &book, const input_box &asked) {
  std::string reply;
  if (book.take(asked.prompt, reply)) {
  } else if (!manner.yes && isatty(STDIN_FILENO)) {
    progress_line_end();
    std::fprintf(stderr, "%s [%s] ", for_terminal(asked.prompt).c_str(), asked.by_default.c_str());
    if (!std::getline(std::cin, reply) || reply.empty())
      reply = asked.by_default;
    return reply;
  } else {
    reply = asked.by_default;
  }
  say(for_terminal(asked.prompt) + " " + reply);
  return reply;
}

} // namespace

void progress_line_end() {
  if (progress_line_open)
    std::fputs("\r\033[K", stderr);
  progress_line_open = false;
}

front_end console_front_end(const console_manner &manner, answer_book &book) {
  front_end shown;
  auto line = std::make_shared<panel_line>(manner);
  shown.panel_set = [line](panel which, const std::string &text, panel_colour) { line->set(which, text); };
  shown.log_shown = [manner](const std::string &text) {
    if (manner.verbose)
      say(for_terminal(text));
  };
  shown.message = [](const std::string &text, const std::string &) { say(for_terminal(text)); };
  shown.ask = [manner, &book](const question &asked) { return answer_question(manner, book, asked); };
  shown.input = [manner, &book](const input_box &asked) { return answer_input(manner, book, asked); };
  shown.choose_file = [&book](const file_dialog &asked) {
    std::string reply;
    book.take(asked.title, reply);
    say(asked.title + " " + reply);
    return reply;
  };
  shown.note = [](const std::string &text) { say(text); };
  shown.yield = [] { return interrupts > 0; };
  shown.stop_button_enable = [](bool) {};
  return shown;
}

void interrupts_install() {
  struct sigaction action {};
  action.sa_handler = on_interrupt;
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_RESTART;
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

bool interrupt_was_requested() {
  return interrupts > 0;
}

} // namespace orb
