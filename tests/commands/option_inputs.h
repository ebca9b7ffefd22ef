// The inputs that the cases use: made once a process by the commands themselves, from the example, then only read.
#pragma once

#include <algorithm>
#include <set>
#include <sstream>

#include "frame/random_source.h"
#include "option_run.h"
#include "support/sequence_helpers.h"

namespace option_test {

class case_inputs {
public:
  case_inputs() {
    for (const char *name : {"lists", "shared", "tiny"})
      fs::create_directories(folder_.path() / name);
    fs::create_directory_symlink(ORB_SOURCE_DIR "/examples/ecoli536", folder_.path() / "plates");
    write_sequence();
    const current_folder work(folder_.path());
    orb::project_state project;
    prepare(project);
    const auto run = [&](const std::string &line) { run_or_throw(project, line); };
    run("library.load file=in/plates");
    run("library.save out=in/library.ORBdb");
    run("net.create");
    run("net.save out=in/raw.ORBns");
    run("net.save_text out=in/net.txt");
    run("net.revise out=revised/net.ORBns");
    run("net.save out=in/net.ORBns");
    run("contigs.assemble out=assembly no-ordering=yes no-pair-tables=yes no-drawings=yes");
    fs::rename(project.origin(orb::project_part::contigs).file, folder_.path() / "run");
    run("contigs.export to=fpc out=in/assembly.fpc");
    write_lists(project.database());
    write_assemblies(project.database());
    write_parts();
    run("list.select list=in/small.txt fingerprints=in/plates out=in/small.sizes frequency=1");
    run("list.select list=in/one.txt fingerprints=in/plates out=in/one.sizes frequency=1");
    run("markers.load file=in/markers.txt");
    run("markers.save out=in/markers.ORB");
    run("pvalue.table out=in/tables runs=100 min-bands=20 step=40 steps=4");
    listing_ = listing();
  }
  const fs::path &path() const { return folder_.path(); }
  // A command that writes among its inputs would change what later cases see.
  std::vector<std::string> changes() const {
    const std::set<std::string> now = listing();
    std::vector<std::string> names;
    std::set_symmetric_difference(now.begin(), now.end(), listing_.begin(), listing_.end(), std::back_inserter(names));
    return names;
  }

private:
  void write_sequence() const {
    orb::random_source chance(7);
    const std::string letters = orb_test::random_sequence(60000, 150, chance);
    folder_.write("genome.fa", ">one\n" + letters.substr(0, 40000) + "\n>two\n" + std::string(300, 'N') +
                                   letters.substr(40000) + "\n");
  }

  std::vector<std::string> lines_of(const fs::path &file) const {
    std::istringstream text(bytes_of(file));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
      while (!line.empty() && (line.back() == '\r' || line.back() == ' '))
        line.pop_back();
      if (!line.empty())
        lines.push_back(line);
    }
    return lines;
  }

  // Of the largest contig, from left to right.
  std::vector<std::string> names_of_contig() {
    std::map<std::string, std::vector<std::pair<int, std::string>>> contigs;
    for (const std::string &line : lines_of(folder_.path() / "run" / "coordinates_of_clones.txt")) {
      std::istringstream fields(line);
      std::string clone, contig;
      int size = 0, left = 0;
      if (fields >> clone >> contig >> size >> left)
        contigs[contig].emplace_back(left, clone);
    }
    std::vector<std::pair<int, std::string>> largest;
    for (auto &[contig, clones] : contigs)
      if (clones.size() > largest.size())
        largest = clones, name_of_contig_ = contig;
    std::sort(largest.begin(), largest.end());
    std::vector<std::string> names;
    for (const auto &[left, clone] : largest)
      names.push_back(clone);
    return names;
  }

  void write_list(const std::string &name, std::vector<std::string> names) const { folder_.write(name, joined(names)); }

  void write_lists(const orb::class_DB_of_clones &database) {
    const std::vector<std::string> all = names_of_contig();
    const std::vector<std::string> list(all.begin(), all.begin() + 24);
    const auto part = [&](std::size_t from, std::size_t to) {
      return std::vector<std::string>(list.begin() + from, list.begin() + to);
    };
    write_list("list.txt", list);
    write_list("small.txt", {all.begin(), all.begin() + 40});
    write_list("lists/a.txt", part(0, 6));
    write_list("lists/b.txt", part(6, 12));
    write_list("lists/c.txt", part(12, 20));
    write_list("reversed.txt", {list.rbegin(), list.rend()});
    std::vector<std::string> scattered;
    for (std::size_t i = 0; i < all.size(); i += 4)
      scattered.push_back(all[i]);
    write_list("scattered.txt", scattered);
    write_list("one.txt", part(0, 1));
    write_list("other.txt", part(8, 16));
    std::string joined = "*Network n\n*Vertices 6\n";
    for (int i = 0; i < 6; ++i)
      joined += std::to_string(i + 1) + " \"" + list[static_cast<std::size_t>(i)] + "\"\n";
    folder_.write("supercontigs/joined.net", joined);
    folder_.write("drawn.net", joined + "*Edges 3\n1 2 20 l \"20.00\"\n2 3 9 l \"9.00\"\n3 4 30 l \"30.00\"\n");
    folder_.write("addresses.txt", "lists/a.txt\nlists/b.txt\n");
    folder_.write("columns.txt", list[0] + "," + list[1] + "\n" + list[2] + "\n");
    folder_.write("exclude.txt", list[1] + "\n");
    folder_.write("names.txt", "NEW0001\t" + list[0] + "\nNEW0002\t" + list[1] + "\n");
    std::string markers, of_markers, in_one_column, of_all;
    std::vector<std::string> library;
    for (orb::clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone)
      library.push_back(database.name_of_clone_get(clone));
    for (const std::string &clone : library)
      of_all += clone + "\tw\n"; // what the revision took apart is joined again
    folder_.write("markers_of_all.txt", of_all);
    for (std::size_t i = 0; i < list.size(); ++i)
      markers += list[i] + "\tm" + std::to_string(i / 4) + "\tn" + std::to_string(i % 3) + "\n";
    for (std::size_t i = 0; i + 4 <= list.size(); i += 4)
      of_markers += "m" + std::to_string(i / 4) + "\t" + list[i] + "," + list[i + 1] + "\n";
    for (std::size_t i = 0; i < list.size(); ++i)
      in_one_column += list[i] + "\tm" + std::to_string(i / 4) + ",n" + std::to_string(i % 3) + "\n";
    folder_.write("markers.txt", markers);
    folder_.write("of_markers.txt", of_markers);
    folder_.write("one_column.txt", in_one_column);
    folder_.write("positions.txt", "m0\t100\nm1\t250\nm3\t900\n");
    folder_.write("project.txt", "library,in/library.ORBdb\nmarkers,in/markers.txt\nnet,in/net.ORBns\n");
    folder_.write("contig_names.txt", name_of_contig_ + "\tctg_new\n");
    write_pools(library);
  }

  // Each clone in the well that its name says; probes in the pools of clones of the contig.
  void write_pools(const std::vector<std::string> &library) const {
    std::string recoding = "pools\nheads\n", probes = "probe\tpools\n";
    for (const std::string &clone : library) { // "EC001A01"
      const std::string plate = clone.substr(2, 3), well = clone.substr(5);
      recoding += plate + "\t" + well + "\tx\t" + plate + "\t" + well + "\n";
    }
    folder_.write("Input.dis", "5,0,2\n1 2 30\n2 3 10\n3 4 10\n1 4 20\n1 5 90\n2 4 50\n3 5 15\n");
    folder_.write("recoding.txt", recoding);
    std::vector<std::string> fields(1 + 17 + 16 + 24);
    const std::vector<std::string> contig = lines_of(folder_.path() / "list.txt");
    for (std::size_t k = 0; k < contig.size(); k += 6) {
      std::fill(fields.begin(), fields.end(), "");
      fields[0] = "probe" + std::to_string(k);
      for (std::size_t i = k; i < k + 3; ++i) {
        fields[static_cast<std::size_t>(std::stoi(contig[i].substr(2, 3)))] = "+";
        fields[static_cast<std::size_t>(18 + contig[i][5] - 'A')] = "+";
        fields[static_cast<std::size_t>(33 + std::stoi(contig[i].substr(6)))] = "+";
      }
      for (std::size_t i = 0; i < fields.size(); ++i)
        probes += fields[i] + (i + 1 < fields.size() ? "\t" : "\n");
    }
    folder_.write("probes.txt", probes);
    folder_.write("positive.txt", "Plates: 2\nP1\nP2\ncolumns: 3\n1\n2\n3\nrows: 3\nA\nB\nC\n");
  }

  // What goes with assemblies and clusters.
  void write_assemblies(const orb::class_DB_of_clones &database) const {
    const std::vector<std::string> list = lines_of(folder_.path() / "list.txt");
    folder_.write("zone.txt", "# z1 - remark: r\n" + list[0] + " " + list[1] + "\n# z2\n" + list[2] + "\n");
    folder_.write("paths.txt",
                  "// paths\n" + name_of_contig_ + "    " + list[0] + " " + list[5] + " " + list[9] + "\n");
    write_list("shared/a.txt", {list[0], list[1]});
    write_list("shared/b.txt", {list[1], list[2]});
    fs::create_directories(folder_.path() / "wide");
    fs::copy_file(folder_.path() / "small.txt", folder_.path() / "wide/w.txt");
    for (std::size_t i = 0; i + 2 <= list.size(); i += 2)
      write_list("tiny/t" + std::to_string(10 + i) + ".txt", {list[i], list[i + 1]});
    std::string of_small;
    for (int i = 0; i < 40; ++i)
      of_small += std::to_string(i / 10 + 1) + "\n";
    folder_.write("clusters_of_small.txt", of_small);
    folder_.write("clusters_of_a.txt", "1\n1\n2\n2\n2\n1\n");
    // a clone under the other number of its plate
    for (const std::string &name : lines_of(folder_.path() / "list.txt"))
      if (const std::size_t at = name.find("002"); at != std::string::npos) {
        std::string other = name;
        other.replace(at, 3, "001");
        if (database.clone_number_get(other) < 1)
          folder_.write("other_plate.fpc", "// fpc project p\n\nBAC : \"" + other + "\"\nMap \"" + name_of_contig_ +
                                               "\" Ends Left 1\nMap \"" + name_of_contig_ + "\" Ends Right 9\n");
      }
  }

  // The text net in two parts.
  void write_parts() const {
    const std::string text = bytes_of(folder_.path() / "net.txt");
    const std::size_t half = text.find("\nclone\t", text.size() / 2) + 1;
    fs::create_directories(folder_.path() / "parts");
    folder_.write("parts/net_1.txt", text.substr(0, half));
    folder_.write("parts/net_2.txt", text.substr(half));
  }

  std::set<std::string> listing() const {
    std::set<std::string> names;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(folder_.path()))
      if (entry.is_regular_file())
        names.insert(entry.path().string() + " " + std::to_string(entry.file_size()));
    return names;
  }

  orb::temporary_folder folder_;
  std::string name_of_contig_;
  std::set<std::string> listing_;
};

} // namespace option_test
