#include "ModelInfomation/Summary/CustomMediaSummaryTypeD.h"

#include "ModelInfomation/Summary/CustomMediaTables.h"

namespace Ravik {

namespace {

// name, {position, length, default, type}
constexpr _t_COMMAND_INFOMATION_STRUCT kCmdValInfoWriteCustomMediaInfo1[] = {
    {CUSTOMMEDIA_NUMBER, {1, 1, 1, VALUE_INTEGER}},
    {CUSTOMMEDIA_CMDVERSION, {2, 1, 0, VALUE_INTEGER}},
    {CUSTOMMEDIA_REFERENCE_MEDIA_TYPE, {3, 1, 0, VALUE_INTEGER}},
    {CUSTOMMEDIA_PLATENGAP_D, {4, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_PAPER_THICKNESS, {5, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_PAPER_FEED_ADJUSTMENT_VALUE, {6, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_DRYING_TIME, {7, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_ADSORPTIVITY_D, {8, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_MEDIA_TENSIOM_D, {9, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_REMOVESKEW, {10, 1, 255, VALUE_INTEGER}},
    {"Reserv1", {11, 1, 255, VALUE_INTEGER}},
    {"Reserv2", {12, 1, 255, VALUE_INTEGER}},
    {"Reserv3", {13, 1, 255, VALUE_INTEGER}},
    {"Reserv4", {14, 1, 255, VALUE_INTEGER}},
    {"Reserv5", {15, 1, 255, VALUE_INTEGER}},
    {"Reserv6", {16, 1, 255, VALUE_INTEGER}},
    {"Reserv7", {17, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_REGISTRATION_FLAG, {18, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_CUSTOM_MEDIA_NAME, {19, 32, 255, VALUE_TEXT}},
};

// The reserved bytes 11 to 17 are not read back.
// name, {position, length, form, type}
constexpr _t_REPLY_INFOMATION_STRUCT kReplyValInfoReadCustomMediaInfo1[] = {
    {CUSTOMMEDIA_DEVICEID, {0, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_NUMBER, {2, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_CMDVERSION, {4, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_REFERENCE_MEDIA_TYPE, {6, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_PLATENGAP_D, {8, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_PAPER_THICKNESS, {10, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_PAPER_FEED_ADJUSTMENT_VALUE, {12, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_DRYING_TIME, {14, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_ADSORPTIVITY_D, {16, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_MEDIA_TENSIOM_D, {18, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_REMOVESKEW, {20, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_REGISTRATION_FLAG, {36, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_CUSTOM_MEDIA_NAME, {38, 64, FORM_TEXT, VALUE_TEXT}},
};

}  // namespace

void CCustomMediaSummaryTypeD::GetCmdInfoWriteCustomMediaInfo1(unsigned char deviceCode,
                                                               CommandInfoVO& info) {
  FillDeviceCommand(kFmtWriteCustomMediaInfo, kCmdValInfoWriteCustomMediaInfo1, kWriteFlags,
                    deviceCode, info);
}

void CCustomMediaSummaryTypeD::GetCmdInfoWriteMediaInitialize(unsigned char deviceCode,
                                                              CommandInfoVO& info) {
  FillDeviceCommand(kFmtWriteMediaInitialize, kCmdValInfoWriteMediaInitialize, kWriteFlags,
                    deviceCode, info);
}

void CCustomMediaSummaryTypeD::GetCmdInfoReadCustomMediaInfo1(unsigned char deviceCode,
                                                              CommandInfoVO& info) {
  FillDeviceCommand(kFmtReadCustomMediaInfo, kCmdValInfoReadCustomMediaInfo1, kReadFlags,
                    deviceCode, info);
}

void CCustomMediaSummaryTypeD::GetCmdInfoReadCustomMediaName(CommandInfoVO& info) {
  FillCommand(kCmdEx, kFmtReadCustomMediaName, kCmdValInfoReadCustomMediaName, kReadFlags, info);
}

void CCustomMediaSummaryTypeD::GetReplyInfoReadCustomMediaInfo1(ReplyInfoVO& info) {
  FillRecordReply(kReplyValInfoReadCustomMediaInfo1, info);
}

void CCustomMediaSummaryTypeD::GetReplyInfoReadCustomMediaName(ReplyInfoVO& info) {
  FillReply(kHeaderReadCustomMediaName, kReplyValInfoReadCustomMediaName, info);
}

}  // namespace Ravik
