// Changes one setting of a record: node host.mjs WORKER PRINTER RECORD SETTING VALUE
import { PrinterWorker } from "./printer-worker.mjs";

const [program, name, number, setting, value] = process.argv.slice(2);
const worker = new PrinterWorker(program);
try {
  const printers = await worker.printers();
  for (const found of printers) console.log("printer:", found.name);
  const printer = printers.find((found) => found.name === name);
  if (!printer) throw new Error(`there is no printer ${name}`);
  const record = await worker.readRecord(printer, Number(number));
  if (!(setting in record)) throw new Error(`the record has no ${setting}`);
  console.log("before:", record[setting]);
  const isNumber = setting !== "CustomMediaName" && /^-?\d+$/.test(value);
  record[setting] = isNumber ? Number(value) : value;
  await worker.writeRecord(printer, Number(number), record);
  console.log("after:", (await worker.readRecord(printer, Number(number)))[setting]);
} finally {
  await worker.close();
}
