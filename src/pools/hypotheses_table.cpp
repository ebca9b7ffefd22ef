// The hypotheses of a table of probes, block by block on worker threads, as a table.
#include <fmt/format.h>

#include "frame/files.h"
#include "frame/numbers.h"
#include "frame/worker_blocks.h"
#include "pools/pool_hypotheses.h"

namespace orb {

namespace {

constexpr std::size_t probes_in_block = 256;

std::string names_of(const pool_hypothesis &hypothesis, const class_DB_of_clones &database) {
  std::string text;
  for (const auto &place : hypothesis.places) {
    text += text.empty() ? "" : " | ";
    for (std::size_t i = 0; i < place.size(); ++i)
      text += (i == 0 ? "" : ",") + database.name_of_clone_get(place[i]);
  }
  return text;
}

void write_probe(const probe &of, const std::vector<pool_hypothesis> &ranked, const class_pools3D &pools,
                 const class_DB_of_clones &database, result_file &file) {
  if (ranked.empty())
    file.line(of.name + "\t0\t0\t0\t\t\t\t" + pools.text_of_unexplained_pools({}, of.positive) + "\t");
  for (std::size_t i = 0; i < ranked.size(); ++i) {
    const pool_hypothesis &one = ranked[i];
    const std::vector<clone_number> clones = one.clones();
    file.line(fmt::format("{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}", of.name, i + 1, one.places.size(), clones.size(),
                          number_text(one.score, 2), number_text(one.cost, 2), number_text(one.share, 3),
                          pools.text_of_unexplained_pools(clones, of.positive), names_of(one, database)));
  }
}

// Probes with names of their own, as many as a block has. False when the table can't be read.
bool read_block(probe_reader &reader, const pool_sizes &sizes, std::vector<probe> &block) {
  block.clear();
  probe read{{}, {}, positive_pools(sizes), 0};
  while (block.size() < probes_in_block)
    switch (reader.next(read)) {
    case probe_reader::piece::probe:
      block.push_back(read);
      break;
    case probe_reader::piece::end:
      return true;
    case probe_reader::piece::refused:
      return false;
    }
  return true;
}

} // namespace

bool rank_hypotheses_of_probes(const pool_hypotheses &hypotheses, const class_pools3D &pools,
                               const metric_context &context, const std::filesystem::path &table,
                               const std::filesystem::path &folder, hypotheses_summary &summary) {
  process_frame &frame = context.frame;
  probe_reader reader(frame, table, pools.sizes());
  summary.file = folder / "likelihood.txt";
  result_file file(summary.file);
  file.line("probe\trank\tplaces\tclones\tscore\tcost\tshare\tunexplained\tclones by place");
  std::vector<probe> block;
  std::vector<std::vector<pool_hypothesis>> ranked;
  do {
    if (!read_block(reader, pools.sizes(), block))
      return false;
    ranked.assign(block.size(), {});
    const auto n = static_cast<std::int64_t>(block.size());
    const bool done = run_in_blocks(
        0, n - 1, n, 8, context.settings.threads,
        [&](std::int64_t first, std::int64_t last, int) {
          for (auto i = static_cast<std::size_t>(first); i <= static_cast<std::size_t>(last); ++i)
            ranked[i] = hypotheses.ranked(block[i].positive);
        },
        [&](std::int64_t) { return frame.goes_on(); });
    if (!done || !frame.goes_on())
      return false;
    for (std::size_t i = 0; i < block.size(); ++i) {
      write_probe(block[i], ranked[i], pools, context.database, file);
      summary.n_with_hypotheses += ranked[i].empty() ? 0 : 1;
    }
    summary.n_probes += n;
    frame.progress(reader.position(), reader.size());
    frame.local_process_text_set("probe " + std::to_string(summary.n_probes));
  } while (!block.empty());
  file.commit();
  return true;
}

} // namespace orb
