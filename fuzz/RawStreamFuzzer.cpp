// Byte streams that reach the virtual printer's data port.
//
// Input: the stream; from the end, where it is split.
#include <algorithm>
#include <sstream>

#include "fuzz/Fuzz.h"
#include "virtual_printer/Printer.h"
#include "virtual_printer/RemoteStream.h"

namespace {

using VirtualPrinter::Bytes;

std::vector<Bytes> InPieces(const Bytes& stream, const std::vector<std::size_t>& sizes) {
  VirtualPrinter::RemoteStream reader;
  std::vector<Bytes> commands;
  std::size_t at = 0;
  for (std::size_t i = 0; at < stream.size(); ++i) {
    const std::size_t size = std::min(sizes[i % sizes.size()], stream.size() - at);
    // A copy in its exact size, so that the sanitizer sees its end.
    const Bytes piece(stream.begin() + static_cast<std::ptrdiff_t>(at),
                      stream.begin() + static_cast<std::ptrdiff_t>(at + size));
    for (Bytes& command : reader.Feed(piece.data(), piece.size())) commands.push_back(command);
    at += size;
  }
  return commands;
}

void Execute(const std::string& model, const std::vector<Bytes>& commands) {
  VirtualPrinter::Faults faults;
  std::ostringstream text;
  VirtualPrinter::Trace trace(&text);
  const auto& family = *VirtualPrinter::FindFamily(model);
  VirtualPrinter::Printer printer({model, "VP00000001", "1.00", ""},
                                  VirtualPrinter::FactoryRecords(family), faults, trace);
  for (const Bytes& command : commands) {
    const Bytes reply = printer.Execute(VirtualPrinter::Port::kRaw, command);
    FUZZ_CHECK(VirtualPrinter::ParseCommand(command).kind == VirtualPrinter::CommandKind::kStatus ||
               reply.back() == ';');
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  const auto models = VirtualPrinter::DeviceNames();
  const std::string model(models[input.ConsumeIntegralInRange<std::size_t>(0, models.size() - 1)]);
  const auto size_of_piece = [&input] { return input.ConsumeIntegralInRange<std::size_t>(1, 40); };
  const std::vector<std::size_t> sizes = {size_of_piece(), size_of_piece(), size_of_piece()};
  const auto stream = input.ConsumeRemainingBytes<std::uint8_t>();
  const auto commands = InPieces(stream, {std::max<std::size_t>(stream.size(), 1)});
  FUZZ_CHECK(InPieces(stream, sizes) == commands);
  Execute(model, commands);
  return 0;
}
