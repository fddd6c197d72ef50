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
using Values = std::map<std::string, value>;

CommandInfoVO Descriptor(const Fields& fields, const Bytes& format = {}) {
  CommandInfoVO info;
  info.command = {'E', 'X'};
  info.format = format;
  info.valueInfo = fields;
  return info;
}

ParameterMapVO Parameters(const Values& values) {
  ParameterMapVO parameters;
  for (const auto& [key, one] : values) parameters.insert(key, one);
  return parameters;
}

TEST(VariablePart, LaysParametersOut) {
  const Fields kIntegers = {{"FeedSpeed", {0, 2, 0x1207, VALUE_INTEGER}},
                            {"MediaTension", {2, 2, 0x1FF, VALUE_INTEGER}},
                            {"Wide", {4, 6, 1, VALUE_INTEGER}}};
  // Key order is not the order of positions, and the text is in front of another field.
  const Fields kTexts = {{"A", {1, 4, 9, VALUE_TEXT}},
                         {"B", {0, 1, 8, VALUE_INTEGER}},
                         {"C", {5, 2, 7, VALUE_INTEGER}}};
  const Fields kHex = {{"A", {0, 2, 0, VALUE_HEX}}};
  const Fields kOverlapping = {{"A", {5, 1, 9, VALUE_INTEGER}}, {"B", {0, 6, 8, VALUE_INTEGER}}};
  const struct {
    const Fields& fields;
    Values values;
    Bytes part;
  } kCases[] = {
      // Defaults are one byte and not corrected, as are names; an unknown name is the default.
      {kIntegers, {}, {7, 0, 0xFF, 0, 1, 0, 0, 0, 0, 0}},
      {kIntegers,
       {{"FeedSpeed", value("Lv1")}, {"MediaTension", value("Off")}, {"Wide", value("2")}},
       {2, 0, 0xFF, 0, 1, 0, 0, 0, 0, 0}},
      // Numbers are corrected, little-endian, and cut to their field or followed by zeros.
      {kIntegers,
       {{"FeedSpeed", value(0x12345)}, {"MediaTension", value(-5)}, {"Wide", value(-1)}},
       {0x45, 0x23, 123, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0}},
      // The length is the sum of what was converted; only a text makes text.
      {kTexts, {}, {8, 0, 0}},
      {kTexts, {{"A", value(65)}}, {8, 0, 0}},
      {kTexts, {{"A", value("ab")}}, {8, 'a', 'b', 0, 0}},
      {kTexts, {{"A", value("abcdef")}}, {8, 'a', 'b', 'c', 'd', 7, 0, 0, 0}},
      {kHex, {{"A", value("0aFF7G")}}, {0x0A, 0xFF, 0}},
      {kOverlapping, {}, {8, 0, 0, 0, 0, 0, 0}},
  };
  for (const auto& c : kCases) {
    const ParameterMapVO parameters = Parameters(c.values);
    EXPECT_EQ(CPrinterCommand::MakeVariablePart(parameters, Descriptor(c.fields)), c.part)
        << parameters;
  }
}

TEST(VariablePart, StaysInsideItsBuffer) {
  const Fields kFields = {{"A", {510, 40, 0, VALUE_TEXT}},
                          {"B", {512, 1, 1, VALUE_INTEGER}},
                          {"C", {0xFFFFFFFF, 0xFFFFFFFF, 0, VALUE_TEXT}}};
  const Values kValues = {{"A", value(std::string(600, 'x'))}, {"C", value("yy")}};
  Bytes expected(603);
  expected[510] = expected[511] = 'x';
  EXPECT_EQ(CPrinterCommand::MakeVariablePart(Parameters(kValues), Descriptor(kFields)), expected);
}

TEST(PrinterCommand, LengthCountsFormatAndVariablePart) {
  CPrinterCommand command;
  const auto info = Descriptor({{"A", {0, 300, 0, VALUE_TEXT}}}, {0xF0, 0xF1});
  ASSERT_TRUE(command.SetCommand(Parameters({{"A", value(std::string(300, 'x'))}}), info));
  Bytes expected = {'E', 'X', 0x2E, 0x01, 0xF0, 0xF1};
  expected.resize(306, 'x');
  EXPECT_EQ(command.GetCommand().bytes(), expected);
  EXPECT_EQ(command.GetCommandForSpooler().bytes(), expected) << "no flag, no frame";
  EXPECT_EQ(command.GetCommandAscii().substr(0, 14), "45582E01F0F178");
  const CommandVO& taken = command.GetCommand();
  EXPECT_FALSE(command.SetCommand({}, info)) << "nothing to send";
  EXPECT_TRUE(command.GetCommand().bytes().empty());
  EXPECT_EQ(taken.bytes(), expected) << "the caller's own";
}

TEST(PrinterCommand, UnknownDeviceKeepsTheLastCommand) {
  CPrinterCommand command;
  ASSERT_TRUE(command.Set("QM-V5 Series", READ_FW_VERSION, {}));
  EXPECT_FALSE(command.Set("QM-V5PS Series", WRITE_CUSTOMMEDIA_INFO1, {}));
  EXPECT_EQ(command.GetCommand().bytes(), (Bytes{'V', 'I', 2, 0, 1, 0}));
  EXPECT_TRUE(command.IsRemote() && !command.IsSVCmd() && command.IsBGJC());
}

TEST(VariablePartDeathTest, AParameterOfTheWrongKindEndsTheProcess) {
  const std::string kPlace =
      "src/naitive/SourceFiles/GantryCore/PrinterCommand:[0-9]+: MakeVariablePart: .*";
  const struct {
    unsigned int type;
    Values values;
    const char* expression;
  } kCases[] = {
      {VALUE_HEX, {}, "`parameter\\.is<std::string>\\(\\)'"},
      {VALUE_INTEGER, {{"A", value(value::array{})}}, "`false'"},
      {VALUE_INTEGER, {{"A", value()}}, "`false'"},
      {3, {}, "`false'"},
  };
  for (const auto& c : kCases) {
    EXPECT_DEATH(CPrinterCommand::MakeVariablePart(Parameters(c.values),
                                                   Descriptor({{"A", {0, 1, 0, c.type}}})),
                 kPlace + c.expression);
  }
}

}  // namespace
}  // namespace Ravik
