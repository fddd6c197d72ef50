// The printer behind real ports, where the worker's own traffic does not reach.
#include "virtual_printer/Server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

#include "tests/virtual_printer/TestPrinter.h"

namespace VirtualPrinter {
namespace {

constexpr int kPatienceMs = 10000;
const Bytes kEnter = Hex("1B401B285208000052454D4F544531");
const Bytes kNothing = MakeCommand("XX", "");  // answered with "XX:NA;"

// A GetRequest for sysDescr.
const Bytes kSysDescr =
    Hex("302602010004067075626C6963A019020102020100020100300E300C06082B060102010101000500");

// A printer whose server runs in a thread of its own.
class RunningPrinter {
 public:
  explicit RunningPrinter(const std::vector<std::string>& faults = {},
                          const std::string& local_path = "")
      : parts_(faults), server_("127.0.0.1", 0, 0, parts_.printer, parts_.faults, parts_.trace) {
    if (!local_path.empty()) server_.OfferLocalPort(local_path);
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    stop_read_ = FileDescriptor(ends[0]);
    stop_write_ = FileDescriptor(ends[1]);
    thread_ = std::thread([this] { server_.Run(stop_read_.Get()); });
  }
  ~RunningPrinter() {
    stop_write_ = FileDescriptor();
    thread_.join();
  }

  FileDescriptor Connect(int type = SOCK_STREAM) const {
    FileDescriptor socket(::socket(AF_INET, type, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(type == SOCK_DGRAM ? server_.SnmpPort() : server_.RawPort());
    EXPECT_EQ(connect(socket.Get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    return socket;
  }

 private:
  TestPrinter parts_;
  Server server_;
  FileDescriptor stop_read_;
  FileDescriptor stop_write_;
  std::thread thread_;
};

void Send(const FileDescriptor& file, const Bytes& bytes) {
  EXPECT_EQ(write(file.Get(), bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
}

// Reads `size` bytes, fewer at the end.
std::string ReadText(const FileDescriptor& file, std::size_t size) {
  std::string text;
  pollfd polled = {file.Get(), POLLIN, 0};
  while (text.size() < size && poll(&polled, 1, kPatienceMs) > 0) {
    char buffer[4096];
    const ssize_t more = read(file.Get(), buffer, sizeof buffer);
    if (more <= 0) break;
    text.append(buffer, static_cast<std::size_t>(more));
  }
  return text;
}

Bytes Remote(const std::vector<Bytes>& commands) {
  Bytes stream = kEnter;
  for (const auto& command : commands) Append(stream, command);
  Append(stream, Hex("1B000000"));
  return stream;
}

TEST(Server, AnswersStreamsSideBySide) {
  RunningPrinter printer({"drop=1", "reset=1"});
  const FileDescriptor broken = printer.Connect();
  Send(broken, kEnter);
  char byte = 0;
  EXPECT_EQ(read(broken.Get(), &byte, 1), -1);
  EXPECT_EQ(errno, ECONNRESET);
  const FileDescriptor first = printer.Connect();
  const FileDescriptor second = printer.Connect();
  const Bytes stream = Remote({kSave, kNothing});
  Send(first, Bytes(stream.begin(), stream.begin() + 16));
  Send(second, stream);
  EXPECT_EQ(ReadText(second, 6), "XX:NA;");  // the other command was dropped
  Send(first, Bytes(stream.begin() + 16, stream.end()));
  EXPECT_EQ(ReadText(first, 12), "SV:OK;XX:NA;");
}

// A host may send all its commands and close its side before it reads: it is held back while its
// replies wait, and still gets all of them, then the end.
TEST(Server, AnswersBeforeItCloses) {
  constexpr std::size_t kCommands = 30000;
  constexpr std::size_t kReplySize = 239;
  for (const char* fault : {"delay=0", "delay=5"}) {
    RunningPrinter printer({fault});
    const FileDescriptor host = printer.Connect();
    Send(host, Remote(std::vector<Bytes>(kCommands, Read("370380"))));
    Send(host, Bytes(kEnter.begin(), kEnter.end() - 1));  // incomplete
    EXPECT_EQ(shutdown(host.Get(), SHUT_WR), 0);
    const FileDescriptor other = printer.Connect();
    for (int i = 0; i < 100; ++i) {  // other hosts are served meanwhile
      Send(other, Remote({kNothing}));
      EXPECT_EQ(ReadText(other, 6), "XX:NA;");
    }
    EXPECT_EQ(ReadText(host, kCommands * kReplySize + 1).size(), kCommands * kReplySize);
  }
}

// What one host leaves unread, and the command that it breaks off, are not the next one's.
TEST(Server, StartsAfreshForEveryHostOfTheLocalPort) {
  const std::string path = testing::TempDir() + "virtual-printer-" + std::to_string(getpid());
  ASSERT_EQ(symlink("/dev/null", path.c_str()), 0);  // is replaced
  {
    RunningPrinter printer({"reset"}, path);  // a fault of TCP connections only
    const FileDescriptor watcher = printer.Connect(SOCK_DGRAM);
    for (int round = 0; round < 3; ++round) {
      FileDescriptor host(open(path.c_str(), O_RDWR | O_NOCTTY));
      Send(host, Remote({kNothing, MakeCommand("ST", "010001")}));
      EXPECT_EQ(ReadText(host, 14).substr(0, 14), "XX:NA;STATUS\r\n") << round;
      Bytes broken_off = Remote({kSave});
      Append(broken_off, kEnter);
      Append(broken_off, Hex("4558FF00"));
      Send(host, broken_off);
      pollfd polled = {host.Get(), POLLIN, 0};
      EXPECT_EQ(poll(&polled, 1, kPatienceMs), 1);
      host = FileDescriptor();
      // The printer looks at all its ports whenever it answers at one.
      for (int i = 0; i < 5; ++i) {
        Send(watcher, kSysDescr);
        EXPECT_NE(ReadText(watcher, 1), "");
      }
    }
  }
  EXPECT_NE(unlink(path.c_str()), 0) << "the link is still there";
}

}  // namespace
}  // namespace VirtualPrinter
