"""Makes the requests of each line at once, writes a line of outcomes: probe.py MODULES WORKER"""

import json
import sys
from concurrent.futures import ThreadPoolExecutor

sys.path.insert(0, sys.argv[1])
from printer_worker import Printer, PrinterWorker


def outcome(worker, call):
    try:
        return {"reply": worker.request(call["command"], Printer(*call["printer"]),
                                        call["parameter"], time_limit=call["limit"])}
    except Exception as error:
        return {"error": type(error).__name__, "text": str(error),
                "code": getattr(error, "code", None)}


with PrinterWorker(sys.argv[2]) as worker, ThreadPoolExecutor(16) as threads:
    for line in sys.stdin:
        outcomes = threads.map(lambda call: outcome(worker, call), json.loads(line))
        print(json.dumps(list(outcomes)), flush=True)
