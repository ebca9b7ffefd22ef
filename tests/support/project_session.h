// One project with a scripted front end, driven by commands and verbs as a front end drives it; all that it holds as
// text; the files that it wrote.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "commands/command_door.h"
#include "commands/command_table.h"
#include "commands/script.h"
#include "commands/verbs.h"
#include "database/class_markers.h"
#include "project/project_file.h"
#include "support/temporary_folder.h"

namespace orb_test {

namespace fs = std::filesystem;
using namespace orb;

// The files of a folder and all below it, by their names in it. Paths of the folder stand as "HERE" in them.
inline std::map<std::string, std::string> files_below(const fs::path &folder) {
  std::map<std::string, std::string> files;
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file())
      continue;
    std::string bytes = bytes_of(entry.path());
    for (std::size_t at; (at = bytes.find(folder.string())) != std::string::npos;)
      bytes.replace(at, folder.string().size(), "HERE");
    files[fs::relative(entry.path(), folder).string()] = bytes;
  }
  return files;
}

struct verb_end {
  exit_status status = exit_status::done;
  std::vector<std::string> results, people;
};

class session {
public:
  session() : project(front(), {}) {
    project.frame().working_folder_set(working_folder_.path());
    project.start();
  }
  session(const session &) = delete;
  session &operator=(const session &) = delete;

  // A line of a script; what it can't be bound to is a wrong command.
  command_result run(const std::string &line) {
    try {
      const script_line parsed = parse_script_line(line, 1);
      bound_command command = bound_by_name(parsed.command);
      for (const auto &[key, value] : parsed.values)
        command.set(key, value);
      return run_command(project, command);
    } catch (const usage_error &wrong) {
      return command_result::ended(exit_status::wrong_command, wrong.what());
    }
  }
  // Lines that have to be done.
  void done(const std::vector<std::string> &lines) {
    for (const std::string &line : lines) {
      const command_result result = run(line);
      ASSERT_EQ(result.status, exit_status::done) << line << ": " << result.why << "\n" << told();
    }
  }
  verb_end run_verb(const std::string &name, const std::map<std::string, std::string> &options) {
    verb_run call(*verb_by_name(name));
    for (const auto &[option, value] : options)
      call.set(option, value);
    verb_end end;
    const auto people = [&](const std::string &text) { end.people.push_back(text); };
    const auto stage_ends = [&](const std::string &summary, bool well) {
      if (well)
        end.people.push_back(summary);
    };
    end.status = orb::run_verb(call, project,
                               {[&](const std::string &text) { end.results.push_back(text); }, people, people,
                                [](int, int, const std::string &) {}, stage_ends});
    return end;
  }
  std::string told() const {
    std::string text;
    for (const std::string &message : record.messages)
      text += message + "\n";
    return text;
  }

  answer_book book;
  front_end_record record;
  std::function<bool()> on_yield; // true: stop; the user's only chance to act while a command runs
  project_state project;

private:
  front_end front() {
    setenv("SOURCE_DATE_EPOCH", "1700000000", 1); // run folders are named by it
    front_end shown = scripted_front_end(book, record);
    shown.yield = [this] { return on_yield && on_yield(); };
    return shown;
  }

  orb::temporary_folder working_folder_;
};

inline std::string text_of_markers(const class_markers &markers, clone_number clone) {
  std::string text;
  number_list list;
  markers.list_of_markers_in_clone_get(clone, list);
  for (const std::int32_t marker : list.members())
    text += " " + markers.name_of_marker_get(marker) + "@" + markers.position_of_marker_get(marker);
  return text;
}

inline void add_contigs(const class_FPCto_import &registry, std::ostringstream &text) {
  for (const cluster_id id : registry.current_list_of_clusters_in_use_get().members()) {
    text << registry.name_of_cluster_get(id) << ":";
    for (const clone_number clone : registry.clones_of_cluster(id))
      text << " " << clone << "@" << registry.clone_coor_left(clone) << "-" << registry.clone_coor_right(clone);
    text << " path";
    for (const clone_number clone : registry.tiling_path_get(id).members())
      text << " " << clone;
    text << "\n";
  }
}

inline void add_tables(const class_clone_dist_table &table, std::ostringstream &text) {
  text << table.is_loaded(0) << table.is_loaded(1) << "\n";
  for (std::int32_t i = 0; i <= table.n_steps_get() && table.is_loaded(); ++i)
    for (std::int32_t j = 0; j <= i; ++j)
      for (const int mode : {0, 1})
        if (const p_value_situation *at = table.situation(table.size(i), table.size(j), mode))
          text << table.size(i) << "," << table.size(j) << ": " << at->a0 << " " << at->a1 << " " << at->a2 << "\n";
}

// The parts of a project as text: two projects that hold the same have the same one, wherever it came from.
inline std::string text_of_parts(const project_state &project) {
  const class_DB_of_clones &database = project.database();
  std::ostringstream text;
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone) {
    text << database.name_of_clone_get(clone);
    for (const band_value band : database.bands_of_clone(clone))
      text << " " << band;
    if (database.markers().total_number_of_markers_get() > 0)
      text << text_of_markers(database.markers(), clone);
    text << "\n";
  }
  const class_net &net = project.signif().net();
  for (vertex_number v = 1; v <= net.number_of_vertices_get(); ++v)
    for (const auto &edge : net.edges_of_vertex(v))
      text << v << "-" << edge.neighbour << " " << edge.value << " " << edge.index2 << "\n";
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone)
    text << project.usable_values().clone_in_lists_get(clone) << ",";
  add_contigs(*database.contigs(), text);
  for (const clone_number clone : project.pools().coded_clones().members())
    text << clone << "@" << project.pools().position_of_clone_in_pools_text_get(clone) << " ";
  add_tables(project.pvalue_tables(), text);
  return text.str();
}

// The same with settings, parameters and where each part came from.
inline std::string text_of_project(const project_state &project) {
  const class_DB_of_clones &database = project.database();
  const project_settings &settings = project.settings();
  std::ostringstream text;
  text << text_of_project_panel(project) << settings.clone_name_format_input << settings.clone_name_format_output
       << settings.use_file_with_connections << settings.same_metric_as_net << settings.same_metric_net_ord_as_net
       << settings.markers_in_clones << " index " << database.taking_tollerance_into_account_index_get() << " capacity "
       << database.max_number_of_real_clones_get() << "\n";
  for (const project_part part : all_project_parts)
    text << project.has(part) << project.origin(part).file << project.origin(part).made_by << "\n";
  return text.str() + text_of_parts(project);
}

// Each test has a folder with small inputs: neighbouring clones of the example, lists of them, markers.
class session_test : public ::testing::Test {
protected:
  session_test() {
    write("plates/p.sizes", records_of_start());
    write("bad/p.sizes", "A1\t3\tGel\n10\n30\n20\n-1\n");
    write("clones.txt", names(1, 14));
    write("part.txt", names(3, 6));
    write("markers.txt", "M1\t" + line_of(2, 4) + "\tz1\nM2\t" + line_of(5, 7) + "\tz2\n");
    write("lists/c1.txt", names(1, 8));
    write("lists/c2.txt", names(9, 14));
  }
  fs::path path(const std::string &name) const { return folder.path() / name; }
  std::string text(const std::string &name) const { return path(name).string(); }
  void write(const std::string &name, const std::string &bytes) const {
    fs::create_directories(path(name).parent_path());
    folder.write(name, bytes);
  }
  std::string load() const { return "library.load file=" + text("plates"); }
  // The records of the example's clones that lie at the start of its genome.
  static std::string records_of_start() {
    const std::vector<std::string> wanted = all_names();
    std::string records;
    for (const char *plate : {"EC001.sizes", "EC002.sizes"}) {
      std::istringstream all(bytes_of(example() / plate));
      bool is_wanted = false;
      for (std::string line; std::getline(all, line);) {
        if (line.starts_with("EC"))
          is_wanted = std::find(wanted.begin(), wanted.end(), line.substr(0, line.find('\t'))) != wanted.end();
        if (is_wanted)
          records += line + "\n";
      }
    }
    return records;
  }
  // From left to right.
  static std::vector<std::string> all_names() {
    constexpr int end_of_region = 900000; // base pairs
    std::istringstream truth(bytes_of(example() / "truth.tsv"));
    std::vector<std::pair<int, std::string>> found;
    std::string line, name, part, chromosome;
    std::getline(truth, line);
    while (std::getline(truth, line)) {
      std::istringstream fields(line);
      int start = 0;
      fields >> name >> part >> chromosome >> start;
      if (part == "1" && start < end_of_region)
        found.emplace_back(start, name);
    }
    std::sort(found.begin(), found.end());
    std::vector<std::string> names;
    for (const auto &[start, clone] : found)
      names.push_back(clone);
    return names;
  }
  static fs::path example() { return fs::path(ORB_SOURCE_DIR) / "examples/ecoli536"; }
  // The clones from the first to the last one, from 1.
  static std::string names(int first, int last) {
    std::string text;
    const std::vector<std::string> all = all_names();
    for (int i = first; i <= last; ++i)
      text += all[static_cast<std::size_t>(i) - 1] + "\n";
    return text;
  }

  // The same in one line, with commas.
  static std::string line_of(int first, int last) {
    std::string text = names(first, last);
    text.pop_back();
    std::replace(text.begin(), text.end(), '\n', ',');
    return text;
  }

  orb::temporary_folder folder;
};

} // namespace orb_test
