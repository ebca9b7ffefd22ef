// Draws the net of a list of clones into files: overlaps of all pairs, captions, colours, marks of lists, one file or a
// series of files at rising cutoffs.
//
// Work with one object: start_nets_of_clones_draw, captions, any number of marks, print_files_for_drawing_net; or one
// of the quick runs, which do all of it. Nothing is shown but the messages named below, so that a run may draw each of
// its contigs; lists of 500 and more clones whose pairs are computed show a status and follow the stop flag. One thread
// at a time. Files that can't be written throw file_error; a file is there whole or not at all.
//
// Cost: with a loaded net in use, the overlap records of the list's clones; without it, all pairs of the list.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "drawing/class_net_draw.h"
#include "drawing/graphml_writer.h"
#include "frame/lists.h"
#include "net/class_clone_net_signif.h"

namespace orb {

// The control panel of drawings.
struct drawing_options {
  bool caption_name = true;      // "clone name"
  bool caption_number = false;   // "local clone number": marks add their number
  bool caption_n_bands = true;   // "#bands in clone"
  bool mark_buried = true;       // "Mark buried clones": a white border
  bool mark_relations = false;   // "Mark relations": arcs from the buried clone to the other
  bool nets_for_cutoffs = false; // "Net structure visualization ": a series of 11 files
  bool cutoff_by_color = true;   // "Cutoff by color"; off: all edges are black
  bool caption_cutoff = true;    // "Cutoff by caption"; off: edges have no label
  bool mark_MTP = false;         // "Mark list of clones"
  bool mark_two_lists = false;   // "Mark two lists"

  bool write_pajek = true;
  bool write_graphml = false; // the same drawings beside, as .graphml
  // Empty: the standard names in the folder of the drawing. Otherwise the file to write, to the letter when there is
  // one form only; with both forms each has its own extension. With all metrics their names, and in a series the
  // thresholds, are put in before the extension.
  std::filesystem::path file;
};

// What decides the edges.
enum class drawing_kind : std::int16_t {
  overlaps = 0,    // the significant pairs by the metric in use
  two_metrics = 1, // TagsSulston at cutoff 6 beside Sulston_1988 at cutoff 20
  diagonals = 2    // significant pairs beside pairs of a table of diagonals
};

// What a mark sets.
enum class mark_kind : std::int16_t {
  border_colour = 1, // index of the scale colours
  size = 2,
  inside_colour = 3,
  shape = 4,        // index of the table of shapes
  caption = 5,      // only what the prefix and the number add
  original_name = 6 // all captions are emptied first, then the marked clones get their names
};

class class_clone_net_draw {
public:
  // `signif` gives the database, the settings and the loaded net, and must outlive this object. `rule` decides the
  // edges; its burying fraction gives way to that of each drawing.
  class_clone_net_draw(class_clone_net_signif &signif, const overlap_rule &rule);

  void options_set(drawing_options options) { options_ = std::move(options); }
  const drawing_options &options_get() const { return options_; }
  // Kind `diagonals`: tells whether a pair stands in the table; empty: no table was read.
  void diagonals_set(std::function<bool(clone_number, clone_number)> is_in_table) {
    diagonals_ = std::move(is_in_table);
  }

  // Copies list(1..n) and clears marks, captions and positions. An empty folder becomes
  // "Net_control_" + caption + "_" + date and time in the working folder, and is made.
  void start_nets_of_clones_draw(std::int32_t n, const number_list &list, const std::string &caption,
                                 const std::filesystem::path &folder);
  std::int32_t n_clones_get() const { return list_of_clones_.count(); }
  clone_number clone_number_get(std::int32_t k) const { return list_of_clones_(k); } // k from 1
  const std::filesystem::path &folder_get() const { return folder_; }

  // NAME, [bands] and <k> as the options say; k alone when the others are off.
  std::string create_caption_for_clone(std::int32_t k, const class_DB_of_clones &database) const;
  void run_create_caption_for_vertex_corresponding_to_clone(const class_DB_of_clones &database);
  void clone_caption_set(std::int32_t k, std::string text) {
    clone_vertex_[static_cast<std::size_t>(k)].caption = std::move(text);
  }
  const std::string &clone_caption_get(std::int32_t k) const {
    return clone_vertex_[static_cast<std::size_t>(k)].caption;
  }
  // Marks the clones of the drawing that stand in `list`. `prefix` is put behind their captions, then with `add_number`
  // "(position in the list)", the first one of a repeated clone. `name` is what GraphML calls the mark; empty: nothing.
  void mark_clones(const number_list &list, mark_kind kind, std::int32_t value, const std::string &prefix,
                   bool add_number, const std::string &name = {});
  // Where the k-th clone lies on the contig's axis, in bands; GraphML then holds positions: x the middle of the clone,
  // y the row in which it doesn't cover another one, from the top. For as many clones as the list has, in its order.
  void clone_coordinates_set(std::span<const std::int32_t> left, std::span<const std::int32_t> right);

  // Writes the drawings. A cutoff below 0 means the rule's. `all_metrics`: Sulston_1988, Nof, Lnn and LnnMarkers at
  // the rule's cutoff instead of its metric at the given one. `print_values`: a table of all edges beside.
  // False when nothing could be drawn: more clones than a drawing holds, or a stop request.
  bool print_files_for_drawing_net(double burying_border, bool all_metrics, double cutoff, bool print_values,
                                   drawing_kind kind, const class_DB_of_clones &database);
  // A distance below 0 means the rule's metric. `nets_for_cutoffs`: 11 files at cutoffs that go by the metric; a
  // metric without such cutoffs gets no file.
  bool print_files_for_drawing_net_for_given_distance_index(double burying_border, std::int16_t distance, double cutoff,
                                                            bool nets_for_cutoffs, drawing_kind kind, bool print_values,
                                                            const class_DB_of_clones &database);
  // Drawings written since the object was made, in order.
  const std::vector<std::filesystem::path> &files_written() const { return files_written_; }

  // ---- quick runs: start, captions, marks, files. The marks add their number when the options say so. -------------

  // List 1: red inside.
  bool quick_run(const number_list &list, const std::string &caption, const std::filesystem::path &folder,
                 double burying_border, double cutoff, const number_list &list_1, bool all_metrics = false,
                 bool print_values = false, drawing_kind kind = drawing_kind::overlaps);
  // List 1: red inside; list 2: boxes.
  bool quick_run_two_lists_of_marking(const number_list &list, const std::string &caption,
                                      const std::filesystem::path &folder, double burying_border, double cutoff,
                                      const number_list &list_1, const number_list &list_2, bool all_metrics = false,
                                      bool print_values = false, drawing_kind kind = drawing_kind::overlaps);
  // List 1: red inside; list 2: green; clones of both: yellow; list 3: boxes.
  bool quick_run_three_lists_of_marking(const number_list &list, const std::string &caption,
                                        const std::filesystem::path &folder, double burying_border, double cutoff,
                                        const number_list &list_1, const number_list &list_2, const number_list &list_3,
                                        bool all_metrics = false, bool print_values = false,
                                        drawing_kind kind = drawing_kind::overlaps);
  // Names that GraphML gives to the marks of list 1, 2 and 3 of the quick runs.
  void mark_names_set(std::array<std::string, 3> names) { mark_names_ = std::move(names); }
  // Positions for the next quick run, as in `clone_coordinates_set`; the arrays are copied.
  void quick_run_coordinates_set(std::span<const std::int32_t> left, std::span<const std::int32_t> right);

  // One list file with the marking lists that the options switch on: `mark_two_lists` two of them, else `mark_MTP` one,
  // else none. Files that are empty names are asked for. False when a dialog is cancelled, a list can't be read, or
  // nothing could be drawn.
  bool list_with_marking_quick_run(const std::filesystem::path &file, const std::filesystem::path &file_marked_1,
                                   const std::filesystem::path &file_marked_2, const std::filesystem::path &folder,
                                   double burying_border, double cutoff, class_DB_of_clones &database);
  // Kind `two_metrics` for the clones of a file; asks for the files that are empty names, for the second one after a
  // question whether clones are to be marked.
  bool compare_nets_for_two_metrics_quick_run(const std::filesystem::path &file,
                                              const std::filesystem::path &file_marked,
                                              const std::filesystem::path &folder, class_DB_of_clones &database);
  // Each list file of the folder of `any_file` marked in the net of all clones of `file_all`, into the folder
  // Nets_marked of the working folder, under the standard names. A process of its own; follows the stop flag between
  // files.
  bool nets_with_shown_list_of_clones(const std::filesystem::path &file_all, std::filesystem::path any_file,
                                      class_DB_of_clones &database);

private:
  static constexpr std::int32_t not_set = 65535;
  struct clone_look {
    std::int32_t bc = not_set, size = not_set, ic = not_set, shape = not_set;
    std::string caption, marks; // names of the marks, separated by ";"
    void set(mark_kind kind, std::int32_t value);
  };
  struct axis_place {
    double x = 0, y = 0;
  };
  // What a run is asked to write, for one metric.
  struct series {
    std::vector<double> thresholds;
    bool put_in_names = false; // of a file that was named
    bool metric_put_in_names = false;
  };

  static std::string name_in_file_name(std::string_view name);
  void add_vertices(const class_DB_of_clones &database);
  bool fill_drawing(double burying_border, drawing_kind kind, const class_DB_of_clones &database);
  void pairs_to_net(drawing_kind kind);
  bool goes_on_with_pairs(std::int64_t n_more) const; // false after a stop request
  void computed_pairs_to_net(double burying_border, drawing_kind kind);
  void two_metrics_to_net(double burying_border);
  template <class pair_of_places> void for_pairs_of_loaded_net(pair_of_places pair) const;
  void add_pair_of_metric(std::int32_t a, std::int32_t b, drawing_kind kind);
  void add_pair(std::int32_t a, std::int32_t b, drawing_kind kind, double value, std::int16_t burying_index,
                bool significant);
  std::int16_t color_of_overlap(double value) const;
  void mark_burial(std::int32_t a, std::int32_t b, std::int16_t code);
  bool draw_one_metric(double burying_border, std::int16_t distance, double cutoff, bool nets_for_cutoffs,
                       drawing_kind kind, bool print_values, bool one_of_several, const class_DB_of_clones &database);
  bool write_drawing(double threshold, const series &wanted);
  std::filesystem::path file_of_drawing(double threshold, const series &wanted, std::string_view extension) const;
  void start_quick_run(const number_list &list, const std::string &caption, const std::filesystem::path &folder);
  bool read_list(std::filesystem::path file, const std::string &dialog_title, number_list &list, std::string &pure_name,
                 class_DB_of_clones &database) const;
  bool draw_list_files(const number_list &all, const std::filesystem::path &lists,
                       const std::vector<std::string> &files, class_DB_of_clones &database);

  class_clone_net_signif *signif_;
  overlap_rule rule_;
  drawing_options options_;
  number_list list_of_clones_;
  std::vector<clone_look> clone_vertex_; // from 1
  class_clone_dist_my metric_;
  class_net_draw net_draw_;
  std::string caption_of_net_;
  std::filesystem::path folder_;
  std::function<bool(clone_number, clone_number)> diagonals_;
  graphml_details details_;
  std::vector<axis_place> places_; // from 0; empty: not known
  std::array<std::string, 3> mark_names_{"list 1", "list 2", "list 3"};
  std::string label_;
  mutable std::int64_t n_pairs_since_look_ = 0; // at the stop flag
  std::vector<std::int32_t> quick_left_, quick_right_;
  std::vector<std::filesystem::path> files_written_;
};

} // namespace orb
