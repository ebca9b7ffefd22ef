#include "reports/evaluate_report.h"

#include <cmath>
#include <fmt/format.h>
#include <vector>

#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace {

using json = nlohmann::ordered_json;

constexpr std::size_t damages_shown = 10;   // of each kind, to people
constexpr std::size_t width_of_labels = 62; // in the table for people

enum class unit { count, base_pairs, share, ratio, tau };

// A measure: where it stands in JSON, what people read, its value (null: not known).
struct measure {
  const char *section;
  const char *key;
  const char *label;
  json value;
  unit shown = unit::count;
};

// Rounded to what a measure can tell, so that reports stay readable.
json rounded(double value, int decimals) {
  const double scale = std::pow(10.0, decimals);
  return std::round(value * scale) / scale;
}
json share_of(std::int64_t part, std::int64_t whole) {
  return whole > 0 ? rounded(static_cast<double>(part) / static_cast<double>(whole), 6) : json();
}
json mean_of(std::int64_t sum, std::int64_t n) {
  return n > 0 ? rounded(static_cast<double>(sum) / static_cast<double>(n), 3) : json();
}
json tau_of(const order_quality &order) {
  const auto tau = order.tau();
  return tau ? rounded(*tau, 6) : json();
}
// A figure of something that may be absent.
template <class Part, class Figure> json figure_of(const std::optional<Part> &part, Figure figure) {
  return part ? json(figure(*part)) : json();
}

void add_clone_measures(std::vector<measure> &all, const map_quality &q) {
  const char *section = "clones";
  all.push_back({section, "contigs", "contigs", q.contigs.size()});
  all.push_back({section, "in_contigs", "clones in contigs", q.n_clones_in_contigs});
  all.push_back({section, "heaps", "heaps (smaller clusters)", q.n_heaps});
  all.push_back({section, "in_heaps", "clones in heaps", q.n_clones_in_heaps});
  all.push_back({section, "alone", "clones of the truth that are alone", q.n_alone});
  all.push_back({section, "of_truth", "clones of the truth", q.n_clones_true});
  all.push_back({section, "unknown", "clones of the run that the truth lacks", q.n_unknown});
}

void add_join_measures(std::vector<measure> &all, const map_quality &q) {
  const char *section = "joins";
  all.push_back({section, "joining_contigs", "contigs that join clones from apart places", q.n_joining});
  all.push_back({section, "wrong_clones", "clones that sit wrongly", q.n_wrong});
  all.push_back({section, "wrong_clones_share", "  share of the clones in contigs",
                 share_of(q.n_wrong, q.n_clones_in_contigs), unit::share});
  all.push_back(
      {section, "folding_chimeras", "chimeric clones with apart stretches in one place of a contig", q.folding.size()});
}

void add_genome_measures(std::vector<measure> &all, const map_quality &q) {
  const char *section = "genome";
  all.push_back(
      {section, "length",
       q.genome_length_given ? "genome length, as given (bp)" : "genome length, by the largest ends of clones (bp)",
       q.genome_length, unit::base_pairs});
  all.push_back({section, "length_given", nullptr, q.genome_length_given});
  all.push_back({section, "coverage", "coverage by clones of the truth", mean_of(q.length_of_clones, q.genome_length),
                 unit::ratio});
  all.push_back({section, "share_in_contigs", "share of the genome in contigs",
                 share_of(q.length_in_contigs, q.genome_length), unit::share});
  all.push_back({section, "islands", "true islands of coverage", q.n_islands});
  all.push_back({section, "islands_length", "  their length (bp)", q.length_of_islands, unit::base_pairs});
  all.push_back({section, "islands_share_in_contigs", "  share of it in contigs",
                 share_of(q.length_in_contigs, q.length_of_islands), unit::share});
  all.push_back({section, "islands_with_contig", "  islands with a contig", q.n_islands_with_contig});
  all.push_back({section, "contigs_an_island", "contigs an island, of those",
                 mean_of(q.n_placed_contigs, q.n_islands_with_contig), unit::ratio});
  all.push_back({section, "most_contigs_an_island", "  most contigs of one island", q.most_contigs_an_island});
}

void add_length_measures(std::vector<measure> &all, const map_quality &q) {
  const char *section = "lengths";
  const auto N50 = [](const length_quality &l) { return l.N50; };
  const auto L50 = [](const length_quality &l) { return l.L50; };
  const auto whole_N50 = [](const length_quality &l) { return static_cast<std::int64_t>(l.N50); };
  all.push_back({section, "N50_bands", "N50 (bands)", figure_of(q.bands, N50)});
  all.push_back({section, "L50_bands", "L50 by bands", figure_of(q.bands, L50)});
  all.push_back({section, "N50", "N50 (bp)", figure_of(q.base_pairs, whole_N50), unit::base_pairs});
  all.push_back({section, "L50", "L50 by bp", figure_of(q.base_pairs, L50)});
  const auto density = [&](const char *key, const char *label, double band_density::*figure) {
    all.push_back({section, key, label,
                   figure_of(q.density, [figure](const band_density &d) { return rounded(d.*figure, 6); }),
                   unit::ratio});
  };
  density("bands_a_kb", "bands a kilobase", &band_density::mean);
  density("bands_a_kb_deviation", "  standard deviation over contigs", &band_density::deviation);
  density("bands_a_kb_least", "  least", &band_density::least);
  density("bands_a_kb_most", "  most", &band_density::most);
}

void add_order_measures(std::vector<measure> &all, const char *section, const std::optional<order_quality> &order) {
  const auto add = [&](const char *key, const char *label, auto figure, unit shown = unit::count) {
    all.push_back({section, key, label, figure_of(order, figure), shown});
  };
  add("clones", "clones in the order", [](const order_quality &o) { return o.n_clones; });
  add("neighbours", "neighbours", [](const order_quality &o) { return o.n_neighbours; });
  add("out_of_order", "neighbours out of order", [](const order_quality &o) { return o.n_out_of_order; });
  add(
      "out_of_order_share", "  share",
      [](const order_quality &o) { return share_of(o.n_out_of_order, o.n_neighbours); }, unit::share);
  add(
      "out_of_order_shift", "  mean shift (bp)",
      [](const order_quality &o) { return o.n_out_of_order > 0 ? json(o.shift / o.n_out_of_order) : json(); },
      unit::base_pairs);
  add("apart", "neighbours that don't truly overlap", [](const order_quality &o) { return o.n_apart; });
  add("tau", "Kendall's tau", tau_of, unit::tau);
}

void add_path_measures(std::vector<measure> &all, const std::optional<path_quality> &path) {
  const auto add = [&](const char *key, const char *label, auto figure, unit shown = unit::count) {
    all.push_back({"tiling_path", key, label, figure_of(path, figure), shown});
  };
  add("clones", "clones", [](const path_quality &p) { return p.n_clones; });
  add("steps", "steps", [](const path_quality &p) { return p.n_steps; });
  add("false_steps", "steps that don't truly overlap", [](const path_quality &p) { return p.n_false_steps; });
  add("fewest", "fewest clones that cover the same", [](const path_quality &p) { return p.n_fewest; });
  add(
      "redundancy", "redundancy",
      [](const path_quality &p) { return p.n_fewest > 0 ? rounded(p.redundancy(), 4) : json(); }, unit::ratio);
  add(
      "covered_share", "share of the contigs that it covers",
      [](const path_quality &p) { return share_of(p.length_covered, p.length_main); }, unit::share);
}

void add_whole_measures(std::vector<measure> &all, const map_quality &q) {
  const char *section = "whole_contigs";
  const whole_quality &w = q.whole;
  const auto known = [](const std::optional<double> &value) { return value ? rounded(*value, 6) : json(); };
  all.push_back({section, "clones", "clones of one place with coordinates", w.n_clones});
  all.push_back({section, "wrong_clones", "clones that sit wrongly, not counting gaps of up to 100 kb", w.n_wrong});
  all.push_back({section, "tau", "Kendall's tau of whole contigs, by clones", known(w.tau()), unit::tau});
  all.push_back({section, "clones_in_order", "clones in contigs of tau 0.9 and more", w.n_clones_right});
  all.push_back({section, "blocks_turned", "blocks turned, by centres", w.n_turned});
  const auto add = [&](const char *out, const char *far, const char *floor, const neighbour_order &order,
                       const char *label, const char *label_far, const char *label_floor) {
    all.push_back({section, out, label, known(order.out_share()), unit::share});
    all.push_back({section, far, label_far, known(order.far_share()), unit::share});
    all.push_back({section, floor, label_floor, known(order.floor_share()), unit::share});
  };
  add("lefts_out_share", "lefts_out_far_share", "lefts_floor_share", w.lefts, "left ends out of order",
      "  of those 2 bands apart and more", "  of true places in whole bands");
  add("centres_out_share", "centres_out_far_share", "centres_floor_share", w.centres, "centres out of order",
      "  of those 2 bands apart and more", "  of true places in whole bands");
  all.push_back({section, "path_over_fewest", "clones of paths over the fewest that cover the same",
                 known(w.path_over_fewest()), unit::ratio});
  all.push_back({section, "share_in_paths", "share of the genome in paths",
                 share_of(w.length_of_paths, q.genome_length), unit::share});
}

void add_Q_measures(std::vector<measure> &all, const map_quality &q) {
  const char *section = "Q_clones";
  const auto add = [&](const char *key, const char *label, auto figure) {
    all.push_back({section, key, label, figure_of(q.Q_clones, figure)});
  };
  all.push_back({section, "chimeric", "chimeric clones of the truth", q.n_chimeric_true});
  add("found", "  found as Q-clones", [](const Q_clone_quality &c) { return c.n_chimeric_found; });
  all.push_back({section, "in_contigs", "  left in contigs", q.n_chimeric_in_contigs});
  add("listed", "Q-clones", [](const Q_clone_quality &c) { return c.n_listed; });
  add("good_lost", "  good clones among them", [](const Q_clone_quality &c) { return c.n_good_lost; });
  add("unknown", "  that the truth lacks", [](const Q_clone_quality &c) { return c.n_unknown; });
}

std::vector<measure> measures_of(const map_quality &q) {
  std::vector<measure> all;
  add_clone_measures(all, q);
  add_join_measures(all, q);
  add_genome_measures(all, q);
  add_length_measures(all, q);
  add_order_measures(all, "order_by_coordinates", q.coordinates);
  add_order_measures(all, "order_by_ordering", q.ordering);
  add_path_measures(all, q.path);
  add_whole_measures(all, q);
  add_Q_measures(all, q);
  return all;
}

struct section_title {
  const char *section, *title;
};
constexpr section_title titles[] = {{"clones", "Contigs and clones"},
                                    {"joins", "False joins"},
                                    {"genome", "Genome and coverage"},
                                    {"lengths", "Lengths of contigs"},
                                    {"order_by_coordinates", "Order by coordinates"},
                                    {"order_by_ordering", "Order by the ordering"},
                                    {"tiling_path", "Tiling path"},
                                    {"whole_contigs", "Whole contigs, whatever their main place"},
                                    {"Q_clones", "Chimeric clones"}};

json row_of_contig(const contig_quality &contig, const true_map &truth) {
  const bool placed = contig.n_places > 0;
  const auto of_order = [](const std::optional<order_quality> &order, auto figure) { return figure_of(order, figure); };
  const auto out = [](const order_quality &o) { return o.n_out_of_order; };
  const auto apart = [](const order_quality &o) { return o.n_apart; };
  const auto density = contig.bands_a_kb();
  json row;
  row["contig"] = contig.name;
  row["clones"] = contig.n_clones;
  row["unknown"] = contig.n_unknown;
  row["chimeric"] = contig.n_chimeric;
  row["wrong"] = contig.n_wrong;
  row["places"] = contig.n_places;
  row["chromosome"] = placed ? json(truth.chromosome_name(contig.main.begin)) : json();
  row["start"] = placed ? json(truth.on_chromosome(contig.main.begin)) : json();
  row["end"] = placed ? json(truth.on_chromosome(contig.main.end)) : json();
  row["length"] = placed ? json(contig.main.length()) : json();
  row["length_bands"] = contig.length_bands ? json(*contig.length_bands) : json();
  row["bands_a_kb"] = density ? rounded(*density, 6) : json();
  row["tau_by_coordinates"] = of_order(contig.coordinates, tau_of);
  row["out_of_order_by_coordinates"] = of_order(contig.coordinates, out);
  row["apart_by_coordinates"] = of_order(contig.coordinates, apart);
  row["tau_by_ordering"] = of_order(contig.ordering, tau_of);
  row["out_of_order_by_ordering"] = of_order(contig.ordering, out);
  row["apart_by_ordering"] = of_order(contig.ordering, apart);
  row["path_clones"] = figure_of(contig.path, [](const path_quality &p) { return p.n_clones; });
  row["path_fewest"] = figure_of(contig.path, [](const path_quality &p) { return p.n_fewest; });
  row["path_false_steps"] = figure_of(contig.path, [](const path_quality &p) { return p.n_false_steps; });
  row["path_covered_share"] =
      figure_of(contig.path, [](const path_quality &p) { return share_of(p.length_covered, p.length_main); });
  row["whole_tau"] = contig.whole.tau() ? rounded(*contig.whole.tau(), 6) : json();
  row["wrong_gaps_left_out"] = contig.whole.n_wrong;
  row["width"] = contig.width >= 0 ? json(contig.width) : json();
  return row;
}

// Rows of damage have the same fields whatever their kind; null where one doesn't apply.
class damage_report {
public:
  damage_report(const map_quality &quality, const true_map &truth) : quality_(quality), truth_(truth) {}

  json made() const {
    json damage;
    json &wrong = damage["wrong_clones"] = json::array();
    for (const misplaced_clone &found : quality_.misplaced)
      wrong.push_back(row(contig(found.contig), clone(found.clone), json(), json(), distance(found.distance)));
    json &joining = damage["joining_chimeras"] = json::array();
    for (const joining_clone &found : quality_.joining)
      joining.push_back(row(contig(found.contig), clone(found.clone), json(), json(), json()));
    json &folding = damage["folding_chimeras"] = json::array();
    for (const folding_clone &found : quality_.folding)
      folding.push_back(row(contig(found.contig), clone(found.clone), json(), json(), found.distance));
    json &breaks = damage["breaks"] = json::array();
    for (const broken_island &found : quality_.breaks)
      breaks.push_back(row(contig(found.left), json(), contig(found.right), json(), found.gap));
    damage["false_path_steps"] = steps(quality_.false_path_steps);
    damage["apart_by_coordinates"] = steps(quality_.apart_by_coordinates);
    damage["apart_by_ordering"] = steps(quality_.apart_by_ordering);
    if (quality_.Q_clones) {
      damage["missed_chimeras"] = clones(quality_.Q_clones->missed);
      damage["lost_good_clones"] = clones(quality_.Q_clones->lost);
    }
    return damage;
  }

private:
  static json row(json contig, json clone, json other, json place, json distance) {
    return {{"contig", std::move(contig)},
            {"clone", std::move(clone)},
            {"other", std::move(other)},
            {"place", std::move(place)},
            {"distance", std::move(distance)}};
  }
  json contig(std::int32_t number) const { return quality_.contigs[static_cast<std::size_t>(number)].name; }
  json clone(true_clone number) const { return truth_.name(number); }
  static json distance(std::int64_t base_pairs) { return base_pairs >= 0 ? json(base_pairs) : json(); }
  json steps(const std::vector<damaging_step> &found) const {
    json rows = json::array();
    for (const damaging_step &step : found)
      rows.push_back(
          row(contig(step.contig), clone(step.first), clone(step.second), step.place, distance(step.distance)));
    return rows;
  }
  json clones(const std::vector<true_clone> &found) const {
    json rows = json::array();
    for (const true_clone number : found)
      rows.push_back(row(json(), clone(number), json(), json(), json()));
    return rows;
  }

  const map_quality &quality_;
  const true_map &truth_;
};

std::string value_text(const json &value, unit shown) {
  if (value.is_null())
    return "-";
  if (value.is_number_integer() && shown != unit::share)
    return number_text_thousands(value.get<std::int64_t>());
  if (!value.is_number())
    return value.dump();
  const double number = value.get<double>();
  switch (shown) {
  case unit::share:
    return number_text(100 * number, 2) + " %";
  case unit::ratio:
    return number_text(number, 3);
  case unit::tau:
    return number_text(number, 4);
  default:
    return number_text_shortest(number);
  }
}

struct damage_words {
  const char *kind, *title;
};
constexpr damage_words words_of_damage[] = {
    {"wrong_clones", "Clones that sit wrongly, by their distance from the contig's main place"},
    {"joining_chimeras", "Chimeric clones with stretches in two of a contig's places"},
    {"folding_chimeras", "Chimeric clones with apart stretches in one place, by the gap between these"},
    {"breaks", "Contigs that follow each other in one island, by the gap between them (below 0: they overlap)"},
    {"false_path_steps", "Steps of tiling paths that don't truly overlap"},
    {"apart_by_coordinates", "Neighbours by coordinates that don't truly overlap"},
    {"apart_by_ordering", "Neighbours by the ordering that don't truly overlap"},
    {"missed_chimeras", "Chimeric clones that aren't Q-clones"},
    {"lost_good_clones", "Good clones among the Q-clones"}};

std::string damage_text(const json &row, const char *kind) {
  const auto word = [&](const char *field) { return row[field].get<std::string>(); };
  std::string text = "  ";
  if (!row["contig"].is_null())
    text += word("contig") + "  ";
  if (!row["place"].is_null())
    text += "step " + row["place"].dump() + "  ";
  if (!row["clone"].is_null())
    text += word("clone") + "  ";
  if (!row["other"].is_null())
    text += word("other") + "  ";
  if (!row["distance"].is_null())
    text += number_text_thousands(row["distance"].get<std::int64_t>()) + " bp";
  else if (std::string_view(kind) == "wrong_clones" || !row["place"].is_null())
    text += "on another chromosome";
  return text.substr(0, text.find_last_not_of(' ') + 1) + "\n";
}

std::string cell_text(const json &value) {
  if (value.is_null())
    return "-";
  return value.is_string() ? value.get<std::string>() : value.dump();
}

void write_rows(result_file &file, const std::string &start, const json &rows) {
  for (const json &row : rows) {
    std::string line = start;
    for (const auto &[name, value] : row.items())
      line += (line.empty() ? "" : "\t") + cell_text(value);
    file.line(line);
  }
}

std::string heads_of(const json &row) {
  std::string heads;
  for (const auto &[name, value] : row.items())
    heads += (heads.empty() ? "" : "\t") + name;
  return heads;
}

} // namespace

json report_of_quality(const map_quality &quality, const true_map &truth) {
  json report;
  for (measure &found : measures_of(quality))
    report["measures"][found.section][found.key] = std::move(found.value);
  json &contigs = report["contigs"] = json::array();
  for (const contig_quality &contig : quality.contigs)
    contigs.push_back(row_of_contig(contig, truth));
  report["damage"] = damage_report(quality, truth).made();
  return report;
}

std::string text_of_quality(const map_quality &quality, const json &report) {
  std::string text;
  const std::vector<measure> all = measures_of(quality);
  for (const section_title &section : titles) {
    text += (text.empty() ? "" : "\n") + std::string(section.title) + "\n";
    for (const measure &found : all)
      if (std::string_view(found.section) == section.section && found.label != nullptr)
        text += fmt::format("  {:<{}}{:>14}\n", found.label, width_of_labels, value_text(found.value, found.shown));
  }
  for (const damage_words &words : words_of_damage) {
    const auto kind = report["damage"].find(words.kind);
    if (kind == report["damage"].end() || kind->empty())
      continue;
    text += fmt::format("\n{}: {}\n", words.title, kind->size());
    for (std::size_t i = 0; i < std::min(kind->size(), damages_shown); ++i)
      text += damage_text((*kind)[i], words.kind);
    if (kind->size() > damages_shown)
      text += fmt::format("  and {} more: --json or --out gives all\n", kind->size() - damages_shown);
  }
  text.pop_back();
  return text;
}

void write_table_of_contigs(const json &report, const std::filesystem::path &file) {
  const placed_clones none;
  result_file table(file);
  table.line(heads_of(row_of_contig(contig_quality{}, true_map(none))));
  write_rows(table, "", report["contigs"]);
  table.commit();
}

void write_table_of_damage(const json &report, const std::filesystem::path &file) {
  result_file table(file);
  table.line("damage\tcontig\tclone\tother\tplace\tdistance");
  for (const auto &[kind, rows] : report["damage"].items())
    write_rows(table, kind, rows);
  table.commit();
}

} // namespace orb
