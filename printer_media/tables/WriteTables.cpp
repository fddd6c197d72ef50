// Writes the source of Tables.h's rows from the tables that commands are built and replies read
// with.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "GantryCore/CommandConvertTable.h"
#include "ModelInfomation/DeviceName.h"
#include "ModelInfomation/ModelInfomation.h"
#include "ModelInfomation/ParameterName.h"

namespace {

using Ravik::CModelInfomation;
using Ravik::COMMAND_KEY;

constexpr const char* kDevices[] = {
    Ravik::kDevIdMDLOstrel,   Ravik::kDevIdOstrel,     Ravik::kDevIdMDLParvane,
    Ravik::kDevIdParvane,     Ravik::kDevIdMDLTamsk,   Ravik::kDevIdTamsk,
    Ravik::kDevIdMDLTamskST,  Ravik::kDevIdTamskST,    Ravik::kDevIdMDLBrevik,
    Ravik::kDevIDBrevik,      Ravik::kDevIdMDLLunde44, Ravik::kDevIDLunde44,
    Ravik::kDevIdMDLCorvel44, Ravik::kDevIDCorvel44,   Ravik::kDevIdMDLCorvel64,
    Ravik::kDevIDCorvel64,    Ravik::kDevIDCorvelPS44, Ravik::kDevIDCorvelPS64,
};

struct LayoutKeys {
  int version;
  COMMAND_KEY write;
  COMMAND_KEY read;
};

constexpr LayoutKeys kLayouts[] = {
    {0, Ravik::WRITE_CUSTOMMEDIA_INFO1, Ravik::READ_CUSTOMMEDIA_INFO1},
    {1, Ravik::WRITE_CUSTOMMEDIA_INFO2, Ravik::READ_CUSTOMMEDIA_INFO2},
    {128, Ravik::WRITE_CUSTOMMEDIA_INFO3, Ravik::READ_CUSTOMMEDIA_INFO3},
};

std::string Quoted(std::string_view text) {
  return '"' + std::string(text) + '"';
}

// Whether the device's family answers the key. To ask for one that it does not ends the process, so
// that a child of this one asks.
bool Answers(const std::string& device, COMMAND_KEY key) {
  std::cout.flush();
  const pid_t child = fork();
  if (child == 0) {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    close(STDERR_FILENO);
    Ravik::CommandInfoVO command;
    _exit(CModelInfomation::GetInstance().ReadCommandInfo(device, key, command) ? 0 : 1);
  }
  int status = 0;
  return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::string Values(const std::string& parameter) {
  std::string rows;
  for (const Ravik::CTableElement& row : Ravik::kConvertTable) {
    if (row.name != parameter) continue;
    rows += "{" + Quoted(row.text) + ", " + std::to_string(row.byteValue) + "}, ";
  }
  return rows;
}

// An array of the rows under a name that rows of equal text share, and an expression for it.
class Arrays {
 public:
  explicit Arrays(std::ostream& out) : out_(out) {}

  std::string Add(const std::string& type, const std::string& rows, std::size_t count) {
    if (count == 0) return "{nullptr, 0}";
    const auto [place, is_new] = names_.try_emplace(type + rows, "kRows");
    if (is_new) {
      place->second += std::to_string(names_.size());
      out_ << "constexpr " << type << ' ' << place->second << "[] = {" << rows << "};\n";
    }
    return "{" + place->second + ", " + std::to_string(count) + "}";
  }

 private:
  std::ostream& out_;
  std::map<std::string, std::string> names_;
};

const char* Kind(const std::string& name, unsigned int type) {
  if (name == Ravik::CUSTOMMEDIA_DEVICEID || name == Ravik::CUSTOMMEDIA_NUMBER ||
      name == Ravik::CUSTOMMEDIA_CMDVERSION) {
    return "Kind::kHead";
  }
  if (type == Ravik::VALUE_TEXT) return "Kind::kText";
  return type == Ravik::VALUE_HEX ? "Kind::kBlock" : "Kind::kNumber";
}

std::string Row(const std::string& name, const Ravik::_t_COMMAND_INFOMATION& field, bool is_read,
                Arrays& arrays) {
  constexpr unsigned int kStays = 0xFF;
  const std::string values = Values(name);
  const auto count = static_cast<std::size_t>(std::count(values.begin(), values.end(), '{'));
  std::ostringstream row;
  row << "    {" << Quoted(name) << ", " << Kind(name, field.valueType) << ", " << field.length
      << ", " << Ravik::CCommandConvertTable::CorrectValue(name, 0) << ", " << std::boolalpha
      << is_read << ", " << (field.defaultValue == kStays) << ", "
      << arrays.Add("NamedValue", values, count) << "},\n";
  return row.str();
}

// The parameters of one layout, in the order of their bytes; reserved bytes are none.
std::string Parameters(const std::string& device, const LayoutKeys& keys, Arrays& arrays) {
  Ravik::CommandInfoVO command;
  Ravik::ReplyInfoVO reply;
  CModelInfomation::GetInstance().ReadCommandInfo(device, keys.write, command);
  CModelInfomation::GetInstance().ReadReplyInfo(device, keys.read, reply);
  std::map<unsigned int, std::string> rows;
  for (const auto& [name, field] : command.valueInfo) {
    if (name.rfind("Reserv", 0) == 0) continue;
    rows[field.position] = Row(name, field, reply.replyInfo.count(name) != 0, arrays);
  }
  std::string text = "\n";
  for (const auto& [position, row] : rows) text += row;
  return arrays.Add("Parameter", text, rows.size());
}

std::string Layouts(const std::string& device, Arrays& arrays) {
  std::string rows;
  std::size_t count = 0;
  for (const LayoutKeys& keys : kLayouts) {
    if (!Answers(device, keys.write)) continue;
    rows += "{" + std::to_string(keys.version) + ", " + Parameters(device, keys, arrays) + "}, ";
    ++count;
  }
  return arrays.Add("Layout", rows, count);
}

// "QM-T84" of "ZARMO QM-T84 Series Comm Driver".
std::string Model(const std::string& device) {
  const std::size_t begin = device.find("QM-");
  return device.substr(begin, device.find(' ', begin) - begin);
}

std::string Joined(const std::vector<std::string>& models) {
  std::string text;
  for (std::size_t i = 0; i < models.size(); ++i) {
    if (i != 0) text += i + 1 == models.size() ? " and " : ", ";
    text += models[i];
  }
  return text;
}

struct FamilyRows {
  std::string form;  // what is the same for all devices of the family
  std::vector<std::string> devices;
};

std::string Form(const std::string& device, Arrays& arrays) {
  Ravik::CommandInfoVO command;
  CModelInfomation::GetInstance().ReadCommandInfo(device, Ravik::READ_CUSTOMMEDIA_INFO1, command);
  const unsigned int code = command.valueInfo.at(Ravik::CUSTOMMEDIA_DEVICEID).defaultValue;
  return std::to_string(code) + ", " +
         (Answers(device, Ravik::READ_FW_VERSION) ? "true" : "false") + ", %, " +
         Layouts(device, arrays);
}

std::string FamilyRow(const FamilyRows& family, Arrays& arrays) {
  std::string names;
  std::vector<std::string> models;
  for (const std::string& device : family.devices) {
    names += Quoted(device) + ", ";
    const std::string model = Model(device);
    if (std::find(models.begin(), models.end(), model) == models.end()) models.push_back(model);
  }
  std::string form = family.form;
  form.replace(form.find('%'), 1, arrays.Add("std::string_view", names, family.devices.size()));
  return "    {" + Quoted(Joined(models)) + ", " + form + "},\n";
}

void Write(std::ostream& out) {
  out << "// Generated from the worker's tables.\n#include \"printer_media/Tables.h\"\n\n"
         "namespace PrinterMedia {\nnamespace {\n\n";
  Arrays arrays(out);
  std::vector<FamilyRows> families;
  for (const char* device : kDevices) {
    const std::string form = Form(device, arrays);
    const auto known = std::find_if(families.begin(), families.end(),
                                    [&](const FamilyRows& family) { return family.form == form; });
    if (known != families.end()) {
      known->devices.emplace_back(device);
    } else {
      families.push_back({form, {device}});
    }
  }
  std::string rows = "\n";
  for (const FamilyRows& family : families) rows += FamilyRow(family, arrays);
  const std::string table = arrays.Add("Family", rows, families.size());
  // The number of a record that is initialised shares its byte with the bit that says so.
  const int last =
      255 + Ravik::CCommandConvertTable::CorrectValue(Ravik::CUSTOMMEDIA_INITIALIZE, 0);
  out << "\n}  // namespace\n\nconst Rows<Family> kFamilies = " << table
      << ";\nconst int kLastRecord = " << last << ";\n\n}  // namespace PrinterMedia\n";
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 2) {
    std::cerr << "usage: write-tables FILE\n";
    return 2;
  }
  std::ofstream out(argv[1]);
  Write(out);
  return out.flush() ? 0 : 1;
}
