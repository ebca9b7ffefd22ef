// The document of the viewer: a drawable copy of a piece of the net of clones. It knows nothing of pixels.
//
// Nodes and edges have numbers from 1; deletion renumbers. Spans of nodes, edges and clusters are indexed by number, so
// that element 0 is unused and the size is the count plus one. A number that is out of range gives an ok of false, or
// does nothing. What an operation needs beyond the document comes as `net_sources`; results depend on these and on the
// document only. Files: net_file.cpp; making: net_making.cpp; growing: net_elongation.cpp.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "frame/lists.h"
#include "graph/class_net.h"
#include "viewer/net_records.h"
#include "viewer/net_sources.h"

namespace orb {

struct elongation_candidates; // net_elongation.h
struct net_saving;            // net_file.h

// The box of a net, in net coordinates.
struct net_box {
  float x_min = 0, x_max = 0, y_min = 0, y_max = 0;
  float width() const { return x_max - x_min; }
  float height() const { return y_max - y_min; }
  friend bool operator==(const net_box &, const net_box &) = default;
};

// What it takes to draw a node, or the overlay under it.
struct node_drawing {
  clone_number clone_id = -1;
  std::string caption;
  std::int16_t shape = 0, size = 0;
  float x = 0, y = 0;
  colour_value ic = 0, bc = 0;
  bool is_selected = false, node_spare_flag = false, show_caption = false;
};
struct edge_drawing {
  vertex_number from = 0, to = 0;
  double value = 0;
  std::string caption;
  colour_value c = -1;
  std::int16_t width = 1, pattern = 0, edge_spare_flag = 0;
  bool is_arc = false, show_caption = false;
};

// A row of the list of clusters, or of the sorted table, with the colour of its cluster.
struct cluster_line {
  std::string text;
  colour_value color = 0;
  bool is_selected = false;
};

class class_net_elng {
public:
  using edge_filter = std::function<bool(const edge_elng &)>; // empty: all edges pass

  class_net_elng() : net_(std::make_shared<class_net>()) {}
  // Copies are `copy_all_from`, so that memory is used again and nobody copies by accident.
  class_net_elng(const class_net_elng &) = delete;
  class_net_elng &operator=(const class_net_elng &) = delete;
  class_net_elng(class_net_elng &&) = default;
  class_net_elng &operator=(class_net_elng &&) = default;

  // ---- the whole document --------------------------------------------------------------------------------------
  void copy_parameters_from(const class_net_elng &other); // name and box
  // The object `net` is shared.
  void copy_all_from(const class_net_elng &other);
  // Everything is replaced: `nodes` and `edges` from element 1. Lists and box follow; clusters are forgotten
  // until `make_cluster_info`.
  void contents_set(std::string name, std::vector<node_elng> nodes, std::vector<edge_elng> edges, bool coor_are_known);

  const std::string &net_name_get() const { return net_name_; }
  void net_name_set(std::string name) { net_name_ = std::move(name); }
  const net_box &box() const { return box_; }
  std::int32_t n_vertices_get() const { return private_n_vertices_; }
  std::int32_t n_edges_get() const { return n_edges_; } // edges and arcs
  bool coor_are_known_get() const { return coor_are_known_; }
  void coor_are_known_set(bool known) { coor_are_known_ = known; }
  std::int32_t n_clusters_get() const { return n_clusters_; } // -1: there is no table of clusters
  std::span<const node_elng> nodes() const { return nodes_; }
  std::span<const edge_elng> edges() const { return edges_; }
  std::span<const cluster_elng> clusters() const { return clusters_; }
  const number_list &selected() const { return selected_; }
  const number_list &unfrozen() const { return unfrozen_; } // ascending
  class_net &net() { return *net_; }

  // For the layout, which changes places, speeds, forces and `is_coor_known`; nothing else may be changed so.
  std::span<node_elng> nodes_for_layout() { return nodes_; }

  // ---- records -------------------------------------------------------------------------------------------------
  bool node_get(vertex_number n, node_elng &record) const;
  // Selected and frozen state may change so: the lists follow.
  bool node_set(vertex_number n, const node_elng &record);
  bool edge_get(std::int32_t n, edge_elng &record) const;
  bool edge_set(std::int32_t n, const edge_elng &record); // false also for ends that are no nodes
  // False when n is out of range or the node has no place. The caption is the table's, when one is given and loaded.
  bool NodeDraw_get(vertex_number n, node_drawing &drawing, const class_net_elng_clust *table = nullptr) const;
  bool NodeDrawMark_get(vertex_number n, node_drawing &drawing) const; // false also when it isn't marked
  bool EdgeDraw_get(std::int32_t n, edge_drawing &drawing) const;
  // The overlay: `c` is its colour, the caption its text; false when it isn't marked.
  bool EdgeDrawMark_get(std::int32_t n, edge_drawing &drawing) const;
  std::string EdgeCaptionMark_get(std::int32_t n) const;
  bool node_coor_get(vertex_number n, float &x, float &y) const;

  // ---- the selection -------------------------------------------------------------------------------------------
  std::int32_t Get_nOfSelectedNodes() const { return selected_.count(); }
  bool GetNodeBySelectedIndex(std::int32_t i, vertex_number &n) const;
  // False when it was there already, or is no node.
  bool AddSelectedNode(vertex_number n);
  // 0 done, 2 nothing is selected, 3 the node isn't selected.
  int unselect_vertex(vertex_number n);
  void UnselectAll();
  void SelectAll();
  // Strictly inside the rectangle; the number of nodes that weren't selected before.
  std::int32_t select_all_clones_from_rectangle(float x1, float y1, float x2, float y2);
  // -1 when no node lies in the closed square around (x, y). `y_scale`: how many units across one unit down counts for,
  // in a picture that stretches the net.
  vertex_number closest_vertex_from_square_manhettn_distance(float x, float y, float side, float y_scale = 1) const;
  // The connected component of n over all edges, breadth first, n first.
  void make_idNodesLinkedWithNode(vertex_number n, number_list &list) const;
  // One line a selected node, in the order of the selection.
  void textSelectedNodes_get(const net_sources &sources, std::vector<std::string> &lines, bool numbered) const;
  // Adds the nodes that lines of a text name: by caption, clone or part of the caption. Lines that name none go to
  // nodes_not_in_net.txt of the results folder; a message counts them. Cost: lines times nodes.
  void AddToSelectedNodes_list_of_clones_from_text(const net_sources &sources, std::string_view text);
  // The same from a file of names; an empty file is asked for. False when cancelled or unreadable.
  bool AddToSelectedNodes_list_of_clones_from_file(const net_sources &sources, std::filesystem::path file = {});
  // Adds the nodes of clones; asks whether to write the names of the others to clones_not_in_net.txt.
  void AddToSelectedNodes_list_of_clones(const net_sources &sources, const number_list &list);
  // Nodes and clones that are in the net, in the order of the list, and the clones that aren't.
  void FindNodes_list_of_clones(const net_sources &sources, const number_list &list, number_list &nodes_found,
                                number_list &clones_found, number_list &clones_not_found) const;

  // ---- changes of the selected nodes ---------------------------------------------------------------------------
  // A colour that is none of the palette asks whether to take the nearest one; its name is stored in any case.
  void SetColorSelectedNodes(process_frame &frame, colour_value color, bool is_border);
  void SetShapeSelectedNodes(std::int16_t shape);
  void MoveSelectedNodes(float dx, float dy);
  // The neighbourhood follows a motion of the selection, less with each step away from it.
  void MoveLinkedGroups(float dx, float dy, std::int32_t n_ranks);
  void coor_of_selected_RandomChange_get(random_source &chance, float amplitude);
  // Refused when none or all nodes are selected.
  bool DeleteSelectedNodes(const net_sources &sources);
  // The number of edges that went.
  std::int32_t DeleteEdgesBetweenSelectedNodes();
  void Nodes_isShowCaptionWhenAllAreNotShown_AllFalse();
  void Nodes_isShowCaptionWhenAllAreNotShown_SelectedTrue();
  void Edges_isShowCaptionWhenAllAreNotShown_AllFalse();
  void Edges_isShowCaptionWhenAllAreNotShown_SelectedTrue();

  // ---- places --------------------------------------------------------------------------------------------------
  void FrozeAllNodes();
  void SelectedNodesCoorFroze();
  void SelectedNodesCoorUnFroze();
  void coorLimitsUpdate();
  void CheckIsToRotate();
  void RotateNodes(const number_list &list, float cx, float cy, float degrees, float sx, float sy);
  void Rotate(float cx, float cy, float degrees, float sx, float sy);
  void resize_real(float ratio);
  // The mean of the selected nodes, or the middle of the box; and how far it is from the four sides of the box.
  void coor_of_selected_center_get(float &x, float &y) const;
  void getDeltaXY(float &left, float &right, float &up, float &down) const;

  // ---- clusters ------------------------------------------------------------------------------------------------
  // From the loaded table, or from the registry; without both the number of clusters is -1.
  void make_cluster_info(const net_sources &sources);
  // After a table was loaded: nodes take the looks of its clusters, and the rows follow.
  void cluster_looks_from_table(const net_sources &sources);
  // Number, name, clones and shown, separated by tabs, in the order of `clusters`.
  void textClusters_get(std::vector<cluster_line> &lines) const;
  // The same sorted by name in columns of blanks; `sorted_row` is set.
  void textClustersSort_get(std::string &heading, std::vector<cluster_line> &lines);
  std::int32_t ClusterNumberInNetNonSorted(std::int32_t row) const; // -1: none
  std::int32_t ClusterNumberInNetSorted(std::int32_t i) const;      // -1: none
  std::int32_t Get_ClusterIdByNodeId(vertex_number n) const;        // place in `clusters`; 0: none
  bool cluster_is_selected(std::int32_t i) const;
  void AddToSelectedAllClonesOfCluster(std::int32_t i);
  // Selects the cluster of a node, or with `toggle` takes it out when it was selected. False: the node has none.
  bool AddToSelectedAllClonesOfClusterContainingNode(vertex_number n, bool toggle, bool &now_selected);
  void make_SelectedClusters();

  // ---- files (net_file.cpp) ------------------------------------------------------------------------------------
  // Messages name the line; the document stays as it was when the file can't be taken. No such file: false without a
  // word. `keep_edges` false leaves the edges out. The loaded table of clusters is dropped in any case.
  bool ReadNetFile(const net_sources &sources, const std::filesystem::path &file, bool keep_edges,
                   bool &all_or_none_have_coordinates);
  // Another library is loaded, or net and contigs of it are other ones: which clones the nodes are, by their captions,
  // their clusters, and what the net knows of them.
  void clones_of_library_set(const net_sources &sources);
  // False when nothing was written. Throws file_error.
  bool SaveNet(process_frame &frame, const std::filesystem::path &file, const net_saving &wanted) const;
  // The nodes with a place that a filter lets pass as a net, and their captions by vertex (element 0 unused).
  void SaveNet__visible(const std::function<bool(const node_elng &)> &node_is_shown, const edge_filter &edge_is_shown,
                        class_net &net, std::vector<std::string> &names) const;

  // ---- making (net_making.cpp) ---------------------------------------------------------------------------------
  // ok: the net has one component. It is made and false all the same when it has several; without clones, or when the
  // user cancelled, the document stays as it was.
  void make_net_for_clones_from_text(const net_sources &sources, std::string_view text, double cutoff, bool use_net,
                                     bool &ok);
  void read_list_of_clones_and_make_net(const net_sources &sources, double cutoff, bool use_net, bool &ok,
                                        std::filesystem::path file = {});
  void make_net_for_list_of_clones(const net_sources &sources, const number_list &list, double cutoff, bool use_net,
                                   bool &ok, const std::string &default_name = "cl_");
  void make_net_for_list_of_clones_run(const net_sources &sources, const number_list &list, double cutoff, bool use_net,
                                       const std::string &caption, bool &ok);
  void make_net() {}

  // ---- growing (net_elongation.cpp) ----------------------------------------------------------------------------
  // The first step: who could be added, by rank. False after a stop request; there are no candidates then.
  bool text_rank(const net_sources &sources, double cutoff, bool use_net, elongation_candidates &candidates,
                 std::int32_t &n_small_ranks, std::string &text) const;
  // The second step: adds the candidates up to a rank. The candidates are used up.
  void elongate(const net_sources &sources, double cutoff, bool use_net, rank_number rank,
                elongation_candidates &candidates, std::int32_t &n_added);
  // The clones of the clusters of selected nodes.
  void fill_clusters(const net_sources &sources, double cutoff, bool use_net, std::int32_t &n_added);
  // ok false: a pair to be looked at has a node without a clone; nothing is added then, nor after a stop request.
  void add_edges_between_selected_clones(const net_sources &sources, double cutoff, bool use_net, bool &ok,
                                         std::int32_t &n_added);

private:
  bool is_node(vertex_number n) const { return n >= 1 && n <= private_n_vertices_; }
  bool is_edge(std::int32_t e) const { return e >= 1 && e <= n_edges_; }
  bool edge_is_between_selected(const edge_elng &edge) const;
  void lists_make(); // `selected` and `unfrozen` from the nodes, then the flags of clusters
  void unfrozen_make();
  void clusters_from_registry(const net_sources &sources);
  void clusters_from_table(const net_sources &sources);
  std::int32_t cluster_of_id(std::int32_t id) const; // place in `clusters`; 0: none
  bool select_nodes_of_line(const net_sources &sources, const std::string &line, bool &show_parts);
  std::int32_t add_clones(const net_sources &sources, std::span<const clone_number> clones, double cutoff,
                          bool use_net);

  std::string net_name_;
  net_box box_;
  std::int32_t private_n_vertices_ = 0;
  bool coor_are_known_ = true;
  std::int32_t n_edges_ = 0;
  std::shared_ptr<class_net> net_; // for checks of connectivity
  std::int32_t n_clusters_ = -1;
  std::vector<node_elng> nodes_{1}; // from 1
  number_list selected_, unfrozen_;
  std::vector<edge_elng> edges_{1};       // from 1
  std::vector<cluster_elng> clusters_{1}; // from 1
};

} // namespace orb
