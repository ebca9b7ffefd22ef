// Places for the nodes of a drawn net, without a picture.
#include "commands/command_table.h"
#include "commands/open_nets.h"
#include "commands/row_steps.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "viewer/net_file.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

struct net_layout_parameters {
  fs::path file;
  layout_parameters layout;
  output_wishes output;
};

void describe_net_layout(parameter_list &list, net_layout_parameters &p) {
  list.add("file", p.file, "a drawing of a net").type("FILE.net").needed();
  describe_layout(list, p.layout);
  describe_output(list, p.output, "FILE.net|.tsv");
}

void check_net_layout(const project_state &project, const parts_there &, const net_layout_parameters &p) {
  check_input(p.file);
  const std::string ending = p.output.out.extension().string();
  if (ending != ".net" && ending != ".tsv")
    throw usage_error("--out " + p.output.out.string() + ": the ending tells what is written: .net or .tsv");
  check_output(project, p.output.out, p.output.force);
}

void write_places(const class_net_elng &net, const fs::path &file) {
  result_file out(file);
  out.write("name\tx\ty\n");
  for (const node_elng &node : net.nodes().subspan(1))
    out.write(node.caption + "\t" + number_text(node.x, 3) + "\t" + number_text(node.y, 3) + "\n");
  out.commit();
}

command_result run_net_layout(project_state &project, const net_layout_parameters &p) {
  constexpr double aspect = 1.6;
  lent_sources lent(project);
  class_net_elng net;
  if (!read_net(p.file, lent.sources, net) || !lay_out(net, p.layout, aspect, project, lent.chance))
    return stopped_or_failed(project);
  if (p.output.out.extension() == ".tsv") {
    write_places(net, p.output.out);
  } else {
    net_saving wanted;
    wanted.net_name = net.net_name_get();
    net.SaveNet(project.frame(), p.output.out, wanted);
  }
  command_result result;
  result.inputs.push_back(p.file);
  result.file("net", p.output.out);
  result.figure("nodes", net.n_vertices_get());
  result.figure("edges", net.n_edges_get());
  return result;
}

} // namespace

void add_layout_rows(command_rows &rows) {
  rows.push_back(command_maker<net_layout_parameters>("net.layout")
                     .captioned("Lay out a net")
                     .purpose("places for the nodes of a drawn net")
                     .example("net.layout file=contig.net out=places.tsv layout=multilevel")
                     .parameters(describe_net_layout)
                     .checked_by(check_net_layout)
                     .runs(run_net_layout)
                     .row());
}

} // namespace orb
