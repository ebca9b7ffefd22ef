#include <algorithm>

#include "frame/front_end.h"

namespace orb {

bool answer_book::take(const std::string &prompt, std::string &reply) {
  const auto found = std::find_if(answers_.begin(), answers_.end(), [&prompt](const prepared_answer &prepared) {
    return prompt.compare(0, prepared.prompt_start.size(), prepared.prompt_start) == 0;
  });
  if (found == answers_.end())
    return false;
  reply = found->reply;
  if (!found->always)
    answers_.erase(found);
  return true;
}

bool answer_book::parse(const std::string &text, answer_book &book, std::string &problem) {
  problem.clear();
  std::size_t begin = 0;
  for (int line_number = 1; begin < text.size(); ++line_number) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    std::string line = text.substr(begin, end - begin);
    begin = end + 1;
    if (!line.empty() && line.back() == '\r')
      line.pop_back();
    if (line.empty())
      continue;
    const std::size_t tab = line.find('\t');
    if (tab == std::string::npos) {
      if (!problem.empty())
        problem += "; ";
      problem += "line " + std::to_string(line_number) + " has no tab: " + line;
      continue;
    }
    prepared_answer prepared;
    prepared.always = line[0] == '*';
    const std::size_t start = prepared.always ? 1 : 0;
    prepared.prompt_start = line.substr(start, tab - start);
    prepared.reply = line.substr(tab + 1);
    book.add(std::move(prepared));
  }
  return problem.empty();
}

bool answer_from_text(const std::string &text, answer &out) {
  std::string word;
  for (const char c : text)
    if (c != ' ' && c != '\t')
      word += static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  if (word == "yes" || word == "y" || word == "ok" || word == "1")
    out = answer::yes;
  else if (word == "no" || word == "n" || word == "0")
    out = answer::no;
  else if (word == "cancel")
    out = answer::cancel;
  else
    return false;
  return true;
}

} // namespace orb
