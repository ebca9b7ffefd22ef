// Nets, runs, what an evaluation reads of them, tables of p-values, the project file.
#include "command_reader.h"
#include "contigs/kept_registry.h"
#include "contigs/run_folder.h"

namespace fuzz_test {

namespace fs = std::filesystem;

namespace {

void add_nets(fuzz_table &table) {
  command_reader native{{"library", "net"}, "x.ORBns", "net.load file=read/x.ORBns"};
  native.write = [](session &on) {
    run_lines(on, {"net.save out=out/n.ORBns"});
    promise(bytes_of("out/n.ORBns") == bytes_of("read/x.ORBns"), "a native net isn't written as it was read");
    return true;
  };
  native.read_again = {"net.load file=out/n.ORBns"};
  table.push_back(target_of("native_net", native, {"net.ORBns"}));
  command_reader text{{"library", "net"}, "x.txt", "net.load_text file=read/x.txt out=out/n.ORBns"};
  text.write = by_lines({"metric.set cutoff=0", "net.save_text out=out/n.txt"});
  text.read_again = {"net.load_text file=out/n.txt out=out/again.ORBns"};
  table.push_back(target_of("text_net", text, {"net.txt"}));
}

// A run whose file is changed; written with the registry as it was read.
void add_run_file(fuzz_table &table, const std::string &name, const std::string &folder, const std::string &file,
                  std::vector<std::string> kept = {}) {
  command_reader reader{{"library", "contigs"}, file, "contigs.load folder=read"};
  reader.folder = folder;
  reader.write = [](session &on) {
    fs::copy("read", "out/run", fs::copy_options::recursive);
    keep_registry(*on.project.database().contigs(), on.project.database(), "out/run");
    return true;
  };
  reader.read_again = {"contigs.load folder=out/run"};
  table.push_back(target_of(name, reader, {}, std::move(kept)));
}

void add_runs(fuzz_table &table) {
  add_run_file(table, "run_report", "old_run", "report_clusters.txt");
  add_run_file(table, "run_list", "old_run", "cl_2/cl_2.txt");
  add_run_file(table, "run_path", "old_run", "cl_2/MTP_cl_2.txt", {"AB001C07\r\nAB001C07\r\nAB001C08\r\n"});
  add_run_file(table, "run_coordinates", "old_run", "cl_2/coor_cl_2.txt");
  add_run_file(table, "run_pair", "old_run", "Heaps/clones_MTP_coor_and_markers_cl_3.txt");
  add_run_file(table, "registry_clusters", "run", "registry_clusters.tsv");
  add_run_file(table, "registry_clones", "run", "registry_clones.tsv");
  command_reader order{
      {}, "cl_2/Consec_dist_NoBuriedORB_cl_2.txt", "contigs.evaluate folder=read truth=../in/truth.tsv"};
  order.folder = "run";
  order.does = effect::none;
  table.push_back(target_of("run_order", order));
  command_reader truth{{}, "x.tsv", "contigs.evaluate folder=../in/run truth=read/x.tsv out=out"};
  truth.does = effect::none;
  table.push_back(target_of("truth", truth, {"truth.tsv"}));
  command_reader q_clones{{}, "q.txt", "contigs.evaluate folder=../in/run truth=../in/truth.tsv q-clones=read/q.txt"};
  q_clones.does = effect::none;
  table.push_back(target_of("q_clones", q_clones, {"q_clones.txt"}));
  table.push_back(target_of("contig_names", {{"library", "contigs"}, "n.txt", "contigs.rename file=read/n.txt"},
                            {"contig_names.txt"}));
  command_reader lists{{"library", "contigs"}, "a.txt", "contigs.load_folder folder=read"};
  lists.folder = "lists";
  table.push_back(target_of("folder_of_lists", lists));
}

std::string text_of_contigs(const session &of) {
  std::ostringstream text;
  orb_test::add_contigs(*of.project.database().contigs(), text);
  return text.str();
}

// Contigs whose names would give two folders one name are refused.
bool write_as_run(session &on) {
  const command_result result = on.run("contigs.save_run out=out");
  promise(result.completed || !on.told().empty(), "refused without a word");
  if (result.completed)
    fs::rename(result.files.front().path, "out/run");
  return result.completed;
}

void add_fpc(fuzz_table &table) {
  command_reader assembly{{"library", "markers"}, "x.fpc", "fpc.read file=read/x.fpc out=out print=no"};
  assembly.folder = "fpc";
  assembly.write = write_as_run;
  assembly.read_again = {"contigs.load folder=out/run"};
  assembly.text = text_of_contigs;
  table.push_back(target_of("fpc_assembly", assembly));
  for (const char *file : {"x.fpc", "x.cor"}) {
    command_reader bands{{"library"}, file, "library.load file=read/x.fpc gel-length=2000 tolerance=2"};
    bands.folder = "fpc";
    bands.write = by_lines({"library.save out=out/l.ORBdb"});
    bands.read_again = {"library.load file=out/l.ORBdb"};
    bands.limits.bytes = 6 << 20; // frequencies of all places of a gel
    table.push_back(target_of(std::string("fpc_bands_") + (file + 2), bands));
  }
  command_reader paths{{"library", "net", "contigs"}, "p.txt", "fpc.mtp file=read/p.txt out=out"};
  paths.does = effect::none;
  table.push_back(target_of("fpc_paths", paths, {"fpc_paths.txt"}));
  table.push_back(target_of("fpc_specified", {{"library"}, "z.txt", "fpc.specified file=read/z.txt out=out"},
                            {"fpc_zone.txt", "list.txt"}));
}

// The same files, with six decimals, from what is read of them.
bool write_tables(session &on) {
  process_frame &frame = on.project.frame();
  const fs::path before = frame.working_folder_get();
  frame.working_folder_set("out");
  const class_clone_dist_table &table = on.project.pvalue_tables();
  table.write_table_sizes(frame);
  for (const int mode : {0, 1})
    if (table.is_loaded(mode))
      table.write_tables(frame, mode == 0);
  frame.working_folder_set(before);
  return true;
}

bool write_tables_twice(session &on) {
  write_tables(on);
  const auto first = orb_test::files_below("out");
  run_lines(on, {"pvalue.load folder=out"});
  write_tables(on);
  promise(orb_test::files_below("out") == first, "tables are written otherwise the second time");
  return true;
}

void add_pvalue_tables(fuzz_table &table) {
  for (const auto &[name, file] :
       {std::pair{"pvalue_sizes", "parameters_table.txt"}, std::pair{"pvalue_curves_iid", "parameters_a1_iid.txt"},
        std::pair{"pvalue_curves_fr", "parameters_a2_fr.txt"}}) {
    command_reader reader{{"tables"}, file, "pvalue.load folder=read"};
    reader.folder = "tables";
    reader.write = write_tables_twice;
    reader.limits.bytes = 32 << 20; // the largest grid that a file may ask for
    table.push_back(target_of(name, reader));
  }
}

} // namespace

void add_net_and_run_targets(fuzz_table &table) {
  add_nets(table);
  add_runs(table);
  add_fpc(table);
  add_pvalue_tables(table);
  // What can't be loaded of a project is told, and the rest is loaded.
  command_reader project{{"library", "net"}, "p.txt", "project.open file=read/p.txt"};
  project.does = effect::some;
  table.push_back(target_of("project_file", project, {"project.txt"}));
}

} // namespace fuzz_test
