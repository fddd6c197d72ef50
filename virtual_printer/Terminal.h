// The local port: a pseudo-terminal that a host opens like a printer's device file.
#ifndef VIRTUAL_PRINTER_TERMINAL_H_
#define VIRTUAL_PRINTER_TERMINAL_H_

#include <string>

#include "virtual_printer/FileDescriptor.h"

namespace VirtualPrinter {

class Terminal {
 public:
  // Creates the terminal in raw mode and a symbolic link to it at `path`, where another symbolic
  // link may stand, but no other file. Throws std::system_error.
  explicit Terminal(const std::string& path);
  // Removes the link.
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  // Whether a host has the device open, or had it open and left bytes that are still to be read.
  bool HasHost() const;

  // A descriptor of the printer's side that does not block. Reading fails once no host has the
  // device open and all its bytes are read.
  FileDescriptor Connect() const;

  // Drops what the last host left unread, so that the next one does not take it for its answer.
  void DropUnread() const;

 private:
  FileDescriptor printer_side_;
  std::string device_;
  std::string link_;
};

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_TERMINAL_H_
