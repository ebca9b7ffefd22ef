// The commands that cut sequence: simulate.library, simulate.digest. The project stays as it is.
#include <array>
#include <fmt/format.h>
#include <span>

#include "commands/command_table.h"
#include "commands/cut_band_parameters.h"
#include "commands/row_steps.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "simulation/class_simul_clones.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr std::int32_t most_bands_in_clone = class_DB_of_clones::MAX_number_of_bands_in_clone_get();

void describe_genome(parameter_list &list, fs::path &genome) {
  list.add("genome", genome, "sequence, FASTA or letters only, plain or gzip").type("GENOME.fa[.gz]").needed();
}

// A sequence that can't be opened leaves no folder.
void check_files(const project_state &project, const fs::path &genome, const output_wishes &output,
                 std::span<const char *const> names) {
  const line_reader opened(genome);
  for (const char *name : names)
    check_output(project, output.out / name, output.force);
}

// ---- simulate.library ----

constexpr const char *usual_clone_site = "AAGCTT"; // HindIII

struct simulate_library_parameters {
  fs::path genome;
  output_wishes output;
  clone_draw draw;                // but for coverage, seed and threads
  std::optional<double> coverage; // unset: that of `draw`, and the number of clones is asked
  std::string clone_site = usual_clone_site;
  band_parameters bands;
  std::optional<std::int32_t> min_bands; // unset: by the gel
  std::string keep;                      // "observed", "putative", "all"; empty: asked
};

void describe_clones(parameter_list &list, simulate_library_parameters &p) {
  const char *group = "Clones";
  clone_draw &draw = p.draw;
  list.add("coverage", p.coverage, "how often clones cover the sequence")
      .limits(0.001, 100000)
      .unset_is(draw.coverage)
      .in_group(group);
  list.add("clones", draw.n_clones, "number of clones drawn").limits(1, 1e7).unset("by the coverage").in_group(group);
  list.add("mean-length", draw.mean_length, "of a clone or a part of one, base pairs").limits(1, 1e9).in_group(group);
  list.add("length-deviation", draw.length_deviation, "its standard deviation, base pairs")
      .limits(0, 1e9)
      .in_group(group);
  list.add("chimeras", draw.chimera_chance, "chance of each further part of a clone").limits(0, 1).in_group(group);
  list.add("max-parts", draw.max_parts, "parts of a clone").limits(1, 100).in_group(group);
  list.add("clone-site", p.clone_site, "site on which clones begin and end").type("SITE").in_group(group);
  list.add("longest-gap", draw.longest_gap, "longest run of unknown letters that a clone lies across, base pairs")
      .limits(0, 2e9)
      .in_group(group);
  list.add("min-bands", p.min_bands, "fewest bands of a clone that is kept")
      .limits(0, 500)
      .unset(by_gel(on_capillaries.min_bands, on_agarose.min_bands))
      .in_group(group);
  list.add("max-bands", draw.max_bands, "most bands of a clone that is kept").limits(1, 500).in_group(group);
  list.add("keep", p.keep, "count bands as read with errors, as they would be without, or keep all clones")
      .one_of({"observed", "putative", "all"})
      .asked_else("observed")
      .in_group(group);
}

void describe_simulate_library(parameter_list &list, simulate_library_parameters &p) {
  describe_genome(list, p.genome);
  describe_output(list, p.output, "DIR");
  describe_clones(list, p);
  describe_bands(list, p.bands);
  describe_reading(list, p.bands);
}

// False when the site isn't one.
bool put_clone_site(const std::string &site, class_Simul_CutEnzyme &ends) {
  return ends.clone_end_site_set(site == usual_clone_site ? "HindIII" : "ends", site);
}

std::int32_t fewest_bands(const simulate_library_parameters &p) {
  return p.min_bands.value_or(p.bands.usual().min_bands);
}

void check_simulate_library(const project_state &project, const parts_there &, const simulate_library_parameters &p) {
  check_bands(p.bands);
  if (p.coverage && p.draw.n_clones)
    throw usage_error("--coverage and --clones say the same; use one of them");
  if (fewest_bands(p) > p.draw.max_bands)
    throw usage_error("--min-bands must not be above --max-bands");
  process_frame unseen;
  class_Simul_CutEnzyme ends(unseen);
  if (!put_clone_site(p.clone_site, ends))
    throw usage_error("--clone-site takes a site of the letters A, C, G and T");
  constexpr std::array names{"DataBase_Simul.txt", "DataBase_Simul.sizes", "truth.tsv", "all_clones.txt"};
  check_files(project, p.genome, p.output, names);
}

class library_simulation {
public:
  library_simulation(project_state &project, const simulate_library_parameters &wanted)
      : project_(project), frame_(project.frame()), wanted_(wanted), bands_(frame_),
        clones_(frame_, bands_, draw_wanted()) {}

  command_result run() {
    apply_bands(wanted_.bands, bands_);
    put_clone_site(wanted_.clone_site, clones_.cut_clone_ends());
    work_in(project_, wanted_.output.out);
    warn_of_colours(frame_, wanted_.bands);
    if (!make())
      return stopped_or_failed(project_);
    command_result result;
    put_parameters(result);
    put_files(result);
    say_what_was_made(result);
    return result;
  }

private:
  clone_draw draw_wanted() const {
    clone_draw draw = wanted_.draw;
    draw.coverage = wanted_.coverage.value_or(draw.coverage);
    draw.min_bands = fewest_bands(wanted_);
    if (!draw.n_clones && wanted_.coverage) // the number of clones is settled by it
      draw.ask_number_of_clones = false;
    draw.seed = project_.settings().seed;
    draw.threads = project_.settings().threads;
    return draw;
  }

  bool make() {
    std::optional<bool> filter, observed;
    if (!wanted_.keep.empty()) {
      filter = wanted_.keep != "all";
      observed = wanted_.keep == "observed";
    }
    return clones_.start_Simul_CutEnzyme_CloneEnds_run_if_needed(wanted_.genome) && clones_.create_clones() &&
           clones_.print_list_of_clones_with_bands_run(filter, observed, kept_);
  }

  void put_parameters(command_result &result) const {
    const clone_draw draw = draw_wanted();
    put_bands(wanted_.bands, result);
    result.parameter("error", wanted_.bands.largest_error());
    result.parameter("lost", wanted_.bands.lost);
    result.parameter("mean_length", draw.mean_length);
    result.parameter("length_deviation", draw.length_deviation);
    result.parameter("chimeras", draw.chimera_chance);
    result.parameter("max_parts", draw.max_parts);
    result.parameter("longest_gap", draw.longest_gap);
    result.parameter("clone_site", wanted_.clone_site);
    result.parameter("coverage", draw.coverage);
    result.parameter("min_bands", draw.min_bands);
    result.parameter("max_bands", draw.max_bands);
    result.parameter("keep", wanted_.keep.empty() ? "asked" : wanted_.keep);
  }

  void put_files(command_result &result) const {
    result.inputs.push_back(wanted_.genome);
    for (const char *name : {"DataBase_Simul.txt", "DataBase_Simul.sizes", "truth.tsv", "clones.txt", "all_clones.txt",
                             "statistics_all_clones.txt", "selected_clones.txt", "statistics_selected_clones.txt",
                             "clone_bin_coverage.txt"})
      result.file(name, wanted_.output.out / name);
  }

  void say_what_was_made(command_result &result) const {
    std::int64_t length = 0, n_chimeras = 0, n_too_many = 0;
    for (const clone_number number : kept_.members()) {
      const simul_clone &clone = clones_.clones().clones[static_cast<std::size_t>(number) - 1];
      length += clone.length;
      n_chimeras += clone.n_parts() > 1 ? 1 : 0;
      n_too_many += clone.n_bands_obs > most_bands_in_clone ? 1 : 0;
    }
    const double coverage = double(length) / double(clones_.clonable_length());
    frame_.note(fmt::format("Sequence: {} bp in {} records. Clones drawn: {}. Kept: {}, {} of them chimeric; they "
                            "cover the sequence {} times.",
                            number_text_thousands(bands_.sequence_length_get()), bands_.chromosomes().size(),
                            number_text_thousands(clones_.n_clones()), number_text_thousands(kept_.count()),
                            number_text_thousands(n_chimeras), number_text(coverage, 2)));
    say_what_is_unusual(n_too_many);
    result.figure("sequence_length", bands_.sequence_length_get());
    result.figure("chromosomes", bands_.chromosomes().size());
    result.figure("clones_drawn", clones_.n_clones());
    result.figure("clones", kept_.count());
    result.figure("chimeras", n_chimeras);
    result.figure("coverage", coverage);
    result.lines.push_back(wanted_.output.out.string());
  }

  void say_what_is_unusual(std::int64_t n_too_many) const {
    if (n_too_many > 0)
      frame_.warn(fmt::format("{} clones have more than {} bands: no library takes them. Use --keep observed.",
                              n_too_many, most_bands_in_clone));
    // a fifth is usual
    if (!kept_.empty() && 2 * kept_.count() < clones_.n_clones())
      frame_.warn("Less than half of the clones have a usable number of bands, and those are the long and the chimeric "
                  "ones: set --min-bands, or a longer --mean-length. statistics_all_clones.txt says what clones have.");
    if (kept_.empty())
      frame_.warn("No clone has a usable number of bands: see statistics_all_clones.txt for what they have.");
    else
      frame_.note(fmt::format("Next: orb assemble {} --out RESULTS{}", wanted_.output.out.string(),
                              options_of_assembly(wanted_.bands)));
  }

  project_state &project_;
  process_frame &frame_;
  const simulate_library_parameters &wanted_;
  class_Simul_CutEnzyme bands_;
  class_simul_clones clones_;
  number_list kept_;
};

command_result simulate_library(project_state &project, const simulate_library_parameters &p) {
  return library_simulation(project, p).run();
}

// ---- simulate.digest ----

constexpr std::array names_of_digest_files{"digest.txt", "bands.txt", "fingerprints.sizes"};

struct digest_parameters {
  fs::path genome;
  output_wishes output;
  std::int32_t part_length = 1000000; // base pairs
  band_parameters bands;
};

void describe_digest(parameter_list &list, digest_parameters &p) {
  describe_genome(list, p.genome);
  describe_output(list, p.output, "DIR");
  list.add("part-length", p.part_length, "of the parts in which cuts are counted, base pairs").limits(1000, 2e9);
  describe_bands(list, p.bands);
}

void check_digest(const project_state &project, const parts_there &, const digest_parameters &p) {
  check_bands(p.bands);
  check_files(project, p.genome, p.output, names_of_digest_files);
}

// What became of the sites of each enzyme (from 1), over all records.
void count_cuts(const class_Simul_CutEnzyme &bands, std::vector<std::int64_t> &cuts, std::vector<band_counts> &counts) {
  cuts.assign(static_cast<std::size_t>(bands.n_enzymes()) + 1, 0);
  counts.assign(cuts.size(), {});
  for (const digested_chromosome &chromosome : bands.chromosomes()) {
    for (std::size_t i = 1; i + 1 < chromosome.cuts.enzyme.size(); ++i)
      if (chromosome.cuts.enzyme[i] > 0)
        ++cuts[static_cast<std::size_t>(chromosome.cuts.enzyme[i])];
    const auto of_one = bands.calculate_real_number_of_bands_NONRIGHT(chromosome.cuts, 0, chromosome.cuts.n_cuts());
    for (std::size_t e = 1; e < counts.size(); ++e)
      counts[e] += of_one[e];
  }
}

// The figures of a digest, a row for each enzyme.
void print_digest(process_frame &frame, const class_Simul_CutEnzyme &bands, const fs::path &path) {
  std::vector<std::int64_t> cuts;
  std::vector<band_counts> counts;
  count_cuts(bands, cuts, counts);
  result_file file(path);
  file.line("enzyme\tsite\tcolor\tterm\tcuts\tbp_per_cut\tbands>0\tbands_too_long\tbands_ok_colored");
  for (std::size_t e = 1; e < cuts.size(); ++e) {
    const enzyme_rec &enzyme = bands.enzyme_list()[e];
    const double distance = cuts[e] > 0 ? double(bands.sequence_length_get()) / double(cuts[e]) : 0;
    file.line(fmt::format("{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}", enzyme.name, enzyme.site, enzyme.color, enzyme.term,
                          cuts[e], number_text(distance, 1), counts[e].more_0, counts[e].too_long,
                          counts[e].ok_colored));
    frame.note(fmt::format("{:8} {:8} {:>10} cuts, one in {} bp", enzyme.name, enzyme.site,
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

// A fingerprint without errors for each record that a library can take. Returns the number of the others.
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

void put_digest(const digest_parameters &p, const class_Simul_CutEnzyme &bands, command_result &result) {
  result.inputs.push_back(p.genome);
  put_bands(p.bands, result);
  result.parameter("part_length", p.part_length);
  for (const char *name : names_of_digest_files)
    if (fs::exists(p.output.out / name))
      result.file(name, p.output.out / name);
  result.figure("sequence_length", bands.sequence_length_get());
  result.figure("chromosomes", bands.chromosomes().size());
  result.figure("cuts", bands.n_cuts_get());
  result.lines.push_back(p.output.out.string());
}

command_result simulate_digest(project_state &project, const digest_parameters &p) {
  process_frame &frame = project.frame();
  work_in(project, p.output.out);
  class_Simul_CutEnzyme bands(frame);
  apply_bands(p.bands, bands);
  frame.process_start("Digest of a sequence...");
  if (!bands.read_sequence_and_create_real_band_map(p.genome, true)) {
    frame.stop_requested_get() ? frame.process_stopped_manually() : frame.process_aborted();
    return stopped_or_failed(project);
  }
  bands.print_seq_statistics(p.part_length);
  print_digest(frame, bands, p.output.out / "digest.txt");
  print_bands(bands, p.output.out / "bands.txt");
  const std::int64_t n_left_out = print_fingerprints(bands, p.output.out / "fingerprints.sizes");
  frame.process_done();
  if (n_left_out > 0)
    frame.warn(fmt::format("{} of {} records have no band or more than {}: fingerprints.sizes lacks them.", n_left_out,
                           bands.chromosomes().size(), most_bands_in_clone));
  command_result result;
  put_digest(p, bands, result);
  return result;
}

} // namespace

void add_simulation_rows(command_rows &rows) {
  rows.push_back(command_maker<simulate_library_parameters>("simulate.library")
                     .captioned("Simulate a library")
                     .purpose("draw a library of clones from a sequence, with their true places")
                     .example("simulate.library genome=genome.fa.gz out=simulated coverage=10")
                     .parameters(describe_simulate_library)
                     .checked_by(check_simulate_library)
                     .runs(simulate_library)
                     .row());
  rows.push_back(command_maker<digest_parameters>("simulate.digest")
                     .captioned("Digest of a sequence")
                     .purpose("cut a sequence by the enzymes: cuts, bands, fingerprints")
                     .example("simulate.digest genome=genome.fa.gz out=digest")
                     .parameters(describe_digest)
                     .checked_by(check_digest)
                     .runs(simulate_digest)
                     .row());
}

} // namespace orb
