// Replies of printers, for every family and every operation.
//
// Input: the reply's bytes; from the end, family, operation, and whether the transport filled the
// reply up with zeros.
#include <map>
#include <sstream>

#include "GantryCore/PrinterReply.h"
#include "ModelInfomation/ModelInfomation.h"
#include "fuzz/Families.h"
#include "fuzz/Fuzz.h"
#include "fuzz/PrescribedEnds.h"

namespace {

using Ravik::COMMAND_KEY;

// How many values of each name the body between the header and the last byte holds whole.
std::map<std::string, std::size_t> Present(const Ravik::ReplyInfoVO& info,
                                           const Ravik::CommandVO& reply) {
  const std::string bytes(reply.bytes().begin(), reply.bytes().end());
  const std::string header(info.header.begin(), info.header.end());
  const std::size_t body_size = bytes.size() - 1 - bytes.find(header) - header.size();
  std::map<std::string, std::size_t> present;
  for (const auto& [name, field] : info.replyInfo) {
    if (field.position + field.length <= body_size) ++present[name];
  }
  return present;
}

void Analyse(const std::string& device_name, COMMAND_KEY key, const Ravik::CommandVO& reply) {
  Ravik::ParameterMapVO values;
  auto error = Ravik::ERROR_NONE;
  if (!Ravik::CPrinterReply::AnalysisCommandReply(device_name, key, reply, values, error)) {
    FUZZ_CHECK(error == Ravik::ERROR_COMMAND || error == Ravik::ERROR_NO_BODY);
    FUZZ_CHECK(values.size() == 0);
    return;
  }
  Ravik::ReplyInfoVO info;
  FUZZ_CHECK(Ravik::CModelInfomation::GetInstance().ReadReplyInfo(device_name, key, info));
  std::map<std::string, std::size_t> counts;
  for (const auto& [name, found] : values) counts[name] = found.size();
  FUZZ_CHECK(counts == Present(info, reply));
  std::ostringstream text;
  text << values;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  const std::string device_name = input.PickValueInArray(fuzz::kDeviceNames);
  const COMMAND_KEY key = input.PickValueInArray(fuzz::kCommandKeys);
  const bool filled = input.ConsumeBool();
  auto reply = input.ConsumeRemainingBytes<unsigned char>();
  if (filled) reply.resize(512);
  Completes([&] { Analyse(device_name, key, {reply.data(), static_cast<int>(reply.size())}); });
  return 0;
}
