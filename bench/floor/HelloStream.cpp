// The least that a program of the standard streams does that a host starts for one request.
#include <iostream>
#include <string>

int main() {
  std::string line;
  std::getline(std::cin, line);
  std::cout << "hello" << std::flush;
  return std::cout ? 0 : 1;
}
