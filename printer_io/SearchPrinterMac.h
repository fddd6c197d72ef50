// The printers that this machine can reach.
#ifndef PRINTER_IO_SEARCHPRINTERMAC_H_
#define PRINTER_IO_SEARCHPRINTERMAC_H_

#include <vector>

#include "GantryCore/PrinterVO.h"

namespace Ravik {

class ISearchPrinter {
 public:
  // Appends the plug-in's printers to printers, in its order, and stores the list for later opens.
  // Always 0; without a plug-in or a supported-printer file nothing is appended and the stored list
  // is removed. A value of the wrong class ends the search, and what was appended stays. A record
  // without a name that can be written as text throws std::logic_error; what was appended before
  // stays. Blocks while the plug-in searches.
  static int Search(std::vector<PrinterVO>& printers);
};

}  // namespace Ravik

#endif  // PRINTER_IO_SEARCHPRINTERMAC_H_
