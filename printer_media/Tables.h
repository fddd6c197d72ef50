// What is known of every printer family: device names, layouts of the records, parameters and their
// values. The rows are generated from the worker's own tables when the program is built.
#ifndef PRINTER_MEDIA_TABLES_H_
#define PRINTER_MEDIA_TABLES_H_

#include <cstddef>
#include <string_view>

namespace PrinterMedia {

// Rows of a constant table.
template <typename Row>
struct Rows {
  const Row* first;
  std::size_t count;

  constexpr const Row* begin() const { return first; }
  constexpr const Row* end() const { return first + count; }
};

// A value that has a name, and the byte that printers use for it.
struct NamedValue {
  std::string_view name;
  int byte;
};

enum class Kind {
  kHead,    // DeviceID, CustomMediaNo and CommandVersion, which every record begins with
  kNumber,  // one byte
  kText,    // up to `length` bytes
  kBlock,   // `length` bytes, written as hexadecimal digits
};

struct Parameter {
  std::string_view name;
  Kind kind;
  int length;    // bytes
  int offset;    // added to the printer's byte to get the number that people use
  bool is_read;  // whether the printer's reply tells it
  bool stays;    // whether a write that leaves it out leaves it as it is
  Rows<NamedValue> values;
};

struct Layout {
  int version;
  Rows<Parameter> parameters;  // in the order of the record's bytes
};

// Printers whose records have the same form.
struct Family {
  std::string_view models;  // as a text for people, such as "QM-T84 and QM-T64"
  int device_code;
  bool tells_firmware;
  Rows<std::string_view> devices;  // device names
  Rows<Layout> layouts;
};

extern const Rows<Family> kFamilies;

// Number of the last record that a printer may have; the first is 1.
extern const int kLastRecord;

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_TABLES_H_
