// A queue of the printing system as its server describes it.
#ifndef PORT_DRIVER_QUEUE_SEARCH_QUEUE_H_
#define PORT_DRIVER_QUEUE_SEARCH_QUEUE_H_

#include <string>

namespace ZIOP {

// Texts as the server sent them, cut at their first zero byte; empty where it sent none.
struct Queue {
  std::string name;       // printer-name
  std::string info;       // printer-info: what its administrator says of it
  std::string model;      // printer-make-and-model
  std::string deviceUri;  // device-uri
  bool isClass = false;   // it stands for other queues and has no device of its own
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_QUEUE_SEARCH_QUEUE_H_
