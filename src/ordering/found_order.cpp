#include "ordering/found_order.h"

#include <algorithm>
#include <string_view>

#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// The reader of one table; each step is false when the lines aren't those that the writer makes of this task.
class order_table {
public:
  order_table(const fs::path &file, const ordering_task &task, const class_DB_of_clones &database)
      : lines_(file), task_(task), database_(database) {}

  bool read(std::int32_t n_jackknife, found_order &found) {
    return read_list(found) && read_order(n_jackknife, found) && read_windows(found);
  }

private:
  bool passed(std::string_view wanted) {
    std::string_view line;
    while (lines_.next(line))
      if (line == wanted)
        return true;
    return false;
  }

  // Positions, numbers and names of the clones that aren't buried.
  bool read_list(found_order &found) {
    std::string_view line;
    if (!lines_.next(line) || line != "Old order:")
      return false;
    found.clone_is_not_excluded.assign(static_cast<std::size_t>(task_.list.count()) + 1, 0);
    for (; lines_.next(line) && !line.empty(); ++n_used_) {
      const auto fields = class_serv_raznoe::fields_of(line);
      std::int32_t position = 0, clone = 0;
      if (fields.size() != 3 || !whole_number_parse(fields[0], position) || !whole_number_parse(fields[1], clone) ||
          position <= last_position_ || position > task_.list.count() || task_.list(position) != clone ||
          database_.name_of_clone_get(clone) != fields[2])
        return false;
      found.clone_is_not_excluded[static_cast<std::size_t>(position)] = 1;
      last_position_ = position;
    }
    return true;
  }

  bool read_order(std::int32_t run, found_order &found) {
    std::string_view line;
    if (!passed("Optimal order") || !lines_.next(line))
      return false;
    for (std::int32_t r = 0; r <= run; ++r)
      if (!lines_.next(line))
        return false;
    const auto fields = class_serv_raznoe::fields_of(line); // number of the run, the places, the mean step
    if (fields.size() != static_cast<std::size_t>(n_used_) + 2 || fields[0] != std::to_string(run))
      return false;
    std::vector<char> seen(static_cast<std::size_t>(n_used_) + 1, 0);
    for (std::size_t i = 1; i + 1 < fields.size(); ++i) {
      std::int32_t place = 0;
      if (!whole_number_parse(fields[i], place) || place < 1 || place > n_used_ ||
          seen[static_cast<std::size_t>(place)]++ != 0)
        return false;
      found.order.add(place);
    }
    return true;
  }

  bool read_windows(found_order &found) {
    if (!passed("Windows:"))
      return true;
    std::string_view line;
    if (!lines_.next(line))
      return false;
    for (; lines_.next(line); ++found.n_windows)
      found.n_weak_joins += class_serv_raznoe::fields_of(line).back() == "weak" ? 1 : 0;
    return found.n_windows > 0;
  }

  line_reader lines_;
  const ordering_task &task_;
  const class_DB_of_clones &database_;
  std::int32_t n_used_ = 0, last_position_ = 0;
};

} // namespace

found_order found_order_of(const ordering_work &work) {
  found_order found{work.clone_is_not_excluded, class_clone_ord_and_verif::order_of(work)};
  if (!work.in_windows())
    return found;
  found.n_windows = static_cast<std::int32_t>(work.windows.size());
  found.n_weak_joins = work.n_weak_joins();
  return found;
}

std::optional<found_order> read_found_order(const ordering_task &task, const class_DB_of_clones &database,
                                            std::int32_t n_jackknife) {
  const std::string tail = class_clone_ord_and_verif::tail_of_files(task);
  std::error_code failed;
  if (!fs::is_regular_file(task.folder / ("ORB_order_" + tail), failed)) // the last one that is written
    return std::nullopt;
  found_order found;
  try {
    if (order_table(task.folder / ("order_control_" + tail), task, database).read(n_jackknife, found))
      return found;
  } catch (const file_error &) { // then it is ordered again
  }
  return std::nullopt;
}

} // namespace orb
