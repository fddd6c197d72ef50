// From what a printer says of itself to its device name.
#include "port_driver/SupportedModels.h"

#include <algorithm>

#include "port_driver/PlainText.h"

namespace ZIOP {
namespace {

constexpr std::string_view kDriverEnding = " Comm Driver";

// Takes the word and the blank behind it off the front of text, in any letter case; false if it
// does not stand there.
bool TakeWord(std::string_view word, std::string_view& text) {
  if (word.empty() || text.size() <= word.size() || text[word.size()] != ' ' ||
      LowerCase(text.substr(0, word.size())) != LowerCase(word)) {
    return false;
  }
  text.remove_prefix(word.size() + 1);
  return true;
}

bool EndsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

// Whether text is name with a word or more in front.
bool Names(std::string_view text, std::string_view name) {
  return EndsWith(text, name) && text.size() > name.size() &&
         text[text.size() - name.size() - 1] == ' ';
}

std::string_view WithoutDriver(std::string_view name) {
  return name.substr(0, name.size() - (EndsWith(name, kDriverEnding) ? kDriverEnding.size() : 0));
}

const std::string& FirstKnown(const std::string& first, const std::string& second) {
  return first.empty() ? second : first;
}

}  // namespace

std::string SupportedModels::Match(std::string_view maker, std::string_view text) const {
  const std::string whole = Tidy(text);
  std::string maker_name = Tidy(maker);
  if (maker_name.empty()) {
    maker_name = whole.substr(0, whole.find(' '));
  }
  std::string_view bare = whole;
  do {
    if (names_.count(bare) != 0) {
      return std::string(bare);
    }
  } while (TakeWord(maker_name, bare));
  for (const std::string& name : names_) {
    std::string_view rest = name;
    if (TakeWord(maker_name, rest) && rest == bare) {
      return name;
    }
  }
  return {};
}

std::string SupportedModels::NameOf(const FoundPrinter& printer, const DeviceId& id) const {
  const std::string& maker = FirstKnown(printer.maker, id.manufacturer);
  const std::string& id_maker = FirstKnown(id.manufacturer, printer.maker);
  const struct {
    const std::string& maker;
    const std::string& text;
  } kCandidates[] = {{maker, printer.model},
                     {id_maker, id.model},
                     {maker, printer.description},
                     {id_maker, id.description}};
  for (const auto& candidate : kCandidates) {
    std::string name = Match(candidate.maker, candidate.text);
    if (!name.empty()) {
      return name;
    }
  }
  return {};
}

bool IsSameModel(std::string_view left, std::string_view right) {
  const std::string_view first = WithoutDriver(left);
  const std::string_view second = WithoutDriver(right);
  return first == second || Names(first, second) || Names(second, first);
}

}  // namespace ZIOP
