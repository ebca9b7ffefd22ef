// The layout of a net with false edges, through the command.
#include "support/layout_nets.h"
#include "support/project_session.h"

using namespace orb_test;

namespace {

class layout_of_false_edges : public session_test {
protected:
  // Spearman's correlation of the picture with the steps along `edges`.
  double correlation(const std::string &layout, std::int32_t n, const std::vector<layout_edge> &edges) const {
    session run;
    run.done({"net.layout file=" + text("n.net") + " out=" + text(layout + ".tsv") + " layout=" + layout});
    std::istringstream places(bytes_of(path(layout + ".tsv")));
    std::vector<float> x(static_cast<std::size_t>(n) + 1), y(x);
    std::string line, name;
    std::getline(places, line); // the head
    for (std::size_t i = 1; i < x.size(); ++i)
      places >> name >> x[i] >> y[i];
    EXPECT_FALSE(places.fail());
    return distance_correlation({n, edges}, x, y);
  }
};

TEST_F(layout_of_false_edges, shows_steps_or_unfolds_the_line) {
  constexpr std::int32_t n = 600;
  const std::vector<layout_edge> all = interval_net(n, 13, 0.002, 1), line = interval_net(n, 13, 0, 1);
  std::string net = "*Vertices " + std::to_string(n) + "\n";
  for (std::int32_t i = 1; i <= n; ++i)
    net += std::to_string(i) + " \"c" + std::to_string(i) + "\"\n";
  net += "*Edges " + std::to_string(all.size()) + "\n";
  for (const layout_edge &edge : all)
    net += std::to_string(edge.from) + " " + std::to_string(edge.to) + " 1\n";
  std::ofstream(path("n.net")) << net;
  EXPECT_GT(correlation("multilevel", n, all), 0.9);
  EXPECT_GT(correlation("unfolded", n, line), 0.99);
}

} // namespace
