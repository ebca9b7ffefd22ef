// The arguments and options of a command as rows of a table: whatever front end is in use reads them, checks and
// stores the values, and makes the help.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "commands/command_options.h"

namespace orb {

// Where the value goes. A flag is a bool; an unset optional stays unset when the option isn't given.
using option_target =
    std::variant<bool *, std::int16_t *, std::int32_t *, std::int64_t *, std::uint64_t *, double *, std::string *,
                 std::filesystem::path *, std::optional<std::int16_t> *, std::optional<std::int32_t> *,
                 std::optional<double> *, std::vector<std::filesystem::path> *>;

class option_row {
public:
  option_row(std::string option_name, option_target option_value, std::string option_meaning)
      : name(std::move(option_name)), target(option_value), meaning(std::move(option_meaning)) {}

  // Least and greatest number, both allowed.
  option_row &limits(double least, double greatest) {
    low = least;
    high = greatest;
    return *this;
  }
  // The only words allowed.
  option_row &one_of(std::vector<std::string> allowed) {
    words = std::move(allowed);
    return *this;
  }
  // What the help calls the value; by default N for whole numbers, X for others, NAME for words.
  option_row &type(std::string shown) {
    type_shown = std::move(shown);
    return *this;
  }
  // What the help gives as the default where it isn't the value that the target holds.
  option_row &shown_default(std::string shown) {
    default_shown = std::move(shown);
    return *this;
  }
  option_row &in_group(std::string shown) {
    group = std::move(shown);
    return *this;
  }
  option_row &needed() {
    required = true;
    return *this;
  }

  std::string name; // "-t,--threads"; without a dash: an argument known by its place
  option_target target;
  std::string meaning, type_shown, default_shown, group;
  std::optional<double> low, high;
  std::vector<std::string> words;
  bool required = false;
};

// The rows of one command, in the order of the help.
class option_list {
public:
  template <class Target> option_row &add(std::string name, Target &target, std::string meaning) {
    return rows_.emplace_back(std::move(name), option_target(&target), std::move(meaning));
  }
  const std::vector<option_row> &rows() const { return rows_; }

private:
  std::vector<option_row> rows_;
};

// Groups of options that several commands share.
void add_input_argument(option_list &list, command_options &options);   // INPUT, for assemble and load
void add_library_argument(option_list &list, command_options &options); // LIB, a library file or an INPUT
void add_net_argument(option_list &list, command_options &options);
void add_list_argument(option_list &list, command_options &options);
void add_output_options(option_list &list, command_options &options, const char *type); // --out, --force
void add_library_options(option_list &list, command_options &options);
void add_parameter_options(option_list &list, command_options &options); // of band comparison; in the group above
void add_metric_options(option_list &list, command_options &options);
void add_revision_options(option_list &list, command_options &options);
void add_contig_options(option_list &list, command_options &options);
void add_ordering_options(option_list &list, command_options &options);
// Which files a contig gets, and in which form; the contig options have them too.
void add_contig_file_options(option_list &list, command_options &options);
void add_common_options(option_list &list, command_options &options);

} // namespace orb
