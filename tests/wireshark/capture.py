"""Datagrams recorded on their way, and capture files of them."""

import select
import socket
import struct
import threading

_LINKTYPE_RAW = 101  # packets begin with their IP header
_HOST, _PRINTER = b"\x0a\x00\x00\x01", b"\x0a\x00\x00\x02"
_HOST_PORT = 40000


class Relay:
    """Stands before a printer's SNMP port and keeps what passes: (is_answer, datagram)."""

    def __init__(self, port):
        self._to_host = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self._to_host.bind(("127.0.0.1", 0))
        self._to_printer = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self._to_printer.connect(("127.0.0.1", port))
        self.port = self._to_host.getsockname()[1]
        self.datagrams = []
        self._is_over = threading.Event()
        self._thread = threading.Thread(target=self._pass_on)
        self._thread.start()

    def _pass_on(self):
        host = None
        while not self._is_over.is_set():
            for ready in select.select([self._to_host, self._to_printer], [], [], 0.05)[0]:
                if ready is self._to_host:
                    datagram, host = ready.recvfrom(65536)
                    self._to_printer.send(datagram)
                else:
                    datagram = ready.recv(65536)
                    self._to_host.sendto(datagram, host)
                self.datagrams.append((ready is self._to_printer, datagram))

    def close(self):
        self._is_over.set()
        self._thread.join()
        self._to_host.close()
        self._to_printer.close()


def _packet(is_answer, datagram, port):
    source, destination = (_PRINTER, _HOST) if is_answer else (_HOST, _PRINTER)
    ports = (port, _HOST_PORT) if is_answer else (_HOST_PORT, port)
    udp = struct.pack(">HHHH", *ports, 8 + len(datagram), 0) + datagram
    head = struct.pack(">BBHHHBBH", 0x45, 0, 20 + len(udp), 0, 0, 64, socket.IPPROTO_UDP, 0)
    return head + source + destination + udp


def write_capture(path, datagrams, port=161, kept=65535):
    """Writes a file in the format pcap, with at most so many bytes kept of each packet."""
    with open(path, "wb") as file:
        file.write(struct.pack("<IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 65535, _LINKTYPE_RAW))
        for number, (is_answer, datagram) in enumerate(datagrams):
            packet = _packet(is_answer, datagram, port)
            file.write(struct.pack("<IIII", number, 0, len(packet[:kept]), len(packet)))
            file.write(packet[:kept])
