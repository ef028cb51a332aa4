// Reference-counted objects: Object, the smart pointer Ref<T> that callers use, and AutoreleasePool
// for deferred release.
//
// An object is made in two steps, since initialisers can fail:
//
//   auto s = krosac::make<krosac::SacObject>();
//   if (!s->initWithPath(path)) return;
//
// alloc<T>() returns a raw pointer and one reference that the caller owns; make<T>() returns that
// reference in a Ref. An object that is not initialised is filled with zeros and safe to destroy.
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

// The base of all classes, with an intrusive reference count. The count is atomic; otherwise an
// object may be used by one thread at a time.
class KROSAC_API Object {
 public:
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  // The base initialiser. Returns the object, or an empty Ref on failure.
  virtual Ref<Object> init();

  // Adds one reference.
  void retain() const noexcept;
  // Drops one reference; dropping the last one destroys the object.
  void release() const noexcept;
  // Transfers one of the object's references to the innermost pool of this thread; adds none.
  // Without a pool the reference is kept and one message is logged per process. If memory runs out
  // the reference is kept too, with a reason.
  void autorelease() const;
  // The number of references, for messages and tests.
  int retainCount() const noexcept { return references_.load(std::memory_order_relaxed); }

 protected:
  Object() noexcept = default;
  virtual ~Object();

  // Initialisers that autorelease their object call this last. If a Ref has adopted the object, it
  // retains first, so that the Ref stays valid.
  void autoreleaseReceiver() const;

 private:
  template <typename T>
  friend class Ref;

  mutable std::atomic<int> references_{1};
  mutable bool adopted_ = false;
};

// A smart pointer that holds one reference or none. Constructing a Ref from a raw pointer retains
// the object.
template <typename T>
class Ref {
 public:
  // The class of the object.
  using element_type = T;

  // Hold nothing, a new reference to an object, or the reference of a Ref that is moved from.
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
  // Replaces the reference by the other's.
  Ref& operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  // Takes ownership of a reference that the caller owns.
  static Ref adopt(T* object) noexcept {
    Ref ref;
    ref.object_ = object;
    if (object) object->adopted_ = true;
    return ref;
  }

  // The object; null if there is none.
  T* get() const noexcept { return object_; }
  T& operator*() const noexcept { return *object_; }
  T* operator->() const noexcept { return object_; }
  // True if there is an object.
  explicit operator bool() const noexcept { return object_ != nullptr; }

  // True if both refer to the same object, or both to none.
  template <typename U>
  bool operator==(const Ref<U>& other) const noexcept {
    return object_ == other.get();
  }
  bool operator==(const T* other) const noexcept { return object_ == other; }

 private:
  T* object_ = nullptr;
};

// A new, uninitialised object with one reference that the caller owns; null if memory runs out.
template <typename T>
T* alloc() {
  return new (std::nothrow) T();
}

// A new, uninitialised object in a Ref; empty if memory runs out.
template <typename T>
Ref<T> make() {
  return Ref<T>::adopt(alloc<T>());
}

// Releases, at the end of the scope in which it is declared, the objects autoreleased there. Pools
// of one thread nest; the innermost receives the objects.
class KROSAC_API AutoreleasePool {
 public:
  // The constructor makes this the innermost pool of the thread; the destructor releases its
  // objects.
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
