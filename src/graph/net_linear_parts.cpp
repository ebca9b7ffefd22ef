// Classes of vertices: maximal chains of vertices of degree at most 2, and the two forms of a partition.
#include <algorithm>
#include <cassert>
#include <numeric>

#include "graph/class_net.h"

namespace orb {

void class_net::next_in_liniar_part(process_frame &frame, vertex_number vertex_testing, vertex_number vertex_input,
                                    vertex_number &next, bool &is_link) const {
  const auto run = edges_of_vertex(vertex_testing);
  is_link = run.size() == 2;
  next = 0;
  if (!is_link)
    return;
  const vertex_number a = run[0].neighbour, b = run[1].neighbour;
  if (a == vertex_input)
    next = b;
  else if (b == vertex_input)
    next = a;
  else
    frame.program_end_now("vertex_testing " + std::to_string(vertex_testing) + " is connected with " +
                          std::to_string(a) + " and " + std::to_string(b) +
                          ", but not connected with vertex_input=" + std::to_string(vertex_input));
}

namespace {

// One chain being walked and numbered.
class chain_walk {
public:
  chain_walk(process_frame &frame, const class_net &net, number_list &class_number, std::int32_t c)
      : frame_(frame), net_(net), class_number_(class_number), c_(c) {}

  // From a free end: the links get the class, and a second free end too; a branching stays without.
  void from_free_end(vertex_number v) {
    class_number_(v) = c_;
    vertex_number before = v, at = net_.edges_of_vertex(v).front().neighbour, next = 0;
    bool is_link = false;
    for (net_.next_in_liniar_part(frame_, at, before, next, is_link); is_link;
         net_.next_in_liniar_part(frame_, at, before, next, is_link)) {
      if (class_number_(at) == c_)
        return; // only in a net whose records lack their mirrors
      class_number_(at) = c_;
      before = at;
      at = next;
    }
    if (net_.number_of_edges_for_vertex_total_get(at) == 1)
      class_number_(at) = c_;
  }

  // From a link towards one of its neighbours, up to a branching or round the cycle.
  void from_link(vertex_number v, vertex_number towards) {
    vertex_number before = v, at = towards, next = 0;
    bool is_link = false;
    for (net_.next_in_liniar_part(frame_, at, before, next, is_link); is_link;
         net_.next_in_liniar_part(frame_, at, before, next, is_link)) {
      if (class_number_(at) == c_)
        return;
      if (class_number_(at) != 0)
        frame_.program_end_now("Error in sub find_and_unite_liniar_parts_of_net!");
      class_number_(at) = c_;
      before = at;
      at = next;
    }
  }

private:
  process_frame &frame_;
  const class_net &net_;
  number_list &class_number_;
  std::int32_t c_;
};

} // namespace

void class_net::find_and_unite_liniar_parts_of_net(process_frame &frame, number_list &class_number,
                                                   std::int32_t &n_classes, number_list &degree) const {
  class_number.clear();
  class_number.resize(private_n_vertices_);
  degree.resize(private_n_vertices_);
  for (vertex_number v = 1; v <= private_n_vertices_; ++v)
    degree(v) = number_of_edges_for_vertex_total_get(v);
  n_classes = 0;
  for (vertex_number v = 1; v <= private_n_vertices_; ++v)
    if (class_number(v) == 0 && degree(v) == 1)
      chain_walk(frame, *this, class_number, ++n_classes).from_free_end(v);
  for (vertex_number v = 1; v <= private_n_vertices_; ++v) {
    if (class_number(v) != 0 || degree(v) != 2)
      continue;
    class_number(v) = ++n_classes;
    chain_walk walk(frame, *this, class_number, n_classes);
    walk.from_link(v, edges_of_vertex(v)[0].neighbour);
    walk.from_link(v, edges_of_vertex(v)[1].neighbour);
  }
  for (vertex_number v = 1; v <= private_n_vertices_; ++v)
    if (class_number(v) == 0)
      class_number(v) = ++n_classes;
}

namespace {

std::string numbered(const std::string &text, std::int64_t number) {
  return text + std::to_string(number);
}

void check_class_number(process_frame &frame, std::int32_t n_of_classes, std::int32_t c) {
  if (c < 1 || c > n_of_classes)
    frame.program_end_now(numbered("Class number must be from 1 to ", n_of_classes) + numbered(", but it is ", c));
}

void lists_from_class_numbers(process_frame &frame, const number_list &class_number, std::int32_t n_of_classes,
                              std::int32_t n_of_elements, number_list &list_of_elements, number_list &adress_of_start) {
  adress_of_start.clear();
  adress_of_start.resize(n_of_classes + 1);
  adress_of_start(1) = 1;
  for (std::int32_t i = 1; i <= n_of_elements; ++i) {
    check_class_number(frame, n_of_classes, class_number(i));
    ++adress_of_start(class_number(i) + 1);
  }
  std::vector<std::int32_t> next(static_cast<std::size_t>(n_of_classes) + 1, 0);
  for (std::int32_t c = 1; c <= n_of_classes; ++c) {
    next[static_cast<std::size_t>(c)] = adress_of_start(c);
    adress_of_start(c + 1) += adress_of_start(c);
  }
  list_of_elements.resize(n_of_elements);
  for (std::int32_t i = 1; i <= n_of_elements; ++i)
    list_of_elements(next[static_cast<std::size_t>(class_number(i))]++) = i;
}

void class_numbers_from_lists(process_frame &frame, number_list &class_number, std::int32_t n_of_classes,
                              std::int32_t n_of_elements, const number_list &list_of_elements,
                              const number_list &adress_of_start) {
  if (adress_of_start(1) != 1)
    frame.program_end_now(numbered("adress_of_start(1)=", adress_of_start(1)) + "<>1");
  for (std::int32_t c = 1; c <= n_of_classes; ++c)
    if (adress_of_start(c) > adress_of_start(c + 1))
      frame.program_end_now(numbered("adress_of_start(c) > adress_of_start(c + 1): c=", c) +
                            numbered(", a(c)=", adress_of_start(c)) + numbered(", a(c+1)=", adress_of_start(c + 1)));
  if (adress_of_start(n_of_classes + 1) != n_of_elements + 1)
    frame.program_end_now(
        numbered("adress_of_start(n_of_classes + 1) <> n_of_elements + 1: n_of_classes=", n_of_classes) +
        numbered(", a(n_of_classes + 1)=", adress_of_start(n_of_classes + 1)) +
        numbered(", n_of_elements + 1=", n_of_elements + 1));
  class_number.clear();
  class_number.resize(n_of_elements);
  for (std::int32_t c = 1; c <= n_of_classes; ++c)
    for (std::int32_t k = adress_of_start(c); k < adress_of_start(c + 1); ++k) {
      const std::int32_t element = list_of_elements(k);
      if (element < 1 || element > n_of_elements)
        frame.program_end_now(numbered("Element must be from 1 to ", n_of_elements) +
                              numbered(", but it is ", element));
      class_number(element) = c;
    }
  for (std::int32_t i = 1; i <= n_of_elements; ++i)
    if (class_number(i) == 0)
      frame.message(numbered("class_number(", i) + ") = 0");
}

} // namespace

void class_net::class_number_and_lists(process_frame &frame, number_list &class_number, std::int32_t &n_of_classes,
                                       std::int32_t n_of_elements, number_list &list_of_elements,
                                       number_list &adress_of_start, bool from_class_numbers) {
  if (from_class_numbers)
    lists_from_class_numbers(frame, class_number, n_of_classes, n_of_elements, list_of_elements, adress_of_start);
  else
    class_numbers_from_lists(frame, class_number, n_of_classes, n_of_elements, list_of_elements, adress_of_start);
}

} // namespace orb
