// The command `doctor`.
#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <sstream>

#include "printer_media/Advice.h"
#include "printer_media/Commands.h"
#include "printer_media/Terminal.h"
#include "printer_media/Text.h"

namespace PrinterMedia {

namespace fs = std::filesystem;

namespace {

enum class Grade { kGood, kNote, kBad };

struct Finding {
  Grade grade;
  std::string about;
  std::string text;
  std::string advice;
};

const char* GradeText(Grade grade) {
  switch (grade) {
    case Grade::kGood:
      return "ok";
    case Grade::kNote:
      return "note";
    default:
      return "bad";
  }
}

struct NeededFile {
  const char* path;  // beside the worker
  Grade without;
  const char* advice;
};

constexpr char kInstall[] = "Install the worker again: it finds this file beside itself alone.";

constexpr NeededFile kFiles[] = {
    {"SupportPrinterList.xml", Grade::kBad,
     "Without it no printer is listed. Install the one that ships, and list your printers in it."},
    {"ZIO/ZIOP.plugin/Contents/Info.plist", Grade::kBad, kInstall},
    {"ZIO/ZIOP.plugin/Contents/Linux/libZIOP.so", Grade::kBad, kInstall},
    {"ZIO/ZIOP.plugin/Contents/Linux/libZIOPDiscovery.so", Grade::kNote,
     "Without it printers are not searched for; those that are configured are listed."},
    {"ZIO/ZIOP.plugin/Contents/Linux/libZIOPNetwork.so", Grade::kNote,
     "Without it the network is not searched."},
    {"ZIO/ZIOP.plugin/Contents/Linux/libZIOPQueues.so", Grade::kNote,
     "Without it the printing system's queues are not searched."},
};

// Where the file lies that is beside the worker, or linked from there.
std::string ListPath(const fs::path& folder) {
  std::error_code failure;
  const fs::path path = folder / "SupportPrinterList.xml";
  const fs::path place = fs::canonical(path, failure);
  return (failure ? path : place).string();
}

// What is found, in the order in which it is looked for.
class Diagnosis {
 public:
  explicit Diagnosis(Host& host) : host_(host) {}

  void Run() {
    const fs::path worker = WorkerPath();
    if (!CheckWorker(worker)) return;
    std::error_code failure;
    // A worker that is started by a link looks beside itself, not beside the link.
    const fs::path folder = fs::canonical(worker, failure).parent_path();
    CheckFiles(folder);
    if (!CheckList(folder)) return;
    Progress progress("asking printers");
    int done = 0;
    for (const Printer& printer : host_.Printers()) {
      progress.Show(done++, static_cast<int>(host_.Printers().size()));
      CheckPrinter(printer);
    }
  }

  const std::vector<Finding>& findings() const { return findings_; }

 private:
  bool Add(Grade grade, const std::string& about, const std::string& text,
           const std::string& advice = "") {
    findings_.push_back({grade, about, text, advice});
    return grade != Grade::kBad;
  }

  bool CheckWorker(const fs::path& worker) {
    std::error_code failure;
    if (!fs::exists(worker, failure)) {
      return Add(Grade::kBad, "worker", worker.string() + " is not there",
                 "Set PRINTER_NATIVE_PROCESS to the worker's path, or install the worker.");
    }
    if (access(worker.c_str(), X_OK) != 0 || !fs::is_regular_file(worker, failure)) {
      return Add(Grade::kBad, "worker", worker.string() + " cannot be started",
                 "It is to be a program that this user may execute.");
    }
    return Add(Grade::kGood, "worker", worker.string());
  }

  void CheckFiles(const fs::path& folder) {
    for (const NeededFile& file : kFiles) {
      const fs::path path = folder / file.path;
      if (access(path.c_str(), R_OK) == 0) continue;
      Add(file.without, path.filename(), "missing or not readable: " + path.string(), file.advice);
    }
  }

  bool CheckList(const fs::path& folder) {
    std::size_t count = 0;
    try {
      count = host_.Printers().size();
    } catch (const Failure& failure) {
      return Add(Grade::kBad, "list", failure.message(), failure.advice());
    }
    const bool is_explained = ExplainErrors();
    if (count > 0) return Add(Grade::kGood, "list", Counted(count, "printer"));
    return Add(Grade::kBad, "list", "no printers are listed",
               is_explained ? ""
                            : "List printers in " + ListPath(folder) +
                                  ", or switch on a search there: the key Discovery.");
  }

  // What the worker said of printers that it left out.
  bool ExplainErrors() {
    std::istringstream lines(host_.errors());
    bool is_any = false;
    for (std::string line; std::getline(lines, line); is_any = true) {
      Add(Grade::kNote, "left out", line, AdviceOn(line));
    }
    return is_any;
  }

  void CheckPrinter(const Printer& printer) {
    try {
      if (&host_.Find(printer.name) != &printer) {
        Add(Grade::kBad, printer.name, "another printer of this name is listed before it",
            "That one is used in its place: give each a name of its own in the printer list.");
        return;
      }
      const nlohmann::json status = host_.Status(printer);
      const bool is_ready = status.value("StatusCode", nlohmann::json()) == 4;
      // Some answer for their status alone.
      host_.Read(printer, 1, 0);
      Add(Grade::kGood, printer.name, is_ready ? "answers, ready" : "answers, not ready");
    } catch (const Failure& failure) {
      Add(Grade::kBad, printer.name, failure.message(), PrinterAdvice(failure));
    }
  }

  static std::string PrinterAdvice(const Failure& failure) {
    switch (failure.code().value_or(0)) {
      case -4:
        return "May this user open its device (for /dev/usb/lp*, mostly the group lp)? Does the "
               "host in its device URI exist?";
      case -6:
        return "Is it switched on? Is the address in its device URI right? Does a firewall stop "
               "SNMP?";
      default:
        return failure.advice();
    }
  }

  Host& host_;
  std::vector<Finding> findings_;
};

void PrintFindings(const std::vector<Finding>& findings) {
  for (const Finding& finding : findings) {
    std::string grade = GradeText(finding.grade);
    grade.resize(4, ' ');
    std::cout << grade << "  " << OnOneLine(Printable(finding.about)) << ": "
              << Printable(finding.text) << '\n';
    if (!finding.advice.empty()) std::cout << "      " << Printable(finding.advice) << '\n';
  }
}

nlohmann::ordered_json Json(const std::vector<Finding>& findings) {
  auto json = nlohmann::ordered_json::array();
  for (const Finding& finding : findings) {
    nlohmann::ordered_json row{{"grade", GradeText(finding.grade)}};
    row["about"] = TextToJson(finding.about);
    row["text"] = Printable(finding.text);
    if (!finding.advice.empty()) row["advice"] = Printable(finding.advice);
    json.push_back(row);
  }
  return json;
}

}  // namespace

Exit Diagnose(Host& host, const Options& options) {
  Diagnosis diagnosis(host);
  diagnosis.Run();
  if (options.is_json) {
    std::cout << Json(diagnosis.findings()).dump(2) << '\n';
  } else {
    PrintFindings(diagnosis.findings());
  }
  for (const Finding& finding : diagnosis.findings()) {
    if (finding.grade == Grade::kBad) return Exit::kRefused;
  }
  return Exit::kDone;
}

}  // namespace PrinterMedia
