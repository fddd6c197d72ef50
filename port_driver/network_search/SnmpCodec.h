// SNMPv1 messages of a search (RFC 1157), written and read by net-snmp's library.
//
// Only the library's encoder and decoder are used, and it is never initialised: so it reads and
// writes no configuration, loads no MIBs and opens no sockets; nor does it log.
#ifndef PORT_DRIVER_NETWORK_SEARCH_SNMPCODEC_H_
#define PORT_DRIVER_NETWORK_SEARCH_SNMPCODEC_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "port_driver/network_search/Objects.h"

namespace ZIOP {

// Longest answer that is taken from the network, in bytes: the texts that are asked for have at
// most 1023.
constexpr std::size_t kMaximumAnswer = 4096;

struct SearchAnswer {
  int32_t requestId;
  std::size_t object;  // the first in the answer, by its place in kSearchedObjects
  std::string text;    // its value; empty when the printer has none or it is no OCTET STRING
};

// GetRequest for the object, community "public". Throws std::bad_alloc.
std::string EncodeSearchRequest(int32_t requestId, const SearchedObject& object);

// Null for what is no GetResponse of version 1 for one of kSearchedObjects. Not for several threads
// at a time.
std::optional<SearchAnswer> DecodeSearchAnswer(std::string_view datagram);

}  // namespace ZIOP

#endif  // PORT_DRIVER_NETWORK_SEARCH_SNMPCODEC_H_
