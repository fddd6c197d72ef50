#include "ModelInfomation/ReplyInfoVO.h"

#include "Library/RavikCommon/RavikAssert.h"

namespace Ravik {

namespace {

void Replace(std::vector<unsigned char>& target, const unsigned char* bytes, unsigned int length) {
  target.clear();
  if (bytes != nullptr) target.assign(bytes, bytes + length);
}

}  // namespace

void ReplyInfoVO::SetAll(const unsigned char* headerBytes, unsigned int headerLength,
                         const unsigned char* notAvailableBytes, unsigned int notAvailableLength,
                         const unsigned char* auxiliaryBytes, unsigned int auxiliaryLength,
                         const _t_REPLY_INFOMATION_STRUCT* table, unsigned int rowCount) {
  Replace(header, headerBytes, headerLength);
  Replace(notAvailable, notAvailableBytes, notAvailableLength);
  Replace(auxiliary, auxiliaryBytes, auxiliaryLength);
  if (table == nullptr) {
    ReportAssertion("false", "SetAll",
                    "src/naitive/SourceFiles/ModelInfomation/Summary/../ReplyInfoVO", 67);
  }
  for (unsigned int i = 0; i < rowCount; ++i) SetReplyInfo(table[i].name, table[i].info);
}

void ReplyInfoVO::SetReplyInfo(const std::string& name, const _t_REPLY_INFOMATION& info) {
  replyInfo.insert({name, info});
}

}  // namespace Ravik
