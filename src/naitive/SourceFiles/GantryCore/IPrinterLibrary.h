// The transport for one exchange with one printer.
#ifndef GANTRYCORE_IPRINTERLIBRARY_H_
#define GANTRYCORE_IPRINTERLIBRARY_H_

#include <memory>
#include <string>

#include "GantryCore/CommandVO.h"

class CZIOCommon;
class StatusReply;

namespace Ravik {

// Opens the port of a printer that a search has listed, carries commands to it and closes it again;
// used for one open. Operations return whether they succeeded; without an open port they fail and
// touch no device. Each is one exchange, without a retry, and blocks as long as the port does.
class IPrinterLibrary {
 public:
  IPrinterLibrary() { Initialize(); }
  virtual ~IPrinterLibrary();  // terminates

  IPrinterLibrary(const IPrinterLibrary&) = delete;
  IPrinterLibrary& operator=(const IPrinterLibrary&) = delete;

  // Makes the transport ready for OpenLibrary; changes nothing on one that is.
  void Initialize();

  // Closes and destroys the port. May be called again.
  void Terminate();

  // Opens the port of the stored printer record with this name.
  bool OpenLibrary(const std::string& printer_name);

  // Closes the port; false when OpenLibrary has not succeeded. The port object stays, so that
  // closing once more is true too.
  bool CloseLibrary();

  // Sends the command inside remote-mode framing. With a reply, appends to it the 512 bytes of the
  // printer's answer, zero-filled behind its end; on failure reply stays as it was.
  bool SendCommand(const CommandVO& command, CommandVO* reply);

  // Sends the command as it stands over the D4 channel. reply as in SendCommand.
  bool SendCommandD4(const CommandVO& command, CommandVO* reply);

  // Sends print data as they stand, and reads nothing.
  bool SendSpooler(const CommandVO& data);

  // Whether the open port is a TCP/IP port.
  bool IsNetworkAccess() const;

  // Reads the printer's status text and stores what follows its first CR LF in status. True when
  // there was a CR LF, also when nothing that can be stored follows it.
  bool GetStatus(StatusReply& status);

  // Do nothing and return false: bytes reach the port by the operations above alone.
  bool Write(const unsigned char* bytes, long* length);
  bool Flush();

 private:
  CZIOCommon* Port() const;

  // The cell that holds the open port; null before Initialize and after Terminate.
  std::unique_ptr<CZIOCommon>* port_ = nullptr;
};

}  // namespace Ravik

#endif  // GANTRYCORE_IPRINTERLIBRARY_H_
