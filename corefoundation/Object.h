// Base of the objects behind the references that callers hold.
#ifndef COREFOUNDATION_OBJECT_H_
#define COREFOUNDATION_OBJECT_H_

#include <CoreFoundation/CFBase.h>

#include <atomic>
#include <cstddef>

namespace CoreFoundation {

// What CFGetTypeID answers.
enum class Type : CFTypeID {
  kAllocator = 1,
  kArray,
  kBoolean,
  kBundle,
  kData,
  kDate,
  kDictionary,
  kNumber,
  kString,
  kUid,
  kURL,
  kUUID
};

// Constant objects are not counted and never destroyed.
enum class Lifetime { kCounted, kConstant };

class Object {
 public:
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() = default;

  Type type() const { return type_; }
  bool IsConstant() const { return lifetime_ == Lifetime::kConstant; }

  // other is of the same type. Equal objects have equal hashes.
  virtual bool Equals(const Object& other) const = 0;
  virtual std::size_t Hash() const = 0;

  void Retain() const;
  void Release() const;

 protected:
  constexpr explicit Object(Type type, Lifetime lifetime = Lifetime::kCounted)
      : type_(type), lifetime_(lifetime) {}

 private:
  mutable std::atomic<CFIndex> owners_{1};
  const Type type_;
  const Lifetime lifetime_;
};

// Keeps an object that is initialised with the program from being destroyed at its end.
template <typename T>
union Immortal {
  template <typename... Arguments>
  constexpr explicit Immortal(Arguments... arguments) : object(arguments...) {}
  Immortal(const Immortal&) = delete;
  Immortal& operator=(const Immortal&) = delete;
  ~Immortal() {}

  T object;
};

// The object behind a reference that is not null.
inline const Object& ObjectOf(CFTypeRef reference) {
  return *static_cast<const Object*>(reference);
}

// The same, as the class whose reference it is.
template <typename T>
const T& ObjectOf(typename T::Ref reference) {
  return static_cast<const T&>(ObjectOf(static_cast<CFTypeRef>(reference)));
}

// The object behind the reference to a mutable one.
template <typename T, typename MutableRef>
T& MutableObjectOf(MutableRef reference) {
  return static_cast<T&>(*static_cast<Object*>(static_cast<void*>(reference)));
}

// The reference to an object.
template <typename T>
typename T::Ref RefTo(const T* object) {
  const Object* base = object;
  return static_cast<typename T::Ref>(static_cast<const void*>(base));
}

// The reference to an object that callers may change.
template <typename MutableRef>
MutableRef MutableRefTo(Object* object) {
  return static_cast<MutableRef>(static_cast<void*>(object));
}

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_OBJECT_H_
