// Writes the dissector's tables in Lua, from the tables that commands are built and replies read
// with.
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <iostream>
#include <ostream>
#include <string>
#include <vector>

#include "GantryCore/CommandConvertTable.h"
#include "ModelInfomation/DeviceName.h"
#include "ModelInfomation/ModelInfomation.h"

namespace {

using Ravik::CModelInfomation;
using Ravik::COMMAND_KEY;

// A record layout, with one device that has it.
struct Layout {
  const char* families;
  const char* device;
  int version;
  COMMAND_KEY read;
  COMMAND_KEY write;
};

constexpr Layout kLayouts[] = {
    {"QM-R410, QM-R210, QM-R310", Ravik::kDevIdMDLOstrel, 0, Ravik::READ_CUSTOMMEDIA_INFO1,
     Ravik::WRITE_CUSTOMMEDIA_INFO1},
    {"QM-T84, QM-T64", Ravik::kDevIdMDLTamskST, 0, Ravik::READ_CUSTOMMEDIA_INFO1,
     Ravik::WRITE_CUSTOMMEDIA_INFO1},
    {"QM-T44", Ravik::kDevIdMDLLunde44, 0, Ravik::READ_CUSTOMMEDIA_INFO1,
     Ravik::WRITE_CUSTOMMEDIA_INFO1},
    {"QM-V5, QM-V7", Ravik::kDevIdMDLCorvel44, 0, Ravik::READ_CUSTOMMEDIA_INFO1,
     Ravik::WRITE_CUSTOMMEDIA_INFO1},
    {"QM-R410, QM-R210, QM-R310", Ravik::kDevIdMDLOstrel, 1, Ravik::READ_CUSTOMMEDIA_INFO2,
     Ravik::WRITE_CUSTOMMEDIA_INFO2},
    {"QM-R410, QM-R210, QM-R310, QM-T84, QM-T64", Ravik::kDevIdMDLOstrel, 128,
     Ravik::READ_CUSTOMMEDIA_INFO3, Ravik::WRITE_CUSTOMMEDIA_INFO3},
};

// The bytes as a string of Lua.
template <typename Bytes>
std::string Quoted(const Bytes& bytes) {
  std::string text = "\"";
  for (const auto character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    if (std::isalnum(byte) != 0 || byte == ':') {
      text += static_cast<char>(byte);
    } else {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\%03u", unsigned{byte});
      text += escape;
    }
  }
  return text + '"';
}

const char* TypeName(unsigned int type) {
  if (type == Ravik::VALUE_TEXT) return "text";
  return type == Ravik::VALUE_HEX ? "block" : "number";
}

template <typename Fields, typename Describe>
void WriteFields(std::ostream& out, const char* name, const Fields& fields, Describe describe) {
  std::vector<typename Fields::const_pointer> sorted;
  sorted.reserve(fields.size());
  for (const auto& field : fields) sorted.push_back(&field);
  std::stable_sort(sorted.begin(), sorted.end(), [](const auto* a, const auto* b) {
    return a->second.position < b->second.position;
  });
  out << "      " << name << " = {\n";
  for (const auto* field : sorted) {
    out << "        {name = \"" << field->first << "\", at = " << field->second.position
        << ", size = " << field->second.length << ", type = \"" << TypeName(field->second.valueType)
        << '"';
    describe(field->second);
    out << "},\n";
  }
  out << "      },\n";
}

void WriteCommandFields(std::ostream& out, const Ravik::CommandInfoVO& command) {
  constexpr unsigned int kStays = 0xFF;
  WriteFields(out, "command", command.valueInfo, [&](const Ravik::_t_COMMAND_INFOMATION& field) {
    if ((field.defaultValue & 0xFF) == kStays) out << ", stays = true";
  });
}

void WriteReplyFields(std::ostream& out, const Ravik::ReplyInfoVO& reply) {
  WriteFields(out, "reply", reply.replyInfo, [&](const Ravik::_t_REPLY_INFOMATION& field) {
    if (field.form == Ravik::FORM_BINARY) out << ", binary = true";
  });
}

Ravik::CommandInfoVO Command(const char* device, COMMAND_KEY key) {
  Ravik::CommandInfoVO info;
  CModelInfomation::GetInstance().ReadCommandInfo(device, key, info);
  return info;
}

Ravik::ReplyInfoVO Reply(const char* device, COMMAND_KEY key) {
  Ravik::ReplyInfoVO info;
  CModelInfomation::GetInstance().ReadReplyInfo(device, key, info);
  return info;
}

void BeginOperation(std::ostream& out, const char* text, const Ravik::CommandInfoVO& command) {
  out << "  {text = \"" << text << "\", name = " << Quoted(command.command)
      << ", format = " << Quoted(command.format);
}

// The reply to a write has the header alone.
void WriteForms(std::ostream& out, const char* text, COMMAND_KEY Layout::*key) {
  BeginOperation(out, text, Command(kLayouts[0].device, kLayouts[0].*key));
  out << ", header = " << Quoted(Reply(kLayouts[0].device, kLayouts[0].read).header)
      << ", forms = {\n";
  for (const Layout& layout : kLayouts) {
    const Ravik::CommandInfoVO command = Command(layout.device, layout.*key);
    out << "    {families = \"" << layout.families << "\", version = " << layout.version
        << ", code = " << command.valueInfo.at("DeviceID").defaultValue << ",\n";
    WriteCommandFields(out, command);
    const bool is_read = layout.*key == layout.read;
    WriteReplyFields(out, is_read ? Reply(layout.device, layout.read) : Ravik::ReplyInfoVO());
    out << "    },\n";
  }
  out << "  }},\n";
}

void WriteSingle(std::ostream& out, const char* text, const char* device, COMMAND_KEY key,
                 bool is_read) {
  const Ravik::CommandInfoVO command = Command(device, key);
  const Ravik::ReplyInfoVO reply = is_read ? Reply(device, key) : Ravik::ReplyInfoVO();
  BeginOperation(out, text, command);
  out << ", header = " << Quoted(reply.header) << ", forms = {\n    {\n";
  WriteCommandFields(out, command);
  WriteReplyFields(out, reply);
  out << "    },\n  }},\n";
}

void WriteValues(std::ostream& out) {
  out << "local named_values = {\n";
  for (const Ravik::CTableElement& row : Ravik::kConvertTable) {
    out << "  {parameter = \"" << row.name << "\", byte = " << row.byteValue << ", text = \""
        << row.text << "\"},\n";
  }
  out << "}\nlocal offsets = {\n";
  for (const Ravik::CCorrectElement& row : Ravik::kCorrectTable) {
    out << "  " << row.name << " = " << row.offset << ",\n";
  }
  out << "}\n";
}

void WriteTables(std::ostream& out) {
  out << "-- Printer commands in SNMP requests, for Wireshark. See docs/dissector.md.\n"
         "local operations = {\n";
  WriteForms(out, "Read record", &Layout::read);
  WriteForms(out, "Write record", &Layout::write);
  WriteSingle(out, "Read names", Ravik::kDevIdMDLOstrel, Ravik::READ_CUSTOMMEDIA_NAME, true);
  WriteSingle(out, "Initialise records", Ravik::kDevIdMDLOstrel, Ravik::WRITE_MEDIA_INITIALIZE,
              false);
  WriteSingle(out, "Read firmware version", Ravik::kDevIdMDLCorvel44, Ravik::READ_FW_VERSION, true);
  out << "}\n";
  WriteValues(out);
}

}  // namespace

int main() {
  WriteTables(std::cout);
  return std::cout.flush() ? 0 : 1;
}
