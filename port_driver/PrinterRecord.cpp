// Fields of a printer record.
#include "port_driver/PrinterRecord.h"

#include "port_driver/DeviceURI.h"
#include "port_driver/PropertyText.h"
#include "printer_io/ZIOPlugin.h"

namespace ZIOP {
namespace {

CFRef<CFStringRef> MakeString(const std::string& text) {
  return CFRef<CFStringRef>(
      CFStringCreateWithCString(kCFAllocatorDefault, text.c_str(), kCFStringEncodingUTF8));
}

std::string TextIn(CFDictionaryRef record, CFStringRef key) {
  return TextOf(CFCast<CFStringRef>(CFDictionaryGetValue(record, key)));
}

}  // namespace

CFRef<CFDictionaryRef> MakePrinterRecord(CFStringRef name, CFStringRef model,
                                         const std::string& uri) {
  const bool is_local = DeviceURI::Parse(uri).isLocal();
  const CFRef<CFDataRef> address(CFDataCreate(kCFAllocatorDefault,
                                              reinterpret_cast<const UInt8*>(uri.data()),
                                              static_cast<CFIndex>(uri.size())));
  const SInt32 port_type = is_local ? ZIO_PORT_TYPE_LOCAL : ZIO_PORT_TYPE_TCPIP;
  const CFRef<CFNumberRef> type(
      CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt32Type, &port_type));
  const void* keys[] = {CFSTR(ZIO_INFO_TARGET_NAME), CFSTR(ZIO_INFO_PRINTER_NAME),
                        CFSTR(ZIO_INFO_ADDRESS), CFSTR(ZIO_INFO_IOX_TYPE)};
  const void* values[] = {name, model, address.get(), type.get()};
  return CFRef<CFDictionaryRef>(CFDictionaryCreate(kCFAllocatorDefault, keys, values, 4,
                                                   &kCFTypeDictionaryKeyCallBacks,
                                                   &kCFTypeDictionaryValueCallBacks));
}

CFRef<CFDictionaryRef> MakePrinterRecord(const ListedPrinter& printer) {
  return MakePrinterRecord(MakeString(printer.name).get(), MakeString(printer.model).get(),
                           printer.uri);
}

ListedPrinter ReadPrinterRecord(CFDictionaryRef record) {
  const auto address = CFCast<CFDataRef>(CFDictionaryGetValue(record, CFSTR(ZIO_INFO_ADDRESS)));
  const auto* const bytes = reinterpret_cast<const char*>(CFDataGetBytePtr(address));
  return {TextIn(record, CFSTR(ZIO_INFO_TARGET_NAME)), TextIn(record, CFSTR(ZIO_INFO_PRINTER_NAME)),
          std::string(bytes, static_cast<std::size_t>(CFDataGetLength(address)))};
}

}  // namespace ZIOP
