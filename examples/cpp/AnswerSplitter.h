// Where an answer of the worker ends.
#ifndef EXAMPLES_CPP_ANSWERSPLITTER_H_
#define EXAMPLES_CPP_ANSWERSPLITTER_H_

#include <cstddef>
#include <optional>
#include <string>

// Cuts what the worker writes into answers, which follow each other without separators. Works on
// bytes, since a read may end within a character.
class AnswerSplitter {
 public:
  // Throws ProtocolError when an answer becomes longer than any of the worker's.
  void Feed(const char* bytes, std::size_t size);

  // The next whole answer, or nothing until there is more of it. Throws ProtocolError when what was
  // fed does not begin as an answer does.
  std::optional<std::string> Take();

  bool IsEmpty() const { return bytes_.empty(); }

 private:
  bool FindEnd();
  bool FindEndOfText();
  // Takes note of the byte; true when the answer ends with it.
  bool Ends(char byte);

  std::string bytes_;
  std::size_t next_ = 0;  // where the search for the end goes on
  int depth_ = 0;
  bool in_string_ = false;
  bool is_escaped_ = false;
};

#endif  // EXAMPLES_CPP_ANSWERSPLITTER_H_
