// The worker's two ends of the pipes to its host.
#ifndef NATIVEPROCESS_HOSTCHANNEL_H_
#define NATIVEPROCESS_HOSTCHANNEL_H_

#include <cstddef>
#include <memory>
#include <string>

namespace Ravik {

// Reads lines from one descriptor and writes to another; both stay the caller's, who sees to it
// that they outlive the channel. Calls block as the descriptors do.
class HostChannel {
 public:
  HostChannel(int input, int output) : input_(input), output_(output) {}

  // The next line, of any length and with any bytes in it, without its line feed; also a last one
  // that has none. False at the end of the input, when it cannot be read, and when there is no
  // memory for a line, which ends the input too: a line that it breaks off in is lost.
  bool ReadLine(std::string& line);

  // Writes all of the text, with one call unless the descriptor takes less. False, with the reason
  // in errno, when it cannot be written.
  bool Write(const std::string& text) const;

 private:
  // ReadLine(), but without memory it throws std::bad_alloc.
  bool TakeLine(std::string& line);

  // Reads what is there, up to a block of it; false if there is nothing more to read.
  bool Fill();

  int input_;
  int output_;
  std::unique_ptr<char[]> block_;
  const char* begin_ = nullptr;  // of what is read and not yet taken
  const char* end_ = nullptr;
  bool has_ended_ = false;  // a terminal could go on behind its end of input
  bool has_failed_ = false;
};

}  // namespace Ravik

#endif  // NATIVEPROCESS_HOSTCHANNEL_H_
