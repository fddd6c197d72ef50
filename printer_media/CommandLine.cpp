#include "printer_media/CommandLine.h"

#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstring>
#include <exception>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "printer_media/Commands.h"
#include "printer_media/Completion.h"
#include "printer_media/Interruption.h"
#include "printer_media/Suggestion.h"
#include "printer_media/Text.h"

namespace PrinterMedia {

namespace {

using Command = Exit (*)(Host&, const Options&);

constexpr char kAbout[] =
    "Reads and writes the media settings that large-format printers store.\n\n"
    "A printer stores the settings of a medium as a numbered record; a record that is in use is\n"
    "registered under a name. PRINTER is a name from `printer-media list`, RECORD a number or the\n"
    "name of a registered record. Names are understood in upper and lower case.\n";

constexpr char kFooter[] =
    "\nTo begin with:\n"
    "  printer-media list                                  which printers are there?\n"
    "  printer-media names Studio                          which records does one have?\n"
    "  printer-media get Studio Banner                     what is in one?\n"
    "  printer-media set Studio Banner MediaSuction=5      change it\n"
    "  printer-media save Studio studio.json               keep all of them\n"
    "  printer-media doctor                                what is wrong?\n"
    "\n"
    "`printer-media COMMAND --help` says more of a command; --json and --answer-time go with all.\n"
    "Exit status: 0 done, 1 refused or not answered, 2 wrong usage, 3 no worker, 4 a file,\n"
    "5 differences, 6 not confirmed.\n";

constexpr char kCommandFooter[] =
    "\n--json and --answer-time go with all commands: printer-media --help says what they do.\n";

// Checks that the value of an option is a number of the type from first to last.
template <typename Number>
CLI::Validator Between(Number first, Number last, const std::string& range) {
  const auto check = [=](std::string& text) {
    Number number = 0;
    const bool is_number = CLI::detail::lexical_cast(text, number);
    const bool is_fit = is_number && number >= first && number <= last;
    return is_fit ? std::string() : Quoted(text) + " is no number from " + range;
  };
  return {check, ""};
}

CLI::Validator NotEmpty() {
  const auto check = [](const std::string& text) {
    return text.empty() ? std::string("the name is empty") : std::string();
  };
  return {check, ""};
}

// Adds the commands to the parser; the one that is given is in `chosen` afterwards.
class Commands {
 public:
  Commands(CLI::App& app, Options& options) : app_(app), options_(options) {}

  void AddReading() {
    Add("list",
        "List the printers and their device names, layouts, and whether they tell their "
        "firmware version",
        ListPrinters);
    AddPrinter(
        Add("status", "Show a printer's state, error, warnings and serial number", ShowStatus));
    AddPrinter(Add("firmware", "Show a printer's firmware version", ShowFirmware));
    AddPrinter(Add("names", "List the registered records of a printer", ListNames));
    CLI::App* const get = Add("get", "Show the settings of a record", GetRecord);
    AddRecord(get);
    AddLayout(get);
  }

  void AddWriting() {
    CLI::App* const set = Add("set", "Change settings of a record", SetRecord);
    AddRecord(set);
    set->add_option("NAME=VALUE", options_.assignments,
                    "Settings and what they become; without any, the settings are listed");
    AddLayout(set);
    AddYes(set);
    set->footer(
        "\nThe record is read first, and what would change is shown. Settings that are not\n"
        "given stay as they are. Names and values are checked before anything is sent.\n"
        "Example: printer-media set Studio 3 PlatenGap=2.5 MediaTension=-5\n" +
        std::string(kCommandFooter));
    CLI::App* const init =
        Add("init", "Reset a record, or all, to factory state", InitialiseRecords);
    AddPrinter(init);
    init->add_option("RECORD", options_.record, "Number or name of the record, or All")->required();
    AddYes(init);
  }

  void AddSaving() {
    CLI::App* const save =
        Add("save", "Save all registered records of a printer to a file", SaveRecords);
    AddPrinter(save);
    AddFile(save);
    AddYes(save);
    CLI::App* const restore =
        Add("restore", "Write the records of a saved file to a printer", RestoreRecords);
    AddPrinter(restore);
    AddFile(restore);
    AddYes(restore);
    restore->footer(
        "\nThe file is checked whole, and compared with the printer, before anything is\n"
        "written. Records that are the same already, and those that the file does not\n"
        "hold, stay as they are. What is written is read back.\n" +
        std::string(kCommandFooter));
    CLI::App* const compare = Add("compare",
                                  "Show in which records two printers, or a printer and a "
                                  "saved file, differ",
                                  CompareRecords);
    compare->add_option("PRINTER", options_.first, "Name of a printer, or a saved file")
        ->required();
    compare->add_option("PRINTER|FILE", options_.second, "What it is compared with")->required();
    compare->footer(
        "\nWhat holds a slash or ends in .json is a file. Exit status: 0 when they are the\n"
        "same, 5 when they differ.\n" +
        std::string(kCommandFooter));
    Add("doctor", "Check the worker, its files and every printer, and say what to mend", Diagnose);
  }

  Command chosen() const { return chosen_; }

 private:
  CLI::App* Add(const std::string& name, const std::string& about, Command command) {
    CLI::App* const added = app_.add_subcommand(name, about);
    added->fallthrough();
    added->group("Commands");
    added->footer(kCommandFooter);
    added->callback([this, command] { chosen_ = command; });
    return added;
  }

  void AddPrinter(CLI::App* command) {
    command->add_option("PRINTER", options_.printer, "Name of the printer, as listed")->required();
  }

  void AddRecord(CLI::App* command) {
    AddPrinter(command);
    command->add_option("RECORD", options_.record, "Number or name of the record")->required();
  }

  void AddFile(CLI::App* command) {
    command->add_option("FILE", options_.file, "The file with the records")
        ->required()
        ->check(NotEmpty());
  }

  void AddLayout(CLI::App* command) {
    command
        ->add_option("--layout", options_.layout,
                     "Layout of the record: 0 (the usual one), 1, or 128 for the whole record "
                     "as one block")
        ->type_name("N")
        ->check(Between(0, 255, "0 to 255"));
  }

  void AddYes(CLI::App* command) {
    command->add_flag("--yes,-y", options_.is_agreed, "Do it without a question");
  }

  CLI::App& app_;
  Options& options_;
  Command chosen_ = nullptr;
};

void AddGlobal(CLI::App& app, Options& options) {
  app.set_version_flag("--version", "printer-media " PRINTER_MEDIA_VERSION);
  app.add_flag("--json", options.is_json, "Print JSON for programs");
  app.add_option("--answer-time", options.answer_time_s,
                 "How long printers may take for an answer, from 0.001 to 100000: timeout x "
                 "(1 + retries) of their device URIs, 4 unless these say otherwise")
      ->type_name("SECONDS")
      ->check(Between(0.001, 100000.0, "0.001 to 100000"));
  app.require_subcommand(1, 1);
  for (const char* const label : {"REQUIRED", "TEXT", "INT", "FLOAT", "OPTIONS"}) {
    app.get_formatter()->label(label, std::strcmp(label, "OPTIONS") == 0 ? "OPTION..." : "");
  }
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");
  app.footer(kFooter);
}

void Report(const Failure& failure, bool is_json) {
  std::cerr << "printer-media: " << Printable(failure.message()) << '\n';
  if (!failure.advice().empty()) std::cerr << Printable(failure.advice()) << '\n';
  if (is_json) std::cout << failure.Json() << '\n';
}

[[noreturn]] void EndInterrupted(const Interrupted& interruption) {
  std::cerr << "\nprinter-media: interrupted";
  if (!interruption.half_written.empty()) {
    std::cerr << "; " << Printable(interruption.half_written)
              << " may be written in part: read it to see";
  }
  std::cerr << std::endl;
  std::cout.flush();
  EndBySignal(interruption.signal());
}

Exit RunCommand(Command command, const Options& options) {
  // Outlives the host, whose worker is to have ended before this process does.
  std::optional<Interrupted> interruption;
  try {
    const auto answer_time = std::chrono::milliseconds(
        static_cast<std::chrono::milliseconds::rep>(options.answer_time_s * 1000));
    Host host(answer_time);
    return command(host, options);
  } catch (const Failure& failure) {
    Report(failure, options.is_json);
    return failure.status();
  } catch (const Interrupted& signal) {
    interruption = signal;
  } catch (const std::exception& error) {
    Report(Failure(Exit::kWorker, error.what()), options.is_json);
    return Exit::kWorker;
  }
  EndInterrupted(*interruption);
}

// What is opened later is not to take the place of a standard stream that is closed.
void OccupyStandardDescriptors() {
  int descriptor = open("/dev/null", O_RDONLY);
  while (descriptor >= 0 && descriptor <= STDERR_FILENO) descriptor = open("/dev/null", O_RDONLY);
  if (descriptor >= 0) close(descriptor);
}

// The names of the commands.
std::vector<std::string> CommandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* const command : app.get_subcommands(nullptr)) {
    if (!command->get_group().empty()) names.push_back(command->get_name());
  }
  return names;
}

// What is wrong with the command line.
Failure UsageFailure(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<CLI::App*> commands = app.get_subcommands();
  const std::vector<std::string> names = CommandNames(app);
  const std::vector<std::string> words = app.remaining(true);
  const std::string command = commands.empty() ? "" : commands[0]->get_name() + ' ';
  const std::string help = "printer-media " + command + "--help says more.";
  if (commands.empty()) {
    const bool is_given = !words.empty() && words[0][0] != '-';
    return {Exit::kUsage,
            is_given ? "there is no command " + Quoted(words[0]) + DidYouMean(words[0], names)
                     : "no command is given",
            "The commands are " + Listed(names) + "; " + help};
  }
  const std::string what = error.what();
  if (error.get_name() == "ArgumentMismatch") {
    return {Exit::kUsage, what.substr(0, what.find(':')) + " goes with one value", help};
  }
  if (words.empty()) return {Exit::kUsage, what, help};
  return {Exit::kUsage, "not expected: " + CLI::detail::join(words, " "), help};
}

// Says what the command line lacks, or the help that it asks for.
int ReportUsage(const CLI::App& app, const CLI::ParseError& error, bool is_json) {
  if (error.get_exit_code() == 0) return app.exit(error);
  Report(UsageFailure(app, error), is_json);
  return static_cast<int>(Exit::kUsage);
}

}  // namespace

int Run(int argc, char* argv[]) {
  // Not for people: the shells' completion asks with the line up to the cursor.
  if (argc == 3 && std::string_view(argv[1]) == "complete") {
    PrintCompletions(argv[2]);
    return static_cast<int>(Exit::kDone);
  }
  OccupyStandardDescriptors();
  CatchSignals();
  Options options;
  CLI::App app(kAbout, "printer-media");
  AddGlobal(app, options);
  Commands commands(app, options);
  commands.AddReading();
  commands.AddWriting();
  commands.AddSaving();
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const bool is_json = std::find(argv, argv + argc, std::string_view("--json")) != argv + argc;
    return ReportUsage(app, error, is_json);
  }
  const Exit status = RunCommand(commands.chosen(), options);
  if (!std::cout.flush()) {
    std::cerr << "printer-media: standard output cannot be written\n";
    return static_cast<int>(Exit::kFile);
  }
  return static_cast<int>(status);
}

}  // namespace PrinterMedia
