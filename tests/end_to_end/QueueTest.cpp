// Printers that have a queue in the printing system.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>

#include <chrono>
#include <fstream>
#include <string>

#include "tests/end_to_end/PrintSystem.h"
#include "tests/end_to_end/Rig.h"
#include "util/FileDescriptor.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr char kModel[] = "QM-R310 Series";

// A worker that lists one printer of its own, and the queues' printers of two models.
class QueueTest : public testing::Test {
 protected:
  Outcome List(int timeout_ms) const {
    std::ofstream(folder_.path() / "SupportPrinterList.xml")
        << R"(<plist version="1.0"><dict><key>Printers</key><array><dict>)"
        << "<key>InfoTargetName</key><string>own</string>"
        << "<key>InfoPrinterName</key><string>" << kModel << "</string>"
        << "<key>DeviceURI</key><string>" << own_.Uri() << "</string></dict></array>"
        << "<key>SupportedPrinters</key><array><string>" << kModel << "</string>"
        << "<string>QM-R410 Series</string></array>"
        << "<key>Discovery</key><dict><key>CUPS</key><true/>"
        << "<key>TimeoutMilliseconds</key><integer>" << timeout_ms << "</integer></dict>"
        << "</dict></plist>";
    return folder_.Run(Line(kList));
  }

  // Asks the printer of that name for its serial number, in a process of its own.
  std::string SerialOf(const std::string& name, const std::string& model) const {
    return folder_.Run(Line(Request("GetStatusReply", name, model, R"(["SerialNumber"])"))).output;
  }

  const VirtualPrinter own_{kModel};
  const WorkerFolder folder_{{}};
};

constexpr char kOwnAlone[] =
    R"({"GetPrinterList":0,"Reply":{"DeviceName":"QM-R310 Series","PrinterName":"own"}})";

TEST_F(QueueTest, QueuesAreListedAndTheirPrintersReached) {
  const VirtualPrinter with_driver(kModel, {"--serial", "SN00000001"});
  const VirtualPrinter without_driver("QM-R410 Series", {"--serial", "SN00000002"});
  const std::string name = "B\xC3\xBCro&1'+%41";
  const PrintSystem system(
      {{name, "Zarmo QM-R310 Series", "", with_driver.Uri("contimeout=9&waiteof=false")},
       {"raw", "", "QM-R410 Series", without_driver.Uri()},
       {"twin", kModel, "", own_.Uri()},
       {"laser", "Laser 1", "", "ipp://localhost/ipp/print"},
       {"cable", kModel, "", "usb://Zarmo/No%20such%20device?serial=1"},
       {"nowhere", kModel, "", "file:///dev/null"}});
  const Outcome listed = List(60000);
  EXPECT_EQ(listed.output, R"({"GetPrinterList":0,"Reply":[)"
                           R"({"DeviceName":"QM-R310 Series","PrinterName":"own"},)"
                           R"({"DeviceName":"QM-R310 Series","PrinterName":")" +
                               name +
                               R"("},)"
                               R"({"DeviceName":"QM-R410 Series","PrinterName":"raw"}]})");
  EXPECT_THAT(listed.errors,
              AllOf(HasSubstr(R"(ZIOP: printing system: left out: "cable" (its device has no)"
                              R"( node), "nowhere" (no port for scheme "file"))"),
                    HasSubstr(R"("Laser 1")"), Not(HasSubstr(R"("all")"))));
  EXPECT_THAT(SerialOf(name, kModel), HasSubstr("SN00000001"));
  EXPECT_THAT(SerialOf("raw", "QM-R410 Series"), HasSubstr("SN00000002"));
}

TEST_F(QueueTest, NoServerAndASilentOneCostALine) {
  const PrintSystemFolder nobody;
  const Outcome none = List(60000);
  EXPECT_EQ(none.output, kOwnAlone);
  EXPECT_THAT(none.errors, HasSubstr("printing system: no server: "));

  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  nobody.socket().copy(address.sun_path, sizeof address.sun_path - 1);
  const Ravik::FileDescriptor silent(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  ASSERT_EQ(::bind(silent.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(::listen(silent.get(), 1), 0);
  const auto start = std::chrono::steady_clock::now();
  const Outcome outcome = List(300);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  EXPECT_EQ(outcome.output, kOwnAlone);
  EXPECT_THAT(outcome.errors, HasSubstr("printing system: the server did not answer in time"));
  EXPECT_EQ(outcome.status, 0);
}

}  // namespace
