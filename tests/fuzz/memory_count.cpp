#include "memory_count.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "fuzz_targets.h"

namespace {

std::atomic<std::int64_t> bytes_now{0}, bytes_most{0}, n_allocations{0};

void *counted(void *block) {
  if (block == nullptr)
    throw std::bad_alloc();
  const auto size = static_cast<std::int64_t>(::malloc_usable_size(block));
  const std::int64_t now = bytes_now.fetch_add(size, std::memory_order_relaxed) + size;
  n_allocations.fetch_add(1, std::memory_order_relaxed);
  for (std::int64_t most = bytes_most.load(std::memory_order_relaxed);
       now > most && !bytes_most.compare_exchange_weak(most, now, std::memory_order_relaxed);) {
  }
  return block;
}

void forget(void *block) {
  if (block != nullptr)
    bytes_now.fetch_sub(static_cast<std::int64_t>(::malloc_usable_size(block)), std::memory_order_relaxed);
  std::free(block);
}

// A whole number of alignments, as aligned_alloc wants it.
void *aligned(std::size_t size, std::align_val_t alignment) {
  const auto unit = static_cast<std::size_t>(alignment);
  return std::aligned_alloc(unit, (size + unit - 1) / unit * unit);
}

} // namespace

// All forms: a sanitizer brings some of its own, which would not end in these.
void *operator new(std::size_t size) {
  return counted(std::malloc(size == 0 ? 1 : size));
}
void *operator new(std::size_t size, std::align_val_t alignment) {
  return counted(aligned(size, alignment));
}
void *operator new(std::size_t size, const std::nothrow_t &) noexcept {
  void *const block = std::malloc(size == 0 ? 1 : size);
  return block == nullptr ? nullptr : counted(block);
}
void *operator new[](std::size_t size) {
  return ::operator new(size);
}
void *operator new[](std::size_t size, std::align_val_t alignment) {
  return ::operator new(size, alignment);
}
void *operator new[](std::size_t size, const std::nothrow_t &unthrowing) noexcept {
  return ::operator new(size, unthrowing);
}
void operator delete(void *block) noexcept {
  forget(block);
}
void operator delete(void *block, std::size_t) noexcept {
  forget(block);
}
void operator delete(void *block, std::align_val_t) noexcept {
  forget(block);
}
void operator delete(void *block, std::size_t, std::align_val_t) noexcept {
  forget(block);
}
void operator delete(void *block, const std::nothrow_t &) noexcept {
  forget(block);
}
void operator delete[](void *block) noexcept {
  forget(block);
}
void operator delete[](void *block, std::size_t) noexcept {
  forget(block);
}
void operator delete[](void *block, std::align_val_t) noexcept {
  forget(block);
}
void operator delete[](void *block, std::size_t, std::align_val_t) noexcept {
  forget(block);
}
void operator delete[](void *block, const std::nothrow_t &) noexcept {
  forget(block);
}

namespace fuzz_test {

memory_count::memory_count() : bytes_before_(bytes_now), allocations_before_(n_allocations) {
  bytes_most = bytes_before_;
}

std::int64_t memory_count::most_bytes() const {
  return bytes_most - bytes_before_;
}

std::int64_t memory_count::allocations() const {
  return n_allocations - allocations_before_;
}

void memory_count::check(std::int64_t n_bytes_read, const work_limits &limits) const {
  const std::int64_t bytes = most_bytes(), n = allocations();
  const std::string size = " for " + std::to_string(n_bytes_read) + " bytes of input";
  promise(bytes <= limits.bytes + limits.bytes_per_byte * n_bytes_read, std::to_string(bytes) + " bytes" + size);
  promise(n <= limits.allocations + limits.allocations_per_byte * n_bytes_read,
          std::to_string(n) + " allocations" + size);
}

} // namespace fuzz_test
