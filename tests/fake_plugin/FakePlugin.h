// A scriptable I/O plug-in for tests, and the record of how it was called.
//
// In CMakeLists.txt, behind ravik_test:
//
//   ravik_use_fake_plugin(my_test)
//
// puts the test's executable into a folder of its own, with the plug-in at ZIO/ZIOP.plugin and an
// empty SupportPrinterList.xml beside it, which is where the worker looks for them. In the test:
//
//   class MyTest : public testing::Test {
//    protected:
//     fake_plugin::Session plugin_;  // fresh script, empty log, stored list of this process alone
//   };
//
//   fake_plugin::StorePrinters({{"Printer A", "Device A", "address", ZIO_PORT_TYPE_TCPIP}});
//   fake_plugin::script().replies = {"first answer", "second answer"};
//   fake_plugin::script().results["close"] = -7;
//   ... run the code under test ...
//   EXPECT_THAT(fake_plugin::TakeCalls(), ElementsAre("factory", "AddRef", ...));
#ifndef TESTS_FAKE_PLUGIN_FAKEPLUGIN_H_
#define TESTS_FAKE_PLUGIN_FAKEPLUGIN_H_

#include <CoreFoundation/CoreFoundation.h>

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "corefoundation/Foundation.h"
#include "printer_io/ZIOPlugin.h"

#define FAKE_PLUGIN_API __attribute__((visibility("default")))

namespace fake_plugin {

// What the plug-in does. Bytes are std::string, zero bytes included.
struct Script {
  // Result of a call by its name in the log ("open", "info.initialise", "QueryInterface"); 0 for a
  // name that is not there. A call that fails delivers nothing.
  std::map<std::string, int> results;

  // What ioctl, read and control deliver, one each; a longer reply than the caller has room for is
  // cut, except in ioctl, which hands it over in a buffer of the plug-in's own.
  std::deque<std::string> replies;

  // Asked when no reply is left, with the bytes that were sent: the request of ioctl and control,
  // everything written since the last read. Without it nothing is delivered.
  std::function<std::string(const std::string& sent)> responder;

  // Called last by a successful ioctl: may make the block anything.
  std::function<void(ZIOSnmpExchange& block)> on_exchange;

  // Copied into the buffer of status, at most all its 257 bytes.
  std::string status;

  // What getList answers.
  CFRef<CFTypeRef> list;

  // The call, by its name in the log, that calls the error callback. The log then has the answer.
  std::string error_in;

  bool factory_fails = false;
};

FAKE_PLUGIN_API Script& script();

// The calls since the last time, in order. A call is its name and its arguments, bytes in
// upper-case hexadecimal:
//
//   factory | AddRef | Release | QueryInterface port / info / unknown / other
//   initialise 2 ADDRESS | terminate | open | close | cancel | flush 0 | tab | status | getInfo
//   ioctl 6 REQUEST CAPACITY | write BYTES | read CAPACITY | control BYTES CAPACITY | release
//   info.initialise 2 | info.terminate | info.getList | info.release
//   callback ANSWER
FAKE_PLUGIN_API std::vector<std::string> TakeCalls();

// The same as one text, joined by ", ".
FAKE_PLUGIN_API std::string TakeLog();

// The plug-in path of the last initialise.
FAKE_PLUGIN_API const std::string& LastPath();

// The context of the last initialise.
FAKE_PLUGIN_API const void* LastContext();

// Instances and interfaces that exist; 0 when everything was released.
FAKE_PLUGIN_API int LiveObjects();

// One test's use of the plug-in. The user's defaults are in a temporary folder of this process and
// hold no printer list.
class FAKE_PLUGIN_API Session {
 public:
  Session();
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
};

struct Printer {
  std::string name;
  std::string device;
  std::string address;
  int port_type = ZIO_PORT_TYPE_TCPIP;
};

FAKE_PLUGIN_API CFRef<CFStringRef> MakeText(const std::string& text);
FAKE_PLUGIN_API CFRef<CFDataRef> MakeData(const std::string& bytes);
FAKE_PLUGIN_API CFRef<CFNumberRef> MakeNumber(int number);
FAKE_PLUGIN_API CFRef<CFArrayRef> MakeArray(const std::vector<CFRef<CFTypeRef>>& objects);
FAKE_PLUGIN_API CFRef<CFDictionaryRef> MakeDictionary(
    const std::map<std::string, CFRef<CFTypeRef>>& entries);

// A printer record, and the list of such records as getList answers it.
FAKE_PLUGIN_API CFRef<CFDictionaryRef> MakeRecord(const Printer& printer);
FAKE_PLUGIN_API CFRef<CFDictionaryRef> MakeList(const std::vector<CFRef<CFTypeRef>>& records);

// Stores the value as the user's printer list, by which OpenLibrary finds a printer.
FAKE_PLUGIN_API void StoreList(CFTypeRef value);
FAKE_PLUGIN_API void StorePrinters(const std::vector<Printer>& printers);

// The user's stored printer list, or null.
FAKE_PLUGIN_API CFRef<CFPropertyListRef> StoredList();

}  // namespace fake_plugin

#endif  // TESTS_FAKE_PLUGIN_FAKEPLUGIN_H_
