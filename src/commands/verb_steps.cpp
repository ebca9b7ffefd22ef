#include "commands/verb_steps.h"

namespace orb::verb_parts {

step library() {
  return {"library.load", "load", {{"file", "input"}, {"source", ""}, {"keep", ""}}};
}
step library_of_run() {
  return {"library.load",
          "load",
          {{"file", ""},
           {"plain-text", ""},
           {"capacity", ""},
           {"name-format-in", ""},
           {"name-format-out", ""},
           {"tolerance", ""},
           {"tolerance-index", ""},
           {"gel-length", ""},
           {"n-bands", ""},
           {"preset", ""},
           {"source", ""},
           {"keep", ""}}};
}
step markers() {
  return {"markers.load", "", {{"file", "markers"}, {"form", "marker-form"}}, "markers"};
}
step tables() {
  return {"pvalue.load", "", {{"folder", "pvalue-tables"}}, "pvalue-tables"};
}
step metric() {
  return {"metric.set", "", {{"several", ""}, {"use-markers", ""}}};
}
step options() {
  return {"options.set", "", {{"singletones", ""}}};
}
step options_of_order() {
  return {"options.set", "", {{"singletones", ""}, {"table-format", ""}, {"fast-fpc", ""}, {"fast-clustering", ""}}};
}
step net() {
  return {"net.load", "", {{"file", "net"}}};
}
step net_if_given() {
  return {"net.load", "", {{"file", "net"}}, "net"};
}
step by_library(verb_step::by_key names) {
  names.emplace_back("library-stays", "");
  return {"parameters.by_library", "load", std::move(names), "auto"};
}
step cutoff_by_library() {
  return {"parameters.by_library",
          "load",
          {{"preset", ""}, {"tolerance", ""}, {"gel-length", ""}, {"n-bands", ""}},
          "auto",
          {{"library-stays", "yes"}}};
}
step pools() {
  return {"pools.load", "", {{"file", "recoding"}}};
}
step net_save(std::optional<project_part> if_there) {
  return {"net.save", "net", {}, {}, {}, if_there};
}

// A cluster is cut where it isn't linear, not for being large: the form's limit is one for slow machines.
step contigs() {
  return {"contigs.assemble", "contigs", {{"continue", ""}}, {}, {}, {}, {{"max-clones", "none"}}};
}

std::vector<step> joined(std::vector<step> first, const std::vector<step> &second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}
std::vector<step> library_and(const std::vector<step> &rest) {
  return joined({library()}, rest);
}
std::vector<step> scored_library_and(const std::vector<step> &rest) {
  return joined({library(), markers(), tables(), metric()}, rest);
}

verb plain_verb(std::string name, std::string arguments, std::string purpose, std::string example,
                std::vector<std::string> by_place, place record, std::vector<step> steps,
                std::vector<std::string> needed) {
  verb made;
  made.name = std::move(name);
  made.arguments = std::move(arguments);
  made.purpose = std::move(purpose);
  made.example = std::move(example);
  made.by_place = std::move(by_place);
  made.record = record;
  made.steps = std::move(steps);
  made.needed = std::move(needed);
  return made;
}

} // namespace orb::verb_parts
