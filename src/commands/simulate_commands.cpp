// The commands that cut sequence: simulate library, simulate digest.
#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "commands/command_steps.h"
#include "commands/commands.h"
#include "commands/library_stage.h"
#include "commands/net_stage.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "reports/run_record.h"
#include "simulation/class_simul_clones.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr std::int32_t most_bands_in_clone = 500; // of a library
constexpr double longest_gel = 1e7;

void add_genome_argument(option_list &list, simulate_options &options) {
  list.add("genome", options.genome, "sequence, FASTA or letters only, plain or gzip").type("GENOME.fa[.gz]").needed();
}

void add_band_options(option_list &list, simulate_options &options) {
  const char *group = "Bands";
  list.add("--min-band-length", options.min_band_length, "shortest band seen, base pairs")
      .limits(1, 1e6)
      .in_group(group);
  list.add("--max-band-length", options.max_band_length, "longest band seen, base pairs")
      .limits(1, 1e5)
      .in_group(group);
  list.add("--scale", options.scale, "gel units a base pair").limits(0.001, 1e6).in_group(group);
  list.add("--shift", options.shift, "gel units between the windows of two colours").limits(1, 3e6).in_group(group);
  list.add("--merge", options.merge, "bands so close show as one, gel units").limits(0, 1e6).in_group(group);
}

void add_reading_options(option_list &list, simulate_options &options) {
  const char *group = "Bands";
  list.add("--error", options.error, "largest error of nine readings in ten, base pairs; three times it in the tenth")
      .limits(0, 1000)
      .in_group(group);
  list.add("--lost", options.lost, "chance of a band to be missed").limits(0, 1).in_group(group);
}

void check_band_options(const simulate_options &options) {
  if (options.min_band_length >= options.max_band_length)
    throw usage_error("--min-band-length must be below --max-band-length");
  if (3.0 * options.shift + options.max_band_length * options.scale > longest_gel)
    throw usage_error("--shift, --scale and --max-band-length make a gel longer than 10000000 units");
}

void apply_band_options(const simulate_options &options, class_Simul_CutEnzyme &bands) {
  bands.max_error_in_band_size_scoring_set(options.error);
  bands.probability_to_miss_band_set(options.lost);
  bands.min_band_length_set(options.min_band_length);
  if (options.max_band_length != bands.max_band_length_get())
    bands.max_band_length_set(options.max_band_length);
  bands.scale_set(options.scale);
  bands.merge_distance_set(options.merge);
  bands.shift_of_scaled_bands_set(options.shift);
}

void record_band_options(const simulate_options &options, run_record &record) {
  record.parameter_set("min_band_length", options.min_band_length);
  record.parameter_set("max_band_length", options.max_band_length);
  record.parameter_set("scale", options.scale);
  record.parameter_set("shift", options.shift);
  record.parameter_set("merge", options.merge);
}

void warn_of_colours(const simulate_options &options, const command_streams &streams) {
  if ((options.max_band_length - options.min_band_length) * options.scale > options.shift)
    streams.people("The windows of the colours overlap: bands of two colours can merge. A larger --shift or a smaller "
                   "--scale sets them apart.");
}

// What an assembly has to be told about such bands, where it isn't the default.
std::string options_of_assembly(const simulate_options &options) {
  const auto tolerance = static_cast<std::int32_t>(std::lround(2 * options.error * options.scale));
  const double gel_length = std::ceil(3.0 * options.shift + options.max_band_length * options.scale);
  const double places = 4 * (options.max_band_length - options.min_band_length) * options.scale;
  const auto n_bands = static_cast<std::int32_t>(std::max(1.0, std::round(places / std::max(2 * tolerance, 1))));
  std::string text;
  if (tolerance != 12)
    text += fmt::format(" --tolerance {}", tolerance);
  if (gel_length != 60000)
    text += " --gel-length " + number_text_shortest(gel_length);
  if (n_bands != 2250)
    text += fmt::format(" --n-bands {}", n_bands);
  return text;
}

class library_simulation {
public:
  library_simulation(project_state &session, const command_options &options, const command_streams &streams)
      : session_(session), frame_(session.frame()), options_(options), wanted_(options.simulate), streams_(streams),
        bands_(frame_), clones_(frame_, bands_, draw_of_options()), record_(identity_of(options), frame_.clock()) {}

  exit_status run() {
    apply_band_options(wanted_, bands_);
    if (!clones_.cut_clone_ends().clone_end_site_set(wanted_.clone_site == "AAGCTT" ? "HindIII" : "ends",
                                                     wanted_.clone_site))
      throw usage_error("--clone-site takes a site of the letters A, C, G and T");
    record_options();
    record_.file_set(options_.out / "run.json");
    for (const char *name : {"run.json", "DataBase_Simul.txt", "DataBase_Simul.sizes", "truth.tsv", "all_clones.txt"})
      check_output(options_.out / name, options_.force);
    frame_.working_folder_set(options_.out);
    warn_of_colours(wanted_, streams_);
    if (!make())
      return stopped_or_failed(session_);
    say_what_was_made();
    return finish_record(record_, exit_status::done);
  }

private:
  clone_draw draw_of_options() const {
    clone_draw draw;
    draw.mean_length = wanted_.mean_length;
    draw.length_deviation = wanted_.length_deviation;
    draw.chimera_chance = wanted_.chimeras;
    draw.max_parts = wanted_.max_parts;
    draw.coverage = wanted_.coverage.value_or(draw.coverage);
    draw.n_clones = wanted_.n_clones;
    if (!draw.n_clones && wanted_.coverage) // the number of clones is settled by it
      draw.ask_number_of_clones = false;
    draw.min_bands = wanted_.min_bands;
    draw.max_bands = wanted_.max_bands;
    draw.longest_gap = wanted_.longest_gap;
    draw.seed = options_.seed;
    draw.threads = options_.threads;
    return draw;
  }

  void record_options() {
    record_.input_add(wanted_.genome);
    record_band_options(wanted_, record_);
    record_.parameter_set("error", wanted_.error);
    record_.parameter_set("lost", wanted_.lost);
    record_.parameter_set("mean_length", wanted_.mean_length);
    record_.parameter_set("length_deviation", wanted_.length_deviation);
    record_.parameter_set("chimeras", wanted_.chimeras);
    record_.parameter_set("max_parts", wanted_.max_parts);
    record_.parameter_set("longest_gap", wanted_.longest_gap);
    record_.parameter_set("clone_site", wanted_.clone_site);
    record_.parameter_set("coverage", draw_of_options().coverage);
    record_.parameter_set("min_bands", wanted_.min_bands);
    record_.parameter_set("max_bands", wanted_.max_bands);
    record_.parameter_set("keep", wanted_.keep.empty() ? "asked" : wanted_.keep);
  }

  bool make() {
    record_.stage_start("digest");
    if (!clones_.start_Simul_CutEnzyme_CloneEnds_run_if_needed(wanted_.genome))
      return false;
    record_.stage_end();
    record_.stage_start("clones");
    if (!clones_.create_clones())
      return false;
    record_.stage_end();
    record_.stage_start("fingerprints");
    std::optional<bool> filter, observed;
    if (!wanted_.keep.empty()) {
      filter = wanted_.keep != "all";
      observed = wanted_.keep == "observed";
    }
    if (!clones_.print_list_of_clones_with_bands_run(filter, observed, kept_))
      return false;
    record_.stage_end();
    for (const char *name : {"DataBase_Simul.txt", "DataBase_Simul.sizes", "truth.tsv", "clones.txt", "all_clones.txt",
                             "statistics_all_clones.txt", "selected_clones.txt", "statistics_selected_clones.txt",
                             "clone_bin_coverage.txt"})
      record_.output_set(name, options_.out / name);
    return true;
  }

  void say_what_was_made() {
    std::int64_t length = 0, n_chimeras = 0, n_too_many = 0;
    for (const clone_number number : kept_.members()) {
      const simul_clone &clone = clones_.clones().clones[static_cast<std::size_t>(number) - 1];
      length += clone.length;
      n_chimeras += clone.n_parts() > 1 ? 1 : 0;
      n_too_many += clone.n_bands_obs > most_bands_in_clone ? 1 : 0;
    }
    const double coverage = double(length) / double(clones_.clonable_length());
    streams_.people(fmt::format("Sequence: {} bp in {} records. Clones drawn: {}. Kept: {}, {} of them chimeric; they "
                                "cover the sequence {} times.",
                                number_text_thousands(bands_.sequence_length_get()), bands_.chromosomes().size(),
                                number_text_thousands(clones_.n_clones()), number_text_thousands(kept_.count()),
                                number_text_thousands(n_chimeras), number_text(coverage, 2)));
    if (n_too_many > 0)
      streams_.people(fmt::format("{} clones have more than {} bands: no library takes them. Use --keep observed.",
                                  n_too_many, most_bands_in_clone));
    // a fifth is usual
    if (!kept_.empty() && 2 * kept_.count() < clones_.n_clones())
      streams_.people("Less than half of the clones have a usable number of bands, and those are the long and the "
                      "chimeric ones: set --min-bands, or a longer --mean-length. statistics_all_clones.txt says what "
                      "clones have.");
    if (kept_.empty())
      streams_.people("No clone has a usable number of bands: see statistics_all_clones.txt for what they have.");
    else
      streams_.people(
          fmt::format("Next: orb assemble {} --out RESULTS{}", options_.out.string(), options_of_assembly(wanted_)));
    record_.result_set("sequence_length", bands_.sequence_length_get());
    record_.result_set("chromosomes", bands_.chromosomes().size());
    record_.result_set("clones_drawn", clones_.n_clones());
    record_.result_set("clones", kept_.count());
    record_.result_set("chimeras", n_chimeras);
    record_.result_set("coverage", coverage);
    streams_.results(options_.out.string());
  }

  project_state &session_;
  process_frame &frame_;
  const command_options &options_;
  const simulate_options &wanted_;
  const command_streams &streams_;
  class_Simul_CutEnzyme bands_;
  class_simul_clones clones_;
  run_record record_;
  number_list kept_;
};

// The figures of a digest, a row for each enzyme.
void print_digest(const class_Simul_CutEnzyme &bands, const fs::path &path, const command_streams &streams) {
  std::vector<std::int64_t> cuts(static_cast<std::size_t>(bands.n_enzymes()) + 1, 0);
  std::vector<band_counts> counts(cuts.size());
  for (const digested_chromosome &chromosome : bands.chromosomes()) {
    for (std::size_t i = 1; i + 1 < chromosome.cuts.enzyme.size(); ++i)
      if (chromosome.cuts.enzyme[i] > 0)
        ++cuts[static_cast<std::size_t>(chromosome.cuts.enzyme[i])];
    const auto of_one = bands.calculate_real_number_of_bands_NONRIGHT(chromosome.cuts, 0, chromosome.cuts.n_cuts());
    for (std::size_t e = 1; e < counts.size(); ++e)
      counts[e] += of_one[e];
  }
  result_file file(path);
  file.line("enzyme\tsite\tcolor\tterm\tcuts\tbp_per_cut\tbands>0\tbands_too_long\tbands_ok_colored");
  for (std::size_t e = 1; e < cuts.size(); ++e) {
    const enzyme_rec &enzyme = bands.enzyme_list()[e];
    const double distance = cuts[e] > 0 ? double(bands.sequence_length_get()) / double(cuts[e]) : 0;
    file.line(fmt::format("{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}", enzyme.name, enzyme.site, enzyme.color, enzyme.term,
                          cuts[e], number_text(distance, 1), counts[e].more_0, counts[e].too_long,
                          counts[e].ok_colored));
    streams.people(fmt::format("{:8} {:8} {:>10} cuts, one in {} bp", enzyme.name, enzyme.site,
                               number_text_thousands(cuts[e]), number_text(distance, 0)));
  }
  file.commit();
}

// Bands of each length by the enzyme of the labelled end, of all records; then what became of the letters.
void print_bands(const class_Simul_CutEnzyme &bands, const fs::path &path) {
  band_table table;
  bands.start_table(table, false);
  for (const digested_chromosome &chromosome : bands.chromosomes())
    bands.create_band_presented_times(chromosome.cuts, false, table);
  result_file file(path);
  std::string text = "Len";
  for (std::int32_t e = 1; e <= bands.n_enzymes(); ++e)
    text += '\t' + bands.enzyme_list()[static_cast<std::size_t>(e)].name;
  file.line(text);
  for (std::int32_t length = 1; length <= table.max_length; ++length) {
    text.clear();
    whole_number_append(text, length);
    for (std::int32_t e = 1; e <= bands.n_enzymes(); ++e) {
      text += '\t';
      whole_number_append(text, table.times(length, e));
    }
    file.line(text);
  }
  file.line(fmt::format("too long\t{}", table.sums.too_long));
  file.line(fmt::format("broken\t{}", table.sums.broken));
  file.line(fmt::format("both ends {}\t{}", bands.enzyme_list()[1].name, table.sums.both_ends_1));
  file.line(fmt::format("different ends\t{}", table.sums.different_ends));
  file.line(fmt::format("same other ends\t{}", table.sums.same_other_ends));
  file.commit();
}

// A fingerprint without errors for each record that a library can take.
std::int64_t print_fingerprints(const class_Simul_CutEnzyme &bands, const fs::path &path) {
  random_source unused;
  std::int64_t n_left_out = 0;
  std::vector<double> list;
  result_file file(path);
  const auto n = static_cast<std::int32_t>(bands.chromosomes().size());
  std::vector<cut_list> parts(1);
  for (std::int32_t i = 1; i <= n; ++i) {
    const digested_chromosome &record = bands.chromosomes()[static_cast<std::size_t>(i) - 1];
    bands.cuts_of_part(i, 0, record.length(), parts[0]);
    band_reading_sums sums;
    bands.list_of_bands_for_several_parts(parts, true, unused, list, sums);
    if (list.empty() || list.size() > static_cast<std::size_t>(most_bands_in_clone)) {
      ++n_left_out;
      continue;
    }
    file.line(record.name + "\t" + std::to_string(list.size()) + "\tGel");
    for (const double band : list)
      file.line(number_text(band, 1));
    file.line("-1");
  }
  std::error_code failed;
  if (n_left_out < n)
    file.commit();
  else
    fs::remove(path, failed); // one of an earlier digest
  return n_left_out;
}

} // namespace

void simulate_library_options(option_list &list, command_options &options) {
  simulate_options &wanted = options.simulate;
  add_genome_argument(list, wanted);
  add_output_options(list, options, "DIR");
  const char *group = "Clones";
  list.add("--coverage", wanted.coverage, "how often clones cover the sequence")
      .limits(0.001, 100000)
      .shown_default("15")
      .in_group(group);
  list.add("--clones", wanted.n_clones, "number of clones drawn")
      .limits(1, 1e7)
      .shown_default("by the coverage")
      .in_group(group);
  list.add("--mean-length", wanted.mean_length, "of a clone or a part of one, base pairs")
      .limits(1, 1e9)
      .in_group(group);
  list.add("--length-deviation", wanted.length_deviation, "its standard deviation, base pairs")
      .limits(0, 1e9)
      .in_group(group);
  list.add("--chimeras", wanted.chimeras, "chance of each further part of a clone").limits(0, 1).in_group(group);
  list.add("--max-parts", wanted.max_parts, "parts of a clone").limits(1, 100).in_group(group);
  list.add("--clone-site", wanted.clone_site, "site on which clones begin and end").type("SITE").in_group(group);
  list.add("--longest-gap", wanted.longest_gap, "longest run of unknown letters that a clone lies across, base pairs")
      .limits(0, 2e9)
      .in_group(group);
  list.add("--min-bands", wanted.min_bands, "fewest bands of a clone that is kept").limits(0, 500).in_group(group);
  list.add("--max-bands", wanted.max_bands, "most bands of a clone that is kept").limits(1, 500).in_group(group);
  list.add("--keep", wanted.keep, "count bands as read with errors, as they would be without, or keep all clones")
      .one_of({"observed", "putative", "all"})
      .shown_default("asked, else observed")
      .in_group(group);
  add_band_options(list, wanted);
  add_reading_options(list, wanted);
  add_common_options(list, options);
}

exit_status simulate_library_command(project_state &session, const command_options &options,
                                     const command_streams &streams) {
  const simulate_options &wanted = options.simulate;
  check_band_options(wanted);
  if (wanted.coverage && wanted.n_clones)
    throw usage_error("--coverage and --clones say the same; use one of them");
  if (wanted.min_bands > wanted.max_bands)
    throw usage_error("--min-bands must not be above --max-bands");
  return library_simulation(session, options, streams).run();
}

void simulate_digest_options(option_list &list, command_options &options) {
  add_genome_argument(list, options.simulate);
  add_output_options(list, options, "DIR");
  list.add("--part-length", options.simulate.part_length, "of the parts in which cuts are counted, base pairs")
      .limits(1000, 2e9);
  add_band_options(list, options.simulate);
  add_common_options(list, options);
}

exit_status simulate_digest_command(project_state &session, const command_options &options,
                                    const command_streams &streams) {
  const simulate_options &wanted = options.simulate;
  check_band_options(wanted);
  run_record record(identity_of(options), session.frame().clock());
  record.file_set(options.out / "run.json");
  record.input_add(wanted.genome); // one that can't be read leaves no folder
  for (const char *name : {"run.json", "digest.txt", "bands.txt", "fingerprints.sizes"})
    check_output(options.out / name, options.force);
  work_in(session, options.out);
  process_frame &frame = session.frame();
  class_Simul_CutEnzyme bands(frame);
  apply_band_options(wanted, bands);
  record_band_options(wanted, record);
  record.parameter_set("part_length", wanted.part_length);
  frame.process_start("Digest of a sequence...");
  record.stage_start("digest");
  if (!bands.read_sequence_and_create_real_band_map(wanted.genome, true)) {
    frame.stop_requested_get() ? frame.process_stopped_manually() : frame.process_aborted();
    return stopped_or_failed(session);
  }
  record.stage_end();
  record.stage_start("tables");
  bands.print_seq_statistics(wanted.part_length);
  print_digest(bands, options.out / "digest.txt", streams);
  print_bands(bands, options.out / "bands.txt");
  const std::int64_t n_left_out = print_fingerprints(bands, options.out / "fingerprints.sizes");
  record.stage_end();
  frame.process_done();
  if (n_left_out > 0)
    streams.people(fmt::format("{} of {} records have no band or more than {}: fingerprints.sizes lacks them.",
                               n_left_out, bands.chromosomes().size(), most_bands_in_clone));
  for (const char *name : {"digest.txt", "bands.txt", "fingerprints.sizes"})
    if (fs::exists(options.out / name))
      record.output_set(name, options.out / name);
  record.result_set("sequence_length", bands.sequence_length_get());
  record.result_set("chromosomes", bands.chromosomes().size());
  record.result_set("cuts", bands.n_cuts_get());
  streams.results(options.out.string());
  return finish_record(record, exit_status::done);
}

} // namespace orb
