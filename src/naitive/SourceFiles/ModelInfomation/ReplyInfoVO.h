// Descriptor of the reply to one printer command.
#ifndef MODELINFOMATION_REPLYINFOVO_H_
#define MODELINFOMATION_REPLYINFOVO_H_

#include <map>
#include <string>
#include <vector>

#include "ModelInfomation/CommandInfoVO.h"

namespace Ravik {

// How the bytes of a reply field become text.
enum REPLY_FORM : unsigned int {
  FORM_TEXT = 1,    // they are characters already
  FORM_BINARY = 3,  // raw bytes, written as hexadecimal text
};

// One decoded field of a reply body.
struct _t_REPLY_INFOMATION {
  unsigned int position;   // of the field's first byte in the body
  unsigned int length;     // bytes of the body; two to a printer's byte in text replies
  unsigned int form;       // REPLY_FORM
  unsigned int valueType;  // VALUE_TYPE
};

// One row of a reply table.
struct _t_REPLY_INFOMATION_STRUCT {
  const char* name;
  _t_REPLY_INFOMATION info;
};

// What a reply starts with, what refuses, and where its values are; owns everything that it holds.
class ReplyInfoVO {
 public:
  // Replaces the three byte strings (a null pointer counts as nothing) and adds the rows of the
  // table to replyInfo, which is not cleared. A null table ends the process.
  void SetAll(const unsigned char* headerBytes, unsigned int headerLength,
              const unsigned char* notAvailableBytes, unsigned int notAvailableLength,
              const unsigned char* auxiliaryBytes, unsigned int auxiliaryLength,
              const _t_REPLY_INFOMATION_STRUCT* table, unsigned int rowCount);

  // Adds one field behind earlier ones of the same name.
  void SetReplyInfo(const std::string& name, const _t_REPLY_INFOMATION& info);

  std::vector<unsigned char> header;        // a good reply begins with it
  std::vector<unsigned char> notAvailable;  // a refusal ends with it; empty if there is none
  std::vector<unsigned char> auxiliary;     // a third marker, which no printer sends so far
  std::multimap<std::string, _t_REPLY_INFOMATION> replyInfo;  // fields by value name
};

}  // namespace Ravik

#endif  // MODELINFOMATION_REPLYINFOVO_H_
