// net-snmp's encoder and decoder.
#include "port_driver/network_search/SnmpCodec.h"

#include <net-snmp/net-snmp-config.h>
// The library's headers need the one above first.
#include <net-snmp/net-snmp-includes.h>

#include <stdlib.h>

#include <algorithm>
#include <memory>
#include <new>
#include <vector>

namespace ZIOP {
namespace {

constexpr std::size_t kFirstBuffer = 512;  // bytes, more than any request of a search takes

using Pdu = std::unique_ptr<netsnmp_pdu, void (*)(netsnmp_pdu*)>;

// Without a log of its own the library would write to standard error. The encoder that works
// backwards from the end of its buffer, which it makes larger, writes the shortest lengths.
bool SetUp() {
  ::netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_REVERSE_ENCODE, 1);
  return ::netsnmp_register_loghandler(NETSNMP_LOGHANDLER_NONE, LOG_DEBUG) != nullptr;
}

// An empty message.
Pdu CreatePdu(int command) {
  static const bool isSetUp = SetUp();
  Pdu pdu(isSetUp ? ::snmp_pdu_create(command) : nullptr, ::snmp_free_pdu);
  if (!pdu) {
    throw std::bad_alloc();
  }
  pdu->version = SNMP_VERSION_1;
  return pdu;
}

netsnmp_session Session() {
  static char community[] = "public";
  netsnmp_session session{};
  session.version = SNMP_VERSION_1;
  session.community = reinterpret_cast<u_char*>(community);
  session.community_len = sizeof community - 1;
  return session;
}

// The object's place in kSearchedObjects; their number when it is none of them.
std::size_t IndexOf(const netsnmp_variable_list& variable) {
  const auto* const row = std::find_if(
      std::begin(kSearchedObjects), std::end(kSearchedObjects), [&](const SearchedObject& object) {
        return std::equal(object.name, object.name + object.length, variable.name,
                          variable.name + variable.name_length);
      });
  return static_cast<std::size_t>(row - std::begin(kSearchedObjects));
}

}  // namespace

std::string EncodeSearchRequest(int32_t requestId, const SearchedObject& object) {
  const Pdu pdu = CreatePdu(SNMP_MSG_GET);
  pdu->reqid = requestId;
  const std::vector<oid> name(object.name, object.name + object.length);
  if (::snmp_add_null_var(pdu.get(), name.data(), name.size()) == nullptr) {
    throw std::bad_alloc();
  }
  netsnmp_session session = Session();
  std::size_t size = kFirstBuffer;
  std::size_t used = 0;
  auto* buffer = static_cast<u_char*>(::malloc(size));
  const int result =
      buffer == nullptr ? -1 : ::snmp_build(&buffer, &size, &used, &session, pdu.get());
  const std::unique_ptr<u_char, void (*)(void*)> owner(buffer, ::free);
  if (result != 0 || used > size) {
    throw std::bad_alloc();
  }
  return {reinterpret_cast<const char*>(buffer) + (size - used), used};
}

std::optional<SearchAnswer> DecodeSearchAnswer(std::string_view datagram) {
  std::vector<u_char> bytes(datagram.begin(), datagram.end());
  netsnmp_session session = Session();
  const Pdu pdu = CreatePdu(SNMP_MSG_RESPONSE);
  if (::snmp_parse(nullptr, &session, pdu.get(), bytes.data(), bytes.size()) != 0 ||
      pdu->command != SNMP_MSG_RESPONSE || pdu->variables == nullptr) {
    return std::nullopt;
  }
  const netsnmp_variable_list& variable = *pdu->variables;
  SearchAnswer answer{static_cast<int32_t>(pdu->reqid), IndexOf(variable), {}};
  if (answer.object == kSearchedObjectCount) {
    return std::nullopt;
  }
  if (pdu->errstat == SNMP_ERR_NOERROR && variable.type == ASN_OCTET_STR) {
    answer.text.assign(reinterpret_cast<const char*>(variable.val.string), variable.val_len);
  }
  return answer;
}

}  // namespace ZIOP
