// A byte stream to a printer over a descriptor that does not block: writing all, and reading until
// the printer pauses.
#ifndef PORT_DRIVER_BYTESTREAM_H_
#define PORT_DRIVER_BYTESTREAM_H_

#include <chrono>
#include <cstddef>
#include <string_view>

#include "port_driver/Deadline.h"
#include "port_driver/DeviceURI.h"
#include "port_driver/DriverError.h"
#include "port_driver/Waiter.h"

namespace ZIOP {

// All operations throw DriverError, after Abort; only a silent printer in Read leaves the stream as
// it is. Every single wait is bounded by the port's own time (DeviceURI::budget).
class ByteStream {
 public:
  virtual ~ByteStream() = default;
  ByteStream(const ByteStream&) = delete;
  ByteStream& operator=(const ByteStream&) = delete;

  // Hands all of bytes to the operating system, in order, waiting whenever the printer is slow.
  void Write(std::string_view bytes);

  // Has everything that was written on its way.
  virtual void Flush() = 0;

  // Reads what the printer sends: returns when capacity bytes are there, when the printer hung up,
  // or when after the first byte it paused for a quarter of one try's time. Gives how many bytes,
  // at least 1 unless capacity is 0. Throws kTimeout for a printer that sends nothing in the port's
  // own time, or whose reply takes longer than that from its first byte on, and kPrinter for one
  // that hung up without sending.
  std::size_t Read(char* buffer, std::size_t capacity);

  // Write, Flush and Read as one operation. After any failure, also of a silent printer, the stream
  // is aborted, so that a late reply is not taken for the one to the next command.
  std::size_t Control(std::string_view command, char* reply, std::size_t capacity);

 protected:
  // uri and waiter must outlive the stream.
  ByteStream(const DeviceURI& uri, Waiter& waiter) : uri_(uri), waiter_(waiter) {}

  // What comes before the first try of an operation.
  virtual void PrepareToWrite(std::string_view bytes) = 0;
  virtual void PrepareToRead() = 0;

  // Gives up what is on its way, in both directions, as far as that goes. Does not throw.
  virtual void Abort() = 0;

  virtual int descriptor() const = 0;

  // The port in a trace.
  virtual const char* name() const = 0;

  // One try, which gives how many bytes went, 0 if none can go now; receiving gives kHungUp at the
  // end of the stream.
  virtual std::size_t TryToSend(std::string_view bytes) = 0;
  virtual std::size_t TryToReceive(char* buffer, std::size_t capacity) = 0;
  static constexpr auto kHungUp = static_cast<std::size_t>(-1);

  // Tries until something goes, and gives what the last try gave: 0 after the deadline. A
  // descriptor that is said to be ready, but on which nothing goes, is given a rest between the
  // tries: some devices always say so.
  std::size_t Send(std::string_view bytes, const Deadline& deadline);
  std::size_t Receive(char* buffer, std::size_t capacity, const Deadline& deadline);

  // A few milliseconds' wait, for what no event tells.
  void Rest();

  // How long a printer sends nothing that has come to the end of what it sends, and the moment by
  // which it has done so.
  std::chrono::milliseconds Pause() const { return uri_.timeout / 4; }
  Deadline NextPause() const { return Deadline::After(Pause()); }

  DriverError Timeout(const char* what) const;

  const DeviceURI& uri_;
  Waiter& waiter_;

 private:
  template <typename Try>
  std::size_t Repeat(short events, const Deadline& deadline, Try once);
  void SendAll(std::string_view bytes);
  bool ReceiveReply(char* buffer, std::size_t capacity, std::size_t& length);
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_BYTESTREAM_H_
