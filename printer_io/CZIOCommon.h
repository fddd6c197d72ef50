// One open printer port: byte-level exchanges with one printer, through the I/O plug-in.
#ifndef PRINTER_IO_CZIOCOMMON_H_
#define PRINTER_IO_CZIOCOMMON_H_

#include <CoreFoundation/CoreFoundation.h>

#include <optional>

#include "corefoundation/Foundation.h"
#include "printer_io/IOHandler.h"

// On a network (TCP/IP) port an exchange is an SNMPv1 request that carries the command; on any
// other port it is a plain write and read. Results are 0 for success, -1 for a failure or a port
// without a handler, and -50 for an SNMP answer larger than the caller's buffer; operations that
// say so pass the plug-in's own codes on. A negative length, or a null pointer with a length above
// 0, is a failure before the plug-in is called. Every exchange blocks for as long as the plug-in
// does, whose waits are bounded.
class CZIOCommon {
 public:
  // Copies the port information, which is the plug-in's own description of the port; port_type 4 is
  // a TCP/IP port. Nothing is opened. If either argument is null the port has no handler.
  CZIOCommon(const __CFData* port_information, const __CFNumber* port_type);

  // Closes the port if it is open.
  virtual ~CZIOCommon();

  CZIOCommon(const CZIOCommon&) = delete;
  CZIOCommon& operator=(const CZIOCommon&) = delete;

  // 0 when the port is open now, else -1.
  int OpenPrinterPort();

  // Closes an open port; otherwise nothing.
  void ClosePrinterPort();

  // Fills buffer, ZIO_STATUS_BUFFER_SIZE zeroed bytes, with the printer's status text. The
  // plug-in's code, or -1.
  int GetStatus(char* buffer);

  // Writes the bytes and flushes them: 0 or -1. With snmp set on a TCP/IP port it is an exchange
  // whose answer is dropped, with the results of SendWriteAndReadCommand.
  int SendWriteCommand(char* bytes, long length, unsigned char snmp);

  // Sends the bytes and reads the printer's reply into reply, which the caller has zeroed: how long
  // the reply is, is not told. On a TCP/IP port the reply is the whole SNMP message. 0, -1, -50 or
  // the plug-in's code; on failure reply is left as it was on a TCP/IP port, and is the plug-in's
  // on others.
  int SendWriteAndReadCommand(char* bytes, long length, char* reply, long capacity);

  // Reads at most capacity bytes: 0 or -1. Not used by the transport.
  int SendReadCommand(char* buffer, long capacity);

  // One write and read through the plug-in's control operation, on every type of port. The
  // plug-in's code, or -1.
  int D4_SendWriteAndReadCommand(char* bytes, long length, char* reply, long capacity);

  // Builds the SNMPv1 GetRequest (RFC 1157, BER) that carries command, without its remote-mode
  // framing, in the object identifier 1.3.6.1.4.1.2718.1.2.2.40.1.1.2. request has room for
  // 512 bytes. 0, or -1 with both out-parameters as they were: for a command of 512 bytes or more,
  // a framing that overlaps itself, or a message that does not fit.
  static int CreateSNMPCommand(const char* command, long length, char* request,
                               long* request_length);

  // Writes a BER tag and definite-form length in front of *cursor, which moves to the tag. There
  // must be 6 writable bytes in front of it. Returns how many were written, 2 to 6.
  static int WriteASN1Size(unsigned char** cursor, unsigned char tag, unsigned int length);

  // 1 on a TCP/IP port, else 0.
  unsigned char IsTCPIPConnection() const { return is_tcpip_; }

 private:
  int ExchangeSNMP(const char* bytes, long length, char* reply, long capacity);

  unsigned char opened_ = 0;
  unsigned char is_tcpip_ = 0;
  // Declared in front of the handler, so that it outlives it.
  CFRef<CFDataRef> port_information_;
  std::optional<IOHandler> handler_;
};

// The plug-in's error callback: ignores its arguments and answers -1.
int CZIOCommonErrorHandler(void* context, int code, char* message);

#endif  // PRINTER_IO_CZIOCOMMON_H_
