// The port to a local device: what is opened, what passes, and printers that fail.
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <termios.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <thread>

#include "tests/port_driver/LocalPeer.h"
#include "tests/port_driver/Peer.h"
#include "tests/port_driver/PluggedPort.h"

namespace ZIOP {
namespace {

using Table = ZIOPortTable;

// A command in remote mode.
const std::string kCommand("\x1B@\x1B(R\x08\0\0REMOTE1XX\0\0\x1B\0\0\0", 23);

int Open(PluggedPort& port, const std::string& uri) {
  EXPECT_EQ(port.Initialise(fake_plugin::MakeData(uri)), 0);
  return port.Call(&Table::open);
}

TEST(LocalPortTest, OpensCharacterDevicesAlone) {
  const std::string folder = testing::TempDir() + "local-port-" + std::to_string(::getpid());
  std::filesystem::create_directory(folder);
  ::mkfifo((folder + "/pipe").c_str(), 0600);
  std::filesystem::create_symlink("/proc/self/exe", folder + "/file");
  const struct {
    std::string path;
    int result;
    const char* error;  // how it ends
  } kRows[] = {
      {folder, -2, " is no character device"},
      {folder + "/pipe", -2, "/pipe is no character device"},
      {folder + "/file", -2, "/file is no character device"},
      {folder + "/none", -3, "/none: No such file or directory (error 2)"},
      {folder + "/pipe/none", -3, "/none: Not a directory (error 20)"},
  };
  for (const auto& row : kRows) {
    PluggedPort port;
    EXPECT_EQ(Open(port, "file://" + row.path), row.result) << row.path;
    EXPECT_THAT(port.error, testing::EndsWith(row.error));
  }
  std::filesystem::remove_all(folder);
}

// A process that changes the settings of its own terminal may be stopped for that.
TEST(LocalPortTest, LeavesTheOwnTerminalAlone) {
  const LocalPeer terminal;
  EXPECT_EXIT(
      {
        ::setsid();
        const int own = ::open(terminal.path().c_str(), O_RDWR);
        PluggedPort port;
        ::_exit(own >= 0 && Open(port, terminal.Uri(1000)) == -2 ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(LocalPortTest, PassesEveryByteAsItIs) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) {
    bytes += static_cast<char>(i);
  }
  LocalPeer peer;
  PluggedPort port(peer.Uri(2000));
  auto reply = std::async(std::launch::async, [&] { return port.Control(bytes, 256); });
  EXPECT_EQ(ReadAll(peer.side(), bytes.size()), bytes);
  Send(peer.side(), bytes);
  EXPECT_EQ(reply.get(), bytes);
  EXPECT_EQ(port.Write("end"), 0);
  EXPECT_EQ(ReadAll(peer.side(), 3), "end") << "and not an echo";
}

TEST(LocalPortTest, IsOneProgramsAtATime) {
  const LocalPeer peer;
  PluggedPort first(peer.Uri(1000)), second, third;
  EXPECT_EQ(Open(second, peer.Uri(50)), -3);
  EXPECT_EQ(second.error, "open " + peer.path() + ": Device or resource busy (error 16)");
  auto waiting = std::async(std::launch::async, [&] { return Open(third, peer.Uri(20000)); });
  EXPECT_EQ(waiting.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
  EXPECT_EQ(first.Call(&Table::close), 0);
  EXPECT_EQ(waiting.get(), 0);
}

TEST(LocalPortTest, LateRepliesAnswerNoOtherCommand) {
  LocalPeer peer;
  PluggedPort port(peer.Uri(1000));
  const auto expect_good = [&](const char* why) {
    auto reply = std::async(std::launch::async, [&] { return port.Control(kCommand, 4); });
    EXPECT_EQ(ReadAll(peer.side(), kCommand.size()), kCommand) << why;
    Send(peer.side(), "good");
    EXPECT_EQ(reply.get(), "good") << why;
  };
  Send(peer.side(), "an earlier program's");
  expect_good("what was there before");
  Send(peer.side(), "rest");
  expect_good("the rest of a reply that did not fit");
  for (const bool reopens : {false, true}) {
    EXPECT_EQ(port.Control(kCommand, 4), "code -4");
    EXPECT_EQ(ReadAll(peer.side(), kCommand.size()), kCommand);
    auto late = std::async(std::launch::async, [&] {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      Send(peer.side(), "late");
    });
    EXPECT_TRUE(!reopens || port.Call(&Table::close) + port.Call(&Table::open) == 0);
    expect_good("after a time-out");
  }
  EXPECT_EQ(port.Write(kCommand), 0);
  EXPECT_EQ(ReadAll(peer.side(), kCommand.size()), kCommand);
  auto late = std::async(std::launch::async, [&] { Send(peer.side(), "unread"); });
  EXPECT_EQ(port.Call(&Table::close) + port.Call(&Table::open), 0);
  expect_good("the reply to a command that was only written");
}

TEST(LocalPortTest, TheRestOfAReplyThatDidNotFitIsWaitedFor) {
  LocalPeer peer;
  PluggedPort port(peer.Uri(4000));
  for (const char* const rest : {"", "rest"}) {
    auto reply = std::async(std::launch::async, [&] { return port.Control(kCommand, 4); });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    Send(peer.side(), rest);
    EXPECT_EQ(ReadAll(peer.side(), kCommand.size()), kCommand);
    Send(peer.side(), "good");
    EXPECT_EQ(reply.get(), "good");
  }
}

// As a printer's driver may be, which always is ready and has nothing, or never stops.
TEST(LocalPortTest, DevicesThatAreAlwaysReadyAreBounded) {
  PluggedPort silent, endless;
  // Other runs of the test use the same devices.
  for (int result = Open(silent, "file:///dev/null?timeout=1000"); result != 0;) {
    result = silent.Call(&Table::open);
  }
  for (int result = Open(endless, "file:///dev/zero?timeout=100"); result != 0;) {
    result = endless.Call(&Table::open);
  }
  const long before = ProcessorTime();
  EXPECT_EQ(silent.Control("x", 4), "code -4");
  EXPECT_LT(ProcessorTime() - before, 500) << "milliseconds of processor time";
  EXPECT_EQ(endless.Write("x"), -4);
  EXPECT_EQ(endless.error, "the printer did not stop sending within 100 ms");
  EXPECT_EQ(endless.Read(4), std::string(4, '\0'));
  EXPECT_EQ(endless.Call(&Table::close), 0) << "every byte was taken";
}

TEST(LocalPortTest, AnUnpluggedDeviceIsReportedAtOnce) {
  LocalPeer peer;
  PluggedPort port(peer.Uri(20000));
  char text[ZIO_STATUS_BUFFER_SIZE];
  EXPECT_EQ(port.Write(kCommand), 0);
  peer.side() = Ravik::FileDescriptor();
  EXPECT_EQ(port.Write("x"), -8);
  EXPECT_EQ(port.Call(&Table::flush, static_cast<unsigned char>(0)), -8);
  EXPECT_EQ(port.Read(1), "code -8");
  EXPECT_THAT(port.error, testing::StartsWith("the printer failed or was unplugged: "));
  EXPECT_EQ(port.Call(&Table::status, text), -8);
  EXPECT_EQ(port.Call(&Table::close), -8);
  EXPECT_EQ(port.Call(&Table::open), -3);
}

}  // namespace
}  // namespace ZIOP
