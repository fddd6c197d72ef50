// What people see: tables, questions and the progress of long work.
#ifndef PRINTER_MEDIA_TERMINAL_H_
#define PRINTER_MEDIA_TERMINAL_H_

#include <string>
#include <vector>

#include "printer_media/Failure.h"

namespace PrinterMedia {

using TableRow = std::vector<std::string>;

// Columns side by side, each as wide as it needs; the first row has the columns' names. Texts are
// bytes.
std::string Table(const std::vector<TableRow>& rows);

// Throws Failure unless the change is agreed to beforehand or somebody can be asked.
void RequireConsent(bool is_agreed);

// Asks on standard error, for an answer from standard input that is typed then, unless it is agreed
// to. Throws Failure if the answer is not yes, and Interrupted.
void Confirm(const std::string& question, bool is_agreed);

// A bar on standard error, when that is a terminal; it goes when the work is over.
class Progress {
 public:
  explicit Progress(std::string title);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void Show(int done, int all);

  // Takes the bar away until it is shown again, for a message in its place.
  void Hide();

 private:
  std::string title_;
  bool is_shown_ = false;
};

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_TERMINAL_H_
