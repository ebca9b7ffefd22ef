// Assemblies that the FPC program made, read into the contig registry, and lists of contigs that are specified by hand.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "clustering/class_FPCto_import.h"
#include "database/class_markers.h"

namespace orb {

struct fpc_reading_options {
  // The values of the clones go into the contigs that are loaded, in place of new contigs.
  bool keep_current = false;
  // A clone that isn't in the library is looked for under the other number of its plate.
  bool other_plates = false;
  std::optional<bool> print; // the lists of all contigs; unset: asks
  // Then the contigs of such a file take the place of those that were read; with an empty name a dialog asks.
  bool read_specified = false;
  std::filesystem::path specified;
};

struct fpc_reading_summary {
  std::int32_t n_read = 0;          // blocks of known clones
  std::int32_t n_duplicates = 0;    // clones with several blocks
  std::int32_t n_not_presented = 0; // clones of the library without one
  std::int32_t n_problematic = 0;   // blocks whose lines about the contig can't be understood
  bool completed = false;
  std::vector<std::filesystem::path> files; // written
};

// One reading. What was loaded stays as it is until all of the file was read; a contradiction between two blocks of one
// clone ends the program. Files go to the working folder: unknownClones.txt, markers_in_clones.ORB, the lists, and the
// statistics of the contigs. Cost: near linear in the file.
class class_FPCfrom_export {
public:
  // The arguments must outlive the object.
  class_FPCfrom_export(process_frame &frame, const project_settings &settings, class_DB_of_clones &database)
      : frame_(frame), settings_(settings), database_(database) {}

  // Contigs and markers of the file become those of the database. False, with nothing changed, after a stop request and
  // when the contigs that are to be kept aren't there. Throws file_error.
  bool read_clusterization_from_FPC(const std::filesystem::path &file, const fpc_reading_options &options);
  // The contigs of a file by themselves: what is loaded stays. Null after a stop request or a message.
  std::shared_ptr<class_FPCto_import> read_contigs_only(const std::filesystem::path &file, bool other_plates);
  // Names of the file that the database doesn't know, in its order.
  const std::vector<std::string> &unknown_clones() const { return unknown_clones_; }
  const fpc_reading_summary &summary() const { return summary_; }

  // Contigs from a file of sections: "# NAME - remark: TEXT", then lines of clones. All others go into one further
  // cluster. The registry is new, with the coordinates of the present one. False when cancelled.
  bool run_read_specified_contigs(std::filesystem::path file = {});

  // The name under the other number of its plate: 001 for 002, 020 for 022; the same name when it has neither.
  static std::string change_clone_plate_1_2(std::string name);

private:
  struct reading; // one file on its way into a registry
  bool read_and_put_in_place(const std::filesystem::path &file, const fpc_reading_options &options);
  bool read_blocks(const std::filesystem::path &file, const fpc_reading_options &options, reading &to);
  void tell_what_was_read();
  void print_what_was_read(const fpc_reading_options &options);

  process_frame &frame_;
  const project_settings &settings_;
  class_DB_of_clones &database_;
  std::vector<std::string> unknown_clones_;
  fpc_reading_summary summary_;
};

} // namespace orb
