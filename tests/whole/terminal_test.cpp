// The program on a terminal of its own: questions, Ctrl-C at one of them, the progress line on a narrow screen.
#include <poll.h>
#include <pty.h>
#include <unistd.h>

#include "support/program_run.h"

namespace fs = std::filesystem;

class terminal : public whole::program_test {
protected:
  struct reply {
    std::string to, with; // what is typed once `to` has been shown
  };

  // Everything that the terminal got.
  whole::outcome on_terminal(const std::string &arguments, std::vector<reply> replies,
                             unsigned short columns = 80) const {
    const winsize size{24, columns, 0, 0};
    int screen = -1;
    const pid_t child = ::forkpty(&screen, nullptr, nullptr, &size);
    if (child == 0) {
      const std::string line =
          "cd '" + folder.string() + "' && export ORB_HOME=\"$PWD/.home\" && exec '" ORB_PROGRAM "' " + arguments;
      ::execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
      ::_exit(127);
    }
    whole::outcome seen;
    std::size_t looked_at = 0;
    for (char block[4096];;) {
      pollfd ready{screen, POLLIN, 0};
      if (::poll(&ready, 1, 60000) <= 0)
        break;
      const ssize_t got = ::read(screen, block, sizeof block);
      if (got <= 0)
        break;
      seen.err.append(block, static_cast<std::size_t>(got));
      while (!replies.empty()) { // one block may hold what several of them wait for
        const std::size_t at = seen.err.find(replies.front().to, looked_at);
        if (at == std::string::npos)
          break;
        looked_at = at + replies.front().to.size();
        EXPECT_GE(::write(screen, replies.front().with.data(), replies.front().with.size()), 0);
        replies.erase(replies.begin());
      }
    }
    int raw = 0;
    ::waitpid(child, &raw, 0);
    ::close(screen);
    seen.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 256 + WTERMSIG(raw);
    EXPECT_TRUE(replies.empty()) << seen.err;
    return seen;
  }

  void list_with_unknown_names() const {
    ASSERT_EQ(orb("load " + example + " --out l.ORBdb").status, 0);
    whole::write_bytes(folder / "list.txt", "EC001A01\nnobody\nsomebody\n");
  }
};

TEST_F(terminal, a_question_names_its_default_and_explains_itself) {
  list_with_unknown_names();
  const whole::outcome seen = on_terminal("list sort l.ORBdb list.txt --out s.txt",
                                          {{"Clone (2) nobody not found!", "?\n"},
                                           {"The list names a clone that the library doesn't have.", ""},
                                           {"Where nobody can be asked the answer is no", "\n"},
                                           {"Clone (3) somebody not found!", "perhaps\n"},
                                           {"Clone (3) somebody not found!", "no\n"}});
  EXPECT_EQ(seen.status, 1);
  EXPECT_NE(seen.err.find("[yes/no; Enter: no; ? explains]"), std::string::npos) << seen.err;
  EXPECT_EQ(whole::bytes_of(folder / "s.txt"), "EC001A01\r\n");
}

TEST_F(terminal, ctrl_c_at_a_question_ends_the_command) {
  list_with_unknown_names();
  const whole::outcome seen =
      on_terminal("list sort l.ORBdb list.txt --out s.txt", {{"Clone (2) nobody not found!", "\x03"}});
  EXPECT_EQ(seen.status, 130) << seen.err;
  EXPECT_NE(seen.err.find("Stopped. Nothing was kept."), std::string::npos) << seen.err;
  EXPECT_FALSE(fs::exists(folder / "s.txt"));
}

TEST_F(terminal, the_progress_line_keeps_to_the_width) {
  const whole::outcome seen = on_terminal("assemble " + example + " --out d", {}, 24);
  ASSERT_EQ(seen.status, 0) << seen.err;
  const std::string begin = "\r\033[K";
  std::size_t n_drawn = 0;
  for (std::size_t at = seen.err.find(begin); at != std::string::npos; at = seen.err.find(begin, at + 1)) {
    const std::size_t first = at + begin.size(), end = seen.err.find_first_of("\r\n", first);
    if (end == std::string::npos || seen.err[end] != '\r' || seen.err.compare(end, begin.size(), begin) != 0)
      continue; // a line that stays
    ++n_drawn;
    EXPECT_LT(end - first, 24u) << seen.err.substr(first, end - first);
  }
  EXPECT_GE(n_drawn, 4u) << "a line a stage at least";
  const std::size_t result = seen.err.find("\nd/ORB_contigs_");
  EXPECT_NE(result, std::string::npos) << "the result has a line of its own: " << seen.err;
}
