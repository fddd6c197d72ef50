// The permanent memory of the printer, kept in a file.
#include "virtual_printer/StateFile.h"

#include <picojson.h>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "util/WholeFile.h"

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

bool ReadJson(const std::string& text, picojson::value& state) {
  // picojson reads objects inside objects by recursion, however deep.
  const auto objects = std::count(text.begin(), text.end(), '{');
  if (objects > static_cast<std::ptrdiff_t>(1 + kSlotCount)) return false;
  try {
    return picojson::parse(state, text).empty();
  } catch (const std::overflow_error&) {  // a number beyond a double's range
    return false;
  }
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

}  // namespace

std::string LoadState(const std::string& path, const Family& family, RecordTable& records) {
  Ravik::RemoveLeftovers(path);
  std::error_code failure;
  const std::string text = Ravik::ReadWholeFile(path, failure);
  if (failure == std::errc::no_such_file_or_directory) return "";
  if (failure == std::errc::invalid_argument) return "not a state file";
  if (failure) return "open: " + failure.message();
  picojson::value state;
  if (!ReadJson(text, state)) return "not a state file";
  return FromJson(state, family, records);
}

std::string SaveState(const std::string& path, const Family& family, const RecordTable& records) {
  try {
    Ravik::ReplaceWholeFile(path, ToJson(family, records));
    return "";
  } catch (const std::system_error& error) {
    return error.what();
  }
}

}  // namespace VirtualPrinter
