// Contigs that are specified by hand: a file of sections of clones becomes the registry.
#include <algorithm>
#include <unordered_set>

#include "fpc/fpc_reading.h"
#include "frame/files.h"
#include "lists/class_list_of_clones.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr std::int32_t most_shown = 10; // of messages about single clones
constexpr const char *specified_rest = "all_clones_out_of_zone";

struct specified_contig {
  std::string name, remark;
  number_list clones;
};

// The sections of a file; problems are told, the first few in a message each.
class specified_reader {
public:
  specified_reader(process_frame &frame, const class_DB_of_clones &database) : frame_(frame), database_(database) {
    place_of_.start(database.total_number_of_clones_get());
  }

  std::vector<specified_contig> read(const fs::path &file) {
    line_reader lines(file);
    std::string_view line;
    while (lines.next(line)) {
      place_ = lines.place();
      if (line.starts_with('#'))
        begin(line);
      else
        add_clones(line);
    }
    if (n_problems_ > most_shown)
      frame_.warn("Problems in " + file.string() + ": " + std::to_string(n_problems_) + "; the first " +
                  std::to_string(most_shown) + " were shown.");
    if (n_problems_ > 0)
      frame_.data_failed_set();
    return std::move(contigs_);
  }
  bool is_in_a_contig(clone_number clone) const { return place_of_.has(clone); }

private:
  void problem(const std::string &text, std::string_view name) {
    if (++n_problems_ <= most_shown)
      frame_.alarm(text + std::string(name) + "\r\n" + place_);
  }

  // "# NAME - remark: TEXT". A second section of a name isn't taken.
  void begin(std::string_view line) {
    line.remove_prefix(1);
    while (line.starts_with(' '))
      line.remove_prefix(1);
    const std::size_t end = line.find(' ');
    const std::string name(line.substr(0, end));
    is_open_ = !name.empty() && names_.insert(name).second;
    if (!is_open_) {
      problem("Duplicate contig name! ", name);
      return;
    }
    contigs_.push_back({name, {}, {}});
    if (end != std::string_view::npos)
      contigs_.back().remark = remark_of(line.substr(end));
  }

  static std::string remark_of(std::string_view rest) {
    constexpr std::string_view word = "remark:";
    const std::size_t dash = rest.find('-');
    if (dash == std::string_view::npos)
      return {};
    rest.remove_prefix(dash + 1);
    if (const std::size_t at = rest.find(word); at != std::string_view::npos)
      rest.remove_prefix(at + word.size());
    while (rest.starts_with(' '))
      rest.remove_prefix(1);
    return std::string(rest);
  }

  void add_clones(std::string_view line) {
    constexpr std::string_view separators = " ,;\t";
    for (std::size_t at = line.find_first_not_of(separators); at != std::string_view::npos;) {
      const std::size_t end = std::min(line.find_first_of(separators, at), line.size());
      add_clone(line.substr(at, end - at));
      at = line.find_first_not_of(separators, end);
    }
  }

  void add_clone(std::string_view name) {
    const clone_number clone = database_.clone_number_get(name);
    if (clone < 1)
      problem("Unknown clone! ", name);
    else if (place_of_.has(clone))
      problem("Duplicate clone! ", name);
    else if (!is_open_ || database_.nRepeatsCloneName_get(clone) != 1)
      problem("Problematic clone! ", name); // it stands in no section, or several clones have this name
    else
      take(clone);
  }
  void take(clone_number clone) {
    place_of_.set(clone, static_cast<std::int32_t>(contigs_.size()));
    contigs_.back().clones.add(clone);
  }

  process_frame &frame_;
  const class_DB_of_clones &database_;
  std::vector<specified_contig> contigs_;
  std::unordered_set<std::string> names_;
  position_table place_of_;
  std::string place_;
  bool is_open_ = false;
  std::int32_t n_problems_ = 0;
};

// Coordinates of clones that lay in one placed cluster stay true of them.
bool stay_placed(const class_FPCto_import &former, const number_list &clones) {
  if (clones.empty())
    return false;
  const cluster_id id = former.clone_in_cluster_get(clones(1));
  for (const clone_number clone : clones.members())
    if (former.clone_in_cluster_get(clone) != id)
      return false;
  return id > 0 && former.cluster_information_get(id).min_and_max_known;
}

} // namespace

bool class_FPCfrom_export::run_read_specified_contigs(fs::path file) {
  if (file.empty())
    file = frame_.open_file_dialog("Open file with specified contigs");
  if (file.empty())
    return false;
  if (!database_.clone_name_sorted_is_created_get())
    database_.sort_clones_by_name(frame_);
  specified_reader reader(frame_, database_);
  const std::vector<specified_contig> contigs = reader.read(file);
  if (contigs.empty())
    return frame_.refuse("The file specifies no contig: no line is # and a name.\r\n" + file.string());
  const std::shared_ptr<class_FPCto_import> former = database_.contigs();
  const auto registry = std::make_shared<class_FPCto_import>(frame_, settings_, database_);
  registry->clear_all_run(0, false);
  number_list outside, inside;
  for (clone_number clone = 1; clone <= database_.total_number_of_clones_get(); ++clone) {
    registry->clone_information_set(clone, former->clone_information_get(clone));
    (reader.is_in_a_contig(clone) ? inside : outside).add(clone);
  }
  for (const specified_contig &contig : contigs) {
    if (!registry->add_new_cluster(contig.clones, contig.name, "", false))
      continue;
    const cluster_id id = registry->n_list_of_all_cluster_names_get();
    registry->cluster_user_remark_set(id, contig.remark);
    if (stay_placed(*former, contig.clones))
      registry->make_min_and_max_coor_for_cluster(id);
  }
  if (!outside.empty())
    registry->add_new_cluster(outside, specified_rest, "", false);
  registry->add_new_cluster_finish();
  database_.contigs_set(registry);
  database_.contigs_are_specified_set(true);
  summary_.files.push_back(registry->print_FPC_clusters());
  summary_.files.push_back(frame_.path_in_working_folder("\\all_clones_of_zone.txt"));
  class_list_of_clones(frame_, settings_).print_list_of_clones(inside, summary_.files.back(), database_);
  return true;
}

} // namespace orb
