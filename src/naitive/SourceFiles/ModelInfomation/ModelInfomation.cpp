#include "ModelInfomation/ModelInfomation.h"

#include "ModelInfomation/ReadClass.h"

namespace Ravik {

CModelInfomation& CModelInfomation::GetInstance() {
  static CModelInfomation instance;
  return instance;
}

IReadModelInfomation* CModelInfomation::Reader() {
  if (!reader_) reader_.reset(GetModelInfomationObject());
  return reader_.get();
}

bool CModelInfomation::ReadCommandInfo(const std::string& deviceName, COMMAND_KEY key,
                                       CommandInfoVO& info) {
  IReadModelInfomation* const reader = Reader();
  return reader != nullptr && reader->ReadCommandInfo(deviceName, key, info);
}

bool CModelInfomation::ReadReplyInfo(const std::string& deviceName, COMMAND_KEY key,
                                     ReplyInfoVO& info) {
  IReadModelInfomation* const reader = Reader();
  return reader != nullptr && reader->ReadReplyInfo(deviceName, key, info);
}

bool CModelInfomation::ReadStatusReplyInfo(const std::string& deviceName,
                                           std::vector<ReplyInfoVO>& infos) {
  IReadModelInfomation* const reader = Reader();
  return reader != nullptr && reader->ReadStatusReplyInfo(deviceName, infos);
}

}  // namespace Ravik
