#include "printer_media/Completion.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <string_view>
#include <utility>

#include "printer_media/Catalogue.h"
#include "printer_media/Host.h"
#include "printer_media/Text.h"

namespace PrinterMedia {

namespace {

constexpr unsigned int kLongest = 5;  // seconds

// What the words of a command are, one letter each: p a printer, r a record, i a record or All, f a
// file, c a printer or a file, s settings.
struct Row {
  const char* command;
  const char* words;
  const char* options;  // apart from those of all commands
};

constexpr Row kRows[] = {
    {"list", "", ""},        {"status", "p", ""},       {"firmware", "p", ""},
    {"names", "p", ""},      {"get", "pr", "--layout"}, {"set", "prs", "--layout --yes"},
    {"init", "pi", "--yes"}, {"save", "pf", "--yes"},   {"restore", "pf", "--yes"},
    {"compare", "cc", ""},   {"doctor", "", ""},
};

constexpr char kOptions[] = " --json --answer-time --help";
constexpr std::string_view kLayoutIs = "--layout=";

bool Begins(const std::string& text, const std::string& begin) {
  return text.size() >= begin.size() && SameButCase(text.substr(0, begin.size()), begin);
}

// The words of the line that are no options, and what the option before the cursor wants.
struct Line {
  explicit Line(std::vector<std::string> words) {
    if (!words.empty()) words.erase(words.begin());  // the program
    if (words.empty()) return;
    current = words.back();
    words.pop_back();
    for (const std::string& word : words) {
      if (is_rest || !IsOption(word)) plain.push_back(word);
    }
  }

  // Also for the value of the option before it.
  bool IsOption(const std::string& word) {
    if (!option.empty()) {
      if (option == "--layout") layout = word;
      option.clear();
      return true;
    }
    if (word == "--layout" || word == "--answer-time") option = word;
    if (word.rfind(kLayoutIs, 0) == 0) layout = word.substr(kLayoutIs.size());
    is_rest = word == "--";
    return !word.empty() && word[0] == '-';
  }

  std::string current;
  std::string option;  // that the word at the cursor belongs to
  std::string layout = "0";
  std::vector<std::string> plain;
  bool is_rest = false;  // a word -- stands before the cursor: no options come behind it
};

class Completer {
 public:
  explicit Completer(Line line) : line_(std::move(line)), host_(std::chrono::seconds(1)) {}

  std::vector<std::string> Candidates() {
    if (line_.option == "--layout") return {"0", "1", "128"};
    if (!line_.option.empty()) return {};
    if (line_.plain.empty()) return Commands();
    const Row* const row = std::find_if(std::begin(kRows), std::end(kRows),
                                        [&](const Row& r) { return line_.plain[0] == r.command; });
    if (row == std::end(kRows)) return {};
    if (!line_.is_rest && !line_.current.empty() && line_.current[0] == '-') {
      return Words(row->options + std::string(kOptions));
    }
    const std::string words = row->words;
    const std::size_t place = line_.plain.size() - 1;
    if (place < words.size()) return WithoutOptions(Of(words[place]));
    return !words.empty() && words.back() == 's' ? Settings() : std::vector<std::string>();
  }

 private:
  static std::vector<std::string> Words(const std::string& text) { return ShellWords(text); }

  std::vector<std::string> Commands() const {
    if (!line_.current.empty() && line_.current[0] == '-') {
      return Words("--version" + std::string(kOptions));
    }
    std::vector<std::string> names;
    for (const Row& row : kRows) names.emplace_back(row.command);
    return names;
  }

  // Leaves out what would be taken for an option.
  std::vector<std::string> WithoutOptions(std::vector<std::string> names) const {
    const auto is_option = [](const std::string& name) { return !name.empty() && name[0] == '-'; };
    if (line_.is_rest) return names;
    names.erase(std::remove_if(names.begin(), names.end(), is_option), names.end());
    return names;
  }

  std::vector<std::string> Of(char kind) {
    switch (kind) {
      case 'p':
      case 'c':
        return Printers();
      case 'r':
        return Records();
      case 'i': {
        std::vector<std::string> records = Records();
        records.emplace_back("All");
        return records;
      }
      case 's':
        return Settings();
      default:
        return {};
    }
  }

  std::vector<std::string> Printers() {
    std::vector<std::string> names;
    for (const Printer& printer : host_.Printers()) names.push_back(printer.name);
    return names;
  }

  // Registered ones by their names; the numbers when one is begun.
  std::vector<std::string> Records() {
    const bool is_number = !line_.current.empty() &&
                           line_.current.find_first_not_of("0123456789") == std::string::npos;
    std::vector<std::string> records;
    for (const RecordName& record : host_.Names(host_.Find(line_.plain[1]))) {
      if (is_number) records.push_back(std::to_string(record.number));
      if (!is_number && record.is_registered) records.push_back(record.name);
    }
    return records;
  }

  const Layout* CurrentLayout() {
    const Family& family = *host_.Find(line_.plain[1]).family;
    for (const Layout& layout : family.layouts) {
      if (std::to_string(layout.version) == line_.layout) return &layout;
    }
    return nullptr;
  }

  std::vector<std::string> Settings() {
    const Layout* const layout = CurrentLayout();
    if (layout == nullptr) return {};
    const std::size_t equals = line_.current.find('=');
    std::vector<std::string> candidates;
    for (const Parameter* parameter : SettingsOf(*layout)) {
      const std::string name = std::string(parameter->name) + '=';
      const bool is_given =
          std::any_of(line_.plain.begin(), line_.plain.end(),
                      [&](const std::string& word) { return Begins(word, name); });
      if (equals == std::string::npos && !is_given) candidates.push_back(name);
      if (equals == std::string::npos || !Begins(line_.current, name)) continue;
      for (const std::string& value : ValueNames(*parameter)) candidates.push_back(name + value);
    }
    return candidates;
  }

  Line line_;
  Host host_;
};

// Splits a line as a shell does, without anything being replaced in it.
class Splitter {
 public:
  std::vector<std::string> Split(const std::string& line) {
    for (const char character : line) Add(character);
    words_.push_back(word_);
    return words_;
  }

 private:
  void Add(char character) {
    if (is_escaped_) {
      word_ += character;
      is_escaped_ = false;
    } else if (character == '\\' && quote_ != '\'') {
      is_escaped_ = is_begun_ = true;
    } else if (quote_ != '\0') {
      AddQuoted(character);
    } else if (character == '"' || character == '\'') {
      quote_ = character;
      is_begun_ = true;
    } else if (character == ' ' || character == '\t') {
      End();
    } else {
      word_ += character;
      is_begun_ = true;
    }
  }

  void AddQuoted(char character) {
    if (character == quote_) {
      quote_ = '\0';
    } else {
      word_ += character;
    }
  }

  void End() {
    if (is_begun_) words_.push_back(word_);
    word_.clear();
    is_begun_ = false;
  }

  std::vector<std::string> words_;
  std::string word_;
  char quote_ = '\0';
  bool is_escaped_ = false;
  bool is_begun_ = false;
};

}  // namespace

std::vector<std::string> ShellWords(const std::string& line) {
  return Splitter().Split(line);
}

void PrintCompletions(const std::string& line) {
  alarm(kLongest);
  const Line words(ShellWords(line));
  std::cout << words.current << '\n';
  try {
    for (const std::string& candidate : Completer(words).Candidates()) {
      const bool is_fit = Begins(candidate, words.current) && !candidate.empty() &&
                          candidate.find('\n') == std::string::npos &&
                          candidate == Printable(candidate);
      if (is_fit) std::cout << candidate << '\n';
    }
  } catch (const std::exception&) {
    // Whoever presses the completion key is not to be told of a printer that does not answer.
    return;
  }
}

}  // namespace PrinterMedia
