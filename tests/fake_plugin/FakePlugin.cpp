#include "tests/fake_plugin/FakePlugin.h"

#include <CoreFoundation/CFPlugInCOM.h>
#include <stdlib.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

namespace fake_plugin {
namespace {

Script the_script;
PortRecord last_port;
std::vector<std::string> calls;
int live_objects = 0;  // instances and interfaces

struct Port {
  ZIOPortInterface interface;
  ZIOErrorCallback error_callback = nullptr;
  void* context = nullptr;
  std::string answer{};  // what the last ioctl handed over
};

struct Instance {
  const IUnknownVTbl* table;
  ULONG references = 1;
};

Port* Self(ZIOPortInterface* self) {
  return reinterpret_cast<Port*>(self);
}

std::string Bytes(const char* bytes, int64_t length) {
  return {bytes, bytes + length};
}

std::string Hex(const std::string& bytes) {
  std::string text;
  for (const char c : bytes) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned char>(c));
    text += digits;
  }
  return text;
}

// Logs the call and answers its scripted result.
int Called(const std::string& name, const std::string& arguments = {}) {
  calls.push_back(arguments.empty() ? name : name + " " + arguments);
  if (the_script.on_call) the_script.on_call(name);
  return the_script.results[name];
}

int Called(ZIOPortInterface* self, const std::string& name, const std::string& arguments = {}) {
  const int result = Called(name, arguments);
  const Port& port = *Self(self);
  char message[] = "out of paper";
  if (result != 0) {
    last_port.callback_answer = port.error_callback(port.context, result, message);
  }
  return result;
}

std::string NextReply(const std::string& sent) {
  auto& replies = the_script.replies;
  if (replies.empty()) return the_script.responder ? the_script.responder(sent) : "";
  std::string reply = replies.front();
  replies.pop_front();
  return reply;
}

// How many bytes of reply fit and were copied.
long Deliver(const std::string& reply, char* buffer, int64_t capacity) {
  const int64_t length = std::min(static_cast<int64_t>(reply.size()), capacity);
  std::copy_n(reply.data(), length, buffer);
  return length;
}

int Initialise(ZIOPortInterface* self, int version, const ZIOOpenParameter* parameter) {
  Self(self)->error_callback = parameter->errorCallback;
  Self(self)->context = parameter->context;
  last_port = {parameter->pluginPath, parameter->context};
  const CFDataRef address = parameter->portInformation;
  const auto* const bytes = reinterpret_cast<const char*>(CFDataGetBytePtr(address));
  std::string arguments =
      std::to_string(version) + " " + Hex(Bytes(bytes, CFDataGetLength(address)));
  if (parameter->reserved1 != nullptr || parameter->reserved2 != nullptr) arguments += " reserved";
  return Called(self, "initialise", arguments);
}

int Exchange(ZIOPortInterface* self, long selector, void* argument) {
  auto* const block = static_cast<ZIOSnmpExchange*>(argument);
  const std::string request = Bytes(block->request, block->requestLength);
  const std::string capacity = std::to_string(block->answerLength);
  const int result =
      Called(self, "ioctl", std::to_string(selector) + " " + Hex(request) + " " + capacity);
  if (result != 0) return result;
  std::string& answer = Self(self)->answer;
  answer = NextReply(request);
  const auto length = static_cast<int64_t>(answer.size());
  if (length > block->answerLength) {
    block->answer = answer.data();
  } else {
    Deliver(answer, block->answer, length);
  }
  block->answerLength = length;
  if (the_script.on_exchange) the_script.on_exchange(*block);
  return result;
}

int Read(ZIOPortInterface* self, char* buffer, long* length) {
  const int result = Called(self, "read", std::to_string(*length));
  if (result == 0) *length = Deliver(NextReply({}), buffer, *length);
  return result;
}

int Status(ZIOPortInterface* self, char* buffer) {
  const int result = Called(self, "status");
  if (result == 0) Deliver(the_script.status, buffer, ZIO_STATUS_BUFFER_SIZE);
  return result;
}

int Control(ZIOPortInterface* self, ControlElement* block) {
  const std::string command = Bytes(block->command, block->commandLength);
  const int result =
      Called(self, "control", Hex(command) + " " + std::to_string(block->replyLength));
  if (result == 0) Deliver(NextReply(command), block->reply, block->replyLength);
  return result;
}

int Release(ZIOPortInterface* self) {
  delete Self(self);
  --live_objects;
  return Called("release");
}

constexpr ZIOPortTable kPortTable = {
    nullptr,
    Release,
    Initialise,
    [](ZIOPortInterface* self) { return Called(self, "terminate"); },
    [](ZIOPortInterface* self) { return Called(self, "open"); },
    [](ZIOPortInterface* self) { return Called(self, "close"); },
    Exchange,
    [](ZIOPortInterface* self) { return Called(self, "cancel"); },
    [](ZIOPortInterface* self, char* bytes, long* length) {
      return Called(self, "write", Hex(Bytes(bytes, *length)));
    },
    [](ZIOPortInterface* self, unsigned char flag) {
      return Called(self, "flush", std::to_string(flag));
    },
    [](ZIOPortInterface* self) { return Called(self, "tab"); },
    Status,
    Read,
    Control,
    [](ZIOPortInterface* self, ZIOXInfo* /*info*/) { return Called(self, "getInfo"); },
};

constexpr ZIOPortInfoTable kPortInfoTable = {
    nullptr,
    [](ZIOPortInfoInterface* self) {
      delete self;
      --live_objects;
      return Called("info.release");
    },
    [](ZIOPortInfoInterface* /*self*/, int version, CFDictionaryRef /*information*/) {
      return Called("info.initialise", std::to_string(version));
    },
    [](ZIOPortInfoInterface* /*self*/) { return Called("info.terminate"); },
    [](ZIOPortInfoInterface* /*self*/) {
      Called("info.getList");
      return static_cast<CFDictionaryRef>(the_script.list.get());
    },
};

HRESULT QueryInterface(void* self, CFUUIDBytes id, void** interface) {
  const auto asked = [&id](CFStringRef text) {
    const CFRef<CFUUIDRef> wanted(CFUUIDCreateFromString(kCFAllocatorDefault, text));
    const CFUUIDBytes bytes = CFUUIDGetUUIDBytes(wanted.get());
    return std::memcmp(&id, &bytes, sizeof(bytes)) == 0;
  };
  const std::string name = asked(CFSTR(ZIO_PORT_INTERFACE_ID))                    ? "port"
                           : asked(CFSTR(ZIO_PORT_INFO_INTERFACE_ID))             ? "info"
                           : asked(CFSTR("00000000-0000-0000-C000-000000000046")) ? "unknown"
                                                                                  : "other";
  *interface = self;  // a refusal leaves something behind, which must not be taken
  const int result = Called("QueryInterface", name);
  if (result != 0) return result;
  if (name == "port") *interface = new Port{{&kPortTable}};
  if (name == "info") *interface = new ZIOPortInfoInterface{&kPortInfoTable};
  if (name == "unknown") ++static_cast<Instance*>(self)->references;
  if (name == "port" || name == "info") ++live_objects;
  return name == "other" ? E_NOINTERFACE : S_OK;
}

ULONG AddRef(void* self) {
  Called("AddRef");
  return ++static_cast<Instance*>(self)->references;
}

ULONG ReleaseInstance(void* self) {
  Called("Release");
  auto* const instance = static_cast<Instance*>(self);
  const ULONG left = --instance->references;
  if (left == 0) {
    delete instance;
    --live_objects;
  }
  return left;
}

constexpr IUnknownVTbl kInstanceTable = {nullptr, QueryInterface, AddRef, ReleaseInstance};

// Keeps the user's real defaults out of the tests, from the first use to the end of the process.
struct TemporaryDefaults {
  TemporaryDefaults() {
    if (mkdtemp(folder.data()) == nullptr) abort();
    setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
  }
  ~TemporaryDefaults() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }
  std::string folder = std::filesystem::temp_directory_path() / "defaults-XXXXXX";
};

}  // namespace

extern "C" void* FakePluginFactory(CFAllocatorRef /*allocator*/, CFUUIDRef /*type*/) {
  if (Called("factory") != 0) return nullptr;
  ++live_objects;
  return new Instance{&kInstanceTable};
}

Script& script() {
  return the_script;
}

const PortRecord& LastPort() {
  return last_port;
}

std::vector<std::string> TakeCalls() {
  return std::exchange(calls, {});
}

std::string TakeLog() {
  std::string log;
  for (const std::string& call : TakeCalls()) log += (log.empty() ? "" : ", ") + call;
  return log;
}

int LiveObjects() {
  return live_objects;
}

Session::Session() {
  static const TemporaryDefaults defaults;
  the_script = {};
  last_port = {};
  calls.clear();
  live_objects = 0;
  StoreList(nullptr);
}

}  // namespace fake_plugin
