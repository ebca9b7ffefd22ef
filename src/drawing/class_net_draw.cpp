#include "drawing/class_net_draw.h"

#include <algorithm>

#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace {

// n * n edges are provided for while n + 2 is below the square root of the limit.
constexpr bool square_is_provided_for(std::int64_t n) {
  return (n + 2) * (n + 2) < class_net_draw::Const_MAX_n_edges_get();
}
static_assert(square_is_provided_for(2234) && !square_is_provided_for(2235));

} // namespace

void class_net_draw::inicialisate_net(std::int32_t n) {
  n = std::max(n, 0);
  vertices_.assign(1, {});
  private_n_vertices_ = 0;
  edges_ = {};
  vectors_ = {};
  max_n_vertices_ = std::min(n, Const_MAX_n_vertices_get());
  max_n_edges_ = square_is_provided_for(n) ? n * n : Const_MAX_n_edges_get();
  overflow_reported_ = n > Const_MAX_n_vertices_get();
  if (overflow_reported_)
    frame_->alarm("n=" + std::to_string(n) + ">" + std::to_string(Const_MAX_n_vertices_get()) +
                  "=MAX_n_vertices. Not all will be shown!");
}

void class_net_draw::add_vertex(std::string caption, std::int16_t shape, std::int16_t size, std::int16_t ic,
                                std::int16_t bc) {
  if (private_n_vertices_ >= max_n_vertices_) {
    if (!overflow_reported_)
      frame_->alarm("private_n_vertices >= max!=" + std::to_string(max_n_vertices_) + ", will not be shown!");
    overflow_reported_ = true;
    return;
  }
  vertices_.push_back({std::move(caption), shape, size, ic, bc});
  ++private_n_vertices_;
}

void class_net_draw::add_edge(std::int32_t i, std::int32_t j, double value, std::string_view label, std::int16_t c,
                              std::int16_t w, std::int16_t p, bool is_vector, std::int16_t burial) {
  draw_edges &to = is_vector ? vectors_ : edges_;
  if (to.items.size() >= static_cast<std::size_t>(max_n_edges_)) {
    if (!overflow_reported_)
      frame_->alarm((is_vector ? "private_n_vectors=" : "private_n_edges=") + std::to_string(to.items.size()) +
                    " >= max=" + std::to_string(max_n_edges_) + ". Not all will be printed!");
    overflow_reported_ = true;
    return;
  }
  to.items.push_back({i, j, value, to.labels.size(), static_cast<std::uint32_t>(label.size()), c, w, p, burial});
  to.labels += label;
}

std::int32_t class_net_draw::n_shown(const draw_edges &edges, double threshold) const {
  return static_cast<std::int32_t>(std::count_if(edges.items.begin(), edges.items.end(),
                                                 [&](const draw_edge &edge) { return is_shown(edge, threshold); }));
}

} // namespace orb
