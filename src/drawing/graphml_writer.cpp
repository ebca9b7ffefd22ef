#include "drawing/graphml_writer.h"

#include <array>
#include <cmath>
#include <span>

#include "drawing/palette.h"
#include "drawing/utf8_text.h"
#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace {

void append_ascii(std::string &to, char c) {
  switch (c) {
  case '&':
    to += "&amp;";
    return;
  case '<':
    to += "&lt;";
    return;
  case '>':
    to += "&gt;";
    return;
  case '"':
    to += "&quot;";
    return;
  case '\t':
    to += "&#9;";
    return;
  case '\n':
    to += "&#10;";
    return;
  case '\r':
    to += "&#13;";
    return;
  default:
    to += static_cast<unsigned char>(c) < 32 ? ' ' : c;
  }
}

struct key_declaration {
  const char *id, *of, *name, *type;
};

constexpr std::array keys_of_graph{key_declaration{"g_title", "graph", "title", "string"},
                                   key_declaration{"g_metric", "graph", "metric", "string"},
                                   key_declaration{"g_cutoff", "graph", "cutoff", "double"}};
constexpr std::array keys_of_look{key_declaration{"v_label", "node", "label", "string"},
                                  key_declaration{"v_shape", "node", "shape_name", "string"},
                                  key_declaration{"v_size", "node", "size_factor", "int"},
                                  key_declaration{"v_color", "node", "color", "string"},
                                  key_declaration{"v_color_name", "node", "color_name", "string"},
                                  key_declaration{"v_border", "node", "border_color", "string"},
                                  key_declaration{"v_border_name", "node", "border_color_name", "string"},
                                  key_declaration{"v_r", "node", "r", "int"},
                                  key_declaration{"v_g", "node", "g", "int"},
                                  key_declaration{"v_b", "node", "b", "int"}};
constexpr std::array keys_of_clones{
    key_declaration{"v_name", "node", "name", "string"}, key_declaration{"v_clone", "node", "clone", "int"},
    key_declaration{"v_bands", "node", "n_bands", "int"}, key_declaration{"v_buried", "node", "buried", "boolean"},
    key_declaration{"v_marks", "node", "marks", "string"}};
constexpr std::array keys_of_positions{key_declaration{"v_x", "node", "x", "double"},
                                       key_declaration{"v_y", "node", "y", "double"}};
constexpr std::array keys_of_edges{key_declaration{"e_label", "edge", "label", "string"},
                                   key_declaration{"e_value", "edge", "value", "double"},
                                   key_declaration{"e_color", "edge", "color", "string"},
                                   key_declaration{"e_color_name", "edge", "color_name", "string"},
                                   key_declaration{"e_width", "edge", "width", "int"},
                                   key_declaration{"e_pattern", "edge", "pattern", "string"},
                                   key_declaration{"e_first", "edge", "first", "string"},
                                   key_declaration{"e_second", "edge", "second", "string"},
                                   key_declaration{"e_burial", "edge", "burial", "int"},
                                   key_declaration{"e_arc", "edge", "is_arc", "boolean"}};

// XML of one line each, into a reused text.
class xml_lines {
public:
  explicit xml_lines(result_file &out) : out_(out) {}
  void line(std::string_view text) { out_.line(text); }

  void keys(std::span<const key_declaration> declared) {
    for (const key_declaration &key : declared)
      out_.line(std::string("<key id=\"") + key.id + "\" for=\"" + key.of + "\" attr.name=\"" + key.name +
                "\" attr.type=\"" + key.type + "\"/>");
  }

  void begin() { text_.clear(); }
  void plain(std::string_view text) { text_ += text; }
  void number(std::int64_t value) { whole_number_append(text_, value); }
  void data(std::string_view key, std::string_view text) {
    open(key);
    xml_text_append(text_, text);
    text_ += "</data>";
  }
  void data(std::string_view key, std::int64_t value) {
    open(key);
    whole_number_append(text_, value);
    text_ += "</data>";
  }
  void data_node(std::string_view key, std::int32_t k) {
    open(key);
    text_ += 'n';
    whole_number_append(text_, k);
    text_ += "</data>";
  }
  void data_real(std::string_view key, double value) {
    open(key);
    text_ += std::isnan(value) ? "NaN" : std::isinf(value) ? (value > 0 ? "INF" : "-INF") : number_text_shortest(value);
    text_ += "</data>";
  }
  void data_bool(std::string_view key, bool value) { data(key, value ? "true" : "false"); }
  void data_colour(std::string_view key, std::string_view key_of_name, std::int16_t scale_colour) {
    std::string_view name;
    color_name_of_scale(scale_colour, name); // the .net form tells of unknown ones
    static constexpr char digits[] = "0123456789abcdef";
    const colour_value value = color_from_name(name);
    char hex[] = "#rrggbb";
    for (int part = 0; part < 3; ++part) { // red in the low byte
      hex[1 + 2 * part] = digits[(value >> (8 * part + 4)) & 15];
      hex[2 + 2 * part] = digits[(value >> (8 * part)) & 15];
    }
    data(key, std::string_view(hex, 7));
    data(key_of_name, name);
  }
  void end() { out_.line(text_); }

private:
  void open(std::string_view key) {
    text_ += "<data key=\"";
    text_ += key;
    text_ += "\">";
  }
  result_file &out_;
  std::string text_;
};

void print_heads(xml_lines &xml, std::string_view title, const graphml_details &details, bool with_positions) {
  xml.line("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  xml.line("<graphml xmlns=\"http://graphml.graphdrawing.org/xmlns\" "
           "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
           "xsi:schemaLocation=\"http://graphml.graphdrawing.org/xmlns "
           "http://graphml.graphdrawing.org/xmlns/1.0/graphml.xsd\">");
  xml.keys(keys_of_graph);
  xml.keys(keys_of_look);
  if (!details.vertices.empty())
    xml.keys(keys_of_clones);
  if (with_positions)
    xml.keys(keys_of_positions);
  xml.keys(keys_of_edges);
  xml.line("<graph id=\"net\" edgedefault=\"undirected\">");
  xml.begin();
  xml.data("g_title", title);
  if (!details.metric.empty()) {
    xml.data("g_metric", details.metric);
    xml.data_real("g_cutoff", details.cutoff);
  }
  xml.end();
}

void print_vertex(xml_lines &xml, std::int32_t k, const draw_vertex &vertex, const graphml_vertex *detail) {
  xml.begin();
  xml.plain("<node id=\"n");
  xml.number(k);
  xml.plain("\">");
  xml.data("v_label", vertex.caption);
  xml.data("v_shape", shape_name(vertex.shape));
  xml.data("v_size", vertex.size);
  xml.data_colour("v_color", "v_color_name", vertex.ic);
  xml.data_colour("v_border", "v_border_name", vertex.bc);
  std::string_view name;
  color_name_of_scale(vertex.ic, name);
  const colour_value inside = color_from_name(name);
  xml.data("v_r", inside & 255);
  xml.data("v_g", (inside >> 8) & 255);
  xml.data("v_b", (inside >> 16) & 255);
  if (detail != nullptr) {
    xml.data("v_name", detail->name);
    xml.data("v_clone", detail->clone);
    xml.data("v_bands", detail->n_bands);
    xml.data_bool("v_buried", detail->buried);
    xml.data("v_marks", detail->marks);
    if (detail->position_known) {
      xml.data_real("v_x", detail->x);
      xml.data_real("v_y", detail->y);
    }
  }
  xml.plain("</node>");
  xml.end();
}

bool print_edges(xml_lines &xml, const class_net_draw &drawing, const draw_edges &edges, double threshold,
                 bool are_arcs) {
  std::size_t n_edges = 0;
  for (const draw_edge &edge : edges.items) {
    if (!drawing.is_shown(edge, threshold))
      continue;
    if (!drawing.goes_on_behind(++n_edges))
      return false;
    std::string_view pattern;
    line_pattern_name(edge.p, pattern);
    xml.begin();
    xml.plain("<edge source=\"n");
    xml.number(edge.i);
    xml.plain("\" target=\"n");
    xml.number(edge.j);
    xml.plain("\">");
    xml.data("e_label", edges.label(edge));
    xml.data_real("e_value", edge.value);
    xml.data_colour("e_color", "e_color_name", edge.c);
    xml.data("e_width", edge.w);
    xml.data("e_pattern", pattern);
    xml.data_node("e_first", edge.i);
    xml.data_node("e_second", edge.j);
    xml.data("e_burial", edge.burial);
    xml.data_bool("e_arc", are_arcs);
    xml.plain("</edge>");
    xml.end();
  }
  return true;
}

} // namespace

void xml_text_append(std::string &to, std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    if (static_cast<unsigned char>(text[at]) < 0x80) {
      append_ascii(to, text[at++]);
      continue;
    }
    const std::size_t length = utf8_length(text, at);
    const std::string_view character = text.substr(at, length);
    if (length == 0)
      append_byte_as_latin_1(to, static_cast<unsigned char>(text[at]));
    else if (character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF")
      to += ' '; // U+FFFE and U+FFFF: no characters of XML
    else
      to += character;
    at += length == 0 ? 1 : length;
  }
}

bool print_net_graphml(const class_net_draw &drawing, const std::filesystem::path &file, double threshold,
                       std::string_view title, const graphml_details &details) {
  const bool with_details = details.vertices.size() > static_cast<std::size_t>(drawing.n_vertices_get());
  bool with_positions = false;
  for (const graphml_vertex &vertex : details.vertices)
    with_positions = with_positions || vertex.position_known;
  result_file out(file);
  xml_lines xml(out);
  print_heads(xml, title, details, with_positions);
  for (std::int32_t k = 1; k <= drawing.n_vertices_get(); ++k)
    print_vertex(xml, k, drawing.vertex(k), with_details ? &details.vertices[static_cast<std::size_t>(k)] : nullptr);
  if (!print_edges(xml, drawing, drawing.vectors(), threshold, true) ||
      !print_edges(xml, drawing, drawing.edges(), threshold, false))
    return false;
  xml.line("</graph>");
  xml.line("</graphml>");
  out.commit();
  return true;
}

} // namespace orb
