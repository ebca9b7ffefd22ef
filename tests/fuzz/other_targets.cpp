// What is read without a project: lines, numbers, answers, scripts, records of runs, sequences, distances, clones with
// their true places, clusters.
#include <array>
#include <cmath>
#include <fmt/format.h>

#include "command_reader.h"
#include "commands/verbs.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "ordering/distance_file.h"
#include "pools/positive_pools.h"
#include "reports/run_record.h"
#include "simulation/class_simul_clones.h"
#include "simulation/sequence_reader.h"
#include "simulation/true_positions.h"
#include "support/plain_lines.h"
#include "support/sequence_helpers.h"

namespace fuzz_test {

namespace fs = std::filesystem;

namespace {

// The file that the bytes become, in an empty folder.
fs::path file_of(const std::string &bytes, const char *name) {
  fs::current_path(small_inputs().parent_path() / "work");
  const fs::path file = fs::path("read") / name;
  write_bytes(file, bytes);
  return file;
}

fuzz_target literal_target(const char *name, std::vector<std::string> seeds, bool (*run)(const std::string &)) {
  return {name, [seeds] { return seeds; }, run};
}

// ---- lines, numbers, answers, scripts ----

bool run_lines_of_file(const std::string &bytes) {
  line_reader reader(file_of(bytes, "lines.txt"));
  std::vector<std::string> lines;
  for (std::string_view line; reader.next(line);)
    lines.emplace_back(line);
  promise(lines == orb_test::plainly_cut(bytes), "lines are cut otherwise");
  promise(reader.position() == static_cast<std::int64_t>(bytes.size()) && reader.at_end(), "not all was read");
  return true;
}

bool run_number(const std::string &bytes) {
  double value = 0, again = 0;
  if (!number_parse(bytes, value))
    return false;
  const std::string text = number_text_shortest(value);
  promise(number_parse(text, again) && again == value, "the number reads back otherwise: " + text);
  std::int32_t whole = 0;
  promise(!whole_number_parse(bytes, whole) || whole == value, "the whole number is another one");
  return true;
}

bool run_answers(const std::string &bytes) {
  answer_book book;
  std::string problem, reply;
  if (!answer_book::parse(bytes, book, problem)) {
    promise(!problem.empty(), "refused without a word");
    return false;
  }
  for (const char *prompt : {"Do you want to load the created net", "Start from ", ""})
    book.take(prompt, reply);
  return true;
}

std::string quoted(const std::string &word) {
  std::string text = "\"";
  for (const char c : word)
    text += c == '"' || c == '\\' ? std::string("\\") + c : std::string(1, c);
  return text + "\"";
}

bool run_script_line(const std::string &bytes) {
  try {
    const script_line line = parse_script_line(bytes, 1);
    std::string text = line.command.empty() ? "" : quoted(line.command);
    for (const auto &[key, value] : line.values)
      text += " " + quoted(key + "=" + value);
    const script_line again = parse_script_line(text, 1);
    promise(again.command == line.command && again.values == line.values, "the line reads back otherwise: " + text);
    if (line.command.empty())
      return true;
    bound_command command = bound_by_name(line.command);
    for (const auto &[key, value] : line.values)
      command.set(key, value);
    return true;
  } catch (const usage_error &) {
    return false;
  }
}

// ---- run.json ----

bool run_record_of_run(const std::string &bytes) {
  const fs::path file = file_of(bytes, "record/run.json");
  write_bytes("read/record/x.ORBns", "abc");
  const memory_count count;
  const auto record = run_record_read(file);
  count.check(static_cast<std::int64_t>(bytes.size()), {});
  try {
    for (const fs::path &leftover : leftovers_of_run(file, "net"))
      promise(leftover.parent_path() == file.parent_path(), "it gives a file away that isn't beside it");
    run_record_beside("read/record/x.ORBns");
    difference_from_record("read/record/x.ORBns");
    if (!record)
      return false;
    promise(run_record_difference(*record, *record).empty(), "it differs from itself");
    rule_of_record(*record);
    words_on_what_is_kept(*record, "read/record");
    const auto outputs = record->find("outputs");
    if (outputs != record->end() && outputs->is_object())
      for (const auto &[key, entry] : outputs->items())
        output_is_intact(*record, key, "read/record");
  } catch (const nlohmann::json::exception &) { // the door of the commands tells it
    return false;
  }
  return true;
}

// ---- sequences ----

// Names and letters, and how it ended.
struct read_sequence {
  std::string fasta, problem;
  bool refused = false;
};

read_sequence sequence_of(const fs::path &file) {
  read_sequence read;
  try {
    sequence_reader reader(file);
    for (;;)
      switch (reader.next()) {
      case sequence_reader::piece::record:
        read.fasta += (read.fasta.empty() ? ">" : "\n>") + reader.name() + "\n";
        break;
      case sequence_reader::piece::letters:
        for (const std::uint8_t letter : reader.letters())
          read.fasta += "NACGT"[letter];
        break;
      case sequence_reader::piece::refused:
        read.problem = reader.problem();
        read.refused = true;
        return read;
      case sequence_reader::piece::end:
        return read;
      }
  } catch (const file_error &failed) {
    read.problem = failed.what();
    read.refused = true;
  }
  return read;
}

constexpr work_limits limits_of_sequence{4 << 20, 2000, 20000, 20}; // a block of letters; gzip packs a thousand in one

bool run_sequence(const std::string &bytes) {
  const fs::path file = file_of(bytes, "x.fa");
  const memory_count count;
  const read_sequence read = sequence_of(file);
  count.check(static_cast<std::int64_t>(bytes.size()), limits_of_sequence);
  promise(read.refused != read.problem.empty(), "refused without a word");
  if (read.refused)
    return false;
  promise(sequence_of(file_of(read.fasta, "x.fa")).fasta == read.fasta, "the sequence reads back otherwise");
  if (bytes.starts_with("\x1f\x8b"))
    return true;
  orb_test::write_gzip("read/x.fa", bytes);
  promise(sequence_of("read/x.fa").fasta == read.fasta, "it reads otherwise from gzip");
  return true;
}

std::vector<std::string> sequence_seeds() {
  return {">one first\nACGTNNRYacgt\n>two\r\nGGCC\r\n\r\nAAGCTT", "ACGTACGT\nAC,GT\n", "\xef\xbb\xbf>x\nACGUU\n>\nTT"};
}

std::vector<std::string> gzip_seeds() {
  std::vector<std::string> seeds;
  for (const std::string &bytes : sequence_seeds()) {
    file_of("", "x.fa");
    orb_test::write_gzip("read/x.fa", bytes);
    seeds.push_back(bytes_of("read/x.fa"));
  }
  seeds.push_back(seeds[0] + seeds[1]);
  return seeds;
}

// ---- places of clones ----

std::string text_of(const placed_clones &placed) {
  std::string text = "clone\tpart\tchromosome\tstart\tend\r\n";
  for (const simul_clone &clone : placed.clones)
    for (std::size_t i = 0; i < clone.parts.size(); ++i)
      text += fmt::format("{}\t{}\t{}\t{}\t{}\r\n", clone.name, i + 1,
                          placed.chromosomes.at(static_cast<std::size_t>(clone.parts[i].chromosome) - 1),
                          clone.parts[i].part_start, clone.parts[i].part_end);
  return text;
}

bool run_truth(const std::string &bytes) {
  scripted_frame shown;
  placed_clones read, again;
  const fs::path file = file_of(bytes, "truth.tsv");
  const memory_count count;
  const bool accepted = read_true_positions(shown.frame, file, read);
  count.check(static_cast<std::int64_t>(bytes.size()), {});
  if (!accepted) {
    promise(read.clones.empty() && !shown.last_message().empty(), "refused without a word, or half of it is there");
    return false;
  }
  promise(read_true_positions(shown.frame, file_of(text_of(read), "truth.tsv"), again), shown.last_message());
  promise(text_of(again) == text_of(read), "the truth reads back otherwise");
  return true;
}

bool run_simulated_clones(const std::string &bytes) {
  scripted_frame shown;
  placed_clones read;
  const fs::path file = file_of(bytes, "clones.txt");
  const memory_count count;
  const bool accepted = read_table_of_clones(shown.frame, file, read);
  count.check(static_cast<std::int64_t>(bytes.size()), {});
  promise(accepted || (read.clones.empty() && !shown.last_message().empty()), "refused without a word");
  if (accepted)
    text_of(read); // each part has its chromosome
  return accepted;
}

// ---- distances, clusters ----

bool run_distances(const std::string &bytes) {
  distance_instance read, again;
  std::string problem;
  const fs::path file = file_of(bytes, "Input.dis");
  const memory_count count;
  const bool accepted = read_distance_file(file, read, problem);
  // A square of vertices, of which a thousand may be without a distance.
  count.check(static_cast<std::int64_t>(bytes.size()), {6 << 20, 5000, 20000, 20});
  if (!accepted) {
    promise(!problem.empty() && read.n == 0, "refused without a word, or half of it is there");
    return false;
  }
  std::vector<std::int32_t> positions, distances;
  for (std::int32_t i = 1; i <= read.n; ++i) {
    positions.push_back(i);
    for (std::int32_t j = i + 1; j <= read.n; ++j)
      distances.push_back(read.dist(i, j));
  }
  const std::string text = distance_file_text(read.time_limit, read.neighbour_rank, positions, distances);
  promise(read_distance_file(file_of(text, "Input.dis"), again, problem), problem);
  promise(again.n == read.n && again.time_limit == read.time_limit && again.neighbour_rank == read.neighbour_rank,
          "the head reads back otherwise");
  for (std::int32_t i = 1; i <= read.n; ++i)
    for (std::int32_t j = 1; j <= read.n; ++j)
      promise(again.dist(i, j) == read.dist(i, j), "a distance reads back otherwise");
  return true;
}

bool run_clusters(const std::string &bytes) {
  scripted_frame shown;
  const project_settings settings;
  class_clustering clusters(shown.frame, settings);
  clusters.clustering_start_n_elements_set(5);
  const fs::path file = file_of(bytes, "clusterization.txt");
  const memory_count count;
  const bool accepted = clusters.read_clusterization(file);
  count.check(static_cast<std::int64_t>(bytes.size()), {});
  if (!accepted) {
    promise(!shown.last_message().empty(), "refused without a word");
    return false;
  }
  std::string text, again;
  const auto numbers = [&](std::string &into) {
    for (std::int32_t i = 1; i <= 5; ++i)
      into += std::to_string(clusters.cluster_number_get(i)) + "\r\n";
  };
  numbers(text);
  promise(clusters.read_clusterization(file_of(text, "clusterization.txt")), shown.last_message());
  numbers(again);
  promise(text == again, "clusters read back otherwise");
  return true;
}

// ---- pools ----

// What was read, as a file of the form that is read.
std::string text_of(const pool_lists &lists) {
  std::string text;
  constexpr std::array heads{"Plates: ", "rows: ", "columns: "};
  for (const std::size_t d : {pool_plates, pool_columns, pool_rows}) {
    text += heads[d] + std::to_string(lists[d].count()) + "\r\n";
    for (const std::int32_t pool : lists[d].members())
      text += name_of_pool(d, pool) + "\r\n";
  }
  return text;
}

bool run_positive_pools(const std::string &bytes) {
  scripted_frame shown;
  pool_lists read, again;
  const fs::path file = file_of(bytes, "positive.txt");
  const memory_count count;
  const bool accepted = read_list_of_positive_pools(shown.frame, file, standard_pool_sizes, read);
  count.check(static_cast<std::int64_t>(bytes.size()), {});
  if (!accepted) {
    promise(!shown.last_message().empty(), "refused without a word");
    return false;
  }
  promise(read_list_of_positive_pools(shown.frame, file_of(text_of(read), "positive.txt"), standard_pool_sizes, again),
          shown.last_message());
  promise(again == read, "the pools read back otherwise");
  return true;
}

bool run_probes(const std::string &bytes) {
  scripted_frame shown;
  const fs::path file = file_of(bytes, "probes.txt");
  const memory_count count;
  probe_reader reader(shown.frame, file, standard_pool_sizes);
  probe read{{}, {}, positive_pools(standard_pool_sizes), 0};
  for (auto piece = reader.next(read); piece != probe_reader::piece::end; piece = reader.next(read)) {
    if (piece == probe_reader::piece::refused) {
      promise(!shown.last_message().empty(), "refused without a word");
      return false;
    }
    promise(read.n_positive == read.positive.count() && read.n_positive <= 57, "pools are miscounted");
  }
  count.check(static_cast<std::int64_t>(bytes.size()), {});
  return true;
}

constexpr const char *record_seed = R"({"command": "net", "version": "0.1.0", "seed": 1, "state": "failed",
  "parameters": {"metric": "Sulston_1988", "cutoff": 15}, "wishes": {"cutoff": 15}, "stages": [],
  "makes": ["x.ORBns"], "leaves": [{"name": "x.ORBns", "size": 3, "crc32": "884863d2"}], "warnings": [], "results": {},
  "inputs": [{"file": "p.sizes", "size": 12, "crc32": "00000000"}],
  "outputs": {"net": {"name": "x.ORBns", "size": 3, "crc32": "884863d2"}, "run_folder": {"name": "run"}}})";

} // namespace

void add_other_targets(fuzz_table &table) {
  table.push_back(literal_target("lines", {"a\r\nb\n\rc\r\r\n", "\n", ""}, run_lines_of_file));
  table.push_back(literal_target("number", {"15", " -1.5E+3\t", "0,25", "2147483647"}, run_number));
  table.push_back(literal_target("answers", {"*Start from \t1\r\nDo you want\tyes\n", "no tab\n"}, run_answers));
  table.push_back(literal_target(
      "script_line",
      {"net.revise out=\"a \\\"b\\\\.ORBns\" force # x", "mnu_View_metrics cutoff=15", "list.sort list=a"},
      run_script_line));
  table.push_back(literal_target("run_record", {record_seed, "[]", "{\"outputs\": {\"a\": 1}}"}, run_record_of_run));
  table.push_back({"sequence", sequence_seeds, run_sequence});
  table.push_back({"sequence_in_gzip", gzip_seeds, run_sequence});
  table.push_back({"true_positions", [] { return std::vector<std::string>{bytes_of_input("truth.tsv")}; }, run_truth});
  table.push_back(literal_target(
      "simulated_clones",
      {"N_clones\t2\r\nc\tclone\tbins\ta\tb\tc\td\te\tlength\tparts\tstart\tend\tchromosome\r\n"
       "1\tA01\t5\t0\t0\t3\t3\t3\t900\t1\t100\t1000\tchr1\r\n2\tA02\t5\t0\t0\t3\t3\t3\t900\t1\t100\t1000\tchr1\r\n"},
      run_simulated_clones));
  table.push_back(literal_target(
      "distances", {"3,1.5,2\r\n1 2 3\r\n1\t2\t10\r\n1\t3\t20\r\n2\t3\t-5\r\n", "2 1 1\n1 2 7"}, run_distances));
  table.push_back(literal_target("clusters", {"1\r\n2\r\n2\r\n1\r\n5\r\n"}, run_clusters));
  table.push_back(literal_target(
      "positive_pools",
      {"Plates: 2\nP1\nP17\ncolumns: 1\n24\nrows: 2\nA\np\n", "Plates: 0\r\nrows: 1\r\nB\r\ncolumns: 2\r\n3\r\n3\r\n"},
      run_positive_pools));
  table.push_back(literal_target("probes", {"h\np1\t+\t\tx" + std::string(20, '\t') + "1\r\n\r\np2\n"}, run_probes));
  command_reader recoding{{"library"}, "r.txt", "pools.load file=read/r.txt prefix=AB"};
  table.push_back(
      target_of("pools_recoding", recoding, {}, {"h\nh\n1\tC1\t\t1\tA1\n1 c02 x 17 P24\n2\tD01\t\t3\tb7\r\n\r\n"}));
  command_reader any{{}, "x", "info.show paths=read/x"};
  any.does = effect::none;
  any.limits.bytes = 24 << 20; // frequencies of all places of the longest gel
  table.push_back(target_of("any_file", any,
                            {"plates/p.sizes", "library.ORBdb", "net.ORBns", "net.txt", "truth.tsv", "native.ORB",
                             "run/FPC_like.fpc", "run/coordinates_of_clones.txt", "list.txt"},
                            {"A\t3\tGel\n10\n20\n455458000000000.5\n-1\n"}));
}

const std::vector<fuzz_target> &fuzz_targets() {
  static const fuzz_table table = [] {
    fuzz_table made;
    add_database_targets(made);
    add_net_and_run_targets(made);
    add_other_targets(made);
    add_viewer_targets(made);
    return made;
  }();
  return table;
}

} // namespace fuzz_test
