// class_serv_raznoe: cutting texts, plain text helpers, input fields.
#include <algorithm>
#include <limits>

#include "frame/class_serv_raznoe.h"
#include "frame/numbers.h"
#include "frame/process_frame.h"

namespace orb {

namespace {

constexpr std::string_view token_ends = " \t\r\n";

// Calls `field(n, text)` for n = 0, 1, ... fields between separators, at most `count` of them when count >= 0.
// Returns the number of fields; `complete` tells whether the text was used up.
template <class take_field>
std::int32_t cut_at(std::string_view text, std::string_view separator, std::int32_t count, bool &complete,
                    take_field field) {
  std::int32_t n = 0;
  complete = false;
  while (n != count) {
    const std::size_t end = separator.empty() ? std::string_view::npos : text.find(separator);
    field(n++, text.substr(0, end));
    if (end == std::string_view::npos) {
      complete = true;
      break;
    }
    text.remove_prefix(end + separator.size());
  }
  return n;
}

// Puts a field into a vector whose strings are used again.
template <class text_type> void put_field(std::vector<text_type> &fields, std::int32_t n, std::string_view text) {
  if (static_cast<std::size_t>(n) == fields.size())
    fields.emplace_back();
  fields[static_cast<std::size_t>(n)] = text;
}

template <class text_type>
std::int32_t cut_into(std::string_view text, std::string_view separator, std::int32_t count, bool &complete,
                      std::vector<text_type> &fields) {
  const std::int32_t n = cut_at(text, separator, count, complete,
                                [&fields](std::int32_t i, std::string_view field) { put_field(fields, i, field); });
  fields.resize(static_cast<std::size_t>(n));
  return n;
}

bool is_letter_or_digit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

input_box box_with_limits(const std::string &text, const std::string &title, const std::string &old_value,
                          const std::string &minimum, const std::string &maximum) {
  return {text + " (min=" + minimum + ", max=" + maximum + ")", title, old_value};
}

} // namespace

std::string class_serv_raznoe::take_text(std::string_view text, std::string_view marker) {
  const std::size_t at = text.find(marker);
  if (at == std::string_view::npos)
    return {};
  text.remove_prefix(at + marker.size());
  return std::string(marker.empty() ? text : text.substr(0, text.find(marker)));
}

std::string class_serv_raznoe::take_text_from_begin(process_frame &frame, std::string_view text) {
  const std::size_t end = text.find_first_of(token_ends);
  if (end == 0)
    frame.message("Strig start from empty!");
  return std::string(text.substr(0, end));
}

std::int32_t class_serv_raznoe::cut_string(std::string_view text, std::vector<std::string> &fields,
                                           std::int32_t count) {
  bool complete = false;
  return cut_into(text, "\t", count, complete, fields);
}

std::int32_t class_serv_raznoe::cut_string_views(std::string_view text, std::vector<std::string_view> &fields,
                                                 std::int32_t count) {
  bool complete = false;
  return cut_into(text, "\t", count, complete, fields);
}

std::vector<std::string_view> class_serv_raznoe::fields_of(std::string_view line) {
  std::vector<std::string_view> fields;
  cut_string_views(line, fields);
  return fields;
}

std::int32_t class_serv_raznoe::cut_string_spaces(std::string_view text, std::vector<std::string> &fields,
                                                  std::int32_t count, bool &complete) {
  return cut_into(text, " ", count, complete, fields);
}

std::int32_t class_serv_raznoe::cut_string_spaces_several_no_emty(std::string_view text,
                                                                  std::vector<std::string> &fields, std::int32_t count,
                                                                  bool &complete) {
  std::int32_t n = 0;
  std::size_t at = text.find_first_not_of(' ');
  while (at < text.size() && n != count) {
    bool inside_quotes = false;
    std::size_t end = at;
    for (; end < text.size() && (inside_quotes || text[end] != ' '); ++end)
      if (text[end] == '"')
        inside_quotes = !inside_quotes;
    put_field(fields, n++, text.substr(at, end - at));
    at = text.find_first_not_of(' ', end);
  }
  complete = at >= text.size();
  fields.resize(static_cast<std::size_t>(n));
  return n;
}

std::int32_t class_serv_raznoe::cut_string_general(process_frame &frame, std::string_view text,
                                                   std::vector<std::string> &fields, std::string_view separator,
                                                   std::int32_t count, bool &complete) {
  const std::int32_t n = cut_into(text, separator, count, complete, fields);
  if (!complete) {
    const std::int32_t n_all = cut_at(text, separator, -1, complete, [](std::int32_t, std::string_view) {});
    complete = false;
    frame.message("Too many fields: " + std::to_string(n_all) + " in place of " + std::to_string(count) + " in \"" +
                  std::string(text) + "\"");
  }
  return n;
}

std::string class_serv_raznoe::antikovichki(std::string_view text, bool &quoted) {
  quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
  return std::string(quoted && text.size() >= 3 ? text.substr(1, text.size() - 2) : std::string_view());
}

std::int32_t class_serv_raznoe::find_text(std::string_view text, const std::vector<std::string> &list) {
  for (std::size_t i = 1; i < list.size(); ++i)
    if (list[i] == text)
      return static_cast<std::int32_t>(i);
  return -1;
}

std::string class_serv_raznoe::replace_text(std::string_view text, std::string_view what, std::string_view with) {
  if (what.empty())
    return std::string(text);
  std::string replaced;
  bool complete = false;
  cut_at(text, what, -1, complete, [&](std::int32_t n, std::string_view part) {
    if (n > 0)
      replaced += with;
    replaced += part;
  });
  return replaced;
}

std::string class_serv_raznoe::text_transform_to_lower_case(std::string_view text) {
  std::string lower(text);
  for (char &c : lower)
    if (c >= 'A' && c <= 'Z')
      c = static_cast<char>(c - 'A' + 'a');
  return lower;
}

std::string class_serv_raznoe::string_with_letters_and_numbers_only_get(std::string_view text) {
  std::string kept;
  std::copy_if(text.begin(), text.end(), std::back_inserter(kept), is_letter_or_digit);
  return kept;
}

std::string class_serv_raznoe::string_with_added_zeros(std::int64_t number, std::int32_t width) {
  std::string text = std::to_string(number);
  const std::size_t sign = number < 0 ? 1 : 0;
  if (width > 0 && text.size() < static_cast<std::size_t>(width))
    text.insert(sign, static_cast<std::size_t>(width) - text.size(), '0');
  return text;
}

bool class_serv_raznoe::test_value_double(std::string_view text, double minimum, double maximum, double &value) {
  double number = 0;
  if (!number_parse(text, number) || number < minimum || number > maximum)
    return false;
  value = number;
  return true;
}

bool class_serv_raznoe::test_value_long(std::string_view text, std::int32_t minimum, std::int32_t maximum,
                                        std::int32_t &value) {
  std::int32_t number = 0;
  if (!whole_number_parse(text, number) || number < minimum || number > maximum)
    return false;
  value = number;
  return true;
}

std::int16_t class_serv_raznoe::parameter_get_fromInputBox_Integer(process_frame &frame, const std::string &text,
                                                                   const std::string &title, std::int16_t old_value,
                                                                   std::int16_t minimum, std::int16_t maximum) {
  return static_cast<std::int16_t>(parameter_get_fromInputBox_Long(frame, text, title, old_value, minimum, maximum));
}

std::int32_t class_serv_raznoe::parameter_get_fromInputBox_Long(process_frame &frame, const std::string &text,
                                                                const std::string &title, std::int32_t old_value,
                                                                std::int32_t minimum, std::int32_t maximum) {
  std::int32_t value = old_value;
  test_value_long(frame.input(box_with_limits(text, title, std::to_string(old_value), std::to_string(minimum),
                                              std::to_string(maximum))),
                  minimum, maximum, value);
  return value;
}

double class_serv_raznoe::parameter_get_fromInputBox_Double(process_frame &frame, const std::string &text,
                                                            const std::string &title, double old_value, double minimum,
                                                            double maximum) {
  double value = old_value;
  test_value_double(frame.input(box_with_limits(text, title, number_text_shortest(old_value),
                                                number_text_shortest(minimum), number_text_shortest(maximum))),
                    minimum, maximum, value);
  return value;
}

std::string class_serv_raznoe::date_and_time_string(const process_frame &frame) {
  return frame.clock().date_and_time_string();
}

} // namespace orb
