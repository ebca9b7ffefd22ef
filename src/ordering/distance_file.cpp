#include "ordering/distance_file.h"

#include <algorithm>
#include <cmath>

#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace {

// Fields between commas, blanks and tabs.
void fields_of_line(std::string_view line, std::vector<std::string_view> &fields) {
  fields.clear();
  constexpr std::string_view between = ", \t";
  for (std::size_t at = line.find_first_not_of(between); at != std::string_view::npos;) {
    const std::size_t end = std::min(line.find_first_of(between, at), line.size());
    fields.push_back(line.substr(at, end - at));
    at = line.find_first_not_of(between, end);
  }
}

bool whole_fields(const std::vector<std::string_view> &fields, std::vector<std::int32_t> &numbers) {
  numbers.clear();
  for (const std::string_view field : fields) {
    std::int32_t number = 0;
    if (!whole_number_parse(field, number))
      return false;
    numbers.push_back(number);
  }
  return true;
}

// Is this second line the list of positions rather than a record? It has n ascending numbers joined by blanks; for n =
// 3 both have three, and a record uses tabs there.
bool is_line_of_positions(std::string_view line, const std::vector<std::string_view> &fields, std::int32_t n) {
  if (static_cast<std::int32_t>(fields.size()) != n || line.find_first_of(",\t") != std::string_view::npos)
    return false;
  std::vector<std::int32_t> numbers;
  return whole_fields(fields, numbers) &&
         std::adjacent_find(numbers.begin(), numbers.end(), [](auto a, auto b) { return a >= b; }) == numbers.end();
}

bool head_of_file(const std::vector<std::string_view> &fields, distance_instance &read) {
  double rank = 0;
  return fields.size() == 3 && whole_number_parse(fields[0], read.n) && read.n >= 0 &&
         number_parse(fields[1], read.time_limit) && read.time_limit >= 0 && number_parse(fields[2], rank) &&
         rank >= 0 && whole_number_parse(fields[2], read.neighbour_rank);
}

bool record_of_fields(const std::vector<std::string_view> &fields, std::int32_t n, pair_distance &record) {
  double d = 0;
  if (fields.size() != 3 || !whole_number_parse(fields[0], record.i) || !whole_number_parse(fields[1], record.j) ||
      !number_parse(fields[2], d) || !(std::abs(d) <= 1e9))
    return false;
  record.d = static_cast<std::int32_t>(std::nearbyint(d));
  return std::min(record.i, record.j) >= 1 && std::max(record.i, record.j) <= n;
}

} // namespace

bool read_distance_file(const std::filesystem::path &file, distance_instance &instance, std::string &problem) {
  line_reader reader(file);
  distance_instance read;
  std::vector<std::string_view> fields;
  std::vector<pair_distance> records;
  std::string_view line;
  const auto wrong = [&](const std::string &what) {
    problem = what + " (" + reader.place() + ")";
    return false;
  };
  if (!reader.next(line))
    return wrong("The file of distances is empty");
  fields_of_line(line, fields);
  if (!head_of_file(fields, read))
    return wrong("Number of vertices, time limit and neighbour rank are expected");
  while (reader.next(line)) {
    fields_of_line(line, fields);
    if (fields.empty() || (reader.line_number() == 2 && is_line_of_positions(line, fields, read.n)))
      continue;
    pair_distance record;
    if (!record_of_fields(fields, read.n, record))
      return wrong("Two vertices from 1 to " + std::to_string(read.n) + " and their distance are expected");
    records.push_back(record);
  }
  // Room is taken for what the file holds, not for what its first line claims.
  if (read.n > 1000 + static_cast<std::int64_t>(records.size()))
    return wrong("The file tells of " + std::to_string(read.n) + " vertices and has " + std::to_string(records.size()) +
                 " distances");
  read.dist.assign(read.n, distance_instance::no_distance);
  for (std::int32_t v = 0; v <= read.n; ++v)
    read.dist(v, v) = 0;
  for (const pair_distance &record : records)
    if (record.i != record.j)
      read.dist(record.i, record.j) = read.dist(record.j, record.i) = record.d;
  instance = std::move(read);
  return true;
}

static std::string head_of_text(double time_limit, std::int32_t neighbour_rank,
                                std::span<const std::int32_t> positions) {
  std::string text = std::to_string(positions.size()) + "," + number_text_shortest(time_limit) + "," +
                     std::to_string(neighbour_rank) + "\r\n";
  for (std::size_t i = 0; i < positions.size(); ++i) {
    if (i > 0)
      text += ' ';
    whole_number_append(text, positions[i]);
  }
  return text += "\r\n";
}

static void append_record(std::string &text, const pair_distance &record) {
  whole_number_append(text, record.i);
  text += '\t';
  whole_number_append(text, record.j);
  text += '\t';
  whole_number_append(text, record.d);
  text += "\r\n";
}

std::string distance_file_text(double time_limit, std::int32_t neighbour_rank, std::span<const std::int32_t> positions,
                               std::span<const std::int32_t> distances) {
  const auto n = static_cast<std::int32_t>(positions.size());
  std::string text = head_of_text(time_limit, neighbour_rank, positions);
  std::size_t k = 0;
  for (std::int32_t i = 1; i <= n; ++i)
    for (std::int32_t j = i + 1; j <= n; ++j)
      append_record(text, {i, j, distances[k++]});
  return text;
}

std::string distance_file_text(double time_limit, std::int32_t neighbour_rank, std::span<const std::int32_t> positions,
                               std::span<const pair_distance> distances) {
  std::string text = head_of_text(time_limit, neighbour_rank, positions);
  for (const pair_distance &record : distances)
    append_record(text, record);
  return text;
}

std::int32_t whole_distance(double distance) {
  constexpr double largest = 1e9; // two of them still fit 32 bits
  return static_cast<std::int32_t>(std::clamp(distance + 0.0001, -largest, largest));
}

} // namespace orb
