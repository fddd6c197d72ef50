// Runs what the command line says.
#ifndef PRINTER_MEDIA_COMMANDLINE_H_
#define PRINTER_MEDIA_COMMANDLINE_H_

namespace PrinterMedia {

// The program's exit status; ends the process by a signal that interrupted it.
int Run(int argc, char* argv[]);

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_COMMANDLINE_H_
