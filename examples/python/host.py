"""Changes one setting of a record: host.py WORKER PRINTER RECORD SETTING VALUE"""

import sys

from printer_worker import PrinterWorker

sys.stdout.reconfigure(errors="surrogateescape")  # names as the printer holds them
program, name, number, setting, value = sys.argv[1:]
with PrinterWorker(program) as worker:
    printers = {printer.name: printer for printer in worker.printers()}
    print(*("printer: " + found for found in printers), sep="\n")
    printer = printers[name]
    record = worker.read_record(printer, int(number))
    print("before:", record[setting])
    is_number = setting != "CustomMediaName" and value.lstrip("-").isdigit()
    record[setting] = int(value) if is_number else value
    worker.write_record(printer, int(number), record)
    print("after:", worker.read_record(printer, int(number))[setting])
