// What print servers may do to those who ask them, with a server that says what it is told to.
#include "port_driver/queue_search/PrintServer.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <thread>

#include "port_driver/DriverError.h"
#include "tests/port_driver/TemporaryFolder.h"
#include "util/FileDescriptor.h"

namespace ZIOP {
namespace {

using testing::HasSubstr;

// Serves one connection over a socket of its own, which CUPS_SERVER names.
class FakeServer {
 public:
  using Script = std::function<void(int connection)>;

  explicit FakeServer(Script script) : script_(std::move(script)) {
    const std::string path = folder_.path() + "/socket";
    sockaddr_un address{AF_UNIX, {}};
    EXPECT_LT(path.size(), sizeof address.sun_path) << "TMPDIR is too long for a socket's name";
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    listener_ = Ravik::FileDescriptor(::socket(AF_UNIX, SOCK_STREAM, 0));
    EXPECT_EQ(::bind(listener_.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(listener_.get(), 1), 0);
    ::setenv("CUPS_SERVER", path.c_str(), 1);
    thread_ = std::thread([this] {
      const Ravik::FileDescriptor connection(::accept(listener_.get(), nullptr, nullptr));
      if (connection) script_(connection.get());
    });
  }
  ~FakeServer() {
    ::shutdown(listener_.get(), SHUT_RDWR);
    thread_.join();
    ::unsetenv("CUPS_SERVER");
  }
  FakeServer(const FakeServer&) = delete;
  FakeServer& operator=(const FakeServer&) = delete;

 private:
  Script script_;
  TemporaryFolder folder_;
  Ravik::FileDescriptor listener_;
  std::thread thread_;
};

bool Send(int connection, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

// Reads to the end of the request's attributes, or to an earlier byte 03: what comes then is left
// for WaitForEnd.
void TakeRequest(int connection) {
  char last = 0;
  while (last != '\3' && ::read(connection, &last, 1) == 1) {
  }
}

void WaitForEnd(int connection) {
  char byte;
  while (::read(connection, &byte, 1) == 1) {
  }
}

FakeServer::Script Answer(const std::string& head, const std::string& body) {
  return [=](int connection) {
    TakeRequest(connection);
    Send(connection, head + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
    WaitForEnd(connection);
  };
}

FakeServer::Script Answer(const std::string& body) {
  return Answer("HTTP/1.1 200 OK\r\nContent-Type: application/ipp\r\n", body);
}

std::string Field(const std::string& text) {
  return std::string{static_cast<char>(text.size() >> 8U), static_cast<char>(text.size())} + text;
}

std::string Attribute(char tag, const std::string& name, const std::string& value) {
  return tag + Field(name) + Field(value);
}

constexpr char kGroup = '\4';
constexpr char kEnd = '\3';
constexpr char kInteger = '\x21';
constexpr char kText = '\x41';
constexpr char kCollection = '\x34';
constexpr char kMember = '\x4A';

// An answer of a status in two bytes.
std::string Message(const std::string& status, const std::string& groups) {
  return std::string("\2\0", 2) + status + std::string("\0\0\0\1", 4) + groups;
}

const std::string kOk(2, '\0');

constexpr std::chrono::milliseconds kPatience = std::chrono::seconds(60);
constexpr std::chrono::milliseconds kShort(200);

// The queues a line each, or why there are none.
std::string AskOnce(std::chrono::milliseconds time) {
  try {
    std::string text;
    for (const Queue& queue : AskForQueues(Deadline::After(time))) {
      text += queue.name + "|" + queue.info + "|" + queue.model + "|" + queue.deviceUri +
              (queue.isClass ? "|class\n" : "\n");
    }
    return text;
  } catch (const DriverError& error) {
    return error.what();
  }
}

const std::string kWaiting = "printing system: an earlier search still waits for the server";

// Asks once the search before has come to its end.
std::string Ask(std::chrono::milliseconds time = kPatience) {
  const Deadline patience = Deadline::After(kPatience);
  std::string text = AskOnce(time);
  while (text == kWaiting && !patience.HasPassed()) {
    ::usleep(1000);
    text = AskOnce(time);
  }
  return text;
}

TEST(PrintServerTest, AnswersAreReadOrRefused) {
  std::string nested;
  for (int i = 0; i < 200000; ++i) {
    nested += Attribute(kMember, "", "m") + Attribute(kCollection, "", "");
  }
  std::string many;
  for (int i = 0; i < 20000; ++i) many += kGroup + Attribute(kText, "printer-name", "x");
  std::string all_x;
  for (int i = 0; i < 20000; ++i) all_x += "x|||\n";
  const std::string queue = Attribute(kText, "printer-name", "a\xFF");
  const std::string type_of_class("\0\0\0\1", 4);
  const std::string unreadable = "printing system: the server's answer cannot be read";
  const std::string not_asked =
      "printing system: the server's answer holds values that were not asked for";
  const struct {
    std::string body;
    std::string expected;
  } cases[] = {
      {Message(kOk, kGroup + queue + kEnd), "a\xFF|||\n"},
      {Message(kOk, "\1" + Attribute('\x47', "attributes-charset", "utf-8") + kGroup +
                        Attribute(kText, "printer-info", "i") + queue + kGroup +
                        Attribute(kText, "printer-make-and-model", "m") +
                        Attribute('\x45', "device-uri", "socket://h") +
                        Attribute(kInteger, "printer-type", type_of_class) + kEnd),
       "a\xFF|i||\n||m|socket://h|class\n"},
      {Message(kOk, many + kEnd), all_x},
      {Message(kOk, std::string(1, kEnd)), ""},
      {Message(kOk, ""), unreadable},
      {Message("\4\6", std::string(1, kEnd)), ""},  // none there
      {Message("\4\1", std::string(1, kEnd)),
       "printing system: the server answered client-error-forbidden"},
      {Message("\xFB\xFF", std::string(1, kEnd)),
       "printing system: the server answered a status that is not defined"},
      // Values of another syntax than the attribute's own.
      {Message(kOk, kGroup + Attribute(kInteger, "printer-name", "abcd") +
                        Attribute(kText, "printer-type", "x") + kEnd),
       "|||\n"},
      {Message(kOk, kGroup + Attribute(kInteger, "printer-type", "x") + kEnd), unreadable},
      {Message(kOk, kGroup + queue.substr(0, queue.size() - 1)), unreadable},
      {Message(kOk, kGroup + std::string("\x41\xFF\xFF", 3) + queue + kEnd), unreadable},
      {Message(kOk, kGroup + Attribute(kCollection, "media-col", "") + nested), not_asked},
      {Message(kOk, kGroup + Attribute('\x7F', "a", "") + kEnd), not_asked},
      {std::string(100, '\xFF'), unreadable},
      {"", unreadable},
  };
  for (const auto& [body, expected] : cases) {
    const FakeServer server(Answer(body));
    EXPECT_EQ(Ask(), expected) << testing::PrintToString(body.substr(0, 60));
  }
}

TEST(PrintServerTest, ServersThatDoNotServeAreReported) {
  const struct {
    FakeServer::Script script;
    const char* expected;
  } cases[] = {
      {Answer("HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=\"r\"\r\n", ""),
       "printing system: the server answered Unauthorized"},
      {Answer("HTTP/1.1 302 Away\r\nLocation: /\r\n", ""), "printing system: the server answered"},
      {Answer("no HTTP\r\n", ""), "printing system: the server answered"},
      {[](int) {}, "printing system: the server "},
      {Answer(std::string(kMaximumAnswerLength + 1, '\0')),
       "printing system: the server's answer is longer than 4194304 bytes"},
  };
  for (const auto& [script, expected] : cases) {
    const FakeServer server(script);
    EXPECT_THAT(Ask(), HasSubstr(expected));
  }
  for (const char* place : {"/no/socket", "/dev/null"}) {
    ::setenv("CUPS_SERVER", place, 1);
    EXPECT_THAT(Ask(), HasSubstr("printing system: no server: ")) << place;
    ::unsetenv("CUPS_SERVER");
  }
}

// Silence, and answers that trickle in without an end.
TEST(PrintServerTest, TheDeadlineEndsTheWait) {
  const auto trickle = [](const std::string& head, const std::string& piece) {
    return [=](int connection) {
      TakeRequest(connection);
      for (bool taken = Send(connection, head); taken; taken = Send(connection, piece)) {
        ::usleep(1000);
      }
    };
  };
  const FakeServer::Script scripts[] = {
      WaitForEnd,
      trickle("", "HTTP/1.1 100 Continue\r\n\r\n"),
      trickle("HTTP/1.1 200 OK\r\n", "X: y\r\n"),
      trickle("HTTP/1.1 200 OK\r\nContent-Length: 2000000\r\n\r\n", "a"),
  };
  for (const FakeServer::Script& script : scripts) {
    const FakeServer server(script);
    const auto start = Deadline::Clock::now();
    EXPECT_EQ(Ask(kShort), "printing system: the server did not answer in time");
    EXPECT_LT(Deadline::Clock::now() - start, std::chrono::seconds(10));
  }
}

// A settings file of the user's that is a pipe nobody writes to.
TEST(PrintServerTest, WhatTheLibraryDoesNotBoundHoldsUpNobody) {
  const TemporaryFolder home;
  const std::filesystem::path pipe = home.path() + "/.cups/client.conf";
  std::filesystem::create_directory(pipe.parent_path());
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const char* const known = ::getenv("HOME");
  const std::string before = known == nullptr ? "/" : known;
  ::setenv("HOME", home.path().c_str(), 1);
  ::setenv("CUPS_SERVER", "/dev/null", 1);
  EXPECT_EQ(Ask(kShort), "printing system: the server did not answer in time");
  EXPECT_EQ(AskOnce(kShort), kWaiting);
  ::setenv("HOME", "/", 1);
  ::close(::open(pipe.c_str(), O_RDWR));  // the thread reads the end of the file
  EXPECT_THAT(Ask(), HasSubstr("no server"));
  ::setenv("HOME", before.c_str(), 1);
  ::unsetenv("CUPS_SERVER");
}

TEST(PrintServerTest, TheProgramKeepsItsSignals) {
  struct sigaction before {};
  ::sigaction(SIGPIPE, nullptr, &before);
  const FakeServer server(Answer(Message(kOk, std::string(1, kEnd))));
  Ask();
  struct sigaction after {};
  ::sigaction(SIGPIPE, nullptr, &after);
  EXPECT_EQ(before.sa_handler, SIG_DFL);
  EXPECT_EQ(after.sa_handler, SIG_DFL);
}

}  // namespace
}  // namespace ZIOP
