#include "Tests/Simulation/Fiber.h"

#include <cstdint>
#include <ucontext.h>
#include <utility>

#include "Support/FatalError.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/common_interface_defs.h>
#endif

namespace lanternfold::simulation {
namespace {

constexpr std::size_t stackBytes = 1024 * 1024;  // untouched pages cost nothing

/// What the address sanitizer has to know of a change of stacks; nothing without it.
struct StackOfSanitizer {
  void* fake = nullptr;
  const void* bottom = nullptr;
  std::size_t size = 0;
};

#if defined(__SANITIZE_ADDRESS__)
void leave(void** fake, const StackOfSanitizer& to) {
  __sanitizer_start_switch_fiber(fake, to.bottom, to.size);
}
void arrive(void* fake, StackOfSanitizer* from) {
  __sanitizer_finish_switch_fiber(fake, from ? &from->bottom : nullptr,
                                  from ? &from->size : nullptr);
}
#else
void leave(void**, const StackOfSanitizer&) {}
void arrive(void*, StackOfSanitizer*) {}
#endif

}  // namespace

struct Fiber::Stacks {
  ucontext_t resumer{};
  ucontext_t own{};
  std::unique_ptr<std::byte[]> memory{new std::byte[stackBytes]};
  StackOfSanitizer resumerStack;
  StackOfSanitizer ownStack;
};

Fiber::Fiber(std::function<void()> body)
    : body_(std::move(body)), stacks_(std::make_unique<Stacks>()) {
  if (getcontext(&stacks_->own) != 0) fatalError("a fiber could not be made");
  stacks_->own.uc_stack.ss_sp = stacks_->memory.get();
  stacks_->own.uc_stack.ss_size = stackBytes;
  stacks_->own.uc_link = nullptr;
  stacks_->ownStack.bottom = stacks_->memory.get();
  stacks_->ownStack.size = stackBytes;
  // makecontext hands on integers only.
  const auto address = reinterpret_cast<std::uintptr_t>(this);
  makecontext(&stacks_->own, reinterpret_cast<void (*)()>(&Fiber::enter), 2,
              static_cast<unsigned>(address >> 32), static_cast<unsigned>(address));
}

Fiber::~Fiber() {
  if (hasBegun_ && !isFinished_) fatalError("a fiber was destroyed in the middle of its body");
}

void Fiber::resume() {
  if (isFinished_) fatalError("a fiber was resumed that has ended");
  hasBegun_ = true;
  leave(&stacks_->resumerStack.fake, stacks_->ownStack);
  swapcontext(&stacks_->resumer, &stacks_->own);
  arrive(stacks_->resumerStack.fake, nullptr);
}

void Fiber::suspend() {
  leave(&stacks_->ownStack.fake, stacks_->resumerStack);
  swapcontext(&stacks_->own, &stacks_->resumer);
  arrive(stacks_->ownStack.fake, &stacks_->resumerStack);
}

void Fiber::enter(unsigned high, unsigned low) {
  auto* fiber = reinterpret_cast<Fiber*>((static_cast<std::uintptr_t>(high) << 32) | low);
  arrive(nullptr, &fiber->stacks_->resumerStack);
  fiber->body_();
  fiber->isFinished_ = true;
  leave(nullptr, fiber->stacks_->resumerStack);  // null: this stack is not coming back
  setcontext(&fiber->stacks_->resumer);
}

}  // namespace lanternfold::simulation
