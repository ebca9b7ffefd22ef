// The verbs that work on finished runs and on what can be read as one.
#include "commands/verb_steps.h"

namespace orb {

using namespace verb_parts;

namespace {

void run_options(parameter_list &list, verb_run &call) {
  list.add("run", call.run_folder, "folder of a run, or of an assembly").type("RUN").needed();
  list.add("library", call.library, "library of the run").type("LIB").unset("by its run.json");
}

void picture_options(parameter_list &list, verb_run &call) {
  list.add("run", call.run_folder, "a drawn net, or the folder of a run or of an assembly")
      .type("FILE.net|RUN")
      .needed();
  list.add("library", call.library, "library of the run").type("LIB").unset("by its run.json");
  list.add("net", call.net, "net of the run").type("NET").unset("by its run.json");
}

void retain_options(parameter_list &list, verb_run &call) {
  run_options(list, call);
  list.add("net", call.net, "net of the run").type("NET").unset("by its run.json");
}

std::vector<step> report_steps() {
  const step load{"contigs.load", "", {{"folder", ""}}};
  std::vector<step> steps = library_and({markers(), load});
  const auto add =
      [&](const char *row, const char *when = "", std::vector<std::pair<std::string, std::string>> names = {},
          std::optional<project_part> if_there = {}, std::vector<std::pair<std::string, std::string>> defaults = {}) {
        names.emplace_back("out", "out");
        steps.push_back({row, "report", std::move(names), when, {}, if_there, std::move(defaults)});
      };
  const std::pair<std::string, std::string> estimate{"bp-per-band", "estimate"};
  add("contigs.rename", "new-names", {{"file", "new-names"}});
  add("contigs.remarks", "", {}, project_part::markers);
  add("contigs.statistics");
  add("contigs.coordinates");
  add("contigs.names");
  add("contigs.lists");
  add("contigs.fpc");
  add("contigs.marker_positions", "", {}, project_part::markers);
  add("contigs.marker_clones", "", {}, project_part::markers);
  return steps;
}

// Pictures of a run need its library and contigs, those of a drawing need nothing.
void add_viewer_verbs(std::vector<verb> &table, const verb &exported) {
  verb picture = plain_verb("picture", "FILE.net|RUN --out FILE.png|.svg|.pdf",
                            "a picture of a drawn net, or of the nets of contigs of a finished run",
                            "orb picture results/ecoli536 --contig cl_3 --out cl_3.png", {"run"}, place::beside_file,
                            {exported.steps.begin(), exported.steps.end() - 1});
  for (step &loads : picture.steps)
    if (loads.when.empty())
      loads.when = "library";
  picture.steps.push_back({"contigs.picture", "picture", {}, "library"});
  picture.steps.push_back({"net.picture", "picture", {{"file", ""}}, "!library"});
  picture.extra = picture_options;
  picture.prepare = prepare_picture_verb;
  picture.needed = {"out"};
  picture.says_saved = true;
  table.push_back(picture);
  verb layout =
      plain_verb("layout", "FILE.net --out FILE.net|.tsv", "places for the nodes of a drawn net",
                 "orb layout contig.net --out places.tsv", {"file"}, place::beside_file, {{"net.layout", "layout"}});
  layout.says_saved = true;
  table.push_back(layout);
  table.push_back(plain_verb("view", "FILE.net --do CONTROL", "the viewer of nets without its window",
                             "orb view contig.net --do mnuSelectAll --do mnuOptions_Multilevel --out unfolded.net",
                             {"file"}, place::beside_file, {{"net.view", "view"}}));
}

// What reading an assembly leaves to other verbs: the library keeps its own parameters.
step library_named() {
  return {"library.load", "load", {{"file", "library"}, {"source", ""}, {"keep", ""}}};
}
step assembly() {
  return {"fpc.read", "read", {{"keep-contigs", ""}}, {}, {}, {}, {{"bp-per-band", "estimate"}}};
}
step assembly_quietly() {
  return {"fpc.read",
          "read",
          {{"keep-contigs", ""}, {"specified", ""}},
          {},
          {{"print", "no"}},
          {},
          {{"bp-per-band", "estimate"}}};
}

void add_fpc_verbs(std::vector<verb> &table) {
  table.push_back(plain_verb("fpc read", "FILE.fpc --library LIB --out DIR",
                             "an assembly of the FPC program as a run that all other verbs read",
                             "orb fpc read project.fpc --library project.ORBdb --out read", {"file"}, place::in_folder,
                             {library_named(), metric(), net_if_given(), assembly(), {"contigs.save_run", "contigs"}},
                             {"library", "out"}));
  table.push_back(plain_verb("fpc test", "FILE.fpc --library LIB --out DIR",
                             "judge each contig of an FPC assembly: topology, tiling path, and check at another cutoff",
                             "orb fpc test project.fpc --library project.ORBdb --net net.ORBns --out tested", {"file"},
                             place::in_folder,
                             {library_named(),
                              markers(),
                              tables(),
                              metric(),
                              options(),
                              net_if_given(),
                              assembly_quietly(),
                              {"contigs.test", "test", {}, "!old-mtp"},
                              {"contigs.retain", "test", {}, "old-mtp"}},
                             {"library", "out"}));
  verb compare = plain_verb("fpc compare", "FILE.fpc RUN [--out DIR]",
                            "which contigs of an FPC assembly and of a run are joined, split or lacking in the other",
                            "orb fpc compare project.fpc results --out compared", {"assembly", "run"}, place::in_folder,
                            {library_of_run(),
                             metric(),
                             {"contigs.load", "", {{"folder", ""}}},
                             {"net.load", "", {{"file", ""}}},
                             {"fpc.compare", "compare", {{"file", "assembly"}}, {}, {}, {}, {{"out", "."}}}});
  compare.extra = retain_options;
  compare.prepare = prepare_run_verb;
  table.push_back(compare);
  table.push_back(plain_verb("fpc mtp", "FILE.fpc PATHS --library LIB --out DIR",
                             "tiling paths of an FPC assembly against the longest paths of its contigs in the net",
                             "orb fpc mtp project.fpc paths.txt --library project.ORBdb --net net.ORBns --out tested",
                             {"file", "paths"}, place::in_folder,
                             {library_named(),
                              markers(),
                              tables(),
                              metric(),
                              net_if_given(),
                              assembly_quietly(),
                              {"fpc.mtp", "test", {{"file", "paths"}}}},
                             {"library", "out"}));
  table.push_back(
      plain_verb("fpc specified", "FILE --library LIB --out DIR", "contigs from a file of sections of clones as a run",
                 "orb fpc specified zone.txt --library project.ORBdb --out zone", {"file"}, place::in_folder,
                 {library_named(), {"fpc.specified", "read"}, {"contigs.save_run", "contigs"}}, {"library", "out"}));
  verb unite = plain_verb("fpc unite", "FILE --out FILE", "all files of bands of a folder as one file",
                          "orb fpc unite plates/P001.sizes --out united.sizes", {"file"}, place::beside_file,
                          {{"fpc.unite", "unite"}}, {"out"});
  unite.says_saved = true;
  table.push_back(unite);
}

} // namespace

void add_run_verbs(std::vector<verb> &table) {
  verb retain = plain_verb("retain", "RUN --old-mtp LIST --out DIR",
                           "analyse the contigs of a run again, keeping an older tiling path",
                           "orb retain results/ecoli536 --old-mtp old_path.txt --sequenced done.txt --out retained",
                           {"run"}, place::in_folder,
                           {library_of_run(),
                            markers(),
                            tables(),
                            metric(),
                            options(),
                            {"contigs.load", "", {{"folder", ""}}},
                            {"net.load", "", {{"file", ""}}},
                            {"contigs.retain", "retain"}},
                           {"out"});
  retain.extra = retain_options;
  retain.prepare = prepare_run_verb;
  table.push_back(retain);
  verb report =
      plain_verb("report", "RUN --out DIR", "tables over the contigs of a finished run",
                 "orb report results/ecoli536 --out tables", {"run"}, place::in_folder, report_steps(), {"out"});
  report.steps.front() = library_of_run();
  report.extra = run_options;
  report.prepare = prepare_run_verb;
  report.prints_out = true;
  table.push_back(report);
  verb exported = plain_verb("export", "RUN --to fpc|gff3|bed|tsv --out FILE",
                             "the contigs of a finished run as a file that other programs read",
                             "orb export results/ecoli536 --to gff3 --out contigs.gff3", {"run"}, place::beside_file,
                             {library_of_run(),
                              markers(),
                              {"contigs.load", "", {{"folder", ""}}},
                              {"net.load", "", {{"file", ""}}, "net"},
                              {"contigs.export", "export"}});
  exported.extra = retain_options;
  exported.prepare = prepare_run_verb;
  exported.says_saved = true;
  table.push_back(exported);
  verb map = plain_verb("map", "RUN --contig NAME|--overview --out FILE.png|.svg|.pdf",
                        "a picture of a contig of a finished run, or of all of them",
                        "orb map results/ecoli536 --contig cl_3 --out cl_3.png", {"run"}, place::beside_file,
                        joined({exported.steps.begin(), exported.steps.end() - 1}, {{"contigs.draw_map", "map"}}));
  map.extra = retain_options;
  map.prepare = prepare_map_verb;
  map.says_saved = true;
  table.push_back(map);
  add_viewer_verbs(table, exported);
  add_fpc_verbs(table);
}

} // namespace orb
