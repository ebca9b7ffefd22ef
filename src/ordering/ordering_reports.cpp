// The files of an ordering.
#include <algorithm>

#include "frame/files.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_general.h"
#include "ordering/class_clone_ord_and_verif.h"
#include "ordering/distance_file.h"

namespace orb {

namespace {

constexpr const char *line_end = "\r\n";
constexpr const char *three_empty_lines = "\r\n\r\n\r\n";

// What the reports say of a used clone, by its place 1..n_used.
class used_clones {
public:
  used_clones(const ordering_work &work, const class_DB_of_clones &database) : work_(work), database_(database) {}
  std::int32_t position(std::int32_t p) const { return work_.list_not_excluded(p); }
  clone_number number(std::int32_t p) const { return work_.task.list(position(p)); }
  const std::string &name(std::int32_t p) const { return database_.name_of_clone_get(number(p)); }

private:
  const ordering_work &work_;
  const class_DB_of_clones &database_;
};

std::string names_joined(const used_clones &clones, std::int32_t n) {
  std::string text;
  for (std::int32_t p = 1; p <= n; ++p)
    text += (p > 1 ? " " : "") + clones.name(p);
  return text;
}

// Every run's order on a line, with its mean step.
void append_orders(std::string &text, const ordering_work &work, std::int32_t r) {
  text += "i_JK";
  for (std::int32_t i = 1; i <= work.n_used(); ++i)
    text += "\t" + std::to_string(i);
  text += "\tLength (old=" + number_text(work.column(r).length_old, 6) + ")" + line_end;
  for (std::int32_t k = 0; k <= work.n_jackknife() + 1; ++k) {
    text += k > work.n_jackknife() ? "Consens" : std::to_string(k);
    for (const std::int32_t p : work.column(k).order)
      text += "\t" + std::to_string(p);
    text += "\t" + number_text(work.column(k).length, 6) + line_end;
  }
}

// Who stood beside whom in the jackknife, by places of the chosen order. The shares are counts over all N + 1 runs
// divided by N, so that one can exceed 1: deliberate.
void append_neighbours(std::string &text, const ordering_work &work, const std::vector<std::int32_t> &order,
                       std::size_t i) {
  const double N = work.n_jackknife();
  const auto share = [&](std::size_t j) {
    return (work.adjacency(order[i], order[j]) + work.adjacency(order[j], order[i])) / N;
  };
  double sum = 0, variance = 0;
  for (std::size_t j = 0; j < order.size(); ++j) {
    const double apart = static_cast<double>(i) - static_cast<double>(j);
    sum += share(j);
    variance += apart * apart * share(j) / 2;
  }
  text += "\t" + number_text(sum, 2) + "\t" + number_text(variance, 2);
  for (std::size_t j = 0; j < order.size(); ++j) {
    text += '\t';
    if (share(j) > 0)
      number_text_append(text, share(j), 2);
  }
}

void append_diagonal(std::string &text, const ordering_work &work, std::int32_t r, const used_clones &clones) {
  const std::vector<std::int32_t> &order = work.column(r).order;
  text += std::string("Diagonal:") + line_end + "new_i\told_i\told_old_i\tclone\tSum_Pij\tVar";
  for (const std::int32_t p : order)
    text += "\t" + clones.name(p);
  text += line_end;
  for (std::size_t i = 0; i < order.size(); ++i) {
    const std::int32_t p = order[i];
    text += std::to_string(i + 1) + "\t" + std::to_string(p) + "\t" + std::to_string(clones.position(p)) + "\t" +
            clones.name(p);
    if (work.n_jackknife() > 0)
      append_neighbours(text, work, order, i);
    text += line_end;
  }
}

std::string title_of_column(const ordering_work &work, std::int32_t r) {
  if (r == 0)
    return "Optimal order";
  return r > work.n_jackknife() ? "Consensus order" : "Order in JK " + std::to_string(r);
}

void write_text(const std::filesystem::path &path, const std::string &text) {
  result_file file(path);
  file.write(text);
  file.commit();
}

} // namespace

std::string class_clone_ord_and_verif::tail_of_files(const ordering_work &work) {
  return work.task.name + "_" + class_clone_dist_general::name_of_cutoff_distance(work.task.rule.distance_index) +
         "_Cf" + number_text(work.task.rule.cutoff, 1) + "_p" + number_text(work.task.rule.burying, 2) + ".txt";
}

std::string class_clone_ord_and_verif::print_order_control(const ordering_work &work, std::int32_t r,
                                                           const class_DB_of_clones &database) {
  const used_clones clones(work, database);
  std::string text = std::string("Old order:") + line_end;
  for (std::int32_t p = 1; p <= work.n_used(); ++p)
    text +=
        std::to_string(clones.position(p)) + "\t" + std::to_string(clones.number(p)) + "\t" + clones.name(p) + line_end;
  text += three_empty_lines + title_of_column(work, r) + line_end;
  append_orders(text, work, r);
  text += three_empty_lines;
  append_diagonal(text, work, r, clones);
  return text;
}

std::string class_clone_ord_and_verif::solution_text(const ordering_work &work, const class_DB_of_clones &database) {
  std::string text = names_joined(used_clones(work, database), work.n_used()) + line_end;
  for (const ordering_run &run : work.runs) {
    for (std::size_t i = 0; i < run.order.size(); ++i)
      text += (i > 0 ? " " : "") + std::to_string(run.order[i]);
    text += line_end;
  }
  return text;
}

// The instance of each run; that of the last one stands in "Input.dis" too, as if the runs had overwritten each other.
void class_clone_ord_and_verif::write_distance_files(const ordering_work &work,
                                                     const std::filesystem::path &folder) const {
  for (std::int32_t r = 0; r <= work.n_jackknife(); ++r) {
    const std::string text =
        distance_file_text(options_.seconds, options_.neighbour_rank, work.list_not_excluded.members(),
                           work.runs[static_cast<std::size_t>(r)].distances);
    write_text(folder / ("Input" + std::to_string(r) + ".dis"), text);
    if (r == work.n_jackknife())
      write_text(folder / "Input.dis", text);
  }
}

void class_clone_ord_and_verif::write(const ordering_work &work, std::filesystem::path &file_order) {
  file_order.clear();
  if (!work.completed)
    return;
  process_frame &frame = context_->frame;
  const std::filesystem::path folder = work.task.folder.empty() ? frame.working_folder_get() : work.task.folder;
  std::vector<std::string> told; // the same line from several runs is logged once
  for (const ordering_run &run : work.runs) {
    for (const std::string &line : run.log)
      if (std::find(told.begin(), told.end(), line) == told.end()) {
        told.push_back(line);
        frame.log_line(line);
      }
    if (!run.report.message.empty())
      frame.message(run.report.message);
  }
  const std::string tail = tail_of_files(work);
  const class_DB_of_clones &database = context_->database;
  if (work.task.flag)
    write_distance_files(work, folder);
  write_text(process_frame::path_in_folder(folder, "\\order_control_" + tail), print_order_control(work, 0, database));
  if (!work.task.flag) {
    write_text(process_frame::path_in_folder(folder, "\\consens_control_" + tail),
               print_order_control(work, work.n_jackknife() + 1, database));
    write_text(process_frame::path_in_folder(folder, "\\solution_DiagViewer_" + tail), solution_text(work, database));
  }
  file_order = process_frame::path_in_folder(folder, "\\ORB_order_" + tail);
  std::string names;
  const used_clones clones(work, database);
  // the chosen order: the shortest by all bands, not that of a jackknife run
  if (!work.runs.empty())
    for (const std::int32_t p : work.runs.front().order)
      names += clones.name(p) + line_end;
  write_text(file_order, names);
  frame.step_text_set("Ok");
}

} // namespace orb
