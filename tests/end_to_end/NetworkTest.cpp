// Printers that are found on the network.
#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>

#include <deque>
#include <fstream>
#include <string>
#include <vector>

#include "tests/Loopback6.h"
#include "tests/end_to_end/Rig.h"
#include "util/FileDescriptor.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr char kModel[] = "QM-R410 Series";

// A UDP port that nobody has.
std::string FreePort() {
  const Ravik::FileDescriptor probe(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  socklen_t size = sizeof address;
  EXPECT_EQ(bind(probe.get(), reinterpret_cast<const sockaddr*>(&address), size), 0);
  EXPECT_EQ(getsockname(probe.get(), reinterpret_cast<sockaddr*>(&address), &size), 0);
  return std::to_string(ntohs(address.sin_port));
}

class NetworkTest : public testing::Test {
 protected:
  // Starts a printer on an address, with options.
  void Start(const std::string& address, const std::string& port, const std::string& serial,
             const std::vector<std::string>& faults) {
    std::vector<std::string> options = {"--listen", address, "--snmp", port, "--serial", serial};
    for (const std::string& fault : faults) {
      options.insert(options.end(), {"--fault", fault});
    }
    printers_.emplace_back(kModel, options);
  }

  // The answer of a worker that searches at the addresses, in that many milliseconds.
  std::string List(const std::vector<std::string>& addresses, int timeout = 1000) const {
    std::ofstream list(folder_.path() / "SupportPrinterList.xml");
    list << R"(<plist version="1.0"><dict><key>SupportedPrinters</key><array><string>)" << kModel
         << "</string></array><key>Discovery</key><dict><key>Network</key><true/>"
         << "<key>Addresses</key><array>";
    for (const std::string& address : addresses) list << "<string>" << address << "</string>";
    list << "</array><key>TimeoutMilliseconds</key><integer>" << timeout
         << "</integer></dict></dict></plist>";
    list.close();
    const Outcome outcome = folder_.Run(Line(kList));
    EXPECT_EQ(outcome.errors, "");
    return outcome.output;
  }

  const WorkerFolder folder_{{}};
  std::deque<VirtualPrinter> printers_;
};

TEST_F(NetworkTest, ListsEveryPrinterAndReachesIt) {
  const std::string port = FreePort();
  const std::string other = FreePort();
  const bool has_loopback6 = HasLoopback6();
  Start("127.11.0.1", port, "SN00000002", {"loss=20"});
  Start("127.11.0.2", port, "SN00000003", {"loss=20"});
  Start("127.11.0.3", port, "SN00000004",
        {"lack=sysDescr", "lack=hrDeviceDescr", "lack=prtGeneralSerialNumber"});
  Start("127.11.0.4", port, "SN00000005", {"lack=ppmPrinterIEEE1284DeviceId", "delay=700"});
  Start(has_loopback6 ? "::1" : "127.11.0.6", port, "SN00000006", {"duplicate"});
  Start("0.0.0.0", other, "SN00000001", {});  // what broadcasts reach
  const std::string output =
      List({"127.11.0.1:" + port, "127.11.0.2:" + port, "127.11.0.3:" + port, "127.11.0.4:" + port,
            "127.11.0.5:" + port, (has_loopback6 ? "[::1]:" : "127.11.0.6:") + port,
            "127.255.255.255:" + other},
           3000);
  std::string printers;
  for (char last = '1'; last <= '6'; ++last) {
    const std::string name = std::string(kModel) + " (SN0000000" + last + ")";
    printers += printers.empty() ? "" : ",";
    printers += R"({"DeviceName":"QM-R410 Series","PrinterName":")" + name + "\"}";
    EXPECT_THAT(
        folder_.Run(Line(Request("GetStatusReply", name, kModel, R"(["SerialNumber"])"))).output,
        HasSubstr(std::string("SN0000000") + last));
  }
  EXPECT_EQ(output, R"({"GetPrinterList":0,"Reply":[)" + printers + "]}");
  if (!has_loopback6) GTEST_SKIP() << kNoLoopback6;
}

TEST_F(NetworkTest, APrinterThatMissesASearchStaysListed) {
  const std::string port = FreePort();
  const std::string here = "127.11.1.1:" + port;
  Start("127.11.1.1", port, "SN00000007", {});
  EXPECT_THAT(List({here}), HasSubstr("(SN00000007)"));
  EXPECT_TRUE(printers_.front().Stop());
  EXPECT_THAT(List({here}), HasSubstr("(SN00000007)"));
  Start("127.11.1.1", port, "SN00000008", {});
  EXPECT_THAT(List({here}), AllOf(HasSubstr("(SN00000008)"), Not(HasSubstr("(SN00000007)"))));
  EXPECT_THAT(List({"127.11.1.2:" + port}), Not(HasSubstr("(SN0000000")));
}

}  // namespace
