// The bytes of one printer command or reply.
#ifndef GANTRYCORE_COMMANDVO_H_
#define GANTRYCORE_COMMANDVO_H_

#include <utility>
#include <vector>

namespace Ravik {

// A growable byte buffer, copied by value; carries every command and reply between the printer
// control and the printer I/O.
class CommandVO {
 public:
  CommandVO() = default;

  // Copies length bytes. A null pointer or a length below 1 gives an empty buffer.
  CommandVO(const unsigned char* bytes, int length);
  CommandVO(const char* bytes, int length);

  explicit CommandVO(std::vector<unsigned char> bytes) : bytes_(std::move(bytes)) {}

  // Appends all bytes of other, which may be this buffer itself.
  CommandVO& operator+=(const CommandVO& other);

  // Appends length bytes, none for a null pointer or a length below 1. They are not of this buffer.
  void Append(const char* bytes, int length);

  // The bytes; valid until the buffer changes.
  const std::vector<unsigned char>& bytes() const { return bytes_; }

 private:
  std::vector<unsigned char> bytes_;
};

}  // namespace Ravik

#endif  // GANTRYCORE_COMMANDVO_H_
