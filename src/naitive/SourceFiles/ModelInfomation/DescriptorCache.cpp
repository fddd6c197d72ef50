#include "ModelInfomation/DescriptorCache.h"

#include <utility>

#include "ModelInfomation/ModelInfomation.h"

namespace Ravik {

namespace {

// The cached descriptor, which is read first if it is absent.
template <typename Entry, typename Read>
const auto* Cached(std::deque<Entry>& entries, const std::string& deviceName, COMMAND_KEY key,
                   Read read) {
  const decltype(Entry::descriptor)* descriptor = nullptr;
  for (const Entry& entry : entries) {
    if (entry.key == key && entry.deviceName == deviceName) descriptor = &entry.descriptor;
  }
  if (descriptor != nullptr) return descriptor;
  Entry entry{key, deviceName, {}};
  if (read(entry.descriptor)) descriptor = &entries.emplace_back(std::move(entry)).descriptor;
  return descriptor;
}

}  // namespace

DescriptorCache& DescriptorCache::GetInstance() {
  static DescriptorCache instance;
  return instance;
}

const CommandInfoVO* DescriptorCache::CommandInfo(const std::string& deviceName, COMMAND_KEY key) {
  return Cached(commands_, deviceName, key, [&](CommandInfoVO& info) {
    return CModelInfomation::GetInstance().ReadCommandInfo(deviceName, key, info);
  });
}

const ReplyInfoVO* DescriptorCache::ReplyInfo(const std::string& deviceName, COMMAND_KEY key) {
  return Cached(replies_, deviceName, key, [&](ReplyInfoVO& info) {
    return CModelInfomation::GetInstance().ReadReplyInfo(deviceName, key, info);
  });
}

}  // namespace Ravik
