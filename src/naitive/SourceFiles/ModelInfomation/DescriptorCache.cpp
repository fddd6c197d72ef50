#include "ModelInfomation/DescriptorCache.h"

#include <utility>

#include "ModelInfomation/ModelInfomation.h"

namespace Ravik {

namespace {

// The cached descriptor, which is read first if it is absent.
template <typename Descriptor, typename Read>
const Descriptor* Cached(std::map<std::string, Descriptor>& cached, const std::string& deviceName,
                         Read read) {
  const auto known = cached.find(deviceName);
  if (known != cached.end()) return &known->second;
  Descriptor descriptor;
  if (!read(descriptor)) return nullptr;
  return &cached.emplace(deviceName, std::move(descriptor)).first->second;
}

}  // namespace

DescriptorCache& DescriptorCache::GetInstance() {
  static DescriptorCache instance;
  return instance;
}

const CommandInfoVO* DescriptorCache::CommandInfo(const std::string& deviceName, COMMAND_KEY key) {
  return Cached(commands_[key], deviceName, [&](CommandInfoVO& info) {
    return CModelInfomation::GetInstance().ReadCommandInfo(deviceName, key, info);
  });
}

const ReplyInfoVO* DescriptorCache::ReplyInfo(const std::string& deviceName, COMMAND_KEY key) {
  return Cached(replies_[key], deviceName, [&](ReplyInfoVO& info) {
    return CModelInfomation::GetInstance().ReadReplyInfo(deviceName, key, info);
  });
}

}  // namespace Ravik
