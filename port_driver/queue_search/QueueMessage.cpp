// From a print server's answer to its queues.
#include "port_driver/queue_search/QueueMessage.h"

#include <cups/cups.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "port_driver/DriverError.h"
#include "port_driver/SearchModule.h"

namespace ZIOP {
namespace {

constexpr std::size_t kHeaderSize = 8;  // version, status, request identifier
constexpr int kStatusEnd = 0x600;       // no status is defined from here on

struct TextRow {
  const char* attribute;
  std::string Queue::*text;
};

constexpr TextRow kTexts[] = {
    {"printer-name", &Queue::name},
    {"printer-info", &Queue::info},
    {"printer-make-and-model", &Queue::model},
    {"device-uri", &Queue::deviceUri},
};
constexpr char kType[] = "printer-type";
constexpr int kClassBits = CUPS_PRINTER_CLASS | CUPS_PRINTER_IMPLICIT;

[[noreturn]] void Refuse(const std::string& reason) {
  throw DriverError(DriverCode::kPrinter, "printing system: " + reason);
}

// Cuts a field with its length, big-endian in two bytes, off the front; false if it is cut off.
bool SkipField(std::string_view& bytes) {
  if (bytes.size() < 2) {
    return false;
  }
  const std::size_t length = static_cast<unsigned char>(bytes[0]) * std::size_t{256} +
                             static_cast<unsigned char>(bytes[1]);
  bytes.remove_prefix(2);
  const bool whole = length <= bytes.size();
  bytes.remove_prefix(std::min(length, bytes.size()));
  return whole;
}

// Whether a value has one of the syntaxes that nothing we ask for has: collections, which the
// library reads by recursion however deep they are nested, and extended tags, which it takes for
// the tag that follows.
bool HoldsNestedValues(std::string_view bytes) {
  bytes.remove_prefix(std::min(kHeaderSize, bytes.size()));
  while (!bytes.empty() && bytes[0] != IPP_TAG_END) {
    const int tag = static_cast<unsigned char>(bytes[0]);
    bytes.remove_prefix(1);
    if (tag < IPP_TAG_UNSUPPORTED_VALUE) {
      continue;  // begins a group of attributes
    }
    if (tag == IPP_TAG_BEGIN_COLLECTION || tag == IPP_TAG_EXTENSION) {
      return true;
    }
    if (!SkipField(bytes) || !SkipField(bytes)) {
      return false;  // the library reads no further either
    }
  }
  return false;
}

ssize_t TakeBytes(void* context, ipp_uchar_t* buffer, size_t size) {
  auto& bytes = *static_cast<std::string_view*>(context);
  const std::size_t count = bytes.copy(reinterpret_cast<char*>(buffer), size);
  bytes.remove_prefix(count);
  return static_cast<ssize_t>(count);
}

IppMessage Decode(std::string_view bytes) {
  if (HoldsNestedValues(bytes)) {
    Refuse("the server's answer holds values that were not asked for");
  }
  IppMessage message(ippNew(), ippDelete);
  if (ippReadIO(&bytes, TakeBytes, 1, nullptr, message.get()) != IPP_STATE_DATA) {
    Refuse("the server's answer cannot be read");
  }
  return message;
}

// Status of a message that has been decoded, as a number: the library's own enumeration need not
// have what a server sends.
int StatusOf(std::string_view bytes) {
  return static_cast<unsigned char>(bytes[2]) * 256 + static_cast<unsigned char>(bytes[3]);
}

void Store(ipp_attribute_t* attribute, Queue& queue) {
  const char* const name = ippGetName(attribute);
  if (std::strcmp(name, kType) == 0) {
    queue.isClass = (ippGetInteger(attribute, 0) & kClassBits) != 0;
  }
  for (const TextRow& row : kTexts) {
    const char* const text =
        std::strcmp(name, row.attribute) == 0 ? ippGetString(attribute, 0, nullptr) : nullptr;
    if (text != nullptr) {
      queue.*row.text = text;
    }
  }
}

}  // namespace

IppMessage MakeQueueRequest() {
  IppMessage request(ippNewRequest(IPP_OP_CUPS_GET_PRINTERS), ippDelete);
  std::vector<const char*> attributes{kType};
  for (const TextRow& row : kTexts) {
    attributes.push_back(row.attribute);
  }
  ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr,
               cupsUser());
  ippAddInteger(request.get(), IPP_TAG_OPERATION, IPP_TAG_INTEGER, "limit",
                static_cast<int>(kMaximumFoundPrinters) + 1);  // one more, to tell that there are
  ippAddStrings(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes",
                static_cast<int>(attributes.size()), nullptr, attributes.data());
  return request;
}

std::vector<Queue> ReadQueueAnswer(std::string_view bytes) {
  const IppMessage answer = Decode(bytes);
  const int status = StatusOf(bytes);
  if (status == IPP_STATUS_ERROR_NOT_FOUND) {
    return {};
  }
  if (status >= IPP_STATUS_REDIRECTION_OTHER_SITE) {
    Refuse(std::string("the server answered ") +
           (status < kStatusEnd ? ippErrorString(static_cast<ipp_status_t>(status))
                                : "a status that is not defined"));
  }
  std::vector<Queue> queues;
  bool inside = false;  // a queue's group of attributes
  for (ipp_attribute_t* attribute = ippFirstAttribute(answer.get()); attribute != nullptr;
       attribute = ippNextAttribute(answer.get())) {
    const bool was_inside = inside;
    inside = ippGetGroupTag(attribute) == IPP_TAG_PRINTER && ippGetName(attribute) != nullptr;
    if (inside) {
      Store(attribute, was_inside ? queues.back() : queues.emplace_back());
    }
  }
  return queues;
}

}  // namespace ZIOP
