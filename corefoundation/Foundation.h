// Foundation for plain C++: the bridged class names, the exception, and the holder of an owned
// reference.
#ifndef COREFOUNDATION_FOUNDATION_H_
#define COREFOUNDATION_FOUNDATION_H_

#include <CoreFoundation/CoreFoundation.h>

#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>

// The classes that CoreFoundation's types are bridged to: a const NSString* is a CFStringRef.
using NSArray = std::remove_const_t<std::remove_pointer_t<CFArrayRef>>;
using NSDictionary = std::remove_const_t<std::remove_pointer_t<CFDictionaryRef>>;
using NSString = std::remove_const_t<std::remove_pointer_t<CFStringRef>>;

// What is thrown where Foundation raises, as for a value of the wrong class. It is caught by class
// and is no std::exception, so that neither is mistaken for the other.
class NSException {
 public:
  explicit NSException(std::string reason) : reason_(std::move(reason)) {}

  const std::string& reason() const { return reason_; }

 private:
  std::string reason_;
};

// Owns one reference to an object, or none. T is a reference type: CFRef<CFStringRef>.
template <typename T>
class CFRef {
  static_assert(std::is_pointer_v<T>, "T is a reference type such as CFStringRef");

 public:
  CFRef() = default;

  // Takes over the result of a Create or Copy call, which may be null.
  explicit CFRef(T created) : object_(created) {}

  // Becomes one more owner of an object that was got from elsewhere, which may be null.
  static CFRef Retain(T got) {
    if (got != nullptr) CFRetain(got);
    return CFRef(got);
  }

  CFRef(const CFRef& other) : CFRef(Retain(other.object_)) {}
  CFRef(CFRef&& other) noexcept : object_(other.release()) {}

  // A mutable object is also an immutable one, and everything is a CFTypeRef.
  template <typename U, typename = std::enable_if_t<std::is_convertible_v<U, T>>>
  // NOLINTNEXTLINE(google-explicit-constructor): as the references themselves convert
  CFRef(CFRef<U> other) noexcept : object_(other.release()) {}

  CFRef& operator=(CFRef other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  ~CFRef() {
    if (object_ != nullptr) CFRelease(object_);
  }

  // Stays owned by the holder.
  T get() const { return object_; }

  explicit operator bool() const { return object_ != nullptr; }

  // Hands the reference over to the caller, who has to release it.
  [[nodiscard]] T release() { return std::exchange(object_, nullptr); }

 private:
  T object_ = nullptr;
};

// The type that CFGetTypeID answers for objects behind the reference type T.
template <typename T>
CFTypeID CFTypeIDOf() {
  if constexpr (std::is_same_v<T, CFStringRef>) {
    return CFStringGetTypeID();
  } else if constexpr (std::is_same_v<T, CFDataRef>) {
    return CFDataGetTypeID();
  } else if constexpr (std::is_same_v<T, CFNumberRef>) {
    return CFNumberGetTypeID();
  } else if constexpr (std::is_same_v<T, CFBooleanRef>) {
    return CFBooleanGetTypeID();
  } else if constexpr (std::is_same_v<T, CFArrayRef>) {
    return CFArrayGetTypeID();
  } else if constexpr (std::is_same_v<T, CFDictionaryRef>) {
    return CFDictionaryGetTypeID();
  } else {
    static_assert(!std::is_same_v<T, T>, "no property-list class");
  }
}

// object as a T when it is one, else null; null for null. Adds no owner.
template <typename T>
T CFCast(CFTypeRef object) {
  if (object == nullptr || CFGetTypeID(object) != CFTypeIDOf<T>()) return nullptr;
  return static_cast<T>(object);
}

#endif  // COREFOUNDATION_FOUNDATION_H_
