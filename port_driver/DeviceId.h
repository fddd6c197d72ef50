// IEEE 1284 device identifier: what a printer says of itself, on any cable and in its MIB.
#ifndef PORT_DRIVER_DEVICEID_H_
#define PORT_DRIVER_DEVICEID_H_

#include <string>
#include <string_view>

namespace ZIOP {

// The standard's form is a length of two bytes, big-endian and counting itself, and then
// KEY:VALUE; any number of times. A text is empty where the identifier does not give it. No text
// begins or ends with a blank, holds two in a row, or holds a control byte; bytes from 80 on stand
// as they were sent.
struct DeviceId {
  std::string manufacturer;  // MFG, MANUFACTURER
  std::string model;         // MDL, MODEL
  std::string commandSet;    // CMD, COMMAND SET
  std::string serial;        // SN, SERN, SERIALNUMBER
  std::string description;   // DES, DESCRIPTION

  // Reads identifiers as printers really send them, of any length and cut off anywhere: the length
  // may be little-endian, wrong or not there at all and is passed over; keys in any case; line ends
  // do for semicolons, other control bytes for blanks; the first value that is not empty counts.
  static DeviceId Parse(std::string_view bytes);
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_DEVICEID_H_
