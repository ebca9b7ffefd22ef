#include "ui/console/command_line.h"

#include <CLI/CLI.hpp>

#include "frame/version.h"

namespace orb {

namespace {

// The line with the arguments comes from the table of verbs.
class plain_formatter : public CLI::Formatter {
public:
  std::string make_usage(const CLI::App *, std::string) const override { return {}; }
};

// A flag that is on by itself is switched off by its opposite.
bool is_on_by_itself(const parameter_row &row) {
  return row.is_flag() && row.text() == "yes";
}

std::string name_of(const verb_option &option) {
  const parameter_row &row = *option.rows.front();
  if (option.is_by_place)
    return option.name;
  const std::string letter = row.letter ? std::string("-") + row.letter + "," : std::string();
  return letter + "--" + (is_on_by_itself(row) ? "no-" : "") + option.name;
}

// What holds for a form only: a verb has no dialogs.
std::string meaning_of(const parameter_row &row) {
  static const std::string of_forms = "; without it a dialog asks";
  const bool ends_so = row.meaning.ends_with(of_forms);
  return ends_so ? row.meaning.substr(0, row.meaning.size() - of_forms.size()) : row.meaning;
}

// Values are taken by the rows themselves, so that scripts and the command line say the same of a wrong one.
CLI::Option *add_option(CLI::App &app, const verb_option &option) {
  const parameter_row &row = *option.rows.front();
  const auto take = [&option](const std::string &text) {
    if (const std::string wrong = option.take(text); !wrong.empty())
      throw CLI::ValidationError((option.is_by_place ? "" : "--") + option.name, wrong);
  };
  if (row.is_flag()) {
    const std::string value = is_on_by_itself(row) ? "no" : "yes";
    const std::string meaning = (is_on_by_itself(row) ? "without: " : "") + row.meaning;
    return app.add_flag_function(
        name_of(option), [take, value](std::int64_t) { take(value); }, meaning);
  }
  if (row.is_list())
    return app.add_option_function<std::vector<std::string>>(
        name_of(option),
        [take](const std::vector<std::string> &texts) {
          for (const std::string &text : texts)
            take(text);
        },
        meaning_of(row));
  return app.add_option_function<std::string>(name_of(option), take, meaning_of(row));
}

void add_row(CLI::App &app, const verb_option &option) {
  const parameter_row &row = *option.rows.front();
  CLI::Option *added = add_option(app, option);
  if (!row.group.empty())
    added->group(row.group);
  added->required(option.needed);
  if (row.is_flag())
    return;
  added->type_name(row.type_shown);
  if (!row.default_shown.empty())
    added->default_str(row.default_shown);
}

std::vector<std::string> names_of_verbs() {
  std::vector<std::string> names;
  for (const verb &row : table_of_verbs())
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

// The first argument that looks like an option and isn't one of this verb's.
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
    if (const std::string near = nearest_word(unknown, names_of_options(app)); !near.empty())
      text += "; did you mean " + near + "?";
  } else {
    text += said;
  }
  return text + "\nSee orb " + app.get_name() + " --help.";
}

// `second`: the argument behind it, which may belong to the name of a verb of two words.
std::string unknown_verb_text(const std::string &word, const std::string &second = {}) {
  std::string text = "orb: unknown command " + word;
  std::vector<std::string> of_two_words;
  for (const std::string &name : names_of_verbs())
    if (name.find(' ') != std::string::npos)
      of_two_words.push_back(name);
  std::string near = second.empty() ? std::string() : nearest_word(word + " " + second, of_two_words);
  if (near.empty())
    near = nearest_word(word, names_of_verbs());
  if (!near.empty())
    text += "; did you mean " + near + "?";
  return text + "\nSee orb --help.";
}

// The verbs whose names begin with `start`, one a line.
std::string list_of_verbs(const std::string &start) {
  std::size_t width = 0;
  for (const verb &row : table_of_verbs())
    width = std::max(width, row.name.size());
  std::string text;
  for (const verb &row : table_of_verbs())
    if (row.name.starts_with(start))
      text += "  " + row.name + std::string(width + 2 - row.name.size(), ' ') + row.purpose + "\n";
  return text;
}

std::string version_text() {
  const std::string commit(program_commit());
  return "ORB " + std::string(program_version()) + (commit.empty() ? "" : " (" + commit + ")");
}

std::string general_help() {
  return "ORB " + std::string(program_version()) +
         ": from the restriction fingerprints of BAC clones to contigs\n\n"
         "Usage: orb COMMAND ... [options]\n\nCommands:\n" +
         list_of_verbs("") + "\nOptions of a command: orb COMMAND --help. The road in one line:\n  " +
         table_of_verbs().front().example + "\n";
}

// The verb that the first one or two arguments name; null otherwise.
const verb *verb_named(const std::vector<std::string> &arguments) {
  for (const verb &row : table_of_verbs())
    if (arguments[0] == row.name || (arguments.size() > 1 && arguments[0] + " " + arguments[1] == row.name))
      return &row;
  return nullptr;
}

command_line_result said(int status, std::string text) {
  command_line_result result;
  result.status = status;
  result.text = std::move(text);
  return result;
}

// What is said when no verb is named: help for a group of verbs, or what is wrong.
command_line_result no_verb(const std::vector<std::string> &arguments) {
  const std::string group = list_of_verbs(arguments[0] + " ");
  if (group.empty())
    return said(2, unknown_verb_text(arguments[0], arguments.size() > 1 ? arguments[1] : ""));
  const std::string second = arguments.size() > 1 ? arguments[1] : "";
  const std::string help = "Usage: orb " + arguments[0] + " WORD ... [options]\n\nCommands:\n" + group;
  if (second == "--help" || second == "-h")
    return said(0, help);
  if (second.empty() || second.starts_with("-"))
    return said(2, "orb " + arguments[0] + ": a word is missing that says what to do\n" + help);
  return said(2, unknown_verb_text(arguments[0] + " " + second));
}

} // namespace

command_line_result parse_command_line(const std::vector<std::string> &arguments) {
  const std::string first = arguments.empty() ? "" : arguments[0];
  if (first.empty())
    return said(2, "orb: a command is missing\n" + general_help());
  if (first == "help" && arguments.size() > 1) { // of a command, or of a group of them
    std::vector<std::string> asked(arguments.begin() + 1, arguments.end());
    asked.emplace_back("--help");
    return parse_command_line(asked);
  }
  if (first == "--help" || first == "-h" || first == "help")
    return said(0, general_help());
  if (first == "--version" || first == "version")
    return said(0, version_text() + "\n");
  const verb *wanted = verb_named(arguments);
  if (!wanted)
    return no_verb(arguments);

  command_line_result result;
  result.call = std::make_unique<verb_run>(*wanted);
  CLI::App app(wanted->purpose, wanted->name);
  app.allow_windows_style_options(false);
  app.formatter(std::make_shared<plain_formatter>());
  app.get_formatter()->column_width(34);
  app.get_formatter()->label("REQUIRED", "(required)");
  app.footer("Example:\n  " + wanted->example);
  for (const std::string &place : wanted->by_place) // arguments in the order of their places
    add_row(app, *result.call->option(place));
  for (const verb_option &option : result.call->options())
    if (!option.is_by_place)
      add_row(app, option);
  const auto words_of_name = first == wanted->name ? 1 : 2;
  std::vector<std::string> rest(arguments.rbegin(), arguments.rend() - words_of_name);
  try {
    app.parse(rest);
  } catch (const CLI::CallForHelp &) {
    return said(0, "orb " + wanted->name + " " + wanted->arguments + " [options]\n" + app.help());
  } catch (const CLI::ParseError &wrong) {
    return said(2, what_is_wrong(app, arguments, wrong.what()));
  }
  return result;
}

} // namespace orb
