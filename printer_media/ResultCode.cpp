#include "printer_media/ResultCode.h"

#include <algorithm>
#include <iterator>

namespace PrinterMedia {

const char kReadRefused[] =
    "It may not have this record or layout (printer-media names shows its records), or be of "
    "another model than printer-media list shows for it.";

namespace {

struct Row {
  int code;
  const char* read;   // what the code says of a read, and what to do
  const char* write;  // and of a write
  const char* read_advice;
  const char* write_advice;
};

constexpr char kReachable[] =
    "Is it switched on and connected? printer-media doctor says which printers answer.";
constexpr char kModel[] =
    "Is the printer of the model that printer-media list shows for it? Another one is to be listed "
    "under its own device name.";

constexpr Row kRows[] = {
    {-1, "the printer refused", "the printer did not take the write", kReadRefused,
     "It refuses, or does not answer: is it switched on, connected and ready? printer-media status "
     "tells."},
    {-4, "the printer could not be opened", "the printer could not be opened",
     "Its device or address may be gone, in use, or not allowed for this user. printer-media "
     "doctor "
     "says more.",
     "Its device or address may be gone, in use, or not allowed for this user. printer-media "
     "doctor "
     "says more. Nothing was written."},
    {-5, "the printer could not be closed in order", "the printer could not be closed in order",
     "Try again.", "The write may have been done: read the record to see."},
    {-6, "no answer from the printer", "reading back did not confirm the write", kReachable,
     "The printer took the bytes, and either holds something else now or has fallen silent: read "
     "the record to see."},
    {-7, "the printer answered with something else", "the printer answered with something else",
     kModel, kModel},
    {-8, "the printer answered with its auxiliary marker instead of data",
     "the printer answered with its auxiliary marker instead of data",
     "Try again when it is ready: printer-media status.",
     "Try again when it is ready: printer-media status."},
};

}  // namespace

Failure CodeFailure(int code, Operation operation, const std::string& what) {
  const std::string number = " (result code " + std::to_string(code) + ")";
  const Row* const row = std::find_if(std::begin(kRows), std::end(kRows),
                                      [code](const Row& r) { return r.code == code; });
  if (row == std::end(kRows) || operation == Operation::kList) {
    return Failure::OfCode(code, what + ": the worker does not say why" + number,
                           "printer-media doctor checks the worker.");
  }
  const bool is_write = operation == Operation::kWrite;
  return Failure::OfCode(code, what + ": " + (is_write ? row->write : row->read) + number,
                         is_write ? row->write_advice : row->read_advice);
}

}  // namespace PrinterMedia
