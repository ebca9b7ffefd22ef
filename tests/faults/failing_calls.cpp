// A library to be loaded in front of a program (LD_PRELOAD): it counts the calls by which the program opens, writes,
// closes, renames, links and makes files and folders below one folder, and lets some of them fail as a full or broken
// disk would. Variables of the environment:
//   ORB_FAULTS_BELOW  the folder, absolute; names that aren't absolute count as below it
//   ORB_FAULTS_LIST   a file; every call that counts is appended to it as a line "call path", so that the k-th line is
//   call k ORB_FAULTS_FIRST, ORB_FAULTS_LAST   the calls that fail, from 1; none when they aren't given
//   ORB_FAULTS_ERROR  the error number that they fail with
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

template <class function> function *real(const char *name) {
  return reinterpret_cast<function *>(::dlsym(RTLD_NEXT, name));
}

using open_call = int(const char *, int, ...);
using fopen_call = std::FILE *(const char *, const char *);

int number_of_variable(const char *name, int otherwise) {
  const char *text = std::getenv(name);
  return text ? std::atoi(text) : otherwise;
}

struct plan {
  const char *below = std::getenv("ORB_FAULTS_BELOW");
  int first = number_of_variable("ORB_FAULTS_FIRST", 0), last = number_of_variable("ORB_FAULTS_LAST", first);
  int error = number_of_variable("ORB_FAULTS_ERROR", ENOSPC);
  int list = -1;
  std::atomic<int> n_calls{0};
  std::array<std::atomic<char *>, 1024> paths{}; // of the open descriptors that count

  plan() {
    if (const char *file = std::getenv("ORB_FAULTS_LIST"))
      list = real<open_call>("open")(file, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  }
};

plan &the_plan() {
  static plan only;
  return only;
}

bool counts(const char *path) {
  const char *below = the_plan().below;
  return below && path && (*path != '/' || std::strncmp(path, below, std::strlen(below)) == 0);
}

// Whether this call is to fail; errno is set then.
bool fails(const char *call, const char *path) {
  if (!counts(path))
    return false;
  plan &now = the_plan();
  const int k = ++now.n_calls;
  if (now.list >= 0)
    ::dprintf(now.list, "%s %s\n", call, path); // within the C library, past these functions
  if (k < now.first || k > now.last)
    return false;
  errno = now.error;
  return true;
}

const char *path_of(int descriptor) {
  return descriptor >= 0 && descriptor < 1024 ? the_plan().paths[static_cast<std::size_t>(descriptor)].load() : nullptr;
}

void remember(int descriptor, const char *path) {
  if (descriptor >= 0 && descriptor < 1024)
    std::free(the_plan().paths[static_cast<std::size_t>(descriptor)].exchange(path ? ::strdup(path) : nullptr));
}

int open_or_fail(const char *name, const char *path, int flags, mode_t mode) {
  const bool writes = (flags & O_ACCMODE) != O_RDONLY;
  if (fails(writes ? "open" : "open-to-read", path))
    return -1;
  const int descriptor = real<open_call>(name)(path, flags, mode);
  remember(descriptor, writes && counts(path) ? path : nullptr);
  return descriptor;
}

} // namespace

extern "C" {

#define ORB_OPEN(name)                                                                                                 \
  int name(const char *path, int flags, ...) {                                                                         \
    va_list rest;                                                                                                      \
    va_start(rest, flags);                                                                                             \
    const mode_t mode = (flags & O_CREAT) ? va_arg(rest, mode_t) : 0;                                                  \
    va_end(rest);                                                                                                      \
    return open_or_fail(#name, path, flags, mode);                                                                     \
  }
ORB_OPEN(open)
ORB_OPEN(open64)

std::FILE *fopen(const char *path, const char *mode) {
  return fails("fopen", path) ? nullptr : real<fopen_call>("fopen")(path, mode);
}

std::FILE *fopen64(const char *path, const char *mode) {
  return fails("fopen", path) ? nullptr : real<fopen_call>("fopen64")(path, mode);
}

// Half of the bytes are there before it fails, as on a disk that fills up.
ssize_t write(int descriptor, const void *bytes, size_t n) {
  const auto really = real<ssize_t(int, const void *, size_t)>("write");
  if (!fails("write", path_of(descriptor)))
    return really(descriptor, bytes, n);
  if (really(descriptor, bytes, n / 2) >= 0)
    errno = the_plan().error;
  return -1;
}

int close(int descriptor) {
  const bool failed = fails("close", path_of(descriptor));
  remember(descriptor, nullptr);
  const int closed = real<int(int)>("close")(descriptor);
  if (failed)
    errno = the_plan().error;
  return failed ? -1 : closed;
}

int ftruncate(int descriptor, off_t length) noexcept {
  return fails("ftruncate", path_of(descriptor)) ? -1 : real<int(int, off_t)>("ftruncate")(descriptor, length);
}

int posix_fallocate(int descriptor, off_t from, off_t length) {
  return fails("posix_fallocate", path_of(descriptor))
             ? the_plan().error
             : real<int(int, off_t, off_t)>("posix_fallocate")(descriptor, from, length);
}

int rename(const char *from, const char *to) noexcept {
  return fails("rename", to) ? -1 : real<int(const char *, const char *)>("rename")(from, to);
}

int link(const char *from, const char *to) noexcept {
  return fails("link", to) ? -1 : real<int(const char *, const char *)>("link")(from, to);
}

int mkdir(const char *path, mode_t mode) noexcept {
  return fails("mkdir", path) ? -1 : real<int(const char *, mode_t)>("mkdir")(path, mode);
}

} // extern "C"
