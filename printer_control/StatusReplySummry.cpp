#include "printer_control/StatusReplySummry.h"

#include "ModelInfomation/ParameterName.h"

namespace Ravik {

namespace {

struct StatusRow {
  unsigned char field_id;
  _t_REPLY_INFOMATION_STRUCT value;
};

// field id, {name, {position, length, form, type}}
constexpr StatusRow kStatusRows[] = {
    {0x01, {STATUSREPLY_STATUSCODE, {0, 1, FORM_BINARY, VALUE_INTEGER}}},
    {0x02, {STATUSREPLY_ERRORCODE, {0, 1, FORM_BINARY, VALUE_INTEGER}}},
    {0x04, {STATUSREPLY_WARNINGCODE, {0, 1, FORM_BINARY, VALUE_INTEGER}}},
    {0x1F, {STATUSREPLY_SERIALNUMBER, {0, 10, FORM_BINARY, VALUE_TEXT}}},
};

}  // namespace

void CStatusReplySummry::GetStatusReplyInfo(std::vector<ReplyInfoVO>& infos) {
  for (const StatusRow& row : kStatusRows) {
    infos.emplace_back();
    infos.back().SetAll(&row.field_id, 1, nullptr, 0, nullptr, 0, &row.value, 1);
  }
}

}  // namespace Ravik
