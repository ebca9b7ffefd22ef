// class_markers: the native form, one item a line.
#include <algorithm>

#include "database/class_DB_of_clones.h"
#include "database/class_markers.h"
#include "database/marker_native_heads.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "frame/text_lines.h"

namespace orb {

using namespace marker_native_heads;

void class_markers::file_about_markers_ORB_format_save(process_frame &frame, const class_DB_of_clones &database,
                                                       std::filesystem::path file) const {
  if (file.empty())
    file = frame.path_in_working_folder("\\new_markers_in_clones.ORB");
  result_file out(file);
  const auto number = [&out](std::int64_t value) { out.line(std::to_string(value)); };
  const std::int32_t n_clones = database.total_number_of_clones_get(), n_with = n_clones_with_markers_get();
  out.line(n_clones_head);
  number(n_clones);
  out.line(n_with_markers_head);
  number(n_with);
  out.line(n_markers_head);
  number(total_number_of_markers_get());
  out.line(array_head);
  number(markers_of_clone_.array_of_sets_length_get() + 2);
  out.line(clones_head);
  for (std::int32_t k = 1; k <= n_with; ++k)
    number(clones_with_markers_.member_of_list_antiadres_get(k));
  out.line(places_head);
  for (clone_number clone = 1; clone <= n_clones; ++clone)
    number(clones_with_markers_.element_adress_in_list_get(clone));
  out.line(names_head);
  for (std::int32_t m = 1; m <= total_number_of_markers_get(); ++m)
    out.line(name_of_marker_get(m) + "\t" + position_of_marker_get(m));
  out.line(starts_head);
  std::int64_t place = 1;
  for (std::int32_t k = 1; k <= n_with; place += markers_of_clone_.n_elements_get(k++))
    number(place);
  out.line(ends_head);
  place = 0;
  for (std::int32_t k = 1; k <= n_with; ++k)
    number(place += markers_of_clone_.n_elements_get(k));
  out.line(markers_head);
  for (std::int32_t k = 1; k <= n_with; ++k)
    for (const std::int32_t marker : markers_of_clone_.set_get(k))
      number(marker);
  out.commit();
}

// Reads the native form into a fresh object; stops at the first line that doesn't fit, and tells why.
class native_marker_reader {
public:
  native_marker_reader(process_frame &frame, const class_DB_of_clones &database, const std::filesystem::path &file)
      : frame_(frame), database_(database), lines_(file) {}
  bool read(class_markers &fresh);

private:
  bool refuse(const std::string &why);
  bool next_line();
  bool head(std::string_view text);
  bool number(std::int32_t lowest, std::int32_t highest, std::int32_t &value);
  bool count_behind(std::string_view head_text, std::int32_t &value);
  bool goes_on();
  bool read_clones(class_markers &fresh);
  bool read_names(class_markers &fresh);
  bool read_places();
  bool read_sets(class_markers &fresh);
  bool read_set(std::int32_t k, class_markers &fresh);

  process_frame &frame_;
  const class_DB_of_clones &database_;
  line_reader lines_;
  std::string_view line_;
  std::int32_t n_with_ = 0, n_markers_ = 0; // K and M of the file
  std::vector<std::int64_t> start_of_{0};   // from 1; start_of_[K + 1] is behind the last set
  std::vector<std::int32_t> set_;
};

bool native_marker_reader::refuse(const std::string &why) {
  return frame_.refuse("Native marker file is refused: " + why + "\r\n" + lines_.place());
}

bool native_marker_reader::next_line() {
  return lines_.next(line_) || refuse("it ends early.");
}

bool native_marker_reader::head(std::string_view text) {
  return next_line() && (line_ == text || refuse("the line \"" + std::string(text) + "\" should stand here."));
}

bool native_marker_reader::number(std::int32_t lowest, std::int32_t highest, std::int32_t &value) {
  if (!next_line())
    return false;
  if (whole_number_parse(line_, value) && value >= lowest && value <= highest)
    return true;
  return refuse("a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest) +
                " should stand here.");
}

bool native_marker_reader::count_behind(std::string_view head_text, std::int32_t &value) {
  return head(head_text) && number(0, INT32_MAX, value);
}

bool native_marker_reader::goes_on() {
  constexpr std::int64_t lines_between_reports = 10000;
  if (lines_.line_number() % lines_between_reports == 0) {
    frame_.progress(lines_.position(), lines_.size());
    frame_.local_process_text_set(std::to_string(lines_.line_number()) + " lines of markers");
  }
  return !frame_.stop_requested_get();
}

bool native_marker_reader::read(class_markers &fresh) {
  std::int32_t n_clones = 0, array_length = 0;
  if (!count_behind(n_clones_head, n_clones))
    return false;
  if (n_clones != database_.total_number_of_clones_get())
    frame_.program_end_now("Wrong number of clones in database: n_old=" + std::to_string(n_clones) +
                               ", nnn=" + std::to_string(database_.total_number_of_clones_get()),
                           exit_status::run_failed);
  if (!count_behind(n_with_markers_head, n_with_) || !count_behind(n_markers_head, n_markers_) ||
      !count_behind(array_head, array_length))
    return false;
  const auto room = [this](std::int32_t claimed) { // each number takes a line
    return static_cast<std::int32_t>(std::min<std::int64_t>(claimed, lines_.size()));
  };
  fresh.redim_private_arrays(n_clones, room(n_markers_), room(array_length));
  if (!read_clones(fresh) || !read_names(fresh) || !read_places() || !read_sets(fresh))
    return false;
  fresh.finish_of_adding();
  return true;
}

// The places of all clones follow from the clones themselves: the lines that give them are passed over.
bool native_marker_reader::read_clones(class_markers &fresh) {
  const std::int32_t n_clones = database_.total_number_of_clones_get();
  if (!head(clones_head))
    return false;
  for (std::int32_t k = 1, clone = 0; k <= n_with_; ++k) {
    if (!goes_on() || !number(1, n_clones, clone))
      return false;
    fresh.clones_with_markers_.add_member(clone);
  }
  if (!head(places_head))
    return false;
  for (clone_number clone = 1; clone <= n_clones; ++clone)
    if (!next_line())
      return false;
  return true;
}

bool native_marker_reader::read_names(class_markers &fresh) {
  if (!head(names_head))
    return false;
  for (std::int32_t m = 1; m <= n_markers_; ++m) {
    if (!goes_on() || !next_line())
      return false;
    if (const std::string why = why_no_text(line_); !why.empty())
      return refuse("it is no text: " + why + " of the line.");
    const std::size_t tab = std::min(line_.find('\t'), line_.size());
    if (trimmed(line_.substr(0, tab)).empty())
      return refuse("a marker has no name.");
    fresh.name_of_marker_.emplace_back(line_.substr(0, tab));
    fresh.position_of_marker_.emplace_back(line_.substr(std::min(tab + 1, line_.size())));
    fresh.marker_of_name_.emplace(fresh.name_of_marker_.back(), m); // of equal names the first
  }
  return true;
}

// Only the first start counts: each further one is the end before it and one more.
bool native_marker_reader::read_places() {
  std::int32_t place = 0;
  if (!head(starts_head))
    return false;
  for (std::int32_t k = 1; k <= n_with_; ++k) {
    if (!goes_on() || !number(0, INT32_MAX, place))
      return false;
    start_of_.push_back(place);
  }
  start_of_.push_back(0);
  if (!head(ends_head))
    return false;
  for (std::int32_t k = 1; k <= n_with_; ++k) {
    if (!goes_on() || !number(0, INT32_MAX, place))
      return false;
    start_of_[static_cast<std::size_t>(k) + 1] = static_cast<std::int64_t>(place) + 1;
  }
  return true;
}

bool native_marker_reader::read_sets(class_markers &fresh) {
  if (!head(markers_head))
    return false;
  for (std::int32_t k = 1; k <= n_with_; ++k)
    if (!read_set(k, fresh))
      return false;
  while (lines_.next(line_))
    if (!is_blank_line(line_))
      return refuse("its counts don't fit: more marker numbers stand behind those of its last clone.");
  return true;
}

// One number more than the places tell: deliberate. Files of the saving operation have none too many, so that they end
// early here.
bool native_marker_reader::read_set(std::int32_t k, class_markers &fresh) {
  const auto place = static_cast<std::size_t>(k);
  const std::int64_t n = start_of_[place + 1] - start_of_[place] + 1;
  if (n < 0)
    return refuse("the end of set " + std::to_string(k) + " lies before its start.");
  set_.clear();
  for (std::int64_t i = 1; i <= n; ++i) {
    std::int32_t marker = 0;
    if (!goes_on())
      return false;
    if (lines_.at_end())
      return refuse("its counts don't fit: it ends within the markers of clone " + std::to_string(k) + " of " +
                    std::to_string(n_with_) +
                    ". The reader takes one number more for each clone than a saved file of this form has; "
                    "read the markers from a text file instead.");
    if (!number(1, n_markers_, marker))
      return false;
    set_.push_back(marker);
  }
  std::sort(set_.begin(), set_.end());
  set_.erase(std::unique(set_.begin(), set_.end()), set_.end());
  fresh.markers_of_clone_.add_set(set_);
  for (const std::int32_t marker : set_)
    fresh.clones_of_marker_.add_to_temp_list_of_elements_for_set(frame_, marker, k);
  return true;
}

bool class_markers::run_file_about_markers_ORB_format_load(process_frame &frame, const class_DB_of_clones &database,
                                                           std::filesystem::path file) {
  if (file.empty())
    file = frame.open_file_dialog("Open file with maker links");
  if (file.empty())
    return false;
  class_markers fresh;
  if (!native_marker_reader(frame, database, file).read(fresh))
    return false;
  *this = std::move(fresh);
  frame.local_process_text_set("Markers loaded");
  return true;
}

} // namespace orb
