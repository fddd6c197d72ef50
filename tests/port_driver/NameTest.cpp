// Hosts that are given by name: dead addresses among several, none, and a resolver that is silent.
#include <dlfcn.h>
#include <netdb.h>

#include <atomic>
#include <future>
#include <mutex>
#include <thread>

#include "port_driver/DriverError.h"
#include "port_driver/SnmpMessage.h"
#include "tests/Loopback6.h"
#include "tests/port_driver/Peer.h"
#include "tests/port_driver/PluggedPort.h"

namespace {

constexpr char kTwoAddresses[] = "two.test";       // 127.0.0.2, 127.0.0.1
constexpr char kManyAddresses[] = "many.test";     // 127.0.0.1 over and over
constexpr char kUnanswered[] = "unanswered.test";  // not before the resolver is free

std::mutex resolver;
std::atomic<int> waiting{0};  // for the resolver

}  // namespace

// The resolver of this program and of the plug-ins that it loads.
extern "C" __attribute__((visibility("default"))) int getaddrinfo(const char* name,
                                                                  const char* service,
                                                                  const addrinfo* hints,
                                                                  addrinfo** list) {
  static const auto system =
      reinterpret_cast<decltype(&getaddrinfo)>(::dlsym(RTLD_NEXT, "getaddrinfo"));
  const std::string host = name;
  const bool isNumeric = (hints->ai_flags & AI_NUMERICHOST) != 0;
  if (!isNumeric && host == kTwoAddresses) {
    const int result = system("127.0.0.2", service, hints, list);
    return result == 0 ? system("127.0.0.1", service, hints, &(*list)->ai_next) : result;
  }
  if (!isNumeric && host == kManyAddresses) {
    int result = 0;
    for (int i = 0; i < 100 && result == 0; ++i) {
      result = system("127.0.0.1", service, hints, list);
      list = &(*list)->ai_next;
    }
    return result;
  }
  if (!isNumeric && host == kUnanswered) {
    ++waiting;
    const std::lock_guard<std::mutex> free(resolver);
    --waiting;
    return EAI_AGAIN;
  }
  return system(name, service, hints, list);
}

namespace ZIOP {
namespace {

using std::chrono::milliseconds;

const std::string kRequest = MakeStatusRequest(7);

TEST(NameTest, SnmpTriesEveryAddress) {
  const struct {
    const char *serves, *silent, *name, *options;
  } kRows[] = {
      // "localhost" may stand for both families, of which the printer serves one.
      {"127.0.0.1", nullptr, "localhost", kPatient},
      {"::1", nullptr, "[::1]", kPatient},
      {"127.0.0.1", nullptr, kTwoAddresses, kPatient},
      {"127.0.0.1", "127.0.0.2", kTwoAddresses, "timeout=50&retries=100"},
  };
  const bool has_loopback6 = HasLoopback6();
  for (const auto& row : kRows) {
    if (!has_loopback6 && row.serves == std::string_view("::1")) continue;
    Peer peer(SOCK_DGRAM, 0, row.serves);
    const Peer silent(SOCK_DGRAM, row.silent ? peer.port() : 0,
                      row.silent ? row.silent : "127.0.0.1");
    PluggedPort port(Uri(9100, row.options + ("&snmp=" + std::to_string(peer.port())), row.name));
    auto taken = std::async(std::launch::async, [&port] { return port.Exchange(kRequest); });
    peer.Receive();
    peer.Send(SnmpAnswer(kRequest, 200));
    EXPECT_EQ(taken.get(), SnmpAnswer(kRequest, 200)) << row.name;
  }
  if (!has_loopback6) GTEST_SKIP() << kNoLoopback6;
}

TEST(NameTest, ManyAddressesDoNotUseUpTheDescriptors) {
  Waiter waiter;
  const Deadline late = Deadline::After(std::chrono::hours(1));
  EXPECT_EQ(ResolveHost(kManyAddresses, late, waiter).size(), 16U);
}

TEST(NameTest, RawDataGoesToAnAddressThatConnects) {
  const Peer peer(SOCK_STREAM), deaf(SOCK_STREAM, peer.port(), "127.0.0.2");
  // Once its queue is full, no connection to it is answered.
  while (PluggedPort(Uri(peer.port(), "timeout=50&retries=0", "127.0.0.2")).Write("x") == 0) {
  }
  PluggedPort port(Uri(peer.port(), "timeout=100&retries=1", kTwoAddresses));
  EXPECT_EQ(port.Write("data"), 0);
  EXPECT_EQ(ReadAll(peer.Accept(), 4), "data");
}

TEST(NameTest, ResolvingIsBounded) {
  PluggedPort port;
  ASSERT_EQ(port.Initialise(fake_plugin::MakeData(Uri(1, "timeout=50&retries=1", kUnanswered))), 0);
  const std::lock_guard<std::mutex> busy(resolver);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(port.Call(&ZIOPortTable::open), -4);
  const auto time = std::chrono::steady_clock::now() - start;
  EXPECT_TRUE(time >= milliseconds(100) && time < milliseconds(5000));
  EXPECT_EQ(port.error, "the name \"unanswered.test\" was not resolved in time");

  Waiter waiter;
  const Deadline late = Deadline::After(std::chrono::hours(1));
  // No label of a name is that long, so that nobody is asked.
  EXPECT_THROW(ResolveHost(std::string(64, 'n'), late, waiter), DriverError);
  waiter.Cancel();
  EXPECT_THROW(ResolveHost(kUnanswered, late, waiter), DriverError);
}

TEST(NameTest, AHangingResolverDoesNotUseUpTheProcess) {
  PluggedPort hanging, other;
  hanging.Initialise(fake_plugin::MakeData(Uri(1, "timeout=1&retries=0", kUnanswered)));
  other.Initialise(fake_plugin::MakeData(Uri(1, "timeout=1000", "localhost")));
  {
    const std::lock_guard<std::mutex> busy(resolver);
    for (int i = 0; i < 20; ++i) {
      EXPECT_LT(hanging.Call(&ZIOPortTable::open), 0);
    }
    EXPECT_EQ(hanging.error, "too many names are being resolved");
  }
  while (waiting != 0 || other.Call(&ZIOPortTable::open) == -3) {
    std::this_thread::yield();
  }
  EXPECT_EQ(other.Call(&ZIOPortTable::close), 0) << "open again once the resolver answers";
}

}  // namespace
}  // namespace ZIOP
