// The files of a drawing: the net for the Pajek program, and the table of its edges.
#include <algorithm>

#include "drawing/class_net_draw.h"
#include "drawing/palette.h"
#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace {

void text_in_quotes_append(std::string &to, std::string_view text) {
  for (const char c : text)
    to += c == '"' ? '\'' : static_cast<unsigned char>(c) < 32 ? ' ' : c;
}

// The names of colours and patterns, with one message for each unknown number of a file.
class name_lookup {
public:
  explicit name_lookup(process_frame &frame) : frame_(frame) {}
  std::string_view color(std::int32_t index) {
    std::string_view name;
    if (!color_name_of_scale(index, name))
      tell(unknown_color_text(index));
    return name;
  }
  std::string_view pattern(std::int32_t number) {
    std::string_view name;
    if (!line_pattern_name(number, name))
      tell(unknown_pattern_text(number));
    return name;
  }

private:
  void tell(const std::string &text) {
    if (std::find(told_.begin(), told_.end(), text) != told_.end())
      return;
    told_.push_back(text);
    frame_.alarm(text);
  }
  process_frame &frame_;
  std::vector<std::string> told_;
};

bool print_edges(result_file &out, const class_net_draw &drawing, const draw_edges &edges, std::string_view head,
                 double threshold, name_lookup &names) {
  out.line(std::string(head) + std::to_string(drawing.n_shown(edges, threshold)));
  std::string line;
  std::size_t n_edges = 0;
  for (const draw_edge &edge : edges.items) {
    if (!drawing.is_shown(edge, threshold))
      continue;
    if (!drawing.goes_on_behind(++n_edges))
      return false;
    line.clear();
    whole_number_append(line, edge.i);
    line += ' ';
    whole_number_append(line, edge.j);
    line += " 1 w ";
    whole_number_append(line, edge.w);
    line += " c ";
    line += names.color(edge.c);
    line += " p ";
    line += names.pattern(edge.p);
    line += " l \"";
    text_in_quotes_append(line, edges.label(edge));
    line += '"';
    out.line(line);
  }
  return true;
}

} // namespace

std::string text_in_quotes(std::string_view text) {
  std::string quoted;
  quoted.reserve(text.size());
  text_in_quotes_append(quoted, text);
  return quoted;
}

bool class_net_draw::print_net_pajek(const std::filesystem::path &file, double threshold,
                                     std::string_view title) const {
  name_lookup names(*frame_);
  result_file out(file);
  out.line("*Network " + text_in_quotes(title));
  out.line("*Vertices " + std::to_string(private_n_vertices_));
  std::string line;
  for (std::int32_t k = 1; k <= private_n_vertices_; ++k) {
    const draw_vertex &at = vertex(k);
    line.clear();
    whole_number_append(line, k);
    line += " \"";
    text_in_quotes_append(line, at.caption);
    line += "\" sh ";
    line += shape_name(at.shape);
    line += " x_fact ";
    whole_number_append(line, at.size);
    line += " y_fact ";
    whole_number_append(line, at.size);
    line += " ic ";
    line += names.color(at.ic);
    line += " bc ";
    line += names.color(at.bc);
    out.line(line);
  }
  if (!print_edges(out, *this, vectors_, "*Arcs ", threshold, names) ||
      !print_edges(out, *this, edges_, "*Edges ", threshold, names))
    return false;
  out.commit();
  return true;
}

void class_net_draw::print_all_edges_values(const std::filesystem::path &file) const {
  result_file out(file);
  out.line("edge\ti\tname\tj\tname\tval\tlabel");
  std::string line;
  std::int64_t number = 0;
  for (const draw_edge &edge : edges_.items) {
    if (edge.i < 1 || edge.j < 1 || edge.i > private_n_vertices_ || edge.j > private_n_vertices_)
      continue;
    line.clear();
    whole_number_append(line, ++number);
    for (const std::int32_t end : {edge.i, edge.j}) {
      line += '\t';
      whole_number_append(line, end);
      line += '\t';
      text_in_quotes_append(line, vertex(end).caption);
    }
    line += '\t';
    number_text_append(line, edge.value, 1);
    line += '\t';
    text_in_quotes_append(line, edges_.label(edge));
    out.line(line);
  }
  out.commit();
}

} // namespace orb
