// Conversion between objects and libplist's nodes.
#ifndef COREFOUNDATION_PROPERTYLIST_H_
#define COREFOUNDATION_PROPERTYLIST_H_

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "corefoundation/Foundation.h"
#include "corefoundation/ListLibrary.h"
#include "corefoundation/Object.h"

namespace CoreFoundation {

struct NodeDeleter {
  void operator()(plist_t node) const { Plist().free(node); }
};

// Owns a node and all that is below it.
using Node = std::unique_ptr<void, NodeDeleter>;

// A scalar that has no calls of its own, a date or a keyed archive's reference; it is carried so
// that a list keeps it when it is written again.
class Foreign final : public Object {
 public:
  using Ref = CFTypeRef;

  // Copies node.
  Foreign(Type type, plist_t node) : Object(type), node_(Plist().copy(node)) {}

  bool Equals(const Object& other) const override;
  std::size_t Hash() const override { return 0; }

  Node Copy() const { return Node(Plist().copy(node_.get())); }

 private:
  const Node node_;
};

// The object of a node, and of all below it; null when some text is not valid UTF-8. Its arrays and
// dictionaries can be changed.
CFRef<CFTypeRef> ObjectFromNode(plist_t node);

// The node of an object that stands below depth containers, and of all below it. Null when
// something is no property list, a text cannot be written as UTF-8, containers are nested more than
// kMaximumListDepth deep, or there is no libplist.
Node NodeFromObject(CFTypeRef object, std::size_t depth = 0);

// The object of an XML or binary list; null when it is none, or past the bounds of the checks, or
// needs libplist where that is missing.
CFRef<CFTypeRef> ParseObject(std::string_view bytes);

std::string WriteXML(plist_t node);

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_PROPERTYLIST_H_
