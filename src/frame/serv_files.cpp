// class_serv_raznoe: reading lines, names of files, folders.
#include <algorithm>

#include "frame/class_serv_raznoe.h"
#include "frame/failures.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "frame/process_frame.h"

namespace orb {

namespace {

constexpr std::size_t start_of_file = 100; // characters that IsAscii13 looks at

// Up to `count` bytes from the start of a file.
std::string first_bytes_of_file(const std::filesystem::path &path, std::int64_t count) {
  std::FILE *file = std::fopen(path.c_str(), "rb");
  if (file == nullptr)
    throw file_error("can't open", path, std::generic_category().message(errno));
  std::string bytes;
  char part[4096];
  while (static_cast<std::int64_t>(bytes.size()) < count) {
    const std::size_t room = std::min(sizeof part, static_cast<std::size_t>(count) - bytes.size());
    const std::size_t got = std::fread(part, 1, room, file);
    if (got == 0)
      break;
    bytes.append(part, got);
  }
  const bool failed = std::ferror(file) != 0;
  const int error = errno;
  std::fclose(file);
  if (failed)
    throw file_error("can't read", path, std::generic_category().message(error));
  return bytes;
}

struct text_features {
  std::int64_t n_crlf = 0, n_other_ends = 0;
  bool point = false, comma = false;
};

// Notes the decimal sign of a line that is a number with a fraction.
void note_decimal_sign(std::string_view line, text_features &features) {
  double value = 0;
  if (!number_parse(line, value))
    return;
  features.point = features.point || line.find('.') != std::string_view::npos;
  features.comma = features.comma || line.find(',') != std::string_view::npos;
}

text_features features_of(std::string_view bytes) {
  text_features features;
  std::size_t begin = 0;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (bytes[at] != '\r' && bytes[at] != '\n')
      continue;
    note_decimal_sign(bytes.substr(begin, at - begin), features);
    const bool crlf = bytes[at] == '\r' && at + 1 < bytes.size() && bytes[at + 1] == '\n';
    (crlf ? features.n_crlf : features.n_other_ends) += 1;
    at += crlf;
    begin = at + 1;
  }
  return features;
}

// Where the name begins behind the last separator of folders.
std::size_t begin_of_name(std::string_view file) {
  const std::size_t separator = file.find_last_of("/\\");
  return separator == std::string_view::npos ? 0 : separator + 1;
}

bool has_extension(std::string_view name, std::string_view extension) {
  if (extension.empty())
    return true;
  if (extension.front() == '.')
    extension.remove_prefix(1);
  if (name.size() <= extension.size() || name[name.size() - extension.size() - 1] != '.')
    return false;
  return class_serv_raznoe::text_transform_to_lower_case(name.substr(name.size() - extension.size())) ==
         class_serv_raznoe::text_transform_to_lower_case(extension);
}

} // namespace

bool class_serv_raznoe::input_my_asc10(line_reader &file, std::string &line) {
  std::string_view read;
  const bool there = file.next(read);
  line.assign(there ? read : std::string_view());
  return there;
}

void class_serv_raznoe::input_my_asc10_nenado(line_reader &file, std::string &line) {
  input_my_asc10(file, line);
}

bool class_serv_raznoe::ReadLine(line_reader &file, bool, std::string &line) {
  return input_my_asc10(file, line);
}

bool class_serv_raznoe::IsAscii13(const std::filesystem::path &path) {
  return first_bytes_of_file(path, start_of_file).find("\r\n") != std::string::npos;
}

void class_serv_raznoe::read_first_symbols_of_file_and_detect_type(process_frame &frame, std::int64_t count,
                                                                   const std::filesystem::path &file, bool &readable,
                                                                   bool &point, bool &crlf) {
  const text_features features = features_of(first_bytes_of_file(file, count));
  readable = !(features.point && features.comma);
  point = !features.comma;
  crlf = features.n_crlf > features.n_other_ends;
  if (!readable)
    frame.message("Contradiction in format of non-integer numbers in file " + file.string() + ", Can't read!");
}

std::string class_serv_raznoe::path_of_file(std::string_view file) {
  return std::string(file.substr(0, begin_of_name(file)));
}

std::string class_serv_raznoe::extract_pure_file_name(std::string_view file) {
  std::string extension;
  return extract_pure_file_name_new(file, extension);
}

std::string class_serv_raznoe::extract_pure_file_name_new(std::string_view file, std::string &extension) {
  const std::string_view name = file.substr(begin_of_name(file));
  const std::size_t point = name.rfind('.');
  const bool split = point != std::string_view::npos && point > 0; // a leading point begins a name
  const std::string pure(split ? name.substr(0, point) : name);
  extension.assign(split ? name.substr(point + 1) : std::string_view());
  return pure;
}

std::vector<std::string> class_serv_raznoe::ListOfFilesInFolder(const std::filesystem::path &folder,
                                                                std::string_view extension) {
  std::vector<std::string> names;
  std::error_code error;
  std::filesystem::directory_iterator files(folder, error);
  for (; !error && files != std::filesystem::directory_iterator(); files.increment(error)) {
    const std::string name = files->path().filename().string();
    std::error_code ignored; // a link to nothing is no file
    if (name.front() != '.' && has_extension(name, extension) && !files->is_directory(ignored) &&
        files->exists(ignored))
      names.push_back(name);
  }
  if (error)
    throw file_error("can't list folder", folder, error.message());
  return names;
}

std::vector<std::string> class_serv_raznoe::create_ordered_list_of_files_in_folder(const std::filesystem::path &folder,
                                                                                   std::string_view extension) {
  std::vector<std::string> names = ListOfFilesInFolder(folder, extension);
  std::sort(names.begin(), names.end());
  return names;
}

namespace {

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

// The run of digits that begins at `at`, without leading zeros; `at` moves behind it.
std::string_view digits_at(std::string_view text, std::size_t &at) {
  const std::size_t begin = at;
  while (at < text.size() && is_digit(text[at]))
    ++at;
  const std::string_view digits = text.substr(begin, at - begin);
  return digits.substr(std::min(digits.find_first_not_of('0'), digits.size()));
}

// Names with the numbers in them by value: part_1_90 stands before part_1_501.
bool by_numbers_in_names(std::string_view a, std::string_view b) {
  std::size_t i = 0, k = 0;
  while (i < a.size() && k < b.size()) {
    if (is_digit(a[i]) && is_digit(b[k])) {
      const std::string_view number_a = digits_at(a, i), number_b = digits_at(b, k);
      if (number_a != number_b)
        return number_a.size() != number_b.size() ? number_a.size() < number_b.size() : number_a < number_b;
    } else if (a[i] != b[k]) {
      return static_cast<unsigned char>(a[i]) < static_cast<unsigned char>(b[k]);
    } else {
      ++i;
      ++k;
    }
  }
  return a.size() - i != b.size() - k ? a.size() - i < b.size() - k : a < b;
}

} // namespace

std::filesystem::path class_serv_raznoe::create_folder_and_make_it_current(process_frame &frame,
                                                                           std::string_view name) {
  const std::filesystem::path former = frame.working_folder_get(), folder = frame.path_in_working_folder(name);
  create_folder(folder);
  frame.working_folder_set(folder);
  return former;
}

void class_serv_raznoe::finish_of_work_with_folder(process_frame &frame, const std::filesystem::path &former_folder) {
  frame.working_folder_set(former_folder);
}

std::filesystem::path class_serv_raznoe::merge_files_of_folder_sort_del_rep_run(process_frame &frame,
                                                                                const std::filesystem::path &folder,
                                                                                std::string_view extension) {
  constexpr std::int64_t lines_between_polls = 100000;
  std::filesystem::path merged = folder;
  if (!merged.has_filename())
    merged = merged.parent_path(); // a separator at the end
  merged += "_merged.txt";
  std::vector<std::string> names = ListOfFilesInFolder(folder, extension);
  std::sort(names.begin(), names.end(), by_numbers_in_names);
  result_file out(merged);
  for (std::size_t i = 0; i < names.size(); ++i) {
    frame.local_process_text_set("File " + std::to_string(i + 1) + " of " + std::to_string(names.size()));
    line_reader part(folder / names[i]);
    for (std::string_view line; part.next(line);) {
      out.line(line);
      if (part.line_number() % lines_between_polls == 0)
        frame.yield();
      if (frame.stop_requested_get())
        return {};
    }
  }
  out.commit();
  return merged;
}

} // namespace orb
