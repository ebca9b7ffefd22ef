#include "viewer/net_file.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "frame/text_lines.h"
#include "viewer/class_net_elng_clust.h"
#include "viewer/clone_records.h"

namespace orb {

namespace {

constexpr std::int32_t tokens_max = 50;
constexpr std::int32_t vertex_id_max = 600000;
constexpr std::int64_t lines_between_polls = 10000;

bool finite_number(std::string_view text, double &value) {
  return number_parse(text, value) && std::isfinite(static_cast<float>(value));
}

// -1: no such pattern.
std::int16_t line_pattern_of(std::string_view text) {
  std::string_view name;
  for (std::int16_t pattern = 0; line_pattern_name(pattern, name); ++pattern)
    if (name == text)
      return pattern;
  return -1;
}

std::int16_t as_small_number(double value) {
  return static_cast<std::int16_t>(std::min(std::floor(value), double{INT16_MAX}));
}

class net_file_reader {
public:
  net_file_reader(process_frame &frame, const std::filesystem::path &file) : frame_(frame), lines_(file) {}
  bool read(net_file_contents &contents);

private:
  enum class state { between, vertices, arcs, edges };
  // The texts of one of the three sections.
  struct section {
    std::string_view name;
    std::string_view sign_text; // what its count should be
    bool may_be_empty;
    state reading;
    std::int64_t declared = -1; // none yet
  };

  bool take_line(std::string_view line);
  bool keyword();
  bool count_of(section &declared);
  bool vertex();
  bool vertex_coordinates(node_elng &node, std::size_t &at) const;
  bool vertex_attributes(node_elng &node, std::size_t at) const;
  bool edge(bool is_arc);
  bool edge_attributes(edge_elng &edge, std::size_t at) const;
  vertex_number node_of(std::string_view id) const; // 0: none
  bool bad_line(std::string_view what, std::string_view it_can_be) const;
  bool refuse(const std::string &text) const { return frame_.refuse(text + "\r\n" + lines_.place()); }
  std::string_view token(std::size_t i) const { return i < tokens_.size() ? tokens_[i] : std::string_view(); }

  process_frame &frame_;
  line_reader lines_;
  net_file_contents read_;
  std::vector<std::string> tokens_;
  std::unordered_map<std::int32_t, vertex_number> node_of_id_; // an id may be far above the number of vertices
  state state_ = state::between;
  std::int64_t n_left_ = 0; // records that the section still has
  section vertices_{"vertices", "should be > 0", false, state::vertices};
  section arcs_{"vectors (arcs)", "should be > = 0", true, state::arcs};
  section edges_{"edges", "should be >= 0", true, state::edges};
};

bool net_file_reader::bad_line(std::string_view what, std::string_view it_can_be) const {
  return refuse("Can't understand " + std::string(what) + " #" + std::to_string(lines_.line_number()) +
                " in file with net.\r\n It can be also " + std::string(it_can_be));
}

bool net_file_reader::read(net_file_contents &contents) {
  std::string_view line;
  while (lines_.next(line)) {
    if (!take_line(line))
      return false;
    if (lines_.line_number() % lines_between_polls != 0)
      continue;
    frame_.progress(lines_.position(), lines_.size());
    if (!frame_.goes_on())
      return false;
  }
  if (vertices_.declared < 0)
    return refuse("There are no vertices in file with net.");
  if (n_left_ > 0)
    return refuse("File with net ends before its last " + std::to_string(n_left_) + " records.");
  contents = std::move(read_);
  return true;
}

bool net_file_reader::take_line(std::string_view line) {
  line = trimmed(line);
  if (line.empty())
    return true;
  bool complete = false;
  class_serv_raznoe::cut_string_spaces_several_no_emty(line, tokens_, tokens_max, complete);
  if (state_ == state::between)
    return keyword();
  const bool is_closed = std::count(line.begin(), line.end(), '"') % 2 == 0; // else a quote swallowed what follows it
  if (!is_closed || !(state_ == state::vertices ? vertex() : edge(state_ == state::arcs)))
    return bad_line(state_ == state::vertices ? "vertex line" : "line", "result of missed object.");
  if (--n_left_ == 0)
    state_ = state::between;
  return true;
}

bool net_file_reader::keyword() {
  if (tokens_[0] == "*Network") {
    bool quoted = false;
    const std::string name = class_serv_raznoe::antikovichki(token(1), quoted);
    read_.net_name = quoted ? name : token(1);
    return true;
  }
  if (tokens_[0] == "*Vertices")
    return count_of(vertices_);
  if (vertices_.declared >= 0 && tokens_[0] == "*Arcs")
    return count_of(arcs_);
  if (vertices_.declared >= 0 && tokens_[0] == "*Edges")
    return count_of(edges_);
  return bad_line("line", "undeclared object.");
}

bool net_file_reader::count_of(section &declared) {
  const std::string number_of = "Number of " + std::string(declared.name) + " ";
  if (declared.declared >= 0)
    return refuse(number_of + "defined twice!");
  double count = 0;
  if (!number_parse(token(1), count))
    return refuse(number_of + "is not numeric!");
  if (declared.may_be_empty ? count < 0 : count < 1)
    return refuse(number_of + std::string(declared.sign_text));
  declared.declared = static_cast<std::int64_t>(std::min(std::floor(count), 1e15));
  n_left_ = declared.declared;
  if (n_left_ > 0)
    state_ = declared.reading;
  return true;
}

bool net_file_reader::vertex() {
  std::int32_t id = 0;
  if (!whole_number_parse(token(0), id) || id < 1 || id > vertex_id_max)
    return false;
  if (node_of_id_.contains(id))
    return false; // edges would not know which one they mean
  node_elng node;
  bool quoted = false;
  node.caption = class_serv_raznoe::antikovichki(token(1), quoted);
  std::size_t at = 2;
  if (!quoted || !vertex_coordinates(node, at) || !vertex_attributes(node, at))
    return false;
  node_of_id_.emplace(id, static_cast<vertex_number>(read_.nodes.size()));
  read_.nodes.push_back(std::move(node));
  return true;
}

bool net_file_reader::vertex_coordinates(node_elng &node, std::size_t &at) const {
  for (float *coordinate : {&node.x, &node.y, &node.z}) {
    double value = 0;
    if (!number_parse(token(at), value))
      return true;
    if (!std::isfinite(static_cast<float>(value)))
      return false;
    *coordinate = static_cast<float>(value);
    node.is_coor_known = node.is_frozen = true;
    ++at;
  }
  return true;
}

bool net_file_reader::vertex_attributes(node_elng &node, std::size_t at) const {
  for (; at < tokens_.size(); at += 2) {
    const std::string_view key = token(at), value = token(at + 1);
    double number = 0;
    if (key == "x_fact" || key == "y_fact") {
      if (!finite_number(value, number) || number < 0)
        return false;
      (key == "x_fact" ? node.x_fact : node.y_fact) = static_cast<float>(number);
    } else if (key == "sh") {
      node.shape = shape_from_name(value);
    } else if (key == "ic" && !value.empty()) {
      node.ic_name = value;
      node.ic = color_from_name(value);
    } else if (key == "bc" && !value.empty()) {
      node.bc_name = value;
      node.bc = color_from_name(value);
    }
  }
  if (node.x_fact > 0 && node.y_fact > 0)
    node.size = as_small_number((double{node.x_fact} + double{node.y_fact}) / 2);
  return true;
}

vertex_number net_file_reader::node_of(std::string_view id) const {
  double number = 0;
  if (!number_parse(id, number) || number != std::floor(number) || number < 1 || number > vertex_id_max)
    return 0;
  const auto at = node_of_id_.find(static_cast<std::int32_t>(number));
  return at == node_of_id_.end() ? 0 : at->second;
}

bool net_file_reader::edge(bool is_arc) {
  edge_elng edge;
  edge.from = node_of(token(0));
  edge.to = node_of(token(1));
  edge.is_arc = is_arc;
  if (edge.from < 1 || edge.to < 1 || !number_parse(token(2), edge.value) || !std::isfinite(edge.value) ||
      !edge_attributes(edge, 3))
    return false;
  read_.edges.push_back(std::move(edge));
  return true;
}

bool net_file_reader::edge_attributes(edge_elng &edge, std::size_t at) const {
  for (; at < tokens_.size(); at += 2) {
    const std::string_view key = token(at), value = token(at + 1);
    if (key == "w") {
      double width = 0;
      if (!number_parse(value, width))
        return false;
      if (width >= 1)
        edge.width = as_small_number(width);
    } else if (key == "c") {
      // a colour without a name is written as nothing at all: what follows is the pattern
      if (value == "p" && line_pattern_of(token(at + 2)) >= 0) {
        --at;
        continue;
      }
      edge.c_name = value;
      edge.c = color_from_name(value);
    } else if (key == "p") {
      edge.pattern = std::max(line_pattern_of(value), std::int16_t{0});
    } else if (key == "l") {
      bool quoted = false;
      edge.caption = class_serv_raznoe::antikovichki(value, quoted);
      if (!quoted)
        return false;
    }
  }
  return true;
}

// Clones by captions, their clusters, and the overlays of what the loaded net knows of them.
void find_clones(const net_sources &sources, std::vector<node_elng> &nodes, std::vector<edge_elng> &edges) {
  if (!sources.clones_exist())
    return;
  if (!sources.database.clone_name_sorted_is_created_get())
    sources.database.sort_clones_by_name(sources.frame);
  for (std::size_t n = 1; n < nodes.size(); ++n) {
    node_elng &node = nodes[n];
    const std::string_view name = std::string_view(node.caption).substr(0, node.caption.find('['));
    if (const clone_number clone = sources.database.clone_number_get(name); clone > 0) {
      node.clone_id = clone;
      node.cluster_id = cluster_of_clone(sources, clone);
    }
    vertex_overlay_set(sources, node);
  }
  for (std::size_t e = 1; e < edges.size(); ++e)
    edge_overlay_set(sources, nodes[static_cast<std::size_t>(edges[e].from)],
                     nodes[static_cast<std::size_t>(edges[e].to)], edges[e]);
}

} // namespace

bool read_net_file(process_frame &frame, const std::filesystem::path &file, net_file_contents &contents) {
  return net_file_reader(frame, file).read(contents);
}

bool class_net_elng::ReadNetFile(const net_sources &sources, const std::filesystem::path &file, bool keep_edges,
                                 bool &all_or_none_have_coordinates) {
  std::error_code failed;
  if (!std::filesystem::is_regular_file(file, failed))
    return false;
  if (sources.cluster_table != nullptr)
    sources.cluster_table->start0();
  net_file_contents read;
  if (!read_net_file(sources.frame, file, read)) {
    if (!sources.frame.stop_requested_get())
      sources.frame.alarm("File with net was not read!");
    return false;
  }
  sources.frame.local_process_text_set("Wait for net calculations");
  if (!keep_edges)
    read.edges.resize(1);
  std::int32_t n_known = 0;
  for (const node_elng &node : read.nodes)
    n_known += node.is_coor_known ? 1 : 0;
  find_clones(sources, read.nodes, read.edges);
  const auto n_nodes = static_cast<std::int32_t>(read.nodes.size()) - 1;
  all_or_none_have_coordinates = n_known == 0 || n_known == n_nodes;
  contents_set(std::move(read.net_name), std::move(read.nodes), std::move(read.edges), n_known == n_nodes);
  make_cluster_info(sources);
  return true;
}

void class_net_elng::clones_of_library_set(const net_sources &sources) {
  for (std::size_t n = 1; n < nodes_.size(); ++n) {
    nodes_[n].clone_id = nodes_[n].cluster_id = -1;
    nodes_[n].is_marked = false;
    nodes_[n].mark_caption.clear();
  }
  for (std::size_t e = 1; e < edges_.size(); ++e) {
    edges_[e].is_marked = false;
    edges_[e].mark_caption.clear();
  }
  find_clones(sources, nodes_, edges_);
  make_cluster_info(sources);
}

} // namespace orb
