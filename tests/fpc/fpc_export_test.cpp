// The .fpc file for strict readers: random maps come back as they were, and what it can't hold is refused.
#include "fpc/fpc_export.h"

#include "database/class_markers.h"
#include "support/clustering_helpers.h"
#include "support/strict_fpc_reader.h"

namespace {

using namespace orb_test;

// Contigs of chance over a library of chance; the last clone is alone.
struct random_map : pinned_clock, scripted_frame {
  project_settings settings;
  class_DB_of_clones database;
  class_FPCto_import registry{frame, settings, database};
  class_net net;
  random_source random;
  static constexpr clone_number n_clones = 40;

  explicit random_map(std::uint64_t seed) : pinned_clock(1296705900), random(seed) {
    database.inicalise_database(frame, n_clones, 0);
    for (clone_number clone = 1; clone <= n_clones; ++clone) {
      std::vector<band_value> bands; // a few clones have equal ones, some have none
      for (int i = 0, n = random.number_up_to(4) - 1, step = random.number_up_to(2); i < n; ++i)
        bands.push_back(15000 * (i + step));
      database.ListOfBands_from_real_database_fast_all_bands_set(clone, bands);
      database.name_of_clone_set(clone, "C" + std::to_string(clone));
    }
    database.total_number_of_clones_set(n_clones);
    database.sort_clones_by_name(frame);
    make_contigs();
    make_net();
    make_markers();
  }

  void make_contigs() {
    registry.clear_all_run(5, false);
    for (clone_number first = 1, n = 0; first < n_clones; first += n) {
      n = std::min(random.number_up_to(8), n_clones - first);
      number_list list = number_list::range(first, first + n - 1);
      registry.add_new_cluster(list, "cl_" + std::to_string(first), "", false);
      const cluster_id id = registry.n_list_of_all_cluster_names_get();
      for (const clone_number clone : list.members()) {
        const double left = random.number_up_to(100) - (seed_is_odd() ? 20 : 0);
        registry.clone_coordinates_set(clone, left, left + random.number_up_to(30) - 1);
      }
      if (random.number_up_to(4) > 1)
        registry.make_min_and_max_coor_for_cluster(id);
    }
    registry.add_new_cluster({n_clones}, "last", "", false);
  }
  bool seed_is_odd() { return random.number_up_to(2) == 1; }

  void make_net() {
    std::vector<std::int16_t> code(std::size_t{n_clones + 1} * (n_clones + 1));
    const auto at = [](clone_number a, clone_number b) { return static_cast<std::size_t>(a * (n_clones + 1) + b); };
    for (clone_number a = 1; a <= n_clones; ++a)
      for (clone_number b = 1; b < a; ++b)
        code[at(b, a)] = burial_code_mirrored(code[at(a, b)] = static_cast<std::int16_t>(random.number_up_to(4) - 1));
    net.inicializate_net(n_clones, n_clones);
    for (clone_number a = 1; a <= n_clones; ++a) {
      net.add_vertex_fast(0);
      for (clone_number b = 1; b <= n_clones; ++b)
        if (a != b)
          net.add_edge_fast(a, b, 20 + std::min(a, b), 0, code[at(a, b)]);
    }
    net.finish_of_adding();
  }

  void make_markers() {
    number_list numbers;
    std::vector<bool> are_new;
    database.markers().redim_private_arrays(n_clones, 5, 5);
    for (const clone_number clone : {3, 9, n_clones})
      database.markers().add_clone_with_markers_new(frame, clone, {"", "mA", "m " + std::to_string(clone)}, 2, numbers,
                                                    are_new);
    database.markers().finish_of_adding();
  }

  bool save(contig_map &map) {
    return make_contig_map(frame, database, registry, &net, map) &&
           write_fpc_export(frame, database, map, 15.5, folder / "x.fpc");
  }
  fpc_file read() const { return strict_fpc_reader(folder / "x.fpc").read(); }
};

std::string of_contig(const fpc_file &read, clone_number clone) {
  const std::string &number = read.clones.at("C" + std::to_string(clone)).contig;
  return number.empty() ? "" : read.remarks.at(std::stoul(number) - 1);
}

// Whether the clone has a holder by the net's codes, told from the codes alone.
bool has_holder(const random_map &m, const fpc_file &read, clone_number clone) {
  const auto size = [&m](clone_number c) { return m.database.number_of_bands_in_clone_get(c); };
  for (const net_edge &edge : m.net.edges_of_vertex(clone))
    if ((edge.index2 == 1 || edge.index2 == 3) && !of_contig(read, clone).empty() &&
        of_contig(read, edge.neighbour) == of_contig(read, clone) &&
        (size(edge.neighbour) > size(clone) || (size(edge.neighbour) == size(clone) && edge.neighbour < clone)))
      return true;
  return false;
}

void expect_place(const random_map &m, const fpc_file &read, clone_number clone) {
  const fpc_clone &found = read.clones.at("C" + std::to_string(clone));
  const cluster_id id = m.registry.clone_in_cluster_get(clone);
  if (m.registry.n_clones_in_cluster_get(id) < 2) {
    EXPECT_EQ(found.contig, "");
    return;
  }
  const cluster_information &cluster = m.registry.cluster_information_get(id);
  const bool placed = cluster.min_and_max_known;
  const double shift = std::max(0.0, -cluster.min_left);
  EXPECT_EQ(of_contig(read, clone), m.registry.name_of_cluster_get(id) + (placed ? "" : " (without coordinates)"));
  EXPECT_EQ(std::stod(found.left), placed ? m.registry.clone_coor_left(clone) + shift : 0);
  EXPECT_EQ(std::stod(found.right),
            placed ? m.registry.clone_coor_right(clone) + shift : std::max<double>(0, double(found.bands.size()) - 1));
}

void expect_burial(const random_map &m, const fpc_file &read, clone_number clone) {
  const fpc_clone &found = read.clones.at("C" + std::to_string(clone));
  EXPECT_EQ(!found.buried.empty(), has_holder(m, read, clone));
  if (found.buried.empty())
    return;
  EXPECT_EQ(read.clones.at(found.held_by).buried, "") << "a clone that holds others is not buried";
  EXPECT_EQ(read.clones.at(found.held_by).contig, found.contig);
  const bool same = read.clones.at(found.held_by).bands == found.bands;
  if (found.buried != "Pseudo") {
    EXPECT_EQ(found.buried, same ? "Exact" : "Approximate");
  }
}

TEST(fpc_export, random_maps_come_back_as_they_were) {
  std::map<std::string, int> burials;
  for (std::uint64_t seed = 1; seed <= 12; ++seed) {
    random_map m(seed);
    contig_map map;
    ASSERT_TRUE(m.save(map));
    const fpc_file read = m.read();
    EXPECT_EQ(read.order.size(), std::size_t{m.n_clones});
    EXPECT_EQ(read.markers, (std::vector<std::string>{"mA", "m 3", "m 9", "m 40"}));
    EXPECT_EQ(read.tolerance + " " + read.gel_length + " " + read.cutoff, "12 60000 3.2e-16");
    for (clone_number clone = 1; clone <= m.n_clones; ++clone) {
      SCOPED_TRACE(testing::Message() << "seed " << seed << ", clone " << clone);
      const fpc_clone &found = read.clones.at("C" + std::to_string(clone));
      const auto bands = m.database.bands_of_clone(clone);
      EXPECT_EQ(found.bands, std::vector<int>(bands.begin(), bands.end()));
      EXPECT_EQ(found.markers.size(), m.database.markers().markers_of_clone(clone).size());
      expect_place(m, read, clone);
      expect_burial(m, read, clone);
      ++burials[found.buried];
    }
  }
  EXPECT_EQ(burials.size(), 4u) << "all three ways of burial must occur";
}

TEST(fpc_export, bins_and_what_an_fpc_file_cannot_hold) {
  random_map m(1);
  contig_map map;
  m.database.index_of_band_type_set(1);
  ASSERT_TRUE(m.save(map));
  EXPECT_EQ(m.read().tolerance + " " + m.read().gel_length, "0 2500");
  std::filesystem::remove(m.folder / "x.fpc");
  m.database.name_of_clone_set(7, "C\"7");
  EXPECT_FALSE(m.save(map));
  EXPECT_EQ(m.last_message(), "Clone C\"7 has a character that can't stand in an .fpc file.");
  m.database.name_of_clone_set(7, "C7");
  m.database.ListOfBands_from_real_database_fast_all_bands_set(8, std::vector<band_value>{65535, 65536});
  EXPECT_FALSE(m.save(map));
  EXPECT_EQ(m.last_message(), "Band 65536 of clone C8 doesn't fit the 16 bits of a .cor file.");
  EXPECT_FALSE(std::filesystem::exists(m.folder / "x.fpc"));
  m.registry.clone_coordinates_set(1, 9, 3);
  m.registry.make_min_and_max_coor_for_cluster(m.registry.clone_in_cluster_get(1));
  m.registry.clone_coordinates_set(2, 1, 1e300);
  EXPECT_FALSE(m.save(map));
  EXPECT_NE(m.last_message().find("can't be: left "), std::string::npos) << m.last_message();
}

} // namespace
