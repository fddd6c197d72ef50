// Walks the tags of an XML property list. Wherever libplist's reading of a construct is looser than
// XML's, the construct is refused, so that both see the same tags.
#include <algorithm>
#include <vector>

#include "corefoundation/ListBudget.h"
#include "corefoundation/PropertyListCheck.h"

namespace CoreFoundation {

namespace {

constexpr std::string_view kWhitespace = " \t\r\n";

bool StartsWith(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

bool IsContainer(std::string_view name) {
  return name == "dict" || name == "array";
}

bool IsLeaf(std::string_view name) {
  constexpr std::string_view kLeaves[] = {"key",  "string", "integer", "real",
                                          "data", "date",   "true",    "false"};
  return std::find(std::begin(kLeaves), std::end(kLeaves), name) != std::end(kLeaves);
}

bool HasOddQuotes(std::string_view text) {
  return std::count(text.begin(), text.end(), '"') % 2 != 0;
}

class Walk {
 public:
  explicit Walk(std::string_view text) : rest_(text), budget_(text.size()) {}

  bool Whole() {
    while (true) {
      SkipWhitespace();
      if (rest_.empty()) return open_.empty() && roots_ == 1;
      if (rest_.front() != '<' || !TakeMarkup()) return false;
    }
  }

 private:
  struct Element {
    std::string_view name;
    std::size_t children;
  };

  void SkipWhitespace() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(kWhitespace), rest_.size()));
  }

  // Takes everything up to and including end, and gives what is before it.
  bool TakeUpTo(std::string_view end, std::string_view& taken) {
    const std::size_t at = rest_.find(end);
    if (at == std::string_view::npos) return false;
    taken = rest_.substr(0, at);
    rest_.remove_prefix(at + end.size());
    return true;
  }

  bool TakeMarkup() {
    std::string_view taken;
    if (StartsWith(rest_, "<!--")) return TakeComment();
    if (StartsWith(rest_, "<?")) {
      rest_.remove_prefix(1);
      return TakeUpTo("?>", taken) && !HasOddQuotes(taken);
    }
    if (StartsWith(rest_, "<!DOCTYPE")) {
      rest_.remove_prefix(1);
      return TakeUpTo(">", taken) && !HasOddQuotes(taken) &&
             taken.find_first_of("[<") == std::string_view::npos;
    }
    return TakeTag();
  }

  bool TakeComment() {
    std::string_view taken;
    rest_.remove_prefix(4);
    return TakeUpTo("-->", taken);
  }

  bool TakeTag() {
    std::string_view tag;
    rest_.remove_prefix(1);
    if (!TakeUpTo(">", tag)) return false;
    if (HasOddQuotes(tag) || tag.find_first_of("<'") != std::string_view::npos) return false;
    const bool empty = !tag.empty() && tag.back() == '/';
    if (empty) tag.remove_suffix(1);
    const std::string_view name = tag.substr(0, tag.find_first_of(kWhitespace));
    if (!StartsWith(name, "/")) return Open(name, empty);
    const bool bare = tag.find_first_not_of(kWhitespace, name.size()) == std::string_view::npos;
    return bare && !empty && Close(name.substr(1));
  }

  bool Open(std::string_view name, bool empty) {
    if (name == "plist") {
      if (empty || !open_.empty() || roots_ != 0) return false;
      open_.push_back({name, 0});
      return true;
    }
    if (!Count(name)) return false;
    if (IsContainer(name)) {
      if (!budget_.TakeObject(0)) return false;
      if (empty) return true;
      open_.push_back({name, 0});
      return open_.size() - (open_.front().name == "plist" ? 1 : 0) <= kMaximumListDepth;
    }
    if (!IsLeaf(name)) return false;
    const std::string_view content = rest_;
    if (!empty && !TakeContent(name)) return false;
    return TakeText(content.substr(0, content.size() - rest_.size()));
  }

  // A child of the innermost open element, or the root.
  bool Count(std::string_view name) {
    if (open_.empty() || open_.back().name == "plist") return name != "key" && ++roots_ == 1;
    Element& parent = open_.back();
    const bool key_expected = parent.name == "dict" && parent.children % 2 == 0;
    ++parent.children;
    return (name == "key") == key_expected;
  }

  bool Close(std::string_view name) {
    if (open_.empty() || open_.back().name != name) return false;
    if (name == "plist" && roots_ == 0) return false;
    const std::size_t children = open_.back().children;
    if (name == "dict" && (children % 2 != 0 || !budget_.TakeKeys(children / 2))) return false;
    open_.pop_back();
    return true;
  }

  // What a leaf's content costs.
  bool TakeText(std::string_view text) {
    const auto references = std::count(text.begin(), text.end(), '&');
    return budget_.TakeObject(text.size()) &&
           budget_.TakeReferences(static_cast<std::uint64_t>(references), text.size());
  }

  // The text, comments and CDATA sections of a leaf, and its closing tag.
  bool TakeContent(std::string_view name) {
    std::string_view taken;
    while (TakeUpTo("<", taken)) {
      if (StartsWith(rest_, "!--")) {
        rest_.remove_prefix(3);
        if (!TakeUpTo("-->", taken)) return false;
      } else if (StartsWith(rest_, "![CDATA[")) {
        rest_.remove_prefix(8);
        if (!TakeUpTo("]]>", taken)) return false;
      } else {
        if (!StartsWith(rest_, "/") || !TakeUpTo(">", taken)) return false;
        taken.remove_prefix(1);
        return StartsWith(taken, name) &&
               taken.find_first_not_of(kWhitespace, name.size()) == std::string_view::npos;
      }
    }
    return false;
  }

  std::string_view rest_;
  ListBudget budget_;
  std::vector<Element> open_;
  std::size_t roots_ = 0;
};

}  // namespace

bool IsSoundXMLList(std::string_view text) {
  return text.find('\0') == std::string_view::npos && Walk(text).Whole();
}

}  // namespace CoreFoundation
