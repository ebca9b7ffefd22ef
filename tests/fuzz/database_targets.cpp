// Fingerprints, libraries, lists of clones, names, markers.
#include <algorithm>

#include "command_reader.h"
#include "support/native_markers.h"

namespace fuzz_test {

namespace {

// A command that writes from `read/x.txt` to `out/first.txt` makes the same of what it wrote.
std::function<bool(session &)> same_again(std::string command, std::string written) {
  return [command, written](session &on) {
    const std::string first = bytes_of(written);
    std::filesystem::rename(written, "out/again.txt");
    run_lines(on, {command});
    promise(bytes_of(written) == first, "written otherwise the second time:\n" + first);
    return true;
  };
}

// Clones with the names of their markers, in any order; positions aren't written by the form that is read again.
std::string markers_of(const session &of) {
  const class_DB_of_clones &database = of.project.database();
  std::string text;
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone) {
    std::vector<std::string> names;
    for (const std::int32_t marker : database.markers().markers_of_clone(clone))
      names.push_back(database.markers().name_of_marker_get(marker));
    std::sort(names.begin(), names.end()); // the native form may give two markers one name
    names.erase(std::unique(names.begin(), names.end()), names.end());
    text += database.name_of_clone_get(clone);
    for (const std::string &name : names)
      text += "\t" + name;
    text += "\n";
  }
  return text;
}

// The form has commas between markers: names that hold one are out of its reach, which is told.
bool write_markers(session &on) {
  const class_markers &markers = on.project.database().markers();
  bool has_comma = false;
  for (std::int32_t m = 1; m <= markers.total_number_of_markers_get(); ++m)
    has_comma = has_comma || markers.name_of_marker_get(m).find(',') != std::string::npos;
  if (markers.total_number_of_markers_get() == 0)
    return false;
  on.record = {};
  run_lines(on, {"markers.save form=clones out=out/m.txt"});
  promise(has_comma != on.record.warnings.empty(), "a warning tells of names with commas, and only of them");
  return !has_comma;
}

// A command that leaves the project as it is.
void add_plain(fuzz_table &table, const std::string &name, const std::string &line, std::vector<std::string> seeds) {
  command_reader reader{{"library"}, "x.txt", line};
  reader.does = effect::none;
  table.push_back(target_of(name, reader, std::move(seeds)));
}

void add_fingerprints(fuzz_table &table) {
  const std::vector<std::string> sizes{"plates/p.sizes"}, save{"library.save out=out/l.ORBdb"},
      load{"library.load file=out/l.ORBdb"};
  const auto library_by = [&](const std::string &options) {
    command_reader reader{
        {"library"}, "x.sizes", "library.load file=read/x.sizes gel-length=2000 tolerance=2" + options};
    reader.write = by_lines(save);
    reader.read_again = load;
    reader.limits.bytes = 6 << 20; // frequencies of all places of a gel
    return reader;
  };
  table.push_back(target_of("sizes", library_by(""), sizes));
  table.push_back(target_of("sizes_as_bins", library_by(" tolerance-index=0"), sizes));
  table.push_back(target_of("plain_text_clones", library_by(" plain-text=yes"), sizes));
  command_reader library = library_by("");
  library.file = "x.ORBdb";
  library.read = "library.load file=read/x.ORBdb";
  table.push_back(target_of("library", library, {"library.ORBdb"}));
  add_plain(table, "sizes_test", "library.test_sizes file=read/x.txt out=out", sizes);
  add_plain(table, "sizes_copied",
            "list.select list=../in/list.txt fingerprints=read/x.txt out=out/s.sizes frequency=1", sizes);
}

void add_lists(fuzz_table &table) {
  command_reader list{{"library"}, "x.txt", "list.sort list=read/x.txt out=out/l.txt"};
  list.does = effect::none;
  list.write = same_again("list.sort list=out/again.txt out=out/l.txt", "out/l.txt");
  table.push_back(target_of("list", list, {"list.txt"}));
  add_plain(table, "list_formats", "list.format list=read/x.txt out=out/l.txt name-format-in=3", {"list.txt"});
  table.push_back(target_of("lists_by_address", {{"library", "lists"}, "x.txt", "clones_in_lists.load file=read/x.txt"},
                            {"addresses.txt", "list.txt"}));
  add_plain(table, "lines_of_names", "library.find_names file=read/x.txt all=yes out=out", {"columns.txt", "list.txt"});
  command_reader names{{"library"}, "x.txt", "library.rename file=read/x.txt out=out"};
  names.write = by_lines({"library.save out=out/l.ORBdb"});
  names.read_again = {"library.load file=out/l.ORBdb"};
  table.push_back(target_of("new_names", names, {"new_names.txt"}));
}

void add_markers(fuzz_table &table) {
  std::string marker_without_name = orb_test::native_markers(11);
  marker_without_name.erase(marker_without_name.find("M1"), 2);
  const auto add = [&](const std::string &form, std::vector<std::string> seeds, std::vector<std::string> kept = {}) {
    command_reader reader{{"library", "markers"}, "m.txt", "markers.load file=read/m.txt form=" + form};
    reader.write = write_markers;
    reader.read_again = {"markers.load file=out/m.txt form=clones-in-one-column"};
    reader.text = markers_of;
    std::string name = "markers_" + form;
    std::replace(name.begin(), name.end(), '-', '_');
    table.push_back(target_of(name, reader, std::move(seeds), std::move(kept)));
  };
  add("any", {"fields.txt", "column.txt", "of_markers.txt", "markers.ORB"});
  add("clones", {"fields.txt"});
  add("clones-in-one-column", {"column.txt"});
  add("markers", {"of_markers.txt"});
  add("native", {"native.ORB"},
      {"Clones in database with bands:\r\n11\r\nClones in database with markers:\r\n2\r\nTotal number of "
       "markers:\r\n2147483647\r\nmmm:\r\n2147483647\r\n",
       marker_without_name});
  table.push_back(target_of("marker_positions", {{"library", "markers"}, "p.txt", "markers.positions file=read/p.txt"},
                            {"positions.txt"}));
}

} // namespace

void add_database_targets(fuzz_table &table) {
  add_fingerprints(table);
  add_lists(table);
  add_markers(table);
}

} // namespace fuzz_test
