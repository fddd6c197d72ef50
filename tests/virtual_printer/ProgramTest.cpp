// The built program: its command line, its ports where the worker's own traffic does not reach, and
// its ends.
#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <picojson.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>

#include "tests/end_to_end/Process.h"
#include "tests/virtual_printer/TestPrinter.h"
#include "virtual_printer/FileDescriptor.h"

namespace VirtualPrinter {
namespace {

using Texts = std::vector<std::string>;

const Bytes kEnter = Hex("1B401B285208000052454D4F544531");
const Bytes kNothing = MakeCommand("XX", "");  // answered with "XX:NA;"

// The command of the program with these options, whose errors go to its output.
Texts Command(const Texts& options) {
  Texts command = {"sh", "-c", R"(exec "$0" "$@" 2>&1)", VIRTUAL_PRINTER};
  command.insert(command.end(), options.begin(), options.end());
  return command;
}

struct RunningPrinter {
  explicit RunningPrinter(const Texts& options) : process(Command(options), "/dev/null") {
    EXPECT_EQ(picojson::parse(ready, process.ReadUntil("\n")), "");
  }

  FileDescriptor Connect() const {
    FileDescriptor socket(::socket(AF_INET, SOCK_STREAM, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<in_port_t>(ready.get("raw").get<double>()));
    EXPECT_EQ(connect(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    return socket;
  }

  Process process;
  picojson::value ready;
};

void Send(const FileDescriptor& file, const Bytes& bytes) {
  EXPECT_EQ(write(file.get(), bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
}

// Reads `size` bytes, fewer at the end.
std::string ReadText(const FileDescriptor& file, std::size_t size) {
  std::string text(size, '\0');
  std::size_t done = 0;
  for (ssize_t more = 1; more > 0 && done < size; done += static_cast<std::size_t>(more)) {
    more = std::max<ssize_t>(read(file.get(), text.data() + done, size - done), 0);
  }
  text.resize(done);
  return text;
}

Bytes Remote(const std::vector<Bytes>& commands) {
  Bytes stream = kEnter;
  for (const auto& command : commands) Append(stream, command);
  Append(stream, Hex("1B000000"));
  return stream;
}

// A place for the local port's link.
std::string LocalPath() {
  return testing::TempDir() + "virtual-printer-" + std::to_string(getpid());
}

TEST(Program, SaysWhatIsWrong) {
  const struct {
    int status;
    Texts options;
    const char* told;
  } kCases[] = {
      {2, {}, "--model is missing"},
      {2, {"--model", "QM-X Series"}, "QM-T84 Series"},  // lists the names
      {2, {"--model", "QM-V5 Series", "more"}, "more"},
      {2, {"--snmp", "65536"}, "--snmp"},
      {2, {"--raw", ""}, "--raw"},
      {2, {"--fault", ""}, "unknown fault"},
      {2, {"--fault", "drop"}, "drop: "},
      {2, {"--fault", "loss=101"}, "loss=101: "},
      {2, {"--fault", "lack=sysName"}, "lack=sysName: "},
      {2, {"--fault", "delay=4294967296"}, "delay=4294967296: "},
      {2, {"--fault", "forget=1"}, "forget=1: "},
      {2, {"--fault", "na="}, "na=: "},
      {2, {"--fault", "status-text=0G"}, "status-text=0G: "},
      {1, {"--model", "QM-V5 Series", "--listen", "192.0.2.1"}, "192.0.2.1"},
      {1, {"--model", "QM-V5 Series", "--local", "/tmp"}, "/tmp"},
      {1, {"--model", "QM-V5 Series", "--state", "/dev/null"}, "/dev/null"},
  };
  for (const auto& c : kCases) {
    Process process(Command(c.options), "/dev/null");
    const std::string output = process.ReadAll();
    EXPECT_EQ(output.rfind("virtual-printer: ", 0), 0U) << output;
    EXPECT_NE(output.find(c.told), std::string::npos) << c.told << " in " << output;
    EXPECT_EQ(WEXITSTATUS(process.Wait()), c.status) << c.told;
  }
}

// A host may send all its commands and close its side before it reads: it is held back while its
// replies wait, and still gets all of them, then the end.
TEST(Program, AnswersBeforeItCloses) {
  constexpr std::size_t kCommands = 30000;
  constexpr std::size_t kReplies = (kCommands - 1) * 239;
  for (const char* fault : {"delay=0", "delay=5"}) {
    const RunningPrinter printer({"--model", kPlain, "--fault", fault, "--fault", "drop=1"});
    const FileDescriptor host = printer.Connect();
    Send(host, Remote(std::vector<Bytes>(kCommands, Read("370380"))));
    Send(host, Bytes(kEnter.begin(), kEnter.end() - 1));  // incomplete
    EXPECT_EQ(shutdown(host.get(), SHUT_WR), 0);
    const FileDescriptor other = printer.Connect();
    for (int i = 0; i < 100; ++i) {  // other hosts are served meanwhile
      Send(other, Remote({kNothing}));
      EXPECT_EQ(ReadText(other, 6), "XX:NA;");
    }
    EXPECT_EQ(ReadText(host, kReplies + 1).size(), kReplies);
  }
}

// What one host leaves unread, and the command that it breaks off, are not the next one's.
TEST(Program, StartsAfreshForEveryHostOfTheLocalPort) {
  const std::string path = LocalPath();
  ASSERT_EQ(symlink("/dev/null", path.c_str()), 0);  // is replaced
  RunningPrinter printer({"--model", kPlain, "--local", path, "--fault", "status-text=410D0A"});
  const FileDescriptor watcher = printer.Connect();
  for (int round = 0; round < 3; ++round) {
    FileDescriptor host(open(path.c_str(), O_RDWR | O_NOCTTY));
    Send(host, Remote({MakeCommand("ST", "01"), kNothing}));
    EXPECT_EQ(ReadText(host, 9), "A\r\nXX:NA;") << round;
    Bytes broken_off = Remote({kSave});
    Append(broken_off, kEnter);
    Append(broken_off, Hex("4558FF00"));
    Send(host, broken_off);
    EXPECT_EQ(ReadText(host, 1), "S");
    host = FileDescriptor();
    // The printer looks at all its ports whenever it answers at one.
    for (int i = 0; i < 5; ++i) {
      Send(watcher, Remote({kNothing}));
      EXPECT_EQ(ReadText(watcher, 6), "XX:NA;");
    }
  }
  EXPECT_EQ(printer.process.Wait(SIGINT), 0);
  EXPECT_NE(unlink(path.c_str()), 0) << "the link is still there";
}

// Neither a host that takes no answers nor a trace that nobody reads keeps it.
TEST(Program, EndsWithItsStateSavedWhenItIsHeldUp) {
  for (const bool traces : {false, true}) {
    const std::filesystem::path state = LocalPath() + "-state";
    Texts options = {"--model", kPlain, "--state", state};
    if (traces) options.emplace_back("--trace");
    RunningPrinter printer(options);
    const FileDescriptor host = printer.Connect();
    const Bytes commands = Remote(std::vector<Bytes>(1000, Read("370380")));
    for (pollfd sendable{host.get(), POLLOUT, 0}; poll(&sendable, 1, 300) > 0;) {
      send(host.get(), commands.data(), commands.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    }
    EXPECT_EQ(printer.process.Wait(SIGTERM), 0) << traces;
    EXPECT_TRUE(std::filesystem::remove(state)) << traces;
  }
}

TEST(Program, ResetsTcpConnectionsAlone) {
  const std::string path = LocalPath();
  RunningPrinter printer({"--model", kPlain, "--local", path, "--fault", "reset"});
  const FileDescriptor local(open(path.c_str(), O_RDWR | O_NOCTTY));
  Send(local, Remote({kNothing}));
  EXPECT_EQ(ReadText(local, 6), "XX:NA;");
  const FileDescriptor host = printer.Connect();
  Send(host, Remote({kNothing}));
  char byte = 0;
  EXPECT_EQ(read(host.get(), &byte, 1), -1);
  EXPECT_EQ(errno, ECONNRESET);
  EXPECT_EQ(printer.process.Wait(SIGTERM), 0);
}

}  // namespace
}  // namespace VirtualPrinter
