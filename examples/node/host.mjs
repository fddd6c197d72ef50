// Changes one setting of a record: node host.mjs WORKER PRINTER RECORD SETTING VALUE
import { PrinterWorker } from "./printer-worker.mjs";

const [program, name, number, setting, value] = process.argv.slice(2);
const worker = new PrinterWorker(program);
try {
  const printers = await worker.printers();
  for (const found of printers) console.log("printer:", found.name);
  const printer = printers.find((found) => found.name === name);
  const record = await worker.readRecord(printer, Number(number));
  console.log("before:", record[setting]);
  record[setting] = /^-?\d+$/.test(value) ? Number(value) : value;
  await worker.writeRecord(printer, Number(number), record);
  console.log("after:", (await worker.readRecord(printer, Number(number)))[setting]);
} finally {
  await worker.close();
}
