// Bytes of commands, built from parameters.
#include "GantryCore/PrinterCommand.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace Ravik {
namespace {

using Bytes = std::vector<unsigned char>;
using Fields = std::map<std::string, _t_COMMAND_INFOMATION>;

CommandInfoVO Descriptor(const Fields& fields, const Bytes& format = {}) {
  CommandInfoVO info;
  info.command = {'E', 'X'};
  info.format = format;
  info.valueInfo = fields;
  return info;
}

ParameterMapVO Parameters(const std::map<std::string, value>& values) {
  ParameterMapVO parameters;
  for (const auto& [key, one] : values) parameters.insert(key, one);
  return parameters;
}

TEST(VariablePart, LaysParametersOut) {
  const value kText("ABCDE");
  const struct {
    const char* what;
    Fields fields;
    std::map<std::string, value> values;
    Bytes part;
  } kCases[] = {
      {"integers are little-endian and cut to their field",
       {{"A", {0, 2, 0, VALUE_INTEGER}}, {"B", {2, 1, 0, VALUE_INTEGER}}},
       {{"A", value(0x1234)}, {"B", value(-2)}},
       {0x34, 0x12, 0xFE}},
      {"a default is one byte, not corrected",
       {{"MediaTension", {0, 3, 0x1FF, VALUE_INTEGER}}},
       {},
       {0xFF, 0, 0}},
      {"a number is corrected",
       {{"MediaTension", {0, 1, 255, VALUE_INTEGER}}},
       {{"MediaTension", value(-5)}},
       {123}},
      {"a known name is its byte, not corrected",
       {{"InitializeCustomMedia", {0, 1, 0, VALUE_INTEGER}}},
       {{"InitializeCustomMedia", value("All")}},
       {128}},
      {"an unknown name is the default byte",
       {{"InitializeCustomMedia", {0, 2, 0x1207, VALUE_INTEGER}}},
       {{"InitializeCustomMedia", value("all")}},
       {7, 0}},
      {"an integer field above four bytes ends in zeros",
       {{"A", {0, 6, 0, VALUE_INTEGER}}},
       {{"A", value(-1)}},
       {0xFF, 0xFF, 0xFF, 0xFF, 0, 0}},
      {"a missing text shortens the part, a gap is kept",
       {{"A", {2, 1, 9, VALUE_INTEGER}},
        {"B", {3, 4, 0, VALUE_TEXT}},
        {"C", {0, 1, 8, VALUE_INTEGER}}},
       {},
       {8, 0}},
      {"a text field takes no number",
       {{"A", {0, 1, 9, VALUE_INTEGER}}, {"B", {1, 4, 0, VALUE_TEXT}}},
       {{"B", value(65)}},
       {9}},
      {"a text beyond its field still counts in full",
       {{"A", {0, 2, 0, VALUE_TEXT}}, {"B", {2, 1, 7, VALUE_INTEGER}}},
       {{"A", kText}},
       {'A', 'B', 7, 0, 0, 0}},
      {"a text short of its field cuts the end",
       {{"A", {0, 8, 0, VALUE_TEXT}}, {"B", {8, 1, 7, VALUE_INTEGER}}},
       {{"A", kText}},
       {'A', 'B', 'C', 'D', 'E', 0}},
      {"hexadecimal text is two digits a byte",
       {{"A", {0, 2, 0, VALUE_HEX}}},
       {{"A", value("0aFF")}},
       {0x0A, 0xFF}},
      {"fields of one position: the later key wins",
       {{"A", {0, 1, 1, VALUE_INTEGER}}, {"B", {0, 1, 2, VALUE_INTEGER}}},
       {},
       {2, 0}},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(CPrinterCommand::MakeVariablePart(Parameters(c.values), Descriptor(c.fields)), c.part)
        << c.what;
  }
}

TEST(VariablePart, StaysInsideItsBuffer) {
  const Fields kFields = {{"A", {510, 40, 0, VALUE_TEXT}},
                          {"B", {512, 1, 1, VALUE_INTEGER}},
                          {"C", {0xFFFFFFFF, 0xFFFFFFFF, 0, VALUE_TEXT}}};
  const std::string long_text(600, 'x');
  const Bytes part = CPrinterCommand::MakeVariablePart(
      Parameters({{"A", value(long_text)}, {"C", value("yy")}}), Descriptor(kFields));
  ASSERT_EQ(part.size(), 603U);
  Bytes expected(603);
  expected[510] = expected[511] = 'x';
  EXPECT_EQ(part, expected);
}

TEST(PrinterCommand, LengthCountsFormatAndVariablePart) {
  const Bytes format = {0xF0, 0xF1};
  CPrinterCommand command;
  const auto info = Descriptor({{"A", {0, 300, 0, VALUE_TEXT}}}, format);
  ASSERT_TRUE(command.SetCommand(Parameters({{"A", value(std::string(300, 'x'))}}), info));
  Bytes expected = {'E', 'X', 0x2E, 0x01, 0xF0, 0xF1};
  expected.resize(306, 'x');
  EXPECT_EQ(command.GetCommand().bytes(), expected);
  EXPECT_EQ(command.GetCommandForSpooler().bytes(), expected) << "no flag, no frame";
  EXPECT_EQ(command.GetCommandAscii().substr(0, 14), "45582E01F0F178");
  EXPECT_FALSE(command.SetCommand({}, info)) << "nothing to send";
  EXPECT_TRUE(command.GetCommand().bytes().empty());
}

TEST(PrinterCommand, RecordWriteOfNumberAndName) {
  CPrinterCommand command;
  ASSERT_TRUE(
      command.Set("QM-T44 Series", WRITE_CUSTOMMEDIA_INFO1,
                  Parameters({{"CustomMediaNo", value(3)}, {"CustomMediaName", value("Abc")}})));
  Bytes expected = {'E', 'X', 27, 0, 0, 0, 0, 0, 0x1B, 0x38, 3, 0, 0};
  expected.insert(expected.end(), 15, 0xFF);
  expected.insert(expected.end(), {'A', 'b', 'c'});
  EXPECT_EQ(command.GetCommand().bytes(), expected);
  EXPECT_TRUE(command.IsSVCmd() && command.IsRemote() && command.IsBGJC());
  EXPECT_EQ(command.GetSVCommand().bytes(), (Bytes{0x53, 0x56, 0, 0}));

  Bytes spooled = {0x1B, 0x40, 0x1B, 0x28, 0x52, 8, 0, 0, 'R', 'E', 'M', 'O', 'T', 'E', '1'};
  spooled.insert(spooled.end(), expected.begin(), expected.end());
  spooled.insert(spooled.end(), {0x53, 0x56, 0, 0, 0x1B, 0, 0, 0});
  EXPECT_EQ(command.GetCommandForSpooler().bytes(), spooled);
}

TEST(PrinterCommand, ShortCommands) {
  const struct {
    const char* device_name;
    COMMAND_KEY key;
    std::map<std::string, value> values;
    Bytes command;
  } kCases[] = {
      {"QM-V5 Series", READ_FW_VERSION, {}, {'V', 'I', 2, 0, 1, 0}},
      {"QM-V5 Series",
       WRITE_MEDIA_INITIALIZE,
       {{"InitializeCustomMedia", value("All")}},
       {'E', 'X', 7, 0, 0, 0, 0, 0, 0x1E, 0x46, 128}},
      {"QM-R310 Series",
       WRITE_MEDIA_INITIALIZE,
       {{"InitializeCustomMedia", value(1)}},
       {'E', 'X', 7, 0, 0, 0, 0, 0, 0x1E, 0x37, 129}},
      {"QM-R310 Series",
       READ_CUSTOMMEDIA_INFO2,
       {{"CustomMediaNo", value(30)}},
       {'E', 'X', 8, 0, 1, 0, 0, 0, 0x1B, 0x37, 30, 1}},
      {"QM-T84 Series",
       READ_CUSTOMMEDIA_INFO3,
       {},
       {'E', 'X', 8, 0, 1, 0, 0, 0, 0x1B, 0x37, 1, 128}},
      {"QM-T84 Series",
       READ_CUSTOMMEDIA_NAME,
       {{"CustomMediaNo", value(4)}},
       {'E', 'X', 7, 0, 1, 0, 0, 0, 0x1D, 4, 0}},
  };
  for (const auto& c : kCases) {
    CPrinterCommand command;
    ASSERT_TRUE(command.Set(c.device_name, c.key, Parameters(c.values)));
    EXPECT_EQ(command.GetCommand().bytes(), c.command) << c.device_name << ' ' << c.key;
  }
}

TEST(PrinterCommand, SpooledReadHasNoSV) {
  CPrinterCommand command;
  ASSERT_TRUE(command.Set("QM-V5 Series", READ_FW_VERSION, {}));
  EXPECT_EQ(command.GetCommandForSpooler().bytes(),
            (Bytes{0x1B, 0x40, 0x1B, 0x28, 0x52, 8, 0, 0, 'R',  'E', 'M', 'O', 'T',
                   'E',  '1',  'V',  'I',  2,    0, 1, 0, 0x1B, 0,   0,   0}));
}

TEST(PrinterCommand, UnknownDeviceKeepsTheLastCommand) {
  CPrinterCommand command;
  ASSERT_TRUE(command.Set("QM-V5 Series", READ_FW_VERSION, {}));
  const Bytes built = command.GetCommand().bytes();
  EXPECT_FALSE(command.Set("QM-V5PS Series", WRITE_CUSTOMMEDIA_INFO1, {}));
  EXPECT_EQ(command.GetCommand().bytes(), built);
  EXPECT_TRUE(command.IsRemote() && !command.IsSVCmd() && command.IsBGJC());
}

TEST(VariablePartDeathTest, AParameterOfTheWrongKindEndsTheProcess) {
  const std::string kPlace =
      "src/naitive/SourceFiles/GantryCore/PrinterCommand:[0-9]+: MakeVariablePart: .*";
  const struct {
    unsigned int type;
    value parameter;
    const char* expression;
  } kCases[] = {
      {VALUE_HEX, value(12), "`parameter\\.is<std::string>\\(\\)'"},
      {VALUE_INTEGER, value(value::array{}), "`false'"},
      {VALUE_INTEGER, value(), "`false'"},
      {3, value(1), "`false'"},
  };
  for (const auto& c : kCases) {
    EXPECT_DEATH(CPrinterCommand::MakeVariablePart(Parameters({{"A", c.parameter}}),
                                                   Descriptor({{"A", {0, 1, 0, c.type}}})),
                 kPlace + c.expression);
  }
  CPrinterCommand command;
  EXPECT_DEATH(command.Set("QM-T84 Series", WRITE_CUSTOMMEDIA_INFO3, {}),
               kPlace + "`parameter\\.is<std::string>\\(\\)'");
}

}  // namespace
}  // namespace Ravik
