// What the verbs of the command line are made of: steps that many of them begin with, and verbs of the usual form.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "commands/verbs.h"

namespace orb {

namespace verb_parts {

using step = verb_step;
using place = record_place;

step library();
// The library of a run, which isn't read from fingerprints.
step library_of_run();
step markers();
step tables();
step metric();
step options();
step options_of_order();
step net();
step net_if_given();
// What the fingerprints say of the parameters, with --auto.
step by_library(verb_step::by_key names = {});
// Of the cutoff alone: what was compared with other parameters than the library's own couldn't be gone on with.
step cutoff_by_library();
step pools();
step net_save(std::optional<project_part> if_there = {});
step contigs();

std::vector<step> joined(std::vector<step> first, const std::vector<step> &second);
std::vector<step> library_and(const std::vector<step> &rest);
std::vector<step> scored_library_and(const std::vector<step> &rest);

// A verb that is one command over a library, or over nothing.
verb plain_verb(std::string name, std::string arguments, std::string purpose, std::string example,
                std::vector<std::string> by_place, place record, std::vector<step> steps,
                std::vector<std::string> needed = {});

} // namespace verb_parts

// Verbs on runs: `retain`, `report`, `export`, the pictures, and what reads an FPC assembly as a run.
void add_run_verbs(std::vector<verb> &table);

} // namespace orb
