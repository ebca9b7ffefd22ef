// Reading the recoding of a library: where each clone of the source plates lies in the pools.
#include <algorithm>

#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "frame/text_lines.h"
#include "pools/class_pools3D.h"

namespace orb {

namespace {

constexpr std::int64_t n_lines_of_heads = 2, lines_between_reports = 1000;
constexpr std::int32_t digits_of_plate = 3, digits_of_column = 2;

struct well {
  char letter = 0;
  std::int32_t column = 0;
};

// A letter and digits.
bool well_of(std::string_view text, well &read) {
  if (text.size() < 2 || number_from_letter(text[0]) < 0 || text[1] < '0' || text[1] > '9')
    return false;
  read.letter = text[0];
  return whole_number_parse(text.substr(1), read.column);
}

} // namespace

// One reading into a scheme of its own.
class pools_recoding_reader {
public:
  pools_recoding_reader(process_frame &frame, const class_DB_of_clones &database, const std::filesystem::path &file,
                        const pools_wishes &wishes, class_pools3D &made)
      : frame_(frame), database_(database), lines_(file), wishes_(wishes), made_(made) {
    made_.start(wishes.sizes);
  }

  bool read() {
    while (lines_.next(line_)) {
      if (lines_.line_number() % lines_between_reports == 0 && !report())
        return false;
      if (const std::string why = why_no_text(line_); !why.empty())
        return refuse("The file with pools recoding is no text: " + why + ".");
      if (lines_.line_number() <= n_lines_of_heads || line_.find_first_not_of(" \t") == std::string_view::npos)
        continue;
      cut_fields();
      const std::string wrong = take_line();
      if (!wrong.empty())
        return refuse(wrong);
    }
    if (!made_.is_loaded())
      return frame_.refuse("The file with pools recoding names no clone of the library." +
                           (first_unknown_.empty() ? "" : " The first name is " + first_unknown_ + ".") + "\r\n" +
                           lines_.path().string());
    made_.finish();
    return true;
  }

private:
  bool refuse(const std::string &why) { return frame_.refuse(why + "\r\n" + lines_.place()); }

  bool report() {
    frame_.progress(lines_.position(), lines_.size());
    return frame_.goes_on();
  }

  // A table may have empty fields, words between blanks can't be empty.
  void cut_fields() {
    if (line_.find('\t') != std::string_view::npos) {
      class_serv_raznoe::cut_string_views(line_, fields_);
      for (std::string_view &field : fields_)
        field = trimmed(field, " ");
      return;
    }
    fields_.clear();
    for (std::size_t at = line_.find_first_not_of(' '); at != std::string_view::npos;) {
      const std::size_t end = std::min(line_.find(' ', at), line_.size());
      fields_.push_back(line_.substr(at, end - at));
      at = line_.find_first_not_of(' ', end);
    }
  }
  // Empty, or what is wrong.
  std::string take_line() {
    std::int32_t source_plate = 0;
    well source, pool;
    pool_place place{};
    if (fields_.size() < 5)
      return "A line of the recoding has fewer than five fields.";
    if (!whole_number_parse(fields_[0], source_plate) || source_plate < 0)
      return "The source plate is no number.";
    if (!well_of(fields_[1], source))
      return "The source well is no letter with a number.";
    if (!whole_number_parse(fields_[3], place[pool_plates]) || !well_of(fields_[4], pool))
      return "The pool plate is no number, or the pool well no letter with a number.";
    place[pool_rows] = number_from_letter(pool.letter);
    place[pool_columns] = pool.column;
    for (std::size_t d = 0; d < n_pool_dimensions; ++d)
      if (place[d] < 1 || place[d] > wishes_.sizes[d])
        return "The pool position lies outside of the scheme.";
    put(source_plate, source, place);
    return {};
  }

  void put(std::int32_t source_plate, const well &source, const pool_place &place) {
    const std::string name = wishes_.prefix +
                             class_serv_raznoe::string_with_added_zeros(source_plate, digits_of_plate) + source.letter +
                             class_serv_raznoe::string_with_added_zeros(source.column, digits_of_column);
    const clone_number clone = database_.clone_number_get(name);
    if (clone < 1) {
      ++made_.n_unknown_names_;
      if (first_unknown_.empty())
        first_unknown_ = name;
      return;
    }
    pool_place before;
    if (made_.find_clone_in_pools(clone, before))
      frame_.doubt("Clone " + name + " stands there twice; the last place counts", lines_.place());
    if (made_.clone_in_pool(place[2], place[1], place[0]) >= 1)
      frame_.doubt("A well has two clones; the last one counts", lines_.place());
    made_.put_clone(clone, place);
  }

  process_frame &frame_;
  const class_DB_of_clones &database_;
  line_reader lines_;
  const pools_wishes &wishes_;
  class_pools3D &made_;
  std::string_view line_;
  std::vector<std::string_view> fields_;
  std::string first_unknown_;
};

bool class_pools3D::read_pools_recoding(process_frame &frame, const class_DB_of_clones &database,
                                        std::filesystem::path file, const pools_wishes &wishes) {
  if (file.empty())
    file = frame.open_file_dialog("Open file with pools recoding");
  const std::int16_t kind_of_bands = database.index_of_band_type_get();
  if (file.empty() || database.total_number_of_clones_get() == 0 || (kind_of_bands != 0 && kind_of_bands != 1))
    return false;
  const pool_sizes &sizes = wishes.sizes;
  frame.step_text_set("3D pools: " + std::to_string(sizes[0]) + " plates, " + std::to_string(sizes[1]) + " rows, " +
                      std::to_string(sizes[2]) + " columns");
  class_pools3D made;
  if (!pools_recoding_reader(frame, database, file, wishes, made).read())
    return false;
  *this = std::move(made);
  return true;
}

} // namespace orb
