// A generated library with a net object over it, a folder of its own and prepared answers.
#pragma once

#include <string>
#include <vector>

#include "frame/files.h"
#include "net/class_clone_net_signif.h"
#include "support/library_generator.h"
#include "support/scripted_frame.h"

namespace orb {

// What the owner of the settings says when a net was loaded.
inline void settings_of_loaded_net(project_settings &settings) {
  settings.use_file_with_connections = settings.same_metric_as_net = settings.same_metric_net_ord_as_net = true;
}

struct net_fixture : scripted_frame {
  project_settings settings;
  class_DB_of_clones database;
  class_usable_values usable_values;
  class_clone_dist_table table;
  metric_context context{frame, settings, database, usable_values, table};
  overlap_rule rule;
  class_clone_net_signif signif{context, [this] { settings_of_loaded_net(settings); }};

  explicit net_fixture(const generated_library &wanted) {
    settings.threads = 2;
    generate_library(frame, wanted, database, usable_values);
    record = {};
  }

  std::string native_bytes(const class_net &net) {
    net.save_net_type(frame, folder / "bytes.ORBns");
    return bytes("bytes.ORBns");
  }
};

// A net of n vertices from undirected edges (first end below the second), value 20 unless told, burial code 0.
struct plain_edge {
  vertex_number a, b;
  double value = 20;
};
inline class_net net_of_edges(std::int32_t n, const std::vector<plain_edge> &edges) {
  class_net net;
  net.inicializate_net(n, static_cast<std::int64_t>(edges.size()) * 2);
  for (vertex_number v = 1; v <= n; ++v) {
    net.add_vertex_fast(0);
    for (vertex_number w = 1; w <= n; ++w)
      for (const plain_edge &edge : edges)
        if ((edge.a == v && edge.b == w) || (edge.b == v && edge.a == w))
          net.add_edge_fast(v, w, edge.value, 0, 0);
  }
  net.finish_of_adding();
  net.test_neighbours_sorted();
  return net;
}

} // namespace orb
