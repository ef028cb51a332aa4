#include "krosac/platform/Object.h"

#include "krosac/platform/Log.h"
#include "krosac/platform/internal/Reason.h"

namespace krosac {
namespace {

thread_local AutoreleasePool* innermostPool = nullptr;

}  // namespace

Object::~Object() = default;

Ref<Object> Object::init() {
  return Ref<Object>(this);
}

void Object::retain() const noexcept {
  references_.fetch_add(1, std::memory_order_relaxed);
}

void Object::release() const noexcept {
  if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

void Object::autorelease() const {
  auto* entry = innermostPool ? new (std::nothrow) AutoreleasePool::Entry : nullptr;
  if (entry) {
    *entry = {this, innermostPool->entries_};
    innermostPool->entries_ = entry;
    return;
  }
  if (innermostPool) return setMemoryReason();
  static std::atomic<bool> logged{false};
  if (!logged.exchange(true))
    log("An object was autoreleased with no pool in place; its reference is kept.");
}

void Object::autoreleaseReceiver() const {
  if (adopted_) retain();
  autorelease();
}

AutoreleasePool::AutoreleasePool() noexcept : outer_(innermostPool) {
  innermostPool = this;
}

AutoreleasePool::~AutoreleasePool() {
  // A release may destroy an object whose destructor autoreleases other objects into this pool.
  while (entries_) {
    Entry* entry = std::exchange(entries_, entries_->next);
    entry->object->release();
    delete entry;
  }
  innermostPool = outer_;
}

}  // namespace krosac
