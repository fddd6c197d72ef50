// A printer as one of the searches found it.
#ifndef PORT_DRIVER_FOUNDPRINTER_H_
#define PORT_DRIVER_FOUNDPRINTER_H_

#include <string>

namespace ZIOP {

// A text is empty where the source does not know it. All but uri are as the source gives them,
// unchecked: bytes in any encoding, of any length; PrinterCatalogue makes of them what is listed.
//
// A search appends what it found, in any order, and ends within its deadline; it does not throw,
// and reports a failure with ReportLine.
struct FoundPrinter {
  std::string name;         // as people know the printer, such as its queue's name
  std::string maker;        // manufacturer, when the source keeps it apart from the model
  std::string model;        // model or driver name, with or without the maker's
  std::string description;  // free text that may hold a model name
  std::string uri;          // device URI that the driver opens: socket://HOST... or file://PATH
  std::string serial;       // serial number
  std::string uuid;         // UUID of the device, not of a queue, in any spelling
  std::string address;      // numeric IP address, without zone; empty for a local device
  std::string deviceId;     // IEEE 1284 device identifier, for what the above do not tell
  std::string asked;        // entry of Addresses by which a search on the network found it
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_FOUNDPRINTER_H_
