// One status reply of a printer and the figures in it.
#ifndef PRINTER_CONTROL_STATUSREPLY_H_
#define PRINTER_CONTROL_STATUSREPLY_H_

#include <memory>
#include <string>
#include <vector>

// A stored status reply: a length word N (unsigned 16-bit, little-endian), then N bytes of fields,
// each a field id, a data length L (one byte) and L data bytes.
//
// Every reader examines the fields from the first and takes the first one with its id; none reads
// behind the stored reply, whatever the lengths in it say: data that would lie behind it is left
// out. Where a figure is one data byte, a field without data counts as a missing field.
class StatusReply {
 public:
  StatusReply() = default;
  virtual ~StatusReply() = default;
  StatusReply(const StatusReply&) = delete;
  StatusReply& operator=(const StatusReply&) = delete;

  // Replaces the stored reply by a copy of the N + 2 bytes at reply, which points to the length
  // word; the caller guarantees that they can be read. False for a null pointer, which keeps the
  // old reply, and for a length word of 0, which leaves none.
  bool SetReply(const void* reply);

  // The status code and the error code; -1 if the reply lacks the field.
  int GetStatus() const;
  int GetErrorCode() const;

  // Whether the status code is 4 (ready), and whether it is 0 (error).
  bool IsStatusReady() const;
  bool IsStatusError() const;

  // The warning codes, at most the first 50; empty without the field.
  std::vector<unsigned char> GetWarning() const;

  // The serial number, trailing blanks included; empty without the field or without a reply.
  std::string GetSerialNumber() const;

  // The remaining amount of every maintenance tank; empty without the field.
  std::vector<int> GetMaintTankRemain() const;

  // 6 if the ink field holds more than four entries, 4 if not, 8 without the field.
  int GetInkColorCount() const;

  // Fills the three arrays for every ink entry: the second with the entry's byte 0, the first with
  // its byte 2, the third with its byte 3. An entry byte behind the stored reply reads as 0.
  // Returns the number of entries, L / 4: at most 63, so the caller's arrays hold 63 elements.
  // 0 without the field; -1, with the arrays left alone, without a reply or with a null array.
  int GetInkRemain(int* third_bytes, int* first_bytes, int* fourth_bytes) const;

  // The USB state, 0 or 1; 0 without the field, -1 without a reply.
  int GetUSBStatus() const;

  // The data of all heater fields, joined in their order.
  std::vector<unsigned char> GetHeater() const;

 private:
  std::unique_ptr<unsigned char[]> reply_;  // the length word and the fields
  unsigned int size_ = 0;                   // bytes in reply_
};

#endif  // PRINTER_CONTROL_STATUSREPLY_H_
