// Running the program orb as a user does: a command line in, exit status, standard output and standard error out.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <sys/wait.h>

#include "support/temporary_folder.h"

namespace whole {

namespace fs = std::filesystem;
using orb::bytes_of;
using orb::write_bytes;

struct outcome {
  int status = -1;
  std::string out, err;
};

// The value that `info --json` proposes for a parameter; 0: none.
inline double proposed(const nlohmann::json &told, const std::string &parameter) {
  for (const auto &row : told.value("proposed parameters", nlohmann::json::array()))
    if (row["parameter"] == parameter)
      return row["value"].get<double>();
  return 0;
}

// A folder of its own for each test, gone afterwards.
class program_test : public testing::Test {
protected:
  // `before`: shell text in front of the program, such as variables or limits. Runs in `folder`, without a
  // terminal; `input`: the file at standard input.
  outcome orb(const std::string &arguments, const std::string &before = "",
              const std::string &input = "/dev/null") const {
    static int number = 0;
    const fs::path out = folder / (".out" + std::to_string(++number)), err = folder / (".err" + std::to_string(number));
    const std::string line = "cd '" + folder.string() + "' && export ORB_HOME='" + folder.string() + "/.home' && " +
                             before + " '" ORB_PROGRAM "' " + arguments + " <'" + input + "' >'" + out.string() +
                             "' 2>'" + err.string() + "'";
    const int raw = std::system(line.c_str());
    outcome seen{WIFEXITED(raw) ? WEXITSTATUS(raw) : 256 + WTERMSIG(raw), bytes_of(out), bytes_of(err)};
    fs::remove(out);
    fs::remove(err);
    return seen;
  }

  const orb::temporary_folder own_folder;
  const fs::path folder = own_folder.path();
  const std::string example = ORB_SOURCE_DIR "/examples/ecoli536";
};

} // namespace whole
