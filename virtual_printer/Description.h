// Commands and replies in words, for a trace.
#ifndef VIRTUAL_PRINTER_DESCRIPTION_H_
#define VIRTUAL_PRINTER_DESCRIPTION_H_

#include <string>

#include "virtual_printer/Bytes.h"
#include "virtual_printer/Command.h"
#include "virtual_printer/Model.h"

namespace VirtualPrinter {

// What the command asks for and its fields; of a record write the settings that it changes. Values
// are the printer's own, in hexadecimal digits.
std::string DescribeCommand(const Family& family, const Bytes& bytes);

// "refused", or the fields of the reply to a command.
std::string DescribeReply(const Family& family, const Command& command, const Bytes& reply);

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_DESCRIPTION_H_
