// Running the program orb as a user does: a command line in, exit status, standard output and standard error out.
#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace whole {

namespace fs = std::filesystem;

inline std::string bytes_of(const fs::path &file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

inline void write_bytes(const fs::path &file, const std::string &bytes) {
  fs::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << bytes;
}

struct outcome {
  int status = -1;
  std::string out, err;
};

// A folder of its own for each test, gone afterwards.
class program_test : public testing::Test {
protected:
  void SetUp() override {
    const testing::TestInfo *info = testing::UnitTest::GetInstance()->current_test_info();
    folder = fs::temp_directory_path() / ("orb-whole-" + std::to_string(::getpid()) + "-" + info->name());
    fs::remove_all(folder);
    fs::create_directories(folder);
  }
  void TearDown() override {
    std::error_code failed;
    fs::remove_all(folder, failed);
  }

  // `before`: shell text in front of the program, such as variables or limits. Runs in `folder`, without a terminal.
  outcome orb(const std::string &arguments, const std::string &before = "") const {
    static int number = 0;
    const fs::path out = folder / (".out" + std::to_string(++number)), err = folder / (".err" + std::to_string(number));
    const std::string line = "cd '" + folder.string() + "' && export ORB_HOME='" + folder.string() + "/.home' && " +
                             before + " '" ORB_PROGRAM "' " + arguments + " </dev/null >'" + out.string() + "' 2>'" +
                             err.string() + "'";
    const int raw = std::system(line.c_str());
    outcome seen{WIFEXITED(raw) ? WEXITSTATUS(raw) : 256 + WTERMSIG(raw), bytes_of(out), bytes_of(err)};
    fs::remove(out);
    fs::remove(err);
    return seen;
  }

  fs::path folder;
  const std::string example = ORB_SOURCE_DIR "/examples/ecoli536";
};

} // namespace whole
