#include "commands/contig_choice.h"

#include <fmt/format.h>

#include "commands/parameter_list.h"
#include "frame/failures.h"

namespace orb {

std::vector<std::string> names_of_contigs(const class_FPCto_import &registry) {
  std::vector<std::string> names;
  for (const cluster_id id : registry.current_list_of_clusters_in_use_get().members())
    if (registry.cluster_is_contig_get(id))
      names.push_back(registry.name_of_cluster_get(id));
  return names;
}

std::string text_of_some_contigs(const std::vector<std::string> &names) {
  constexpr std::size_t most = 5;
  if (names.empty())
    return "There are no contigs.";
  std::string text = names.size() > 1 ? "Contigs are " : "The only contig is ";
  for (std::size_t i = 0; i < names.size() && i < most; ++i)
    text += (i > 0 ? ", " : "") + names[i];
  return text + (names.size() > most ? fmt::format(" and {} more.", names.size() - most) : ".");
}

void refuse_contig(const std::string &wanted, const std::vector<std::string> &names) {
  const std::string near = nearest_word(wanted, names);
  throw usage_error("there is no contig " + wanted + (near.empty() ? ". " : "; is " + near + " meant? ") +
                    text_of_some_contigs(names));
}

} // namespace orb
