// The framing that switches a printer into remote mode and back.
#ifndef PRINTER_IO_REMOTEMODE_H_
#define PRINTER_IO_REMOTEMODE_H_

namespace Ravik {

// ESC "@" (reset), then ESC "(R" with a little-endian length of 8, a zero byte and "REMOTE1".
inline constexpr unsigned char CMD_REMOTE_START[15] = {
    0x1B, 0x40, 0x1B, 0x28, 0x52, 0x08, 0x00, 0x00, 'R', 'E', 'M', 'O', 'T', 'E', '1'};

// ESC and three zero bytes.
inline constexpr unsigned char CMD_REMOTE_END[4] = {0x1B, 0x00, 0x00, 0x00};

}  // namespace Ravik

#endif  // PRINTER_IO_REMOTEMODE_H_
