// A reader of .fpc files with their .cor files that forgives nothing: blocks are parted by one empty line each, a clone
// is what stands between two of them, coordinates are whole numbers from 0 on. Throws where a file is otherwise.
#pragma once

#include <fstream>
#include <map>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/temporary_folder.h"

namespace orb_test {

struct fpc_clone {
  std::string contig, left, right, buried, held_by; // `buried`: Exact, Approximate, Pseudo
  std::vector<std::string> markers;
  std::vector<int> bands;
};

struct fpc_file {
  std::string counts, tolerance, gel_length, cutoff;
  std::map<std::string, fpc_clone> clones;
  std::vector<std::string> order, markers, remarks; // clones in the file's order; remarks of Ctg1, Ctg2, ...
};

class strict_fpc_reader {
public:
  explicit strict_fpc_reader(const std::filesystem::path &file)
      : in_(file, std::ios::binary), cor_(orb::bytes_of(std::filesystem::path(file).replace_extension(".cor"))) {}

  fpc_file read() {
    head();
    for (std::vector<std::string> lines = block(); lines.front() != "Markerdata"; lines = block())
      clone(lines);
    std::smatch found;
    std::vector<std::string> lines = block();
    for (; std::regex_match(lines.front(), found, std::regex("Marker_STS : \"(.+)\"")); lines = block())
      read_.markers.push_back(found[1]);
    const std::string first = matched(lines.front(), "Contigdata (\\d+)")[0];
    for (int contig = 1; contig <= std::stoi(first); ++contig)
      read_.remarks.push_back(matched(block().front(), "Ctg" + std::to_string(contig) + " \\S+ # (.+)")[0]);
    if (in_.peek() != std::ifstream::traits_type::eof())
      throw std::runtime_error("something stands behind the contigs");
    return read_;
  }

private:
  std::string line() {
    std::string text;
    if (!std::getline(in_, text) || in_.eof() || text.find('\r') != std::string::npos)
      throw std::runtime_error("no whole line: " + text);
    return text;
  }
  // Up to its empty line or the end of the file.
  std::vector<std::string> block() {
    std::vector<std::string> lines{line()};
    if (lines.front().empty())
      throw std::runtime_error("an empty block");
    while (in_.peek() != std::ifstream::traits_type::eof()) {
      lines.push_back(line());
      if (lines.back().empty()) {
        lines.pop_back();
        break;
      }
    }
    return lines;
  }
  static std::vector<std::string> matched(const std::string &text, const std::string &pattern) {
    std::smatch found;
    if (!std::regex_match(text, found, std::regex(pattern)))
      throw std::runtime_error("\"" + text + "\" isn't like " + pattern);
    return {found.begin() + 1, found.end()};
  }

  void head() {
    const std::vector<std::string> lines = block();
    if (lines.size() != 4)
      throw std::runtime_error("the head has not four lines");
    matched(lines[0], "// fpc project (\\w+)");
    matched(lines[1], "// ([\\d.]+)  Date: .+  User: .+");
    read_.counts = matched(lines[2], "// (Contigs \\d+  Clones \\d+  Markers \\d+  Bands \\d+)")[0];
    const auto found = matched(lines[3], "// Tol (\\d+)  Gel length (\\d+)(?:  Cut (\\S+))?");
    read_.tolerance = found[0], read_.gel_length = found[1], read_.cutoff = found[2];
  }

  void clone(const std::vector<std::string> &lines) {
    const std::string name = matched(lines[0], "BAC : \"([^\"]+)\"")[0];
    fpc_clone made;
    bool gel = false;
    for (std::size_t i = 1; i < lines.size(); ++i) {
      std::smatch found;
      if (i == 1 && lines[i].starts_with("Map")) {
        const auto left = matched(lines[i], "Map \"ctg(\\d+)\" Ends Left (\\d+)");
        made.contig = left[0], made.left = left[1];
        made.right = matched(lines.at(++i), "Map \"ctg" + made.contig + "\" Ends Right (\\d+)")[0];
      } else if (std::regex_match(lines[i], found, std::regex("(\\w+)_match_to_cosmid \"([^\"]+)\""))) {
        made.buried = found[1], made.held_by = found[2];
      } else if (std::regex_match(lines[i], found, std::regex("Positive_STS \"([^\"]+)\""))) {
        made.markers.push_back(found[1]);
      } else if (std::regex_match(lines[i], found, std::regex("Bands (\\d+) (\\d+)"))) {
        made.bands = bands(std::stoul(found[1]), std::stoul(found[2]));
      } else if (std::regex_match(lines[i], std::regex("Gel_number \\d+"))) {
        gel = true;
      } else {
        matched(lines[i], "(Creation|Modified)_date \\d{3}( \\d+){4}");
      }
    }
    if (!gel || !read_.clones.emplace(name, made).second)
      throw std::runtime_error("clone " + name + " stands twice, or has no gel");
    read_.order.push_back(name);
  }

  std::vector<int> bands(std::size_t start, std::size_t count) const {
    if (start < 1 || 2 * (start - 1 + count) > cor_.size())
      throw std::runtime_error("bands behind the end of the .cor file");
    std::vector<int> found;
    for (std::size_t at = 2 * (start - 1); found.size() < count; at += 2)
      found.push_back(static_cast<unsigned char>(cor_[at]) * 256 + static_cast<unsigned char>(cor_[at + 1]));
    return found;
  }

  std::ifstream in_;
  const std::string cor_;
  fpc_file read_;
};

} // namespace orb_test
