// What goes to a printer and comes back, field by field in the names of the parameters: for traces.
#ifndef GANTRYCORE_TRANSFERTEXT_H_
#define GANTRYCORE_TRANSFERTEXT_H_

#include <string>
#include <string_view>

#include "GantryCore/CommandVO.h"
#include "ModelInfomation/CommandKey.h"

namespace Ravik {

// Texts are printable and of the moment: nothing depends on them. Values are the host's, named or
// in the user's scale; a block of hexadecimal digits is cut to its beginning.
class TransferText {
 public:
  // What the operation is called: "read-record".
  static const char* Operation(COMMAND_KEY key);

  // The operation and the fields of its command, in the order of their positions. Settings that the
  // command leaves as they are are left out. deviceName and key are those that it was built with.
  static std::string OfCommand(const std::string& deviceName, COMMAND_KEY key,
                               const CommandVO& command);

  // The operation and the fields of the reply to it as the worker reads them, in the order of their
  // positions, or why there are none.
  static std::string OfReply(const std::string& deviceName, COMMAND_KEY key,
                             const CommandVO& reply);

  // What the printer said, out of what the transport delivered for it: from the operation's header
  // on, without the zeros that fill the buffer; without a header all of it but these zeros. It lies
  // in reply.
  static std::string_view PrintersBytes(const std::string& deviceName, COMMAND_KEY key,
                                        const CommandVO& reply);
};

}  // namespace Ravik

#endif  // GANTRYCORE_TRANSFERTEXT_H_
