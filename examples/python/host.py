"""Changes one setting of a record: host.py WORKER PRINTER RECORD SETTING VALUE"""

import sys

from printer_worker import PrinterWorker

program, name, number, setting, value = sys.argv[1:]
with PrinterWorker(program) as worker:
    printers = {printer.name: printer for printer in worker.printers()}
    print(*("printer: " + found for found in printers), sep="\n")
    printer = printers[name]
    record = worker.read_record(printer, int(number))
    print("before:", record[setting])
    record[setting] = int(value) if value.lstrip("-").isdigit() else value
    worker.write_record(printer, int(number), record)
    print("after:", worker.read_record(printer, int(number))[setting])
