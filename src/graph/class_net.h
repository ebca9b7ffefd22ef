// The one graph structure: for every vertex a contiguous run of directed edge records in one flat array. An undirected
// overlap is stored twice. Built once by a sequential protocol, then read or copied with something left out.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "frame/lists.h"
#include "frame/process_frame.h"

namespace orb {

struct net_vertex {
  edge_adress adress_of_first_edge = 0; // 1-based place in the edge array
  std::int16_t index = 0;               // a free mark
};

struct net_edge {
  vertex_number neighbour = 0;
  std::int16_t index1 = 0; // a free mark
  std::int16_t index2 = 0; // burial code: 0 none, 1 own vertex in the neighbour, 2 the neighbour in it, 3 both
  double value = 0;        // score of the overlap, more is stronger
};

// The burial code as seen from the other end.
constexpr std::int16_t burial_code_mirrored(std::int16_t code) {
  return code == 1 ? std::int16_t{2} : code == 2 ? std::int16_t{1} : code;
}

// Scratch tables for walks over small parts of a large net; made once, lent to each call, one call at a time.
struct net_workspace {
  position_table position; // vertex -> position in a list
  position_table rank;     // vertex -> rank
  std::vector<vertex_number> wave, next_wave;
  std::vector<std::int32_t> label;
};

class component_lists;

class class_net {
public:
  // Building: inicializate_net once; for v = 1..n add_vertex_fast, then that vertex's add_edge_fast calls; then
  // finish_of_adding once.
  std::int32_t max_n_edges_for_n_of_vertices(std::int32_t n, std::int32_t n_max_per_vertex) const;
  // Room for `n_edges_max` records is an estimate: it is taken as records come.
  void inicializate_net(std::int32_t n_vertices, std::int64_t n_edges_max);
  void add_vertex_fast(std::int16_t index);
  // The record belongs to the vertex added last, whatever `vertex` says. A net holds 2^31 - 2 records; more of them end
  // in std::length_error, whose text is for the user.
  void add_edge_fast(vertex_number vertex, vertex_number neighbour, double value, std::int16_t index1,
                     std::int16_t index2);
  void finish_of_adding();
  // Before adding, where the number of records to come is no estimate but counted: memory is taken once.
  void reserve_edges(std::int64_t n_edges) { edges_.reserve(static_cast<std::size_t>(n_edges) + 1); }
  // In place of the protocol where runs fill side by side: `degree` by vertex, element 0 unused; each record is then
  // put to its place, which is its own to find (adress_of_first_edge_get).
  void inicializate_net_of_degrees(std::span<const std::int32_t> degree);
  void place_edge(edge_adress e, const net_edge &edge) { edges_[static_cast<std::size_t>(e)] = edge; }

  // Leaves records out where they stand, so that a large net isn't held twice: those for which `is_kept` answers false;
  // it may change the others' value and codes.
  void keep_edges(const std::function<bool(vertex_number, net_edge &)> &is_kept);
  // The same for records named by ascending places; what was taken can be put back as long as nothing else was changed
  // but marks of vertices, which become what they were.
  struct edges_taken {
    std::vector<edge_adress> places;
    std::vector<net_edge> edges;
    std::vector<net_vertex> vertices;
  };
  edges_taken take_out_edges(std::vector<edge_adress> places);
  void put_back_edges(edges_taken taken);

  std::int32_t number_of_vertices_get() const { return private_n_vertices_; }
  std::int32_t number_of_edges_get() const { return private_n_edges_; } // directed records
  std::int32_t number_of_edges_for_vertex_total_get(vertex_number v) const {
    return vertices_[static_cast<std::size_t>(v) + 1].adress_of_first_edge -
           vertices_[static_cast<std::size_t>(v)].adress_of_first_edge;
  }
  std::int16_t index_of_vertex_get(vertex_number v) const { return vertices_[static_cast<std::size_t>(v)].index; }
  const std::string &title_of_net_get() const { return title_of_net_; }
  void title_of_net_set(std::string title) { title_of_net_ = std::move(title); }
  const std::string &FullFileNameGet() const { return FullFileName_; }
  void FullFileNameSet(std::string name) { FullFileName_ = std::move(name); }
  void change_edge_index(edge_adress e, std::int16_t value) { edges_[static_cast<std::size_t>(e)].index1 = value; }
  void change_vertex_index(vertex_number v, std::int16_t value) {
    vertices_[static_cast<std::size_t>(v)].index = value;
  }
  bool neighbours_are_sorted_get() const { return neighbours_are_sorted_; }
  // True unless a run has a record whose neighbour exceeds the next one's; stores the answer.
  bool test_neighbours_sorted();

  // The run of a vertex, in run order: the plain way to walk it.
  std::span<const net_edge> edges_of_vertex(vertex_number v) const {
    const net_vertex &at = vertices_[static_cast<std::size_t>(v)];
    return {edges_.data() + at.adress_of_first_edge, static_cast<std::size_t>(number_of_edges_for_vertex_total_get(v))};
  }
  edge_adress adress_of_first_edge_get(vertex_number v) const {
    return vertices_[static_cast<std::size_t>(v)].adress_of_first_edge;
  }
  // The k-th record of v's run, from 1. Beyond the run: a message, and the last record of the run is read.
  void edge_of_vertex(process_frame &frame, vertex_number v, std::int32_t k, vertex_number &neighbour, double &value,
                      std::int16_t &index1, std::int16_t &index2) const;
  // Looks for the pair in the shorter run (ties: b's).
  void edge_is_exist(vertex_number a, vertex_number b, vertex_number &from, vertex_number &to, std::int32_t &k,
                     bool &swapped, bool &exists) const;
  void edge_is_exist_slow(vertex_number a, vertex_number b, std::int32_t &k, edge_adress &e, bool &exists) const;
  // The one lookup of a pair: value and marks as seen from a (burial code mirrored when found in b's run).
  bool overlap_of_pair(vertex_number a, vertex_number b, double &value, std::int16_t &index1,
                       std::int16_t &index2) const;
  // Both assume ascending runs.
  void edge_is_side_of_treangle(vertex_number v, std::int32_t k, bool &yes) const;
  void n_vertices_connecting_vertices(vertex_number a, vertex_number b, std::int32_t &count) const;
  double minimal_edge_value_get() const;
  void number_of_vertices_with_index_get(std::int16_t index, std::int32_t &n) const;
  void my_parsing_of_net() {}
  void max_val_edge_two_list_of_vertices() {}

  // Copies and subnets.
  void create_net_copy(class_net &net) const;
  // The subnet's vertices are the positions in the list sorted ascending; `paired_array` (may be null) moves along with
  // the sort. Costs no more than the list's own records.
  void create_sub_net(number_list &list, std::int32_t n, bool list_is_sorted, number_list *paired_array, class_net &net,
                      net_workspace &workspace) const;
  void create_sub_net_without_edges_index(std::int16_t index, class_net &net) const;
  void create_sub_net_without_edges_small_or_large_value(double threshold, class_net &net, bool remove_small) const;
  void create_sub_net_with_disconnected_vertices_index(std::int16_t index, class_net &net) const;
  // New undirected edges as three parallel lists (first ends, second ends, values; element 0 of the first two = count).
  void create_net_with_disconnected_and_changed_part(process_frame &frame, const number_list &list,
                                                     const number_list &first_ends, const number_list &second_ends,
                                                     const std::vector<double> &values, class_net &net) const;
  void create_sub_net_list_into_one_vertex_prestart(const number_list &list, number_list &new_number,
                                                    std::int32_t &n_new) const;
  void create_sub_net_list_into_one_vertex(const number_list &list, number_list &new_number, bool prestart_done,
                                           class_net &net) const;
  void create_factor_net(const number_list &class_number, std::int32_t n_classes, class_net &net) const;
  // Between the class numbers of elements and the list of elements class by class (class c: list_of_elements at
  // adress_of_start(c) .. adress_of_start(c + 1) - 1). A broken partition ends the program.
  static void class_number_and_lists(process_frame &frame, number_list &class_number, std::int32_t &n_of_classes,
                                     std::int32_t n_of_elements, number_list &list_of_elements,
                                     number_list &adress_of_start, bool from_class_numbers);
  void save_net_into_arrayes(std::vector<vertex_number> &neighbours, std::vector<edge_adress> &adress_of_start,
                             bool both_directions) const;
  // Connected components, numbered by their smallest vertex: class numbers 1..n and their count.
  void clustering_based_on_net(number_list &class_number, std::int32_t &n_classes) const;

  // Walks. Modes: 0 unreached vertices keep rank 0; 1 and 2 they have -1; 2 walks without limit.
  // n_rank: limit of steps, in mode 2 the largest rank found; n_in_rank(0..n_rank) the number of vertices of each rank
  // (up to 1000 ranks beyond the number of vertices are held). reached_list is ascending.
  void calculate_ranks_of_vertices(const number_list &start_list, number_list &ranks, int mode, bool use_cutoff,
                                   double cutoff, std::int32_t &n_rank, number_list &reached_list,
                                   std::vector<std::int32_t> &n_in_rank, bool &connected) const;
  // Component count of what lies within n_rank steps of v, without v. n_in_rank(0..n_rank). Local: costs the ball only,
  // and with `components` of this net no more than twice the rest of v's component, which is less in a heap.
  void vertex_net_characteristics(vertex_number v, bool use_cutoff, double cutoff, std::vector<std::int32_t> &n_in_rank,
                                  std::int32_t &n_clusters, std::int32_t n_rank, net_workspace &workspace,
                                  const component_lists *components = nullptr) const;
  // Component count of what lies within n_rank steps of v and its k-th neighbour, without their edge. Every record must
  // have its mirror.
  void edge_net_characteristic(vertex_number v, std::int32_t k, std::int32_t &n_clusters, std::int32_t n_rank,
                               net_workspace &workspace) const;
  // `end_width` is filled for candidates; the others stay 0. Polls the stop flag; what a stopped search gives is no
  // result.
  void calculate_net_diam_and_width_FindBestStartOfDiamPath_new(process_frame &frame, bool &connected,
                                                                std::int32_t &radius, std::int32_t &diameter,
                                                                vertex_number &start, bool use_end_width,
                                                                number_list &end_width) const;
  void calculate_net_diam_and_width_FindBestStartOfDiamPath(process_frame &frame, bool &connected, std::int32_t &radius,
                                                            std::int32_t &diameter, vertex_number &start,
                                                            bool use_end_width, number_list &end_width) const;
  void create_one_of_diam_path(process_frame &frame, vertex_number start, const number_list &weights, number_list &path,
                               number_list &ranks) const;
  // width -1: not connected (then diameter 0 and the path holds vertex 1 only).
  void calculate_net_diam_and_width(process_frame &frame, bool use_end_width, std::int32_t &radius,
                                    std::int32_t &diameter, number_list &path, std::int32_t &width,
                                    number_list &far_vertices, number_list &ranks_from_path,
                                    number_list &ranks_from_start) const;
  void find_path_maximally_using_vertices_from_list(process_frame &frame, double cutoff, vertex_number &start,
                                                    vertex_number &end, const number_list &list, number_list &path,
                                                    bool show_message) const;
  void find_and_unite_liniar_parts_of_net(process_frame &frame, number_list &class_number, std::int32_t &n_classes,
                                          number_list &degree) const;
  void next_in_liniar_part(process_frame &frame, vertex_number vertex_testing, vertex_number vertex_input,
                           vertex_number &next, bool &is_link) const;

  // Files; see net_files.cpp. An empty name means net.ORBns in the working folder.
  // False, and no file, after a stop request.
  bool save_net_type(process_frame &frame, std::filesystem::path file) const;
  // A negative expected number accepts any. Refused (ok false, this net untouched): another number of vertices, a file
  // that is short, long or damaged; messages say why and at which byte.
  void read_net_type(process_frame &frame, const std::filesystem::path &file, bool &ok,
                     std::int32_t n_vertices_expected);
  // `names` by vertex, element 0 unused.
  void save_net_in_text(const std::vector<std::string> &names, const std::filesystem::path &file) const;

private:
  std::int32_t private_n_vertices_ = 0;
  std::int32_t private_n_edges_ = 0;
  std::string title_of_net_, FullFileName_;
  std::vector<net_vertex> vertices_; // 1..n+1, element 0 unused
  std::vector<net_edge> edges_;      // 1..n_edges, element 0 unused
  mutable double minimal_edge_value_ = 0;
  mutable bool minimal_edge_value_known_ = false;
  bool neighbours_are_sorted_ = false;
};

} // namespace orb
