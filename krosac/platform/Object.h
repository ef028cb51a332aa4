// Reference-counted objects: Object, the smart pointer Ref<T> that callers use, and AutoreleasePool
// for deferred release.
//
// Making an object takes two steps, since an initialiser can fail:
//
//   auto s = krosac::make<krosac::SacObject>();
//   if (!s->initWithPath(path)) return;
//
// alloc<T>() gives a raw pointer with one reference that the caller owns; make<T>() is that
// reference already in a Ref. A made but uninitialised object is zero-filled and safe to destroy.
#ifndef KROSAC_PLATFORM_OBJECT_H
#define KROSAC_PLATFORM_OBJECT_H

#include <atomic>
#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

#include "krosac/platform/Export.h"

namespace krosac {

template <typename T>
class Ref;

// The root of every class: an intrusive reference count. The count is atomic; everything else about
// an object is for one thread at a time.
class KROSAC_API Object {
 public:
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  // The base initialiser. Gives the object, or an empty Ref on failure.
  virtual Ref<Object> init();

  // Adds one reference.
  void retain() const noexcept;
  // Drops one reference; the last one destroys the object.
  void release() const noexcept;
  // Hands one of the receiver's references to the innermost pool of this thread; it adds none.
  // Without a pool the reference is kept and the log says so once.
  void autorelease() const;
  // The number of references; for messages and tests.
  int retainCount() const noexcept { return references_.load(std::memory_order_relaxed); }

 protected:
  Object() noexcept = default;
  virtual ~Object();

  // What an initialiser that autoreleases its receiver calls at its end. On an object that a Ref
  // has adopted it retains first, so that the Ref stays good.
  void autoreleaseReceiver() const;

 private:
  template <typename T>
  friend class Ref;

  mutable std::atomic<int> references_{1};
  mutable bool adopted_ = false;
};

// A smart pointer that holds one reference, or none. A Ref built from a raw pointer takes a
// reference of its own.
template <typename T>
class Ref {
 public:
  // The class of the object.
  using element_type = T;

  // Hold nothing, a further reference to an object, or the one that another Ref gives up.
  Ref() noexcept = default;
  Ref(std::nullptr_t) noexcept {}
  Ref(T* object) noexcept : object_(object) {
    if (object_) object_->retain();
  }
  Ref(const Ref& other) noexcept : Ref(other.object_) {}
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  template <typename U, typename = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  Ref(const Ref<U>& other) noexcept : Ref(static_cast<T*>(other.get())) {}
  ~Ref() {
    if (object_) object_->release();
  }
  // Drops the reference and takes over the other's.
  Ref& operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  // Takes over a reference that the caller owns.
  static Ref adopt(T* object) noexcept {
    Ref ref;
    ref.object_ = object;
    if (object) object->adopted_ = true;
    return ref;
  }

  // The object, null where there is none.
  T* get() const noexcept { return object_; }
  T& operator*() const noexcept { return *object_; }
  T* operator->() const noexcept { return object_; }
  // Whether there is an object.
  explicit operator bool() const noexcept { return object_ != nullptr; }

  // Whether both are the same object.
  template <typename U>
  bool operator==(const Ref<U>& other) const noexcept {
    return object_ == other.get();
  }
  bool operator==(const T* other) const noexcept { return object_ == other; }

 private:
  T* object_ = nullptr;
};

// A new, uninitialised object with one reference that the caller owns; null when there is no
// memory.
template <typename T>
T* alloc() {
  return new (std::nothrow) T();
}

// The same, with that reference in a Ref.
template <typename T>
Ref<T> make() {
  return Ref<T>::adopt(alloc<T>());
}

// A pool of deferred releases for the scope that it is declared in. Pools of one thread nest; the
// innermost receives.
class KROSAC_API AutoreleasePool {
 public:
  // Becomes the innermost pool of this thread, and at its end releases what it was given.
  AutoreleasePool() noexcept;
  ~AutoreleasePool();
  AutoreleasePool(const AutoreleasePool&) = delete;
  AutoreleasePool& operator=(const AutoreleasePool&) = delete;

 private:
  friend class Object;
  static void* operator new(std::size_t) = delete;

  struct Entry {
    const Object* object;
    Entry* next;
  };
  Entry* entries_ = nullptr;
  AutoreleasePool* outer_;
};

}  // namespace krosac

#endif
