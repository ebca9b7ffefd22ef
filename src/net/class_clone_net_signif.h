// Owns the current net of significant overlaps and turns a fingerprint database into that net. Vertex i of the whole
// net is clone i; subnets come with a list that maps their vertices to positions in the caller's list.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "graph/class_net.h"
#include "metrics/class_clone_dist_calc.h"
#include "metrics/class_clone_dist_my.h"
#include "metrics/metric_context.h"
#include "metrics/overlap_rule.h"

namespace orb {

// What one contig's net looks like; positions are places in the list of clones asked for.
struct contig_shape {
  std::int32_t radius = 0;
  std::int32_t diameter = 0;    // vertices on the diametric path; 0 when not connected
  std::int32_t width = -1;      // steps from the path to the farthest clone; -1: not connected
  number_list path;             // positions, from start to end
  number_list far;              // positions of rank 2 and more from the path
  number_list ranks_from_path;  // by position
  number_list ranks_from_start; // by position
};

struct net_creation_summary {
  std::int64_t n_pairs = 0;              // compared
  std::int32_t n_overlaps_max_found = 0; // of one clone
  clone_number clone_of_max = 0;
  std::int32_t n_clones_above_limit = 0; // with more than 500 overlaps
  bool completed = false;
  // Of a text net: the file, or any file of the folder of parts.
  std::filesystem::path text_file;
  bool in_parts = false;
};

struct text_net_options {
  std::filesystem::path file;   // empty: asks with the save dialog
  std::int32_t start_clone = 0; // 0: asks "Start from ..."
  bool parts = false;           // in parts of 1000 clones, without the question for large libraries
};

// Which overlaps of a text net are taken: `ask` puts the question "All overlaps?".
enum class overlaps_wanted { ask, all, within_limits };

struct text_net_reading {
  std::filesystem::path file;   // empty: asks
  bool folder_of_files = false; // the file stands for the parts in its folder, joined by the numbers in their names
  std::filesystem::path native; // where the native form goes; empty: asks
  std::string name;             // of the proposal in that question: "net_signif" + name + ".ORBns"
  overlaps_wanted overlaps = overlaps_wanted::ask;
};

class class_clone_net_signif {
public:
  // `net_is_loaded` is called when the current net was made or loaded: the owner of the settings says there how the net
  // may be used. `context` must outlive the object.
  explicit class_clone_net_signif(const metric_context &context, std::function<void()> net_is_loaded = {});

  class_net &net() { return net_; }
  const class_net &net() const { return net_; }
  const metric_context &context() const { return context_; }

  // --- whole nets ---
  // The text net, one block a clone, with resume and parts; asks what the work needs to ask (repeated names, parts,
  // file, "Preprocess?", "Start from ...", too many overlaps, loading). False when cancelled or stopped.
  bool create_file_with_significant_connections(const overlap_rule &rule, const text_net_options &options,
                                                net_creation_summary &summary);
  // The same net in memory, equal to what writing the text net and loading it whole would give (values with two
  // decimals), and made the current net. False when stopped or not continued; the old net then stays.
  bool create_net_in_memory(const overlap_rule &rule, net_creation_summary &summary);
  // Loads a native or a text net; `name` goes into the proposed name of the native file ("net_signif" + name +
  // ".ORBns"). `folder_of_files`: the parts in the folder of `file` are joined by the numbers in their names first.
  void read_file_with_significant_connections(std::filesystem::path file, const std::string &name, bool native_format,
                                              bool folder_of_files, bool &ok);
  // A text net, or the parts of one, kept in the native format from its first load on: the net in memory is the file
  // read back.
  void read_text_net_run(text_net_reading wanted, bool &ok);
  // Reads a text net into `net` (untouched when not ok).
  void read_text_net(const std::filesystem::path &file, class_net &net, bool &ok,
                     overlaps_wanted wanted = overlaps_wanted::ask);
  // After the current net was replaced from outside: tells the owner as a load does.
  void net_is_loaded_set() const;

  // --- nets of lists of clones ---
  // Subnet of a list, records with value >= cutoff. With a loaded net it is cut out of it, otherwise computed.
  // net_list(v) = position in `list` of subnet vertex v. Where a metric is named by its index, weights of bands are
  // summed when it lives on them.
  void create_net_general(const number_list &list, std::int32_t n, std::int16_t distance_index, double cutoff,
                          double burying, class_net &net, number_list &net_list);
  // The same for all of a list, by a rule.
  void create_net_general_run(const number_list &list, const overlap_rule &rule, class_net &net, number_list &net_list);
  void create_net_without_using_previous_net(const number_list &list, std::int32_t n, std::int16_t distance_index,
                                             double cutoff, double burying, class_net &net);
  void create_sub_net_different_metric_or_cutoff(const number_list &list, std::int32_t n, bool same_metric,
                                                 std::int16_t distance_index, double cutoff, double burying,
                                                 const class_net &net_in, class_net &net);
  void create_sub_net_same_metric_plus_markers(const number_list &list, std::int32_t n, std::int16_t distance_index,
                                               double cutoff, double burying, const class_net &net_in, class_net &net);
  // Value and codes of a pair of the current net as seen from a.
  void clones_can_be_overlapped(clone_number a, clone_number b, double &value, std::int16_t &index1,
                                std::int16_t &index2, const class_net &net, bool &yes) const;
  // Diametric path, width and ranks of a list.
  void contigomer(const number_list &list, const overlap_rule &rule, contig_shape &shape);
  // The same with start and end chosen by end width, and a status text for lists of more than 50 clones.
  void contigomer_clone_ordering(const number_list &list, const overlap_rule &rule, contig_shape &shape);
  // The same, with clone numbers in `path` and `far` (the ranks stay by position in the list), and the rank of each
  // interesting clone from the start of the path: -1 when unreached. `test_interesting`: a message for each that is
  // missing from the list.
  void contigomer_clone_ordering_run(const number_list &list, const overlap_rule &rule,
                                     const number_list &list_of_clones_interesting, bool test_interesting,
                                     bool report_unconnected, contig_shape &shape, number_list &ranks_of_interesting);

  // --- Q-overlaps and Q-clones ---
  struct revision_options {
    bool q_overlaps = true;
    bool q_clones = true;
    std::int32_t max_rank = 0;     // 1..50; 0: asks "max rank connections"
    std::string additional_cutoff; // as typed into the form; empty: the form's proposal (cutoff + 10)
    std::filesystem::path file;    // of the revised net; its folder gets the reports
    bool clone_test = false;       // before the two: clones of two places, by their bands (clone_test.h)
  };
  struct revision_summary {
    std::int32_t n_q_overlaps = 0; // undirected
    std::int32_t n_q_clones = 0;
    std::int32_t n_q_clones_thin = 0; // where clones lie less than half as deep as usual
    std::int32_t n_suspects = 0;      // of the clone test
    bool completed = false;
  };
  // Revises the current net and saves it; the rule's cutoff is the current one. False when the form's rules refuse the
  // options or the user stopped.
  bool revise_connections(const overlap_rule &rule, const revision_options &options, revision_summary &summary);
  // `marked_net` is a copy of `net` in which the Q things bear `index`. Each undirected Q edge counts twice.
  void identify_all_Q_connections(const class_net &net, std::int32_t max_rank, class_net &marked_net,
                                  std::int16_t index, bool print, const std::filesystem::path &file, std::int32_t &n_Q);
  // With an additional cutoff the walks use edges from there on only.
  void identify_all_Q_clones(const class_net &net, std::int32_t max_rank, std::optional<double> additional_cutoff,
                             class_net &marked_net, std::int16_t index, bool print,
                             const std::filesystem::path &file_test, const std::filesystem::path &file_Q,
                             std::int32_t &n_Q);

  // Scratch tables lent to walks over the current net; one user at a time.
  net_workspace &workspace() { return workspace_; }

private:
  void create_net(const number_list &list, std::int32_t n, const overlap_rule &rule, class_net &net,
                  number_list &net_list);
  void compare_list(const number_list &list, std::int32_t n, const overlap_rule &rule, class_net &net);
  void bring_sub_net_to_rule(const number_list &list, std::int32_t n, bool same_metric, const overlap_rule &rule,
                             class_net &net);
  void create_sub_net_plus_markers(const number_list &list, std::int32_t n, const overlap_rule &rule,
                                   const class_net &net_in, class_net &net);
  void bring_net_to_rule(const overlap_rule &rule);
  void find_suspect_clones(const std::filesystem::path &file, std::vector<vertex_number> &found);
  void find_Q_connections(const class_net &net, std::int32_t max_rank, bool print, const std::filesystem::path &file,
                          std::vector<edge_adress> &found);
  void find_Q_clones(const class_net &net, std::int32_t max_rank, std::optional<double> additional_cutoff, bool print,
                     const std::filesystem::path &file_test, const std::filesystem::path &file_Q,
                     std::vector<vertex_number> &found);
  void shape_of_list(const number_list &list, const overlap_rule &rule, bool use_end_width, bool with_status,
                     contig_shape &shape);
  void read_text_net_and_save(const text_net_reading &wanted, const std::filesystem::path &file, bool &ok);

  const metric_context &context_;
  std::function<void()> net_is_loaded_;
  class_net net_;
  net_workspace workspace_;
};

// The form's proposal lies so far above the cutoff in use.
inline constexpr double QQ_proposed_step = 10;
// The form's rules for the additional cutoff: empty when accepted, otherwise the text of its message.
std::string QQ_additional_cutoff_refused(const std::string &text, double current_cutoff);
// Begin and names of the revision's reports: "cutoff" and the cutoff in letters and digits only.
std::string QQ_report_base(const overlap_rule &rule);
std::vector<std::string> QQ_report_names(const overlap_rule &rule, bool q_overlaps, bool q_clones, bool clone_test);
// Names of the two nets without needless zeros and with two decimals, as the commands propose them.
std::string net_signif_file_name(const overlap_rule &rule); // net_signif_Sulston_1988_15.00.ORBns
std::string net_noQQ_file_name(const overlap_rule &rule, double additional_cutoff); // net_signif_noQQ_15_25.ORBns

} // namespace orb
