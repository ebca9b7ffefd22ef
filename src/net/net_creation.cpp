// Making the net of a whole library: the text net, and the same net in memory.
#include <algorithm>
#include <functional>
#include <memory>

#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "frame/worker_blocks.h"
#include "metrics/class_clone_dist_general.h"
#include "net/class_clone_net_signif.h"
#include "net/derived_nets.h"
#include "net/net_as_text.h"
#include "pairs/half_net.h"

namespace orb {

namespace {

constexpr std::int32_t overlaps_limit = 500; // of one clone; more are asked about
constexpr std::int32_t clones_in_part = 1000;
constexpr std::int32_t clones_without_parts = 60000;
constexpr const char *process_name = "Create net of significant clone overlaps";
using family = class_clone_dist_general;

// Whether the overlaps of all versions of a clone are to be united. The answer isn't weighed: deliberate, since
// versions taken for different clones contradict each other in contigs.
bool versions_are_united(process_frame &frame, const class_DB_of_clones &database) {
  if (!database.IsDBContainRepeatsCloneNames_get())
    return false;
  question asked;
  asked.text = "NB! your database contains several versions of fingerprinting for some clones!\r"
               "Working with these versions as with different clones will result in contradictions\r"
               "in contig assembly. To overcome this problem, ORB proposes to unite overlaps of\r"
               "all version of clone overlaps. Do you agree?";
  asked.by_default = answer::yes;
  frame.ask(asked);
  return true;
}

// Counts overlaps row by row, and asks once when a clone has too many.
class overlap_watch {
public:
  overlap_watch(process_frame &frame, const class_DB_of_clones &database, net_creation_summary &summary)
      : frame_(frame), database_(database), summary_(summary) {}

  // False when the user doesn't want to continue with this cutoff.
  bool clone_done(clone_number clone, std::int32_t n) {
    if (n > summary_.n_overlaps_max_found) {
      summary_.n_overlaps_max_found = n;
      summary_.clone_of_max = clone;
    }
    if (n <= overlaps_limit)
      return true;
    ++summary_.n_clones_above_limit;
    if (asked_)
      return true;
    asked_ = true;
    question too_many;
    too_many.text = "NB! clone " + std::to_string(clone) + " (" + database_.name_of_clone_get(clone) +
                    ") has too many (" + std::to_string(n) +
                    ") significant overlaps at selected cutoff level.\r Continue with this cutoff?";
    too_many.by_default = too_many.to_go_on = answer::yes;
    too_many.explanation =
        "A clone with hundreds of overlaps is often one of repeats, or the cutoff is too low for the "
        "library. Yes keeps its overlaps; no ends the work, so that the cutoff can be raised.";
    if (frame_.yes(too_many))
      return true;
    frame_.alarm("NB! Process was stopped!");
    return false;
  }
  // `created`: the first line of the closing box.
  void closing_box(const std::string &created) const {
    std::string text = created + "\rMaximal significant overlaps for one clone n_max=" +
                       std::to_string(summary_.n_overlaps_max_found) + ".";
    if (summary_.n_overlaps_max_found <= overlaps_limit)
      return frame_.message(text);
    text += "\rIn total, " + std::to_string(summary_.n_clones_above_limit) + " clones with more than " +
            std::to_string(overlaps_limit) +
            " significant overlaps were found.\rYou can continue, but we recommend to be careful with these clones\r"
            "(say, try to exlude them or increase cutoff stringency).";
    frame_.alarm(text);
  }

private:
  process_frame &frame_;
  const class_DB_of_clones &database_;
  net_creation_summary &summary_;
  bool asked_ = false;
};

bool metric_uses_table(std::int16_t distance_index) {
  return distance_index == family::DISTANCE_INDEX_Sulston_1988_get() ||
         distance_index == family::DISTANCE_INDEX_Sulston_1988_frec_get();
}

std::string metric_and_cutoff(const overlap_rule &rule) {
  return family::name_of_cutoff_distance(rule.distance_index) + "_" + number_text(rule.cutoff, 2);
}

// The value that a reader gets from the text net.
double as_read_back(double value) {
  number_from_text_silent(number_text(value, 2), value);
  return value;
}

// The text net of one run: parts, rows, and the order in which they go to the file.
class text_net_writer {
public:
  text_net_writer(std::filesystem::path file, std::int32_t n, std::int32_t start, bool subdivide)
      : file_(std::move(file)), n_(n), start_(start), subdivide_(subdivide) {
    if (subdivide_) {
      folder_ = file_.parent_path() / file_.stem();
      create_folder(folder_);
    }
  }

  void row(clone_number i, const std::string &text) {
    if (!output_.is_open() || (subdivide_ && i % clones_in_part == 1 && i > start_))
      output_ = growing_file(subdivide_ ? part_file(i) : file_, true);
    output_.line(text);
    ++n_rows_;
  }
  void flush() {
    if (output_.is_open())
      output_.flush();
  }
  void close() {
    if (!output_.is_open())
      output_ = growing_file(subdivide_ ? part_file(start_) : file_, true); // no rows at all
    output_.close();
  }
  std::int64_t n_rows() const { return n_rows_; } // written so far
  // What to read: the file, or the folder of the parts by any file in it.
  std::filesystem::path to_load() const { return subdivide_ ? part_file(1) : file_; }

private:
  // Parts are numbered so that their names sort in clone order. A part that a resumed run begins in its middle bears
  // the number of the part that it continues, and the clone it starts with.
  std::filesystem::path part_file(clone_number i) const {
    const auto width = static_cast<std::int32_t>(std::to_string(n_ / clones_in_part + 1).size());
    const std::int32_t part = (i - 1) / clones_in_part + 1;
    std::string name = file_.stem().string() + "_" + class_serv_raznoe::string_with_added_zeros(part, width);
    if (i % clones_in_part != 1)
      (name += '_') += std::to_string(i);
    return folder_ / (name + file_.extension().string());
  }

  std::filesystem::path file_, folder_;
  std::int32_t n_, start_;
  bool subdivide_;
  std::int64_t n_rows_ = 0;
  growing_file output_;
};

// Rows of the text net, from the loaded net or compared, written by workers and handed over in order.
class text_rows {
public:
  using row_function = std::function<bool(clone_number, std::int32_t, const std::string &)>;
  using chunk_function = std::function<bool(clone_number)>;

  explicit text_rows(const metric_context &context)
      : context_(context), n_(context.database.total_number_of_clones_get()) {}

  // `row_done(i, n, text)` runs on the calling thread in clone order; false ends the run. `chunk_done(i)` follows the
  // last row of some, likewise. Of the net the overlaps from `cutoff` on.
  void of_net(const class_net &net, double cutoff, clone_number start, const row_function &row_done,
              const chunk_function &chunk_done) {
    constexpr clone_number rows_in_chunk = 1024;
    const auto row_text = [&](clone_number i, std::string &overlaps) {
      std::int32_t count = 0;
      for (const net_edge &edge : net.edges_of_vertex(i))
        if (edge.value >= cutoff) {
          text_net_overlap_append(overlaps, context_.database, edge.neighbour, edge.value, edge.index2);
          ++count;
        }
      return count;
    };
    for (clone_number i = start; i <= n_; i += rows_in_chunk)
      if (!hand_over(i, std::min(n_, i + rows_in_chunk - 1), row_text, row_done, chunk_done))
        return;
  }
  void compared(overlap_rows &rows, clone_number start, const row_function &row_done, const chunk_function &chunk_done,
                const std::function<bool(std::int64_t)> &go_on) {
    const auto row_text = [&](clone_number i, std::string &overlaps) {
      for (const pair_record &record : rows.row(i))
        text_net_overlap_append(overlaps, context_.database, record.partner, record.value, record.code);
      return static_cast<std::int32_t>(rows.row(i).size());
    };
    rows.run(
        start,
        [&](std::int32_t first, std::int32_t last) { return hand_over(first, last, row_text, row_done, chunk_done); },
        go_on);
  }

private:
  template <class text_function>
  bool hand_over(clone_number first, clone_number last, text_function &&row_text, const row_function &row_done,
                 const chunk_function &chunk_done) {
    const auto n = static_cast<std::size_t>(last - first + 1);
    texts_.resize(n);
    counts_.resize(n);
    const auto write = [&](std::int64_t from, std::int64_t to, int) {
      for (auto i = static_cast<clone_number>(from); i <= to; ++i) {
        std::string overlaps;
        const auto at = static_cast<std::size_t>(i - first);
        counts_[at] = row_text(i, overlaps);
        texts_[at] = text_net_block(context_.database, i, counts_[at], overlaps);
      }
    };
    run_in_blocks(first, last, last - first + 1, 16, context_.settings.threads, write, {});
    for (clone_number i = first; i <= last; ++i) {
      const auto at = static_cast<std::size_t>(i - first);
      if (!row_done(i, counts_[at], texts_[at]))
        return false;
    }
    return chunk_done(last);
  }

  const metric_context &context_;
  clone_number n_;
  std::vector<std::string> texts_;
  std::vector<std::int32_t> counts_;
};

bool asked_to_subdivide(process_frame &frame, std::int32_t n) {
  if (n <= clones_without_parts)
    return false;
  question asked;
  asked.text = "NB! Nomber of clones N=" + std::to_string(n) +
               " is large.\rTo optimize working of program, output can be subdivided into parts.\r"
               "Do you agree subdivide output into parts of 1000 clones?";
  asked.by_default = answer::no;
  return frame.yes(asked);
}

std::unique_ptr<class_clone_dist_FPC> asked_preprocessing(const metric_context &context, double cutoff) {
  question asked;
  asked.text = "Preprocess?";
  asked.title = "ORB";
  asked.by_default = answer::yes;
  if (!context.frame.yes(asked))
    return nullptr;
  auto significant = std::make_unique<class_clone_dist_FPC>();
  significant->create_sulston_significant_table(context.frame, cutoff, context.database, context.usable_values);
  context.frame.message("Pre-calculation is finished.");
  return significant;
}

std::int32_t asked_start(process_frame &frame) {
  double typed = 0;
  const std::string reply = frame.input({"Start from ...", "Creation of net of significant overlaps", "1"});
  if (!number_from_text_silent(reply, typed) || !(typed >= 1))
    return 1;
  return static_cast<std::int32_t>(std::min(typed, 2147483646.0));
}

std::filesystem::path asked_text_file(process_frame &frame, const overlap_rule &rule) {
  return frame.save_file_dialog_checked("Print significant overlaps to text file",
                                        "signif_overlaps_" + metric_and_cutoff(rule) + ".txt",
                                        "Text files (*.txt)|*.txt");
}

bool is_to_be_loaded(process_frame &frame) {
  question load;
  load.text = "Do you want to load the created net of significant clone overlaps?";
  load.by_default = answer::no;
  return frame.yes(load);
}

[[noreturn]] void end_on_zero_frequency(process_frame &frame, const zero_frequency &failure) {
  frame.program_end_now(failure.what(), exit_status::run_failed);
}

// Rows of a text net as they come: written, watched, shown. `refused` turns true when the user doesn't go on with a
// clone of too many overlaps.
struct row_printer {
  process_frame &frame;
  text_net_writer &writer;
  overlap_watch &watch;
  std::int32_t n;
  bool refused = false;

  bool row_done(clone_number i, std::int32_t count, const std::string &text) {
    writer.row(i, text);
    refused = !watch.clone_done(i, count);
    return !refused;
  }
  bool chunk_done(clone_number i) {
    writer.flush(); // a stopped run keeps what was written
    frame.local_process_text_set(std::to_string(i) + " from " + std::to_string(n));
    return frame.goes_on();
  }
};

// The rows of a net, overlaps from `cutoff` on. False when refused.
bool print_rows(const metric_context &context, const class_net &net, double cutoff, text_net_writer &writer,
                overlap_watch &watch, std::int32_t start) {
  row_printer printer{context.frame, writer, watch, context.database.total_number_of_clones_get()};
  text_rows(context).of_net(
      net, cutoff, start,
      [&](clone_number i, std::int32_t count, const std::string &text) { return printer.row_done(i, count, text); },
      [&](clone_number i) { return printer.chunk_done(i); });
  return !printer.refused;
}

// The rows of all clones compared with all others.
bool compare_and_print_rows(const metric_context &context, const overlap_rule &rule,
                            const class_clone_dist_FPC *significant, bool unite_versions, text_net_writer &writer,
                            overlap_watch &watch, std::int32_t start) {
  const int threads = context.settings.threads;
  row_printer printer{context.frame, writer, watch, context.database.total_number_of_clones_get()};
  try {
    const pair_elements elements = pair_elements::of_library(context.database, unite_versions);
    pair_kernel kernel(context, rule, significant, threads);
    overlap_rows rows(kernel, elements, row_partners::all, threads);
    text_rows(context).compared(
        rows, start,
        [&](clone_number i, std::int32_t count, const std::string &text) { return printer.row_done(i, count, text); },
        [&](clone_number i) { return printer.chunk_done(i); },
        [&](std::int64_t pairs_done) {
          context.frame.progress(pairs_done, rows.n_pairs());
          return context.frame.goes_on();
        });
  } catch (const zero_frequency &failure) {
    end_on_zero_frequency(context.frame, failure);
  }
  return !printer.refused;
}

// Each pair of clones once, into `half`. False when the user stopped; `refused` as above.
bool compare_once(const metric_context &context, const overlap_rule &rule, bool unite_versions, overlap_watch &watch,
                  half_net &half, std::int64_t &n_pairs, bool &refused) {
  process_frame &frame = context.frame;
  const int threads = context.settings.threads;
  const std::int32_t n = context.database.total_number_of_clones_get();
  class_clone_dist_FPC significant;
  const bool with_table = metric_uses_table(rule.distance_index);
  if (with_table)
    significant.fill_sulston_significant_table(rule.cutoff, class_clone_dist_FPC::proposed_table_size(context.database),
                                               context.database, context.usable_values);
  std::vector<std::int32_t> n_lower(static_cast<std::size_t>(n) + 1, 0); // overlaps with clones of lower number
  const auto chunk_done = [&](std::int32_t first, std::int32_t last) {
    for (clone_number i = first; i <= last && !refused; ++i) {
      for (const pair_record &record : half.row(i))
        ++n_lower[static_cast<std::size_t>(record.partner)];
      n_pairs += n - i;
      refused =
          !watch.clone_done(i, n_lower[static_cast<std::size_t>(i)] + static_cast<std::int32_t>(half.row(i).size()));
    }
    frame.local_process_text_set(std::to_string(last) + " from " + std::to_string(n));
    return !refused && frame.goes_on();
  };
  try {
    const pair_elements elements = pair_elements::of_library(context.database, unite_versions);
    pair_kernel kernel(context, rule, with_table ? &significant : nullptr, threads);
    overlap_rows rows(kernel, elements, row_partners::of_higher_number, threads);
    const auto go_on = [&](std::int64_t pairs_done) {
      frame.progress(pairs_done, rows.n_pairs());
      return frame.goes_on();
    };
    return half.compare(rows, n, chunk_done, go_on) || refused;
  } catch (const zero_frequency &failure) {
    end_on_zero_frequency(frame, failure);
  }
}

} // namespace

bool class_clone_net_signif::create_file_with_significant_connections(const overlap_rule &rule,
                                                                      const text_net_options &options,
                                                                      net_creation_summary &summary) {
  process_frame &frame = context_.frame;
  const class_DB_of_clones &database = context_.database;
  const std::int32_t n = database.total_number_of_clones_get();
  summary = {};
  frame.process_start(process_name);
  frame.step_text_set("Print to text file");
  const bool from_net = context_.settings.use_file_with_connections && net_.number_of_vertices_get() == n;
  if (from_net)
    bring_net_to_rule(rule);
  const bool unite_versions = versions_are_united(frame, database);
  const bool subdivide = options.parts || asked_to_subdivide(frame, n);
  const std::filesystem::path file = options.file.empty() ? asked_text_file(frame, rule) : options.file;
  if (file.empty()) {
    frame.process_canceled();
    return false;
  }
  std::unique_ptr<class_clone_dist_FPC> significant;
  if (!from_net)
    significant = asked_preprocessing(context_, rule.cutoff);
  const std::int32_t start = options.start_clone > 0 ? options.start_clone : asked_start(frame);

  overlap_watch watch(frame, database, summary);
  text_net_writer writer(file, n, start, subdivide);
  const bool refused =
      from_net ? !print_rows(context_, net_, rule.cutoff, writer, watch, start)
               : !compare_and_print_rows(context_, rule, significant.get(), unite_versions, writer, watch, start);
  summary.n_pairs = from_net ? 0 : std::int64_t{n - 1} * writer.n_rows();
  writer.close();
  if (frame.stop_requested_get()) {
    frame.process_stopped_manually();
    return false;
  }
  frame.all_panels_reset();
  if (refused)
    return false;
  summary.completed = true;
  summary.text_file = writer.to_load();
  summary.in_parts = subdivide;
  frame.log_line("File " + file.string() + " saved.");
  watch.closing_box("File with net of significant clone overlaps is created.");
  if (start == 1 && is_to_be_loaded(frame)) {
    bool ok = false;
    read_file_with_significant_connections(writer.to_load(), "_" + metric_and_cutoff(rule), false, subdivide, ok);
  }
  return true;
}

// Where work starts from a loaded net it is brought to the metric and markers in use before it is printed, in the two
// steps that the settings ask for. It is another net then.
void class_clone_net_signif::bring_net_to_rule(const overlap_rule &rule) {
  const net_by_rule_options wanted{context_.settings.same_metric_as_net, context_.settings.markers_in_clones};
  if ((!wanted.same_metric || wanted.with_markers) && create_net_by_rule(*this, net_, rule, wanted, net_))
    net_is_loaded_set();
}

bool class_clone_net_signif::create_net_in_memory(const overlap_rule &rule, net_creation_summary &summary) {
  process_frame &frame = context_.frame;
  const class_DB_of_clones &database = context_.database;
  summary = {};
  frame.process_start(process_name);
  frame.step_text_set("Compare all pairs of clones");
  const bool unite_versions = versions_are_united(frame, database);
  overlap_watch watch(frame, database, summary);
  half_net half;
  bool refused = false;
  if (!compare_once(context_, rule, unite_versions, watch, half, summary.n_pairs, refused)) {
    frame.process_stopped_manually();
    return false;
  }
  if (refused) {
    frame.all_panels_reset();
    return false;
  }
  class_net made;
  switch (half.mirrored_into(made, as_read_back, [&frame] { return frame.goes_on(); })) {
  case half_net::mirror_end::stopped:
    frame.process_stopped_manually();
    return false;
  case half_net::mirror_end::too_large:
    frame.all_panels_reset();
    return frame.refuse("The net has more overlaps than a net can hold. Increase cutoff stringency.");
  case half_net::mirror_end::done:
    frame.all_panels_reset();
  }
  net_ = std::move(made);
  net_is_loaded_set();
  summary.completed = true;
  watch.closing_box("Net of significant clone overlaps is created.");
  return true;
}

} // namespace orb
