// The built program: its ready line, its end and its messages.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <picojson.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "virtual_printer/FileDescriptor.h"

namespace VirtualPrinter {
namespace {

/// The program with its standard output and error in pipes.
class Program {
 public:
  explicit Program(std::vector<std::string> arguments) {
    int output[2];
    int error[2];
    EXPECT_EQ(pipe(output), 0);
    EXPECT_EQ(pipe(error), 0);
    output_ = FileDescriptor(output[0]);
    error_ = FileDescriptor(error[0]);
    const FileDescriptor output_end(output[1]);
    const FileDescriptor error_end(error[1]);
    arguments.insert(arguments.begin(), VIRTUAL_PRINTER_PROGRAM);
    std::vector<char*> pointers(arguments.size() + 1);
    std::transform(arguments.begin(), arguments.end(), pointers.begin(),
                   [](std::string& argument) { return argument.data(); });
    process_ = fork();
    if (process_ == 0) {
      dup2(output[1], STDOUT_FILENO);
      dup2(error[1], STDERR_FILENO);
      execv(pointers[0], pointers.data());
      _exit(127);
    }
  }

  std::string ReadLine() const {
    std::string line;
    for (char byte = 0; read(output_.Get(), &byte, 1) == 1 && byte != '\n';) line += byte;
    return line;
  }
  std::string Errors() const {
    std::string text;
    for (char byte = 0; read(error_.Get(), &byte, 1) == 1;) text += byte;
    return text;
  }
  void Signal(int signal) const { EXPECT_EQ(kill(process_, signal), 0); }
  /// The exit status, or -1 for another end.
  int Wait() const {
    int status = 0;
    EXPECT_EQ(waitpid(process_, &status, 0), process_);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  FileDescriptor output_;
  FileDescriptor error_;
  pid_t process_ = -1;
};

TEST(Program, TellsItsPortsAndEndsOnSignals) {
  char directory[] = "/tmp/virtual-printer-XXXXXX";
  ASSERT_NE(mkdtemp(directory), nullptr);
  const std::string link = std::string(directory) + "/printer";
  const std::string state = std::string(directory) + "/state";
  for (const int signal : {SIGTERM, SIGINT}) {
    const Program program({"--model", "ZARMO QM-V7PS Series", "--local", link, "--state", state});
    picojson::value ready;
    const std::string line = program.ReadLine();
    ASSERT_EQ(picojson::parse(ready, line), "") << line;
    EXPECT_EQ(ready.get("model").to_str(), "ZARMO QM-V7PS Series");
    EXPECT_GT(ready.get("snmp").get<double>(), 0);
    EXPECT_GT(ready.get("raw").get<double>(), 0);
    EXPECT_EQ(ready.get("local").to_str(), link);
    EXPECT_EQ(access(link.c_str(), R_OK | W_OK), 0);
    program.Signal(signal);
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_EQ(program.Errors(), "");
    EXPECT_NE(access(link.c_str(), F_OK), 0);
    EXPECT_EQ(access(state.c_str(), R_OK), 0);
  }
  // The state of one family is no other family's.
  const Program other({"--model", "QM-T84 Series", "--state", state});
  EXPECT_EQ(other.Wait(), 1);
  EXPECT_NE(other.Errors().find("Corvel"), std::string::npos);
  EXPECT_EQ(unlink(state.c_str()), 0);
  EXPECT_EQ(rmdir(directory), 0);
}

TEST(Program, EndsWithAMessageWhenItCannotRun) {
  struct FailureCase {
    std::vector<std::string> arguments;
    int status;
  };
  const FailureCase cases[] = {
      {{"--model", "QM-X Series"}, 2},
      {{"--model", "QM-V5 Series", "--fault", "fire"}, 2},
      {{"--model", "QM-V5 Series", "--listen", "192.0.2.1"}, 1},
      {{"--model", "QM-V5 Series", "--local", "/tmp"}, 1},
      {{"--model", "QM-V5 Series", "--state", "/dev/null"}, 1},
  };
  for (const auto& row : cases) {
    const Program program(row.arguments);
    EXPECT_EQ(program.Wait(), row.status) << testing::PrintToString(row.arguments);
    EXPECT_NE(program.Errors(), "") << testing::PrintToString(row.arguments);
    EXPECT_EQ(program.ReadLine(), "");
  }
}

}  // namespace
}  // namespace VirtualPrinter
