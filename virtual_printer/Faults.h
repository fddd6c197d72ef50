// Faults on demand: which of them strike, and how often.
#ifndef VIRTUAL_PRINTER_FAULTS_H_
#define VIRTUAL_PRINTER_FAULTS_H_

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "virtual_printer/Bytes.h"
#include "virtual_printer/StandardObjects.h"

namespace VirtualPrinter {

enum class FaultKind {
  kDrop,
  kLoss,
  kDelay,
  kTruncate,
  kOversize,
  kGarbage,
  kWrongId,
  kWrongOid,
  kDuplicate,
  kNa,
  kForget,
  kStatusText,
  kReset,
  kLack,
};
constexpr std::size_t kFaultKinds = 14;

// An oversized answer carries a reply padded to this many bytes.
constexpr std::size_t kOversizedReply = 600;

class Faults {
 public:
  // Adds a fault as it is written on the command line, KIND or KIND=VALUE. Answers an empty text,
  // or what is wrong with it.
  std::string Add(std::string_view text);

  // Whether the request that has just arrived is lost (drop, loss).
  bool LosesRequest();

  // Whether the fault strikes now; one with a number of times is used up by that.
  bool Strikes(FaultKind kind);

  std::chrono::milliseconds Delay() const;

  // Whether the printer does without the object.
  bool Lacks(StandardObject object) const { return lacking_.count(object) != 0; }

  // Makes which requests are lost depend on text too, so that printers with different ones lose
  // different requests.
  void Seed(std::string_view text);

  // Replaces the whole status text.
  const std::optional<Bytes>& StatusText() const { return status_text_; }

  // Pads a reply that shall be oversized.
  void Pad(Bytes& reply);

  // Turns an answer to garbage and cuts it short, as asked for.
  void Spoil(Bytes& answer);

  // A table of the faults for a help text, one a line.
  static std::string Help();

 private:
  std::uint32_t NextRandom();

  struct Fault {
    bool active = false;
    std::uint32_t value = 0;  // as the kind reads it
    std::optional<std::uint32_t> times_left;
  };
  Fault& At(FaultKind kind) { return faults_[static_cast<std::size_t>(kind)]; }

  std::array<Fault, kFaultKinds> faults_;
  std::optional<Bytes> status_text_;
  std::set<StandardObject> lacking_;
  std::uint32_t random_state_ = 1;
};

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_FAULTS_H_
