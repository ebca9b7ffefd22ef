// The parameters of a command as rows of a table: the command line, scripts and forms read them, check and store the
// values, and make help and dialogs from them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace orb {

// Where the value goes. A flag is a bool; an unset optional stays unset when the parameter isn't given; a vector takes
// one value after another.
using parameter_target =
    std::variant<bool *, std::optional<bool> *, std::int16_t *, std::int32_t *, std::int64_t *, std::uint64_t *,
                 double *, std::string *, std::filesystem::path *, std::optional<std::int16_t> *,
                 std::optional<std::int32_t> *, std::optional<double> *, std::vector<std::filesystem::path> *>;

class parameter_row {
public:
  parameter_row(std::string key_, parameter_target target_, std::string meaning_);

  // ---- how it is described -------------------------------------------------------------------------------------
  // Least and greatest number, both allowed.
  parameter_row &limits(double least, double greatest);
  // The only words allowed.
  parameter_row &one_of(std::vector<std::string> allowed);
  // What the help calls the value; by default N for whole numbers, X for others, NAME for words.
  parameter_row &type(std::string shown);
  // What holds while it isn't given, where that is no value: "cutoff + 10".
  parameter_row &unset(std::string shown);
  // While it isn't given a question is put; a verb, which asks nothing that an option can say, takes this instead.
  parameter_row &asked_else(std::string of_verbs);
  // The same where it is a value, which stands in a struct of its own.
  template <class Number> parameter_row &unset_is(Number value) { return unset(shortest_text(double(value))); }
  // A word that stands for a number, whatever the limits: "none".
  parameter_row &word_for(std::string shown, std::int32_t number);
  // Another default than the struct's, as text; the parameter isn't given by it.
  void default_is(const std::string &text);
  parameter_row &in_group(std::string shown);
  // What a form calls it.
  parameter_row &captioned(std::string shown);
  parameter_row &in_units(std::string shown);
  parameter_row &needed();
  parameter_row &short_key(char letter);

  // ---- what it holds -------------------------------------------------------------------------------------------
  // Empty when the text was taken, else what is wrong with it and what is wanted. A flag takes yes, no and nothing.
  std::string take(const std::string &text) const;
  // The value as text; empty: unset. Flags say yes or no.
  std::string text() const;
  // Whether the parameter was given, by `take`.
  bool is_given() const { return given_; }
  // Takes yes, no and nothing. An optional one that isn't given is asked for.
  bool is_flag() const {
    return std::holds_alternative<bool *>(target) || std::holds_alternative<std::optional<bool> *>(target);
  }
  bool is_list() const { return std::holds_alternative<std::vector<std::filesystem::path> *>(target); }
  bool is_number() const;
  bool is_path() const;

  std::string key; // as in "key=value", and as "--key" on the command line
  parameter_target target;
  std::string meaning, type_shown, default_shown, group, caption, unit;
  std::optional<double> low, high;
  std::vector<std::string> words;
  std::string default_of_verbs; // of one that is asked for; empty: there is none
  std::string word_of_number;   // empty: there is none
  std::int32_t number_of_word = 0;
  bool required = false;
  char letter = 0;

private:
  static std::string shortest_text(double value);
  std::string wanted() const; // "a whole number from 0 to 32000"

  mutable bool given_ = false;
};

// The rows of one command, in the order of the help.
class parameter_list {
public:
  template <class Target> parameter_row &add(std::string key, Target &target, std::string meaning) {
    return rows_.emplace_back(std::move(key), parameter_target(&target), std::move(meaning));
  }
  const std::vector<parameter_row> &rows() const { return rows_; }
  const parameter_row *find(const std::string &key) const;
  std::vector<std::string> keys() const;
  void set_default(const std::string &key, const std::string &text);
  void ask_nothing();
  // The first needed one that wasn't given; empty when none is missing.
  std::string missing() const;

private:
  std::vector<parameter_row> rows_;
};

// The word among `known` that is nearest to `word`; empty when none is at all like it.
std::string nearest_word(const std::string &word, const std::vector<std::string> &known);

} // namespace orb
