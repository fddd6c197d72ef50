#include "ModelInfomation/Summary/CustomMediaSummaryTypeI.h"

#include "ModelInfomation/Summary/CustomMediaTables.h"

namespace Ravik {

namespace {

constexpr unsigned char kCmdVi[] = {'V', 'I'};
constexpr unsigned char kFmtFWVersion[] = {0x01};
constexpr unsigned char kHeaderFWVersion[] = {'V', 'I', ':', '0', '0'};

// name, {position, length, default, type}
constexpr _t_COMMAND_INFOMATION_STRUCT kCmdValInfoWriteCustomMediaInfo1[] = {
    {CUSTOMMEDIA_NUMBER, {1, 1, 1, VALUE_INTEGER}},
    {CUSTOMMEDIA_CMDVERSION, {2, 1, 0, VALUE_INTEGER}},
    {CUSTOMMEDIA_REFERENCE_MEDIA_TYPE, {3, 1, 0, VALUE_INTEGER}},
    {CUSTOMMEDIA_PLATENGAP_I, {4, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_PAPER_THICKNESS, {5, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_PAPER_FEED_ADJUSTMENT_VALUE, {6, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_DRYING_TIME, {7, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_ADSORPTIVITY_I, {8, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLL_BACK_TENSION_I, {9, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_REMOVESKEW, {10, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_PAPER_FEED_STABILIZER, {11, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_FEED_LATERAL_ADJUSTMENT, {12, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_USE_PAPER_EJECT_ROLLER, {13, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLL_PAPER_MARGIN, {14, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_MARGIN_PER_PAGE, {15, 1, 255, VALUE_INTEGER}},
    {"Reserv1", {16, 1, 255, VALUE_INTEGER}},
    {"Reserv2", {17, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_REGISTRATION_FLAG, {18, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_CUSTOM_MEDIA_NAME, {19, 32, 255, VALUE_TEXT}},
};

// The reserved bytes 16 and 17 are not read back.
// name, {position, length, form, type}
constexpr _t_REPLY_INFOMATION_STRUCT kReplyValInfoReadCustomMediaInfo1[] = {
    {CUSTOMMEDIA_DEVICEID, {0, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_NUMBER, {2, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_CMDVERSION, {4, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_REFERENCE_MEDIA_TYPE, {6, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_PLATENGAP_I, {8, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_PAPER_THICKNESS, {10, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_PAPER_FEED_ADJUSTMENT_VALUE, {12, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_DRYING_TIME, {14, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_ADSORPTIVITY_I, {16, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLL_BACK_TENSION_I, {18, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_REMOVESKEW, {20, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_PAPER_FEED_STABILIZER, {22, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_FEED_LATERAL_ADJUSTMENT, {24, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_USE_PAPER_EJECT_ROLLER, {26, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLL_PAPER_MARGIN, {28, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_MARGIN_PER_PAGE, {30, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_REGISTRATION_FLAG, {36, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_CUSTOM_MEDIA_NAME, {38, 64, FORM_TEXT, VALUE_TEXT}},
};

// name, {position, length, default, type}
constexpr _t_COMMAND_INFOMATION_STRUCT kCmdValInfoFWVersion[] = {
    {FIRMWARE_VERSION, {0, 1, 0, VALUE_INTEGER}},
};

// name, {position, length, form, type}
constexpr _t_REPLY_INFOMATION_STRUCT kReplyValInfoFWVersion[] = {
    {FIRMWARE_VERSION, {3, 4, FORM_BINARY, VALUE_TEXT}},
};

}  // namespace

void CCustomMediaSummaryTypeI::GetCmdInfoWriteCustomMediaInfo1(unsigned char deviceCode,
                                                               CommandInfoVO& info) {
  FillDeviceCommand(kFmtWriteCustomMediaInfo, kCmdValInfoWriteCustomMediaInfo1, kWriteFlags,
                    deviceCode, info);
}

void CCustomMediaSummaryTypeI::GetCmdInfoWriteMediaInitialize(unsigned char deviceCode,
                                                              CommandInfoVO& info) {
  FillDeviceCommand(kFmtWriteMediaInitialize, kCmdValInfoWriteMediaInitialize, kWriteFlags,
                    deviceCode, info);
}

void CCustomMediaSummaryTypeI::GetCmdInfoReadCustomMediaInfo1(unsigned char deviceCode,
                                                              CommandInfoVO& info) {
  FillDeviceCommand(kFmtReadCustomMediaInfo, kCmdValInfoReadCustomMediaInfo1, kReadFlags,
                    deviceCode, info);
}

void CCustomMediaSummaryTypeI::GetCmdInfoReadCustomMediaName(CommandInfoVO& info) {
  FillCommand(kCmdEx, kFmtReadCustomMediaName, kCmdValInfoReadCustomMediaName, kReadFlags, info);
}

void CCustomMediaSummaryTypeI::GetCmdInfoFWVersion(CommandInfoVO& info) {
  FillCommand(kCmdVi, kFmtFWVersion, kCmdValInfoFWVersion, kReadFlags, info);
}

void CCustomMediaSummaryTypeI::GetReplyInfoReadCustomMediaInfo1(ReplyInfoVO& info) {
  FillRecordReply(kReplyValInfoReadCustomMediaInfo1, info);
}

void CCustomMediaSummaryTypeI::GetReplyInfoReadCustomMediaName(ReplyInfoVO& info) {
  FillReply(kHeaderReadCustomMediaName, kReplyValInfoReadCustomMediaName, info);
}

void CCustomMediaSummaryTypeI::GetReplyInfoFWVersion(ReplyInfoVO& info) {
  FillReply(kHeaderFWVersion, kReplyValInfoFWVersion, info);
}

}  // namespace Ravik
