// A scriptable I/O plug-in for tests, and the record of how it was called.
//
// ravik_use_fake_plugin(my_test) in CMakeLists.txt puts the test's executable into a folder of its
// own, with the plug-in at ZIO/ZIOP.plugin and an empty SupportPrinterList.xml beside it, which is
// where the worker looks for them. The test's fixture has a Session.
#ifndef TESTS_FAKE_PLUGIN_FAKEPLUGIN_H_
#define TESTS_FAKE_PLUGIN_FAKEPLUGIN_H_

#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "corefoundation/Foundation.h"
#include "printer_io/ZIOPlugin.h"

namespace fake_plugin {

// What the plug-in does. Bytes are std::string, zero bytes included.
struct Script {
  // Result of a call by its name in the log; 0 for a name that is not there. A call that fails
  // delivers nothing, and on a port it calls the error callback.
  std::map<std::string, int> results;

  // What ioctl, read and control deliver, one each; a longer reply than the caller has room for is
  // cut, except in ioctl, which hands it over in a buffer of the plug-in's own.
  std::deque<std::string> replies;

  // Asked when no reply is left, with the bytes of ioctl or control. Without it nothing is
  // delivered.
  std::function<std::string(const std::string& sent)> responder;

  // Called last by a successful ioctl: may make the block anything.
  std::function<void(ZIOSnmpExchange& block)> on_exchange;

  // Called by every call, with its name in the log, before it does anything.
  std::function<void(const std::string& name)> on_call;

  std::string status;     // copied into the buffer of status, at most all its 257 bytes
  CFRef<CFTypeRef> list;  // what getList answers
};

Script& script();

// What the last initialise of a port was given, and the last answer of an error callback.
struct PortRecord {
  std::string path;
  const void* context = nullptr;
  int callback_answer = 0;
};

const PortRecord& LastPort();

// The calls since the last time, in order. A call is its name and its arguments, bytes in
// upper-case hexadecimal:
//
//   factory | AddRef | Release | QueryInterface port / info / unknown / other
//   initialise 2 ADDRESS | terminate | open | close | cancel | flush 0 | tab | status | getInfo
//   ioctl 6 REQUEST CAPACITY | write BYTES | read CAPACITY | control BYTES CAPACITY | release
//   info.initialise 2 | info.terminate | info.getList | info.release
std::vector<std::string> TakeCalls();

// The same as one text, joined by ", ".
std::string TakeLog();

// Instances and interfaces that exist; 0 when everything was released.
int LiveObjects();

// One test's use of the plug-in: a fresh script, an empty log, and the user's defaults in a
// temporary folder of this process, without a printer list. Everything is released at its end.
class Session {
 public:
  Session();
  ~Session() { EXPECT_EQ(LiveObjects(), 0); }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
};

struct Printer {
  std::string name;
  std::string device;
  std::string address;
  int port_type = ZIO_PORT_TYPE_TCPIP;
};

CFRef<CFStringRef> MakeText(const std::string& text);
CFRef<CFDataRef> MakeData(const std::string& bytes);
CFRef<CFNumberRef> MakeNumber(int number);
CFRef<CFArrayRef> MakeArray(const std::vector<CFRef<CFTypeRef>>& objects);
CFRef<CFDictionaryRef> MakeDictionary(const std::map<std::string, CFRef<CFTypeRef>>& entries);

// A printer record, and the list of such records as getList answers it.
CFRef<CFDictionaryRef> MakeRecord(const Printer& printer);
CFRef<CFDictionaryRef> MakeList(const std::vector<CFRef<CFTypeRef>>& records);

// Stores the value as the user's printer list, by which OpenLibrary finds a printer.
void StoreList(CFTypeRef value);
void StorePrinters(const std::vector<Printer>& printers);

// The user's stored printer list, or null.
CFRef<CFPropertyListRef> StoredList();

}  // namespace fake_plugin

#endif  // TESTS_FAKE_PLUGIN_FAKEPLUGIN_H_
