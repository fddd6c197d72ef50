#include "corefoundation/PropertyList.h"

#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>

#include "corefoundation/Array.h"
#include "corefoundation/Data.h"
#include "corefoundation/Dictionary.h"
#include "corefoundation/Number.h"
#include "corefoundation/PlainList.h"
#include "corefoundation/PropertyListCheck.h"
#include "corefoundation/String.h"

namespace CoreFoundation {

namespace {

CFRef<CFTypeRef> Created(CFTypeRef object) {
  return CFRef<CFTypeRef>(object);
}

// A number past the signed range. libplist's own calls do not say or take the sign: its XML does.
bool IsNegative(plist_t integer) {
  return WriteXML(integer).find("<integer>-") != std::string::npos;
}

plist_t NewUnsigned(std::uint64_t value) {
  const std::string text = "<integer>" + std::to_string(value) + "</integer>";
  plist_t node = nullptr;
  Plist().from_xml(text.data(), static_cast<std::uint32_t>(text.size()), &node);
  return node;
}

CFRef<CFTypeRef> NumberFromNode(plist_t node) {
  std::uint64_t value = 0;
  Plist().get_uint_val(node, &value);
  if (value > INT64_MAX && IsNegative(node)) {
    return Created(RefTo(new Number(static_cast<std::int64_t>(value))));
  }
  return Created(RefTo(new Number(value)));
}

CFRef<CFTypeRef> DataFromNode(plist_t node) {
  std::uint64_t length = 0;
  const char* bytes = Plist().get_data_ptr(node, &length);
  return Created(RefTo(new Data(bytes != nullptr ? std::string(bytes, length) : std::string())));
}

CFRef<CFTypeRef> StringFromNode(plist_t node) {
  std::uint64_t length = 0;
  const char* text = Plist().get_string_ptr(node, &length);
  return Created(CreateString({text, static_cast<std::size_t>(length)}));
}

CFRef<CFTypeRef> ArrayFromNode(plist_t node) {
  CFRef<CFMutableArrayRef> array(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
  plist_array_iter position = nullptr;
  Plist().array_new_iter(node, &position);
  const std::unique_ptr<void, void (*)(void*)> owner(position, std::free);
  plist_t item = nullptr;
  while (Plist().array_next_item(node, position, &item), item != nullptr) {
    const CFRef<CFTypeRef> value = ObjectFromNode(item);
    if (!value) return {};
    CFArrayAppendValue(array.get(), value.get());
  }
  return array;
}

CFRef<CFTypeRef> DictionaryFromNode(plist_t node) {
  CFRef<CFMutableDictionaryRef> dictionary(CFDictionaryCreateMutable(
      nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  plist_dict_iter position = nullptr;
  Plist().dict_new_iter(node, &position);
  const std::unique_ptr<void, void (*)(void*)> owner(position, std::free);
  char* text = nullptr;
  plist_t item = nullptr;
  while (Plist().dict_next_item(node, position, &text, &item), item != nullptr) {
    const std::unique_ptr<char, void (*)(void*)> text_owner(text, std::free);
    const CFRef<CFStringRef> key(CreateString(text));
    const CFRef<CFTypeRef> value = ObjectFromNode(item);
    if (!key || !value) return {};
    CFDictionarySetValue(dictionary.get(), key.get(), value.get());
  }
  return dictionary;
}

// The text as libplist takes it; false when it cannot hold it.
bool GetNodeText(const String& string, std::string& text) {
  return GetUTF8(string, text) && text.find('\0') == std::string::npos;
}

plist_t NewNumber(const Number::Value& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    return Plist().new_uint(static_cast<std::uint64_t>(*integer));
  }
  if (const auto* integer = std::get_if<std::uint64_t>(&value)) return NewUnsigned(*integer);
  return Plist().new_real(std::get<double>(value));
}

Node NodeFromObject(const Object& object, std::size_t depth);

Node NodeFromString(const String& string) {
  std::string text;
  return GetNodeText(string, text) ? Node(Plist().new_string(text.c_str())) : nullptr;
}

Node NodeFromArray(const Array& array, std::size_t depth) {
  Node node(Plist().new_array());
  for (const auto& value : array.values()) {
    Node item = NodeFromObject(ObjectOf(value.get()), depth);
    if (!item) return nullptr;
    Plist().array_append_item(node.get(), item.release());
  }
  return node;
}

// Sorted by key, so that equal dictionaries give equal files.
Node NodeFromDictionary(const Dictionary& dictionary, std::size_t depth) {
  std::map<std::string, const Object*> entries;
  for (const auto& [key, value] : dictionary.entries()) {
    std::string text;
    const auto string = CFCast<CFStringRef>(key.get());
    if (string == nullptr || !GetNodeText(ObjectOf<String>(string), text)) return nullptr;
    entries.emplace(std::move(text), &ObjectOf(value.get()));
  }
  Node node(Plist().new_dict());
  for (const auto& [key, value] : entries) {
    Node item = NodeFromObject(*value, depth);
    if (!item) return nullptr;
    Plist().dict_set_item(node.get(), key.c_str(), item.release());
  }
  return node;
}

Node NodeFromObject(const Object& object, std::size_t depth) {
  switch (object.type()) {
    case Type::kString:
      return NodeFromString(static_cast<const String&>(object));
    case Type::kData: {
      const std::string& bytes = static_cast<const Data&>(object).bytes();
      return Node(Plist().new_data(bytes.data(), bytes.size()));
    }
    case Type::kNumber:
      return Node(NewNumber(static_cast<const Number&>(object).value()));
    case Type::kBoolean:
      return Node(Plist().new_bool(static_cast<const Boolean&>(object).value() ? 1 : 0));
    case Type::kDate:
    case Type::kUid:
      return static_cast<const Foreign&>(object).Copy();
    case Type::kArray:
      if (depth == kMaximumListDepth) return nullptr;
      return NodeFromArray(static_cast<const Array&>(object), depth + 1);
    case Type::kDictionary:
      if (depth == kMaximumListDepth) return nullptr;
      return NodeFromDictionary(static_cast<const Dictionary&>(object), depth + 1);
    default:
      return nullptr;
  }
}

CFRef<CFTypeRef> ParseWithLibrary(std::string_view bytes, decltype(ListLibrary::from_xml) parse) {
  plist_t node = nullptr;
  if (HasListLibrary()) parse(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &node);
  const Node owner(node);
  if (!owner) return {};
  return ObjectFromNode(node);
}

}  // namespace

bool Foreign::Equals(const Object& other) const {
  const auto& foreign = static_cast<const Foreign&>(other);
  return Plist().compare_node_value(node_.get(), foreign.node_.get()) != 0;
}

CFRef<CFTypeRef> ObjectFromNode(plist_t node) {
  switch (Plist().get_node_type(node)) {
    case PLIST_BOOLEAN:
      return CFRef<CFTypeRef>(Plist().bool_val_is_true(node) != 0 ? kCFBooleanTrue
                                                                  : kCFBooleanFalse);
    case PLIST_UINT:
      return NumberFromNode(node);
    case PLIST_REAL: {
      double value = 0;
      Plist().get_real_val(node, &value);
      return Created(RefTo(new Number(value)));
    }
    case PLIST_STRING:
      return StringFromNode(node);
    case PLIST_DATA:
      return DataFromNode(node);
    case PLIST_DATE:
      return Created(RefTo(new Foreign(Type::kDate, node)));
    case PLIST_UID:
      return Created(RefTo(new Foreign(Type::kUid, node)));
    case PLIST_ARRAY:
      return ArrayFromNode(node);
    case PLIST_DICT:
      return DictionaryFromNode(node);
    default:
      return {};
  }
}

Node NodeFromObject(CFTypeRef object, std::size_t depth) {
  return HasListLibrary() ? NodeFromObject(ObjectOf(object), depth) : nullptr;
}

CFRef<CFTypeRef> ParseObject(std::string_view bytes) {
  constexpr std::string_view kBinaryMark = "bplist00";
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (bytes.size() > UINT32_MAX) return {};
  if (bytes.substr(0, kBinaryMark.size()) == kBinaryMark) {
    if (!IsSoundBinaryList(bytes)) return {};
    return ParseWithLibrary(bytes, Plist().from_bin);
  }
  if (bytes.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
    bytes.remove_prefix(kByteOrderMark.size());
  }
  CFRef<CFTypeRef> plain = ReadPlainList(bytes);
  if (plain) return plain;
  if (!IsSoundXMLList(bytes)) return {};
  return ParseWithLibrary(bytes, Plist().from_xml);
}

std::string WriteXML(plist_t node) {
  char* bytes = nullptr;
  std::uint32_t length = 0;
  Plist().to_xml(node, &bytes, &length);
  const std::unique_ptr<char, void (*)(char*)> owner(bytes, Plist().to_xml_free);
  return bytes != nullptr ? std::string(bytes, length) : std::string();
}

}  // namespace CoreFoundation
