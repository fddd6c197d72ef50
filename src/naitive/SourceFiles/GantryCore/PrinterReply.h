// Turns the bytes of a printer's reply into named parameters.
#ifndef GANTRYCORE_PRINTERREPLY_H_
#define GANTRYCORE_PRINTERREPLY_H_

#include <string>
#include <vector>

#include "GantryCore/CommandVO.h"
#include "GantryCore/ParameterMapVO.h"
#include "ModelInfomation/CommandKey.h"
#include "ModelInfomation/ReplyInfoVO.h"
#include "printer_control/ApplicationError.h"
#include "printer_control/StatusReply.h"

namespace Ravik {

class CPrinterReply {
 public:
  // Inserts the values of a reply's fields into out; several of one name in the order of the
  // descriptor's table. False, with out left alone and the reason in error, if there is no
  // descriptor or the body ends with the refusal marker (-1), the body is empty (-7), or it ends
  // with the auxiliary marker (-8); a reply that is analysed leaves error alone. Ends the process
  // for a key that the family does not answer.
  static bool AnalysisCommandReply(const std::string& deviceName, COMMAND_KEY key,
                                   const CommandVO& reply, ParameterMapVO& out,
                                   APPLICATION_ERROR& error);

  // What is between the first occurrence of the header and the last byte of the reply, which is
  // never part of a body; empty without the header. A null or empty header ends the process.
  static std::vector<unsigned char> MakeReplyBody(const std::vector<unsigned char>& reply,
                                                  const std::vector<unsigned char>* header);

  // Inserts the value of one field; nothing if the body does not hold the whole field. Ends the
  // process for an unknown form or value type.
  static void InsertParameter(const std::vector<unsigned char>& body, const std::string& key,
                              const _t_REPLY_INFOMATION& field, ParameterMapVO& out);

  // Inserts those figures of a status reply whose keys the request holds and which the printer
  // reported. Always true; device name and error play no part.
  static bool AnalysisStatusReply(const std::string& deviceName, const ParameterMapVO& request,
                                  const StatusReply& status, ParameterMapVO& out,
                                  APPLICATION_ERROR& error);

  // The text without its trailing spaces.
  static std::string DeleteLastSpace(const std::string& text);
};

}  // namespace Ravik

#endif  // GANTRYCORE_PRINTERREPLY_H_
