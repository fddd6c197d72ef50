// Builds the bytes of one printer command from a request's parameters.
#ifndef GANTRYCORE_PRINTERCOMMAND_H_
#define GANTRYCORE_PRINTERCOMMAND_H_

#include <string>
#include <vector>

#include "GantryCore/CommandVO.h"
#include "GantryCore/ParameterMapVO.h"
#include "ModelInfomation/CommandInfoVO.h"
#include "ModelInfomation/CommandKey.h"

namespace Ravik {

// A command is its name (two letters), the length L of the rest (unsigned 16-bit, little-endian),
// the descriptor's format bytes and the variable part, where every parameter has its fixed
// position.
class CPrinterCommand {
 public:
  CPrinterCommand() = default;
  virtual ~CPrinterCommand() = default;

  // Builds the command of an operation for the printer family of a device name. False if there is
  // no descriptor, which leaves flags and bytes as they were, or nothing to send (SetCommand). Ends
  // the process for a key that the family does not answer.
  bool Set(const std::string& deviceName, COMMAND_KEY key, const ParameterMapVO& parameters);

  // Builds the command from its descriptor. False, with no command bytes, if every field converts
  // to nothing.
  bool SetCommand(const ParameterMapVO& parameters, const CommandInfoVO& info);

  // The variable part. Its length is the sum of the lengths of the converted parameters, also where
  // a field takes less of a text or lies elsewhere; a field keeps at most its own length, and of
  // what lies behind byte 512 nothing. A text that names no known value gives the field's default,
  // and so does a missing parameter; a default is written as it stands. Ends the process for a
  // parameter of the wrong kind: anything but a text in a hexadecimal field (so also none at all),
  // anything but a text or an integer in an integer field.
  static std::vector<unsigned char> MakeVariablePart(const ParameterMapVO& parameters,
                                                     const CommandInfoVO& info);

  // The bare command, which goes straight to a printer.
  CommandVO GetCommand() const { return command_; }

  // The command with all that belongs to it, in one: remote-mode start and end around it if it is a
  // remote-mode command, and "SV" behind it if the flag says so.
  CommandVO GetCommandForSpooler() const;

  // The command "SV", a transfer of its own where the command goes straight to a printer.
  static CommandVO GetSVCommand();

  // The bare command in hexadecimal digits, for diagnostics.
  std::string GetCommandAscii() const;

  // The descriptor's flags, as the last Set() that found one took them over; false before.
  bool IsSVCmd() const { return is_sv_; }
  bool IsRemote() const { return is_remote_; }
  bool IsBGJC() const { return is_bgjc_; }

 private:
  bool is_sv_ = false;
  bool is_remote_ = false;
  bool is_bgjc_ = false;
  COMMAND_KEY key_{};
  std::string device_name_;
  CommandVO command_;
};

}  // namespace Ravik

#endif  // GANTRYCORE_PRINTERCOMMAND_H_
