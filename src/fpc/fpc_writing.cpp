#include "fpc/fpc_writing.h"

#include <algorithm>

#include "database/class_markers.h"
#include "fpc/fpc_dates.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "lists/class_list_of_clones.h"

namespace orb {

namespace {

constexpr const char *singletones_name = "Singletones";

// Which clusters become contigs of the file, and how they are called there.
struct contig_names {
  std::vector<cluster_id> clusters;  // that hold a listed clone, ascending
  std::vector<std::string> new_name; // by id; empty: its clones stand outside contigs
  std::int32_t n_contigs = 0;
};

contig_names make_contig_names_for_FPC(const class_FPCto_import &registry, const number_list &clones) {
  contig_names names;
  const auto n_ids = static_cast<std::size_t>(registry.n_list_of_all_cluster_names_get());
  std::vector<char> holds_clone(n_ids + 1, 0);
  for (const clone_number clone : clones.members())
    holds_clone[static_cast<std::size_t>(registry.clone_in_cluster_get(clone))] = 1;
  names.new_name.resize(n_ids + 1);
  for (std::size_t i = 1; i <= n_ids; ++i) {
    if (holds_clone[i] == 0)
      continue;
    const auto id = static_cast<cluster_id>(i);
    names.clusters.push_back(id);
    if (registry.cluster_is_contig_get(id))
      names.new_name[i] = "ctg" + std::to_string(++names.n_contigs);
  }
  return names;
}

void write_rename_table(const class_FPCto_import &registry, const class_DB_of_clones &database,
                        const contig_names &names, const std::filesystem::path &folder) {
  result_file file(folder / "rename_for_FPC.tsv");
  file.line("c\tname\tFPCname\tnClones\tminLeftCoor\tmaxRightCoor");
  for (const cluster_id id : names.clusters) {
    const std::string &name = registry.name_of_cluster_get(id);
    const std::string &new_name = names.new_name[static_cast<std::size_t>(id)];
    std::string line = std::to_string(id) + "\t" + name;
    if (!new_name.empty()) {
      const cluster_information &cluster = registry.cluster_information_get(id);
      line += "\t" + new_name + "\t" + std::to_string(registry.n_clones_in_cluster_get(id)) + "\t" +
              number_text(cluster.min_left, 3) + "\t" + number_text(cluster.max_right, 3);
    } else if (name != singletones_name && registry.n_clones_in_cluster_get(id) > 0) {
      const clone_number clone = registry.clones_of_cluster(id).front();
      line += "\t" + database.name_of_clone_get(clone) + "\t1\t1\t" +
              std::to_string(registry.clone_information_get(clone).number_of_bands);
    }
    file.line(line);
  }
  file.commit();
}

struct fpc_flavour {
  bool pp = false;            // LF line ends, markers, new contig names
  bool use_FPC_names = false; // the long names of the clusters
  bool for_GBrowse = false;   // coordinates in base pairs from 0
  double band_size = 1.2;
};

class fpc_writer {
public:
  fpc_writer(const class_FPCto_import &registry, const class_DB_of_clones &database, const contig_names &names,
             const fpc_flavour &flavour, const std::filesystem::path &path)
      : registry_(registry), database_(database), names_(names), flavour_(flavour), file_(path) {}

  // Yields now and then: a library of 80,000 clones takes a fifth of a second.
  void write(process_frame &frame, const number_list &clones, const std::string &date_now) {
    constexpr std::int32_t stride = 5000;
    std::int32_t n_written = 0;
    line("// fpc project ORB");
    line("// Contigs " + std::to_string(names_.n_contigs) + "  Clones " + std::to_string(clones.count()) +
         "  Markers " + std::to_string(database_.markers().total_number_of_markers_get()) + "  Bands " +
         std::to_string(number_of_bands()));
    for (const clone_number clone : clones.members()) {
      if (++n_written % stride == 0)
        frame.yield();
      clone_record(clone);
    }
    if (flavour_.pp)
      marker_section(date_now);
    // These lines end by one LF in both flavours.
    file_.write("\nContigdata " + std::to_string(registry_.n_list_of_all_cluster_names_get()) + "\n\n");
    for (const cluster_id id : names_.clusters)
      contig_record(id);
    line("");
    file_.commit();
  }

private:
  void line(const std::string &text) {
    file_.write(text);
    file_.write(flavour_.pp ? "\n" : "\r\n");
  }

  std::int64_t number_of_bands() const {
    constexpr std::int64_t spare = 100;
    const clone_number last = database_.total_number_of_clones_get();
    if (last < 1)
      return spare;
    const clone_information &information = registry_.clone_information_get(last);
    return std::int64_t{information.first_band_adress} + information.number_of_bands + spare;
  }

  // Empty for a cluster whose clones stand outside contigs (alone, or "Singletones").
  std::string contig_name(cluster_id id) const {
    const std::string &new_name = names_.new_name[static_cast<std::size_t>(id)];
    if (flavour_.pp || new_name.empty())
      return new_name;
    return flavour_.use_FPC_names ? registry_.cluster_information_get(id).FPC_name : registry_.name_of_cluster_get(id);
  }

  void coordinates(clone_number clone, cluster_id id, double &left, double &right) const {
    const clone_information &information = registry_.clone_information_get(clone);
    left = information.coor_left;
    right = information.coor_right;
    if (!flavour_.for_GBrowse)
      return;
    constexpr double offset = 0;
    const cluster_information &cluster = registry_.cluster_information_get(id);
    if (cluster.min_left < cluster.max_right) {
      left = (left - cluster.min_left) * flavour_.band_size + offset;
      right = (right - cluster.min_left + 1) * flavour_.band_size + offset;
    } else {
      left = offset;
      right = information.number_of_bands * flavour_.band_size + offset;
    }
  }

  void clone_record(clone_number clone) {
    const clone_information &information = registry_.clone_information_get(clone);
    const cluster_id id = registry_.clone_in_cluster_get(clone);
    line("");
    line("BAC : \"" + database_.name_of_clone_get(clone) + "\"");
    if (const std::string contig = id > 0 ? contig_name(id) : std::string(); !contig.empty()) {
      double left = 0, right = 0;
      coordinates(clone, id, left, right);
      line("Map \"" + contig + "\" Ends Left " + number_text(left, 3));
      line("Map \"" + contig + "\" Ends Right " + number_text(right, 3) + " Oldctg " +
           registry_.name_of_cluster_get(id));
    }
    line("Gel_number " + information.gel_number);
    line("Bands  " + std::to_string(information.first_band_adress) + " " + std::to_string(information.number_of_bands));
    for (const std::int32_t marker : database_.markers().markers_of_clone(clone))
      line("Positive_Probe \"" + database_.markers().name_of_marker_get(marker) + "\" New");
    line("Creation_date " + date_text_of_fpc_file(information.creation_date));
    line("Modified_date " + date_text_of_fpc_file(information.modification_date));
  }

  void marker_section(const std::string &date_now) {
    const std::int32_t n_markers = database_.markers().total_number_of_markers_get();
    if (n_markers == 0)
      return;
    line("");
    line("Markerdata");
    for (std::int32_t marker = 1; marker <= n_markers; ++marker) {
      line("");
      line("Marker_STS : \"" + database_.markers().name_of_marker_get(marker) + "\"");
      line("Creation_date " + date_now);
      line("Modified_date " + date_now);
    }
  }

  void contig_record(cluster_id id) {
    const std::string contig = contig_name(id);
    if (contig.empty())
      return;
    const cluster_information &cluster = registry_.cluster_information_get(id);
    const std::string &name = registry_.name_of_cluster_get(id);
    std::string trace_remark = cluster.trace_remark;
    if (flavour_.use_FPC_names)
      trace_remark += (trace_remark.empty() ? "" : "\t") + name;
    line("");
    line(contig);
    line("User_remark \"" + (flavour_.pp && cluster.user_remark.empty() ? name : cluster.user_remark) + "\"");
    line("Trace_remark \"" + trace_remark + "\"");
  }

  const class_FPCto_import &registry_;
  const class_DB_of_clones &database_;
  const contig_names &names_;
  const fpc_flavour &flavour_;
  result_file file_;
};

// A path may be a name that begins with a backslash and lies in the working folder.
std::filesystem::path resolved(const process_frame &frame, const std::filesystem::path &path) {
  const std::string text = path.string();
  return text.starts_with('\\') ? frame.path_in_working_folder(text) : path;
}

void ask_about_GBrowse(process_frame &frame, fpc_flavour &flavour) {
  flavour.for_GBrowse = frame.yes({.text = "For Browse (i.e., left coor in ctg start from zero, coor in kb)?",
                                   .title = {},
                                   .by_default = answer::no,
                                   .to_go_on = answer::no});
  if (!flavour.for_GBrowse)
    return;
  constexpr double standard_band_size = 1.2;
  const std::string text = frame.input({"Virtual band size:", "Printing .fpc file for GBrowse...", "1.2"});
  if (!number_parse(text, flavour.band_size) || !(flavour.band_size > 0))
    flavour.band_size = standard_band_size;
}

} // namespace

void write_fpc_file(process_frame &frame, const class_DB_of_clones &database, const class_FPCto_import &registry,
                    const number_list &clones, const std::filesystem::path &name_or_empty, bool pp,
                    const std::filesystem::path &folder, bool use_FPC_names) {
  registry.check_clone_numbers(clones);
  const contig_names names = make_contig_names_for_FPC(registry, clones);
  fpc_flavour flavour;
  flavour.pp = pp;
  flavour.use_FPC_names = use_FPC_names;
  std::filesystem::path path = resolved(frame, name_or_empty);
  if (pp) {
    write_rename_table(registry, database, names, folder.empty() ? frame.working_folder_get() : folder);
    ask_about_GBrowse(frame, flavour);
  }
  if (flavour.for_GBrowse && !path.empty())
    path += ".fpc";
  if (path.empty())
    path = frame.path_in_working_folder(flavour.for_GBrowse ? "\\FPC_like_ForGBrowse.fpc" : "\\FPC_like.fpc");
  fpc_writer(registry, database, names, flavour, path)
      .write(frame, clones, str_date_from_FPC_format_get(frame.clock().day_number()));
}

void print_FPC_like_file_run(process_frame &frame, const project_settings &settings, class_DB_of_clones &database,
                             const class_FPCto_import &registry, const std::filesystem::path &path_plain,
                             const std::filesystem::path &path_pp, const std::filesystem::path &folder, bool all_clones,
                             const fpc_file_choice &choice) {
  frame.process_start("Printing of .fpc files");
  number_list clones;
  if (all_clones) {
    clones = number_list::range(1, database.total_number_of_clones_get());
  } else {
    frame.local_process_text_set("Load list of clones");
    const std::filesystem::path file =
        choice.list.empty() ? frame.open_file_dialog("Open file with list of selected clones") : choice.list;
    std::string pure_name;
    if (file.empty() || !class_list_of_clones(frame, settings)
                             .run_reading_file_with_list_of_clones(file, clones, pure_name, database)) {
      frame.process_canceled();
      return;
    }
  }
  if (clones.empty()) {
    frame.alarm("list_of_clones(0)=0");
    frame.process_canceled();
    return;
  }
  write_fpc_file(frame, database, registry, clones, path_plain, false, folder, choice.use_FPC_names);
  write_fpc_file(frame, database, registry, clones, path_pp, true, folder, choice.use_FPC_names);
  frame.process_done();
  frame.message("Printing of FPC like files .fpc is completed.");
}

} // namespace orb
