// Makes the requests of each line at once, and writes a line of outcomes: probe.mjs MODULES WORKER
import { createInterface } from "node:readline";

const { PrinterWorker } = await import(`${process.argv[2]}/printer-worker.mjs`);
const worker = new PrinterWorker(process.argv[3]);

async function outcome({ command, printer: [name, device], parameter, limit }) {
  try {
    const reply = await worker.request(command, { name, device }, parameter, limit * 1000);
    return { reply: reply ?? null };
  } catch (error) {
    return { error: error.name, text: error.message, code: error.code ?? null };
  }
}

for await (const line of createInterface({ input: process.stdin })) {
  console.log(JSON.stringify(await Promise.all(JSON.parse(line).map(outcome))));
}
await worker.close();
