// Prints where the files beside this executable are, a line each; an empty line for none.
#include <cstdio>
#include <string>

#include "util/CFText.h"
#include "util/ZIOLibrary.h"

int main() {
  for (const auto& path : {ZIOLibrary::GetLibraryPath(), ZIOLibrary::GetSupportPrinterListPath()}) {
    std::string text;
    Ravik::CopyText(path.get(), kCFStringEncodingUTF8, text);
    std::puts(text.c_str());
  }
}
