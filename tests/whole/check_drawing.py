#!/usr/bin/python3
"""Loads the GraphML form of a drawing with igraph and networkx and compares it with the .net form.

usage: check_drawing.py FILE.net FILE.graphml

Compared: the numbers of vertices, edges and arcs, every label, the ends of every edge, and the values that labels show.
Exit status 0: equal, or skipped because a module is missing (which is said); 1: a difference; 2: wrong usage.
"""
import codecs
import re
import sys

try:
    import igraph
    import networkx
except ImportError as missing:
    print(f"skipped: {missing}; the packages are python3-igraph and python3-networkx")
    sys.exit(0)


# Bytes that are no UTF-8 count as Latin-1, as in the GraphML form.
codecs.register_error(
    "latin_1_bytes", lambda e: ("".join(map(chr, e.object[e.start : e.end])), e.end)
)

VERTEX = re.compile(r'(\d+) "([^"]*)" sh (\S+) x_fact (-?\d+) y_fact (-?\d+) ic (\S+) bc (\S+)$')
EDGE = re.compile(r'(\d+) (\d+) 1 w (-?\d+) c (\S+) p (\S+) l "([^"]*)"$')
SECTION = re.compile(r"\*(Vertices|Arcs|Edges) (\d+)$")


def read_net(path):
    """Vertices (caption, shape, inside, border) and edges (from, to, is_arc, label, colour), from 0."""
    text = open(path, "rb").read().decode("utf-8", "latin_1_bytes")
    text = re.sub("[\ufffe\uffff]", " ", text)  # no characters of XML
    lines = text.split("\r\n")
    assert lines.pop() == "", "the last line has no end"
    assert lines[0].startswith("*Network "), "no title"
    vertices, edges, section, declared = [], [], None, {}
    for line in lines[1:]:
        head = SECTION.match(line)
        if head:
            section = head[1]
            declared[section] = int(head[2])
        elif section == "Vertices":
            at = VERTEX.match(line)
            assert at and int(at[1]) == len(vertices) + 1, f"vertex line: {line!r}"
            vertices.append((at[2], at[3], at[6], at[7]))
        else:
            at = EDGE.match(line)
            assert at, f"edge line: {line!r}"
            edges.append((int(at[1]) - 1, int(at[2]) - 1, section == "Arcs", at[6], at[4]))
    n_arcs = sum(edge[2] for edge in edges)
    found = {"Vertices": len(vertices), "Arcs": n_arcs, "Edges": len(edges) - n_arcs}
    assert declared == found, f"declared {declared}, found {found}"
    return vertices, edges


def as_in_net(text):
    """The text as the .net form writes it: no double quotes, no control characters."""
    return "".join(" " if ord(c) < 32 else c for c in text.replace('"', "'"))


def ends(attributes):
    """From and to: a reader of an undirected graph may swap source and target."""
    return int(attributes["first"][1:]) - 1, int(attributes["second"][1:]) - 1


def compare(reader, expected, vertices, edges):
    """vertices: dicts of attributes; edges: (from, to, attributes). Order of edges doesn't matter.

    networkx leaves out attributes that are empty texts.
    """
    expected_vertices, expected_edges = expected
    seen = [
        (as_in_net(v.get("label") or ""), v["shape_name"], v["color_name"], v["border_color_name"]) for v in vertices
    ]
    if seen != expected_vertices:
        wrong = [(a, b) for a, b in zip(seen, expected_vertices) if a != b]
        return f"{reader}: {len(seen)} vertices, expected {len(expected_vertices)}; first difference {wrong[:1]}"
    looks = sorted(
        (ends(e), bool(e["is_arc"]), as_in_net(e.get("label") or ""), e["color_name"]) for _, _, e in edges
    )
    wanted = sorted(((a, b), arc, label, colour) for a, b, arc, label, colour in expected_edges)
    if looks != wanted:
        wrong = [(a, b) for a, b in zip(looks, wanted) if a != b]
        return f"{reader}: {len(looks)} edges and arcs, expected {len(wanted)}; first difference {wrong[:1]}"
    for a, b, e in edges:
        if sorted((a, b)) != sorted(ends(e)):
            return f"{reader}: an edge of {a + 1} and {b + 1} says that it is one of {e['first']} and {e['second']}"
        label = e.get("label") or ""
        if re.fullmatch(r"-?\d+\.\d", label) and abs(float(label) - e["value"]) > 0.0501 and e["value"] != 1000:
            return f"{reader}: the edge {a + 1}-{b + 1} shows {label}, its value is {e['value']}"
    return ""


def by_igraph(path):
    graph = igraph.Graph.Read_GraphML(path)
    return [v.attributes() for v in graph.vs], [(e.source, e.target, e.attributes()) for e in graph.es]


def by_networkx(path):
    graph = networkx.read_graphml(path, force_multigraph=True)
    place = {node: i for i, node in enumerate(graph.nodes)}
    return list(dict(graph.nodes(data=True)).values()), [
        (place[a], place[b], attributes) for a, b, attributes in graph.edges(data=True)
    ]


def main():
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    try:
        expected = read_net(sys.argv[1])
    except AssertionError as wrong:
        print(f"{sys.argv[1]}: {wrong}")
        return 1
    for reader, read in (("igraph", by_igraph), ("networkx", by_networkx)):
        problem = compare(reader, expected, *read(sys.argv[2]))
        if problem:
            print(problem)
            return 1
    n_arcs = sum(edge[2] for edge in expected[1])
    print(f"equal: {len(expected[0])} vertices, {len(expected[1]) - n_arcs} edges, {n_arcs} arcs")
    return 0


sys.exit(main())
