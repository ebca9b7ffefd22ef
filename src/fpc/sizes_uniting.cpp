#include "fpc/sizes_uniting.h"

#include <algorithm>

#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace fs = std::filesystem;

fs::path run_reload_new_version_of_database(process_frame &frame, fs::path any_file, fs::path target,
                                            std::optional<std::int32_t> n_files) {
  if (any_file.empty())
    any_file = frame.open_file_dialog("Open any file with bands from folder");
  if (any_file.empty())
    return {};
  if (target.empty())
    target = frame.save_file_dialog_checked("Save all .sizes files into one file", "SizesFilesUnited.txt", "");
  if (target.empty())
    return {};
  std::string extension = any_file.extension().string();
  extension.erase(0, extension.starts_with('.') ? 1 : 0);
  const fs::path folder = fs::absolute(any_file).parent_path();
  std::vector<std::string> names = class_serv_raznoe::create_ordered_list_of_files_in_folder(folder, extension);
  if (fs::absolute(target).parent_path() == folder)
    std::erase(names, target.filename().string()); // of an earlier time
  const auto n_all = static_cast<std::int32_t>(names.size());
  std::int32_t n = n_files.value_or(n_all);
  if (!n_files) {
    const std::string all = std::to_string(n_all);
    const std::string wanted = frame.input({"Input number of files (if not all=" + all + "):", "Unite files", all});
    if (!whole_number_parse(wanted, n) || n < 1)
      n = n_all;
  }
  n = std::min(n, n_all);
  frame.process_start("Unite files");
  result_file united(target);
  std::string line;
  for (std::int32_t i = 1; i <= n; ++i) {
    line_reader lines(folder / names[static_cast<std::size_t>(i) - 1]);
    while (class_serv_raznoe::input_my_asc10(lines, line))
      united.line(line);
    frame.progress(i, n);
    frame.local_process_text_set("Transformed " + std::to_string(i) + " from " + std::to_string(n));
    if (frame.stop_requested_get()) {
      frame.process_stopped_manually();
      return {};
    }
  }
  united.commit();
  frame.local_process_text_set("Transformed All");
  frame.process_done();
  frame.message("Database of clones is only united into one file situated close to folder of separated files. From my "
                "experience, it usually contains repeats. Please test it using button <test DB on repeats>");
  return target;
}

} // namespace orb
