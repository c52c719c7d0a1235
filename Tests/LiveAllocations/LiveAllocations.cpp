// The counting operators new and delete of the programs that link this; others keep the library's.
#include "Tests/LiveAllocations/LiveAllocations.h"

#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

std::atomic<std::int64_t> blocks = 0;
std::atomic<std::int64_t> bytes = 0;

void* allocated(std::size_t size, std::align_val_t alignment) {
  const auto step = static_cast<std::size_t>(alignment);
  return std::aligned_alloc(step, (size + step - 1) / step * step);
}

void* countedIfAny(void* block) noexcept {
  if (block == nullptr) return nullptr;
  ++blocks;
  bytes += static_cast<std::int64_t>(malloc_usable_size(block));
  return block;
}

void* counted(void* block) {
  if (block == nullptr) throw std::bad_alloc();
  return countedIfAny(block);
}

void release(void* block) noexcept {
  if (block == nullptr) return;
  --blocks;
  bytes -= static_cast<std::int64_t>(malloc_usable_size(block));
  std::free(block);
}

}  // namespace

namespace lanternfold {

LiveAllocations liveAllocations() { return {.blocks = blocks, .bytes = bytes}; }

}  // namespace lanternfold

// All of them: a form that is left out would be the library's or a sanitizer's, whose blocks these
// would release.
void* operator new(std::size_t size) { return counted(std::malloc(size)); }
void* operator new[](std::size_t size) { return counted(std::malloc(size)); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return counted(allocated(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return counted(allocated(size, alignment));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return countedIfAny(std::malloc(size));
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return countedIfAny(std::malloc(size));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return countedIfAny(allocated(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return countedIfAny(allocated(size, alignment));
}
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }
void operator delete(void* block, std::align_val_t) noexcept { release(block); }
void operator delete[](void* block, std::align_val_t) noexcept { release(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { release(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { release(block); }
void operator delete(void* block, std::align_val_t, const std::nothrow_t&) noexcept {
  release(block);
}
void operator delete[](void* block, std::align_val_t, const std::nothrow_t&) noexcept {
  release(block);
}
