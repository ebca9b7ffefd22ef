// Q-overlaps and Q-clones: the revision of the net, the ladder of cutoffs, and questions about single clones.
#include <fmt/format.h>

#include "commands/command_table.h"
#include "commands/row_steps.h"
#include "frame/numbers.h"
#include "net/class_clone_net_clust.h"
#include "net/clone_net_questions.h"
#include "net/contamination.h"
#include "net/form_setting_QQ.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// ---- net.revise ----

struct revise_parameters {
  output_wishes output;
  std::int32_t rank = 1;
  bool ask_rank = false;
  std::string additional_cutoff;
  bool no_overlaps = false, no_clones = false, clone_test = false;
};

void describe_revise(parameter_list &list, revise_parameters &p) {
  const char *group = "Revision";
  list.add("out", p.output.out, "revised net; without it a dialog asks").type("NET.ORBns");
  list.add("force", p.output.force, "overwrite results that exist");
  list.add("rank", p.rank, "radius of a neighbourhood, in steps").limits(1, 50).in_group(group);
  list.add("ask-rank", p.ask_rank, "ask for it");
  list.add("additional-cutoff", p.additional_cutoff, "cutoff of the neighbourhoods of Q-clones")
      .captioned("Additional cutoff=")
      .type("X")
      .unset("cutoff + 10")
      .in_group(group);
  list.add("no-overlaps", p.no_overlaps, "leave Q-overlaps in").in_group(group);
  list.add("no-clones", p.no_clones, "leave Q-clones in").in_group(group);
  list.add("clone-test", p.clone_test, "take out clones of two places first, told by which neighbours show their bands")
      .in_group(group);
}

constexpr std::int32_t fewest_to_tell = 5; // Q-clones, for a word on thin places

double additional_cutoff(const revise_parameters &p, const overlap_rule &rule) {
  if (p.additional_cutoff.empty())
    return rule.cutoff + QQ_proposed_step;
  const std::string refused = QQ_additional_cutoff_refused(p.additional_cutoff, rule.cutoff);
  if (!refused.empty())
    throw usage_error("--additional-cutoff: " + refused);
  double value = 0;
  number_parse(p.additional_cutoff, value);
  return value;
}

void check_revise(const project_state &project, const parts_there &, const revise_parameters &p) {
  if (p.no_overlaps && p.no_clones && !p.clone_test)
    throw usage_error("--no-overlaps and --no-clones leave nothing to revise");
  additional_cutoff(p, project.rule());
  if (p.output.out.empty())
    return;
  check_output(project, p.output.out, p.output.force);
  for (const std::string &name : QQ_report_names(project.rule(), !p.no_overlaps, !p.no_clones, p.clone_test))
    check_output(project, folder_of(p.output.out) / name, p.output.force);
}

command_result run_revise(project_state &project, const revise_parameters &p) {
  const overlap_rule rule = project.rule();
  class_clone_net_signif::revision_options wanted;
  wanted.q_overlaps = !p.no_overlaps;
  wanted.q_clones = !p.no_clones;
  wanted.clone_test = p.clone_test;
  wanted.max_rank = p.ask_rank ? 0 : p.rank;
  wanted.additional_cutoff = number_text_shortest(additional_cutoff(p, rule));
  wanted.file = p.output.out;
  class_clone_net_signif::revision_summary summary;
  const std::optional<overlap_rule> made_by = project.rule_of_net();
  if (!project.signif().revise_connections(rule, wanted, summary) || !summary.completed)
    return stopped_or_failed(project);
  project.loaded(project_part::net, {project.signif().net().FullFileNameGet(), "net.revise"});
  project.rule_of_net_set(made_by);
  command_result result;
  result.parameter("rank", p.rank);
  result.parameter("additional_cutoff", additional_cutoff(p, rule));
  if (p.clone_test)
    result.parameter("clone_test", true);
  result.parameter("q_overlaps", !p.no_overlaps);
  result.parameter("q_clones", !p.no_clones);
  result.figure("q_overlaps", summary.n_q_overlaps);
  result.figure("q_clones", summary.n_q_clones);
  result.file("net", project.signif().net().FullFileNameGet());
  result.summary = fmt::format("removed as false: {} Q-overlaps, {} Q-clones",
                               number_text_thousands(summary.n_q_overlaps), number_text_thousands(summary.n_q_clones));
  if (summary.n_q_clones >= fewest_to_tell && 3 * summary.n_q_clones_thin >= summary.n_q_clones)
    result.summary +=
        fmt::format(" ({} of these where clones lie less than half as deep as usual: good clones that "
                    "alone bridge a place look so too, see ..._Q_clones_depth.txt; --no-clones keeps them)",
                    number_text_thousands(summary.n_q_clones_thin));
  result.figure("q_clones_thin", summary.n_q_clones_thin);
  if (p.clone_test) {
    result.figure("suspects", summary.n_suspects);
    result.summary += fmt::format(", {} clones of two places", number_text_thousands(summary.n_suspects));
  }
  return result;
}

// ---- net.ladder ----

struct ladder_parameters {
  fs::path out;
  std::optional<double> additional_cutoff;
  std::optional<std::int32_t> steps;
  std::optional<double> minimal_cutoff, step;
  std::optional<std::int32_t> rank;
};

void describe_ladder(parameter_list &list, ladder_parameters &p) {
  list.add("out", p.out, "folder of the nets").type("DIR");
  list.add("steps", p.steps, "cutoffs above the first").limits(1, 32767).asked_else("4");
  list.add("min-cutoff", p.minimal_cutoff, "first cutoff").limits(0, 1e300).asked_else("22");
  list.add("additional-cutoff", p.additional_cutoff, "cutoff of the neighbourhoods of Q-clones")
      .limits(-1e300, 1e300)
      .unset("none");
  list.add("step", p.step, "from cutoff to cutoff").limits(0, 1e300).asked_else("3");
  list.add("rank", p.rank, "radius of a neighbourhood, in steps").limits(1, 50).asked_else("1");
}

command_result run_ladder(project_state &project, const ladder_parameters &p) {
  work_in(project, p.out);
  cutoff_ladder_options wanted;
  if (p.steps)
    wanted.N_cutoff_steps = *p.steps;
  wanted.minimal_cutoff = p.minimal_cutoff;
  wanted.cutoff_step = p.step;
  wanted.additional_cutoff = p.additional_cutoff;
  wanted.max_rank = p.rank.value_or(0);
  class_clone_net_clust ladder;
  if (!create_all_nets_run(project.signif(), wanted, ladder))
    return stopped_or_failed(project);
  command_result result;
  result.parameter("steps", ladder.number_of_cutoff_steps_get());
  result.parameter("minimal_cutoff", ladder.minimal_cutoff_get());
  result.parameter("cutoff_step", ladder.cutoff_step_get());
  for (const fs::path &file : ladder.files_written())
    result.file(file.filename().string(), file);
  return result;
}

// ---- net.contamination ----

struct contamination_parameters {
  fs::path out;
  std::optional<double> cutoff;
  std::optional<std::int32_t> distance;
};

void describe_contamination(parameter_list &list, contamination_parameters &p) {
  list.add("out", p.out, "folder of the list").type("DIR");
  list.add("wells-cutoff", p.cutoff, "least score of an overlap between neighbouring wells; 0: the net's")
      .limits(0, 1e300)
      .asked_else("0");
  list.add("wells", p.distance, "largest distance between wells, in rows and in columns")
      .limits(1, 1000)
      .asked_else("5");
}

command_result run_contamination(project_state &project, const contamination_parameters &p) {
  work_in(project, p.out);
  contamination_result found;
  if (!search_for_contamination(project.signif(),
                                {p.cutoff, p.distance ? std::optional<double>(*p.distance) : std::nullopt, {}}, found))
    return stopped_or_failed(project);
  command_result result;
  result.parameter("cutoff", found.cutoff);
  result.parameter("max_distance", found.max_distance);
  result.figure("clones", found.clones.count());
  result.file("list", found.file);
  result.summary = fmt::format("{} clones may be contaminated", number_text_thousands(found.clones.count()));
  return result;
}

// ---- net.characteristics ----

struct characteristics_parameters {
  std::string clone;
  std::int32_t rank = 1;
};

void describe_characteristics(parameter_list &list, characteristics_parameters &p) {
  list.add("clone", p.clone, "name of the clone").needed();
  list.add("rank", p.rank, "radius of the neighbourhood, in steps").limits(1, 50);
}

command_result run_characteristics(project_state &project, const characteristics_parameters &p) {
  const clone_number clone = project.database().clone_number_get(p.clone);
  clone_net_characteristics found;
  if (clone < 1 || !clone_net_characteristics_run(project.signif(), clone, p.rank, found))
    return command_result::ended(exit_status::run_failed, "no clone " + p.clone + " in the net");
  command_result result;
  result.figure("n_clusters", found.n_clusters);
  result.lines.push_back("N_clusters = " + std::to_string(found.n_clusters));
  return result;
}

} // namespace

void add_revision_rows(command_rows &rows) {
  using part = project_part;
  rows.push_back(command_maker<revise_parameters>("net.revise")
                     .captioned("Revision of net of significant clone overlaps")
                     .purpose("remove false overlaps and chimeric clones from the net, and save it")
                     .example("net.revise out=net_noQQ.ORBns")
                     .needs({part::library, part::net})
                     .makes({part::net})
                     .parameters(describe_revise)
                     .checked_by(check_revise)
                     .runs(run_revise)
                     .row());
  rows.push_back(command_maker<ladder_parameters>("net.ladder")
                     .captioned("Create all nets")
                     .purpose("the revision for a ladder of cutoffs: three nets a step, saved")
                     .example("net.ladder out=ladder min-cutoff=15 steps=3 step=5 rank=1")
                     .needs({part::library, part::net})
                     .parameters(describe_ladder)
                     .runs(run_ladder)
                     .row());
  rows.push_back(command_maker<contamination_parameters>("net.contamination")
                     .captioned("detect putative contaminations")
                     .purpose("clones of neighbouring wells of a plate that overlap strongly")
                     .example("net.contamination out=tables wells-cutoff=40 wells=2")
                     .needs({part::library, part::net})
                     .parameters(describe_contamination)
                     .runs(run_contamination)
                     .row());
  rows.push_back(command_maker<characteristics_parameters>("net.characteristics")
                     .captioned("Characteristics of a clone in the net")
                     .purpose("into how many pieces a clone's neighbourhood falls without it")
                     .example("net.characteristics clone=EC001A03")
                     .needs({part::library, part::net})
                     .parameters(describe_characteristics)
                     .runs(run_characteristics)
                     .row());
}

} // namespace orb
