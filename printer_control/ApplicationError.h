// Result codes of the printer control, as the host sees them.
#ifndef PRINTER_CONTROL_APPLICATIONERROR_H_
#define PRINTER_CONTROL_APPLICATIONERROR_H_

namespace Ravik {

enum APPLICATION_ERROR : int {
  ERROR_NONE = 0,
  ERROR_COMMAND = -1,    // no descriptor, command not buildable, or read refused by the printer
  ERROR_OPEN = -4,       // the printer could not be opened
  ERROR_CLOSE = -5,      // the printer could not be closed
  ERROR_TRANSFER = -6,   // sending, reading a reply or reading the status failed
  ERROR_NO_BODY = -7,    // the reply has no body behind its header
  ERROR_AUXILIARY = -8,  // the reply ends in the auxiliary marker
};

}  // namespace Ravik

#endif  // PRINTER_CONTROL_APPLICATIONERROR_H_
