// SNMP messages for the tests, made element by element.
#ifndef TESTS_PORT_DRIVER_SNMPSAMPLES_H_
#define TESTS_PORT_DRIVER_SNMPSAMPLES_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "port_driver/SnmpMessage.h"

namespace ZIOP {

// One element; the length takes one byte or, from 128 on, four.
inline std::string Element(uint8_t tag, std::string_view content) {
  std::string element(1, static_cast<char>(tag));
  if (content.size() >= 128) {
    element += '\x84';
    element += static_cast<char>(content.size() >> 24);
    element += static_cast<char>(content.size() >> 16);
    element += static_cast<char>(content.size() >> 8);
  }
  return element + static_cast<char>(content.size()) + std::string(content);
}

// What stands in a message, innermost values as content bytes. By default it is the answer to
// itself with the type changed.
struct SnmpSample {
  std::string version = std::string(1, '\0');
  uint8_t type = 0xA2;
  std::string id = "\x02";
  std::string errorStatus = std::string(1, '\0');
  std::string name = "\x2B\x06\x01\x04\x01\x95\x1E\x01";
  std::string value = Element(0x04, "value");

  std::string Bytes() const {
    const std::string bindings = Element(0x30, Element(0x30, Element(0x06, name) + value));
    const std::string pdu = Element(0x02, id) + Element(0x02, errorStatus) +
                            Element(0x02, std::string(1, '\0')) + bindings;
    return Element(0x30, Element(0x02, version) + Element(0x04, "orchid") + Element(type, pdu));
  }
};

// A GetRequest whose answer is SnmpSample().
inline std::string SampleRequest() {
  SnmpSample sample;
  sample.type = 0xA0;
  sample.value = Element(0x05, "");
  return sample.Bytes();
}

// An answer to SampleRequest() of exactly size bytes, 200 or more.
inline std::string SampleAnswer(std::size_t size) {
  SnmpSample sample;
  sample.value = Element(0x04, std::string(128, 'x'));
  const std::size_t frame = sample.Bytes().size() - 128;
  sample.value = Element(0x04, std::string(size - frame, 'x'));
  return sample.Bytes();
}

// The answer to request, same request-id and name, with an element as its value.
inline std::string AnswerTo(const std::string& request, const std::string& value) {
  const auto asked = ReadSnmpMessage(request).value();
  SnmpSample sample;
  sample.id.clear();
  for (int shift = 24; shift >= 0; shift -= 8) {
    sample.id += static_cast<char>(asked.requestId >> shift);
  }
  sample.name = asked.name;
  sample.value = value;
  return sample.Bytes();
}

}  // namespace ZIOP

#endif  // TESTS_PORT_DRIVER_SNMPSAMPLES_H_
