// What a write changes in a record, and the write itself.
#ifndef PRINTER_MEDIA_CHANGES_H_
#define PRINTER_MEDIA_CHANGES_H_

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "printer_media/Host.h"

namespace PrinterMedia {

// The settings in which a record is to become different, in the order of the layout.
class Changes {
 public:
  // A setting that the printer does not report counts as different.
  Changes(const Layout& layout, const Settings& current, const Settings& wanted);

  bool IsNone() const { return rows_.empty(); }

  // A table of the settings, what they are and what they become.
  std::string Text() const;
  nlohmann::ordered_json Json() const;

 private:
  struct Row {
    std::string name;
    std::optional<Value> old_value;
    Value new_value;
  };
  std::vector<Row> rows_;
};

// "PlatenGap is 1.5, not 2.5" for each setting that is reported otherwise than it is wanted.
std::vector<std::string> Differences(const Layout& layout, const Settings& now,
                                     const Settings& wanted);

// Writes the wanted settings over the current ones, which are those in the printer. Settings that a
// write would change without being told stay as they are. Throws Failure that names the settings
// which the printer does not hold afterwards.
void WriteRecord(Host& host, const Printer& printer, int number, const Layout& layout,
                 const Settings& current, const Settings& wanted);

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_CHANGES_H_
