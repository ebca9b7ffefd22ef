// A disk that fails at one call: whichever it is, the command says so, leaves nothing half under a good name, keeps
// what was there, and works when it is given again. tests/faults/failing_calls.cpp lets the calls fail.
#include <algorithm>
#include <cerrno>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <vector>

#include "support/program_run.h"

namespace {

using whole::bytes_of;
using whole::outcome;
namespace fs = std::filesystem;
using tree = std::map<std::string, std::string>; // path: bytes

struct disk_case {
  const char *name;
  std::vector<std::string> before; // undisturbed
  std::string command;
  std::string again; // what the command is given besides, after it failed
};

const std::string load = "load s.sizes --out l.ORBdb", net = "net l.ORBdb --out n.ORBns",
                  revise = "revise l.ORBdb n.ORBns --out r.ORBns", contigs = "contigs l.ORBdb r.ORBns --out c",
                  assemble = "assemble s.sizes --out d", report = "report c --out rep";
// The same results made otherwise, to be replaced.
const std::string other_load = load + " --tolerance 9", other_net = net + " --cutoff 12",
                  other_revise = revise + " --additional-cutoff 20", other_contigs = contigs + " --no-ordering",
                  other_assemble = assemble + " --tolerance 9";

const disk_case disk_cases[] = {
    {"load", {}, load, ""},
    {"net", {load}, net, ""},
    {"text_net", {load}, "net l.ORBdb --out n.txt", ""},
    {"revise", {load, net}, revise, ""},
    {"contigs", {load, net, revise}, contigs, ""},
    {"assemble", {}, assemble, " --resume"},
    {"report", {load, net, revise, contigs}, report, ""},
    {"load_anew", {other_load}, load + " --force", ""},
    {"net_anew", {load, other_net}, net + " --force", ""},
    {"revise_anew", {load, net, other_revise}, revise + " --force", ""},
    {"contigs_anew", {load, net, revise, other_contigs}, contigs + " --force", ""},
    {"assemble_anew", {other_assemble}, assemble + " --force", ""},
    {"report_anew", {load, net, revise, other_contigs, report, contigs + " --force"}, report + " --force", ""},
};

struct disk_call {
  std::string call, path;
  std::string file_name() const { // of the file that is meant
    std::string name = fs::path(path).filename().string();
    name.resize(std::min(name.size(), name.rfind(".tmp")));
    return name.ends_with(".orb.lock") ? name.substr(0, name.size() - 9) : name;
  }
};

std::string last_line(const std::string &text) {
  return text.substr(text.find_last_of('\n', std::max<std::size_t>(text.size(), 2) - 2) + 1);
}

void PrintTo(const disk_case &shown, std::ostream *out) {
  *out << shown.command;
}

bool holds_times(const std::string &path) {
  return path.ends_with("run.json") || path.ends_with("ORB.log");
}

// Reports that are written line by line as the run goes on.
bool grows(const std::string &path) {
  const std::string name = fs::path(path).filename().string();
  return name.starts_with("report_cl") || name == "report_contigs.txt" || name.starts_with("clones_in_MTP") ||
         name == "n.txt";
}

class failing_disk : public whole::program_test, public testing::WithParamInterface<disk_case> {
protected:
  void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer has to come before every other library";
#endif
    std::istringstream lines(bytes_of(example + "/EC001.sizes"));
    std::string text, line;
    for (int n_clones = 0; std::getline(lines, line); text += line + "\n")
      if (line.find("Gel") != std::string::npos && ++n_clones > 60)
        break;
    whole::write_bytes(folder / "base" / "s.sizes", text);
    for (const std::string &command : GetParam().before)
      ASSERT_EQ(in("base", command).status, 0) << command;
    before_ = tree_of("base");
  }

  outcome in(const std::string &place, const std::string &command, const std::string &variables = "") const {
    return orb(command + " --threads 1", "cd " + place + " && env SOURCE_DATE_EPOCH=1700000000 ORB_HOME=" +
                                             (folder / place / "home").string() + variables);
  }
  outcome disturbed(const std::string &place, int k, int error) const {
    return in(place, GetParam().command,
              " LD_PRELOAD=" ORB_FAILING_CALLS " ORB_FAULTS_BELOW=" + (folder / place).string() +
                  "/ ORB_FAULTS_LIST=" + (folder / (place + ".calls")).string() +
                  " ORB_FAULTS_FIRST=" + std::to_string(k) + " ORB_FAULTS_ERROR=" + std::to_string(error));
  }
  std::vector<disk_call> calls_of(const std::string &place) const {
    std::istringstream lines(bytes_of(folder / (place + ".calls")));
    std::vector<disk_call> calls;
    for (disk_call next; lines >> next.call && std::getline(lines >> std::ws, next.path);)
      calls.push_back(next);
    return calls;
  }
  tree tree_of(const std::string &place) const {
    tree files;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(folder / place))
      if (entry.is_regular_file())
        files[fs::relative(entry.path(), folder / place).string()] = bytes_of(entry.path());
    return files;
  }
  // What a finished command leaves that can be compared. A run that was begun anew has a folder of another name, and
  // what a failed one made stays beside it.
  tree results_in(const std::string &place) const {
    tree files = tree_of(place), results;
    std::string run;
    for (const auto &[path, bytes] : files)
      if (path == "c/run.json" || path == "d/run.json")
        run = "/" + nlohmann::json::parse(bytes)["outputs"]["run_folder"].value("name", "") + "/";
    for (const auto &[path, bytes] : files) {
      const std::size_t at = run.empty() ? std::string::npos : path.find(run);
      const bool of_other_run = at == std::string::npos && path.find("/ORB_contigs_") != std::string::npos;
      if (!holds_times(path) && (!of_other_run || run.empty()))
        results[at == std::string::npos ? path : path.substr(at).replace(0, run.size(), "RUN/")] = bytes;
    }
    return results;
  }
  void nothing_is_half(const std::string &place, const tree &wanted, bool lock_is_left) const {
    for (const auto &[path, bytes] : tree_of(place)) {
      const auto whole = wanted.find(path), old = before_.find(path);
      if (path.ends_with(".lock") && lock_is_left)
        continue;
      EXPECT_TRUE(path.find(".tmp") == std::string::npos && !path.ends_with(".lock")) << path;
      EXPECT_TRUE(!path.ends_with("run.json") || nlohmann::json::accept(bytes)) << path;
      if (holds_times(path))
        continue;
      EXPECT_TRUE((whole != wanted.end() && whole->second == bytes) || (old != before_.end() && old->second == bytes) ||
                  (grows(path) && whole != wanted.end() && whole->second.starts_with(bytes)))
          << path << " is half, " << bytes.size() << " bytes";
    }
    for (const auto &[path, bytes] : before_)
      EXPECT_TRUE(fs::exists(folder / place / path)) << path << " is lost";
  }

  tree before_;
};

// Calls that a command can do without: a look at what an input is or whether a lock is its own, the last line of its
// log, the room that it keeps for its record, and with it the first try to write the record's last state.
bool is_best_effort(const disk_call &failed) {
  return failed.call.starts_with("fopen") || failed.path.ends_with(".lock") || failed.file_name() == "ORB.log" ||
         failed.file_name() == "home" || failed.file_name() == ".orb_writable" ||
         failed.file_name().ends_with("run.json");
}

// All of them, or the first of each kind of call and file at a stride, and the last ones.
std::vector<int> chosen(const std::vector<disk_call> &calls) {
  constexpr std::size_t n_wanted = 20, n_last = 4;
  std::vector<int> all, firsts;
  std::set<std::string> kinds;
  for (int k = 1; const disk_call &call : calls) {
    std::string kind = call.call + call.file_name();
    std::erase_if(kind, [](unsigned char c) { return std::isdigit(c); });
    if (kinds.insert(kind).second)
      firsts.push_back(k);
    all.push_back(k++);
  }
  if (std::getenv("ORB_ALL_FAULTS"))
    return all;
  std::set<int> some(all.end() - n_last, all.end());
  for (std::size_t i = 0; i < firsts.size(); i += std::max<std::size_t>(1, firsts.size() / n_wanted))
    some.insert(firsts[i]);
  return {some.begin(), some.end()};
}

TEST_P(failing_disk, is_told_and_leaves_nothing_half) {
  fs::copy(folder / "base", folder / "undisturbed", fs::copy_options::recursive);
  ASSERT_EQ(disturbed("undisturbed", 0, 0).status, 0);
  const tree wanted = tree_of("undisturbed"), results = results_in("undisturbed");
  const std::vector<disk_call> calls = calls_of("undisturbed");
  ASSERT_GT(calls.size(), 20u);
  for (const int k : chosen(calls)) {
    fs::copy(folder / "base", folder / "w", fs::copy_options::recursive);
    const int error = std::vector{ENOSPC, EIO, EACCES}[static_cast<std::size_t>(k % 3)];
    const outcome failed = disturbed("w", k, error);
    const std::vector<disk_call> seen = calls_of("w");
    ASSERT_GE(seen.size(), static_cast<std::size_t>(k));
    const disk_call &at = seen[static_cast<std::size_t>(k - 1)];
    SCOPED_TRACE("call " + std::to_string(k) + " of " + std::to_string(calls.size()) + ", " + at.call + " " + at.path +
                 "; status " + std::to_string(failed.status) + ": " + last_line(failed.err));
    if (failed.status == 0) {
      EXPECT_TRUE(is_best_effort(at));
    } else {
      EXPECT_EQ(failed.status, 3);
      EXPECT_NE(failed.err.find(at.file_name() == ".orb_writable" ? "into folder" : at.file_name()), std::string::npos);
    }
    nothing_is_half("w", wanted, at.call == "open-to-read" && at.path.ends_with(".lock")); // not known to be its own
    const outcome again = failed.status == 0 ? failed : in("w", GetParam().command + GetParam().again);
    EXPECT_EQ(again.status, 0) << again.err;
    const tree now = again.status == 0 ? results_in("w") : results;
    for (const auto &[path, bytes] : results)
      EXPECT_TRUE(now.contains(path) && now.at(path) == bytes) << path;
    fs::remove_all(folder / "w");
    fs::remove(folder / "w.calls");
  }
}

INSTANTIATE_TEST_SUITE_P(commands, failing_disk, testing::ValuesIn(disk_cases),
                         [](const auto &one) { return one.param.name; });

} // namespace
