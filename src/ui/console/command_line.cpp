#include "ui/console/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <numeric>

#include "commands/commands.h"

namespace orb {

namespace {

// A check of limits that doesn't clutter the help; its error message names them.
template <class Number> CLI::Validator range(Number low, Number high) {
  const CLI::Validator limits = CLI::Range(low, high);
  return limits.description("");
}

// The line with the arguments comes from the table of commands.
class plain_formatter : public CLI::Formatter {
public:
  std::string make_usage(const CLI::App *, std::string) const override { return {}; }
};

// Takes what CLI11 can't hold in an optional by itself: checks the range as it reads.
template <class Number>
void add_optional(CLI::App &app, const std::string &name, std::optional<Number> &target, Number low, Number high,
                  const std::string &meaning, const std::string &default_text) {
  app.add_option_function<Number>(
         name, [&target](const Number &value) { target = value; }, meaning)
      ->check(range(low, high))
      ->default_str(default_text)
      ->type_name(std::is_floating_point_v<Number> ? "X" : "N");
}

void add_library_options(CLI::App &app, command_options &options) {
  app.add_flag("--plain-text", options.plain_text, "INPUT is one text file of clones, kept in its own order")
      ->group("Reading");
  app.add_option("--capacity", options.capacity, "number of clones provided for")
      ->check(range(1, 2000000000))
      ->capture_default_str()
      ->group("Reading");
  app.add_option("--name-format-in", options.name_format_in, "clone name format of the input")
      ->check(range(0, 8))
      ->capture_default_str()
      ->group("Reading");
  app.add_option("--name-format-out", options.name_format_out, "clone name format of the library")
      ->check(range(0, 8))
      ->capture_default_str()
      ->group("Reading");
  add_optional<std::int16_t>(app, "--tolerance", options.tolerance, 0, 32000, "tolerance t, in band units", "12");
  add_optional<std::int16_t>(app, "--tolerance-index", options.tolerance_index, 0, 1,
                             "1 compares lengths within t, 0 compares bin numbers", "1");
  add_optional<double>(app, "--gel-length", options.gel_length, 2.0, 1e7, "gel length L, in band units", "60000");
  add_optional<std::int32_t>(app, "--n-bands", options.n_bands, 1, 10000000, "N_bands_Sulston", "2250");
  add_optional<std::int32_t>(app, "--preset", options.preset, 1, 5,
                             "tolerance, index, gel length and n-bands of a known kind of data", "none");
}

void add_metric_options(CLI::App &app, command_options &options) {
  app.add_option("--metric", options.metric, "name or index")->capture_default_str()->group("Overlaps");
  add_optional<double>(app, "--cutoff", options.cutoff, -1e300, 1e300, "least score of an overlap",
                       "the metric's standard");
  app.get_option("--cutoff")->group("Overlaps");
  app.add_option("--burying", options.burying, "burying fraction")
      ->check(range(0.0, 1.0))
      ->capture_default_str()
      ->group("Overlaps");
  app.add_option("--markers", options.markers, "markers of clones, or clones of markers")
      ->type_name("FILE")
      ->group("Overlaps");
}

void add_net_options(CLI::App &app, command_options &options) {
  app.add_option("--text", options.text, "write a text net too, and load the net from it")->type_name("NET.txt");
  app.add_option("--start", options.start, "first clone of the text net, to resume")
      ->check(range(1, 2000000000))
      ->capture_default_str();
  app.add_flag("--parts", options.parts, "text net in parts of 1000 clones");
}

void add_revision_options(CLI::App &app, command_options &options) {
  const char *group = "Revision";
  app.add_option("--rank", options.rank, "radius of a neighbourhood, in steps")->capture_default_str()->group(group);
  app.add_option("--additional-cutoff", options.additional_cutoff, "cutoff of the neighbourhoods of Q-clones")
      ->default_str("cutoff + 10")
      ->type_name("X")
      ->group(group);
  app.add_flag("--no-overlaps", options.no_overlaps, "leave Q-overlaps in")->group(group);
  app.add_flag("--no-clones", options.no_clones, "leave Q-clones in")->group(group);
}

void add_contig_options(CLI::App &app, command_options &options) {
  const char *group = "Contigs";
  const auto positive = range(0, 2000000000);
  app.add_option("--max-clones", options.max_clones, "a larger cluster is cut")
      ->check(positive)
      ->capture_default_str()
      ->group(group);
  app.add_option("--min-size", options.min_size, "a smaller cluster is a heap")
      ->check(positive)
      ->capture_default_str()
      ->group(group);
  app.add_option("--max-width", options.max_width, "a wider cluster is cut")
      ->check(positive)
      ->capture_default_str()
      ->group(group);
  app.add_option("--step", options.step, "rise of the cutoff a level")
      ->check(range(0.0, 1e6))
      ->capture_default_str()
      ->group(group);
  app.add_option("--steps", options.steps, "levels above the base")
      ->check(range(0, 10000))
      ->capture_default_str()
      ->group(group);
  app.add_flag("--no-ordering", options.no_ordering, "no ordering by jackknife")->group(group);
  app.add_flag("--no-pair-tables", options.no_pair_tables, "no tables of pairs")->group(group);
  app.add_flag("--no-drawings", options.no_drawings, "no drawings of nets")->group(group);
}

void add_ordering_options(CLI::App &app, command_options &options) {
  const char *group = "Order of the clones";
  app.add_option("--ordering-seconds", options.ordering_seconds, "limit of each search for an order")
      ->check(range(0.0, 1e6))
      ->capture_default_str()
      ->group(group);
  app.add_option("--ordering-steps", options.ordering_steps, "limit by steps in its place, the same on every machine")
      ->check(range<std::int64_t>(0, 1000000000000))
      ->default_str("none")
      ->group(group);
  app.add_option("--jackknife", options.jackknife, "runs with bands left out by chance")
      ->check(range(0, 10000))
      ->capture_default_str()
      ->group(group);
  app.add_option("--jackknife-alpha", options.jackknife_alpha, "chance of leaving a band out")
      ->check(range(0.0, 0.8))
      ->capture_default_str()
      ->group(group);
}

void add_drawing_options(CLI::App &app, command_options &options) {
  app.add_option("--mark", options.mark_1, "list of clones to be drawn red")->type_name("LIST");
  app.add_option("--mark2", options.mark_2, "list of clones to be drawn as boxes")->type_name("LIST");
  app.add_option("--format", options.format, "net, graphml, or both")
      ->check(CLI::IsMember({"net", "graphml", "both"}).description(""))
      ->capture_default_str();
}

void add_common_options(CLI::App &app, command_options &options) {
  const char *group = "General";
  app.add_option("-t,--threads", options.threads, "worker threads; the result is the same for any number")
      ->check(range(0, 4096))
      ->default_str("all")
      ->group(group);
  app.add_option("--seed", options.seed, "of all chance")->capture_default_str()->group(group);
  app.add_flag("-q,--quiet", options.quiet, "messages only")->group(group);
  app.add_flag("-v,--verbose", options.verbose, "counters and log lines too")->group(group);
  app.add_option("--log", options.log, "folder of ORB.log")->type_name("DIR")->group(group);
  app.add_option("--answers", options.answers, "file of answers to questions: prompt start, tab, answer")
      ->type_name("FILE")
      ->group(group);
  app.add_flag("--yes", options.yes, "answer questions so that the work goes on")->group(group);
}

void add_output_options(CLI::App &app, command_options &options, const char *type) {
  app.add_option("--out", options.out, "where the result goes")->type_name(type)->required();
  app.add_flag("--force", options.force, "overwrite results that exist");
}

void add_options_of_command(CLI::App &app, command_options &options) {
  const std::string &name = app.get_name();
  if (name == "info") {
    app.add_option("paths", options.info_paths, "libraries, nets, fingerprints, run folders")
        ->type_name("FILE|FOLDER")
        ->required();
    app.add_option("--clone", options.clone, "all about one clone")->type_name("NAME");
    app.add_flag("--json", options.json, "as JSON");
    return add_common_options(app, options);
  }
  const bool with_net = name == "revise" || name == "contigs" || name == "draw";
  const bool with_list = name == "order" || name == "draw";
  app.add_option("input", options.input, "folder of .sizes files, one such file, or a library file")
      ->type_name(name == "assemble" || name == "load" ? "INPUT" : "LIB")
      ->required();
  if (with_net)
    app.add_option("net", options.net, "native net")->type_name("NET")->required();
  if (with_list)
    app.add_option("list", options.list, "names of clones, one a line")->type_name("LIST")->required();
  add_output_options(app, options,
                     name == "load"                      ? "LIB.ORBdb"
                     : name == "net" || name == "revise" ? "NET.ORBns"
                     : name == "draw"                    ? "FILE.net"
                                                         : "DIR");
  add_library_options(app, options);
  if (name != "load")
    add_metric_options(app, options);
  if (name == "net")
    add_net_options(app, options);
  if (name == "revise" || name == "assemble")
    add_revision_options(app, options);
  if (name == "contigs" || name == "assemble") {
    add_contig_options(app, options);
  }
  if (name == "contigs" || name == "assemble" || name == "order")
    add_ordering_options(app, options);
  if (name == "draw")
    add_drawing_options(app, options);
  if (name == "assemble")
    app.add_flag("--resume", options.resume, "go on with an earlier run of the same kind");
  add_common_options(app, options);
}

// "N" for whole numbers and "X" for others in place of the names of C++ types.
void short_type_names(CLI::App &app) {
  for (CLI::Option *option : app.get_options()) {
    const std::string type = option->get_type_name();
    if (type == "INT" || type == "UINT")
      option->type_name("N");
    else if (type == "FLOAT")
      option->type_name("X");
    else if (type == "TEXT")
      option->type_name("NAME");
  }
}

std::size_t edit_distance(const std::string &a, const std::string &b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t above = row[j];
      row[j] = std::min({above + 1, row[j - 1] + 1, diagonal + (a[i - 1] != b[j - 1])});
      diagonal = above;
    }
  }
  return row[b.size()];
}

std::string nearest(const std::string &word, const std::vector<std::string> &known) {
  std::string best;
  std::size_t least = word.size();
  for (const std::string &candidate : known)
    if (const std::size_t distance = edit_distance(word, candidate); distance < least) {
      least = distance;
      best = candidate;
    }
  return best;
}

std::vector<std::string> names_of_commands() {
  std::vector<std::string> names;
  for (const command_row &row : table_of_commands())
    names.push_back(row.name);
  return names;
}

std::vector<std::string> names_of_options(const CLI::App &app) {
  std::vector<std::string> names;
  for (const CLI::Option *option : app.get_options())
    for (const std::string &name : option->get_lnames())
      names.push_back("--" + name);
  return names;
}

// The first argument that looks like an option and isn't one of this command's.
std::string unknown_option(const CLI::App &app, const std::vector<std::string> &arguments) {
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    if (!arguments[i].starts_with("--") || arguments[i].size() == 2)
      continue;
    const std::string name = arguments[i].substr(0, arguments[i].find('='));
    if (!app.get_option_no_throw(name))
      return name;
  }
  return {};
}

std::string what_is_wrong(const CLI::App &app, const std::vector<std::string> &arguments, const std::string &said) {
  const std::string unknown = unknown_option(app, arguments);
  std::string text = "orb " + app.get_name() + ": ";
  if (!unknown.empty()) {
    text += "unknown option " + unknown;
    if (const std::string near = nearest(unknown, names_of_options(app)); !near.empty())
      text += "; did you mean " + near + "?";
  } else {
    text += said;
  }
  return text + "\nSee orb " + app.get_name() + " --help.";
}

std::string unknown_command_text(const std::string &word) {
  std::string text = "orb: unknown command " + word;
  if (const std::string near = nearest(word, names_of_commands()); !near.empty())
    text += "; did you mean " + near + "?";
  return text + "\nSee orb --help.";
}

std::string general_help() {
  std::string text = "ORB " ORB_VERSION ": from the restriction fingerprints of BAC clones to contigs\n\n"
                     "Usage: orb COMMAND ... [options]\n\nCommands:\n";
  for (const command_row &row : table_of_commands())
    text += "  " + std::string(row.name) + std::string(10 - std::string(row.name).size(), ' ') + row.purpose + "\n";
  return text + "\nOptions of a command: orb COMMAND --help. The road in one line:\n  " +
         table_of_commands()[0].example + "\n";
}

} // namespace

command_line_result parse_command_line(const std::vector<std::string> &arguments, command_options &options) {
  const std::string first = arguments.empty() ? "" : arguments[0];
  if (first.empty())
    return {false, 2, "orb: a command is missing\n" + general_help()};
  if (first == "--help" || first == "-h" || first == "help")
    return {false, 0, general_help()};
  if (first == "--version")
    return {false, 0, "ORB " ORB_VERSION "\n"};
  const auto table = table_of_commands();
  const auto row = std::find_if(table.begin(), table.end(), [&](const command_row &r) { return first == r.name; });
  if (row == table.end())
    return {false, 2, unknown_command_text(first)};

  CLI::App app(row->purpose, row->name);
  app.allow_windows_style_options(false);
  app.formatter(std::make_shared<plain_formatter>());
  app.get_formatter()->column_width(34);
  app.get_formatter()->label("REQUIRED", "(required)");
  app.footer(std::string("Example:\n  ") + row->example);
  options.command = row->name;
  add_options_of_command(app, options);
  short_type_names(app);
  std::vector<std::string> rest(arguments.rbegin(), arguments.rend() - 1);
  try {
    app.parse(rest);
  } catch (const CLI::CallForHelp &) {
    return {false, 0, "orb " + std::string(row->name) + " " + row->arguments + " [options]\n" + app.help()};
  } catch (const CLI::ParseError &wrong) {
    return {false, 2, what_is_wrong(app, arguments, wrong.what())};
  }
  return {true, 0, {}};
}

} // namespace orb
