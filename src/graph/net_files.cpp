// The native file of a net (.ORBns: little-endian, no head, no padding) and its diagnostic text.
#include <algorithm>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <numeric>

#include "frame/failures.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "graph/class_net.h"

namespace orb {

namespace {

constexpr std::int64_t head_size = 8, vertex_size = 6, edge_size = 16; // bytes on file
constexpr std::int64_t edges_between_polls = 10000;

// Little-endian whatever the machine.
template <class unsigned_number> void put(std::string &bytes, unsigned_number number) {
  for (std::size_t i = 0; i < sizeof(number); ++i)
    bytes += static_cast<char>(number >> (8 * i) & 0xff);
}

template <class unsigned_number> unsigned_number get(const char *bytes) {
  unsigned_number number = 0;
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(&number, bytes, sizeof(number));
  } else {
    for (std::size_t i = 0; i < sizeof(number); ++i)
      number |=
          static_cast<unsigned_number>(static_cast<unsigned_number>(static_cast<unsigned char>(bytes[i])) << (8 * i));
  }
  return number;
}

std::int32_t get_32(const char *bytes) {
  return static_cast<std::int32_t>(get<std::uint32_t>(bytes));
}
std::int16_t get_16(const char *bytes) {
  return static_cast<std::int16_t>(get<std::uint16_t>(bytes));
}

void put_edge(std::string &bytes, const net_edge &edge) {
  char record[edge_size];
  const auto neighbour = static_cast<std::uint32_t>(edge.neighbour);
  const auto value = std::bit_cast<std::uint64_t>(edge.value);
  const auto index1 = static_cast<std::uint16_t>(edge.index1), index2 = static_cast<std::uint16_t>(edge.index2);
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(record, &neighbour, 4);
    std::memcpy(record + 4, &value, 8);
    std::memcpy(record + 12, &index1, 2);
    std::memcpy(record + 14, &index2, 2);
    bytes.append(record, edge_size);
  } else {
    put(bytes, neighbour);
    put(bytes, value);
    put(bytes, index1);
    put(bytes, index2);
  }
}

std::string progress(std::int64_t e, std::int64_t n_edges) {
  const double percent = n_edges > 0 ? 100.0 * static_cast<double>(e) / static_cast<double>(n_edges) : 100.0;
  return "Read " + std::to_string(e) + " of " + std::to_string(n_edges) + " (" + number_text(percent, 2) + "%)";
}

// Reads a native net into vectors of its own, so that a refused file leaves nothing behind.
class native_net_reader {
public:
  native_net_reader(process_frame &frame, const std::filesystem::path &path) : frame_(frame), path_(path) {
    errno = 0;
    file_.reset(std::fopen(path.c_str(), "rb"));
    if (!file_)
      throw file_error("can't open", path, std::strerror(errno));
    std::error_code failed;
    const auto bytes = std::filesystem::file_size(path, failed);
    if (failed)
      throw file_error("can't read", path, failed.message());
    size_ = static_cast<std::int64_t>(bytes);
  }

  // Each answers whether the reading may go on; a refusal was shown then.
  bool read_head(std::int32_t expected);
  bool read_vertices(std::vector<net_vertex> &vertices);
  bool read_edges(const std::vector<net_vertex> &vertices, std::vector<net_edge> &edges);
  // Each overlap stands once at both ends, with the same score. The burial codes aren't always mirrors of each other:
  // those of clones whose versions were united.
  bool check_both_ends(const std::vector<net_vertex> &vertices, const std::vector<net_edge> &edges);
  std::int32_t n_vertices() const { return n_vertices_; }
  std::int32_t n_edges() const { return n_edges_; }

private:
  bool refuse(const std::string &why);
  bool refuse_at(std::int64_t offset, const std::string &why) {
    return refuse(why + " (byte offset " + std::to_string(offset) + ")");
  }
  void report_wrong_net_size(std::int32_t expected);
  void read_bytes(char *bytes, std::size_t n);
  bool size_fits();
  bool refuse_edge(edge_adress e, vertex_number own, const net_edge &edge);
  bool refuse_pair(edge_adress e, vertex_number v, vertex_number w, const std::string &why) {
    return refuse_at(offset_of_edge(e),
                     "the overlap of vertex " + std::to_string(v) + " with vertex " + std::to_string(w) + " " + why);
  }
  std::int64_t offset_of_edge(std::int64_t e) const {
    return head_size + vertex_size * (std::int64_t{n_vertices_} + 1) + edge_size * (e - 1);
  }

  struct closer {
    void operator()(std::FILE *file) const { std::fclose(file); }
  };
  process_frame &frame_;
  const std::filesystem::path &path_;
  std::unique_ptr<std::FILE, closer> file_;
  std::int64_t size_ = 0; // of the file
  std::int32_t n_vertices_ = 0, n_edges_ = 0;
  std::vector<char> block_;
};

bool native_net_reader::refuse(const std::string &why) {
  frame_.message("File " + path_.string() + " is no net of significant overlaps, or it is damaged: " + why +
                 ".\r\nNet of significant overlaps was not loaded.");
  return false;
}

void native_net_reader::report_wrong_net_size(std::int32_t expected) {
  const std::string first = "Problem with file " + path_.string() + "! ";
  // The second middle is for two equal numbers, which this reader never has to report.
  const std::string middle =
      expected != n_vertices_ ? "\r\nThe number of clones in net significant overlaps file\r\n is not the same as in "
                                "database: \r\nnv_expected=" +
                                    std::to_string(expected) + " <> nv=" + std::to_string(n_vertices_) + "."
                              : std::string("\r\nNumber of net significant overlaps has to be positive.");
  frame_.message(first + middle + "\r\nNet of significant overlaps was not loaded.");
  frame_.log_line(first + middle);
}

void native_net_reader::read_bytes(char *bytes, std::size_t n) {
  errno = 0;
  if (std::fread(bytes, 1, n, file_.get()) != n)
    throw file_error("can't read", path_, errno != 0 ? std::strerror(errno) : "the file ended while it was read");
}

bool native_net_reader::size_fits() {
  const std::int64_t expected =
      head_size + vertex_size * (std::int64_t{n_vertices_} + 1) + edge_size * std::int64_t{n_edges_};
  if (size_ == expected)
    return true;
  return refuse("its head tells of " + std::to_string(n_vertices_) + " vertices and " + std::to_string(n_edges_) +
                " records, which take " + std::to_string(expected) + " bytes, but the file has " +
                std::to_string(size_));
}

bool native_net_reader::read_head(std::int32_t expected) {
  if (size_ < head_size)
    return refuse("it has " + std::to_string(size_) + " bytes, less than a head of 8");
  char head[head_size];
  read_bytes(head, head_size);
  n_vertices_ = get_32(head);
  n_edges_ = get_32(head + 4);
  if (expected >= 0 && n_vertices_ != expected) {
    report_wrong_net_size(expected);
    return false;
  }
  if (n_vertices_ < 0)
    return refuse_at(0, "its number of vertices is " + std::to_string(n_vertices_));
  if (n_edges_ < 0)
    return refuse_at(4, "its number of records is " + std::to_string(n_edges_));
  return size_fits();
}

bool native_net_reader::read_vertices(std::vector<net_vertex> &vertices) {
  const auto n_records = static_cast<std::size_t>(n_vertices_) + 1;
  block_.resize(n_records * vertex_size);
  read_bytes(block_.data(), block_.size());
  vertices.resize(n_records + 1);
  std::int32_t before = 1;
  for (std::size_t v = 1; v <= n_records; ++v) {
    const char *record = block_.data() + (v - 1) * vertex_size;
    const std::int32_t adress = get_32(record);
    const std::int64_t offset = head_size + static_cast<std::int64_t>(v - 1) * vertex_size;
    const std::string found = "the address of vertex " + std::to_string(v) + " is " + std::to_string(adress);
    if (v == 1 && adress != 1)
      return refuse_at(offset, found + " and not 1");
    if (adress < before)
      return refuse_at(offset, found + ", below the one before it");
    if (v == n_records && adress != n_edges_ + 1)
      return refuse_at(offset, "the last address is " + std::to_string(adress) + " and not " +
                                   std::to_string(std::int64_t{n_edges_} + 1));
    before = adress;
    vertices[v] = {adress, get_16(record + 4)};
    if (vertices[v].index > 0 || (v == n_records && vertices[v].index != 0)) // 0, or below it a kind of Q-clone
      return refuse_at(offset + 4,
                       "the mark of vertex " + std::to_string(v) + " is " + std::to_string(vertices[v].index));
  }
  return true;
}

bool native_net_reader::refuse_edge(edge_adress e, vertex_number own, const net_edge &edge) {
  const std::int64_t offset = offset_of_edge(e);
  const std::string place = "record " + std::to_string(e) + " of vertex " + std::to_string(own);
  if (edge.neighbour < 1 || edge.neighbour > n_vertices_)
    return refuse_at(offset, place + " leads to vertex " + std::to_string(edge.neighbour));
  if (edge.neighbour == own)
    return refuse_at(offset, place + " leads to that vertex itself");
  if (!std::isfinite(edge.value))
    return refuse_at(offset + 4, place + " has a value that is no number");
  if (edge.value < 0)
    return refuse_at(offset + 4, place + " has a value below 0");
  return refuse_at(offset + 14, place + " has the burial code " + std::to_string(edge.index2));
}

bool native_net_reader::read_edges(const std::vector<net_vertex> &vertices, std::vector<net_edge> &edges) {
  edges.resize(static_cast<std::size_t>(n_edges_) + 1);
  block_.resize(edges_between_polls * edge_size);
  vertex_number own = 1;
  for (std::int64_t first = 1; first <= n_edges_; first += edges_between_polls) {
    if (frame_.stop_requested_get())
      return false;
    frame_.progress(first - 1, n_edges_);
    frame_.local_process_text_set(progress(first - 1, n_edges_));
    const std::int64_t end = std::min<std::int64_t>(first + edges_between_polls, std::int64_t{n_edges_} + 1);
    read_bytes(block_.data(), static_cast<std::size_t>((end - first) * edge_size));
    for (std::int64_t e = first; e < end; ++e) {
      const char *record = block_.data() + (e - first) * edge_size;
      const net_edge edge{get_32(record), get_16(record + 12), get_16(record + 14),
                          std::bit_cast<double>(get<std::uint64_t>(record + 4))};
      while (vertices[static_cast<std::size_t>(own) + 1].adress_of_first_edge <= e)
        ++own;
      const bool possible = edge.neighbour >= 1 && edge.neighbour <= n_vertices_ && edge.neighbour != own &&
                            std::isfinite(edge.value) && edge.value >= 0 && edge.index2 >= 0 && edge.index2 <= 3;
      if (!possible)
        return refuse_edge(static_cast<edge_adress>(e), own, edge);
      edges[static_cast<std::size_t>(e)] = edge;
    }
  }
  return true;
}

// Places in the edge array so that each run is ascending by neighbour; empty where the records stand so already.
std::vector<edge_adress> ascending_places(const std::vector<net_vertex> &vertices, const std::vector<net_edge> &edges) {
  const auto below = [&](edge_adress a, edge_adress b) {
    return edges[static_cast<std::size_t>(a)].neighbour < edges[static_cast<std::size_t>(b)].neighbour;
  };
  std::vector<edge_adress> places;
  for (std::size_t v = 1; v + 1 < vertices.size(); ++v) {
    const edge_adress begin = vertices[v].adress_of_first_edge, end = vertices[v + 1].adress_of_first_edge;
    bool ascending = true;
    for (edge_adress e = begin + 1; e < end; ++e)
      ascending = ascending && !below(e, e - 1);
    if (ascending)
      continue;
    if (places.empty()) {
      places.resize(edges.size());
      std::iota(places.begin(), places.end(), 0);
    }
    std::sort(places.begin() + begin, places.begin() + end, below);
  }
  return places;
}

// Seen from the vertices in their order, the mirrors in the run of any vertex come in the order of its neighbours: one
// pass, with a place in each run that only goes on.
bool native_net_reader::check_both_ends(const std::vector<net_vertex> &vertices, const std::vector<net_edge> &edges) {
  const std::vector<edge_adress> places = ascending_places(vertices, edges);
  const auto place = [&](edge_adress k) { return places.empty() ? k : places[static_cast<std::size_t>(k)]; };
  const auto edge_at = [&](edge_adress k) -> const net_edge & { return edges[static_cast<std::size_t>(place(k))]; };
  const auto begin_of = [&](vertex_number v) { return vertices[static_cast<std::size_t>(v)].adress_of_first_edge; };
  std::vector<edge_adress> next(vertices.size());
  for (vertex_number v = 1; v <= n_vertices_; ++v)
    next[static_cast<std::size_t>(v)] = begin_of(v);
  std::int64_t polled_at = 0;
  for (vertex_number v = 1; v <= n_vertices_; ++v) {
    if (begin_of(v) - polled_at > edges_between_polls) {
      polled_at = begin_of(v);
      if (!frame_.goes_on())
        return false;
    }
    for (edge_adress k = begin_of(v); k < begin_of(v + 1); ++k) {
      const net_edge &edge = edge_at(k);
      if (k > begin_of(v) && edge_at(k - 1).neighbour == edge.neighbour)
        return refuse_pair(place(k), v, edge.neighbour, "stands there twice");
      const edge_adress m = next[static_cast<std::size_t>(edge.neighbour)]++;
      if (m >= begin_of(edge.neighbour + 1) || edge_at(m).neighbour > v)
        return refuse_pair(place(k), v, edge.neighbour, "doesn't stand at its other end");
      if (edge_at(m).neighbour < v)
        return refuse_pair(place(m), edge.neighbour, edge_at(m).neighbour, "doesn't stand at its other end");
      if (edge_at(m).value != edge.value)
        return refuse_pair(place(k), v, edge.neighbour, "has another score at its other end");
    }
  }
  return true;
}

} // namespace

bool class_net::save_net_type(process_frame &frame, std::filesystem::path file) const {
  frame.local_process_text_set("Saving net in ORB format...");
  if (file.empty())
    file = frame.path_in_working_folder("\\net.ORBns");
  constexpr std::size_t bytes_between_polls = 1 << 18;
  result_file out(file);
  std::string bytes;
  put(bytes, static_cast<std::uint32_t>(private_n_vertices_));
  put(bytes, static_cast<std::uint32_t>(private_n_edges_));
  const auto write_when_large = [&](std::size_t large) {
    if (bytes.size() < large)
      return true;
    out.write(bytes);
    bytes.clear();
    return frame.goes_on();
  };
  for (vertex_number v = 1; v <= private_n_vertices_; ++v) {
    const net_vertex &vertex = vertices_[static_cast<std::size_t>(v)];
    put(bytes, static_cast<std::uint32_t>(vertex.adress_of_first_edge));
    put(bytes, static_cast<std::uint16_t>(vertex.index));
    if (!write_when_large(bytes_between_polls))
      return false;
  }
  put(bytes, static_cast<std::uint32_t>(private_n_edges_ + 1)); // the sentinel
  put(bytes, std::uint16_t{0});
  for (std::int32_t e = 1; e <= private_n_edges_; ++e) {
    put_edge(bytes, edges_[static_cast<std::size_t>(e)]);
    if (!write_when_large(bytes_between_polls))
      return false;
  }
  out.write(bytes);
  out.commit();
  frame.log_line("File " + file.string() + " ...Saved.");
  return true;
}

void class_net::read_net_type(process_frame &frame, const std::filesystem::path &file, bool &ok,
                              std::int32_t n_vertices_expected) {
  ok = false;
  frame.local_process_text_set("Read net significant file...");
  frame.log_line("Read net significant file '" + file.string() + "'");
  frame.step_text_set("Read " + file.string());
  native_net_reader reader(frame, file);
  class_net read;
  if (!reader.read_head(n_vertices_expected) || !reader.read_vertices(read.vertices_) ||
      !reader.read_edges(read.vertices_, read.edges_) || !reader.check_both_ends(read.vertices_, read.edges_)) {
    if (!frame.stop_requested_get())
      frame.data_failed_set();
    frame.log_line(" ...Failed");
    return;
  }
  ok = true;
  read.private_n_vertices_ = reader.n_vertices();
  read.private_n_edges_ = reader.n_edges();
  read.title_of_net_ = file.stem().string();
  read.FullFileName_ = file.string();
  frame.local_process_text_set(progress(reader.n_edges(), reader.n_edges()));
  read.test_neighbours_sorted();
  *this = std::move(read);
  frame.log_line(" ...Done");
}

void class_net::save_net_in_text(const std::vector<std::string> &names, const std::filesystem::path &file) const {
  result_file out(file);
  const auto name = [&names](vertex_number v) {
    return static_cast<std::size_t>(v) < names.size() ? names[static_cast<std::size_t>(v)] : std::string();
  };
  const auto tabbed = [](std::initializer_list<std::string> fields) {
    std::string line;
    for (const std::string &field : fields)
      line += (line.empty() ? "" : "\t") + field;
    return line;
  };
  out.line(title_of_net_);
  out.line(tabbed({"n_vereces", std::to_string(private_n_vertices_)}));
  out.line(tabbed({"n_edges", std::to_string(private_n_edges_)}));
  for (vertex_number v = 1; v <= private_n_vertices_; ++v) {
    out.line("");
    out.line(tabbed({std::to_string(v), name(v), std::to_string(index_of_vertex_get(v)),
                     std::to_string(number_of_edges_for_vertex_total_get(v))}));
    std::int32_t k = 0;
    for (const net_edge &edge : edges_of_vertex(v)) {
      const vertex_number j = edge.neighbour;
      ++k;
      out.line(
          tabbed({std::to_string(k), std::to_string(adress_of_first_edge_get(v) + k - 1), std::to_string(j), name(j),
                  std::to_string(index_of_vertex_get(j)), std::to_string(number_of_edges_for_vertex_total_get(j)),
                  number_text(edge.value, 2), std::to_string(edge.index1), std::to_string(edge.index2)}));
    }
  }
  out.commit();
}

} // namespace orb
