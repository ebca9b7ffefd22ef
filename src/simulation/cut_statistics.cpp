// class_Simul_CutEnzyme: the files "enz_NAME_statistics.txt".
#include <algorithm>

#include "frame/files.h"
#include "frame/numbers.h"
#include "simulation/class_Simul_CutEnzyme.h"

namespace orb {

namespace {

// Bands of each length with enzyme e at one end, a column for the enzyme of the other end.
void print_lengths(result_file &file, const std::vector<enzyme_rec> &enzymes, const band_table &table, std::int32_t e) {
  std::string text = "Len";
  for (std::size_t other = 1; other < enzymes.size(); ++other)
    text += "\t" + enzymes[other].name;
  file.line(text);
  for (std::int32_t length = 1; length <= table.max_length; ++length) {
    text.clear();
    whole_number_append(text, length);
    for (std::int32_t other = 1; other <= table.n_enzymes; ++other) {
      std::int64_t n = table.both_ends[table.pair_cell(length, e, other)];
      if (other != e)
        n += table.both_ends[table.pair_cell(length, other, e)];
      text += '\t';
      whole_number_append(text, n);
    }
    file.line(text);
  }
}

// Parts of the chosen length of every chromosome, in megabases, with the cuts of enzyme e in each.
void print_parts(result_file &file, const std::vector<digested_chromosome> &chromosomes, std::int32_t length_of_part,
                 std::int32_t e) {
  file.line("part\tstart\tend\tchromosome\tcuts");
  std::int64_t part = 0;
  for (const digested_chromosome &chromosome : chromosomes) {
    const cut_list &cuts = chromosome.cuts;
    std::size_t i = 1;
    for (std::int64_t start = 0; start < chromosome.length(); start += length_of_part) {
      const std::int64_t end = std::min<std::int64_t>(start + length_of_part, chromosome.length());
      std::int64_t n = 0;
      for (; i + 1 < cuts.position.size() && cuts.position[i] < end; ++i)
        n += cuts.enzyme[i] == e ? 1 : 0;
      file.line(std::to_string(++part) + "\t" + number_text(double(start) / 1e6, 3) + "\t" +
                number_text(double(end) / 1e6, 3) + "\t" + chromosome.name + "\t" + std::to_string(n));
    }
  }
}

} // namespace

void class_Simul_CutEnzyme::print_seq_statistics(std::int32_t length_of_part) const {
  length_of_part = std::max(length_of_part, 1);
  band_table table;
  start_table(table, true);
  for (const digested_chromosome &chromosome : chromosomes_)
    create_band_presented_times(chromosome.cuts, false, table);
  for (std::int32_t e = 1; e <= n_enzymes(); ++e) {
    const std::string &name = enzyme_list_[static_cast<std::size_t>(e)].name;
    result_file file(frame_.path_in_working_folder("\\enz_" + name + "_statistics.txt"));
    print_lengths(file, enzyme_list_, table, e);
    file.line("Length of part\t" + std::to_string(length_of_part));
    file.line("Length of part = " + number_text(double(length_of_part) / 1e6, 3));
    print_parts(file, chromosomes_, length_of_part, e);
    file.commit();
  }
}

} // namespace orb
