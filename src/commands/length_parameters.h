// Base pairs a band, by which lengths in bands become base pairs: given, estimated, or asked for.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "commands/command_row.h"

namespace orb {

struct length_parameters {
  std::string bp_per_band;                           // a number, "estimate", or empty: the questions are asked
  std::optional<double> clone_length, genome_length; // base pairs; for the estimate
};

void describe_lengths(parameter_list &list, length_parameters &p);
void check_lengths(const length_parameters &p);

// The base pairs of a band, and in words where they come from.
struct band_length {
  double bp = 0;
  std::string words;
};
// Of clones of a known mean length: by the mean number of their bands; else of a genome of a known length: by the
// contigs of the registry, which are taken for the whole of it; else 1,200, assumed.
band_length estimated_band_length(const class_DB_of_clones &database, const length_parameters &p);

// As given, else estimated.
band_length band_length_of(const class_DB_of_clones &database, const length_parameters &p);
std::string text_of(const band_length &length);
// Whether anything but the usual estimate is asked for.
bool is_wanted(const length_parameters &p);

// The questions for the size of a band are answered when they come up, unless nothing was given. What was taken stands
// in the result once one of them came.
std::shared_ptr<const std::string> answer_band_lengths_ahead(project_state &project, const length_parameters &p);

// "For Browse": a .fpc file for the genome browser, from 0 and in kilobases.
void describe_browse(parameter_list &list, std::optional<bool> &browse);
void answer_browse_ahead(project_state &project, const std::optional<bool> &browse);

} // namespace orb
