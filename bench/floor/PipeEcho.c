// Answers each line on standard input with the text that it was started with: the least that a
// program does that a host keeps running.
#include <string.h>
#include <unistd.h>

int main(int count, char** arguments) {
  char line[65536];
  if (count != 2) return 2;
  const size_t length = strlen(arguments[1]);
  for (;;) {
    const ssize_t size = read(STDIN_FILENO, line, sizeof line);
    if (size <= 0) return size != 0;
    if (line[size - 1] != '\n') continue;
    if (write(STDOUT_FILENO, arguments[1], length) != (ssize_t)length) return 1;
  }
}
