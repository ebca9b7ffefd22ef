// Locks of outputs: one holder at a time, whoever dies, and what dead processes leave is cleared away.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <functional>
#include <set>
#include <sys/wait.h>
#include <unistd.h>

#include "frame/failures.h"
#include "frame/files.h"
#include "frame/output_lock.h"
#include "support/temporary_folder.h"

namespace {

namespace fs = std::filesystem;
using orb::output_lock;

// A process that does the work and ends at once, with nothing put away.
pid_t start_process(const std::function<int()> &work) {
  const pid_t child = ::fork();
  if (child == 0)
    ::_exit(work());
  return child;
}

int status_of(pid_t child) {
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class locks : public testing::Test {
protected:
  // What is said when the place is held; empty when it is free.
  std::string refusal_of_folder() const {
    try {
      const output_lock lock = output_lock::of_folder(folder.path(), "orb second");
    } catch (const orb::file_error &refused) {
      return refused.what();
    }
    return {};
  }
  std::string refusal_of_file(const std::string &name) const {
    try {
      const output_lock lock = output_lock::of_file(folder.path() / name, "orb second");
    } catch (const orb::file_error &refused) {
      return refused.what();
    }
    return {};
  }
  bool says(const std::string &text, const std::string &part) const { return text.find(part) != std::string::npos; }

  orb::temporary_folder folder;
};

TEST_F(locks, a_folder_and_the_files_in_it_exclude_each_other_and_files_dont) {
  const std::string own = "process " + std::to_string(::getpid()) + " on ";
  {
    const output_lock held = output_lock::of_folder(folder.path(), "orb first");
    for (const std::string &refused : {refusal_of_folder(), refusal_of_file("a.txt")})
      EXPECT_TRUE(says(refused, folder.path().string()) && says(refused, own) && says(refused, ": orb first"))
          << refused;
  }
  EXPECT_EQ(refusal_of_folder(), "");
  {
    const output_lock held = output_lock::of_file(folder.path() / "a.txt", "orb first");
    EXPECT_EQ(refusal_of_file("b.txt"), "");
    EXPECT_TRUE(says(refusal_of_file("a.txt"), "can't write " + (folder.path() / "a.txt").string() + ": another"));
    EXPECT_TRUE(says(refusal_of_folder(), ": orb first"));
  }
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(locks, only_a_dead_process_of_this_host_loses_its_lock) {
  const fs::path lock = folder.path() / "orb.lock";
  EXPECT_EQ(status_of(start_process([&] {
              new output_lock(output_lock::of_folder(folder.path(), "orb killed"));
              return 0;
            })),
            0);
  const std::string left = orb::bytes_of(lock);
  EXPECT_TRUE(says(left, "orb killed"));
  const auto changed = [](const std::string &text, const std::string &field, const std::string &value) {
    const std::size_t at = text.find(field + "\t") + field.size() + 1;
    return text.substr(0, at) + value + text.substr(text.find('\n', at));
  };
  const std::string living = changed(left, "process", std::to_string(::getpid()));
  for (const std::string &kept : {changed(left, "host", "elsewhere.example"), changed(left, "space", "pid:[1]"),
                                  std::string(), std::string("junk"), left.substr(0, left.size() - 1)}) {
    folder.write("orb.lock", kept);
    EXPECT_TRUE(says(refusal_of_folder(), "remove " + lock.string())) << refusal_of_folder();
    EXPECT_TRUE(says(refusal_of_file("a.txt"), "remove " + lock.string()));
    EXPECT_EQ(orb::bytes_of(lock), kept);
  }
  // the number of a living process, which began at another time
  for (const std::string &stale : {left, changed(living, "start", "1")}) {
    folder.write("orb.lock", stale);
    EXPECT_EQ(refusal_of_file("a.txt"), "");
    EXPECT_TRUE(says(output_lock::of_folder(folder.path(), "orb second").taken_over(), ": orb killed"));
  }
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

// Many processes want the same place, and half of those that get it die there.
TEST_F(locks, there_is_one_holder_at_a_time_whoever_dies) {
  const fs::path inside = folder.path() / "inside";
  const auto work = [&](unsigned number) {
    for (unsigned round = 0; round < 60; ++round) {
      try {
        auto *held = new output_lock(output_lock::of_folder(folder.path(), "orb racing"));
        const int mark = ::open(inside.c_str(), O_CREAT | O_EXCL | O_WRONLY, 0666);
        if (mark < 0)
          return 1; // somebody else is here
        ::close(mark);
        ::usleep(100);
        ::unlink(inside.c_str());
        if ((number + round) % 2 == 0)
          return 0; // dies with the lock
        delete held;
      } catch (const orb::file_error &) {
        ::usleep(200);
      }
    }
    return 0;
  };
  for (int wave = 0; wave < 5; ++wave) {
    std::vector<pid_t> children;
    for (unsigned i = 0; i < 8; ++i)
      children.push_back(start_process([&] { return work(i); }));
    for (const pid_t child : children)
      EXPECT_EQ(status_of(child), 0);
  }
}

TEST_F(locks, what_killed_processes_left_is_removed_and_nothing_else) {
  const pid_t killed = start_process([&] {
    orb::write_bytes(folder.path() / "a.txt", "whole");
    new orb::result_file(folder.path() / "a.txt");
    new orb::result_file(folder.path() / "b.txt");
    return 0;
  });
  ASSERT_EQ(status_of(killed), 0);
  std::string left;
  for (const fs::directory_entry &entry : fs::directory_iterator(folder.path()))
    if (const std::string name = entry.path().filename().string(); name.starts_with("a.txt.tmp"))
      left = name;
  const std::string number = std::to_string(killed), host = left.substr(left.rfind('_'));
  ASSERT_TRUE(left.starts_with("a.txt.tmp" + number + "_")) << left;
  const orb::result_file living(folder.path() / "c.txt");
  std::set<std::string> kept{"a.txt"};
  for (const std::string &name : std::vector<std::string>{
           "x.tmp" + number + "_0", "x.tmp" + number + "_0_00000000", "x.tmp" + number + "_" + host,
           "x.tmp" + number + "_0" + host + "x", "x.tmp" + number + "_+1" + host, "x.tmp0" + number + "_1" + host,
           ".tmp" + number + "_1" + host, "x.tmp_1" + host})
    kept.insert(folder.write(name, "mine").filename().string());
  { const output_lock of_file = output_lock::of_file(folder.path() / "a.txt", "orb"); }
  EXPECT_FALSE(fs::exists(folder.path() / left));
  { const output_lock of_folder = output_lock::of_folder(folder.path(), "orb"); }
  std::set<std::string> found;
  for (const fs::directory_entry &entry : fs::directory_iterator(folder.path()))
    if (const std::string name = entry.path().filename().string(); !name.starts_with("c.txt.tmp"))
      found.insert(name);
  EXPECT_EQ(found, kept);
}

} // namespace
