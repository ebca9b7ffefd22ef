// libFuzzer's entry: ORB_FUZZ_TARGET names the reader. With ORB_FUZZ_SEEDS its seeds go to that folder and nothing is
// fuzzed; with ORB_FUZZ_NAMES the names of all readers are printed.
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "../fuzz_targets.h"
#include "support/temporary_folder.h"

namespace {

const fuzz_test::fuzz_target *wanted = nullptr;

void write_seeds(const std::filesystem::path &folder) {
  int i = 0;
  for (const std::string &bytes : wanted->seeds())
    orb::write_bytes(folder / ("seed_" + std::to_string(++i)), bytes);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  const char *const name = std::getenv("ORB_FUZZ_TARGET"), *const seeds = std::getenv("ORB_FUZZ_SEEDS");
  const bool names = std::getenv("ORB_FUZZ_NAMES") != nullptr;
  for (const fuzz_test::fuzz_target &target : fuzz_test::fuzz_targets()) {
    if (names)
      std::puts(target.name.c_str());
    if (name != nullptr && target.name == name)
      wanted = &target;
  }
  if (names)
    std::exit(0);
  if (wanted == nullptr) {
    std::fputs("fuzz_readers: ORB_FUZZ_TARGET names no reader\n", stderr);
    std::exit(2);
  }
  if (seeds != nullptr) {
    write_seeds(seeds);
    std::exit(0);
  }
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
  try {
    wanted->run(std::string(reinterpret_cast<const char *>(data), size));
  } catch (const std::exception &broken) {
    std::fprintf(stderr, "broken promise: %s\n", broken.what());
    std::abort();
  }
  return 0;
}
