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
// divided by N, so that one can exceed 1: deliberate. A contig ordered in windows is too long for a column a clone: its
// rows hold place:share.
void append_neighbours(std::string &text, const ordering_work &work, std::vector<follower_counts::entry> beside,
                       const std::vector<std::int32_t> &place_of, std::int32_t i) {
  const double N = work.n_jackknife();
  const auto place = [&](const follower_counts::entry &entry) {
    return place_of[static_cast<std::size_t>(entry.clone)];
  };
  std::sort(beside.begin(), beside.end(), [&](const auto &x, const auto &y) { return place(x) < place(y); });
  double sum = 0, variance = 0;
  for (const follower_counts::entry &entry : beside) {
    const double apart = i - place(entry);
    sum += entry.times / N;
    variance += apart * apart * (entry.times / N) / 2;
  }
  text += "\t" + number_text(sum, 2) + "\t" + number_text(variance, 2);
  std::int32_t column = -1;
  for (const follower_counts::entry &entry : beside) {
    if (work.in_windows())
      text += "\t" + std::to_string(place(entry) + 1) + ":";
    else
      text.append(static_cast<std::size_t>(place(entry) - column), '\t');
    column = place(entry);
    number_text_append(text, entry.times / N, 2);
  }
  if (!work.in_windows())
    text.append(static_cast<std::size_t>(work.n_used() - 1 - column), '\t');
}

void append_diagonal(std::string &text, const ordering_work &work, std::int32_t r, const used_clones &clones) {
  const std::vector<std::int32_t> &order = work.column(r).order;
  text += std::string("Diagonal:") + line_end + "new_i\told_i\told_old_i\tclone\tSum_Pij\tVar";
  if (!work.in_windows())
    for (const std::int32_t p : order)
      text += "\t" + clones.name(p);
  text += line_end;
  std::vector<std::vector<follower_counts::entry>> beside;
  std::vector<std::int32_t> place_of(order.size() + 1, 0);
  if (work.n_jackknife() > 0)
    beside = work.adjacency.beside();
  for (std::size_t i = 0; i < order.size(); ++i)
    place_of[static_cast<std::size_t>(order[i])] = static_cast<std::int32_t>(i);
  for (std::size_t i = 0; i < order.size(); ++i) {
    const std::int32_t p = order[i];
    text += std::to_string(i + 1) + "\t" + std::to_string(p) + "\t" + std::to_string(clones.position(p)) + "\t" +
            clones.name(p);
    if (work.n_jackknife() > 0)
      append_neighbours(text, work, std::move(beside[static_cast<std::size_t>(p)]), place_of,
                        static_cast<std::int32_t>(i));
    text += line_end;
  }
}

// Where the windows of run 0 lie among the clones along the axis, and how well neighbours agree.
void append_windows(std::string &text, const ordering_work &work) {
  const ordering_run &run = work.runs.front();
  text += three_empty_lines + std::string("Windows:") + line_end +
          "window\tfirst_i\tlast_i\tproven\tn_shared\tn_agree\tjoin" + line_end;
  for (std::size_t k = 0; k < work.windows.size(); ++k) {
    text += std::to_string(k + 1) + "\t" + std::to_string(work.windows[k].first + 1) + "\t" +
            std::to_string(work.windows[k].last + 1) + "\t" + (run.windows[k].report.proven ? "True" : "False");
    if (k > 0) {
      const window_join &join = run.joins[k - 1];
      text += "\t" + std::to_string(join.n_shared) + "\t" + std::to_string(join.n_agreeing) + "\t" +
              (join.is_weak() ? "weak" : "good");
    }
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

std::string class_clone_ord_and_verif::tail_of_files(const ordering_task &task) {
  return task.name + "_" + class_clone_dist_general::name_of_cutoff_distance(task.rule.distance_index) + "_Cf" +
         number_text(task.rule.cutoff, 1) + "_p" + number_text(task.rule.burying, 2) + ".txt";
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
  if (work.in_windows())
    append_windows(text, work);
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

// The links that any window of the run saw, each once.
static std::vector<pair_distance> distances_of_windows(const ordering_run &run) {
  std::vector<pair_distance> all;
  for (const window_search &window : run.windows)
    all.insert(all.end(), window.distances.begin(), window.distances.end());
  const auto pair_of = [](const pair_distance &x) { return std::pair(x.i, x.j); };
  std::sort(all.begin(), all.end(), [&](const auto &x, const auto &y) { return pair_of(x) < pair_of(y); });
  all.erase(std::unique(all.begin(), all.end(), [&](const auto &x, const auto &y) { return pair_of(x) == pair_of(y); }),
            all.end());
  return all;
}

// The instance of each run; that of the last one stands in "Input.dis" too, as if the runs had overwritten each other.
// Contigs never overwrite each other's.
void class_clone_ord_and_verif::write_distance_files(const ordering_work &work,
                                                     const std::filesystem::path &folder) const {
  const auto positions = work.list_not_excluded.members();
  const std::string end = (work.task.shares_folder ? "_" + work.task.name : std::string()) + ".dis";
  for (std::int32_t r = 0; r <= work.n_jackknife(); ++r) {
    const ordering_run &run = work.runs[static_cast<std::size_t>(r)];
    const std::string text =
        work.in_windows()
            ? distance_file_text(options_.seconds, options_.neighbour_rank, positions, distances_of_windows(run))
            : distance_file_text(options_.seconds, options_.neighbour_rank, positions, run.distances);
    write_text(folder / ("Input" + std::to_string(r) + end), text);
    if (r == work.n_jackknife())
      write_text(folder / ("Input" + end), text);
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
  const std::string tail = tail_of_files(work.task);
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
