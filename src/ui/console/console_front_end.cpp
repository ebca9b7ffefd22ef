#include "ui/console/console_front_end.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <poll.h>
#include <unistd.h>

namespace orb {

namespace {

volatile std::sig_atomic_t interrupts = 0;

extern "C" void on_interrupt(int) {
  if (interrupts > 0)
    _exit(130);
  interrupts = 1;
}

const char *choices_of(const question &asked) {
  return asked.choice == answer_choice::yes_no          ? "yes/no"
         : asked.choice == answer_choice::yes_no_cancel ? "yes/no/cancel"
                                                        : "ok/cancel";
}

std::string text_of_answer(answer given, answer_choice choice) {
  if (given == answer::yes)
    return choice == answer_choice::ok_cancel ? "ok" : "yes";
  return given == answer::no ? "no" : "cancel";
}

std::string explained(const std::string &own, const std::string &usual) {
  return (own.empty() ? "" : own + "\n") + usual +
         "\nA file of answers (--answers FILE) holds, a line each: the start of the question, a tab, the answer.";
}

// Waits for a line of standard input. Ctrl-C ends the command here and now: nobody is left to answer.
bool line_of_terminal(std::string &reply) {
  pollfd input{STDIN_FILENO, POLLIN, 0};
  while (std::cin.rdbuf()->in_avail() <= 0 && poll(&input, 1, 200) <= 0)
    if (interrupts > 0) {
      std::fputc('\n', stderr);
      throw program_end("stopped at a question", exit_status::stopped);
    }
  return static_cast<bool>(std::getline(std::cin, reply));
}

bool is_resting(const std::string &text) {
  return text.empty() || text == "Process" || text == "Step" || text == "Local process" || text == "Control" ||
         text == "Search for clones";
}

} // namespace

std::string for_terminal(const std::string &text) {
  std::string shown;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    if (c == '\r') {
      shown += '\n';
      if (i + 1 < text.size() && text[i + 1] == '\n')
        ++i;
    } else {
      shown += (c < ' ' && c != '\n' && c != '\t') || c == 127 ? '?' : text[i];
    }
  }
  return shown;
}

console::console(const console_manner &manner, answer_book &book)
    : manner_(manner), book_(book), stage_(!manner.quiet, !manner.verbose) {
  std::ios::sync_with_stdio(false); // so that `in_avail` knows what was read ahead
}

void console::say(const std::string &text) {
  stage_.clear();
  std::fprintf(stderr, "%s\n", for_terminal(text).c_str());
}

void console::hold(const std::string &text) {
  if (manner_.verbose)
    say(text);
  else
    held_.push_back(text);
}

// A question that came often is answered without more words.
void console::tell_answered(const std::string &prompt, const std::string &reply) {
  constexpr int most_alike = 3;
  const int n = ++told_questions_[prompt.substr(0, prompt.find_first_of("0123456789"))];
  const auto tell = [this](const std::string &text) {
    if (manner_.quiet)
      hold(text);
    else
      say(text);
  };
  if (n <= most_alike || manner_.verbose)
    tell(prompt + " " + reply);
  else if (n == most_alike + 1)
    tell("... and more such questions, which -v shows");
}

void console::show_held() {
  for (const std::string &text : held_)
    say(text);
  held_.clear();
}

// ---- panels ----

void console::panel_set(panel which, const std::string &text) {
  if (!manner_.verbose) {
    if (which == panel::local_process)
      stage_.counter(is_resting(text) ? "" : for_terminal(text));
    return;
  }
  // texts that differ only behind their first digit are a counter, which isn't written again and again
  std::string &shown = shown_[static_cast<std::size_t>(which)];
  const std::string start = text.substr(0, text.find_first_of("0123456789"));
  if (!is_resting(text) && start != shown)
    say(text);
  shown = start;
}

// ---- questions ----

bool console::ask_terminal(const std::string &prompt, const std::string &explanation, std::string &reply) {
  stage_.clear();
  for (;;) {
    std::fputs(for_terminal(prompt).c_str(), stderr);
    if (!line_of_terminal(reply))
      return false;
    if (reply != "?")
      return true;
    std::fprintf(stderr, "%s\n", for_terminal(explanation).c_str());
  }
}

answer console::answer_question(const question &asked) {
  std::string reply;
  answer given = asked.by_default;
  if (book_.take(asked.text, reply) && answer_from_text(reply, given)) {
  } else if (manner_.yes) {
    given = asked.to_go_on;
  } else if (isatty(STDIN_FILENO)) {
    const std::string by_default = text_of_answer(asked.by_default, asked.choice);
    const std::string prompt = asked.text + " [" + choices_of(asked) + "; Enter: " + by_default + "; ? explains] ";
    const std::string explanation =
        explained(asked.explanation, "Where nobody can be asked the answer is " + by_default + ", with --yes it is " +
                                         text_of_answer(asked.to_go_on, asked.choice) + ".");
    while (ask_terminal(prompt, explanation, reply) && !reply.empty() && !answer_from_text(reply, given)) {
    }
    return given;
  }
  tell_answered(asked.text + " [" + choices_of(asked) + "]", text_of_answer(given, asked.choice));
  return given;
}

std::string console::answer_input(const input_box &asked) {
  std::string reply;
  if (book_.take(asked.prompt, reply)) {
  } else if (!manner_.yes && isatty(STDIN_FILENO)) {
    const bool answered = ask_terminal(
        asked.prompt + " [Enter: " + asked.by_default + "; ? explains] ",
        explained(asked.explanation, "Where nobody can be asked the value is " + asked.by_default + "."), reply);
    return !answered || reply.empty() ? asked.by_default : reply;
  } else {
    reply = asked.by_default;
  }
  tell_answered(asked.prompt, reply);
  return reply;
}

// ---- both ends ----

front_end console::as_front_end() {
  front_end shown;
  shown.panel_set = [this](panel which, const std::string &text, panel_colour) { panel_set(which, text); };
  shown.log_shown = [this](const std::string &text) {
    if (manner_.verbose)
      say(text);
  };
  shown.message = [this](const std::string &text, const std::string &) { hold(text); };
  shown.alarm = [this](const std::string &text, const std::string &) { say(text); };
  shown.ask = [this](const question &asked) { return answer_question(asked); };
  shown.input = [this](const input_box &asked) { return answer_input(asked); };
  shown.choose_file = [this](const file_dialog &asked) {
    std::string reply;
    book_.take(asked.title, reply);
    tell_answered(asked.title, reply);
    return reply;
  };
  shown.note = [this](const std::string &text) {
    if (!manner_.quiet)
      say(text);
  };
  shown.warning = [this](const std::string &text) { say("Warning: " + text); };
  shown.progress = [this](std::int64_t done, std::int64_t total) { stage_.progress(done, total); };
  shown.yield = [] { return interrupts > 0; };
  shown.stop_button_enable = [](bool) {};
  return shown;
}

command_streams console::streams() {
  command_streams streams;
  streams.results = [this](const std::string &text) {
    stage_.clear();
    std::printf("%s\n", text.c_str());
    std::fflush(stdout); // in its place among the lines for people, where both go to one terminal
  };
  streams.people = [this](const std::string &text) {
    if (!manner_.quiet)
      say(text);
  };
  streams.trouble = [this](const std::string &text) { say(text); };
  streams.stage_begins = [this](int i, int n, const std::string &name) { stage_.begin(i, n, name); };
  streams.stage_ends = [this](const std::string &summary, bool well) {
    if (well) {
      stage_.end(summary);
      held_.clear();
    } else {
      stage_.clear();
      show_held();
    }
  };
  return streams;
}

void interrupts_install() {
  struct sigaction action {};
  action.sa_handler = on_interrupt;
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_RESTART;
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

} // namespace orb
