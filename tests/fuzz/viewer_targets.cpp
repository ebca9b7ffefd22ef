// Drawn nets as the viewer reads them.
#include "command_reader.h"
#include "fuzz_targets.h"
#include "memory_count.h"
#include "support/scripted_frame.h"
#include "viewer/net_file.h"

namespace fuzz_test {

namespace fs = std::filesystem;

namespace {

std::string saved(orb::process_frame &frame, const net_file_contents &contents) {
  class_net_elng net;
  net.contents_set(contents.net_name, contents.nodes, contents.edges, false);
  net_saving wanted;
  wanted.net_name = contents.net_name;
  const fs::path file = fs::path("read") / "saved.net";
  promise(net.SaveNet(frame, file, wanted), "what was read can't be written");
  return bytes_of(file);
}

// What is written reads back to the same bytes: places in three decimals, sizes 1, values other than 0.
bool run_drawn_net(const std::string &bytes) {
  scripted_frame shown;
  fs::current_path(small_inputs().parent_path() / "work");
  const fs::path file = fs::path("read") / "drawn.net";
  write_bytes(file, bytes);
  net_file_contents read, again;
  read.net_name = "as it was";
  const memory_count count;
  const bool accepted = read_net_file(shown.frame, file, read);
  // a record of an edge for "1 1 1" and an end of a line, twice while the array grows
  count.check(static_cast<std::int64_t>(bytes.size()), {1 << 20, 150, 1000, 4});
  if (!accepted) {
    promise(read.net_name == "as it was" && read.nodes.size() == 1 && !shown.last_message().empty(),
            "refused without a word, or half of it is there");
    return false;
  }
  const std::string first = saved(shown.frame, read);
  promise(read_net_file(shown.frame, fs::path("read") / "saved.net", again), shown.last_message());
  promise(saved(shown.frame, again) == first, "a drawing reads back otherwise");
  return true;
}

} // namespace

void add_viewer_targets(fuzz_table &table) {
  table.push_back(
      {"drawn_net",
       [] {
         return std::vector<std::string>{
             "*Network \"a net\"\r\n*Vertices 3\r\n10 \"A [5]\" 0.5 -1,25 0.1 sh box x_fact 2 y_fact 2 ic Red "
             "bc black\r\n20 \"b\" sh unknown\r\n30 \"\" 1e3 2\r\n*Arcs 1\r\n10 20 0 w 2.5 c Green p Dots l "
             "\"x y\"\r\n*Edges 2\r\n20 30 17.25 l \"17.25\"\r\n30 10 1 p Dashed c noColour\r\n",
             "*Network n\n*Vertices 1\n1 \"a\"\n*Edges 0\n*Arcs 0\n",
             "*Network n\n*Vertices 2\n1 \"a\"\n2 \"b\"\n*Arcs 1\n1 2 0 c Green\" p * \n",
             "*Network n\n*Vertices 1\n590000 \"a\"\n"};
       },
       run_drawn_net});
}

} // namespace fuzz_test
