// class_Simul_CutEnzyme: where the enzymes cut a text, an array of letters, a file.
#include <algorithm>
#include <fmt/format.h>
#include <limits>
#include <tuple>
#include <unordered_set>
#include <utility>

#include "frame/numbers.h"
#include "simulation/class_Simul_CutEnzyme.h"
#include "simulation/sequence_reader.h"
#include "simulation/site_automaton.h"

namespace orb {

// Sites of other lengths than 6 (4 for enzyme 1) aren't known here, on purpose: this is the plain formulation for the
// default set.
void class_Simul_CutEnzyme::cut_band_after_letter_and_enz_from_s(std::string_view sequence,
                                                                 std::vector<std::int32_t> &position,
                                                                 std::vector<std::int32_t> &enzyme, std::int32_t &n,
                                                                 bool with_breaks) const {
  const auto length = static_cast<std::int32_t>(sequence.size());
  position.assign(1, 0);
  enzyme.assign(1, with_breaks ? 0 : 1);
  const auto add = [&](std::int32_t at, std::int32_t by) {
    position.push_back(at);
    enzyme.push_back(by);
  };
  for (std::int32_t i = 1; i <= length; ++i) {
    const auto letters_from_i = [&](std::int32_t count) {
      return i + count - 1 <= length ? sequence.substr(static_cast<std::size_t>(i) - 1, static_cast<std::size_t>(count))
                                     : std::string_view();
    };
    const std::string_view s4 = letters_from_i(4), s6 = letters_from_i(6);
    for (std::int32_t e = 2; e <= n_enzymes() && !s6.empty(); ++e)
      if (enzyme_list_[static_cast<std::size_t>(e)].site == s6) {
        add(i, e);
        break;
      }
    if (!s4.empty() && n_enzymes() >= 1 && enzyme_list_[1].site == s4)
      add(i + 1, 1);
    const char letter = sequence[static_cast<std::size_t>(i) - 1];
    if (with_breaks && (letter == 'N' || letter == ','))
      add(i - 1, 0);
  }
  add(length, with_breaks ? 0 : 1);
  n = static_cast<std::int32_t>(position.size()) - 1;
}

// Cuts far behind the starts of their sites may be found out of order: by position, then by enzyme, breaks last. Entry
// 0 stays.
static void sort_cuts(std::vector<std::int32_t> &position, std::vector<std::int32_t> &enzyme) {
  const auto is_less = [](const auto &one, const auto &two) {
    return one.first != two.first
               ? one.first < two.first
               : static_cast<std::uint32_t>(one.second - 1) < static_cast<std::uint32_t>(two.second - 1);
  };
  std::vector<std::pair<std::int32_t, std::int32_t>> cuts;
  for (std::size_t i = 1; i < position.size(); ++i)
    cuts.emplace_back(position[i], enzyme[i]);
  std::stable_sort(cuts.begin(), cuts.end(), is_less);
  for (std::size_t i = 0; i < cuts.size(); ++i)
    std::tie(position[i + 1], enzyme[i + 1]) = cuts[i];
}

void class_Simul_CutEnzyme::cut_band_after_letter_and_enz_from_LetterIndexes(const std::vector<std::int16_t> &letters,
                                                                             std::int32_t from, std::int32_t to,
                                                                             std::vector<std::int32_t> &position,
                                                                             std::vector<std::int32_t> &enzyme,
                                                                             std::int32_t &n, bool with_breaks) const {
  position.assign(1, from - 1);
  enzyme.assign(1, with_breaks ? 0 : 1);
  for (std::int32_t i = from; i <= to; ++i) {
    const auto first = letters.begin() + i;
    if (with_breaks && *first == 0) {
      position.push_back(i - 1);
      enzyme.push_back(0);
    }
    for (std::int32_t e = 1; e <= n_enzymes(); ++e) {
      const enzyme_rec &tried = enzyme_list_[static_cast<std::size_t>(e)];
      if (i + tried.site_length - 1 > to || tried.site_length < 1 ||
          !std::equal(tried.letter_index.begin() + 1, tried.letter_index.end(), first))
        continue;
      position.push_back(i + tried.cut_after - 1);
      enzyme.push_back(e);
      break;
    }
  }
  sort_cuts(position, enzyme);
  position.push_back(to);
  enzyme.push_back(with_breaks ? 0 : 1);
  n = static_cast<std::int32_t>(position.size()) - 1;
}

namespace {

// Collects the records of one reading.
class genome_digest {
public:
  genome_digest(const std::vector<enzyme_rec> &enzymes, bool with_breaks) : automaton_(enzymes, with_breaks) {}

  std::vector<digested_chromosome> chromosomes;
  std::int64_t n_cuts = 0, n_letters = 0;

  void begin(const std::string &name) {
    finish();
    current_.name = name;
    automaton_.begin(current_.cuts);
    is_open_ = true;
  }
  // Why the letters can't be taken; empty when they were.
  std::string feed(const std::vector<std::uint8_t> &letters) {
    constexpr auto most = std::numeric_limits<std::int32_t>::max();
    if (static_cast<std::int64_t>(automaton_.letters_so_far()) + static_cast<std::int64_t>(letters.size()) > most)
      return "The record " + current_.name + " is longer than 2147483647 letters";
    if (n_cuts + static_cast<std::int64_t>(current_.cuts.position.size()) +
            2 * static_cast<std::int64_t>(letters.size()) >
        most)
      return "The sequence has more cuts than can be numbered";
    automaton_.feed(letters, current_.cuts);
    return {};
  }
  // Records without a letter are left out.
  void finish() {
    if (is_open_ && automaton_.letters_so_far() > 0) {
      automaton_.finish(current_.cuts);
      current_.cuts.position.shrink_to_fit();
      current_.cuts.enzyme.shrink_to_fit();
      n_cuts += current_.cuts.n_cuts();
      n_letters += current_.cuts.position.back();
      chromosomes.push_back(std::move(current_));
    }
    current_ = {};
    is_open_ = false;
  }

private:
  site_automaton automaton_;
  digested_chromosome current_;
  bool is_open_ = false;
};

} // namespace

bool class_Simul_CutEnzyme::read_sequence_and_create_real_band_map(const std::filesystem::path &file,
                                                                   bool with_breaks) {
  sequence_reader reader(file);
  genome_digest digest(enzyme_list_, with_breaks);
  const auto refuse = [this](const std::string &text) { return frame_.refuse(text); };
  std::unordered_set<std::string> names;
  const std::string shown = " -> " + file.filename().string() + " ",
                    total = number_text(double(reader.size()) / 1e6, 1);
  for (sequence_reader::piece piece; (piece = reader.next()) != sequence_reader::piece::end;) {
    if (piece == sequence_reader::piece::refused)
      return refuse(reader.problem());
    if (piece == sequence_reader::piece::record) {
      const std::string name = reader.name().empty() ? fmt::format("record_{}", names.size() + 1) : reader.name();
      if (!names.insert(name).second)
        return refuse(fmt::format("Two records are called {}: {}", name, reader.place_of_record()));
      digest.begin(name);
      continue;
    }
    const std::string problem = digest.feed(reader.letters());
    if (!problem.empty())
      return refuse(problem + ": " + reader.place());
    // of the file as it lies on disk: how long a gzip file's text is nobody knows before its end
    if (reader.letters().size() > 100000 || names.size() % 1000 == 0) {
      frame_.progress(reader.position(), reader.size());
      frame_.local_process_text_set(shown + number_text(double(reader.position()) / 1e6, 1) + " of " + total + " Mb");
    }
    if (frame_.stop_requested_get())
      return false;
  }
  digest.finish();
  if (digest.n_letters == 0)
    return refuse("Sequence is empty!\r" + reader.place());
  if (reader.n_letters_U() > 0)
    frame_.warn(fmt::format("The sequence holds {} letters U, as RNA does; they match no site ({}).",
                            reader.n_letters_U(), reader.place_of_first_U()));
  chromosomes_ = std::move(digest.chromosomes);
  n_cuts_ = static_cast<std::int32_t>(digest.n_cuts);
  sequence_length_ = digest.n_letters;
  file_with_sequence_name_ = file;
  frame_.message(std::to_string(n_cuts_) + " points found.");
  return true;
}

} // namespace orb
