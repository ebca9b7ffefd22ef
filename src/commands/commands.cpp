#include "commands/commands.h"

#include <array>
#include <new>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace orb {

std::span<const command_row> table_of_commands() {
  static constexpr std::array<command_row, 8> table{{
      {"assemble", "INPUT --out DIR", "from fingerprints to contigs: the whole road",
       "orb assemble examples/ecoli536 --out results/ecoli536", assemble_options, assemble_command},
      {"load", "INPUT --out LIB.ORBdb", "read fingerprints, drop exact copies, save a library file",
       "orb load plates/ --out library.ORBdb --preset 4", load_options, load_command},
      {"net", "LIB --out NET.ORBns", "compare all clones and save the net of significant overlaps",
       "orb net library.ORBdb --out net.ORBns --cutoff 15", net_options, net_command},
      {"revise", "LIB NET --out NET2.ORBns", "remove false overlaps and chimeric clones from a net",
       "orb revise library.ORBdb net.ORBns --out net_noQQ.ORBns", revise_options, revise_command},
      {"contigs", "LIB NET --out DIR", "cut a net into contigs by adaptive clustering",
       "orb contigs library.ORBdb net_noQQ.ORBns --out contigs --min-size 6", contigs_options, contigs_command},
      {"order", "LIB LIST --out DIR", "put the clones of a list into the order with the shortest steps",
       "orb order library.ORBdb contig.txt --out ordered --jackknife 20", order_options, order_command},
      {"draw", "LIB NET LIST --out FILE.net", "draw the net of a list of clones, with lists marked in it",
       "orb draw library.ORBdb net.ORBns contig.txt --out contig.net --mark tiling_path.txt", draw_options,
       draw_command},
      {"info", "FILE|FOLDER...", "say what a file or folder holds, or all about one clone",
       "orb info results/ecoli536 --clone EC001A01", info_options, info_command},
  }};
  return table;
}

static exit_status run_guarded(orb_session &session, const command_options &options, const command_streams &streams) {
  for (const command_row &row : table_of_commands())
    if (options.command == row.name)
      return row.handler(session, options, streams);
  throw usage_error("unknown command: " + options.command);
}

exit_status run_command(orb_session &session, const command_options &options, const command_streams &streams) {
  exit_status status = exit_status::done;
  try {
    session.start();
    status = run_guarded(session, options, streams);
    session.finish();
  } catch (const program_end &end) {
    status = end.status();
  } catch (const usage_error &wrong) {
    streams.people(std::string("orb ") + options.command + ": " + wrong.what());
    return exit_status::wrong_command;
  } catch (const file_error &failed) {
    streams.people(std::string("orb ") + options.command + ": " + failed.what());
    status = exit_status::no_input_or_output;
  } catch (const std::bad_alloc &) {
    streams.people("orb " + options.command + ": not enough memory");
    status = exit_status::run_failed;
  } catch (const nlohmann::json::exception &wrong) { // the one JSON that is read: run records, which people may edit
    streams.people("orb " + options.command + ": a run.json is damaged: " + wrong.what());
    status = exit_status::run_failed;
  } catch (const std::length_error &wrong) { // more than this build's numbers can count
    streams.people(std::string("orb ") + options.command + ": " + wrong.what());
    status = exit_status::run_failed;
  } catch (const std::exception &wrong) {
    streams.people("orb " + options.command + ": internal fault: " + wrong.what());
    status = exit_status::broken_invariant;
  }
  if (status == exit_status::done && session.frame().was_stopped())
    status = exit_status::stopped;
  if (status == exit_status::done && session.frame().data_failed())
    status = exit_status::run_failed;
  return status;
}

} // namespace orb
