// A port of a plug-in bundle, loaded as the worker loads it and called slot by slot.
#ifndef TESTS_PORT_DRIVER_PLUGGEDPORT_H_
#define TESTS_PORT_DRIVER_PLUGGEDPORT_H_

#include <gtest/gtest.h>

#include <string>

#include "printer_io/CPluginLoader.h"
#include "tests/fake_plugin/FakePlugin.h"

namespace ZIOP {

// A network printer with a raw data port; for one that does what is waited for, so that the wait
// never decides the result, the options are kPatient.
inline std::string Uri(int raw_port, const std::string& options, const char* host = "127.0.0.1") {
  return std::string("socket://") + host + ":" + std::to_string(raw_port) + "?" + options;
}
constexpr char kPatient[] = "timeout=20000&retries=0";

class PluggedPort {
 public:
  // Initialised and open if there is a uri.
  explicit PluggedPort(const std::string& uri = "", const char* bundle = ZIOP_BUNDLE)
      : loader_(bundle, ZIO_PLUGIN_TYPE_ID),
        interface_(static_cast<ZIOPortInterface*>(loader_.GetInterface(ZIO_PORT_INTERFACE_ID))) {
    EXPECT_TRUE(uri.empty() ||
                (Initialise(fake_plugin::MakeData(uri)) == 0 && Call(&ZIOPortTable::open) == 0))
        << error;
  }
  ~PluggedPort() { EXPECT_EQ(Call(&ZIOPortTable::release), 0); }
  PluggedPort(const PluggedPort&) = delete;
  PluggedPort& operator=(const PluggedPort&) = delete;

  int Initialise(const CFRef<CFTypeRef>& information, int version = ZIO_INTERFACE_VERSION) {
    std::string path = "gone soon";
    const ZIOOpenParameter parameter{
        static_cast<CFDataRef>(information.get()), nullptr, nullptr, Tell, this, path.c_str()};
    return Call(&ZIOPortTable::initialise, version, &parameter);
  }

  // Calls a slot with the interface and the arguments.
  template <typename Slot, typename... Arguments>
  int Call(Slot slot, Arguments... arguments) {
    return (interface_->table->*slot)(interface_, arguments...);
  }

  int Write(std::string bytes) {
    long length = static_cast<long>(bytes.size());
    return Call(&ZIOPortTable::write, bytes.data(), &length);
  }
  // These give what was read, or "code" and the failure's.
  std::string Read(std::size_t capacity) {
    std::string bytes(capacity, '#');
    long length = static_cast<long>(capacity);
    const int result = Call(&ZIOPortTable::read, bytes.data(), &length);
    return result == 0 ? bytes.substr(0, static_cast<std::size_t>(length)) : Code(result);
  }
  std::string Control(const std::string& command, std::size_t capacity) {
    std::string reply(capacity, '#');
    ControlElement block{command.data(), static_cast<int64_t>(command.size()), reply.data(),
                         static_cast<int64_t>(capacity)};
    const int result = Call(&ZIOPortTable::control, &block);
    return result == 0 ? reply : Code(result);
  }
  std::string Exchange(const std::string& request) {
    char buffer[512];
    ZIOSnmpExchange block{request.data(), static_cast<int64_t>(request.size()), buffer, 512};
    const int result = Call(&ZIOPortTable::ioctl, 6L, static_cast<void*>(&block));
    EXPECT_EQ(block.answer == buffer, result != 0 || block.answerLength <= 512);
    return result != 0 ? Code(result)
                       : std::string(block.answer, static_cast<std::size_t>(block.answerLength));
  }

  std::string error;  // last message that the error callback was told

 private:
  static std::string Code(int result) { return "code " + std::to_string(result); }
  static int Tell(void* context, int code, char* message) {
    auto& port = *static_cast<PluggedPort*>(context);
    EXPECT_LT(code, 0);
    port.error = message;
    message[0] = '!';  // the text is the callback's
    port.Call(&ZIOPortTable::cancel);
    return -1;
  }

  CPluginLoader loader_;
  ZIOPortInterface* interface_;
};

}  // namespace ZIOP

#endif  // TESTS_PORT_DRIVER_PLUGGEDPORT_H_
