#include "database/library_file.h"

#include <algorithm>
#include <array>
#include <limits>

#include "database/band_statistics.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "frame/text_lines.h"

namespace orb {

namespace {

// Bands that are made room for when the kind of bands says that none are stored.
constexpr std::int32_t most_empty_bands = 70000000;

struct library_header {
  std::string title;
  std::int32_t n_clones = 0;
  std::int16_t spare_index = 0;
  double max_band_length = 0;
  std::int16_t tollerance = 0, taking_tollerance_into_account_index = 0;
  std::int32_t next_free_band_adress = 0, n_bands_FPC = 0;
  std::int16_t index_of_band_type = 0;
};

bool short_parse(std::string_view text, std::int16_t &value) {
  std::int32_t number = 0;
  if (!whole_number_parse(text, number) || number != static_cast<std::int16_t>(number))
    return false;
  value = static_cast<std::int16_t>(number);
  return true;
}

// What stands between the first and the last double quote, whatever it holds; false without two quotes.
bool quoted_text(std::string_view line, std::string_view &text, std::string_view &behind) {
  const std::size_t first = line.find('"'), last = line.rfind('"');
  if (first == last || first == std::string_view::npos || !is_blank_line(line.substr(0, first)))
    return false;
  text = line.substr(first + 1, last - first - 1);
  behind = line.substr(last + 1);
  return true;
}

// Ten fields between commas, the first of them quoted.
bool header_parse(std::string_view line, library_header &header) {
  std::string_view title, rest;
  if (!quoted_text(line, title, rest))
    return false;
  header.title = title;
  std::array<std::string_view, 21> fields;
  std::size_t n = 0;
  while (n < fields.size() && !rest.empty() && rest.front() == ',') {
    rest.remove_prefix(1);
    fields[n++] = rest.substr(0, rest.find(','));
    rest.remove_prefix(fields[n - 1].size());
  }
  // field 5 tells whether the names were sorted, which is done anew
  return n >= 9 && rest.empty() && whole_number_parse(fields[0], header.n_clones) &&
         short_parse(fields[1], header.spare_index) && number_parse(fields[2], header.max_band_length) &&
         short_parse(fields[3], header.tollerance) &&
         short_parse(fields[4], header.taking_tollerance_into_account_index) &&
         whole_number_parse(fields[6], header.next_free_band_adress) &&
         whole_number_parse(fields[7], header.n_bands_FPC) && short_parse(fields[8], header.index_of_band_type) &&
         header.n_clones >= 0 && header.n_clones < std::numeric_limits<std::int32_t>::max() - 2 &&
         header.next_free_band_adress >= 0 && header.tollerance >= 0 && header.n_bands_FPC >= 1 &&
         header.n_bands_FPC <= LARGEST_band_axis;
}

bool bands_are_stored(std::int16_t index_of_band_type) {
  return index_of_band_type == 0 || index_of_band_type == 1;
}

// One load. Whatever the file declares, room is taken only as lines come.
class library_reader {
public:
  library_reader(process_frame &frame, const std::filesystem::path &file, class_DB_of_clones &database, bool checked)
      : frame_(frame), lines_(file), database_(database), checked_(checked) {}

  bool read() {
    if (!read_header())
      return refuse("Problem with file!\rFingerprint data was not loaded.");
    const bool names = read_names();
    const bool adresses = read_adresses(); // also without all names, so that both shortages are told
    if (!names || !adresses || refused_)
      return false;
    if (line_of_unquoted_name_ > 0)
      return corrupt("the name isn't in double quotes", line_of_unquoted_name_);
    return read_bands() && nothing_follows();
  }

private:
  bool refuse(const std::string &text) { return refuse_at(text, lines_.line_number()); }
  bool refuse_at(const std::string &text, std::int64_t line) {
    frame_.refuse(text + "\r\nfile " + lines_.path().string() + ", line " + std::to_string(line));
    refused_ = true;
    return false;
  }
  bool corrupt(const std::string &why, std::int64_t line) {
    return refuse_at("The library file is damaged: " + why, line);
  }
  bool corrupt(const std::string &why) { return corrupt(why, lines_.line_number()); }
  bool too_short() {
    return refuse("DataBase Error: declared number of clones " + std::to_string(header_.n_clones) +
                  " is higher than the observed=" + std::to_string(observed_));
  }

  bool read_header() {
    std::string_view line;
    if (!lines_.next(line) || !header_parse(line, header_))
      return false;
    database_.database_title_set(header_.title);
    database_.database_spare_index_set(header_.spare_index);
    database_.tollerance_parameters_set(header_.tollerance, header_.taking_tollerance_into_account_index);
    database_.index_of_band_type_set(header_.index_of_band_type);
    database_.total_number_of_different_bands_set_by_eff_len(header_.max_band_length);
    database_.total_number_of_different_bands_FPC_set(header_.n_bands_FPC);
    if (!wrong_band_axis(database_).empty())
      return false;
    // a name with its address takes 5 bytes at least, a band 2: no more of them can come than the file has room for
    database_.inicalise_database(frame_, std::max(header_.n_clones, 1), header_.next_free_band_adress + INT64_C(1));
    database_.room_for(static_cast<std::int32_t>(std::min<std::int64_t>(header_.n_clones, lines_.size() / 5)),
                       std::min<std::int64_t>(header_.next_free_band_adress, lines_.size() / 2));
    return true;
  }

  bool read_names() {
    std::string_view line, name, behind;
    for (clone_number i = 1; i <= header_.n_clones; ++i) {
      if (!lines_.next(line))
        return too_short();
      ++observed_;
      if (quoted_text(line, name, behind) && is_blank_line(behind))
        database_.name_of_clone_set(i, std::string(name));
      else if (line_of_unquoted_name_ == 0)
        line_of_unquoted_name_ = lines_.line_number(); // told only when the file has lines enough
    }
    if (header_.n_clones > database_.max_number_of_real_clones_get())
      database_.max_number_of_real_clones_set(header_.n_clones);
    database_.total_number_of_clones_set(header_.n_clones);
    return true;
  }

  bool read_adresses() {
    std::string_view line;
    std::int32_t adress = 0, before = 0;
    for (clone_number i = 1; i <= header_.n_clones + 1; ++i, before = adress) {
      if (!lines_.next(line))
        return too_short();
      ++observed_;
      if (line_of_unquoted_name_ > 0)
        continue; // the lines are not what they should be: only counted
      if (!whole_number_parse(line, adress))
        return corrupt("the address of a clone's bands is no number");
      if (i == 1 && adress != 1)
        return corrupt("the first address of bands isn't 1");
      if (adress < before)
        return corrupt("addresses of bands don't ascend");
      if (adress > header_.next_free_band_adress && header_.n_clones > 0)
        return corrupt("an address of bands lies behind the " + std::to_string(header_.next_free_band_adress) +
                       " that the file declares");
      if (i == 1)
        continue;
      if (const std::string text = too_many_bands(adress - before); !text.empty())
        frame_.program_end_now(text + "\r\n" + lines_.place(), exit_status::run_failed);
      database_.number_of_bands_in_clone_set(i - 1, adress - before);
    }
    if (line_of_unquoted_name_ == 0 && header_.n_clones > 0 && adress != header_.next_free_band_adress)
      return corrupt("the last address of bands isn't the " + std::to_string(header_.next_free_band_adress) +
                     " that the file declares");
    return true;
  }

  // Nothing is stored for other kinds of bands; room for them must be there all the same, as the addresses say.
  bool make_empty_bands() {
    if (header_.n_clones == 0 || header_.next_free_band_adress <= 1)
      return true;
    if (header_.next_free_band_adress > most_empty_bands)
      return corrupt("it has too many bands without values");
    database_.band_index_or_length_Lng_for_band_of_clone_set(1, 1, 0);
    return true;
  }

  bool read_bands() {
    if (!bands_are_stored(header_.index_of_band_type))
      return make_empty_bands();
    std::vector<band_value> bands;
    for (clone_number i = 1; i <= header_.n_clones; ++i) {
      bands.resize(static_cast<std::size_t>(database_.number_of_bands_in_clone_get(i)));
      const std::int64_t line_before = lines_.line_number();
      for (band_value &band : bands)
        if (!read_band(band))
          return false;
      if (checked_)
        if (const wrong_bands wrong = check_bands_of_clone(bands, i, database_.name_of_clone_get(i), database_))
          frame_.program_end_now(wrong.text + "\r\nfile " + lines_.path().string() + ", line " +
                                     std::to_string(line_before + wrong.position),
                                 exit_status::run_failed);
      // sets the address of the next clone to what it is
      database_.ListOfBands_from_real_database_fast_all_bands_set(i, bands);
    }
    band_value spare = 0;
    if (header_.next_free_band_adress > 0 && !read_band(spare))
      return false;
    if (header_.n_clones > 0)
      database_.band_index_or_length_Lng_for_band_of_clone_set(
          header_.n_clones, database_.number_of_bands_in_clone_get(header_.n_clones) + 1, spare);
    return true;
  }

  bool read_band(band_value &band) {
    std::string_view line;
    if (!lines_.next(line))
      return refuse("DataBase Error: declared number of bands " + std::to_string(header_.next_free_band_adress) +
                    " is higher than the observed=" + std::to_string(n_bands_read_));
    if (!whole_number_parse(line, band))
      return corrupt("a band is no number");
    if (++n_bands_read_ % 100000 == 0) {
      frame_.progress(n_bands_read_, header_.next_free_band_adress);
      frame_.local_process_text_set(number_text_thousands(n_bands_read_) + " of " +
                                    number_text_thousands(header_.next_free_band_adress));
      if (frame_.stop_requested_get())
        return false;
    }
    return true;
  }

  bool nothing_follows() {
    std::string_view line;
    while (lines_.next(line))
      if (!is_blank_line(line) && line != "\x1A")
        return corrupt("there are more lines than it declares");
    return true;
  }

  process_frame &frame_;
  line_reader lines_;
  class_DB_of_clones &database_;
  bool checked_;
  bool refused_ = false;
  library_header header_;
  std::int64_t observed_ = 0; // lines of names and addresses
  std::int64_t line_of_unquoted_name_ = 0;
  std::int64_t n_bands_read_ = 0;
};

std::string header_text(const class_DB_of_clones &database, band_adress next_free) {
  std::string text = '"' + database.database_title_get() + '"';
  const auto add = [&text](std::string_view field) { text.append(",").append(field); };
  const auto add_number = [&add](std::int32_t value) { add(std::to_string(value)); };
  add_number(database.total_number_of_clones_get());
  add_number(database.database_spare_index_get());
  add(number_text_shortest(database.max_band_length_get()));
  add_number(database.tollerance_get());
  add_number(database.taking_tollerance_into_account_index_get());
  add(database.clone_name_sorted_is_created_get() ? "#TRUE#" : "#FALSE#");
  add_number(next_free);
  add_number(database.total_number_of_different_bands_FPC_get());
  add_number(database.index_of_band_type_get());
  return text;
}

} // namespace

bool DataBase_in_typical_file_read(process_frame &frame, const std::filesystem::path &file,
                                   class_DB_of_clones &database, class_usable_values &usable_values, bool checked) {
  frame.log_line("Reading " + file.string());
  frame.step_text_set("Reading " + file.string());
  if (!library_reader(frame, file, database, checked).read())
    return false;
  frame.local_process_text_reset();
  database.sort_clones_by_name(frame);
  if (!checked)
    return true;
  frame.local_process_text_set("testing...");
  return make_band_statistics(frame, database, usable_values);
}

void DataBase_in_typical_file_print(const std::filesystem::path &file, const class_DB_of_clones &database) {
  constexpr std::size_t most_held = 1 << 16;
  const std::int32_t n = database.total_number_of_clones_get();
  const band_adress next_free = database.first_band_adress_get(n + 1);
  const bool stored = bands_are_stored(database.index_of_band_type_get());
  if (stored && !database.bands_are_there())
    throw file_error("can't write", file, "the bands are no longer in memory");
  result_file library(file);
  std::string text = header_text(database, next_free) + "\r\n";
  const auto write_when_full = [&] {
    if (text.size() < most_held)
      return;
    library.write(text);
    text.clear();
  };
  const auto add_number = [&](std::int32_t value) {
    whole_number_append(text, value);
    text += "\r\n";
    write_when_full();
  };
  for (clone_number i = 1; i <= n; ++i) {
    text += '"';
    text += database.name_of_clone_get(i);
    text += "\"\r\n";
    write_when_full();
  }
  for (clone_number i = 1; i <= n + 1; ++i)
    add_number(database.first_band_adress_get(i));
  if (stored) // the spare value behind the last band goes along: deliberate
    for (band_adress i = 1; i <= next_free; ++i)
      add_number(database.band_array()[i]);
  library.write(text);
  library.commit();
}

std::optional<library_file_parameters> parameters_of_library_file(const std::filesystem::path &file) {
  line_reader lines(file);
  std::string_view line;
  library_header header;
  if (!lines.next(line) || !header_parse(line, header))
    return std::nullopt;
  return library_file_parameters{
      {header.tollerance, header.taking_tollerance_into_account_index, header.max_band_length, header.n_bands_FPC},
      header.index_of_band_type != 0};
}

bool is_library_file(const std::filesystem::path &file) {
  library_header header;
  try {
    if (!std::filesystem::is_regular_file(file))
      return false;
    line_reader lines(file);
    std::string_view line;
    return lines.next(line) && header_parse(line, header);
  } catch (const std::exception &) {
    return false;
  }
}

std::filesystem::path save_library_run(process_frame &frame, const class_DB_of_clones &database) {
  const std::filesystem::path file =
      frame.save_file_dialog_checked("Save lists of bands for clones in the ORB-specific format",
                                     "CloneBandSizes.ORBdb", "ORB-DB files (*.ORBdb)|*.ORBdb");
  if (file.empty()) {
    frame.alarm("NB! File in ORB specific format was not created!");
    return {};
  }
  frame.process_start("Saving DB in ORB-specific format");
  frame.log_line(frame.process_name_get() + " " + file.string());
  DataBase_in_typical_file_print(file, database);
  frame.all_panels_reset();
  frame.message("Lists of bands for clones in the ORB-specific format are saved.");
  return file;
}

} // namespace orb
