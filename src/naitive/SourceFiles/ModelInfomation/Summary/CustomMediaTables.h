// What the custom media commands of all record generations have in common; for the summaries.
#ifndef MODELINFOMATION_SUMMARY_CUSTOMMEDIATABLES_H_
#define MODELINFOMATION_SUMMARY_CUSTOMMEDIATABLES_H_

#include <cstddef>

#include "ModelInfomation/CommandInfoVO.h"
#include "ModelInfomation/ParameterName.h"
#include "ModelInfomation/ReplyInfoVO.h"

namespace Ravik {

inline constexpr unsigned char kCmdEx[] = {'E', 'X'};

// The first byte is 00 for a write and 01 for a read, the last one the sub-command: 1B a record,
// 1D the list of names, 1E initialise.
inline constexpr unsigned char kFmtWriteCustomMediaInfo[] = {0x00, 0x00, 0x00, 0x00, 0x1B};
inline constexpr unsigned char kFmtWriteMediaInitialize[] = {0x00, 0x00, 0x00, 0x00, 0x1E};
inline constexpr unsigned char kFmtReadCustomMediaInfo[] = {0x01, 0x00, 0x00, 0x00, 0x1B};
inline constexpr unsigned char kFmtReadCustomMediaName[] = {0x01, 0x00, 0x00, 0x00, 0x1D};

// The command's name and the sub-command in eight hexadecimal digits.
inline constexpr unsigned char kHeaderReadCustomMediaInfo[] = {'E', 'X', ':', '0', '0', '0',
                                                               '0', '0', '0', '1', 'B'};
inline constexpr unsigned char kHeaderReadCustomMediaName[] = {'E', 'X', ':', '0', '0', '0',
                                                               '0', '0', '0', '1', 'D'};
inline constexpr unsigned char kReplyNA[] = {'N', 'A', ';'};

// name, {position, length, default, type}
inline constexpr _t_COMMAND_INFOMATION_STRUCT kCmdValInfoWriteMediaInitialize[] = {
    {CUSTOMMEDIA_INITIALIZE, {1, 1, 0, VALUE_INTEGER}},
};

// name, {position, length, default, type}
inline constexpr _t_COMMAND_INFOMATION_STRUCT kCmdValInfoReadCustomMediaInfo1[] = {
    {CUSTOMMEDIA_NUMBER, {1, 1, 1, VALUE_INTEGER}},
    {CUSTOMMEDIA_CMDVERSION, {2, 1, 0, VALUE_INTEGER}},
};

// name, {position, length, default, type}
inline constexpr _t_COMMAND_INFOMATION_STRUCT kCmdValInfoReadCustomMediaName[] = {
    {CUSTOMMEDIA_NUMBER, {0, 1, 1, VALUE_INTEGER}},
    {RESERVED, {1, 1, 0, VALUE_INTEGER}},
};

// name, {position, length, form, type}
inline constexpr _t_REPLY_INFOMATION_STRUCT kReplyValInfoReadCustomMediaName[] = {
    {CUSTOMMEDIA_REGISTRATION_FLAG, {0, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_REGISTRATION_FLAG, {68, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_REGISTRATION_FLAG, {136, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_NUMBER, {2, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_NUMBER, {70, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_NUMBER, {138, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_CUSTOM_MEDIA_NAME, {4, 64, FORM_TEXT, VALUE_TEXT}},
    {CUSTOMMEDIA_CUSTOM_MEDIA_NAME, {72, 64, FORM_TEXT, VALUE_TEXT}},
    {CUSTOMMEDIA_CUSTOM_MEDIA_NAME, {140, 64, FORM_TEXT, VALUE_TEXT}},
};

// How a command travels, as CommandInfoVO::SetAll takes it.
struct CommandFlags {
  bool remote;
  bool sv;
  bool bgjc;
};

inline constexpr CommandFlags kReadFlags = {true, false, true};
inline constexpr CommandFlags kWriteFlags = {true, true, true};
inline constexpr CommandFlags kSpooledWriteFlags = {true, true, false};

template <std::size_t CommandSize, std::size_t FormatSize, std::size_t Rows>
void FillCommand(const unsigned char (&command)[CommandSize],
                 const unsigned char (&format)[FormatSize],
                 const _t_COMMAND_INFOMATION_STRUCT (&table)[Rows], const CommandFlags& flags,
                 CommandInfoVO& info) {
  info.SetAll(command, CommandSize, format, FormatSize, table, Rows, flags.remote, flags.sv,
              flags.bgjc);
}

// A custom media command that names the printer family by a device code in byte 0.
template <std::size_t FormatSize, std::size_t Rows>
void FillDeviceCommand(const unsigned char (&format)[FormatSize],
                       const _t_COMMAND_INFOMATION_STRUCT (&table)[Rows], const CommandFlags& flags,
                       unsigned char deviceCode, CommandInfoVO& info) {
  FillCommand(kCmdEx, format, table, flags, info);
  info.SetCmdValueInfo(CUSTOMMEDIA_DEVICEID, {0, 1, deviceCode, VALUE_INTEGER});
}

// A reply that has no form for a refusal.
template <std::size_t HeaderSize, std::size_t Rows>
void FillReply(const unsigned char (&header)[HeaderSize],
               const _t_REPLY_INFOMATION_STRUCT (&table)[Rows], ReplyInfoVO& info) {
  info.SetAll(header, HeaderSize, nullptr, 0, nullptr, 0, table, Rows);
}

template <std::size_t Rows>
void FillRecordReply(const _t_REPLY_INFOMATION_STRUCT (&table)[Rows], ReplyInfoVO& info) {
  info.SetAll(kHeaderReadCustomMediaInfo, sizeof kHeaderReadCustomMediaInfo, kReplyNA,
              sizeof kReplyNA, nullptr, 0, table, Rows);
}

}  // namespace Ravik

#endif  // MODELINFOMATION_SUMMARY_CUSTOMMEDIATABLES_H_
