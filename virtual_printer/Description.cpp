// Commands and replies in words.
#include "virtual_printer/Description.h"

#include <algorithm>
#include <string_view>

#include "util/TraceLine.h"
#include "virtual_printer/MediaRecord.h"

namespace VirtualPrinter {
namespace {

constexpr std::size_t kDataShown = 32;

std::string Quoted(const Bytes& bytes, std::size_t from) {
  const auto* begin = reinterpret_cast<const char*>(bytes.data());
  std::string_view text(begin + from, bytes.size() - from);
  text = text.substr(0, text.find_last_not_of(' ') + 1);
  return Ravik::TraceQuoted(text);
}

std::string Data(const Bytes& bytes, std::size_t from) {
  const std::size_t shown = std::min(bytes.size() - from, kDataShown);
  const std::size_t more = bytes.size() - from - shown;
  return ToHex(bytes.data() + from, shown) + (more > 0 ? '+' + std::to_string(more) : "");
}

// What leaves the stored setting as it is, a write leaves out.
std::string Settings(const Family& family, const Layout& layout, const Bytes& record,
                     bool is_write) {
  std::string text;
  const std::size_t flag = kRecordHeadSize + layout.settings;
  for (std::size_t i = 0; i < layout.settings; ++i) {
    const std::uint8_t value = record[kRecordHeadSize + i];
    if (is_write && value == kLeaveAsIs) continue;
    text += std::string(" ") + SettingName(family, layout, i) + '=' + ToHex(value);
  }
  if (!is_write || record[flag] != kLeaveAsIs) text += " flag=" + ToHex(record[flag]);
  if (record.size() > flag + 1) text += " media_name=" + Quoted(record, flag + 1);
  return text;
}

// A record as it is asked for, written or told, from its device code on.
std::string Record(const Family& family, const Bytes& record, bool is_write) {
  if (record.size() < kRecordHeadSize) return " data=" + Data(record, 0);
  std::string text = " device=" + ToHex(record[0]) + " slot=" + std::to_string(record[1]) +
                     " layout=" + std::to_string(record[2]);
  if (record.size() == kRecordHeadSize) return text;
  const Layout* layout = FindLayout(family, record[2]);
  if (layout != nullptr && !layout->IsBlock() && FitsLayout(*layout, record.size())) {
    return text + Settings(family, *layout, record, is_write);
  }
  return text + " data=" + Data(record, kRecordHeadSize);
}

std::string Names(const Bytes& list) {
  constexpr std::size_t kEntrySize = 2 + kNameSize;
  std::string text;
  for (std::size_t at = 0; at + kEntrySize <= list.size(); at += kEntrySize) {
    const Bytes entry(list.begin() + static_cast<std::ptrdiff_t>(at),
                      list.begin() + static_cast<std::ptrdiff_t>(at + kEntrySize));
    text += " slot=" + std::to_string(entry[1]) + " flag=" + ToHex(entry[0]) +
            " media_name=" + Quoted(entry, 2);
  }
  return text;
}

bool EndsInRefusal(const Bytes& reply) {
  const Bytes refusal = ToBytes("NA;");
  return reply.size() >= refusal.size() &&
         std::equal(refusal.rbegin(), refusal.rend(), reply.rbegin());
}

// What stands between the header and the semicolon, as bytes where it is hexadecimal digits.
Bytes Body(const Command& command, const Bytes& reply) {
  const std::size_t head = command.reply_header.size();
  if (reply.size() <= head) return {};
  const Bytes body(reply.begin() + static_cast<std::ptrdiff_t>(head), reply.end() - 1);
  const auto raw = FromHex({reinterpret_cast<const char*>(body.data()), body.size()});
  return raw ? *raw : body;
}

}  // namespace

std::string DescribeCommand(const Family& family, const Bytes& bytes) {
  const Command command = ParseCommand(bytes);
  if (command.kind == CommandKind::kUnknown) return "unknown";
  std::string text(command.operation);
  text += " name=" + std::string(bytes.begin(), bytes.begin() + 2) +
          " length=" + std::to_string(bytes.size() - kCommandHeadSize);
  if (!command.format.empty()) text += " format=" + ToHex(command.format);
  if (command.kind == CommandKind::kReadRecord || command.kind == CommandKind::kWriteRecord) {
    return text + Record(family, command.variable, true);
  }
  return command.variable.empty() ? text : text + " variable=" + ToHex(command.variable);
}

std::string DescribeReply(const Family& family, const Command& command, const Bytes& reply) {
  if (EndsInRefusal(reply)) return "refused";
  std::string text(command.operation);
  switch (command.kind) {
    case CommandKind::kReadRecord:
      return text + Record(family, Body(command, reply), false);
    case CommandKind::kReadNames:
      return text + Names(Body(command, reply));
    case CommandKind::kStatus:
      return text;
    default:
      return text + ' ' + Quoted(Body(command, reply), 0);
  }
}

}  // namespace VirtualPrinter
