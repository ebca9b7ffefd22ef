#include <cstdio>
#include <gtest/gtest.h>
#include <regex>
#include <string>

#include "frame/version.h"
#include "support/temporary_folder.h"

namespace orb {
namespace {

// Standard output of a shell command without its last line end; empty when it fails.
std::string output_of(const std::string &command) {
  std::string text;
  FILE *pipe = ::popen((command + " 2>/dev/null").c_str(), "r");
  for (int c; (c = std::fgetc(pipe)) != EOF;)
    text += static_cast<char>(c);
  const bool good = ::pclose(pipe) == 0;
  return good ? text.substr(0, text.find_last_not_of('\n') + 1) : "";
}

TEST(version, is_the_project_s_and_the_commit_is_the_one_checked_out) {
  const std::string source = ORB_SOURCE_DIR, lists = bytes_of(source + "/CMakeLists.txt");
  std::smatch found;
  ASSERT_TRUE(std::regex_search(lists, found, std::regex("project\\(orb VERSION ([0-9.]+)")));
  EXPECT_EQ(program_version(), found[1].str());
  const std::string git = "git -C '" + source + "' ";
  const bool checkout = output_of(git + "rev-parse --show-cdup") == "" && output_of(git + "rev-parse HEAD") != "";
  std::string commit(program_commit());
  if (commit.ends_with("-dirty"))
    commit.resize(commit.size() - 6);
  EXPECT_EQ(commit, checkout ? output_of(git + "describe --always") : "") << "a build after the last commit";
}

TEST(version, header_is_written_anew_when_its_text_changes_only) {
  const temporary_folder folder;
  const std::string name = folder.path().string(), header = name + "/made/v.h";
  const auto write = [&](const std::string &version) {
    return output_of("cmake -DSOURCE='" + name + "' -DVERSION=" + version + " -DHEADER='" + header + "' -P '" +
                     ORB_SOURCE_DIR + "/cmake/write_version.cmake' && echo done");
  };
  ASSERT_EQ(write("1.2.3"), "done");
  EXPECT_NE(bytes_of(header).find("VERSION \"1.2.3\""), std::string::npos);
  EXPECT_NE(bytes_of(header).find("COMMIT \"\""), std::string::npos) << "no checkout, no commit";
  const auto long_ago = std::filesystem::last_write_time(header) - std::chrono::hours(1);
  std::filesystem::last_write_time(header, long_ago);
  ASSERT_EQ(write("1.2.3"), "done");
  EXPECT_EQ(std::filesystem::last_write_time(header), long_ago);
  const std::string git = "git -C '" + name + "' -c user.name=n -c user.email=e ";
  ASSERT_NE(output_of(git + "init -q -b main && echo x > '" + name + "/x' && " + git + "add x && " + git +
                      "commit -qm first && echo made"),
            "");
  ASSERT_EQ(write("1.2.3"), "done");
  const std::string commit = output_of(git + "rev-parse --short HEAD");
  EXPECT_NE(bytes_of(header).find("COMMIT \"" + commit + "\""), std::string::npos) << bytes_of(header);
  folder.write("x", "changed");
  ASSERT_EQ(write("1.2.3"), "done");
  EXPECT_NE(bytes_of(header).find("COMMIT \"" + commit + "-dirty\""), std::string::npos) << bytes_of(header);
}

} // namespace
} // namespace orb
