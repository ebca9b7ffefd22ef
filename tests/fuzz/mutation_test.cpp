// Each reader on 2,000 changed inputs, by a seed; tools/fuzz lets a fuzzer look for more.
#include <algorithm>
#include <gtest/gtest.h>

#include "fuzz_targets.h"
#include "mutator.h"

namespace fuzz_test {

namespace {

#ifdef ORB_SANITIZED // four times as slow, and libFuzzer looks there too
constexpr int n_rounds = 500;
#else
constexpr int n_rounds = 2000;
#endif
constexpr std::size_t most_shown = 20000; // bytes of an input

// The bytes as a literal, to be kept among the seeds.
std::string literal_of(const std::string &bytes) {
  return testing::PrintToString(bytes);
}

// Large enough to show work that grows faster than the input.
std::string repeated(const std::string &bytes) {
  constexpr std::size_t large = 1 << 18;
  std::string all = bytes;
  while (!bytes.empty() && all.size() < large)
    all += bytes;
  return all;
}

class readers : public testing::TestWithParam<std::string> {};

// Whether it was accepted; a broken promise fails the test.
bool runs(const fuzz_target &target, const std::string &bytes) {
  try {
    return target.run(bytes);
  } catch (const std::exception &broken) {
    ADD_FAILURE() << broken.what() << "\n" << literal_of(bytes.substr(0, most_shown));
    return false;
  }
}

TEST_P(readers, keep_their_promises_on_changed_inputs) {
  const auto &all = fuzz_targets();
  const auto target = std::find_if(all.begin(), all.end(), [](const auto &one) { return one.name == GetParam(); });
  const std::vector<std::string> seeds = target->seeds();
  int n_accepted = 0;
  for (const std::string &seed : seeds) {
    n_accepted += runs(*target, seed);
    runs(*target, repeated(seed));
  }
  EXPECT_GT(n_accepted, 0) << "a reader that takes nothing shows nothing";
  orb::random_source chance(1);
  const auto any_seed = [&] { return seeds[chance.next() % seeds.size()]; };
  for (int i = 0; i < n_rounds && !HasFailure(); ++i)
    n_accepted += runs(*target, mutated(any_seed(), any_seed(), chance));
  RecordProperty("accepted", n_accepted);
}

std::vector<std::string> names() {
  std::vector<std::string> all;
  for (const fuzz_target &target : fuzz_targets())
    all.push_back(target.name);
  return all;
}

INSTANTIATE_TEST_SUITE_P(each, readers, testing::ValuesIn(names()), [](const auto &one) { return one.param; });

} // namespace

} // namespace fuzz_test
