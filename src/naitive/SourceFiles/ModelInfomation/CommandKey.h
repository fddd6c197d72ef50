// The printer operations that the worker knows.
#ifndef MODELINFOMATION_COMMANDKEY_H_
#define MODELINFOMATION_COMMANDKEY_H_

namespace Ravik {

// One logical printer operation. Custom media records exist in layout version 0 (INFO1), version 1
// (INFO2) and version 128 (INFO3: the whole record as one block). Values 0 to 3 are reserved.
enum COMMAND_KEY : int {
  READ_CUSTOMMEDIA_INFO1 = 4,
  READ_CUSTOMMEDIA_INFO2 = 5,
  READ_CUSTOMMEDIA_INFO3 = 6,
  READ_CUSTOMMEDIA_NAME = 7,
  READ_STATUS = 8,  // answered by the status reply, not by a command
  READ_FW_VERSION = 9,
  WRITE_CUSTOMMEDIA_INFO1 = 10,
  WRITE_CUSTOMMEDIA_INFO2 = 11,
  WRITE_CUSTOMMEDIA_INFO3 = 12,
  WRITE_MEDIA_INITIALIZE = 13,
};

}  // namespace Ravik

#endif  // MODELINFOMATION_COMMANDKEY_H_
