#include "viewer/view_steps.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <functional>
#include <map>

#include "frame/failures.h"
#include "frame/numbers.h"
#include "viewer/net_view_menu.h"

namespace orb {

namespace {

using numbers = std::vector<float>;

struct step_word {
  std::size_t n_numbers = 0; // 0: any
  std::function<void(net_view &, const numbers &)> act;
};

void drag(net_view &view, const numbers &at) {
  view.press(net_view::button::first, at[0], at[1], false);
  view.move((at[0] + at[2]) / 2, (at[1] + at[3]) / 2);
  view.move(at[2], at[3]);
  view.release(at[2], at[3]);
}

std::int32_t whole(float value) {
  return static_cast<std::int32_t>(std::clamp(value, -1e9f, 1e9f));
}

void select(net_view &view, const numbers &nodes) {
  std::vector<vertex_number> wanted;
  for (const float n : nodes)
    wanted.push_back(whole(n));
  view.select_nodes(wanted);
}

const std::map<std::string, step_word> &table_of_words() {
  const auto first = net_view::button::first;
  static const std::map<std::string, step_word> table{
      {"press", {2, [=](net_view &v, const numbers &at) { v.press(first, at[0], at[1], false); }}},
      {"shift-press", {2, [=](net_view &v, const numbers &at) { v.press(first, at[0], at[1], true); }}},
      {"move", {2, [](net_view &v, const numbers &at) { v.move(at[0], at[1]); }}},
      {"release", {2, [](net_view &v, const numbers &at) { v.release(at[0], at[1]); }}},
      {"drag", {4, drag}},
      {"row", {1, [](net_view &v, const numbers &n) { v.cluster_row_clicked(whole(n[0])); }}},
      {"select", {0, select}},
      {"zoom", {3, [](net_view &v, const numbers &at) { v.zoom_at(whole(at[0]), at[1], at[2]); }}},
      {"pan", {2, [](net_view &v, const numbers &by) { v.pan(by[0], by[1]); }}},
      {"size",
       {2,
        [](net_view &v, const numbers &size) {
          v.resize_picture({size[0], size[1]});
        }}},
      {"stop-after", {1, [](net_view &v, const numbers &n) { v.stop_after(whole(n[0])); }}}};
  return table;
}

// Numbers between commas; as many as are wanted, or the step is wrong.
numbers numbers_of(const std::string &word, const std::string &text, std::size_t n_wanted) {
  numbers found;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(',', begin), text.size());
    double value = 0;
    if (!number_parse(text.substr(begin, end - begin), value) || !std::isfinite(value))
      throw usage_error(fmt::format("{}={}: that are no numbers with commas between them", word, text));
    found.push_back(static_cast<float>(value));
    begin = end + 1;
  }
  if (n_wanted > 0 && found.size() != n_wanted)
    throw usage_error(fmt::format("{}={}: wanted are {} numbers with commas between them", word, text, n_wanted));
  return found;
}

} // namespace

std::vector<std::string> words_of_view_steps() {
  std::vector<std::string> words;
  for (const auto &[word, step] : table_of_words())
    words.push_back(word);
  for (const view_menu_item &item : table_of_view_menu())
    words.push_back(item.control);
  return words;
}

std::string control_of_step(const std::string &step) {
  return step.substr(0, step.find('='));
}

bool do_view_step(net_view &view, const std::string &step) {
  const std::string control = control_of_step(step);
  const std::string value = control.size() < step.size() ? step.substr(control.size() + 1) : std::string();
  const auto word = table_of_words().find(control);
  if (word == table_of_words().end())
    return view.choose(control, value);
  word->second.act(view, numbers_of(control, value, word->second.n_numbers));
  return true;
}

} // namespace orb
