// The printer behind real ports.
#include "virtual_printer/Server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>

#include "tests/virtual_printer/TestPrinter.h"

namespace VirtualPrinter {
namespace {

constexpr int kPatienceMs = 10000;
const Bytes kEnter = Hex("1B401B285208000052454D4F544531");
const Bytes kLeave = Hex("1B000000");
const Bytes kNothing = MakeCommand("XX", "");  // answered with "XX:NA;"

/// A GetRequest for sysDescr.
const Bytes kSysDescr =
    Hex("302602010004067075626C6963A019020102020100020100300E300C06082B0601020101"
        "01000500");

/// A printer whose server runs in a thread of its own.
class RunningPrinter {
 public:
  explicit RunningPrinter(const std::vector<std::string>& faults = {},
                          const std::string& local_path = "")
      : parts_("QM-R410 Series", faults),
        server_("127.0.0.1", 0, 0, parts_.printer, parts_.faults, parts_.trace) {
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

  FileDescriptor Connect(int type) const {
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

void Write(const FileDescriptor& file, const Bytes& bytes) {
  EXPECT_EQ(write(file.Get(), bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
}

/// What one read gives: a datagram, or the bytes that are there; nothing at the end.
Bytes ReadOnce(const FileDescriptor& file, int patience_ms = kPatienceMs) {
  pollfd polled = {file.Get(), POLLIN, 0};
  if (poll(&polled, 1, patience_ms) <= 0) return {};
  Bytes bytes(4096);
  const ssize_t size = read(file.Get(), bytes.data(), bytes.size());
  bytes.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
  return bytes;
}

/// Reads `size` bytes, fewer at the end.
std::string ReadText(const FileDescriptor& file, std::size_t size) {
  std::string text;
  while (text.size() < size) {
    const Bytes more = ReadOnce(file);
    if (more.empty()) break;
    text += Text(more);
  }
  return text;
}

Bytes Remote(const std::vector<Bytes>& commands) {
  Bytes stream = kEnter;
  for (const auto& command : commands) Append(stream, command);
  Append(stream, kLeave);
  return stream;
}

TEST(Server, AnswersDatagrams) {
  RunningPrinter printer;
  const FileDescriptor first = printer.Connect(SOCK_DGRAM);
  const FileDescriptor second = printer.Connect(SOCK_DGRAM);
  Write(first, Hex("3000"));  // gets no answer
  Write(second, kSysDescr);
  const std::string expected = "QM-R410 Series";
  for (const auto* host : {&second, &first}) {
    if (host == &first) Write(first, kSysDescr);
    const std::string answer = Text(ReadOnce(*host));
    ASSERT_GT(answer.size(), expected.size());
    EXPECT_EQ(answer.substr(answer.size() - expected.size()), expected);
  }
}

TEST(Server, AnswersStreamsSideBySide) {
  RunningPrinter printer;
  const FileDescriptor first = printer.Connect(SOCK_STREAM);
  const FileDescriptor second = printer.Connect(SOCK_STREAM);
  const Bytes stream = Remote({kNothing, kSave});
  Write(first, Bytes(stream.begin(), stream.begin() + 16));
  Write(second, stream);
  EXPECT_EQ(ReadText(second, 12), "XX:NA;SV:OK;");
  Write(first, Bytes(stream.begin() + 16, stream.end()));
  EXPECT_EQ(ReadText(first, 12), "XX:NA;SV:OK;");
}

// A host may close its side first and still gets all its replies, then the end.
TEST(Server, AnswersBeforeItCloses) {
  for (const auto& faults : {std::vector<std::string>{}, {"delay=50"}}) {
    RunningPrinter printer(faults);
    const FileDescriptor host = printer.Connect(SOCK_STREAM);
    Write(host, Remote(std::vector<Bytes>(1000, kNothing)));
    Write(host, Bytes(kEnter.begin(), kEnter.end() - 1));  // incomplete
    EXPECT_EQ(shutdown(host.Get(), SHUT_WR), 0);
    EXPECT_EQ(ReadText(host, 6001), Repeat("XX:NA;", 1000));
  }
}

/// Writes `command` again and again, many at a time, until nothing is taken any more; answers how
/// many were taken whole.
std::size_t WriteUntilHeldBack(const FileDescriptor& host, const Bytes& command) {
  constexpr std::size_t kTooMany = 1000000;
  const int flags = fcntl(host.Get(), F_GETFL);
  fcntl(host.Get(), F_SETFL, flags | O_NONBLOCK);
  Bytes many;
  for (int i = 0; i < 1000; ++i) Append(many, command);
  std::size_t written = 0;
  pollfd polled = {host.Get(), POLLOUT, 0};
  while (written < kTooMany * command.size() && poll(&polled, 1, 500) > 0) {
    const std::size_t at = written % many.size();
    const ssize_t size = write(host.Get(), many.data() + at, many.size() - at);
    if (size > 0) written += static_cast<std::size_t>(size);
  }
  fcntl(host.Get(), F_SETFL, flags);
  EXPECT_LT(written / command.size(), kTooMany) << "never held back";
  return written / command.size();
}

// A host that reads no replies is held back; the others are served, and it loses nothing.
TEST(Server, HoldsBackAHostThatDoesNotRead) {
  constexpr std::size_t kReplySize = 239;
  RunningPrinter printer;
  const FileDescriptor greedy = printer.Connect(SOCK_STREAM);
  Write(greedy, kEnter);
  const std::size_t asked = WriteUntilHeldBack(greedy, MakeCommand("EX", kRead + "370380"));
  const FileDescriptor other = printer.Connect(SOCK_STREAM);
  Write(other, Remote({kNothing}));
  EXPECT_EQ(ReadText(other, 6), "XX:NA;");
  EXPECT_EQ(shutdown(greedy.Get(), SHUT_WR), 0);
  EXPECT_EQ(ReadText(greedy, asked * kReplySize + 1).size(), asked * kReplySize);
}

TEST(Server, DelaysAnAnswerWithoutBlockingTheNext) {
  RunningPrinter printer({"delay=300"});
  const FileDescriptor host = printer.Connect(SOCK_DGRAM);
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < 20; ++i) Write(host, kSysDescr);
  for (int i = 0; i < 20; ++i) EXPECT_FALSE(ReadOnce(host).empty());
  const auto took = std::chrono::steady_clock::now() - start;
  EXPECT_GE(took, std::chrono::milliseconds(300));
  EXPECT_LT(took, std::chrono::milliseconds(20 * 300));
}

TEST(Server, PlaysFaultsOfTheTransport) {
  RunningPrinter duplicate({"duplicate=1"});
  const FileDescriptor udp = duplicate.Connect(SOCK_DGRAM);
  Write(udp, kSysDescr);
  const Bytes answer = ReadOnce(udp);
  EXPECT_FALSE(answer.empty());
  EXPECT_EQ(ReadOnce(udp), answer);
  const FileDescriptor tcp = duplicate.Connect(SOCK_STREAM);
  Write(tcp, Remote({kNothing}));
  EXPECT_EQ(shutdown(tcp.Get(), SHUT_WR), 0);
  EXPECT_EQ(ReadText(tcp, 100), "XX:NA;");

  RunningPrinter lossy({"drop=1", "truncate=4"});
  const FileDescriptor host = lossy.Connect(SOCK_STREAM);
  Write(host, Remote({kSave, kNothing}));
  EXPECT_EQ(ReadText(host, 4), "XX:N");
}

TEST(Server, ResetsConnections) {
  RunningPrinter printer({"reset=1"});
  const FileDescriptor first = printer.Connect(SOCK_STREAM);
  Write(first, kEnter);
  char byte = 0;
  EXPECT_EQ(read(first.Get(), &byte, 1), -1);
  EXPECT_EQ(errno, ECONNRESET);
  const FileDescriptor second = printer.Connect(SOCK_STREAM);
  Write(second, Remote({kNothing}));
  EXPECT_EQ(ReadText(second, 6), "XX:NA;");
}

TEST(Server, RefusesAnAddressThatItCannotBind) {
  TestPrinter parts("QM-R410 Series");
  for (const char* address : {"", "printer.invalid", "192.0.2.1", "127.0.0.1:80"}) {
    EXPECT_THROW(Server(address, 0, 0, parts.printer, parts.faults, parts.trace), std::system_error)
        << address;
  }
}

class LocalPort : public testing::Test {
 protected:
  LocalPort() {
    char name[] = "/tmp/virtual-printer-XXXXXX";
    directory_ = mkdtemp(name);
    path_ = directory_ + "/printer";
  }
  ~LocalPort() override { EXPECT_EQ(rmdir(directory_.c_str()), 0) << "the link is still there"; }
  FileDescriptor Open() const { return FileDescriptor(open(path_.c_str(), O_RDWR | O_NOCTTY)); }

  std::string directory_;
  std::string path_;
};

TEST_F(LocalPort, AnswersHostsOneAfterTheOther) {
  RunningPrinter printer({"reset"}, path_);  // strikes TCP connections only
  for (int round = 0; round < 3; ++round) {
    const FileDescriptor host = Open();
    Write(host, Remote({kNothing, MakeCommand("ST", "010001")}));
    const std::string expected = "XX:NA;STATUS\r\n";
    EXPECT_EQ(ReadText(host, expected.size()).substr(0, expected.size()), expected);
  }
}

// What one host leaves unread, and the command that it breaks off, are not the next one's.
TEST_F(LocalPort, StartsAfreshForEveryHost) {
  RunningPrinter printer({}, path_);
  const FileDescriptor watcher = printer.Connect(SOCK_STREAM);
  {
    const FileDescriptor host = Open();
    Write(host, Remote({kSave}));
    pollfd polled = {host.Get(), POLLIN, 0};
    EXPECT_EQ(poll(&polled, 1, kPatienceMs), 1);
    Bytes broken_off = kEnter;
    Append(broken_off, Hex("4558FF00"));
    Write(host, broken_off);
  }
  // The printer looks at all its ports whenever it answers at one.
  for (int i = 0; i < 5; ++i) {
    Write(watcher, Remote({kNothing}));
    EXPECT_EQ(ReadText(watcher, 6), "XX:NA;");
  }
  const FileDescriptor host = Open();
  Write(host, Remote({kNothing}));
  EXPECT_EQ(ReadText(host, 6), "XX:NA;");
}

TEST_F(LocalPort, TakesThePlaceOfALinkOnly) {
  TestPrinter parts("QM-R410 Series");
  Server server("127.0.0.1", 0, 0, parts.printer, parts.faults, parts.trace);
  ASSERT_EQ(mkdir(path_.c_str(), 0700), 0);
  EXPECT_THROW(server.OfferLocalPort(path_), std::system_error);
  ASSERT_EQ(rmdir(path_.c_str()), 0);
  ASSERT_EQ(symlink("/dev/null", path_.c_str()), 0);
  EXPECT_NO_THROW(server.OfferLocalPort(path_));
}

}  // namespace
}  // namespace VirtualPrinter
