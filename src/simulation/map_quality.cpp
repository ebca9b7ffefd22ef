#include "simulation/map_quality.h"

#include <algorithm>
#include <cmath>

#include "clustering/contig_statistics.h"

namespace orb {

namespace {

constexpr double base_pairs_a_kb = 1000;

// Takes the contigs of a run one by one; what lies across contigs is counted at the end.
class quality_counter {
public:
  quality_counter(const evaluation_input &input, const true_map &truth) : input_(input), truth_(truth) {}
  map_quality count();

private:
  struct order_place { // a clone in an order, with what measures it
    true_clone clone = -1;
    order_point point;
  };

  void count_clusters();
  void count_contig(std::size_t cluster);
  void find_places(contig_quality &contig);
  void count_wrong_clones(contig_quality &contig);
  void count_counted_places(contig_quality &contig);
  void find_joining_clones();
  void find_folding_clones();
  void count_coordinates(std::size_t cluster, contig_quality &contig);
  void count_ordering(std::size_t cluster, contig_quality &contig);
  order_quality count_order(std::vector<order_place> &order, std::vector<damaging_step> &apart);
  bool takes_part_in_order(true_clone clone) const {
    return clone >= 0 && rightly_[index(clone)] == 1 && truth_.stretches(clone).size() == 1;
  }
  void count_path(std::size_t cluster, contig_quality &contig);
  void count_whole(std::size_t cluster, contig_quality &contig);
  void count_path_cover(const std::vector<true_clone> &path, const contig_quality &contig, path_quality &found);
  void count_genome();
  void count_islands();
  void count_lengths();
  void count_Q_clones();
  void add_up();

  static std::size_t index(true_clone clone) { return static_cast<std::size_t>(clone); }
  std::int32_t contig_number() const { return static_cast<std::int32_t>(quality_.contigs.size()); }
  true_clone placed_clone(std::string_view name) const {
    const true_clone clone = truth_.find(name);
    return clone >= 0 && truth_.is_placed(clone) ? clone : -1;
  }

  const evaluation_input &input_;
  const true_map &truth_;
  map_quality quality_;
  std::vector<char> in_cluster_; // of each clone of the truth
  // Of the contig at work.
  std::vector<true_clone> clones_; // in order of its list; -1: unknown
  std::vector<true_stretch> stretches_;
  std::vector<true_place> places_;
  std::vector<std::int32_t> place_of_;  // of each stretch
  std::int32_t main_ = -1;              // its place
  std::vector<char> counted_;           // of each place: the main one, or with a clone that sits wrongly
  std::vector<char> rightly_;           // of each clone of the truth: 1 in the main place; 0 outside the contig at work
  std::vector<true_place> all_counted_; // places of all contigs
};

map_quality quality_counter::count() {
  in_cluster_.assign(static_cast<std::size_t>(truth_.n_clones()), 0);
  rightly_.assign(static_cast<std::size_t>(truth_.n_clones()), 0);
  count_clusters();
  for (true_clone clone = 0; clone < truth_.n_clones(); ++clone) {
    if (!truth_.is_placed(clone))
      continue;
    ++quality_.n_clones_true;
    for (const true_stretch &stretch : truth_.stretches(clone))
      quality_.length_of_clones += stretch.length();
    quality_.n_chimeric_true += truth_.is_chimeric(clone);
    quality_.n_alone += in_cluster_[index(clone)] == 0;
  }
  count_genome();
  count_islands();
  count_lengths();
  if (input_.Q_clones != nullptr)
    count_Q_clones();
  add_up();
  return std::move(quality_);
}

void quality_counter::count_clusters() {
  const run_folder &run = *input_.run;
  for (std::size_t cluster = 0; cluster < run.clusters.size(); ++cluster) {
    clones_.clear();
    for (const std::string &name : run.clones[cluster]) {
      clones_.push_back(placed_clone(name));
      if (clones_.back() >= 0)
        in_cluster_[index(clones_.back())] = 1;
      else
        ++quality_.n_unknown;
    }
    const auto n = static_cast<std::int32_t>(clones_.size());
    if (run.clusters[cluster].contig) {
      quality_.n_clones_in_contigs += n;
      count_contig(cluster);
    } else {
      ++quality_.n_heaps;
      quality_.n_clones_in_heaps += n;
    }
  }
}

void quality_counter::count_contig(std::size_t cluster) {
  contig_quality contig;
  contig.name = input_.run->clusters[cluster].name;
  contig.width = input_.run->clusters[cluster].width;
  contig.n_clones = static_cast<std::int32_t>(clones_.size());
  find_places(contig);
  count_wrong_clones(contig);
  count_counted_places(contig);
  count_coordinates(cluster, contig);
  count_ordering(cluster, contig);
  count_path(cluster, contig);
  count_whole(cluster, contig);
  for (const true_clone clone : clones_)
    if (clone >= 0)
      rightly_[index(clone)] = 0;
  quality_.contigs.push_back(std::move(contig));
}

void quality_counter::find_places(contig_quality &contig) {
  stretches_.clear();
  for (const true_clone clone : clones_) {
    if (clone < 0) {
      ++contig.n_unknown;
      continue;
    }
    contig.n_chimeric += truth_.is_chimeric(clone);
    for (const true_stretch &stretch : truth_.stretches(clone))
      stretches_.push_back(stretch);
  }
  places_of_stretches(stretches_, places_, place_of_);
  main_ = -1;
  for (std::size_t p = 0; p < places_.size(); ++p) {
    const bool better = main_ < 0 || places_[p].n_clones > contig.main.n_clones ||
                        (places_[p].n_clones == contig.main.n_clones && places_[p].length() > contig.main.length());
    if (better) {
      main_ = static_cast<std::int32_t>(p);
      contig.main = places_[p];
    }
  }
  for (std::size_t i = 0; i < stretches_.size(); ++i)
    if (place_of_[i] == main_)
      rightly_[index(stretches_[i].clone)] = 1;
}

void quality_counter::count_wrong_clones(contig_quality &contig) {
  const true_stretch main{contig.main.begin, contig.main.end, -1};
  for (const true_clone clone : clones_) {
    if (clone < 0 || rightly_[index(clone)] == 1)
      continue;
    ++contig.n_wrong;
    misplaced_clone found{contig_number(), clone, -1};
    for (const true_stretch &stretch : truth_.stretches(clone)) {
      const std::int64_t distance = truth_.distance(stretch, main);
      if (distance >= 0 && (found.distance < 0 || distance < found.distance))
        found.distance = distance;
    }
    quality_.misplaced.push_back(found);
  }
}

void quality_counter::count_counted_places(contig_quality &contig) {
  counted_.assign(places_.size(), 0);
  for (std::size_t i = 0; i < stretches_.size(); ++i)
    if (place_of_[i] == main_ || rightly_[index(stretches_[i].clone)] == 0)
      counted_[static_cast<std::size_t>(place_of_[i])] = 1;
  for (std::size_t p = 0; p < places_.size(); ++p)
    if (counted_[p] == 1) {
      ++contig.n_places;
      all_counted_.push_back(places_[p]);
    }
  if (contig.n_places > 1)
    find_joining_clones();
  find_folding_clones();
}

void quality_counter::find_joining_clones() {
  std::vector<std::pair<true_clone, std::int32_t>> met; // chimeric clones and the counted places of their stretches
  for (std::size_t i = 0; i < stretches_.size(); ++i)
    if (truth_.is_chimeric(stretches_[i].clone) && counted_[static_cast<std::size_t>(place_of_[i])] == 1)
      met.emplace_back(stretches_[i].clone, place_of_[i]);
  std::sort(met.begin(), met.end());
  met.erase(std::unique(met.begin(), met.end()), met.end());
  for (std::size_t i = 1; i < met.size(); ++i)
    if (met[i].first == met[i - 1].first && (i == 1 || met[i - 2].first != met[i].first))
      quality_.joining.push_back({contig_number(), met[i].first});
}

void quality_counter::find_folding_clones() {
  for (const true_clone clone : clones_) {
    if (clone < 0 || !truth_.is_chimeric(clone))
      continue;
    std::vector<true_stretch> parts(truth_.stretches(clone).begin(), truth_.stretches(clone).end());
    std::sort(parts.begin(), parts.end(),
              [](const true_stretch &a, const true_stretch &b) { return a.begin < b.begin; });
    const auto place_of = [&](const true_stretch &part) {
      return std::upper_bound(places_.begin(), places_.end(), part.begin,
                              [](true_position at, const true_place &place) { return at < place.begin; }) -
             places_.begin() - 1;
    };
    std::int64_t widest = -1;
    true_position reached = parts.front().end;
    for (std::size_t i = 1; i < parts.size(); ++i) {
      const auto place = place_of(parts[i]);
      if (place == place_of(parts[i - 1]) && counted_[static_cast<std::size_t>(place)] == 1)
        widest = std::max(widest, parts[i].begin - reached);
      reached = std::max(reached, parts[i].end);
    }
    if (widest >= 0)
      quality_.folding.push_back({contig_number(), clone, widest});
  }
}

void quality_counter::count_coordinates(std::size_t cluster, contig_quality &contig) {
  const auto &coordinates = input_.run->coordinates[cluster];
  if (coordinates.empty())
    return;
  double left = coordinates.front().left, right = coordinates.front().right;
  std::vector<order_place> order;
  for (std::size_t i = 0; i < coordinates.size(); ++i) {
    left = std::min(left, coordinates[i].left);
    right = std::max(right, coordinates[i].right);
    if (takes_part_in_order(clones_[i]))
      order.push_back({clones_[i], {coordinates[i].left + coordinates[i].right, 0}});
  }
  contig.length_bands = right - left + 1;
  std::stable_sort(order.begin(), order.end(),
                   [](const order_place &a, const order_place &b) { return a.point.map < b.point.map; });
  contig.coordinates = count_order(order, quality_.apart_by_coordinates);
}

void quality_counter::count_ordering(std::size_t cluster, contig_quality &contig) {
  if (cluster >= input_.orders.size() || !input_.orders[cluster])
    return;
  std::vector<order_place> order;
  for (const std::string &name : *input_.orders[cluster]) {
    const true_clone clone = placed_clone(name);
    if (takes_part_in_order(clone))
      order.push_back({clone, {static_cast<double>(order.size()), 0}});
  }
  contig.ordering = count_order(order, quality_.apart_by_ordering);
}

order_quality quality_counter::count_order(std::vector<order_place> &order, std::vector<damaging_step> &apart) {
  std::vector<order_point> points;
  std::int32_t n_apart = 0;
  for (std::size_t i = 0; i < order.size(); ++i) {
    const true_stretch &stretch = truth_.stretches(order[i].clone).front();
    order[i].point.truth = (stretch.begin + stretch.end) / 2;
    points.push_back(order[i].point);
    if (i == 0)
      continue;
    const true_stretch &before = truth_.stretches(order[i - 1].clone).front();
    if (before.overlaps(stretch))
      continue;
    ++n_apart;
    apart.push_back({contig_number(), static_cast<std::int32_t>(i), order[i - 1].clone, order[i].clone,
                     truth_.distance(before, stretch)});
  }
  order_quality found = order_quality_of(std::move(points));
  found.n_apart = n_apart;
  return found;
}

void quality_counter::count_path(std::size_t cluster, contig_quality &contig) {
  if (input_.run->tiling_path[cluster].empty())
    return;
  std::vector<true_clone> path;
  for (const std::string &name : input_.run->tiling_path[cluster])
    path.push_back(placed_clone(name));
  path_quality found;
  found.n_clones = static_cast<std::int32_t>(path.size());
  for (std::size_t i = 1; i < path.size(); ++i) {
    if (path[i] < 0 || path[i - 1] < 0)
      continue;
    ++found.n_steps;
    if (truth_.overlap(path[i - 1], path[i]))
      continue;
    ++found.n_false_steps;
    quality_.false_path_steps.push_back(
        {contig_number(), static_cast<std::int32_t>(i), path[i - 1], path[i], truth_.distance(path[i - 1], path[i])});
  }
  count_path_cover(path, contig, found);
  contig.path = found;
}

void quality_counter::count_path_cover(const std::vector<true_clone> &path, const contig_quality &contig,
                                       path_quality &found) {
  std::vector<true_stretch> of_path, of_contig;
  const auto in_main = [&](const true_stretch &stretch) {
    return stretch.begin < contig.main.end && contig.main.begin < stretch.end;
  };
  for (const true_clone clone : path)
    if (clone >= 0)
      std::copy_if(truth_.stretches(clone).begin(), truth_.stretches(clone).end(), std::back_inserter(of_path),
                   in_main);
  if (of_path.empty())
    return;
  std::copy_if(stretches_.begin(), stretches_.end(), std::back_inserter(of_contig), in_main);
  std::vector<true_place> covered;
  std::vector<std::int32_t> ignored;
  places_of_stretches(of_path, covered, ignored);
  found.n_clones_compared = found.n_clones;
  found.n_fewest = fewest_stretches_covering(of_contig, covered);
  found.length_main = contig.main.length();
  for (const true_place &place : covered)
    found.length_covered += place.length();
}

// Chimeric clones belong to no one place of an order; to a path they bring all their stretches.
void quality_counter::count_whole(std::size_t cluster, contig_quality &contig) {
  const auto &coordinates = input_.run->coordinates[cluster];
  std::vector<whole_point> points;
  for (std::size_t i = 0; i < coordinates.size(); ++i)
    if (const true_clone clone = clones_[i]; clone >= 0 && !truth_.is_chimeric(clone)) {
      const true_stretch &stretch = truth_.stretches(clone).front();
      points.push_back({coordinates[i].left, coordinates[i].right, stretch.begin, stretch.end});
    }
  contig.whole = whole_quality_of(points);
  contig.whole.n_wrong = clones_apart(stretches_, truth_);
  std::vector<true_stretch> of_path;
  const auto &path = input_.run->tiling_path[cluster];
  for (const std::string &name : path)
    if (const true_clone clone = placed_clone(name); clone >= 0)
      of_path.insert(of_path.end(), truth_.stretches(clone).begin(), truth_.stretches(clone).end());
  add_path(std::move(of_path), stretches_, static_cast<std::int32_t>(path.size()), contig.whole);
}

void quality_counter::count_genome() {
  quality_.genome_length_given = input_.genome_length > 0;
  quality_.genome_length = quality_.genome_length_given ? input_.genome_length : truth_.genome_length();
  std::sort(all_counted_.begin(), all_counted_.end(),
            [](const true_place &a, const true_place &b) { return a.begin < b.begin; });
  true_position counted_to = 0;
  for (const true_place &place : all_counted_) {
    quality_.length_in_contigs += std::max<std::int64_t>(0, place.end - std::max(counted_to, place.begin));
    counted_to = std::max(counted_to, place.end);
  }
}

void quality_counter::count_islands() {
  quality_.n_islands = static_cast<std::int32_t>(truth_.islands().size());
  for (const true_place &island : truth_.islands())
    quality_.length_of_islands += island.length();
  std::vector<std::int32_t> placed; // contigs, by their main places
  for (std::int32_t c = 0; c < contig_number(); ++c)
    if (quality_.contigs[static_cast<std::size_t>(c)].n_places > 0)
      placed.push_back(c);
  const auto main_of = [&](std::int32_t c) -> const true_place & {
    return quality_.contigs[static_cast<std::size_t>(c)].main;
  };
  std::stable_sort(placed.begin(), placed.end(),
                   [&](std::int32_t a, std::int32_t b) { return main_of(a).begin < main_of(b).begin; });
  quality_.n_placed_contigs = static_cast<std::int32_t>(placed.size());
  std::size_t island = 0;
  std::int32_t n_here = 0, farthest = 0; // contigs of the island so far; the one that reaches farthest
  for (const std::int32_t c : placed) {
    const std::size_t island_here = truth_.island_of(main_of(c).begin);
    if (n_here == 0 || island_here != island) {
      ++quality_.n_islands_with_contig;
      island = island_here;
      n_here = 0;
    } else {
      const true_place &before = main_of(farthest), &here = main_of(c);
      const std::int64_t shared = std::min(before.end, here.end) - here.begin;
      quality_.breaks.push_back({farthest, c, -shared});
    }
    if (n_here == 0 || main_of(c).end > main_of(farthest).end)
      farthest = c;
    quality_.most_contigs_an_island = std::max(quality_.most_contigs_an_island, ++n_here);
  }
}

std::optional<length_quality> quality_of_lengths(std::vector<double> lengths) {
  if (lengths.empty())
    return std::nullopt;
  std::sort(lengths.begin(), lengths.end());
  length_quality found;
  found.n_contigs = static_cast<std::int32_t>(lengths.size());
  for (const double length : lengths)
    found.total += length;
  const length_statistic half = length_statistic_get(lengths, 50);
  found.N50 = half.length;
  found.L50 = half.n_contigs;
  return found;
}

void quality_counter::count_lengths() {
  std::vector<double> bands, base_pairs, densities;
  double bands_compared = 0, kb_compared = 0;
  for (const contig_quality &contig : quality_.contigs) {
    if (contig.length_bands)
      bands.push_back(*contig.length_bands);
    if (contig.n_places > 0)
      base_pairs.push_back(static_cast<double>(contig.main.length()));
    if (const auto density = contig.bands_a_kb()) {
      densities.push_back(*density);
      bands_compared += *contig.length_bands;
      kb_compared += static_cast<double>(contig.main.length()) / base_pairs_a_kb;
    }
  }
  quality_.bands = quality_of_lengths(std::move(bands));
  quality_.base_pairs = quality_of_lengths(std::move(base_pairs));
  if (densities.empty())
    return;
  band_density &found = quality_.density.emplace();
  found.n_contigs = static_cast<std::int32_t>(densities.size());
  found.mean = bands_compared / kb_compared;
  double mean = 0, squares = 0;
  for (const double density : densities)
    mean += density / static_cast<double>(densities.size());
  for (const double density : densities)
    squares += (density - mean) * (density - mean);
  found.deviation = densities.size() < 2 ? 0 : std::sqrt(squares / static_cast<double>(densities.size() - 1));
  const auto [least, most] = std::minmax_element(densities.begin(), densities.end());
  found.least = *least;
  found.most = *most;
}

void quality_counter::count_Q_clones() {
  Q_clone_quality &found = quality_.Q_clones.emplace();
  std::vector<char> listed(static_cast<std::size_t>(truth_.n_clones()), 0);
  for (const std::string &name : *input_.Q_clones) {
    const true_clone clone = placed_clone(name);
    if (clone < 0)
      ++found.n_unknown;
    else
      listed[index(clone)] = 1;
  }
  found.n_listed = static_cast<std::int32_t>(input_.Q_clones->size());
  for (true_clone clone = 0; clone < truth_.n_clones(); ++clone) {
    const bool chimeric = truth_.is_chimeric(clone), is_listed = listed[index(clone)] == 1;
    found.n_chimeric_found += chimeric && is_listed;
    found.n_good_lost += !chimeric && is_listed;
    if (chimeric && !is_listed)
      found.missed.push_back(clone);
    if (!chimeric && is_listed)
      found.lost.push_back(clone);
  }
}

template <class Quality> void add_to(std::optional<Quality> &sum, const std::optional<Quality> &part) {
  if (!part)
    return;
  if (sum)
    sum->add(*part);
  else
    sum = part;
}

void quality_counter::add_up() {
  for (const contig_quality &contig : quality_.contigs) {
    quality_.n_joining += contig.n_wrong > 0;
    quality_.n_wrong += contig.n_wrong;
    quality_.n_chimeric_in_contigs += contig.n_chimeric;
    add_to(quality_.coordinates, contig.coordinates);
    add_to(quality_.ordering, contig.ordering);
    add_to(quality_.path, contig.path);
    quality_.whole.add(contig.whole);
  }
}

} // namespace

std::optional<double> contig_quality::bands_a_kb() const {
  if (!length_bands || n_places == 0)
    return std::nullopt;
  return *length_bands / (static_cast<double>(main.length()) / base_pairs_a_kb);
}

map_quality map_quality_of(const evaluation_input &input, const true_map &truth) {
  return quality_counter(input, truth).count();
}

} // namespace orb
