// 3D pools: the scheme of a library, pools of clones, clones behind positive pools.
#include <fmt/format.h>

#include "commands/command_table.h"
#include "commands/row_steps.h"
#include "pools/pool_hypotheses.h"
#include "pools/pools_deconvolution.h"
#include "pools/pools_search.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// ---- pools.load ----

struct load_parameters {
  fs::path file;
  pools_wishes wishes;
};

constexpr double most_pools = 10000, most_wells = 1e7; // of a scheme; a plate has far fewer

void describe_load(parameter_list &list, load_parameters &p) {
  list.add("file", p.file, "where each clone lies in the pools; without it a dialog asks").type("RECODING");
  list.add("prefix", p.wishes.prefix, "of the names of clones, before plate and well").type("PREFIX");
  list.add("plates", p.wishes.sizes[pool_plates], "pools of plates").limits(1, most_pools);
  list.add("rows", p.wishes.sizes[pool_rows], "pools of rows, called by letters").limits(1, most_pool_rows);
  list.add("columns", p.wishes.sizes[pool_columns], "pools of columns").limits(1, most_pools);
}

void check_load(const project_state &, const parts_there &, const load_parameters &p) {
  check_input(p.file);
  const pool_sizes &sizes = p.wishes.sizes;
  if (double(sizes[0]) * sizes[1] * sizes[2] > most_wells)
    throw usage_error("the scheme has more than 10000000 wells");
}

command_result run_load(project_state &project, const load_parameters &p) {
  class_pools3D &pools = project.pools();
  if (!pools.read_pools_recoding(project.frame(), project.database(), p.file, p.wishes))
    return stopped_or_failed(project);
  project.loaded(project_part::pools, {p.file, "pools.load"});
  command_result result;
  if (!p.file.empty())
    result.inputs.push_back(p.file);
  result.parameter("prefix", p.wishes.prefix);
  result.parameter("plates", p.wishes.sizes[0]);
  result.parameter("rows", p.wishes.sizes[1]);
  result.parameter("columns", p.wishes.sizes[2]);
  result.figure("clones", pools.n_coded_clones_get());
  result.figure("unknown_names", pools.n_unknown_names_get());
  result.summary = fmt::format(
      "{} clones in pools of {} plates, {} rows and {} columns; names that the library lacks: {}",
      pools.n_coded_clones_get(), p.wishes.sizes[0], p.wishes.sizes[1], p.wishes.sizes[2], pools.n_unknown_names_get());
  return result;
}

// ---- pools.of_clones, pools.table ----

struct of_clones_parameters {
  fs::path list, out;
};

void describe_of_clones(parameter_list &list, of_clones_parameters &p) {
  list.add("list", p.list, "names of clones, one a line; without it a dialog asks").type("LIST");
  list.add("out", p.out, "folder of the file; without it that of the list").type("DIR");
}

void check_of_clones(const project_state &, const parts_there &, const of_clones_parameters &p) {
  check_input(p.list);
}

command_result run_of_clones(project_state &project, const of_clones_parameters &p) {
  work_in(project, p.out);
  fs::path written;
  if (!project.pools().pools_for_list_of_clones_run(project.frame(), project.settings(), project.database(), p.list,
                                                    p.out, written))
    return stopped_or_failed(project);
  command_result result;
  if (!p.list.empty())
    result.inputs.push_back(p.list);
  result.file("pools", written);
  result.lines.push_back(written.string());
  return result;
}

struct table_parameters {
  fs::path out;
};

void describe_table(parameter_list &list, table_parameters &p) {
  list.add("out", p.out, "folder of filling_of_tables.txt; without it the working folder").type("DIR");
}

command_result run_table(project_state &project, const table_parameters &p) {
  work_in(project, p.out);
  const fs::path file = project.frame().path_in_working_folder("\\filling_of_tables.txt");
  project.pools().print_filling_of_tables(file);
  command_result result;
  result.file("filling", file);
  result.lines.push_back(file.string());
  return result;
}

// ---- pools.find ----

struct find_parameters {
  pools_search_wishes wishes;
  fs::path out;
};

void describe_find(parameter_list &list, find_parameters &p) {
  list.add("file", p.wishes.file, "positive plates, columns and rows; without it a dialog asks").type("POOLS");
  list.add("out", p.out, "folder of the files; without it the working folder").type("DIR");
  list.add("subdivide", p.wishes.subdivide, "groups of clones that overlaps hold together").asked_else("no");
  list.add("rank", p.wishes.rank, "clones so many overlaps away are added to the found ones before")
      .limits(0, 1000000)
      .asked_else("1");
}

void check_find(const project_state &, const parts_there &, const find_parameters &p) {
  check_input(p.wishes.file);
}

command_result run_find(project_state &project, const find_parameters &p) {
  work_in(project, p.out);
  pools_search_result found;
  if (!work_with_list_of_positive_pools_run(project.pools(), project.signif(), project.rule(), p.wishes, found))
    return stopped_or_failed(project);
  command_result result;
  if (!p.wishes.file.empty())
    result.inputs.push_back(p.wishes.file);
  for (const fs::path &file : found.files)
    result.file(file.filename().string(), file);
  result.figure("clones", found.clones.count());
  result.figure("groups", found.n_groups);
  result.summary = found.answer;
  for (const clone_number clone : found.clones.members())
    result.lines.push_back(project.database().name_of_clone_get(clone));
  return result;
}

// ---- pools.deconvolve ----

struct deconvolve_parameters {
  fs::path probes, out;
  bool likelihood = false;
  hypothesis_options hypotheses;
};

void describe_deconvolve(parameter_list &list, deconvolve_parameters &p) {
  const char *group = "Likelihood";
  list.add("probes", p.probes, "a line a probe: its name, and a field for each pool; without it a dialog asks")
      .type("PROBES");
  list.add("out", p.out, "folder of the files; without it that of the probes").type("DIR");
  list.add("likelihood", p.likelihood, "rank hypotheses for each probe as well, into likelihood.txt").in_group(group);
  list.add("missing-rate", p.hypotheses.missing_rate, "chance that a clone in a pool fails to show")
      .limits(0.0001, 0.9)
      .in_group(group);
  list.add("false-rate", p.hypotheses.false_rate, "chance that a pool turns positive by a clone outside of it")
      .limits(0.000001, 0.5)
      .in_group(group);
  list.add("max-places", p.hypotheses.max_places, "places of a hypothesis").limits(1, 6).in_group(group);
  list.add("best", p.hypotheses.best, "hypotheses that are printed of a probe").limits(1, 100).in_group(group);
}

void check_deconvolve(const project_state &project, const parts_there &, const deconvolve_parameters &p) {
  check_input(p.probes);
  if (p.likelihood && p.probes.empty())
    throw usage_error("likelihood needs the file of probes by name");
  const fs::path folder = p.out.empty() ? p.probes.parent_path() : p.out;
  if (!p.probes.empty())
    check_output(project, folder / "res_for_deconv.txt", true);
  if (p.likelihood)
    check_output(project, folder / "likelihood.txt", true);
}

void put_hypotheses(project_state &project, const deconvolve_parameters &p, const hypotheses_summary &ranked,
                    command_result &result) {
  result.parameter("missing_rate", p.hypotheses.missing_rate);
  result.parameter("false_rate", p.hypotheses.false_rate);
  result.parameter("max_places", p.hypotheses.max_places);
  result.parameter("best", p.hypotheses.best);
  result.file("hypotheses", ranked.file);
  result.figure("with_hypotheses", ranked.n_with_hypotheses);
  result.lines.push_back(ranked.file.string());
  project.frame().note(fmt::format("Probes with hypotheses: {} of {}.", ranked.n_with_hypotheses, ranked.n_probes));
}

command_result run_deconvolve(project_state &project, const deconvolve_parameters &p) {
  work_in(project, p.out);
  deconvolution_summary summary;
  if (!for_deconv(project.pools(), project.signif(), project.rule(), p.probes, p.out, summary))
    return stopped_or_failed(project);
  command_result result;
  if (!p.probes.empty())
    result.inputs.push_back(p.probes);
  result.file("deconvolution", summary.file);
  result.figure("probes", summary.n_probes);
  result.figure("with_groups", summary.n_with_groups);
  result.figure("unclear", summary.n_unclear);
  result.lines.push_back(summary.file.string());
  project.frame().note(fmt::format("Probes: {}. With groups of clones: {}. Unclear: {}.", summary.n_probes,
                                   summary.n_with_groups, summary.n_unclear));
  if (!p.likelihood)
    return result;
  const pool_hypotheses hypotheses(project.pools(), project.signif(), project.rule(), p.hypotheses);
  hypotheses_summary ranked;
  if (!rank_hypotheses_of_probes(hypotheses, project.pools(), project.context(), p.probes, summary.file.parent_path(),
                                 ranked))
    return stopped_or_failed(project);
  put_hypotheses(project, p, ranked, result);
  return result;
}

} // namespace

void add_pools_rows(command_rows &rows) {
  using part = project_part;
  rows.push_back(command_maker<load_parameters>("pools.load")
                     .captioned("Load pools recoding")
                     .purpose("read where each clone of a library lies in a scheme of pools")
                     .example("pools.load file=recoding.txt prefix=EC plates=2")
                     .needs({part::library})
                     .makes({part::pools})
                     .parameters(describe_load)
                     .checked_by(check_load)
                     .runs(run_load)
                     .row());
  rows.push_back(command_maker<find_parameters>("pools.find")
                     .captioned("Clones in positive pools")
                     .purpose("the clones behind positive pools, and the groups that they form")
                     .example("pools.find file=positive.txt subdivide=yes rank=1 out=found")
                     .needs({part::library, part::pools})
                     .parameters(describe_find)
                     .checked_by(check_find)
                     .runs(run_find)
                     .row());
  rows.push_back(command_maker<of_clones_parameters>("pools.of_clones")
                     .captioned("Pools for list of clones")
                     .purpose("in which pools the clones of a list lie")
                     .example("pools.of_clones list=contig.txt out=tables")
                     .needs({part::library, part::pools})
                     .parameters(describe_of_clones)
                     .checked_by(check_of_clones)
                     .runs(run_of_clones)
                     .row());
  rows.push_back(command_maker<table_parameters>("pools.table")
                     .captioned("Filling of plates")
                     .purpose("which wells of the scheme hold a clone")
                     .example("pools.table out=tables")
                     .needs({part::pools})
                     .parameters(describe_table)
                     .runs(run_table)
                     .row());
  rows.push_back(command_maker<deconvolve_parameters>("pools.deconvolve")
                     .captioned("Deconvolution of probes")
                     .purpose("the clones behind each probe of a table of positive pools")
                     .example("pools.deconvolve probes=probes.txt likelihood=yes out=tables")
                     .needs({part::library, part::net, part::pools})
                     .parameters(describe_deconvolve)
                     .checked_by(check_deconvolve)
                     .runs(run_deconvolve)
                     .row());
}

} // namespace orb
