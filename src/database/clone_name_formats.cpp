// Names of clones in the naming schemes of plate libraries: a plate, a number on it, and the rest (row and column).
#include <algorithm>
#include <array>

#include "database/class_DB_of_clones.h"
#include "database/class_clone_serv.h"

namespace orb {

namespace {

constexpr std::int32_t format_whole = 7, format_automatic = 8;

struct name_parts {
  std::string plate, number, rest;
};

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

// Characters `first` to `last`, counted from 1; as many of them as there are.
std::string characters(std::string_view text, std::size_t first, std::size_t last) {
  return first > text.size() ? std::string() : std::string(text.substr(first - 1, last - first + 1));
}

// The first place from `from` on (counted from 1) that holds no digit; 0 when there is none.
std::size_t first_non_digit(std::string_view text, std::size_t from) {
  for (std::size_t i = from; i <= text.size(); ++i)
    if (!is_digit(text[i - 1]))
      return i;
  return 0;
}

name_parts parts_number_first(std::string_view text) {
  const std::size_t p = first_non_digit(text, 1);
  const std::size_t n_digits = p == 0 ? text.size() : p - 1;
  std::string number(text.substr(0, n_digits));
  if (number.size() < 3)
    number.insert(0, 3 - number.size(), '0');
  return {"3B", number, std::string(text.substr(n_digits))};
}

name_parts parts_with_underscore(std::string_view text) {
  const std::size_t p = text.find('_') + 1; // 0: there is none
  if (p == 0)
    return {{}, {}, std::string(text)};
  return {std::string(text.substr(0, p - 1)), characters(text, p + 1, p + 3), characters(text, p + 5, p + 7)};
}

name_parts parts_automatic(std::string_view text, const project_settings &settings) {
  const std::int32_t prefix = settings.automatic_name_prefix_length;
  if (prefix == -1 || static_cast<std::int64_t>(text.size()) <= prefix)
    return {{}, {}, std::string(text)};
  const std::size_t p = static_cast<std::size_t>(std::max(prefix, 0));
  const std::string plate(text.substr(0, p)), behind(text.substr(p));
  if (!settings.automatic_name_number_column)
    return {plate, {}, behind};
  std::size_t q = static_cast<std::size_t>(std::max(settings.automatic_name_number_end, 0));
  if (q < 1)
    q = first_non_digit(text, p + 1);
  if (q <= p + 1 || q > text.size())
    return {plate, {}, behind};
  return {plate, characters(text, p + 1, q - 1), std::string(text.substr(q - 1))};
}

name_parts parts_of_name(std::string_view text, std::int32_t format, const project_settings &settings) {
  switch (format) {
  case 0:
    return {characters(text, 1, 2), characters(text, 4, 6), characters(text, 8, 10)};
  case 1:
    return {"3B", characters(text, 1, 3), characters(text, 5, 7)};
  case 2:
    return parts_number_first(text);
  case 3:
    return {characters(text, 1, 2), characters(text, 3, 5), characters(text, 6, 8)};
  case 4:
    return {characters(text, 1, 5), characters(text, 6, 8), characters(text, 9, 11)};
  case 5:
    return parts_with_underscore(text);
  case 6:
    return {characters(text, 7, 9), characters(text, 10, 12), characters(text, 13, 15)};
  case format_automatic:
    return parts_automatic(text, settings);
  default:
    return {{}, {}, std::string(text)};
  }
}

// Formats 2 and 4 are asked for as a result too rarely to have had a rule; they get what their examples show: the
// number without its leading zeros and the rest, and all three parts joined.
std::string name_from_parts(const name_parts &parts, std::int32_t format) {
  const auto &[plate, number, rest] = parts;
  switch (format) {
  case 0:
  case 5:
    return plate + "_" + number + "_" + rest;
  case 1:
    return number.empty() || rest.empty() ? number + rest : number + "-" + rest;
  case 2:
    return number.substr(std::min(number.find_first_not_of('0'), number.size())) + rest;
  case 3:
  case 4:
  case format_automatic:
    return plate + number + rest;
  case 6:
    return "TaaCsp" + plate + number + rest;
  default:
    return rest;
  }
}

} // namespace

std::string class_clone_serv::clone_format_example_get(std::int32_t format) {
  static constexpr std::array<const char *, 9> examples{"3B_015_A24",
                                                        "015-A24",
                                                        "15A24",
                                                        "RT001C07",
                                                        "MNEA0021H03",
                                                        "3B.._015_A24",
                                                        "TaaCsp1BS001A03",
                                                        "Text (i.e. TA.E042.4H10.P20)",
                                                        "Automatically selecting"};
  return format >= 0 && format < n_clone_formats_get() ? examples[static_cast<std::size_t>(format)] : "";
}

std::string class_clone_serv::extract_clone_name(std::string_view text, std::int32_t input, std::int32_t output,
                                                 const project_settings &settings) {
  if (input == output && input != format_whole && input != format_automatic) {
    static constexpr std::array<std::size_t, 7> lengths{10, 7, std::string_view::npos, 8, 11, std::string_view::npos,
                                                        15};
    return std::string(input >= 0 && input <= 6 ? text.substr(0, lengths[static_cast<std::size_t>(input)]) : text);
  }
  return name_from_parts(parts_of_name(text, input, settings), output);
}

void class_clone_serv::automatically_selecting_clone_name_format_start(const class_DB_of_clones &database,
                                                                       project_settings &settings) {
  const std::int32_t n = database.total_number_of_clones_get();
  const std::string &first = database.name_of_clone_get(1);
  std::size_t prefix = first.size();
  bool separators = false;
  for (clone_number i = 1; i <= n; ++i) {
    const std::string &name = database.name_of_clone_get(i);
    const auto apart =
        std::mismatch(first.begin(), first.begin() + static_cast<std::ptrdiff_t>(prefix), name.begin(), name.end());
    prefix = static_cast<std::size_t>(apart.first - first.begin());
    separators = separators || name.find_first_of("-._") != std::string::npos;
  }
  std::size_t q = 0;
  if (!separators) {
    q = first_non_digit(first, prefix + 1);
    for (clone_number i = 2; i <= n && q > 0; ++i) {
      const std::string &name = database.name_of_clone_get(i);
      if (name.size() >= q && is_digit(name[q - 1]))
        q = 0; // the number has no fixed width
    }
  }
  settings.automatic_name_prefix_length = n > 0 ? static_cast<std::int32_t>(prefix) : -1;
  settings.automatic_name_number_column = !separators;
  settings.automatic_name_number_end = static_cast<std::int32_t>(q);
}

} // namespace orb
