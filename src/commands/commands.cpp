#include "commands/commands.h"

#include <array>
#include <new>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace orb {

std::span<const command_row> table_of_commands() {
  static constexpr std::array<command_row, 27> table{{
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
      {"table", "LIB LIST --out DIR", "tables of the scores of a list of clones: consecutive clones, all pairs",
       "orb table library.ORBdb contig.txt --out tables --table-format 2", table_options, table_command},
      {"retain", "RUN --old-mtp LIST --out DIR", "analyse the contigs of a run again, keeping an older tiling path",
       "orb retain results/ecoli536 --old-mtp old_path.txt --sequenced done.txt --out retained", retain_options,
       retain_command},
      {"report", "RUN --out DIR", "tables over the contigs of a finished run",
       "orb report results/ecoli536 --out tables", report_options, report_command},
      {"list sort", "LIB LIST --out LIST", "a list in the order of the library, without repeats",
       "orb list sort library.ORBdb contig.txt --out sorted.txt", list_sort_options, list_sort_command},
      {"list intersect", "LIB LIST LIST2 --out LIST", "the clones that both lists hold",
       "orb list intersect library.ORBdb contig.txt sequenced.txt --out both.txt", list_pair_options,
       list_intersect_command},
      {"list minus", "LIB LIST LIST2 --out LIST", "the clones of the first list that the second lacks",
       "orb list minus library.ORBdb contig.txt sequenced.txt --out todo.txt", list_pair_options, list_minus_command},
      {"list unite", "LIB LIST LIST2 --out LIST", "the clones of either list",
       "orb list unite library.ORBdb contig1.txt contig2.txt --out joined.txt", list_pair_options, list_unite_command},
      {"list format", "LIST --out LIST", "a list with its names in another format",
       "orb list format contig.txt --name-format-in 1 --name-format-out 7 --out names.txt", list_format_options,
       list_format_command},
      {"list select", "LIB LIST FINGERPRINTS --out FILE", "the fingerprint records of the clones of a list",
       "orb list select library.ORBdb contig.txt plates/ --out contig.sizes", list_select_options, list_select_command},
      {"markers read", "LIB MARKERS --out FILE.ORB", "markers of clones into the native form",
       "orb markers read library.ORBdb markers.txt --out markers.ORB", markers_read_options, markers_read_command},
      {"markers write", "LIB MARKERS --out FILE.txt", "markers as a line a clone",
       "orb markers write library.ORBdb clones_of_markers.txt --out markers.txt", markers_write_options,
       markers_write_command},
      {"markers print", "LIB MARKERS LIST --out TABLE", "which clones of a list bear which markers",
       "orb markers print library.ORBdb markers.txt contig.txt --out table.txt", markers_print_options,
       markers_print_command},
      {"simulate library", "GENOME.fa[.gz] --out DIR",
       "draw a library of clones from a sequence, with their true places",
       "orb simulate library genome.fa.gz --out simulated --coverage 10", simulate_library_options,
       simulate_library_command},
      {"simulate digest", "GENOME.fa[.gz] --out DIR", "cut a sequence by the enzymes: cuts, bands, fingerprints",
       "orb simulate digest genome.fa.gz --out digest", simulate_digest_options, simulate_digest_command},
      {"evaluate", "RUN --truth FILE", "say how good contigs are where the true places of their clones are known",
       "orb evaluate results/ecoli536 --truth examples/ecoli536/truth.tsv", evaluate_options, evaluate_command},
      {"pvalue score", "N1 N2 K", "score of K common bands of clones with N1 and N2 bands, by the closed formula",
       "orb pvalue score 100 90 40 --n-bands 2250", pvalue_score_options, pvalue_score_command},
      {"pvalue estimate", "LIB N1 N2 --out DIR", "simulate the common bands of clones with N1 and N2 bands",
       "orb pvalue estimate library.ORBdb 100 90 --runs 100000 --out estimate", pvalue_estimate_options,
       pvalue_estimate_command},
      {"pvalue table", "LIB --out DIR", "make the tables of simulated p-values that the metrics Nof and Lnn need",
       "orb pvalue table library.ORBdb --out tables --runs 10000", pvalue_table_options, pvalue_table_command},
      {"pvalue lookup", "DIR N1 N2", "read tables of simulated p-values, from a count or from a value",
       "orb pvalue lookup tables 100 90 --count 40", pvalue_lookup_options, pvalue_lookup_command},
      {"info", "FILE|FOLDER...", "say what a file or folder holds, or all about one clone",
       "orb info results/ecoli536 --clone EC001A01", info_options, info_command},
  }};
  return table;
}

static exit_status run_guarded(project_state &session, const command_options &options, const command_streams &streams) {
  for (const command_row &row : table_of_commands())
    if (options.command == row.name)
      return row.handler(session, options, streams);
  throw usage_error("unknown command: " + options.command);
}

exit_status run_command(project_state &session, const command_options &options, const command_streams &streams) {
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
