#include "fpc/mtp_test.h"

#include <algorithm>

#include "clustering/cluster_file_name.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "frame/text_lines.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

struct path_of_contig {
  std::string contig;
  std::vector<std::string> clones;
};

// False after a message.
bool read_MTPs_from_FPC(process_frame &frame, const fs::path &file, std::vector<path_of_contig> &paths) {
  if (const std::string why = why_no_text_file(file); !why.empty())
    return frame.refuse("File " + file.string() + " is no text: " + why);
  line_reader lines(file);
  std::string_view line;
  std::vector<std::string> words;
  bool complete = false;
  while (lines.next(line)) {
    if (line.starts_with("//") || is_blank_line(line))
      continue;
    class_serv_raznoe::cut_string_spaces_several_no_emty(line, words, -1, complete);
    if (words.size() < 2)
      return frame.refuse("A line holds the name of a contig and the clones of its path.\r\n" + lines.place());
    paths.push_back({words.front(), {words.begin() + 1, words.end()}});
  }
  return true;
}

// Both ways of writing a contig's name are tried; 0: not found.
cluster_id contig_of_name(const class_FPCto_import &registry, const std::string &name) {
  cluster_id id = 0;
  bool not_found = false;
  registry.search_for_cluster(name, id, not_found);
  if (not_found)
    registry.search_for_cluster(class_serv_raznoe::text_transform_to_lower_case(name), id, not_found);
  return not_found ? 0 : id;
}

struct order_of_ranks {
  std::string text;
  std::int32_t direction = 0, inversions = 0;
};

order_of_ranks order_of(const number_list &ranks) {
  order_of_ranks found;
  std::int32_t n_rising = 0, n_falling = 0, before = -1;
  for (const std::int32_t rank : ranks.members()) {
    found.text += (found.text.empty() ? "" : ",") + std::to_string(rank);
    if (rank < 0)
      continue;
    n_rising += before >= 0 && rank > before;
    n_falling += before >= 0 && rank < before;
    before = rank;
  }
  found.direction = n_rising > n_falling ? 1 : n_falling > n_rising ? -1 : 0;
  found.inversions = std::min(n_rising, n_falling);
  return found;
}

class MTP_tester {
public:
  MTP_tester(class_clone_net_signif &signif, const overlap_rule &rule, const class_FPCto_import &registry,
             const fs::path &folder, const drawing_options &drawing)
      : signif_(signif), rule_(rule), registry_(registry), folder_(folder), drawing_(drawing),
        metric_(signif.context(), &signif.net()), report_(folder / "report.txt"), ajacent_(folder / "ajacent.txt") {
    metric_.net_private_parameters_set_interface(rule);
    report_.line("ctg\tname\tn_ctg\tm_FPC\tm_ORB\tORB-FPC\tranks\tdirection\tinversions");
    ajacent_.line("ctg\tclone\tdist");
  }

  void test_MTP_of_contig(std::int32_t i, const path_of_contig &path, MTP_test_summary &summary) {
    const cluster_id id = contig_of_name(registry_, path.contig);
    if (id == 0) {
      ++summary.n_unknown;
      signif_.context().frame.alarm("Unknown contig " + std::to_string(i) + ": " + path.contig + " in file with MTPs");
      return;
    }
    number_list list, MTP;
    registry_.list_of_clones_get(id, list);
    for (const std::string &name : path.clones)
      MTP.add(std::max(signif_.context().database.clone_number_get(name), 0)); // 0: unknown
    contig_shape shape;
    number_list ranks;
    signif_.contigomer_clone_ordering_run(list, rule_, MTP, false, false, shape, ranks);
    std::string row = std::to_string(i) + '\t' + path.contig + '\t' + std::to_string(list.count()) + '\t' +
                      std::to_string(MTP.count()) + '\t';
    if (shape.width < 0) {
      ++summary.n_not_connected;
      row += "Contig is not connected!";
    } else {
      const order_of_ranks order = order_of(ranks);
      row += std::to_string(shape.diameter) + '\t' + std::to_string(shape.diameter - MTP.count()) + '\t' + order.text +
             '\t' + std::to_string(order.direction) + '\t' + std::to_string(order.inversions);
    }
    report_.line(row);
    write_neighbours(path, MTP);
    draw(path.contig, list, MTP);
    ++summary.n_tested;
  }

  void commit() {
    report_.commit();
    ajacent_.commit();
  }

private:
  // The score of each clone of the path with the one before it; of unknown clones there is none.
  void write_neighbours(const path_of_contig &path, const number_list &MTP) {
    for (std::int32_t k = 2; k <= MTP.count(); ++k) {
      const bool known = MTP(k) > 0 && MTP(k - 1) > 0 && MTP(k) != MTP(k - 1);
      ajacent_.line(path.contig + '\t' + path.clones[static_cast<std::size_t>(k) - 1] + '\t' +
                    (known ? number_text(metric_.my_cutoff(MTP(k - 1), MTP(k)), 2) : ""));
    }
  }

  void draw(const std::string &name, const number_list &list, const number_list &MTP) {
    number_list known;
    for (const clone_number clone : MTP.members())
      if (clone > 0)
        known.add(clone);
    class_clone_net_draw draw(signif_, rule_);
    drawing_options panel = drawing_;
    panel.file = folder_ / (cluster_file_name(name) + "_and_MTP_" + number_text(rule_.cutoff, 2) +
                            (drawing_.write_pajek ? ".net" : ".graphml"));
    draw.options_set(panel);
    draw.quick_run(list, name + "_and_MTP", folder_, rule_.burying, rule_.cutoff, known);
  }

  class_clone_net_signif &signif_;
  const overlap_rule &rule_;
  const class_FPCto_import &registry_;
  const fs::path &folder_;
  const drawing_options &drawing_;
  class_clone_dist_my metric_;
  result_file report_, ajacent_;
};

} // namespace

MTP_test_summary test_MTPs_from_FPC(class_clone_net_signif &signif, const overlap_rule &rule,
                                    const class_FPCto_import &registry, fs::path file, const drawing_options &drawing) {
  process_frame &frame = signif.context().frame;
  MTP_test_summary summary;
  if (file.empty())
    file = frame.open_file_dialog("Open file with MTPs for FPC contigs");
  std::vector<path_of_contig> paths;
  if (file.empty() || !read_MTPs_from_FPC(frame, file, paths))
    return summary;
  frame.process_start("Testing of MTPs obtained by FPC");
  frame.step_text_set("Testing of MTPs obtained by FPC");
  summary.folder = frame.path_in_working_folder("\\" + class_serv_raznoe::date_and_time_string(frame) + "MTP_FPC");
  create_folder(summary.folder);
  MTP_tester tester(signif, rule, registry, summary.folder, drawing);
  const auto n = static_cast<std::int32_t>(paths.size());
  for (std::int32_t i = 1; i <= n; ++i) {
    tester.test_MTP_of_contig(i, paths[static_cast<std::size_t>(i) - 1], summary);
    frame.progress(i, n);
    frame.local_process_text_set(std::to_string(i) + " of " + std::to_string(n) + " MTPs from FPC");
    if (frame.stop_requested_get()) {
      frame.process_stopped_manually();
      return summary;
    }
  }
  tester.commit();
  frame.process_done();
  summary.completed = true;
  return summary;
}

} // namespace orb
