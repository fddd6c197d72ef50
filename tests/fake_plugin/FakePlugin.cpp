// The plug-in's side: the factory and the two function tables.
#include <CoreFoundation/CFPlugInCOM.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "tests/fake_plugin/FakePluginState.h"

namespace {

using fake_plugin::state;

// An interface or the instance; counted, so that a test sees what was not released.
struct Counted {
  Counted() { ++state().live_objects; }
  ~Counted() { --state().live_objects; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
};

struct Port {
  ZIOPortInterface interface;
  ZIOErrorCallback error_callback = nullptr;
  void* context = nullptr;
  std::string written{};  // since the last read
  std::string answer{};   // what the last ioctl handed over
  Counted counted{};
};

struct PortInfo {
  ZIOPortInfoInterface interface;
  Counted counted{};
};

struct Instance {
  const IUnknownVTbl* table;
  ULONG references = 1;
  Counted counted{};
};

Port* Self(ZIOPortInterface* self) {
  return reinterpret_cast<Port*>(self);
}

std::string Hex(const char* bytes, int64_t length) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (int64_t i = 0; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0x0F];
  }
  return text;
}

// Logs the call and answers its scripted result.
int Called(const std::string& name, const std::string& arguments = {}) {
  state().calls.push_back(arguments.empty() ? name : name + " " + arguments);
  const auto& results = state().script.results;
  const auto result = results.find(name);
  return result == results.end() ? 0 : result->second;
}

int Called(const Port* port, const std::string& name, const std::string& arguments = {}) {
  const int result = Called(name, arguments);
  if (state().script.error_in == name) {
    char message[] = "out of paper";
    const int answer = port->error_callback(port->context, result, message);
    state().calls.push_back("callback " + std::to_string(answer));
  }
  return result;
}

std::string NextReply(const std::string& sent) {
  auto& script = state().script;
  if (script.replies.empty()) return script.responder ? script.responder(sent) : std::string();
  std::string reply = script.replies.front();
  script.replies.pop_front();
  return reply;
}

// How many bytes of reply fit and were copied.
long Deliver(const std::string& reply, char* buffer, int64_t capacity) {
  const int64_t length = std::min(static_cast<int64_t>(reply.size()), capacity);
  std::copy_n(reply.data(), length, buffer);
  return length;
}

int PortRelease(ZIOPortInterface* self) {
  const int result = Called(Self(self), "release");
  delete Self(self);
  return result;
}

int PortInitialise(ZIOPortInterface* self, int version, const ZIOOpenParameter* parameter) {
  Port* const port = Self(self);
  port->error_callback = parameter->errorCallback;
  port->context = parameter->context;
  state().path = parameter->pluginPath;
  state().context = parameter->context;
  std::string arguments = std::to_string(version);
  if (parameter->portInformation != nullptr) {
    arguments +=
        " " + Hex(reinterpret_cast<const char*>(CFDataGetBytePtr(parameter->portInformation)),
                  CFDataGetLength(parameter->portInformation));
  }
  if (parameter->reserved1 != nullptr || parameter->reserved2 != nullptr) arguments += " reserved";
  return Called(port, "initialise", arguments);
}

int PortTerminate(ZIOPortInterface* self) {
  return Called(Self(self), "terminate");
}

int PortOpen(ZIOPortInterface* self) {
  return Called(Self(self), "open");
}

int PortClose(ZIOPortInterface* self) {
  return Called(Self(self), "close");
}

void HandOver(Port* port, ZIOSnmpExchange* block) {
  port->answer = NextReply(std::string(block->request, static_cast<size_t>(block->requestLength)));
  const auto length = static_cast<int64_t>(port->answer.size());
  if (length > block->answerLength) {
    block->answer = port->answer.data();
  } else {
    Deliver(port->answer, block->answer, block->answerLength);
  }
  block->answerLength = length;
}

int PortIOCTL(ZIOPortInterface* self, long selector, void* argument) {
  auto* const block = static_cast<ZIOSnmpExchange*>(argument);
  const int result =
      Called(Self(self), "ioctl",
             std::to_string(selector) + " " + Hex(block->request, block->requestLength) + " " +
                 std::to_string(block->answerLength));
  if (result != 0) return result;
  HandOver(Self(self), block);
  if (state().script.on_exchange) state().script.on_exchange(*block);
  return result;
}

int PortCancel(ZIOPortInterface* self) {
  return Called(Self(self), "cancel");
}

int PortWrite(ZIOPortInterface* self, char* bytes, long* length) {
  const int result = Called(Self(self), "write", Hex(bytes, *length));
  if (result == 0 && *length > 0) {
    Self(self)->written.append(bytes, static_cast<size_t>(*length));
  }
  return result;
}

int PortFlush(ZIOPortInterface* self, unsigned char flag) {
  return Called(Self(self), "flush", std::to_string(flag));
}

int PortTab(ZIOPortInterface* self) {
  return Called(Self(self), "tab");
}

int PortStatus(ZIOPortInterface* self, char* buffer) {
  const int result = Called(Self(self), "status");
  if (result == 0) Deliver(state().script.status, buffer, ZIO_STATUS_BUFFER_SIZE);
  return result;
}

int PortRead(ZIOPortInterface* self, char* buffer, long* length) {
  const int result = Called(Self(self), "read", std::to_string(*length));
  if (result != 0) return result;
  *length = Deliver(NextReply(Self(self)->written), buffer, *length);
  Self(self)->written.clear();
  return result;
}

int PortControl(ZIOPortInterface* self, ControlElement* block) {
  const int result =
      Called(Self(self), "control",
             Hex(block->command, block->commandLength) + " " + std::to_string(block->replyLength));
  if (result != 0) return result;
  const std::string sent(block->command == nullptr ? "" : block->command,
                         static_cast<size_t>(block->commandLength));
  Deliver(NextReply(sent), block->reply, block->replyLength);
  return result;
}

int PortGetInfo(ZIOPortInterface* self, ZIOXInfo* /*info*/) {
  return Called(Self(self), "getInfo");
}

constexpr ZIOPortTable kPortTable = {
    nullptr,   PortRelease, PortInitialise, PortTerminate, PortOpen,
    PortClose, PortIOCTL,   PortCancel,     PortWrite,     PortFlush,
    PortTab,   PortStatus,  PortRead,       PortControl,   PortGetInfo,
};

int InfoRelease(ZIOPortInfoInterface* self) {
  const int result = Called("info.release");
  delete reinterpret_cast<PortInfo*>(self);
  return result;
}

int InfoInitialise(ZIOPortInfoInterface* /*self*/, int version, CFDictionaryRef /*information*/) {
  return Called("info.initialise", std::to_string(version));
}

int InfoTerminate(ZIOPortInfoInterface* /*self*/) {
  return Called("info.terminate");
}

CFDictionaryRef InfoGetList(ZIOPortInfoInterface* /*self*/) {
  Called("info.getList");
  return static_cast<CFDictionaryRef>(state().script.list.get());
}

constexpr ZIOPortInfoTable kPortInfoTable = {
    nullptr, InfoRelease, InfoInitialise, InfoTerminate, InfoGetList,
};

bool IsInterface(CFUUIDBytes id, CFStringRef text) {
  const CFRef<CFUUIDRef> wanted(CFUUIDCreateFromString(kCFAllocatorDefault, text));
  const CFUUIDBytes bytes = CFUUIDGetUUIDBytes(wanted.get());
  return std::memcmp(&id, &bytes, sizeof(bytes)) == 0;
}

std::string InterfaceName(CFUUIDBytes id) {
  if (IsInterface(id, CFSTR(ZIO_PORT_INTERFACE_ID))) return "port";
  if (IsInterface(id, CFSTR(ZIO_PORT_INFO_INTERFACE_ID))) return "info";
  if (IsInterface(id, CFSTR("00000000-0000-0000-C000-000000000046"))) return "unknown";
  return "other";
}

HRESULT QueryInterface(void* self, CFUUIDBytes id, void** interface) {
  const std::string name = InterfaceName(id);
  *interface = self;  // a refusal leaves something behind, which must not be taken
  const int result = Called("QueryInterface", name);
  if (result != 0) return result;
  if (name == "port") *interface = new Port{{&kPortTable}};
  if (name == "info") *interface = new PortInfo{{&kPortInfoTable}};
  if (name == "unknown") ++static_cast<Instance*>(self)->references;
  return name == "other" ? E_NOINTERFACE : S_OK;
}

ULONG AddRef(void* self) {
  Called("AddRef");
  return ++static_cast<Instance*>(self)->references;
}

ULONG Release(void* self) {
  Called("Release");
  auto* const instance = static_cast<Instance*>(self);
  const ULONG left = --instance->references;
  if (left == 0) delete instance;
  return left;
}

constexpr IUnknownVTbl kInstanceTable = {nullptr, QueryInterface, AddRef, Release};

}  // namespace

extern "C" FAKE_PLUGIN_API void* FakePluginFactory(CFAllocatorRef /*allocator*/,
                                                   CFUUIDRef /*type*/) {
  Called("factory");
  if (state().script.factory_fails) return nullptr;
  return new Instance{&kInstanceTable};
}
