// printer-media: the worker's commands for people and scripts.
#include "printer_media/CommandLine.h"

int main(int argc, char* argv[]) {
  return PrinterMedia::Run(argc, argv);
}
