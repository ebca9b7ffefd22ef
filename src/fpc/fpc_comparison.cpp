#include "fpc/fpc_comparison.h"

#include <algorithm>
#include <map>
#include <set>

#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// 0: alone.
cluster_id contig_of(const class_FPCto_import &registry, clone_number clone) {
  const cluster_id id = registry.clone_in_cluster_get(clone);
  return registry.cluster_is_in_use_get(id) && registry.cluster_is_contig_get(id) ? id : 0;
}

// A contig of one side as the other one has it.
struct contig_elsewhere {
  cluster_id id = 0;
  std::int32_t n_alone = 0;                 // its clones that are in no contig there
  std::map<cluster_id, std::int32_t> parts; // its clones by contig there
  bool is_split = false, is_joined = false, has_more = false;

  bool is_lacking() const { return parts.empty(); }
  bool is_same() const { return !is_lacking() && !is_split && !is_joined && !has_more && n_alone == 0; }
  std::string verdict() const {
    if (is_lacking())
      return "lacking";
    if (is_split || is_joined)
      return is_split && is_joined ? "split, joined" : is_split ? "split" : "joined";
    return is_same() ? "same" : "changed";
  }
};

contig_elsewhere look_up(const class_FPCto_import &here, const class_FPCto_import &there, cluster_id id) {
  contig_elsewhere found;
  found.id = id;
  for (const clone_number clone : here.clones_of_cluster(id)) {
    if (const cluster_id part = contig_of(there, clone); part > 0)
      ++found.parts[part];
    else
      ++found.n_alone;
  }
  found.is_split = found.parts.size() > 1;
  for (const auto &[part, n] : found.parts)
    for (const clone_number clone : there.clones_of_cluster(part)) {
      const cluster_id back = contig_of(here, clone);
      found.is_joined = found.is_joined || (back > 0 && back != id);
      found.has_more = found.has_more || back == 0;
    }
  return found;
}

// The strongest overlap between two parts of a contig.
struct part_link {
  std::int32_t n = 0;
  clone_number a = 0, b = 0;
  double value = 0;
};
using part_links = std::map<std::pair<cluster_id, cluster_id>, part_link>;

// The two clones that come nearest to an overlap.
struct nearest_pair {
  clone_number a = 0, b = 0;
  double value = -1;
};

nearest_pair nearest_between(std::span<const clone_number> one, std::span<const clone_number> others,
                             class_clone_dist_calc &calc, std::int16_t distance_index) {
  nearest_pair best;
  for (const clone_number a : one)
    for (const clone_number b : others)
      if (const double value = calc.minus_log10_p_value_of_clone_overlapping(a, b, distance_index); value > best.value)
        best = {a, b, value};
  return best;
}

part_links links_between_parts(const class_FPCto_import &here, const class_FPCto_import &there, const class_net &net,
                               cluster_id id) {
  part_links links;
  for (const clone_number clone : here.clones_of_cluster(id)) {
    const cluster_id part = contig_of(there, clone);
    for (const net_edge &edge : net.edges_of_vertex(clone)) {
      if (contig_of(here, edge.neighbour) != id)
        continue;
      const cluster_id other = contig_of(there, edge.neighbour);
      if (part == 0 || other <= part) // each pair once; clones alone are no part
        continue;
      part_link &link = links[{part, other}];
      if (++link.n == 1 || edge.value > link.value)
        link = {link.n, clone, edge.neighbour, edge.value};
    }
  }
  return links;
}

class side {
public:
  side(const class_clone_net_signif &signif, const overlap_rule &rule, const class_FPCto_import &here,
       const class_FPCto_import &there)
      : database_(signif.context().database), frame_(signif.context().frame), here_(here), there_(there),
        net_(signif.net()), calc_(signif.context()), distance_index_(rule.distance_index) {
    for (const cluster_id id : here.current_list_of_clusters_in_use_get().members())
      if (here.cluster_is_contig_get(id))
        contigs_.push_back(look_up(here, there, id));
  }

  void write_contigs(const fs::path &path) const {
    result_file file(path);
    file.line("contig\tn_clones\tverdict\tn_alone\tin_other");
    for (const contig_elsewhere &contig : contigs_) {
      std::string parts;
      for (const auto &[id, n] : contig.parts)
        parts += (parts.empty() ? "" : ",") + there_.name_of_cluster_get(id) + ":" + std::to_string(n);
      file.line(here_.name_of_cluster_get(contig.id) + '\t' + std::to_string(here_.n_clones_in_cluster_get(contig.id)) +
                '\t' + contig.verdict() + '\t' + std::to_string(contig.n_alone) + '\t' + parts);
    }
    file.commit();
  }

  // False after a stop request.
  bool write_links(const fs::path &path) {
    result_file file(path);
    file.line("contig\tpart_1\tpart_2\tn_overlaps\tclone_1\tclone_2\tscore");
    for (const contig_elsewhere &contig : contigs_) {
      if (!contig.is_split)
        continue;
      write_links_of(contig, file);
      if (!frame_.goes_on())
        return false;
    }
    file.commit();
    return true;
  }

  void add_moved(std::set<clone_number> &clones) const {
    for (const contig_elsewhere &contig : contigs_)
      if (!contig.is_same())
        for (const clone_number clone : here_.clones_of_cluster(contig.id))
          clones.insert(clone);
  }

  contig_counts counts() const {
    contig_counts found;
    for (const contig_elsewhere &contig : contigs_) {
      ++found.n;
      found.n_same += contig.is_same();
      found.n_split += contig.is_split;
      found.n_joined += contig.is_joined;
      found.n_lacking += contig.is_lacking();
      found.n_changed += contig.verdict() == "changed";
    }
    return found;
  }

private:
  void write_links_of(const contig_elsewhere &contig, result_file &file) {
    std::set<cluster_id> linked;
    for (const auto &[pair, link] : links_between_parts(here_, there_, net_, contig.id)) {
      linked.insert(pair.first);
      linked.insert(pair.second);
      write_link(contig.id, pair.first, pair.second, link, file);
    }
    std::set<std::pair<cluster_id, cluster_id>> written;
    for (const auto &[part, n] : contig.parts)
      if (!linked.contains(part))
        write_nearest(contig, part, written, file);
  }

  void write_link(cluster_id contig, cluster_id part_1, cluster_id part_2, const part_link &link, result_file &file) {
    std::string line = here_.name_of_cluster_get(contig) + '\t' + there_.name_of_cluster_get(part_1) + '\t' +
                       there_.name_of_cluster_get(part_2) + '\t' + std::to_string(link.n) + '\t';
    line += link.a > 0 ? database_.name_of_clone_get(link.a) + '\t' + database_.name_of_clone_get(link.b) + '\t' +
                             number_text(link.value, 2)
                       : "\t\t";
    file.line(line);
  }

  // A part that no overlap of the net joins to the rest of its contig.
  // `written`: pairs of parts that need no second row.
  void write_nearest(const contig_elsewhere &contig, cluster_id part,
                     std::set<std::pair<cluster_id, cluster_id>> &written, result_file &file) {
    std::vector<clone_number> inside, outside;
    for (const clone_number clone : here_.clones_of_cluster(contig.id))
      if (const cluster_id at = contig_of(there_, clone); at > 0)
        (at == part ? inside : outside).push_back(clone);
    part_link link;
    cluster_id other = 0;
    if (inside.size() * outside.size() <= most_pairs) {
      const nearest_pair best = nearest_between(inside, outside, calc_, distance_index_);
      link = {0, best.a, best.b, best.value};
      other = contig_of(there_, best.b);
    }
    if (written.insert(std::minmax(part, other)).second)
      write_link(contig.id, part, other, link, file);
  }

  static constexpr std::size_t most_pairs = 2000000;
  const class_DB_of_clones &database_;
  process_frame &frame_;
  const class_FPCto_import &here_, &there_;
  const class_net &net_;
  class_clone_dist_calc calc_;
  std::int16_t distance_index_;
  std::vector<contig_elsewhere> contigs_;
};

std::string name_or_none(const class_FPCto_import &registry, clone_number clone) {
  const cluster_id id = contig_of(registry, clone);
  return id > 0 ? registry.name_of_cluster_get(id) : std::string();
}

} // namespace

fpc_comparison compare_assemblies(const class_clone_net_signif &signif, const overlap_rule &rule,
                                  const class_FPCto_import &of_file, const class_FPCto_import &of_run,
                                  const fs::path &folder) {
  const class_DB_of_clones &database = signif.context().database;
  side file_side(signif, rule, of_file, of_run), run_side(signif, rule, of_run, of_file);
  fpc_comparison found;
  found.of_file = file_side.counts();
  found.of_run = run_side.counts();
  for (const char *name :
       {"links_of_file.txt", "links_of_run.txt", "contigs_of_file.txt", "contigs_of_run.txt", "moved_clones.txt"})
    found.files.push_back(folder / name);
  if (!file_side.write_links(found.files[0]) || !run_side.write_links(found.files[1]))
    return found;
  file_side.write_contigs(found.files[2]);
  run_side.write_contigs(found.files[3]);
  std::set<clone_number> moved;
  file_side.add_moved(moved);
  run_side.add_moved(moved);
  found.n_moved = static_cast<std::int32_t>(moved.size());
  result_file table(found.files[4]);
  table.line("clone\tcontig_in_file\tcontig_in_run");
  for (const clone_number clone : moved)
    table.line(database.name_of_clone_get(clone) + '\t' + name_or_none(of_file, clone) + '\t' +
               name_or_none(of_run, clone));
  table.commit();
  found.completed = true;
  return found;
}

} // namespace orb
