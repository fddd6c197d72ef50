// Reference counting, equality and allocators.
#include <CoreFoundation/CFBase.h>

#include "corefoundation/Object.h"

namespace CoreFoundation {

void Object::Retain() const {
  if (lifetime_ == Lifetime::kCounted) owners_.fetch_add(1, std::memory_order_relaxed);
}

void Object::Release() const {
  if (lifetime_ == Lifetime::kConstant) return;
  if (owners_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

namespace {

class Allocator final : public Object {
 public:
  using Ref = CFAllocatorRef;

  constexpr Allocator() : Object(Type::kAllocator, Lifetime::kConstant) {}

  bool Equals(const Object& other) const override { return this == &other; }
  std::size_t Hash() const override { return 0; }
};

Immortal<Allocator> system_allocator;

}  // namespace

}  // namespace CoreFoundation

using CoreFoundation::ObjectOf;

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFAllocatorRef kCFAllocatorSystemDefault =
    CoreFoundation::RefTo(&CoreFoundation::system_allocator.object);

CFTypeRef CFRetain(CFTypeRef object) {
  ObjectOf(object).Retain();
  return object;
}

void CFRelease(CFTypeRef object) {
  ObjectOf(object).Release();
}

CFTypeID CFGetTypeID(CFTypeRef object) {
  return static_cast<CFTypeID>(ObjectOf(object).type());
}

Boolean CFEqual(CFTypeRef left, CFTypeRef right) {
  if (left == right) return 1;
  return ObjectOf(left).type() == ObjectOf(right).type() && ObjectOf(left).Equals(ObjectOf(right));
}
