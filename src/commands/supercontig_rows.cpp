// Supercontigs: nets of contigs that were mended in the viewer, taken back.
#include <fmt/format.h>

#include "commands/command_table.h"
#include "commands/open_nets.h"
#include "commands/row_steps.h"
#include "frame/numbers.h"
#include "viewer/supercontigs.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

struct supercontig_parameters {
  fs::path nets;
  output_wishes output;
  std::optional<bool> recluster;
};

void describe_supercontigs(parameter_list &list, supercontig_parameters &p) {
  list.add("nets", p.nets, "folder of .net files, one a supercontig; without it a dialog asks").type("DIR");
  describe_output(list, p.output, "NET.ORBns", false);
  list.add("recluster", p.recluster, "put them into the place of the contigs that they hold, where contigs are loaded")
      .asked_else("no");
}

void check_supercontigs(const project_state &project, const parts_there &, const supercontig_parameters &p) {
  check_input(p.nets);
  if (!p.output.out.empty())
    check_output(project, p.output.out, p.output.force);
}

command_result run_supercontigs(project_state &project, const supercontig_parameters &p) {
  if (!p.output.out.empty())
    work_in(project, folder_of(p.output.out));
  if (p.recluster)
    answer_ahead(project, "Need to change current clusering?", *p.recluster);
  lent_sources lent(project);
  supercontig_result found;
  const std::optional<overlap_rule> made_by = project.rule_of_net();
  if (!read_nets_for_supercontigs_and_create_new_net(lent.sources, {p.nets, p.output.out}, found))
    return stopped_or_failed(project);
  project.loaded(project_part::net, {found.net_file, "net.supercontigs"});
  project.rule_of_net_set(made_by);
  if (found.contigs_changed)
    project.loaded(project_part::contigs, {{}, "net.supercontigs"});
  command_result result;
  if (!p.nets.empty())
    result.inputs.push_back(p.nets);
  result.figure("supercontigs", found.n_supercontigs);
  result.figure("clones", found.n_clones);
  result.figure("contigs_changed", found.contigs_changed);
  if (!found.net_file.empty())
    result.file("net", found.net_file);
  result.file("lists", found.folder_of_lists);
  result.summary = fmt::format("{} supercontigs of {} clones are in the net", found.n_supercontigs,
                               number_text_thousands(found.n_clones));
  return result;
}

} // namespace

void add_supercontig_rows(command_rows &rows) {
  using part = project_part;
  rows.push_back(command_maker<supercontig_parameters>("net.supercontigs")
                     .captioned("Supercontigs from nets")
                     .purpose("take contigs that were joined or mended in the viewer back into the net")
                     .example("net.supercontigs nets=supercontigs out=net_superctg.ORBns")
                     .needs({part::library, part::net})
                     .makes({part::net})
                     .parameters(describe_supercontigs)
                     .checked_by(check_supercontigs)
                     .runs(run_supercontigs)
                     .row());
}

} // namespace orb
