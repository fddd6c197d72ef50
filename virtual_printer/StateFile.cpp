// The permanent memory of the printer, kept in a file.
#include "virtual_printer/StateFile.h"

#include <picojson.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <optional>

#include "virtual_printer/FileDescriptor.h"

namespace VirtualPrinter {
namespace {

picojson::value SlotToJson(const MediaRecord& record) {
  picojson::object slot;
  slot["settings"] = picojson::value(ToHex(record.settings));
  slot["flag"] = picojson::value(static_cast<double>(record.flag));
  slot["name"] = picojson::value(ToHex(record.name.data(), record.name.size()));
  slot["block"] = picojson::value(ToHex(record.block.data(), record.block.size()));
  return picojson::value(slot);
}

std::string ToJson(const Family& family, const RecordTable& records) {
  picojson::array slots;
  for (const auto& record : records) slots.push_back(SlotToJson(record));
  picojson::object state;
  state["family"] = picojson::value(std::string(family.name));
  state["slots"] = picojson::value(slots);
  return picojson::value(state).serialize(true);
}

// The bytes of a hexadecimal member, if there are exactly `size` of them.
std::optional<Bytes> HexMember(const picojson::value& object, const char* key, std::size_t size) {
  const picojson::value& member = object.get(key);
  if (!member.is<std::string>()) return std::nullopt;
  auto bytes = FromHex(member.get<std::string>());
  return bytes && bytes->size() == size ? bytes : std::nullopt;
}

bool SlotFromJson(const picojson::value& slot, MediaRecord& record) {
  if (!slot.is<picojson::object>()) return false;
  const auto settings = HexMember(slot, "settings", record.settings.size());
  const auto name = HexMember(slot, "name", record.name.size());
  const auto block = HexMember(slot, "block", record.block.size());
  const picojson::value& flag = slot.get("flag");
  if (!settings || !name || !block || !flag.is<double>()) return false;
  const double number = flag.get<double>();
  if (!(number >= 0 && number <= 255)) return false;
  record.settings = *settings;
  record.flag = static_cast<std::uint8_t>(number);
  std::copy(name->begin(), name->end(), record.name.begin());
  std::copy(block->begin(), block->end(), record.block.begin());
  return true;
}

std::string FromJson(const picojson::value& state, const Family& family, RecordTable& records) {
  if (!state.is<picojson::object>()) return "not a state file";
  const picojson::value& name = state.get("family");
  const picojson::value& slots = state.get("slots");
  if (!name.is<std::string>() || !slots.is<picojson::array>()) return "not a state file";
  if (name.get<std::string>() != family.name) {
    return "the state of a " + name.get<std::string>() + ", not of a " + family.name;
  }
  const auto& array = slots.get<picojson::array>();
  RecordTable read = FactoryRecords(family);
  if (array.size() != read.size()) return "not a state file";
  for (std::size_t i = 0; i < read.size(); ++i) {
    if (!SlotFromJson(array[i], read[i])) return "slot " + std::to_string(i + 1) + " is damaged";
  }
  records = read;
  return "";
}

std::string Failure(const char* call) {
  return std::string(call) + ": " + std::strerror(errno);
}

std::string WriteDurably(int file, const std::string& text) {
  for (std::size_t written = 0; written < text.size();) {
    const ssize_t size = write(file, text.data() + written, text.size() - written);
    if (size < 0 && errno != EINTR) return Failure("write");
    if (size > 0) written += static_cast<std::size_t>(size);
  }
  return fsync(file) == 0 ? "" : Failure("fsync");
}

}  // namespace

std::string LoadState(const std::string& path, const Family& family, RecordTable& records) {
  if (access(path.c_str(), F_OK) != 0 && errno == ENOENT) return "";
  std::ifstream file(path);
  if (!file) return Failure("open");
  picojson::value state;
  const std::string error = picojson::parse(state, file);
  return error.empty() ? FromJson(state, family, records) : error;
}

std::string SaveState(const std::string& path, const Family& family, const RecordTable& records) {
  std::string temporary = path + ".XXXXXX";
  const FileDescriptor file(mkstemp(temporary.data()));
  if (!file) return Failure("mkstemp");
  std::string error = WriteDurably(file.Get(), ToJson(family, records));
  if (error.empty() && std::rename(temporary.c_str(), path.c_str()) != 0) error = Failure("rename");
  if (!error.empty()) unlink(temporary.c_str());
  return error;
}

}  // namespace VirtualPrinter
