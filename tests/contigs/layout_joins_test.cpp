#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "contigs/layout_checks.h"
#include "contigs/layout_ends.h"
#include "contigs/layout_finish.h"
#include "contigs/layout_joins.h"
#include "contigs/layout_method.h"
#include "net/clone_depth.h"
#include "support/contig_test_library.h"
#include "support/temporary_folder.h"

using namespace orb_test;

namespace {

// A line of random bands with clones on it; what is laid of them is true unless a test moves it.
struct true_line {
  library_data data;
  std::vector<std::int32_t> axis;
  std::vector<double> centre{0};
  random_source random;

  true_line(std::uint64_t seed, int n_axis) : random(seed) {
    for (int i = 0; i < n_axis; ++i)
      axis.push_back(500 + random.number_up_to(40000));
  }
  std::vector<std::int32_t> bands(int from, int to) {
    std::vector<std::int32_t> found;
    for (int i = from; i < to; ++i)
      if (random.uniform() > 0.02)
        found.push_back(axis[static_cast<std::size_t>(i)] + random.number_up_to(3) - 2);
    return found;
  }
  void add(const std::vector<std::int32_t> &bands_of, double at) {
    data.add("J" + std::to_string(1000 + centre.size()), bands_of);
    centre.push_back(at);
  }
  void add_clones(int n, int from, int to) {
    for (int c = 0; c < n; ++c) {
      const int length = 50 + random.number_up_to(30), begin = from + random.number_up_to(to - from - length) - 1;
      add(bands(begin, begin + length), begin + length / 2.0);
    }
  }
};

// A layout with all clones in one piece.
struct laid_session {
  contig_session session;
  clone_bands clones;
  band_scale scale;
  scored_net net;
  clone_layout layout;

  explicit laid_session(const true_line &line)
      : session(line.data, 10), clones(session.database), scale(band_scale_of(clones, 1)),
        net(session.signif.net(), clones, scale, 0, 1, [] { return true; }), layout(clones, scale, net) {
    layout.pieces.emplace_back();
    for (clone_number c = 1; c <= clones.n; ++c) {
      layout.centre[static_cast<std::size_t>(c)] = line.centre[static_cast<std::size_t>(c)];
      layout.piece_of[static_cast<std::size_t>(c)] = 0;
      layout.pieces[0].push_back(c);
    }
    layout.sort_piece(0);
  }
};

// Takes each clone out and looks what the others fall into.
std::vector<clone_number> forks_by_taking_out(const clone_layout &layout) {
  std::vector<clone_number> forks;
  for (const clone_number c : layout.pieces[0]) {
    std::vector<std::int32_t> part(static_cast<std::size_t>(layout.clones.n) + 1, -1);
    std::int32_t n_parts = 0, most = 0;
    for (const clone_number start : layout.pieces[0]) {
      std::vector<clone_number> waiting{start};
      if (start == c || part[static_cast<std::size_t>(start)] >= 0)
        continue;
      part[static_cast<std::size_t>(start)] = n_parts;
      for (std::size_t i = 0; i < waiting.size(); ++i)
        for (const scored_edge &edge : layout.net.of(waiting[i]))
          if (layout.is_overlap(edge) && edge.to != c && part[static_cast<std::size_t>(edge.to)] < 0) {
            part[static_cast<std::size_t>(edge.to)] = n_parts;
            waiting.push_back(edge.to);
          }
      ++n_parts;
    }
    for (std::int32_t k = 0; n_parts > 1 && k < n_parts; ++k) {
      std::int32_t against = 0;
      for (const clone_number a : layout.pieces[0])
        for (const clone_number b : layout.pieces[0]) {
          const auto is_near = [&](clone_number d) {
            return d != c && std::abs(layout.centre[static_cast<std::size_t>(d)] -
                                      layout.centre[static_cast<std::size_t>(c)]) <= layout.n_of(c);
          };
          against += part[static_cast<std::size_t>(a)] == k && part[static_cast<std::size_t>(b)] != k && is_near(a) &&
                     is_near(b) && layout.should_be_linked(a, b) && !layout.linked(a, b);
        }
      most = std::max(most, against);
    }
    if (most >= 3)
      forks.push_back(c);
  }
  std::sort(forks.begin(), forks.end());
  return forks;
}

} // namespace

// Two lines that go on past the arms of the chimera which ties them: it is found, and nothing on a line that only grows
// thin.
TEST(layout_joins, forks_are_found) {
  for (std::uint64_t seed = 1; seed <= 6; ++seed) {
    true_line line(seed, 700);
    line.add_clones(18, 0, 250);
    line.add_clones(18, 300, 550);
    std::vector<std::int32_t> chimera = line.bands(110, 140);
    for (const std::int32_t band : line.bands(410, 440))
      chimera.push_back(band);
    line.add(chimera, 140);
    for (std::size_t c = 1; c < line.centre.size(); ++c) // the second line as the chimera's other arm has it
      if (line.centre[c] > 300)
        line.centre[c] -= 270;
    laid_session made(line);
    const std::vector<clone_number> found = forking_clones(made.layout, 0);
    EXPECT_EQ(found, forks_by_taking_out(made.layout)) << seed;
    EXPECT_TRUE(std::binary_search(found.begin(), found.end(), made.clones.n)) << seed;

    true_line thin(seed, 500);
    thin.add_clones(40, 0, 500);
    laid_session whole(thin);
    EXPECT_EQ(forking_clones(whole.layout, 0), std::vector<clone_number>{}) << seed;
  }
}

// One clone ties two lines together: a chimera whose arms lie near their ends, or a good clone over a gap or where they
// overlap. The bands of what lies over each other tell; where nothing does, it depends on how many false ones are
// expected.
TEST(layout_joins, bands_tell_chimeras_from_bridges) {
  constexpr clone_number n_left = 14;
  for (std::uint64_t seed = 1; seed <= 6; ++seed)
    for (const int begin : {150, 205, 400}) { // of the second line
      const bool chimeric = begin == 400, meet = begin == 150;
      true_line line(seed, 700);
      line.add_clones(n_left, 0, 200);
      line.add_clones(14, begin, begin + 200);
      std::vector<std::int32_t> bridge = line.bands(130, 170);
      for (const std::int32_t band : chimeric ? line.bands(430, 470) : line.bands(170, 270))
        bridge.push_back(band);
      line.add(bridge, chimeric ? 170 : 200);
      for (std::size_t c = 1; chimeric && c < line.centre.size(); ++c)
        if (line.centre[c] > 300)
          line.centre[c] -= 260; // as the chimera has it
      laid_session made(line);
      for (clone_number a = 1; a <= n_left; ++a) // no chance overlap ties them
        for (clone_number b = n_left + 1; b < made.clones.n; ++b)
          made.net.end_both(a, b, edge_end::too_far);
      const std::vector<lone_bridge> found = lone_bridges(made.layout, 0);
      const auto at =
          std::find_if(found.begin(), found.end(), [&](const lone_bridge &b) { return b.clone == made.clones.n; });
      ASSERT_NE(at, found.end()) << seed;
      EXPECT_TRUE(std::all_of(at->left.begin(), at->left.end(), [](clone_number c) { return c <= n_left; })) << seed;
      EXPECT_EQ(is_believed(made.layout, *at, 0), !chimeric) << seed;
      EXPECT_EQ(is_believed(made.layout, *at, 10), meet) << seed;
    }
}

// Two contigs, 0 to 200 and 400 to 600 of a line, and last a clone that ties them, with arms so many bands short of the
// ends at 200 and at 400: in no piece, or as the outermost clone of the first.
struct two_contigs {
  true_line line;
  std::unique_ptr<laid_session> made;

  // `lacking`: bands of those next to its contig's end that the last clone doesn't show.
  two_contigs(std::uint64_t seed, int short_of_first, int short_of_second, bool outermost, int lacking = 0)
      : line(seed, 700) {
    line.add_clones(20, 0, 200);
    line.add(line.bands(140, 200), 170);
    const auto n_first = static_cast<clone_number>(line.centre.size() - 1);
    line.add_clones(20, 400, 600);
    line.add(line.bands(400, 460), 430);
    std::vector<std::int32_t> last = line.bands(158 - short_of_first, 200 - short_of_first);
    for (int k = 0; k < lacking; ++k)
      last.erase(last.end() - 3 - 2 * k);
    for (const std::int32_t band : line.bands(400 + short_of_second, 435 + short_of_second))
      last.push_back(band);
    line.add(last, 158 - short_of_first + 77 / 2.0);
    made = std::make_unique<laid_session>(line);
    clone_layout &layout = made->layout;
    layout.pieces.assign(2, {});
    for (clone_number c = 1; c <= made->clones.n; ++c) {
      const bool is_last = c == made->clones.n;
      const int piece = c <= n_first || is_last ? 0 : 1;
      layout.piece_of[static_cast<std::size_t>(c)] = is_last && !outermost ? -1 : piece;
      if (!is_last || outermost)
        layout.pieces[static_cast<std::size_t>(piece)].push_back(c);
    }
    layout.sort_piece(0), layout.sort_piece(1);
  }
  std::int32_t joined(std::int32_t (layout_joiner::*join)()) {
    const go_on_function go_on = [] { return true; };
    layout_joiner joiner(made->layout, 1, go_on);
    return (joiner.*join)();
  }
};

// A clone that goes on from an end shows what lies there. A chimera of which one contig goes on past its arm doesn't,
// if only by a few bands: it joins hardly anything, as a suspect between two contigs or as the outermost clone of one.
TEST(layout_joins, clones_show_the_ends_that_they_join) {
  int bridged = 0, falsely = 0, by_stretches = 0, by_stretches_falsely = 0;
  for (std::uint64_t seed = 1; seed <= 8; ++seed)
    for (const int short_of : {0, 7}) {
      two_contigs made(seed, short_of, 0, false);
      clone_layout &layout = made.made->layout;
      const clone_number last = layout.clones.n;
      layout.suspect[static_cast<std::size_t>(last)] = suspect_reason::two_sides;
      EXPECT_EQ(share_shown(layout, end_of_piece(layout, 0, true), last, 42) > 0.66, short_of == 0) << seed;
      EXPECT_GT(share_shown(layout, end_of_piece(layout, 1, false), last, 35), 0.66) << seed;
      (short_of == 0 ? bridged : falsely) += made.joined(&layout_joiner::join_by_bridges);
      two_contigs end(seed, 0, short_of, true);
      (short_of == 0 ? by_stretches : by_stretches_falsely) += end.joined(&layout_joiner::join_end_stretches);
    }
  EXPECT_GE(bridged, 6);
  EXPECT_EQ(falsely, 0);
  EXPECT_GE(by_stretches, 6);
  EXPECT_LE(by_stretches_falsely, 2);
}

// What one clone tells is believed while chimeras that look like it are rare: of end clones one that shows all that
// lies behind it longer than one that lacks a part. (Among these two contigs 10 chimeras give 0.3 by chance.) As
// chimeras count suspects that lie in no contig and fit no two ends, and misfits.
TEST(layout_joins, one_clone_is_believed_while_chimeras_are_rare) {
  enum { told, untold, bridge };
  const auto joined = [](int kind, const auto &count_chimeras) {
    int n = 0;
    for (std::uint64_t seed = 1; seed <= 8; ++seed) {
      two_contigs made(seed, 0, 0, kind != bridge, kind == untold ? 3 : 0);
      clone_layout &layout = made.made->layout;
      if (kind == bridge)
        layout.suspect[static_cast<std::size_t>(layout.clones.n)] = suspect_reason::two_sides;
      count_chimeras(layout);
      n += made.joined(kind == bridge ? &layout_joiner::join_by_bridges : &layout_joiner::join_end_stretches);
    }
    return n;
  };
  for (const int n_chimeras : {1, 4, 40})
    for (const int kind : {told, untold, bridge}) {
      const int n = joined(kind, [&](clone_layout &layout) { layout.telling.share = 1.0 / n_chimeras; });
      const bool believed = n_chimeras == 1 || (n_chimeras == 4 && kind != untold);
      EXPECT_TRUE(believed ? n >= 6 : n <= 1) << kind << " " << n_chimeras << ": " << n;
    }
  for (const bool in_contig : {true, false}) {
    const int n = joined(told, [&](clone_layout &layout) {
      layout.telling.clones.assign(40, 1);
      layout.suspect[1] = suspect_reason::two_sides;
      if (!in_contig) {
        layout.piece_of[1] = -1;
        std::erase(layout.pieces[0], 1);
      }
    });
    EXPECT_TRUE(in_contig ? n >= 6 : n <= 1) << in_contig << ": " << n;
  }
  const int beside_misfits = joined(told, [](clone_layout &layout) {
    for (clone_number c = 1; c <= 16; ++c) {
      layout.suspect[static_cast<std::size_t>(c)] = suspect_reason::misfit;
      layout.piece_of[static_cast<std::size_t>(c)] = -1;
      std::erase(layout.pieces[0], c);
    }
  });
  EXPECT_LE(beside_misfits, 1);
  EXPECT_GE(joined(bridge, [](clone_layout &layout) { layout.telling.clones.assign(40, layout.clones.n); }), 6);
}

// A chimera too thin on one side for the clone test, with an arm far from both ends: a clone that hangs on its other
// arm doesn't come into the contig.
TEST(layout_joins, nothing_hangs_on_a_chimera) {
  int hanging = 0;
  for (std::uint64_t seed = 1; seed <= 8; ++seed) {
    true_line line(seed, 700);
    line.add_clones(60, 0, 300);
    std::vector<std::int32_t> chimera = line.bands(100, 145);
    for (const std::int32_t band : line.bands(500, 545))
      chimera.push_back(band);
    line.add(chimera, 0);
    line.add(line.bands(495, 560), 0);
    contig_session session(line.data, 10);
    const layout_progress progress{[](const std::string &) {}, [](double) { return true; }};
    const layout_result found = lay_contigs(clone_bands(session.database), session.signif.net(), {1, 1}, progress);
    ASSERT_FALSE(found.contigs.empty());
    EXPECT_GE(found.contigs[0].clones.size(), 50u) << seed;
    hanging += static_cast<int>(std::ranges::count(found.contigs[0].clones, 62));
  }
  EXPECT_LE(hanging, 1);
}

// Good clones of thin places that the clone test took for two, and that came into a contig all the same, are no
// suspects any more.
TEST(layout_joins, suspects_in_contigs_are_acquitted) {
  int acquitted = 0;
  for (std::uint64_t seed = 1; seed <= 4; ++seed) {
    true_line line(seed, 900);
    line.add_clones(40, 0, 440);
    line.add_clones(40, 460, 900);
    for (int k = 0; k < 9; ++k) {
      line.add(line.bands(380 + 2 * k, 450), 415 + k);
      line.add(line.bands(450, 520 - 2 * k), 485 - k);
    }
    for (const int k : {0, 4}) // two over a place that no other covers: each is all that ties the other's sides
      line.add(line.bands(412 + k, 488 + k), 450 + k);
    const laid_session made(line);
    const auto suspects = find_suspects(made.clones, made.scale, made.net, 1, [](double) { return true; });
    EXPECT_GE(suspects.size(), 2u) << seed;
    const layout_progress progress{[](const std::string &) {}, [](double) { return true; }};
    const layout_result found = lay_contigs(made.clones, made.session.signif.net(), {1, 1}, progress);
    for (const clone_suspect &suspect : suspects) {
      const bool laid = std::ranges::any_of(
          found.contigs, [&](const laid_contig &c) { return std::ranges::count(c.clones, suspect.clone) > 0; });
      EXPECT_EQ(laid, std::ranges::count(found.suspects, suspect.clone, &clone_suspect::clone) == 0) << seed;
      acquitted += laid && std::ranges::count(found.joins, suspect.clone, &layout_join::bridge) == 0;
    }
  }
  EXPECT_GE(acquitted, 3);
}

// A clone beside an end overlaps one clone only, which can't tell its two sides: those that it would lie over do.
TEST(layout_joins, clones_are_attached_outside) {
  for (std::uint64_t seed = 1; seed <= 8; ++seed) {
    true_line line(seed, 400);
    line.add_clones(30, 60, 260);
    line.add(line.bands(220, 280), 250);
    line.add(line.bands(255, 315), 285);
    laid_session made(line);
    const clone_number last = made.clones.n;
    for (clone_number c = 1; c < last - 1; ++c)
      made.net.end_both(c, last, edge_end::too_far);
    made.layout.piece_of[static_cast<std::size_t>(last)] = -1;
    std::erase(made.layout.pieces[0], last);
    const go_on_function go_on = [] { return true; };
    layout_joiner joiner(made.layout, 1, go_on);
    ASSERT_EQ(joiner.attach_clones(), 1) << seed;
    EXPECT_NEAR(made.layout.centre[static_cast<std::size_t>(last)], 285, 8) << seed;
  }
}

// Clones taken out of a piece come back wave after wave; who remembers what has changed finds the same as who looks at
// all clones each time.
TEST(layout_joins, clones_are_attached_in_waves) {
  true_line line(11, 700);
  line.add_clones(70, 0, 700);
  const go_on_function go_on = [] { return true; };
  std::vector<std::vector<clone_number>> pieces;
  for (const bool remembers : {true, false}) {
    laid_session made(line);
    made.layout.pieces[0].clear();
    for (clone_number c = 1; c <= made.clones.n; ++c)
      if (line.centre[static_cast<std::size_t>(c)] < 150)
        made.layout.pieces[0].push_back(c);
      else
        made.layout.piece_of[static_cast<std::size_t>(c)] = -1;
    made.layout.sort_piece(0);
    auto joiner = std::make_unique<layout_joiner>(made.layout, 2, go_on);
    int waves = 0;
    for (; joiner->attach_clones() > 0; ++waves)
      if (!remembers)
        joiner = std::make_unique<layout_joiner>(made.layout, 1, go_on);
    EXPECT_GT(waves, 3);
    pieces.push_back(made.layout.pieces[0]);
  }
  EXPECT_GT(pieces[0].size(), 60u);
  EXPECT_EQ(pieces[0], pieces[1]);
}

namespace {

// Puts clones into pieces by where they lie; -1: into none.
template <class function> void take_apart(laid_session &made, const function &piece_at) {
  made.layout.pieces.assign(3, {});
  for (clone_number c = 1; c <= made.clones.n; ++c) {
    const std::int32_t piece = piece_at(c);
    made.layout.piece_of[static_cast<std::size_t>(c)] = piece;
    if (piece >= 0)
      made.layout.pieces[static_cast<std::size_t>(piece)].push_back(c);
  }
  for (std::int32_t p = 0; p < 3; ++p)
    made.layout.sort_piece(p);
}

const go_on_function always = [] { return true; };

} // namespace

// A suspect over a gap between two contigs ends in both and is believed; not one with a third of its bands from
// elsewhere, nor either of two that lead from one end to different contigs.
TEST(layout_joins, bridges_end_in_both_contigs) {
  enum { true_one, three_parts, rivalled };
  for (std::uint64_t seed = 1; seed <= 6; ++seed)
    for (const int kind : {true_one, three_parts, rivalled}) {
      true_line line(seed, 1000);
      for (const int from : {0, 205, 500})
        line.add_clones(22, from, from + 200);
      for (const int from : {140, 145, 205, 210, 500, 505})
        line.add(line.bands(from, from + (from < 200 ? 200 - from : 60)), from + 30);
      const clone_number n_good = static_cast<clone_number>(line.centre.size()) - 1;
      std::vector<std::int32_t> bridge = line.bands(kind == three_parts ? 165 : 155, kind == true_one ? 250 : 200);
      if (kind == three_parts)
        for (const int from : {205, 900})
          std::ranges::copy(line.bands(from, from + (from == 205 ? 35 : 30)), std::back_inserter(bridge));
      if (kind == rivalled)
        std::ranges::copy(line.bands(200, 250), std::back_inserter(bridge));
      line.add(bridge, 202);
      if (kind == rivalled) {
        bridge = line.bands(150, 200);
        std::ranges::copy(line.bands(500, 545), std::back_inserter(bridge));
        line.add(bridge, 202);
      }
      laid_session made(line);
      take_apart(made, [&](clone_number c) {
        const double x = line.centre[static_cast<std::size_t>(c)];
        return c > n_good ? -1 : x < 202 ? 0 : x < 450 ? 1 : 2;
      });
      for (clone_number c = n_good + 1; c <= made.clones.n; ++c)
        made.layout.suspect[static_cast<std::size_t>(c)] = suspect_reason::two_sides;
      layout_joiner joiner(made.layout, 1, always);
      EXPECT_EQ(joiner.join_by_bridges(), kind == true_one ? 1 : 0) << seed << " " << kind;
      if (kind != true_one)
        continue;
      EXPECT_EQ(made.layout.joins.front().bridge, made.clones.n);
      std::vector<double> apart;
      for (const clone_number c : made.layout.pieces[0])
        apart.push_back(std::abs(made.layout.centre[static_cast<std::size_t>(c)] -
                                 made.layout.centre[static_cast<std::size_t>(made.clones.n)]) -
                        std::abs(line.centre[static_cast<std::size_t>(c)] - 202.5));
      EXPECT_LT(*std::ranges::max_element(apart), 10) << seed;
    }
}

// A suspect that shows the ends of two contigs and a few bands deep in one of them is no bridge.
TEST(layout_joins, bridges_show_nothing_but_ends) {
  for (std::uint64_t seed = 1; seed <= 6; ++seed)
    for (const int deep : {0, 12}) {
      true_line line(seed, 700);
      line.add_clones(20, 40, 170);
      line.add_clones(12, 410, 560);
      for (const int from : {0, 2, 138, 139, 140, 140, 140, 400, 401, 402, 403, 404})
        line.add(line.bands(from, from + 60), from + 30);
      std::vector<std::int32_t> bridge = line.bands(5, 5 + deep);
      for (const int from : {160, 400})
        std::ranges::copy(line.bands(from, from + 40), std::back_inserter(bridge));
      line.add(bridge, 200);
      laid_session made(line);
      take_apart(made, [&](clone_number c) {
        return c == made.clones.n ? -1 : line.centre[static_cast<std::size_t>(c)] < 300 ? 0 : 1;
      });
      made.layout.suspect[static_cast<std::size_t>(made.clones.n)] = suspect_reason::two_sides;
      layout_joiner joiner(made.layout, 1, always);
      EXPECT_EQ(joiner.join_by_bridges(), deep == 0 ? 1 : 0) << seed;
    }
}

// A single clone joins an end that it overlaps, unless another does as well.
TEST(layout_joins, edges_join_where_there_is_no_rival) {
  for (std::uint64_t seed = 1; seed <= 6; ++seed)
    for (const int n_single : {1, 2}) {
      true_line line(seed, 1000);
      line.add_clones(24, 0, 182);
      for (const int from : {120, 125, 130, 135, 140})
        line.add(line.bands(from, 200), (from + 200) / 2.0);
      const auto last = static_cast<clone_number>(line.centre.size()) - 1;
      for (int k = 0; k < n_single; ++k) {
        std::vector<std::int32_t> single = line.bands(170, 200);
        std::ranges::copy(line.bands(700 + 100 * k, 730 + 100 * k), std::back_inserter(single));
        line.add(single, 210);
      }
      laid_session made(line);
      take_apart(made, [&](clone_number c) { return c <= last ? 0 : -1; });
      layout_joiner joiner(made.layout, 1, always);
      EXPECT_EQ(joiner.join_by_edges(), n_single == 1 ? 1 : 0) << seed;
    }
}

// Two contigs of which the ends overlap are joined; not two whose ends hold repeats, two of five bands of each.
TEST(layout_joins, edges_of_repeats_join_nothing) {
  for (std::uint64_t seed = 1; seed <= 6; ++seed)
    for (const bool repeats : {false, true}) {
      true_line line(seed, 700);
      const int second = repeats ? 400 : 180;
      for (std::size_t i = 0; repeats && i < 50; ++i)
        if (i % 5 < 2)
          line.axis[400 + i] = line.axis[150 + i];
      line.add_clones(20, 0, 200);
      for (const int from : {136, 138, 140})
        line.add(line.bands(from, 200), (from + 200) / 2.0);
      const auto n_first = static_cast<clone_number>(line.centre.size()) - 1;
      line.add_clones(20, second, second + 200);
      for (const int length : {60, 62, 64})
        line.add(line.bands(second, second + length), second + length / 2.0);
      laid_session made(line);
      take_apart(made, [&](clone_number c) { return c <= n_first ? 0 : 1; });
      layout_joiner joiner(made.layout, 1, always);
      EXPECT_EQ(joiner.join_by_edges(), repeats ? 0 : 1) << seed;
    }
}

// A single clone shows as much of a contig as it is laid over: not one whose part ends where five clones do and two go
// on (which say that it lies further in), nor one with a second part deep in the contig.
TEST(layout_joins, single_clones_lie_flush) {
  enum { flush, further_in, deep_part };
  for (std::uint64_t seed = 1; seed <= 6; ++seed)
    for (const int kind : {flush, further_in, deep_part}) {
      const int end = kind == further_in ? 186 : 200;
      true_line line(seed, 1000);
      line.add_clones(20, 40, 170);
      for (const int from : {0, 2})
        line.add(line.bands(from, from + 60), from + 30);
      for (const int from : {120, 124, 128, 132, 136})
        line.add(line.bands(from, end), (from + end) / 2.0);
      for (const int from : {140, 145})
        line.add(line.bands(from, 200), (from + 200) / 2.0);
      const auto last = static_cast<clone_number>(line.centre.size()) - 1;
      std::vector<std::int32_t> single = line.bands(end - 36, end);
      const int other = kind == deep_part ? 5 : 700;
      std::ranges::copy(line.bands(other, other + 27), std::back_inserter(single));
      line.add(single, 210);
      laid_session made(line);
      take_apart(made, [&](clone_number c) { return c <= last ? 0 : -1; });
      layout_joiner joiner(made.layout, 1, always);
      EXPECT_EQ(joiner.join_by_edges(), kind == flush ? 1 : 0) << seed << " " << kind;
    }
}

// Third clones and pairs of neighbours, counted by looking at all clones of the piece.
TEST(layout_joins, witnesses_are_counted_as_by_hand) {
  true_line line(12, 500);
  line.add_clones(60, 0, 500);
  for (std::size_t c = 1; c < line.centre.size(); c += 7)
    line.centre[c] += 60; // some lie wrongly, so that some speak against
  laid_session made(line);
  const clone_layout &layout = made.layout;
  const auto neighbours = [&](clone_number a, clone_number b) {
    const scored_edge *edge = layout.net.find(a, b);
    return edge != nullptr && layout.is_overlap(*edge);
  };
  layout_neighbours around(layout);
  std::int64_t all_against = 0, all_not_linked = 0;
  for (clone_number a = 1; a <= made.clones.n; ++a) {
    std::int32_t n_pairs = 0, n_not_linked = 0, n_for = 0, n_against = 0;
    for (clone_number b = 1; b <= made.clones.n; ++b) {
      std::int32_t same = 0, odd = 0;
      for (clone_number w = 1; w <= made.clones.n; ++w)
        for (const auto &[from, to] : {std::pair(a, b), std::pair(b, a)})
          if (w != a && w != b && neighbours(from, w) && layout.should_be_linked(w, to))
            ++(layout.linked(w, to) ? same : odd);
      if (neighbours(a, b)) {
        count_third_clones(layout, around, a, b, n_for, n_against);
        EXPECT_EQ(std::pair(n_for, n_against), std::pair(same, odd)) << a << " " << b;
        all_against += odd;
      }
      for (clone_number c = b + 1; c <= made.clones.n; ++c)
        if (neighbours(a, b) && neighbours(a, c) && layout.should_be_linked(b, c)) {
          ++n_pairs;
          n_not_linked += !layout.linked(b, c);
        }
    }
    std::int32_t pairs = 0, not_linked = 0;
    count_neighbour_pairs(layout, around, a, pairs, not_linked);
    EXPECT_EQ(std::pair(pairs, not_linked), std::pair(n_pairs, n_not_linked)) << a;
    all_not_linked += not_linked;
  }
  EXPECT_GT(std::min(all_against, all_not_linked), 20);
}

// A clone with a few bands from elsewhere is named, and no other.
TEST(layout_joins, loose_bands_are_seen) {
  true_line line(4, 900);
  line.add_clones(70, 0, 400);
  std::vector<std::int32_t> bands = line.bands(200, 260);
  for (const std::int32_t band : line.bands(700, 716))
    bands.push_back(band);
  line.add(bands, 230);
  laid_session made(line);
  std::vector<laid_contig> contigs;
  ASSERT_TRUE(finish_pieces(
      made.layout, std::vector<std::int32_t>{0}, 1, [](double) { return true; }, contigs));
  EXPECT_EQ(contigs[0].loose_bands, std::vector<clone_number>{made.clones.n});
  for (const auto &path : contigs[0].paths)
    EXPECT_EQ(std::count(path.begin(), path.end(), made.clones.n), 0);
}

// All ends that match another one are among those that the index finds for it, and these are few.
TEST(layout_joins, the_index_of_ends_loses_none) {
  true_line line(5, 400);
  line.add_clones(60, 0, 400);
  laid_session made(line);
  std::vector<contig_end> ends;
  std::vector<std::int64_t> living;
  for (int i = 0; i < 120; ++i) { // end stretches at random places: some share bands, most don't
    contig_end end;
    end.piece = i;
    const int from = line.random.number_up_to(300);
    for (int d = 0; d < 100; ++d)
      if (line.random.uniform() > 0.1)
        end.bands.push_back({line.axis[static_cast<std::size_t>(from + d)], static_cast<float>(d),
                             static_cast<float>(d), static_cast<float>(d + 1), false});
    std::sort(end.bands.begin(), end.bands.end(),
              [](const end_band &a, const end_band &b) { return a.value < b.value; });
    ends.push_back(end);
    if (i % 5 != 0)
      living.push_back(i);
  }
  const double need = 9;
  const end_index index(made.layout, ends, living);
  const end_matcher matcher(made.layout);
  end_index::scratch place;
  std::vector<std::int64_t> found;
  std::size_t n_found = 0, n_matching = 0;
  for (const std::int64_t a : living) {
    index.look_up(ends[static_cast<std::size_t>(a)], need, place, found);
    n_found += found.size();
    for (const std::int64_t b : living)
      if (matcher.match(ends[static_cast<std::size_t>(a)], ends[static_cast<std::size_t>(b)]).score >= need) {
        ++n_matching;
        EXPECT_TRUE(std::binary_search(found.begin(), found.end(), b)) << a << " " << b;
      }
  }
  EXPECT_GT(n_matching, living.size());
  EXPECT_LT(n_found, n_matching + living.size() * living.size() / 10);
}

// Windows end where they end by their clones alone, and their axes meet.
TEST(layout_joins, windows_make_one_axis) {
  true_line line(6, 1500);
  line.add_clones(260, 0, 1500);
  laid_session made(line);
  const std::vector<std::int32_t> pieces{0};
  std::vector<laid_contig> whole, cut;
  const auto poll = [](double) { return true; };
  ASSERT_TRUE(finish_pieces(made.layout, pieces, 1, poll, whole));
  ASSERT_TRUE(finish_pieces(made.layout, pieces, 2, poll, cut, 60));
  ASSERT_EQ(cut[0].clones.size(), 260u);
  std::vector<float> left(261);
  for (std::size_t i = 0; i < 260; ++i)
    left[static_cast<std::size_t>(whole[0].clones[i])] = whole[0].left_exact[i];
  for (std::size_t i = 0; i < 260; ++i)
    EXPECT_NEAR(cut[0].left_exact[i], left[static_cast<std::size_t>(cut[0].clones[i])], 6);
  std::vector<laid_contig> stopped;
  EXPECT_FALSE(finish_pieces(
      made.layout, pieces, 2, [](double) { return false; }, stopped, 60));
}

// A clone that alone bridges a place lies where depth is low, and the table of Q-clones says so.
TEST(layout_joins, depth_is_low_where_one_clone_bridges) {
  true_line line(9, 460);
  line.add_clones(60, 0, 200);
  line.add_clones(60, 258, 460);
  line.add(line.bands(185, 275), 230);
  laid_session made(line);
  const clone_number bridge = made.clones.n;
  const class_net &net = made.session.signif.net();
  const double usual = usual_depth(net, made.clones), depth = depth_at_clone(net, made.clones, bridge);
  EXPECT_GT(depth, 1);
  EXPECT_LT(depth, usual / 2);
  const temporary_folder folder;
  const std::vector<vertex_number> found{5, bridge};
  EXPECT_EQ(print_depths(net, made.clones, found, folder.path() / "depth.txt", [] { return true; }), 1);
  EXPECT_NE(bytes_of(folder.path() / "depth.txt").find("2\t121\tJ1121\t"), std::string::npos);
}
