#include "ui/console/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <numeric>

#include "commands/commands.h"

namespace orb {

namespace {

// The line with the arguments comes from the table of commands.
class plain_formatter : public CLI::Formatter {
public:
  std::string make_usage(const CLI::App *, std::string) const override { return {}; }
};

template <class Value> constexpr bool is_optional = false;
template <class Value> constexpr bool is_optional<std::optional<Value>> = true;

template <class Value> CLI::Option *add_value(CLI::App &app, const option_row &row, Value &target) {
  if constexpr (std::is_same_v<Value, bool>)
    return app.add_flag(row.name, target, row.meaning);
  else if constexpr (is_optional<Value>) // CLI11 can't hold one by itself
    return app.add_option_function<typename Value::value_type>(
        row.name, [&target](const typename Value::value_type &value) { target = value; }, row.meaning);
  else
    return app.add_option(row.name, target, row.meaning);
}

// What the help calls a value: whole numbers are N, others X.
template <class Value> const char *usual_type() {
  if constexpr (is_optional<Value>)
    return usual_type<typename Value::value_type>();
  else if constexpr (std::is_floating_point_v<Value>)
    return "X";
  else if constexpr (std::is_integral_v<Value>)
    return "N";
  else
    return "NAME";
}

// "nan" lies within any limits, by the way that comparisons go.
std::string no_nan(const std::string &value) {
  double number = 0;
  const bool read = CLI::detail::lexical_cast(value, number);
  return read && std::isnan(number) ? "Value " + value + " is no number" : "";
}

// Checks of limits and words don't clutter the help; their error messages name them.
void add_checks(CLI::Option &option, const option_row &row, bool whole) {
  if (row.low && whole)
    option.check(CLI::Range(static_cast<std::int64_t>(*row.low), static_cast<std::int64_t>(*row.high)).description(""));
  else if (row.low)
    option.check(CLI::Range(*row.low, *row.high).description(""))->check(no_nan);
  if (!row.words.empty())
    option.check(CLI::IsMember(row.words).description(""));
}

void add_row(CLI::App &app, const option_row &row) {
  std::visit(
      [&](auto *target) {
        using value_type = std::remove_pointer_t<decltype(target)>;
        CLI::Option *option = add_value(app, row, *target);
        if (!row.group.empty())
          option->group(row.group);
        option->required(row.required);
        if constexpr (!std::is_same_v<value_type, bool>) {
          const std::string usual = usual_type<value_type>();
          option->type_name(row.type_shown.empty() ? usual : row.type_shown);
          add_checks(*option, row, usual == "N");
          if (!row.default_shown.empty())
            option->default_str(row.default_shown);
          else if (std::is_arithmetic_v<value_type> || std::is_same_v<value_type, std::string>)
            option->capture_default_str();
        }
      },
      row.target);
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

// The commands whose names begin with `start`, one a line.
std::string list_of_commands(const std::string &start) {
  std::size_t width = 0;
  for (const command_row &row : table_of_commands())
    width = std::max(width, std::string(row.name).size());
  std::string text;
  for (const command_row &row : table_of_commands())
    if (const std::string name = row.name; name.starts_with(start))
      text += "  " + name + std::string(width + 2 - name.size(), ' ') + row.purpose + "\n";
  return text;
}

std::string general_help() {
  return "ORB " ORB_VERSION ": from the restriction fingerprints of BAC clones to contigs\n\n"
         "Usage: orb COMMAND ... [options]\n\nCommands:\n" +
         list_of_commands("") + "\nOptions of a command: orb COMMAND --help. The road in one line:\n  " +
         table_of_commands()[0].example + "\n";
}

// The row that the first one or two arguments name; nothing otherwise.
const command_row *command_named(const std::vector<std::string> &arguments) {
  for (const command_row &row : table_of_commands())
    if (arguments[0] == row.name || (arguments.size() > 1 && arguments[0] + " " + arguments[1] == row.name))
      return &row;
  return nullptr;
}

// What is said when no command is named: help for a group of commands, or what is wrong.
command_line_result no_command(const std::vector<std::string> &arguments) {
  const std::string group = list_of_commands(arguments[0] + " ");
  if (group.empty())
    return {false, 2, unknown_command_text(arguments[0])};
  const std::string second = arguments.size() > 1 ? arguments[1] : "";
  const std::string help = "Usage: orb " + arguments[0] + " WORD ... [options]\n\nCommands:\n" + group;
  if (second == "--help" || second == "-h")
    return {false, 0, help};
  if (second.empty() || second.starts_with("-"))
    return {false, 2, "orb " + arguments[0] + ": a word is missing that says what to do\n" + help};
  return {false, 2, unknown_command_text(arguments[0] + " " + second)};
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
  const command_row *row = command_named(arguments);
  if (!row)
    return no_command(arguments);

  CLI::App app(row->purpose, row->name);
  app.allow_windows_style_options(false);
  app.formatter(std::make_shared<plain_formatter>());
  app.get_formatter()->column_width(34);
  app.get_formatter()->label("REQUIRED", "(required)");
  app.footer(std::string("Example:\n  ") + row->example);
  options.command = row->name;
  option_list list;
  row->options(list, options);
  for (const option_row &taken : list.rows())
    add_row(app, taken);
  const auto words_of_name = first == row->name ? 1 : 2;
  std::vector<std::string> rest(arguments.rbegin(), arguments.rend() - words_of_name);
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
