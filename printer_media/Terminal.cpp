#include "printer_media/Terminal.h"

#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <utility>

#include "printer_media/Interruption.h"
#include "printer_media/Text.h"

namespace PrinterMedia {

namespace {

constexpr int kLongestBar = 30;  // characters
constexpr int kShortestBar = 5;
constexpr std::size_t kLongestAnswer = 100;

// One byte of standard input; nothing at its end.
bool ReadByte(char& byte) {
  for (;;) {
    fd_set input;
    FD_ZERO(&input);
    FD_SET(STDIN_FILENO, &input);
    Wait(STDIN_FILENO, &input, nullptr, Clock::now() + std::chrono::hours(1));
    if (FD_ISSET(STDIN_FILENO, &input)) return read(STDIN_FILENO, &byte, 1) == 1;
  }
}

std::string ReadLine() {
  std::string line;
  for (char byte = 0; line.size() < kLongestAnswer && ReadByte(byte) && byte != '\n';) {
    line += byte;
  }
  return line;
}

std::vector<std::size_t> Widths(const std::vector<TableRow>& rows) {
  std::vector<std::size_t> widths(rows[0].size());
  for (const TableRow& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], Width(row[i]));
  }
  return widths;
}

// Characters of a line of the terminal that standard error is.
int Columns() {
  winsize size{};
  const bool is_told = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return is_told ? size.ws_col : 80;
}

std::string Bar(int length, int done, int all) {
  const auto filled = static_cast<std::size_t>(std::clamp(done, 0, all) * length / all);
  return " [" + std::string(filled, '#') +
         std::string(static_cast<std::size_t>(length) - filled, '.') + ']';
}

}  // namespace

std::string Table(const std::vector<TableRow>& rows) {
  std::vector<TableRow> printable = rows;
  for (TableRow& row : printable) {
    for (std::string& text : row) text = OnOneLine(Printable(text));
  }
  const std::vector<std::size_t> widths = Widths(printable);
  std::string table;
  for (const TableRow& row : printable) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      line += row[i] + std::string(widths[i] - Width(row[i]) + 2, ' ');
    }
    table += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
  }
  return table;
}

void RequireConsent(bool is_agreed) {
  if (is_agreed || isatty(STDIN_FILENO) != 0) return;
  throw Failure(Exit::kNotConfirmed, "nobody can be asked: standard input is no terminal",
                "Give --yes to do it without a question.");
}

void Confirm(const std::string& question, bool is_agreed) {
  if (is_agreed) return;
  RequireConsent(is_agreed);
  tcflush(STDIN_FILENO, TCIFLUSH);  // what was typed before the question is no answer to it
  const bool is_long = question.find('\n') != std::string::npos;
  std::cerr << Printable(question) << (is_long ? "\n" : " ") << "[y/N] " << std::flush;
  const std::string answer = ReadLine();
  if (SameButCase(answer, "y") || SameButCase(answer, "yes")) return;
  throw Failure(Exit::kNotConfirmed, "nothing was changed");
}

Progress::Progress(std::string title) : title_(std::move(title)) {}

Progress::~Progress() {
  Hide();
}

void Progress::Hide() {
  if (is_shown_) std::cerr << "\r\033[K" << std::flush;
  is_shown_ = false;
}

void Progress::Show(int done, int all) {
  if (isatty(STDERR_FILENO) == 0 || all <= 0) return;
  is_shown_ = true;
  const std::string title = OnOneLine(Printable(title_));
  const std::string count = ' ' + std::to_string(done) + '/' + std::to_string(all);
  // A line that the terminal breaks could not be written over.
  const int columns = Columns() - 1;
  const int room = columns - static_cast<int>(Width(title) + count.size() + Bar(0, 0, 1).size());
  std::string line = title + count;
  if (room >= kShortestBar) {
    line = title + Bar(std::min(room, kLongestBar), done, all) + count;
  } else if (room < 0) {
    line = count.substr(1, static_cast<std::size_t>(std::max(columns, 0)));
  }
  std::cerr << '\r' << line << "\033[K" << std::flush;
}

}  // namespace PrinterMedia
