// The table of verbs: which commands each one is made of.
#include <algorithm>

#include "commands/command_table.h"
#include "commands/row_steps.h"
#include "commands/verb_steps.h"
#include "commands/verbs.h"

namespace orb {

using namespace verb_parts;

namespace {

// ---- options of verbs themselves ----

void resume_option(parameter_list &list, verb_run &call) {
  list.add("resume", call.resume, "go on with an earlier run of the same kind");
}

void auto_option(parameter_list &list, verb_run &call) {
  list.add("auto", call.automatic,
           "tolerance, gel length, n-bands and cutoff by the fingerprints, but for what is given");
}

void auto_cutoff_option(parameter_list &list, verb_run &call) {
  list.add("auto", call.automatic, "cutoff by the fingerprints, as the library compares them, unless it is given");
}

void assemble_options(parameter_list &list, verb_run &call) {
  resume_option(list, call);
  auto_option(list, call);
}

void menu_options(parameter_list &list, verb_run &call) {
  list.add("project", call.project_file, "project file that is loaded first").type("FILE");
}

void script_options(parameter_list &list, verb_run &call) {
  list.add("script", call.script, "lines of a command's id or control name and key=value; - is standard input")
      .type("FILE|-")
      .needed();
  menu_options(list, call);
}

// ---- options together ----

void check_net(verb_run &call) {
  if (!call.is_given("text") && (call.is_given("start") || call.is_given("parts")))
    throw usage_error("--start and --parts belong to --text");
}

void check_analyse(verb_run &call) {
  if (!call.is_given("lists") && !call.flag("all"))
    throw usage_error("what is to be analysed: a list of clones, a folder of lists, or --all");
}

// ---- groups ----

verb list_verb(std::string name, std::string purpose, std::string row, std::string example) {
  verb made;
  made.name = std::move(name);
  made.arguments = "LIB LIST LIST2 --out LIST";
  made.purpose = std::move(purpose);
  made.example = std::move(example);
  made.by_place = {"input", "list", "list2"};
  made.record = place::beside_file;
  made.steps = library_and({{std::move(row), "list"}});
  made.needed = {"out"};
  return made;
}

verb markers_verb(std::string name, std::string result, std::string purpose, std::string example, step last) {
  verb made;
  made.name = std::move(name);
  made.arguments = "LIB MARKERS " + std::string(last.command == "markers.print" ? "LIST " : "") + "--out " + result;
  made.purpose = std::move(purpose);
  made.example = std::move(example);
  made.by_place = {"input", "markers"};
  if (last.command == "markers.print")
    made.by_place.push_back("list");
  made.record = place::beside_file;
  made.steps = library_and({markers(), std::move(last)});
  return made;
}

void add_stage_verbs(std::vector<verb> &table) {
  verb assemble = plain_verb("assemble", "INPUT --out DIR", "from fingerprints to contigs: the whole road",
                             "orb assemble examples/ecoli536 --out results/ecoli536", {"input"}, place::none,
                             scored_library_and({options(),
                                                 by_library(),
                                                 {"net.create", "net"},
                                                 {"net.revise", "revision", {{"out", ""}, {"ask-rank", ""}}},
                                                 contigs()}),
                             {"out"});
  assemble.extra = assemble_options;
  assemble.run = run_assemble_verb;
  table.push_back(assemble);
  verb load =
      plain_verb("load", "INPUT --out LIB.ORBdb", "read fingerprints, drop exact copies, save a library file",
                 "orb load plates/ --out library.ORBdb --preset 4", {"input"}, place::beside_file,
                 library_and({by_library({{"metric", ""}, {"cutoff", ""}}), {"library.save", "save"}}), {"out"});
  load.extra = auto_option;
  load.prepare = [](verb_run &call, project_state &) { take_gel_of_fingerprints(call); };
  load.says_saved = true;
  table.push_back(load);
  verb net_verb =
      plain_verb("net", "LIB --out NET.ORBns", "compare all clones and save the net of significant overlaps",
                 "orb net library.ORBdb --out net.ORBns --cutoff 15", {"input"}, place::beside_file,
                 scored_library_and({cutoff_by_library(),
                                     {"net.create", "net", {}, "!text"},
                                     {"net.create_text", "net", {{"out", "text"}}, "text", {{"load", "yes"}}},
                                     net_save(project_part::net)}),
                 {"out"});
  net_verb.extra = auto_cutoff_option;
  net_verb.check = check_net;
  net_verb.says_saved = true;
  table.push_back(net_verb);
  verb revise =
      plain_verb("revise", "LIB NET --out NET2.ORBns", "remove false overlaps and chimeric clones from a net",
                 "orb revise library.ORBdb net.ORBns --out net_noQQ.ORBns", {"input", "net"}, place::beside_file,
                 scored_library_and({net(), {"net.revise", "revision", {{"ask-rank", ""}}}}), {"out"});
  revise.says_saved = true;
  table.push_back(revise);
  table.push_back(plain_verb("contigs", "LIB NET --out DIR", "cut a net into contigs by adaptive clustering",
                             "orb contigs library.ORBdb net_noQQ.ORBns --out contigs --min-size 6", {"input", "net"},
                             place::in_folder, scored_library_and({options(), net(), contigs()}), {"out"}));
}

void add_order_verbs(std::vector<verb> &table) {
  table.push_back(
      plain_verb("order", "LIB LIST --out DIR", "put the clones of a list into the order with the shortest steps",
                 "orb order library.ORBdb contig.txt --out ordered --jackknife 20", {"input", "list"}, place::in_folder,
                 scored_library_and({options_of_order(), net_if_given(), {"order.list", "order"}}), {"out"}));
  table.push_back(
      plain_verb("draw", "LIB NET LIST --out FILE.net", "draw the net of a list of clones, with lists marked in it",
                 "orb draw library.ORBdb net.ORBns contig.txt --out contig.net --mark tiling_path.txt",
                 {"input", "net", "list"}, place::beside_file, scored_library_and({net(), {"draw.list", "draw"}})));
  table.push_back(plain_verb(
      "table", "LIB LIST --out DIR", "tables of the scores of a list of clones: consecutive clones, all pairs",
      "orb table library.ORBdb contig.txt --out tables --table-format 2", {"input", "list"}, place::in_folder,
      scored_library_and({options(),
                          net_if_given(),
                          {"table.pairs", "table", {{"from-net", ""}}, "!net"},
                          {"table.pairs", "table", {}, "net", {{"from-net", "yes"}}}}),
      {"out"}));
}

void add_list_verbs(std::vector<verb> &table) {
  table.push_back(plain_verb("list sort", "LIB LIST --out LIST", "a list in the order of the library, without repeats",
                             "orb list sort library.ORBdb contig.txt --out sorted.txt", {"input", "list"},
                             place::beside_file, library_and({{"list.sort", "list"}}), {"out"}));
  table.push_back(list_verb("list intersect", "the clones that both lists hold", "list.intersect",
                            "orb list intersect library.ORBdb contig.txt sequenced.txt --out both.txt"));
  table.push_back(list_verb("list minus", "the clones of the first list that the second lacks", "list.minus",
                            "orb list minus library.ORBdb contig.txt sequenced.txt --out todo.txt"));
  table.push_back(list_verb("list unite", "the clones of either list", "list.unite",
                            "orb list unite library.ORBdb contig1.txt contig2.txt --out joined.txt"));
  table.push_back(plain_verb("list format", "LIST --out LIST", "a list with its names in another format",
                             "orb list format contig.txt --name-format-in 1 --name-format-out 7 --out names.txt",
                             {"list"}, place::beside_file, {{"list.format", "list"}}, {"out"}));
  table.push_back(plain_verb(
      "list select", "LIB LIST FINGERPRINTS --out FILE", "the fingerprint records of the clones of a list",
      "orb list select library.ORBdb contig.txt plates/ --out contig.sizes", {"input", "list", "fingerprints"},
      place::beside_file, library_and({{"list.select", "list"}}), {"out"}));
  table.push_back(plain_verb("list bands", "LIB LIST --out FILE",
                             "the bands of the clones of a list, in one of four forms",
                             "orb list bands library.ORBdb contig.txt --form lengths --out bands.txt",
                             {"input", "list"}, place::beside_file, library_and({{"list.bands", "list"}}), {"out"}));
}

void add_analysis_verbs(std::vector<verb> &table) {
  verb analyse = plain_verb(
      "analyse", "LIB NET LIST|FOLDER|--all --do A,B,... [--out DIR]",
      "chosen analyses of a list of clones, of each list of a folder, or of all clones",
      "orb analyse library.ORBdb net.ORBns contig.txt --do topology,ordering --out analysed", {"input", "net", "lists"},
      place::in_folder,
      scored_library_and(
          {options_of_order(), net(), {"analyse.run", "analyse", {{"folder", ""}}, {}, {}, {}, {{"out", "."}}}}));
  analyse.steps.front().names.emplace_back("preset", ""); // here it is one of analyses
  analyse.may_lack = {"lists"};
  analyse.check = check_analyse;
  table.push_back(analyse);
  table.push_back(plain_verb("grow", "LIB NET LIST [--out DIR]", "more clones near a list",
                             "orb grow library.ORBdb net.ORBns contig.txt --rank 2 --out grown",
                             {"input", "net", "list"}, place::in_folder,
                             scored_library_and({net(), {"net.grow", "grow", {}, {}, {}, {}, {{"out", "."}}}})));
  table.push_back(plain_verb("tree", "LIB NET --cutoffs A,B,... --out DIR",
                             "refine clusters down a ladder of rising cutoffs",
                             "orb tree library.ORBdb net.ORBns --cutoffs 15,20,25 --out tree", {"input", "net"},
                             place::in_folder, library_and({net(), {"clusters.tree", "tree"}}), {"out"}));
  table.push_back(plain_verb(
      "group", "LIB NET CLUSTERS [--out DIR]", "join small clusters into larger ones by their strongest overlaps",
      "orb group library.ORBdb net.ORBns lists/ --out groups", {"input", "net", "clusters"}, place::in_folder,
      scored_library_and({net(),
                          {"contigs.load_folder", "load", {{"folder", "clusters"}}},
                          {"clusters.group", "group", {}, {}, {}, {}, {{"out", "."}}}})));
}

void add_marker_verbs(std::vector<verb> &table) {
  table.push_back(markers_verb("markers read", "FILE.ORB", "markers of clones into the native form",
                               "orb markers read library.ORBdb markers.txt --out markers.ORB",
                               {"markers.save", "", {}, {}, {{"form", "native"}}}));
  table.push_back(markers_verb("markers write", "FILE.txt", "markers as a line a clone",
                               "orb markers write library.ORBdb clones_of_markers.txt --out markers.txt",
                               {"markers.save", "", {}, {}, {{"form", "clones"}}}));
  table.push_back(markers_verb("markers print", "TABLE", "which clones of a list bear which markers",
                               "orb markers print library.ORBdb markers.txt contig.txt --out table.txt",
                               {"markers.print", ""}));
}

void add_net_verbs(std::vector<verb> &table) {
  table.push_back(plain_verb(
      "textnet read", "TEXT|FOLDER --library LIB --out NET", "a text net, or the folder of its parts, as a native net",
      "orb textnet read net.txt --library library.ORBdb --out net.ORBns", {"file"}, place::beside_file,
      {{"library.load", "load", {{"file", "library"}, {"source", ""}, {"keep", ""}}},
       {"net.load_text", "net", {}, {}, {{"folder", "no"}}}},
      {"library", "out"}));
  table.push_back(plain_verb("textnet write", "LIB NET --out TEXT", "a native net as a text net",
                             "orb textnet write library.ORBdb net.ORBns --out net.txt", {"input", "net"},
                             place::beside_file, library_and({net(), {"net.save_text", "net"}}), {"out"}));
  table.push_back(plain_verb(
      "remetric", "LIB NET --metric NAME --cutoff X --out NET2",
      "score the overlaps of a net by another metric, and keep what reaches the cutoff",
      "orb remetric library.ORBdb net.ORBns --metric k2mn --cutoff 100 --out net_k2mn.ORBns", {"input", "net"},
      place::beside_file,
      joined({library(), markers(), tables(), metric(), net()}, {{"net.remetric", "net"}, net_save()}), {"out"}));
  table.push_back(
      plain_verb("ladder", "LIB NET --out DIR", "the revision of a net for a ladder of cutoffs",
                 "orb ladder library.ORBdb net.ORBns --out ladder --min-cutoff 15 --steps 3 --step 5 --rank 1",
                 {"input", "net"}, place::in_folder, library_and({net(), {"net.ladder", "ladder"}}), {"out"}));
  table.push_back(
      plain_verb("contamination", "LIB NET --out DIR", "clones of neighbouring wells of a plate that overlap strongly",
                 "orb contamination library.ORBdb net.ORBns --out tables --wells-cutoff 40 --wells 2", {"input", "net"},
                 place::in_folder, library_and({net(), {"net.contamination", "search"}}), {"out"}));
  verb supercontigs = plain_verb(
      "supercontigs", "LIB NET DIR --out NET2", "take contigs that were joined or mended in the viewer back into a net",
      "orb supercontigs library.ORBdb net.ORBns joined/ --out net_superctg.ORBns", {"input", "net", "nets"},
      place::beside_file, library_and({net(), {"net.supercontigs", "supercontigs", {{"recluster", ""}}}}),
      {"nets", "out"});
  supercontigs.says_saved = true;
  table.push_back(supercontigs);
  table.push_back(plain_verb("repeats", "LIB [--file FINGERPRINTS --out FILE]",
                             "count clones whose name an earlier one has; the records of the others, when wanted",
                             "orb repeats library.ORBdb --file plates/ --out unique.sizes", {"input"},
                             place::beside_file, library_and({{"library.repeats", "test"}})));
  table.push_back(plain_verb(
      "rename", "LIB NAMES --out LIB2.ORBdb", "give clones new names from a file",
      "orb rename library.ORBdb new_names.txt --out renamed.ORBdb", {"input", "names"}, place::beside_file,
      library_and({{"library.rename", "rename", {{"file", "names"}, {"save", "out"}, {"out", ""}}}}), {"out"}));
}

void add_ordering_verbs(std::vector<verb> &table) {
  table.push_back(plain_verb("tour", "Input.dis", "a short path through the vertices of a file of distances",
                             "orb tour Input.dis --steps 10000", {"file"}, place::none, {{"order.tour", "tour"}}));
  table.push_back(plain_verb("bandmap", "LIB LIST --out DIR",
                             "one row of bands in which each clone of a contig is a stretch",
                             "orb bandmap library.ORBdb contig.txt --out map", {"input", "list"}, place::in_folder,
                             library_and({{"bandmap.make", "band map"}}), {"out"}));
}

void add_pools_verbs(std::vector<verb> &table) {
  const auto with_pools = [](const std::vector<step> &rest) { return joined({library(), pools()}, rest); };
  const auto scored_with_pools = [](step net_step, const std::vector<step> &rest) {
    return joined(scored_library_and({std::move(net_step), pools()}), rest);
  };
  verb load = plain_verb("pools load", "LIB RECODING", "say what a scheme of 3D pools holds of a library",
                         "orb pools load library.ORBdb recoding.txt --prefix EC --plates 2", {"input", "recoding"},
                         place::none, with_pools({}));
  load.steps.back().stage = "pools";
  table.push_back(load);
  table.push_back(
      plain_verb("pools of-clones", "LIB RECODING LIST --out DIR", "in which pools the clones of a list lie",
                 "orb pools of-clones library.ORBdb recoding.txt contig.txt --out tables",
                 {"input", "recoding", "list"}, place::in_folder, with_pools({{"pools.of_clones", "pools"}}), {"out"}));
  table.push_back(
      plain_verb("pools find", "LIB RECODING POOLS --out DIR [--net NET]",
                 "the clones behind positive pools, and the groups that they form",
                 "orb pools find library.ORBdb recoding.txt positive.txt --out found --net net.ORBns --subdivide",
                 {"input", "recoding", "pools"}, place::in_folder,
                 scored_with_pools(net_if_given(), {{"pools.find", "search", {{"file", "pools"}}}}), {"out"}));
  table.push_back(plain_verb("pools table", "LIB RECODING --out DIR", "which wells of the pools hold a clone",
                             "orb pools table library.ORBdb recoding.txt --out tables", {"input", "recoding"},
                             place::in_folder, with_pools({{"pools.table", "pools"}}), {"out"}));
  table.push_back(
      plain_verb("pools deconvolve", "LIB NET RECODING PROBES --out DIR",
                 "the clones behind each probe of a table of positive pools",
                 "orb pools deconvolve library.ORBdb net.ORBns recoding.txt probes.txt --out probes --likelihood",
                 {"input", "net", "recoding", "probes"}, place::in_folder,
                 scored_with_pools(net(), {{"pools.deconvolve", "deconvolution"}}), {"out"}));
}

void add_simulation_verbs(std::vector<verb> &table) {
  table.push_back(plain_verb("simulate library", "GENOME.fa[.gz] --out DIR",
                             "draw a library of clones from a sequence, with their true places",
                             "orb simulate library genome.fa.gz --out simulated --coverage 10", {"genome"},
                             place::in_folder, {{"simulate.library", "library"}}));
  table.push_back(plain_verb(
      "simulate digest", "GENOME.fa[.gz] --out DIR", "cut a sequence by the enzymes: cuts, bands, fingerprints",
      "orb simulate digest genome.fa.gz --out digest", {"genome"}, place::in_folder, {{"simulate.digest", "digest"}}));
  table.push_back(plain_verb("evaluate", "RUN --truth FILE",
                             "say how good contigs are where the true places of their clones are known",
                             "orb evaluate results/ecoli536 --truth examples/ecoli536/truth.tsv", {"run"},
                             place::in_folder, {{"contigs.evaluate", "evaluate", {{"folder", "run"}}}}));
  table.push_back(plain_verb(
      "pvalue score", "N1 N2 K", "score of K common bands of clones with N1 and N2 bands, by the closed formula",
      "orb pvalue score 100 90 40 --n-bands 2250", {"n1", "n2", "k"}, place::none, {{"pvalue.score", ""}}));
  table.push_back(
      plain_verb("pvalue estimate", "LIB N1 N2 --out DIR", "simulate the common bands of clones with N1 and N2 bands",
                 "orb pvalue estimate library.ORBdb 100 90 --runs 100000 --out estimate", {"input", "n1", "n2"},
                 place::in_folder, library_and({{"pvalue.estimate", "simulation"}})));
  table.push_back(plain_verb("pvalue table", "LIB --out DIR",
                             "make the tables of simulated p-values that the metrics Nof and Lnn need",
                             "orb pvalue table library.ORBdb --out tables --runs 10000", {"input"}, place::in_folder,
                             library_and({{"pvalue.table", "simulation"}})));
  table.push_back(plain_verb(
      "pvalue lookup", "DIR N1 N2", "read tables of simulated p-values, from a count or from a value",
      "orb pvalue lookup tables 100 90 --count 40", {"folder", "n1", "n2"}, place::none, {{"pvalue.lookup", ""}}));
}

void add_program_verbs(std::vector<verb> &table) {
  table.push_back(plain_verb("info", "FILE|FOLDER...", "say what a file or folder holds, or all about one clone",
                             "orb info results/ecoli536 --clone EC001A01", {"paths"}, place::none,
                             {{"info.show", ""}}));
  verb menu = plain_verb("menu", "[--project FILE]", "the menu tree, and what of it can run",
                         "orb menu --project maize.orb", {}, place::none, {});
  menu.extra = menu_options;
  menu.run = run_menu_verb;
  table.push_back(menu);
  verb script = plain_verb("script", "FILE|- [--project FILE]", "run the commands of a file on one project",
                           "orb script day.orbscript --project maize.orb", {"script"}, place::none, {});
  script.extra = script_options;
  script.run = run_script_verb;
  table.push_back(script);
}

} // namespace

const std::vector<verb> &table_of_verbs() {
  static const std::vector<verb> table = [] {
    std::vector<verb> made;
    add_stage_verbs(made);
    add_order_verbs(made);
    add_run_verbs(made);
    add_list_verbs(made);
    add_analysis_verbs(made);
    add_marker_verbs(made);
    add_net_verbs(made);
    add_ordering_verbs(made);
    add_pools_verbs(made);
    add_simulation_verbs(made);
    add_program_verbs(made);
    return made;
  }();
  return table;
}

const verb *verb_by_name(const std::string &name) {
  const auto &table = table_of_verbs();
  const auto at = std::find_if(table.begin(), table.end(), [&](const verb &row) { return row.name == name; });
  return at == table.end() ? nullptr : &*at;
}

} // namespace orb
