#include "ModelInfomation/Summary/CustomMediaSummary.h"

#include "ModelInfomation/Summary/CustomMediaTables.h"

namespace Ravik {

namespace {

// name, {position, length, default, type}
constexpr _t_COMMAND_INFOMATION_STRUCT kCmdValInfoWriteCustomMediaInfo1[] = {
    {CUSTOMMEDIA_NUMBER, {1, 1, 1, VALUE_INTEGER}},
    {CUSTOMMEDIA_CMDVERSION, {2, 1, 0, VALUE_INTEGER}},
    {CUSTOMMEDIA_PLATENGAP, {3, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_PREHEATER, {4, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_PLATEN_HEATER, {5, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_AFTER_HEATER, {6, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_DRYING_TIME, {7, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_DRYING_FEED_AFTER_PRINT, {8, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_BROWER, {9, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_ADSORPTIVITY, {10, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_CARRIAGE_DRAWING_DISTANCE, {11, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_OVERWRITE_FREQUENCY, {12, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLMEDIA_BACK_TENSION, {13, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_MEDIA_FEED_SPEED, {14, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLMEDIA_TENSION_MEASURE, {15, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLING_SETTING, {16, 1, 255, VALUE_INTEGER}},
    {RESERVED, {17, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_REGISTRATION_FLAG, {18, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_CUSTOM_MEDIA_NAME, {19, 32, 255, VALUE_TEXT}},
};

// name, {position, length, form, type}
constexpr _t_REPLY_INFOMATION_STRUCT kReplyValInfoReadCustomMediaInfo1[] = {
    {CUSTOMMEDIA_DEVICEID, {0, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_NUMBER, {2, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_CMDVERSION, {4, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_PLATENGAP, {6, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_PREHEATER, {8, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_PLATEN_HEATER, {10, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_AFTER_HEATER, {12, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_DRYING_TIME, {14, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_DRYING_FEED_AFTER_PRINT, {16, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_BROWER, {18, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_ADSORPTIVITY, {20, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_CARRIAGE_DRAWING_DISTANCE, {22, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_OVERWRITE_FREQUENCY, {24, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLMEDIA_BACK_TENSION, {26, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_MEDIA_FEED_SPEED, {28, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLMEDIA_TENSION_MEASURE, {30, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLING_SETTING, {32, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_REGISTRATION_FLAG, {36, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_CUSTOM_MEDIA_NAME, {38, 64, FORM_TEXT, VALUE_TEXT}},
};

// name, {position, length, default, type}
constexpr _t_COMMAND_INFOMATION_STRUCT kCmdValInfoWriteCustomMediaInfo1_STAD[] = {
    {CUSTOMMEDIA_NUMBER, {1, 1, 1, VALUE_INTEGER}},
    {CUSTOMMEDIA_CMDVERSION, {2, 1, 0, VALUE_INTEGER}},
    {CUSTOMMEDIA_PLATENGAP, {3, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_PREHEATER, {4, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_PLATEN_HEATER, {5, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_AFTER_HEATER, {6, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_DRYING_TIME, {7, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_PRINTE_DRY_FEED, {8, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_BROWER, {9, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_ADSORPTIVITY, {10, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_CARRIAGE_DRAWING_DISTANCE, {11, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_OVERWRITE_FREQUENCY, {12, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_FEEDING_TENSION, {13, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_MEDIA_FEED_SPEED, {14, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLMEDIA_TENSION_MEASURE, {15, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLING_SETTING, {16, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLTENSION_MEASURE, {17, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_BLANK_MEDIA_FEED_SPEED, {18, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_PREVENT_STICKING, {19, 1, 255, VALUE_INTEGER}},
    {RESERVED, {20, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_REGISTRATION_FLAG, {21, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_CUSTOM_MEDIA_NAME, {22, 32, 255, VALUE_TEXT}},
};

// PreHeater and PlatenHeater are written at bytes 4 and 5 but on purpose not read back.
// name, {position, length, form, type}
constexpr _t_REPLY_INFOMATION_STRUCT kReplyValInfoReadCustomMediaInfo1_STAD[] = {
    {CUSTOMMEDIA_DEVICEID, {0, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_NUMBER, {2, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_CMDVERSION, {4, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_PLATENGAP, {6, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_AFTER_HEATER, {12, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_DRYING_TIME, {14, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_PRINTE_DRY_FEED, {16, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_BROWER, {18, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_ADSORPTIVITY, {20, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_CARRIAGE_DRAWING_DISTANCE, {22, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_OVERWRITE_FREQUENCY, {24, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_FEEDING_TENSION, {26, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_MEDIA_FEED_SPEED, {28, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLMEDIA_TENSION_MEASURE, {30, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLING_SETTING, {32, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLTENSION_MEASURE, {34, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_BLANK_MEDIA_FEED_SPEED, {36, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_PREVENT_STICKING, {38, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_REGISTRATION_FLAG, {42, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_CUSTOM_MEDIA_NAME, {44, 64, FORM_TEXT, VALUE_TEXT}},
};

// name, {position, length, default, type}
constexpr _t_COMMAND_INFOMATION_STRUCT kCmdValInfoWriteCustomMediaInfo2[] = {
    {CUSTOMMEDIA_NUMBER, {1, 1, 1, VALUE_INTEGER}},
    {CUSTOMMEDIA_CMDVERSION, {2, 1, 1, VALUE_INTEGER}},
    {CUSTOMMEDIA_PLATENGAP, {3, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_PREHEATER, {4, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_PLATEN_HEATER, {5, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_AFTER_HEATER, {6, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_DRYING_TIME, {7, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_DRYING_FEED_AFTER_PRINT, {8, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_BROWER, {9, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_ADSORPTIVITY, {10, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_CARRIAGE_DRAWING_DISTANCE, {11, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_OVERWRITE_FREQUENCY, {12, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLMEDIA_BACK_TENSION_ATC, {13, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_MEDIA_FEED_SPEED_ATC, {14, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLMEDIA_TENSION_MEASURE, {15, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLING_SETTING, {16, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLMEDIA_BACK_TENSION_MTC, {17, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_MEDIA_FEED_SPEED_MTC, {18, 1, 255, VALUE_INTEGER}},
    {RESERVED, {19, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_REGISTRATION_FLAG, {20, 1, 255, VALUE_INTEGER}},
    {CUSTOMMEDIA_CUSTOM_MEDIA_NAME, {21, 32, 255, VALUE_TEXT}},
};

// name, {position, length, form, type}
constexpr _t_REPLY_INFOMATION_STRUCT kReplyValInfoReadCustomMediaInfo2[] = {
    {CUSTOMMEDIA_DEVICEID, {0, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_NUMBER, {2, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_CMDVERSION, {4, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_PLATENGAP, {6, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_PREHEATER, {8, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_PLATEN_HEATER, {10, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_AFTER_HEATER, {12, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_DRYING_TIME, {14, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_DRYING_FEED_AFTER_PRINT, {16, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_BROWER, {18, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_ADSORPTIVITY, {20, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_CARRIAGE_DRAWING_DISTANCE, {22, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_OVERWRITE_FREQUENCY, {24, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLMEDIA_BACK_TENSION_ATC, {26, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_MEDIA_FEED_SPEED_ATC, {28, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLMEDIA_TENSION_MEASURE, {30, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLING_SETTING, {32, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_ROLLMEDIA_BACK_TENSION_MTC, {34, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_MEDIA_FEED_SPEED_MTC, {36, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_REGISTRATION_FLAG, {40, 2, FORM_TEXT, VALUE_INTEGER}},
    {CUSTOMMEDIA_CUSTOM_MEDIA_NAME, {42, 64, FORM_TEXT, VALUE_TEXT}},
};

// name, {position, length, default, type}
constexpr _t_COMMAND_INFOMATION_STRUCT kCmdValInfoReadCustomMediaInfo2[] = {
    {CUSTOMMEDIA_NUMBER, {1, 1, 1, VALUE_INTEGER}},
    {CUSTOMMEDIA_CMDVERSION, {2, 1, 1, VALUE_INTEGER}},
};

// Without a request's CommandVersion this writes version 0, not 128.
// name, {position, length, default, type}
constexpr _t_COMMAND_INFOMATION_STRUCT kCmdValInfoWriteCustomMediaInfo3[] = {
    {CUSTOMMEDIA_NUMBER, {1, 1, 1, VALUE_INTEGER}},
    {CUSTOMMEDIA_CMDVERSION, {2, 1, 0, VALUE_INTEGER}},
    {CUSTOMMEDIA_SETTING_ALL, {3, 224, 0, VALUE_HEX}},
};

// name, {position, length, default, type}
constexpr _t_COMMAND_INFOMATION_STRUCT kCmdValInfoReadCustomMediaInfo3[] = {
    {CUSTOMMEDIA_NUMBER, {1, 1, 1, VALUE_INTEGER}},
    {CUSTOMMEDIA_CMDVERSION, {2, 1, 128, VALUE_INTEGER}},
};

// name, {position, length, form, type}
constexpr _t_REPLY_INFOMATION_STRUCT kReplyValInfoReadCustomMediaInfo3[] = {
    {CUSTOMMEDIA_DEVICEID, {0, 1, FORM_BINARY, VALUE_INTEGER}},
    {CUSTOMMEDIA_NUMBER, {1, 1, FORM_BINARY, VALUE_INTEGER}},
    {CUSTOMMEDIA_CMDVERSION, {2, 1, FORM_BINARY, VALUE_INTEGER}},
    {CUSTOMMEDIA_SETTING_ALL, {3, 224, FORM_BINARY, VALUE_HEX}},
};

}  // namespace

void CCustomMediaSummary::GetCmdInfoWriteCustomMediaInfo1(unsigned char deviceCode,
                                                          CommandInfoVO& info) {
  FillDeviceCommand(kFmtWriteCustomMediaInfo, kCmdValInfoWriteCustomMediaInfo1, kWriteFlags,
                    deviceCode, info);
}

void CCustomMediaSummary::GetCmdInfoWriteCustomMediaInfo1_STAD(unsigned char deviceCode,
                                                               CommandInfoVO& info) {
  FillDeviceCommand(kFmtWriteCustomMediaInfo, kCmdValInfoWriteCustomMediaInfo1_STAD, kWriteFlags,
                    deviceCode, info);
}

void CCustomMediaSummary::GetCmdInfoWriteCustomMediaInfo2(unsigned char deviceCode,
                                                          CommandInfoVO& info) {
  FillDeviceCommand(kFmtWriteCustomMediaInfo, kCmdValInfoWriteCustomMediaInfo2, kWriteFlags,
                    deviceCode, info);
}

void CCustomMediaSummary::GetCmdInfoWriteCustomMediaInfo3(unsigned char deviceCode,
                                                          CommandInfoVO& info) {
  FillDeviceCommand(kFmtWriteCustomMediaInfo, kCmdValInfoWriteCustomMediaInfo3, kSpooledWriteFlags,
                    deviceCode, info);
}

void CCustomMediaSummary::GetCmdInfoWriteMediaInitialize(unsigned char deviceCode,
                                                         CommandInfoVO& info) {
  FillDeviceCommand(kFmtWriteMediaInitialize, kCmdValInfoWriteMediaInitialize, kWriteFlags,
                    deviceCode, info);
}

void CCustomMediaSummary::GetCmdInfoReadCustomMediaInfo1(unsigned char deviceCode,
                                                         CommandInfoVO& info) {
  FillDeviceCommand(kFmtReadCustomMediaInfo, kCmdValInfoReadCustomMediaInfo1, kReadFlags,
                    deviceCode, info);
}

void CCustomMediaSummary::GetCmdInfoReadCustomMediaInfo2(unsigned char deviceCode,
                                                         CommandInfoVO& info) {
  FillDeviceCommand(kFmtReadCustomMediaInfo, kCmdValInfoReadCustomMediaInfo2, kReadFlags,
                    deviceCode, info);
}

void CCustomMediaSummary::GetCmdInfoReadCustomMediaInfo3(unsigned char deviceCode,
                                                         CommandInfoVO& info) {
  FillDeviceCommand(kFmtReadCustomMediaInfo, kCmdValInfoReadCustomMediaInfo3, kReadFlags,
                    deviceCode, info);
}

void CCustomMediaSummary::GetCmdInfoReadCustomMediaName(CommandInfoVO& info) {
  FillCommand(kCmdEx, kFmtReadCustomMediaName, kCmdValInfoReadCustomMediaName, kReadFlags, info);
}

void CCustomMediaSummary::GetReplyInfoReadCustomMediaInfo1(ReplyInfoVO& info) {
  FillRecordReply(kReplyValInfoReadCustomMediaInfo1, info);
}

void CCustomMediaSummary::GetReplyInfoReadCustomMediaInfo1_STAD(ReplyInfoVO& info) {
  FillRecordReply(kReplyValInfoReadCustomMediaInfo1_STAD, info);
}

void CCustomMediaSummary::GetReplyInfoReadCustomMediaInfo2(ReplyInfoVO& info) {
  FillRecordReply(kReplyValInfoReadCustomMediaInfo2, info);
}

void CCustomMediaSummary::GetReplyInfoReadCustomMediaInfo3(ReplyInfoVO& info) {
  FillRecordReply(kReplyValInfoReadCustomMediaInfo3, info);
}

void CCustomMediaSummary::GetReplyInfoReadCustomMediaName(ReplyInfoVO& info) {
  FillReply(kHeaderReadCustomMediaName, kReplyValInfoReadCustomMediaName, info);
}

}  // namespace Ravik
