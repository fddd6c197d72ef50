// SNMP messages for the tests, made element by element.
#ifndef TESTS_PORT_DRIVER_SNMPSAMPLES_H_
#define TESTS_PORT_DRIVER_SNMPSAMPLES_H_

#include <cstdint>
#include <string>

namespace ZIOP {

// One element; the length takes one byte or, from 128 on, four.
inline std::string Element(int tag, const std::string& content) {
  std::string element(1, static_cast<char>(tag));
  if (content.size() >= 128) {
    element += '\x84';
    for (const int shift : {24, 16, 8}) {
      element += static_cast<char>(content.size() >> shift);
    }
  }
  return element + static_cast<char>(content.size()) + content;
}

// What stands in a message, as content bytes. By default it is the answer to SampleRequest().
struct SnmpSample {
  std::string version = std::string(1, '\0');
  int type = 0xA2;
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

inline SnmpSample Changed(void (*change)(SnmpSample&)) {
  SnmpSample sample;
  change(sample);
  return sample;
}

inline std::string SampleRequest() {
  return Changed([](SnmpSample& s) { s.type = 0xA0, s.value = Element(0x05, ""); }).Bytes();
}

// An answer to SampleRequest() of exactly size bytes, 200 or more.
inline std::string SampleAnswer(std::size_t size) {
  SnmpSample sample;
  sample.value = Element(0x04, std::string(128, 'x'));
  sample.value = Element(0x04, std::string(size - sample.Bytes().size() + 128, 'x'));
  return sample.Bytes();
}

}  // namespace ZIOP

#endif  // TESTS_PORT_DRIVER_SNMPSAMPLES_H_
