#include "commands/parameter_list.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fmt/format.h>
#include <limits>
#include <numeric>

#include "frame/front_end.h"
#include "frame/numbers.h"

namespace orb {

namespace {

constexpr std::size_t longest_text_shown = 40;

template <class Value> constexpr bool is_optional = false;
template <class Value> constexpr bool is_optional<std::optional<Value>> = true;

template <class Value> struct plain_value { using type = Value; };
template <class Value> struct plain_value<std::optional<Value>> { using type = Value; };

enum class value_kind { flag, whole, number, text };

value_kind kind_of(const parameter_target &target) {
  return std::visit(
      [](const auto *held) {
        using value = typename plain_value<std::remove_cv_t<std::remove_pointer_t<decltype(held)>>>::type;
        if constexpr (std::is_same_v<value, bool>)
          return value_kind::flag;
        else if constexpr (std::is_integral_v<value>)
          return value_kind::whole;
        else if constexpr (std::is_floating_point_v<value>)
          return value_kind::number;
        else
          return value_kind::text;
      },
      target);
}

std::string quoted(const std::string &text) {
  return '"' + (text.size() > longest_text_shown ? text.substr(0, longest_text_shown) + "..." : text) + '"';
}

// Of a number or a word; empty for anything else.
template <class Value> std::string text_of_value(const Value &value) {
  if constexpr (std::is_same_v<Value, bool>)
    return {};
  else if constexpr (std::is_arithmetic_v<Value>)
    return number_text_shortest(static_cast<double>(value));
  else if constexpr (std::is_same_v<Value, std::string>)
    return value;
  else
    return {};
}

// The default as the struct holds it; empty for what is unset, a flag, or no text.
std::string text_held(const parameter_target &target) {
  return std::visit([](const auto *held) { return text_of_value(*held); }, target);
}

template <class Whole> bool whole_from(const std::string &text, Whole &value) {
  const char *begin = text.data() + (text.starts_with('+') ? 1 : 0);
  const auto [end, error] = std::from_chars(begin, text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size();
}

bool number_from(const std::string &text, double &value) {
  const char *begin = text.data() + (text.starts_with('+') ? 1 : 0);
  const auto [end, error] = std::from_chars(begin, text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() && std::isfinite(value);
}

// Puts the text into the target; false when it is none of its kind or out of its type's range.
template <class Value> bool put(const std::string &text, Value &into) {
  using plain = typename plain_value<Value>::type;
  if constexpr (std::is_same_v<plain, bool>) {
    answer given = answer::yes;
    if (!text.empty() && (!answer_from_text(text, given) || given == answer::cancel))
      return false;
    into = given == answer::yes;
  } else if constexpr (std::is_integral_v<plain>) {
    plain value = 0;
    if (!whole_from(text, value))
      return false;
    into = value;
  } else if constexpr (std::is_floating_point_v<plain>) {
    double value = 0;
    if (!number_from(text, value))
      return false;
    into = value;
  } else if constexpr (std::is_same_v<plain, std::vector<std::filesystem::path>>) {
    into.emplace_back(text);
  } else {
    into = text;
  }
  return true;
}

} // namespace

parameter_row::parameter_row(std::string key_, parameter_target target_, std::string meaning_)
    : key(std::move(key_)), target(target_), meaning(std::move(meaning_)) {
  static constexpr const char *usual_types[] = {"", "N", "X", "NAME"};
  type_shown = usual_types[static_cast<std::size_t>(kind_of(target))];
  default_shown = text_held(target);
}

parameter_row &parameter_row::limits(double least, double greatest) {
  low = least;
  high = greatest;
  return *this;
}

parameter_row &parameter_row::one_of(std::vector<std::string> allowed) {
  words = std::move(allowed);
  return *this;
}

parameter_row &parameter_row::type(std::string shown) {
  type_shown = std::move(shown);
  return *this;
}

parameter_row &parameter_row::unset(std::string shown) {
  default_shown = std::move(shown);
  return *this;
}

parameter_row &parameter_row::word_for(std::string shown, std::int32_t number) {
  word_of_number = std::move(shown);
  number_of_word = number;
  default_shown = text();
  return *this;
}

void parameter_row::default_is(const std::string &text) {
  take(text);
  given_ = false;
  default_shown = is_flag() ? "" : text;
}

parameter_row &parameter_row::asked_else(std::string of_verbs) {
  default_shown = "asked, else " + of_verbs;
  default_of_verbs = std::move(of_verbs);
  return *this;
}

parameter_row &parameter_row::in_group(std::string shown) {
  group = std::move(shown);
  return *this;
}

parameter_row &parameter_row::captioned(std::string shown) {
  caption = std::move(shown);
  return *this;
}

parameter_row &parameter_row::in_units(std::string shown) {
  unit = std::move(shown);
  return *this;
}

parameter_row &parameter_row::needed() {
  required = true;
  default_shown.clear(); // what has to be given has none
  return *this;
}

parameter_row &parameter_row::short_key(char shown) {
  letter = shown;
  return *this;
}

bool parameter_row::is_number() const {
  const value_kind kind = kind_of(target);
  return kind == value_kind::whole || kind == value_kind::number;
}

bool parameter_row::is_path() const {
  return std::holds_alternative<std::filesystem::path *>(target) || is_list();
}

std::string parameter_row::shortest_text(double value) {
  return number_text_shortest(value);
}

std::string parameter_row::wanted() const {
  if (!words.empty())
    return fmt::format("one of {}", fmt::join(words, ", "));
  if (is_flag())
    return "yes or no";
  std::string text = kind_of(target) == value_kind::whole ? "a whole number" : "a number";
  constexpr double unlimited = 1e15;
  if (low && *low > -unlimited && *high < unlimited)
    text += " from " + number_text_shortest(*low) + " to " + number_text_shortest(*high);
  else if (low && *low > -unlimited)
    text += " of at least " + number_text_shortest(*low);
  if (!word_of_number.empty())
    text += ", or " + word_of_number;
  return text;
}

std::string parameter_row::take(const std::string &text) const {
  if (!word_of_number.empty() && text == word_of_number) {
    std::visit([&](auto *held) { put(std::to_string(number_of_word), *held); }, target);
    given_ = true;
    return {};
  }
  const bool known = words.empty() || std::find(words.begin(), words.end(), text) != words.end();
  double number = 0;
  const bool is_in_limits = !low || (number_from(text, number) && number >= *low && number <= *high);
  const bool taken = known && is_in_limits && std::visit([&](auto *held) { return put(text, *held); }, target);
  if (!taken)
    return quoted(text) + " isn't " + wanted();
  given_ = true;
  return {};
}

std::string parameter_row::text() const {
  if (!word_of_number.empty() && text_held(target) == number_text_shortest(number_of_word))
    return word_of_number;
  return std::visit(
      [](const auto *held) -> std::string {
        using value = std::remove_cv_t<std::remove_pointer_t<decltype(held)>>;
        if constexpr (std::is_same_v<value, bool>) {
          return *held ? "yes" : "no";
        } else if constexpr (std::is_same_v<value, std::optional<bool>>) {
          return !*held ? std::string() : **held ? "yes" : "no";
        } else if constexpr (is_optional<value>) {
          return *held ? number_text_shortest(static_cast<double>(**held)) : std::string();
        } else if constexpr (std::is_same_v<value, std::filesystem::path>) {
          return held->string();
        } else if constexpr (std::is_same_v<value, std::vector<std::filesystem::path>>) {
          std::string all;
          for (const std::filesystem::path &path : *held)
            all += (all.empty() ? "" : " ") + path.string();
          return all;
        } else {
          return text_of_value(*held);
        }
      },
      target);
}

const parameter_row *parameter_list::find(const std::string &key) const {
  const auto at = std::find_if(rows_.begin(), rows_.end(), [&](const parameter_row &row) { return row.key == key; });
  return at == rows_.end() ? nullptr : &*at;
}

void parameter_list::set_default(const std::string &key, const std::string &text) {
  for (parameter_row &row : rows_)
    if (row.key == key)
      row.default_is(text);
}

void parameter_list::ask_nothing() {
  for (parameter_row &row : rows_)
    if (!row.default_of_verbs.empty() && !row.is_given())
      row.default_is(row.default_of_verbs);
}

std::vector<std::string> parameter_list::keys() const {
  std::vector<std::string> all;
  for (const parameter_row &row : rows_)
    all.push_back(row.key);
  return all;
}

std::string parameter_list::missing() const {
  for (const parameter_row &row : rows_)
    if (row.required && (!row.is_given() || row.text().empty()))
      return row.key;
  return {};
}

static std::size_t edit_distance(const std::string &a, const std::string &b) {
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

std::string nearest_word(const std::string &word, const std::vector<std::string> &known) {
  std::string best;
  std::size_t least = word.size() / 3 + 1; // a letter in three may be wrong
  for (const std::string &candidate : known)
    if (const std::size_t distance = edit_distance(word, candidate); distance < least) {
      least = distance;
      best = candidate;
    }
  return best;
}

} // namespace orb
