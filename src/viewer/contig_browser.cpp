#include "viewer/contig_browser.h"

#include <algorithm>

#include "frame/class_serv_raznoe.h"
#include "frame/failures.h"
#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// Files of a folder in the order of their names, so that the last one is the same on every machine.
std::vector<fs::path> files_of(const fs::path &folder) {
  std::vector<fs::path> files;
  std::error_code failed;
  for (fs::directory_iterator at(folder, failed), end; !failed && at != end; at.increment(failed))
    if (std::error_code ignored; at->is_regular_file(ignored))
      files.push_back(at->path());
  std::sort(files.begin(), files.end());
  return files;
}

} // namespace

bool clsContigs::AddContig(std::string_view line, std::int32_t index) {
  const auto fields = class_serv_raznoe::fields_of(line);
  if (fields.size() < 2 || fields[1].empty() || index < 1)
    return false;
  const auto text = [&](std::size_t column) {
    return column <= fields.size() ? std::string(fields[column - 1]) : std::string();
  };
  const auto whole = [&](std::size_t column) {
    std::int32_t value = 0;
    whole_number_parse(text(column), value);
    return value;
  };
  C_Contig contig;
  double cutoff = 0;
  number_parse(text(5), cutoff);
  contig.is_used_set(true);
  contig.n_cluster_set(whole(1));
  contig.cluster_set(text(2));
  contig.n_clones_set(whole(3));
  contig.bcontig_set(class_serv_raznoe::text_transform_to_lower_case(text(4)) == "true");
  contig.cutoff_set(cutoff);
  contig.diam_set(whole(6));
  contig.i_width_set(whole(7));
  contig.n_gaps_set(whole(8));
  contig.n_rank_MTP_more_1_set(whole(9));
  contig.user_remark_set(text(10)); // as the run writes its rows
  contig.full_Name_set(text(11));
  if (static_cast<std::size_t>(index) >= contigs_.size())
    contigs_.resize(static_cast<std::size_t>(index) + 1);
  contigs_[static_cast<std::size_t>(index)] = std::move(contig);
  return true;
}

C_Contig *clsContigs::GetContigByRef(std::int32_t index) {
  return index >= 1 && index <= GetCount() ? &contigs_[static_cast<std::size_t>(index)] : nullptr;
}

C_Contig clsContigs::GetContig(std::int32_t index) const {
  return index >= 1 && index <= GetCount() ? contigs_[static_cast<std::size_t>(index)] : C_Contig();
}

bool FrmContigSelect::SetContigsName(const fs::path &table) {
  *this = {};
  table_ = table;
  for (const char *column : {"#", "cluster", "contig", "n_clones", "cutoff", "diam", "width", "n_gaps", "n_rank_MTP>1"})
    heading_ += (heading_.empty() ? "" : "\t") + std::string(column);
  try {
    line_reader lines(table);
    std::string_view line;
    for (bool is_heading = true; lines.next(line); is_heading = false)
      if (!is_heading)
        contigs_.AddContig(line, contigs_.GetCount() + 1);
  } catch (const file_error &) {
    return false;
  }
  for (std::int32_t i = 1; i <= contigs_.GetCount(); ++i) {
    const C_Contig &contig = *contigs_.GetContigByRef(i);
    const auto cell = [](std::int32_t value) { return "\t" + std::to_string(value); };
    std::string cutoff;
    number_text_append(cutoff, contig.cutoff_get(), 2);
    rows_.push_back(std::to_string(contig.n_cluster_get()) + "\t" + contig.cluster_get() + "\t" +
                    (contig.diam_get() >= 1 ? "True" : "False") + cell(contig.n_clones_get()) + "\t" + cutoff +
                    cell(contig.diam_get()) + cell(contig.i_width_get()) + cell(contig.n_gaps_get()) +
                    cell(contig.n_rank_MTP_more_1_get()) + "\t");
  }
  status_ = "Select contig and press 'Go' button";
  return true;
}

void FrmContigSelect::row_clicked(std::int32_t row) {
  if (row < 1 || row > contigs_.GetCount())
    return;
  selected_ = row;
  status_ = contigs_.GetContig(row).diam_get() > 0
                ? "Press 'Go' button to show this contig"
                : "This cluster has no net file. Press 'Go' button to try seperate it to some contigs";
}

void FrmContigSelect::CmdSelect() {
  file_.clear();
  C_Contig *contig = contigs_.GetContigByRef(selected_);
  if (contig == nullptr)
    return;
  const fs::path run = table_.parent_path(), name = contig->cluster_get();
  // small clusters share a folder
  for (const fs::path &folder : {run / name, run / "Heaps", run}) {
    file_ = file_with_ending(folder);
    if (!file_.empty())
      return;
  }
}

fs::path FrmContigSelect::file_with_ending(const fs::path &folder) const {
  const C_Contig contig = contigs_.GetContig(selected_);
  fs::path found;
  const bool is_own = folder.filename() == contig.cluster_get();
  for (const fs::path &file : files_of(folder)) {
    const std::string name = file.filename().string();
    if (contig.diam_get() < 1
            ? name == contig.cluster_get() + ".txt"
            : is_own && name.size() >= 3 &&
                  class_serv_raznoe::text_transform_to_lower_case(name.substr(name.size() - 3)) == "net")
      found = file;
  }
  return found;
}

bool FrmContigSelect::is_to_be_separated() const {
  constexpr std::size_t least_name = 10; // characters: anything shorter is no path of a file
  return file_.string().size() >= least_name && !contigs_.GetContig(selected_).bcontig_get();
}

} // namespace orb
