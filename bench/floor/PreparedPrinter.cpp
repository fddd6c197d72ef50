// A printer that costs no more than an echo: it answers SNMPv1 GetRequests (RFC 1157) with values
// that it has at hand. What it is asked for the first time it asks a virtual printer for.
//
//     prepared_printer PORT_OF_THE_VIRTUAL_PRINTER
//
// prints its own port on 127.0.0.1 and ends when it is told to.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>

namespace {

constexpr unsigned char kSequence = 0x30;
constexpr unsigned char kGetResponse = 0xA2;
constexpr std::size_t kDatagramSize = 65536;

[[noreturn]] void Fail(const char* what) {
  std::perror(what);
  std::exit(EXIT_FAILURE);
}

// Takes TLVs off the front of a text in the basic encoding rules (ITU-T X.690). What is not whole
// ends the program: only the benchmark speaks to it.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  // The next TLV, whole, and its content.
  std::string_view Next(std::string_view& content) {
    if (rest_.size() < 2) Fail("malformed message");
    std::size_t header = 2;
    std::size_t length = Byte(1);
    if (length > 0x7F) {
      header += length & 0x7F;
      if (rest_.size() < header) Fail("malformed message");
      length = 0;
      for (std::size_t i = 2; i < header; ++i) length = length << 8 | Byte(i);
    }
    if (rest_.size() - header < length) Fail("malformed message");
    const std::string_view whole = rest_.substr(0, header + length);
    content = whole.substr(header);
    rest_.remove_prefix(whole.size());
    return whole;
  }

  std::string_view Next() {
    std::string_view content;
    return Next(content);
  }

  // Goes on inside the next TLV.
  void Enter() {
    std::string_view content;
    Next(content);
    rest_ = content;
  }

 private:
  std::size_t Byte(std::size_t index) const { return static_cast<unsigned char>(rest_[index]); }

  std::string_view rest_;
};

// The parts of a message with one binding, each with its tag and length.
struct Message {
  std::string_view version, community, request_id, name, value;

  explicit Message(std::string_view text) {
    Reader reader(text);
    reader.Enter();
    version = reader.Next();
    community = reader.Next();
    reader.Enter();
    request_id = reader.Next();
    reader.Next();  // error status
    reader.Next();  // error index
    reader.Enter();
    reader.Enter();
    name = reader.Next();
    value = reader.Next();
  }
};

std::string Wrap(unsigned char tag, const std::string& content) {
  std::string text(1, static_cast<char>(tag));
  if (content.size() > 0xFF) {
    text += static_cast<char>(0x82);
    text += static_cast<char>(content.size() >> 8);
  } else if (content.size() > 0x7F) {
    text += static_cast<char>(0x81);
  }
  text += static_cast<char>(content.size());
  return text += content;
}

std::string MakeAnswer(const Message& request, const std::string& value) {
  const std::string binding = Wrap(kSequence, std::string(request.name) + value);
  const std::string pdu =
      std::string(request.request_id) + std::string("\2\1\0\2\1\0", 6) + Wrap(kSequence, binding);
  return Wrap(kSequence, std::string(request.version) + std::string(request.community) +
                             Wrap(kGetResponse, pdu));
}

sockaddr_in Loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<in_port_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

std::string_view Receive(int from, char* buffer, sockaddr_in& peer) {
  socklen_t size = sizeof peer;
  const ssize_t length =
      recvfrom(from, buffer, kDatagramSize, 0, reinterpret_cast<sockaddr*>(&peer), &size);
  if (length < 0) Fail("recvfrom");
  return {buffer, static_cast<std::size_t>(length)};
}

void Send(int to, std::string_view datagram, const sockaddr_in& peer) {
  if (sendto(to, datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr*>(&peer),
             sizeof peer) < 0) {
    Fail("sendto");
  }
}

int Open() {
  const int socket_ = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (socket_ < 0) Fail("socket");
  return socket_;
}

// What the virtual printer answers to the request, within five seconds.
std::string Ask(std::string_view request, const sockaddr_in& teacher) {
  static const int connection = Open();
  static char buffer[kDatagramSize];
  const timeval patience{5, 0};
  setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  Send(connection, request, teacher);
  sockaddr_in peer{};
  return std::string(Message(Receive(connection, buffer, peer)).value);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 2;
  const sockaddr_in teacher = Loopback(static_cast<int>(std::strtol(arguments[1], nullptr, 10)));
  const int connection = Open();
  sockaddr_in own = Loopback(0);
  socklen_t size = sizeof own;
  if (bind(connection, reinterpret_cast<sockaddr*>(&own), size) < 0) Fail("bind");
  if (getsockname(connection, reinterpret_cast<sockaddr*>(&own), &size) < 0) Fail("getsockname");
  std::printf("%d\n", ntohs(own.sin_port));
  std::fflush(stdout);

  std::map<std::string, std::string, std::less<>> values;
  static char buffer[kDatagramSize];
  for (sockaddr_in peer{};;) {
    const std::string_view datagram = Receive(connection, buffer, peer);
    const Message request(datagram);
    auto value = values.find(request.name);
    if (value == values.end()) {
      value = values.emplace(request.name, Ask(datagram, teacher)).first;
    }
    Send(connection, MakeAnswer(request, value->second), peer);
  }
}
