// A client of the worker PrinterNativeProcess, for hosts to copy. Node 18 or later, nothing else.
//
//   const worker = new PrinterWorker("/opt/printer/PrinterNativeProcess");
//   for (const printer of await worker.printers()) {
//     console.log(printer.name, await worker.status(printer, "StatusCode"));
//   }
//   await worker.close();
//
// The worker is started with the first request and kept for the next ones. It does one request at a
// time: requests may be made at once, and wait for their turn in the order in which they were made.
import { spawn } from "node:child_process";

// How long a request may take, from its turn to its answer, in milliseconds: a little longer than it
// takes the worker to give up, where the printer's device URI says nothing of timeouts.
const LIST_LIMIT_MS = 10_000;
const READ_LIMIT_MS = 15_000;
const WRITE_LIMIT_MS = 40_000;

const STOP_LIMIT_MS = 2_000; // a worker that is told to end closes its port within a second
const MAX_ANSWER_BYTES = 64 << 20;
const SYNTAX_ERROR = "syntax error";

export const MEANINGS = {
  [-1]: "unknown command or device name, a parameter is missing, or the printer refused the write",
  [-4]: "the printer could not be opened: it is not in the last list of printers, or is gone",
  [-5]: "the printer could not be closed",
  [-6]: "the printer did not answer, or reading back did not confirm what was written",
  [-7]: "the printer's answer does not belong to the request",
  [-8]: "the printer's answer ends in the auxiliary marker",
};

/** Any failure of a request. */
export class WorkerError extends Error {
  get name() {
    return this.constructor.name;
  }
}

/** The worker answered with a result code other than 0. */
export class PrinterError extends WorkerError {
  constructor(command, code) {
    super(`${command}: ${MEANINGS[code] ?? "failed"} (${code})`);
    this.code = code;
  }
}

/** The worker could not read the request and answered "syntax error". */
export class RequestError extends WorkerError {}

/** What came is no answer to the request. */
export class ProtocolError extends WorkerError {}

/** No whole answer within the time limit. Whether a write was done is not known. */
export class WorkerTimeout extends WorkerError {}

/** The worker ended without a whole answer. Its standard error may say why. */
export class WorkerEnded extends WorkerError {
  constructor(status, signal) {
    const how = signal ? `by ${signal}` : `with status ${status}`;
    super(`the worker ended ${how} before it had answered`);
    this.status = status;
    this.signal = signal;
  }
}

const QUOTE = 0x22;
const BACKSLASH = 0x5c;
const OPEN = 0x7b;
const CLOSE = 0x7d;

/**
 * Cuts what the worker writes into answers, which follow each other without separators. Works on
 * bytes, since a chunk may end within a character.
 */
export class AnswerSplitter {
  #chunks = []; // of the answer that is not whole yet
  #length = 0;
  #depth = 0;
  #inString = false;
  #isEscaped = false;

  /** Yields the answers that the chunk makes whole. */
  *feed(chunk) {
    while (chunk.length > 0) {
      const end = this.#findEnd(chunk);
      const part = chunk.subarray(0, end ?? chunk.length);
      this.#chunks.push(part);
      this.#length += part.length;
      if (this.#length > MAX_ANSWER_BYTES) {
        throw new ProtocolError("the worker's answer does not end");
      }
      if (end === undefined) break;
      const answer = toText(Buffer.concat(this.#chunks));
      this.#chunks = [];
      this.#length = 0;
      yield answer;
      chunk = chunk.subarray(end);
    }
  }

  isEmpty() {
    return this.#length === 0;
  }

  /** Where the current answer ends within the chunk. */
  #findEnd(chunk) {
    const isObject = this.#length === 0 ? chunk[0] === OPEN : this.#chunks[0][0] === OPEN;
    if (!isObject) return this.#findTextEnd(chunk);
    for (let i = 0; i < chunk.length; ++i) {
      const byte = chunk[i];
      if (this.#isEscaped) this.#isEscaped = false;
      else if (this.#inString && byte === BACKSLASH) this.#isEscaped = true;
      else if (byte === QUOTE) this.#inString = !this.#inString;
      else if (!this.#inString && byte === OPEN) ++this.#depth;
      else if (!this.#inString && byte === CLOSE && --this.#depth === 0) return i + 1;
    }
    return undefined;
  }

  #findTextEnd(chunk) {
    const text = Buffer.concat([...this.#chunks, chunk]).toString("latin1", 0, SYNTAX_ERROR.length);
    if (!SYNTAX_ERROR.startsWith(text)) throw new ProtocolError(`the worker wrote "${text}"`);
    return text === SYNTAX_ERROR ? SYNTAX_ERROR.length - this.#length : undefined;
  }
}

/** One running worker. */
class RunningWorker {
  #child;
  #splitter = new AnswerSplitter();
  #pending = null; // the request that waits for its answer: {resolve, reject}
  #isReady = true;
  #ended;

  constructor(program) {
    this.#child = spawn(program, [], { stdio: ["pipe", "pipe", "inherit"] });
    this.#ended = new Promise((resolve) => {
      this.#child.on("exit", resolve);
      this.#child.on("error", resolve); // it could not be started
    });
    this.#child.on("error", (error) => this.#fail(error));
    this.#child.on("close", (status, signal) => this.#fail(new WorkerEnded(status, signal)));
    if (!this.#child.stdin) { // descriptors have run out
      throw Object.assign(new Error(`spawn ${program} EMFILE`), { code: "EMFILE" });
    }
    this.#child.stdin.on("error", () => {}); // "close" follows
    this.#child.stdout.on("data", (chunk) => this.#take(chunk));
    // A host that has nothing else to do may end; the worker then meets the end of its input.
    this.#child.unref();
    this.#child.stdin.unref();
    this.#child.stdout.unref();
  }

  /**
   * False once it has ended, or written what nobody asked for: the next answer might then belong to
   * another request.
   */
  get isReady() {
    return this.#isReady && this.#splitter.isEmpty();
  }

  exchange(line, limitMs) {
    return new Promise((resolve, reject) => {
      const timer = setTimeout(
        () => this.#fail(new WorkerTimeout("the worker did not answer in time")), limitMs);
      const settle = (how) => (result) => {
        clearTimeout(timer);
        this.#pending = null;
        how(result);
      };
      this.#pending = { resolve: settle(resolve), reject: settle(reject) };
      this.#child.stdin.write(line);
    });
  }

  /** Lets the worker end in order, and ends it when it does not. */
  async close() {
    this.#child.stdin.end();
    if (!(await this.#hasEnded())) await this.stop();
  }

  async stop() {
    this.#child.kill("SIGTERM");
    if (!(await this.#hasEnded())) {
      this.#child.kill("SIGKILL");
      await this.#hasEnded();
    }
    this.#child.stdin.destroy();
    this.#child.stdout.destroy();
  }

  #take(chunk) {
    try {
      for (const answer of this.#splitter.feed(chunk)) {
        if (this.#pending) this.#pending.resolve(answer);
        else this.#isReady = false;
      }
    } catch (error) {
      this.#fail(error);
    }
  }

  #fail(error) {
    this.#isReady = false;
    this.#pending?.reject(error);
  }

  #hasEnded() {
    let timer;
    const limit = new Promise((resolve) => {
      timer = setTimeout(resolve, STOP_LIMIT_MS, false);
    });
    return Promise.race([this.#ended.then(() => true), limit]).finally(() => clearTimeout(timer));
  }
}

/**
 * A client with one worker. Requests are rejected with a WorkerError when they fail, and with the
 * system's error when the worker cannot be started; the next request then starts a worker afresh.
 */
export class PrinterWorker {
  #program;
  #worker = null;
  #turn = Promise.resolve(); // settled when the last request is

  constructor(program) {
    this.#program = program;
  }

  /** Searches. Every other request takes a printer that the last search has found. */
  async printers(limitMs = LIST_LIMIT_MS) {
    const reply = await this.request("GetPrinterList", undefined, undefined, limitMs);
    const found = [reply ?? []].flat();
    return found.map((entry) => ({ name: entry.PrinterName, device: entry.DeviceName }));
  }

  /** Of StatusCode, ErrorCode, WarningCode and SerialNumber, those that the printer tells. */
  async status(printer, ...figures) {
    return (await this.request("GetStatusReply", printer, figures)) ?? {};
  }

  /** Number, name and registration flag of three records. */
  names(printer, first) {
    return this.request("GetCustomMediaName", printer, { CustomMediaNo: first });
  }

  async readRecord(printer, number, layout = 0) {
    const record = await this.request("GetCustomMediaInfo", printer,
      { CustomMediaNo: number, CommandVersion: layout });
    if (record?.CustomMediaNo !== number) { // a refusal reads as a record of zeros
      throw new ProtocolError(`${printer.name} does not have a record ${number}`);
    }
    return record;
  }

  /** Writes settings. The others stay, but for ReferenceMediaType, which becomes 0. */
  async writeRecord(printer, number, settings, layout = 0) {
    await this.request("SetCustomMediaInfo", printer,
      { ...settings, CustomMediaNo: number, CommandVersion: layout }, WRITE_LIMIT_MS);
  }

  /** Resets one record, or "All". */
  async initialize(printer, number) {
    await this.request("SetMediaInitialize", printer, { InitializeCustomMedia: number },
      WRITE_LIMIT_MS);
  }

  /** Only for the series QM-V5 and QM-V7: asked for another one, the worker ends. */
  async firmware(printer) {
    return (await this.request("GetFWVersion", printer)).FirmwareVersion;
  }

  /** Any request. Gives what the answer has as Reply, or undefined. */
  async request(command, printer, parameter, limitMs = READ_LIMIT_MS) {
    const line = toLine(command, printer, parameter);
    return this.#inTurn(() => this.#exchange(command, line, limitMs));
  }

  /** Ends the worker after the requests that are waiting. */
  close() {
    return this.#inTurn(async () => {
      await this.#worker?.close();
      this.#worker = null;
    });
  }

  #inTurn(action) {
    const result = this.#turn.then(action);
    this.#turn = result.catch(() => {});
    return result;
  }

  async #exchange(command, line, limitMs) {
    if (this.#worker && !this.#worker.isReady) await this.#drop();
    this.#worker ??= new RunningWorker(this.#program);
    try {
      return toReply(command, await this.#worker.exchange(line, limitMs));
    } catch (error) {
      const isAnswer = error instanceof PrinterError || error instanceof RequestError;
      if (!isAnswer) await this.#drop(); // its answer would come to the next request
      throw error;
    }
  }

  async #drop() {
    await this.#worker.stop();
    this.#worker = null;
  }
}

function toLine(command, printer, parameter) {
  if (!/^[A-Za-z0-9]+$/.test(command)) { // it comes back in the answer unescaped
    throw new TypeError(`"${command}" is no command`);
  }
  if (parameter && !Array.isArray(parameter)) {
    for (const [name, value] of Object.entries(parameter)) {
      if (!Number.isInteger(value) && typeof value !== "string") { // would be cut or ignored
        throw new TypeError(`${name} is neither a whole number nor a text`);
      }
    }
  }
  const request = {
    Command: command, PrinterName: printer?.name, DeviceName: printer?.device, Parameter: parameter,
  };
  // JSON writes lone surrogates as escapes; those that stand for bytes go back as these.
  const parts = JSON.stringify(request).replace(/\\(?:udc([89a-f][0-9a-f])|.)|[^\\]+/g,
    (part, byte) => (byte ? `%${byte}` : encodeURIComponent(part)));
  return parts + "\n";
}

// A character of several bytes, each byte as a Latin-1 character, or a byte that belongs to none.
const CHARACTER =
  /[\xc2-\xdf][\x80-\xbf]|[\xe0-\xef][\x80-\xbf]{2}|[\xf0-\xf4][\x80-\xbf]{3}|[\x80-\xff]/g;

/**
 * Reads UTF-8. A name that a printer cut short may end within a character: bytes that belong to none
 * become lone surrogates, U+DC00 and the byte, which are shown as U+FFFD and go back as they came.
 */
function toText(bytes) {
  const text = bytes.toString("utf8");
  if (!text.includes("\ufffd")) return text;
  return bytes.toString("latin1").replace(CHARACTER, (part) => {
    const character = Buffer.from(part, "latin1").toString("utf8");
    if (part.length > 1 && [...character].length === 1) return character;
    return part.replace(/./g, (byte) => String.fromCharCode(0xdc00 + byte.charCodeAt(0)));
  });
}

function toReply(command, answer) {
  if (answer === SYNTAX_ERROR) throw new RequestError(`${command}: ${SYNTAX_ERROR}`);
  const members = parse(answer);
  const code = members?.[command];
  if (code === undefined) {
    throw new ProtocolError(`${command} was answered "${answer.slice(0, 80)}"`);
  }
  if (code !== 0) throw new PrinterError(command, code);
  return members.Reply;
}

function parse(answer) {
  try { // texts may hold raw control characters, which JSON.parse does not take
    return JSON.parse(answer.replace(/[\0-\x1f]/g,
      (character) => "\\u" + character.charCodeAt(0).toString(16).padStart(4, "0")));
  } catch {
    return undefined;
  }
}
