// The spring simulation, one step at a time: nodes push each other, edges pull like springs of no length, friction
// slows all down. It is this system's own model, not that of graph distances.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "frame/process_frame.h"
#include "viewer/layout_graph.h"

namespace orb {

// What all nets of a session share, from run to run.
struct spring_values {
  float k_coef = 0.05f; // spring constant; below 0 it becomes 0.05 when a step begins
  float friction_coef = 1.0f, dt = 0.0f, rest_distance = 100.0f; // set by each step
};

// "Set stiffness of springs": asks for `k_coef` unless a value is given. What isn't a number of 0 or more is ignored.
// What was entered.
std::string ask_for_stiffness(process_frame &frame, spring_values &values, const std::string &value = {});

// By node; entry 0 is unused.
struct spring_nodes {
  std::vector<float> x, y, vx, vy, fx, fy;

  void resize(std::int32_t n) {
    for (std::vector<float> *values : {&x, &y, &vx, &vy, &fx, &fy})
      values->resize(static_cast<std::size_t>(n) + 1, 0.0f);
  }
};

struct spring_step {
  double energy = 0; // sum of squared speeds
  float x_max = 0;   // the longest edge
  float v_max = 0, f_max = 0;
  bool go_on = false;
};

class spring_layout {
public:
  // `threads`: 0 is all cores; results don't depend on it.
  explicit spring_layout(int threads = 0) : threads_(threads) {}

  // For each node its unfrozen neighbours; arcs carry no spring. What is frozen is read here alone. n + e.
  void make_KamadaKawaii_Arrays(const layout_graph &graph, std::span<const std::uint8_t> frozen);

  // One step of the unfrozen nodes. Without any spring it asks once ("NB! Problem in KK algorithm...") and ends before
  // a node moves; `warned` keeps that it was asked. Polls the frame; a run that is stopped doesn't
  // go on, and a long step that is left midway moves no node. Unfrozen * all nodes + edges; allocates nothing after the
  // first step.
  spring_step CalcPositionsNodes_KamadaKawaii_step(bool use_exp, spring_values &values, spring_nodes &nodes,
                                                   bool &warned, process_frame &frame);

  // Adjacency of node i: entries adjacency_start(i) .. adjacency_start(i + 1) - 1, from 1.
  std::span<const std::int32_t> adjacency_start() const { return adjacency_start_; }
  std::span<const std::int32_t> adjacency_edge() const { return adjacency_edge_; }
  std::span<const std::int32_t> adjacency_node() const { return adjacency_node_; }
  std::span<const std::int32_t> unfrozen() const { return unfrozen_; } // ascending, from 0

private:
  bool add_repulsion(bool use_exp, spring_nodes &nodes, process_frame &frame);
  float add_springs(float k_coef, spring_nodes &nodes) const;
  float largest_force(const spring_nodes &nodes) const;
  void move_nodes(const spring_values &values, float v_limit, spring_nodes &nodes, spring_step &step) const;

  int threads_;
  std::vector<std::int32_t> adjacency_start_, adjacency_edge_, adjacency_node_, unfrozen_, stiffness_;
  std::vector<float> at_x_, at_y_, force_x_, force_y_; // of the unfrozen nodes, in their order
};

} // namespace orb
