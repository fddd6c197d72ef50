// What every kind of file descriptor needs.
#ifndef VIRTUAL_PRINTER_FILEDESCRIPTOR_H_
#define VIRTUAL_PRINTER_FILEDESCRIPTOR_H_

#include <string>

#include "util/FileDescriptor.h"

namespace VirtualPrinter {

using Ravik::FileDescriptor;

// Throws the failure that errno tells as std::system_error; `what` names the failing call.
[[noreturn]] void ThrowSystemError(const std::string& what);

// Throws std::system_error.
void SetNonBlocking(const FileDescriptor& file);

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_FILEDESCRIPTOR_H_
