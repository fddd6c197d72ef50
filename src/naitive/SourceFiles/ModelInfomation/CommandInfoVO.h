// Descriptor of one printer command.
#ifndef MODELINFOMATION_COMMANDINFOVO_H_
#define MODELINFOMATION_COMMANDINFOVO_H_

#include <map>
#include <string>
#include <vector>

#include "ModelInfomation/CommandKey.h"

namespace Ravik {

// How a field is encoded in a command or decoded from a reply.
enum VALUE_TYPE : unsigned int {
  VALUE_TEXT = 0,     // command: the text's characters; reply: hexadecimal text of the characters
  VALUE_HEX = 1,      // hexadecimal text, two characters a byte
  VALUE_INTEGER = 2,  // a number, or a named value that stands for one
};

// One encoded field of a command's variable part.
struct _t_COMMAND_INFOMATION {
  unsigned int position;      // of the field's first byte in the variable part
  unsigned int length;        // bytes
  unsigned int defaultValue;  // used without the parameter; only the low byte counts
  unsigned int valueType;     // VALUE_TYPE
};

// One row of a command table.
struct _t_COMMAND_INFOMATION_STRUCT {
  const char* name;
  _t_COMMAND_INFOMATION info;
};

// What a command consists of and how it travels; owns everything that it holds.
class CommandInfoVO {
 public:
  // Replaces command, format and flags, and adds the rows of the table to valueInfo, which is not
  // cleared. A null pointer counts as nothing. A name that is already there ends the process.
  void SetAll(const unsigned char* commandBytes, unsigned int commandLength,
              const unsigned char* formatBytes, unsigned int formatLength,
              const _t_COMMAND_INFOMATION_STRUCT* table, unsigned int rowCount, bool remote,
              bool sv, bool bgjc);

  // Adds one field. A name that is already there ends the process.
  void SetCmdValueInfo(const std::string& name, const _t_COMMAND_INFOMATION& info);

  bool isSVCmd = false;   // the command is followed by the command "SV"
  bool isRemote = false;  // the command is framed by remote-mode start and end
  bool isBGJC = false;    // a write goes straight to a network printer, not through the spooler
  std::vector<unsigned char> command;  // the command's name, "EX" say
  std::vector<unsigned char> format;   // fixed bytes between length field and variable part
  std::map<std::string, _t_COMMAND_INFOMATION> valueInfo;  // fields by parameter name
};

}  // namespace Ravik

#endif  // MODELINFOMATION_COMMANDINFOVO_H_
