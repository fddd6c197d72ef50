// What the supported-printer dictionary says of searches.
#ifndef PORT_DRIVER_DISCOVERYSETTINGS_H_
#define PORT_DRIVER_DISCOVERYSETTINGS_H_

#include <chrono>
#include <string>
#include <vector>

#include "corefoundation/Foundation.h"

namespace ZIOP {

struct DiscoverySettings {
  bool network = false;
  bool queues = false;
  bool local = false;
  std::vector<std::string> addresses;       // for the network: hosts and broadcast addresses
  std::chrono::milliseconds timeout{3000};  // for all searches together, 100 to 60000
  std::vector<std::string> models;          // device names that may be listed

  bool IsSearchWanted() const { return network || queues || local; }

  // Reads "Discovery" and "SupportedPrinters" of information. What is absent is as above; so is
  // what has the wrong class, with one line on standard error.
  static DiscoverySettings Read(CFDictionaryRef information);
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_DISCOVERYSETTINGS_H_
