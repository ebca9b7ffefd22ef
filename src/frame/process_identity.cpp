#include "frame/process_identity.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <unistd.h>

namespace orb {

namespace {

struct process_facts {
  char state = 0; // 0: unknown
  std::uint64_t start = 0;
};

process_facts facts_of(std::int64_t number) {
  process_facts facts;
  std::FILE *file = std::fopen(("/proc/" + std::to_string(number) + "/stat").c_str(), "rb");
  if (!file)
    return facts;
  char bytes[4096];
  const std::string text(bytes, std::fread(bytes, 1, sizeof bytes, file)); // nothing when it ends just now
  std::fclose(file);
  const std::size_t name_end = text.rfind(')'); // the name may hold anything
  if (name_end == std::string::npos)
    return facts;
  std::istringstream fields(text.substr(name_end + 1));
  fields >> facts.state;
  std::string passed;
  for (int field = 4; field < 22; ++field)
    fields >> passed;
  fields >> facts.start;
  return facts;
}

process_identity identity_of_this_process() {
  process_identity own;
  own.number = ::getpid();
  own.start = facts_of(own.number).start;
  char name[256] = "";
  ::gethostname(name, sizeof name - 1);
  own.host = name[0] ? name : "unknown";
  std::error_code failed;
  own.space = std::filesystem::read_symlink("/proc/self/ns/pid", failed).string();
  return own;
}

} // namespace

const process_identity &this_process() {
  thread_local process_identity own;
  if (own.number != ::getpid()) // a child of a fork is another process
    own = identity_of_this_process();
  return own;
}

bool process_is_gone(std::int64_t number, std::uint64_t start) {
  const process_facts facts = facts_of(number); // looked at first: it may end meanwhile
  if (number <= 0 || (::kill(static_cast<pid_t>(number), 0) != 0 && errno == ESRCH))
    return true;
  return facts.state == 'Z' || facts.state == 'X' || (start != 0 && facts.start != 0 && facts.start != start);
}

} // namespace orb
