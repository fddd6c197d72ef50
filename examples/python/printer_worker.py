"""A client of the worker PrinterNativeProcess, for hosts to copy. Standard library alone.

    with PrinterWorker("/opt/printer/PrinterNativeProcess") as worker:
        for printer in worker.printers():
            print(printer.name, worker.status(printer, "StatusCode"))

The worker is started with the first request and kept for the next ones. Several threads may share
one client: the worker does one request at a time, and the others wait for their turn.
"""

from __future__ import annotations

import json
import os
import re
import selectors
import signal
import subprocess
import threading
import time
from types import TracebackType
from typing import IO, Any, Mapping, NamedTuple, Optional, Sequence, Type, Union
from urllib.parse import quote

# How long a request may take, from its turn to its answer, in seconds: a little longer than it
# takes the worker to give up, where the printer's device URI says nothing of timeouts.
LIST_LIMIT_S = 10.0
READ_LIMIT_S = 15.0
WRITE_LIMIT_S = 40.0

_STOP_LIMIT_S = 2.0  # a worker that is told to end closes its port within a second
_MAX_ANSWER_BYTES = 64 << 20
_SYNTAX_ERROR = b"syntax error"

MEANINGS = {
    -1: "unknown command or device name, a parameter is missing, or the printer refused the write",
    -4: "the printer could not be opened: it is not in the last list of printers, or is gone",
    -5: "the printer could not be closed",
    -6: "the printer did not answer, or reading back did not confirm what was written",
    -7: "the printer's answer does not belong to the request",
    -8: "the printer's answer ends in the auxiliary marker",
}

Value = Union[int, str]
Record = Mapping[str, Value]


class WorkerError(Exception):
    """Any failure of a request."""


class PrinterError(WorkerError):
    """The worker answered with a result code other than 0."""

    def __init__(self, command: str, code: int) -> None:
        super().__init__(f"{command}: {MEANINGS.get(code, 'failed')} ({code})")
        self.code = code


class RequestError(WorkerError):
    """The worker could not read the request and answered "syntax error"."""


class ProtocolError(WorkerError):
    """What came is no answer to the request."""


class WorkerTimeout(WorkerError):
    """No whole answer within the time limit. Whether a write was done is not known."""


class WorkerEnded(WorkerError):
    """The worker ended without a whole answer. Its standard error may say why."""

    def __init__(self, status: int) -> None:
        how = f"by signal {-status}" if status < 0 else f"with status {status}"
        super().__init__(f"the worker ended {how} before it had answered")
        self.status = status


class Printer(NamedTuple):
    name: str
    device: str  # selects the family of records


class AnswerSplitter:
    """Cuts what the worker writes into answers, which follow each other without separators. Works
    on bytes, since a read may end within a character."""

    _OUTSIDE = re.compile(rb'["{}]')
    _IN_STRING = re.compile(rb'["\\]')

    def __init__(self) -> None:
        self._bytes = bytearray()
        self._next = 0  # where the search for the end goes on
        self._depth = 0
        self._in_string = False

    def feed(self, chunk: bytes) -> None:
        self._bytes += chunk
        if len(self._bytes) > _MAX_ANSWER_BYTES:
            raise ProtocolError("the worker's answer does not end")

    def take(self) -> Optional[bytes]:
        """The next whole answer, or None until there is more of it."""
        if self._bytes[:1] == b"{":
            if not self._find_end():
                return None
        elif self._bytes.startswith(_SYNTAX_ERROR):
            self._next = len(_SYNTAX_ERROR)
        elif _SYNTAX_ERROR.startswith(bytes(self._bytes[:len(_SYNTAX_ERROR)])):
            return None
        else:
            raise ProtocolError(f"the worker wrote {bytes(self._bytes[:80])!r}")
        answer = bytes(self._bytes[: self._next])
        del self._bytes[: self._next]
        self._next = 0
        return answer

    def is_empty(self) -> bool:
        return not self._bytes

    def _find_end(self) -> bool:
        while True:
            marks = self._IN_STRING if self._in_string else self._OUTSIDE
            found = marks.search(self._bytes, self._next)
            if found is None:
                self._next = max(self._next, len(self._bytes))
                return False
            mark = found[0]
            self._next = found.end()
            if mark == b"\\":
                self._next += 1  # what it escapes, even if that is still to come
            elif mark == b'"':
                self._in_string = not self._in_string
            else:
                self._depth += 1 if mark == b"{" else -1
                if self._depth == 0:
                    return True


class _Process:
    """One running worker."""

    def __init__(self, program: str) -> None:
        self._process = subprocess.Popen(
            [program], stdin=subprocess.PIPE, stdout=subprocess.PIPE, bufsize=0)
        assert self._process.stdin is not None and self._process.stdout is not None
        self._input: IO[bytes] = self._process.stdin
        self._output: IO[bytes] = self._process.stdout
        os.set_blocking(self._input.fileno(), False)
        self._answers = AnswerSplitter()

    def is_ready(self) -> bool:
        """False once it has ended, or written what nobody asked for: the next answer might then
        belong to another request."""
        return self._answers.is_empty() and not _is_possible(
            self._output, selectors.EVENT_READ, time.monotonic())

    def exchange(self, line: bytes, end: float) -> bytes:
        self._send(line, end)
        while True:
            answer = self._answers.take()
            if answer is not None:
                return answer
            _wait(self._output, selectors.EVENT_READ, end)
            chunk = os.read(self._output.fileno(), 65536)
            if not chunk:
                raise self._ended()
            self._answers.feed(chunk)

    def close(self) -> None:
        """Lets the worker end in order, and ends it when it does not."""
        self._input.close()
        if not self._has_ended():
            self.stop()
        self._output.close()

    def stop(self) -> None:
        self._process.terminate()
        if not self._has_ended():
            self._process.kill()
            self._has_ended()
        self._input.close()
        self._output.close()

    def _send(self, line: bytes, end: float) -> None:
        unsent = memoryview(line)
        while unsent:
            _wait(self._input, selectors.EVENT_WRITE, end)
            try:
                unsent = unsent[os.write(self._input.fileno(), unsent):]
            except BlockingIOError:
                continue
            except BrokenPipeError:
                raise self._ended() from None

    def _ended(self) -> WorkerEnded:
        if not self._has_ended():
            self.stop()
        status = self._process.returncode
        return WorkerEnded(-signal.SIGKILL if status is None else status)

    def _has_ended(self) -> bool:
        try:
            self._process.wait(_STOP_LIMIT_S)
            return True
        except subprocess.TimeoutExpired:
            return False


def _is_possible(file: IO[bytes], event: int, end: float) -> bool:
    with selectors.DefaultSelector() as selector:
        selector.register(file, event)
        return bool(selector.select(max(0.0, end - time.monotonic())))


def _wait(file: IO[bytes], event: int, end: float) -> None:
    if not _is_possible(file, event, end):
        raise WorkerTimeout("the worker did not answer in time")


class PrinterWorker:
    """A client with one worker. Requests raise a WorkerError when they fail, and the OSError when
    the worker cannot be started; the next request then starts a worker afresh."""

    def __init__(self, program: Union[str, "os.PathLike[str]"]) -> None:
        self._program = os.fspath(program)
        self._turn = threading.Lock()
        self._process: Optional[_Process] = None

    def __enter__(self) -> PrinterWorker:
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], error: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        self.close()

    def close(self) -> None:
        """Ends the worker after the requests that are waiting."""
        with self._turn:
            process, self._process = self._process, None
            if process is not None:
                process.close()

    def printers(self, time_limit: float = LIST_LIMIT_S) -> list[Printer]:
        """Searches. Every other request takes a printer that the last search has found."""
        reply = self.request("GetPrinterList", time_limit=time_limit)
        found = [] if reply is None else reply if isinstance(reply, list) else [reply]
        return [Printer(entry["PrinterName"], entry["DeviceName"]) for entry in found]

    def status(self, printer: Printer, *figures: str) -> dict[str, Any]:
        """Of StatusCode, ErrorCode, WarningCode and SerialNumber, those that the printer tells."""
        return self.request("GetStatusReply", printer, figures) or {}

    def names(self, printer: Printer, first: int) -> list[dict[str, Value]]:
        """Number, name and registration flag of three records."""
        reply: list[dict[str, Value]] = self.request(
            "GetCustomMediaName", printer, {"CustomMediaNo": first})
        return reply

    def read_record(self, printer: Printer, number: int, layout: int = 0) -> dict[str, Value]:
        record: dict[str, Value] = self.request(
            "GetCustomMediaInfo", printer, {"CustomMediaNo": number, "CommandVersion": layout})
        if record.get("CustomMediaNo") != number:  # a refusal reads as a record of zeros
            raise ProtocolError(f"{printer.name} does not have a record {number}")
        return record

    def write_record(self, printer: Printer, number: int, settings: Record,
                     layout: int = 0) -> None:
        """Writes settings. The others stay, but for ReferenceMediaType, which becomes 0."""
        self.request("SetCustomMediaInfo", printer,
                     {**settings, "CustomMediaNo": number, "CommandVersion": layout},
                     time_limit=WRITE_LIMIT_S)

    def initialize(self, printer: Printer, number: Union[int, str]) -> None:
        """Resets one record, or "All"."""
        self.request("SetMediaInitialize", printer, {"InitializeCustomMedia": number},
                     time_limit=WRITE_LIMIT_S)

    def firmware(self, printer: Printer) -> str:
        """Only for the series QM-V5 and QM-V7: asked for another one, the worker ends."""
        version: str = self.request("GetFWVersion", printer)["FirmwareVersion"]
        return version

    def request(self, command: str, printer: Optional[Printer] = None,
                parameter: Union[Record, Sequence[str], None] = None, *,
                time_limit: float = READ_LIMIT_S) -> Any:
        """Any request. Returns what the answer has as Reply, or None."""
        line = _line(command, printer, parameter)
        with self._turn:
            return self._exchange(command, line, time_limit)

    def _exchange(self, command: str, line: bytes, time_limit: float) -> Any:
        if self._process is not None and not self._process.is_ready():
            self._drop()
        if self._process is None:
            self._process = _Process(self._program)
        try:
            return _reply(command, self._process.exchange(line, time.monotonic() + time_limit))
        except (PrinterError, RequestError):  # answers; the worker is in step
            raise
        except BaseException:  # also an interrupt: its answer would come to the next request
            self._drop()
            raise

    def _drop(self) -> None:
        process, self._process = self._process, None
        if process is not None:
            process.stop()


def _line(command: str, printer: Optional[Printer],
          parameter: Union[Record, Sequence[str], None]) -> bytes:
    if not (command.isascii() and command.isalnum()):  # it comes back in the answer unescaped
        raise ValueError(f"{command!r} is no command")
    if isinstance(parameter, Mapping):
        for name, value in parameter.items():
            if isinstance(value, bool) or not isinstance(value, (int, str)):  # would be ignored
                raise TypeError(f"{name} is neither a whole number nor a text")
    request: dict[str, Any] = {"Command": command}
    if printer is not None:
        request.update(PrinterName=printer.name, DeviceName=printer.device)
    if parameter is not None:
        request["Parameter"] = parameter
    # A name that a printer cut short may end within a character; it goes back as it came.
    text = json.dumps(request, ensure_ascii=False).encode("utf-8", "surrogateescape")
    return quote(text, safe="").encode() + b"\n"


def _reply(command: str, answer: bytes) -> Any:
    if answer == _SYNTAX_ERROR:
        raise RequestError(f"{command}: syntax error")
    try:  # not strict: texts may hold raw control characters
        members = json.loads(answer.decode("utf-8", "surrogateescape"), strict=False)
        code = members[command]
    except (KeyError, ValueError):
        raise ProtocolError(f"{command} was answered {answer[:80]!r}") from None
    if code != 0:
        raise PrinterError(command, code)
    return members.get("Reply")
