/// @file
/// Shared references: reference-counted pointers and arrays.
#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>

/// The shared references that hosts and modules hand each other.
namespace var_a_legacy {

template <class P>
class var_a;

/// A shared, reference-counted reference to one object.
///
///     var_a_legacy::var_a<TKvStream*> stream(new TKvFileStream(path, kvOpenRead, kvShareAll));
///     stream->SetPos(0);
///
/// Ownership: the object lives while any reference to it does and is deleted, as the type it was
/// first given as, with the last one. Copying adds a reference, destroying drops one. A reference
/// may be empty.
/// Threads: the count is atomic, so references to one object may be copied and dropped on several
/// threads at once; one reference must not be assigned on two.
template <class T>
class var_a<T*> {
 public:
  /// Empty.
  var_a() noexcept = default;
  /// Empty.
  var_a(std::nullptr_t) noexcept {}
  /// Takes ownership of `owned` (null gives an empty reference). When the count cannot be
  /// allocated, deletes `owned` and throws std::bad_alloc.
  explicit var_a(T* owned) : object_(Hold(owned)) {}
  /// From a reference to a derived class.
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  var_a(const var_a<U*>& other) noexcept : object_(other.object_) {}

  /// The object; null when empty.
  T* get() const noexcept { return object_.get(); }
  /// The object; the reference must not be empty.
  T* operator->() const noexcept { return object_.get(); }
  /// The object; the reference must not be empty.
  T& operator*() const noexcept { return *object_; }
  /// Whether there is an object.
  explicit operator bool() const noexcept { return object_ != nullptr; }
  /// Drops the reference; empty afterwards.
  void reset() noexcept { object_.reset(); }
  /// How many references share the object; 0 when empty. A hint only while other threads copy.
  long use_count() const noexcept { return object_.use_count(); }

 private:
  template <class P>
  friend class var_a;

  static std::shared_ptr<T> Hold(T* owned) {
    return owned == nullptr ? std::shared_ptr<T>() : std::shared_ptr<T>(owned);
  }

  std::shared_ptr<T> object_;
};

/// Whether both refer to one object, or both are empty.
template <class T, class U>
bool operator==(const var_a<T*>& a, const var_a<U*>& b) noexcept {
  return a.get() == b.get();
}
/// Whether they do not.
template <class T, class U>
bool operator!=(const var_a<T*>& a, const var_a<U*>& b) noexcept {
  return a.get() != b.get();
}
/// Whether the reference is empty.
template <class T>
bool operator==(const var_a<T*>& a, std::nullptr_t) noexcept {
  return !a;
}
/// Whether the reference is empty.
template <class T>
bool operator==(std::nullptr_t, const var_a<T*>& a) noexcept {
  return !a;
}
/// Whether there is an object.
template <class T>
bool operator!=(const var_a<T*>& a, std::nullptr_t) noexcept {
  return static_cast<bool>(a);
}
/// Whether there is an object.
template <class T>
bool operator!=(std::nullptr_t, const var_a<T*>& a) noexcept {
  return static_cast<bool>(a);
}

/// A shared array with value-initialised elements.
///
/// Ownership: copies share the elements, which are destroyed with the last copy. Elements are not
/// checked against the size. Throws std::bad_alloc when the array cannot be allocated.
template <class T>
class newarray_a {
 public:
  /// No elements.
  newarray_a() noexcept = default;
  /// `count` elements.
  explicit newarray_a(unsigned long count)
      : elements_(std::make_unique<T[]>(count)), size_(count) {}

  /// The element at `i`, from 0.
  T& operator[](unsigned long i) const { return elements_[static_cast<std::ptrdiff_t>(i)]; }
  /// The first element; null when there are none.
  T* get() const noexcept { return elements_.get(); }
  /// The number of elements.
  unsigned long size() const noexcept { return size_; }

 private:
  std::shared_ptr<T[]> elements_;
  unsigned long size_ = 0;
};

}  // namespace var_a_legacy
