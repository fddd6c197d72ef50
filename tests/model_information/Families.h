// What every printer family answers.
#ifndef TESTS_MODEL_INFORMATION_FAMILIES_H_
#define TESTS_MODEL_INFORMATION_FAMILIES_H_

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "ModelInfomation/CommandKey.h"

namespace Ravik {

struct FamilyCase {
  const char* name;  // the family's source unit
  const char* device_name;
  int device_code;
  std::map<int, std::size_t> command_fields;  // number of fields by command key
  std::map<int, std::size_t> reply_fields;
  int command_line;  // of the assertion for an unanswered command key
  int reply_line;
};

inline std::ostream& operator<<(std::ostream& out, const FamilyCase& family) {
  return out << family.name;
}

inline std::string FamilyName(const testing::TestParamInfo<FamilyCase>& info) {
  return info.param.name;
}

inline const std::vector<FamilyCase>& Families() {
  using Fields = std::map<int, std::size_t>;
  static const Fields kHeaterCommands = {{4, 3},   {5, 3},   {6, 3},  {7, 2},
                                         {10, 20}, {11, 22}, {12, 4}, {13, 2}};
  static const Fields kHeaterReplies = {{4, 19}, {5, 21}, {6, 4}, {7, 9}};
  static const std::vector<FamilyCase> kFamilies = {
      {"Lunde",
       "QM-T44 Series",
       0x38,
       {{4, 3}, {7, 2}, {10, 20}, {13, 2}},
       {{4, 13}, {7, 9}},
       42,
       56},
      {"Corvel",
       "ZARMO QM-V7PS Series",
       0x46,
       {{4, 3}, {7, 2}, {9, 1}, {10, 20}, {13, 2}},
       {{4, 18}, {7, 9}, {9, 1}},
       46,
       63},
      {"TamskST",
       "QM-T64 Series",
       0x37,
       {{4, 3}, {6, 3}, {7, 2}, {10, 23}, {12, 4}, {13, 2}},
       {{4, 20}, {6, 4}, {7, 9}},
       48,
       65},
      {"Ostrel", "QM-R410 Series", 0x37, kHeaterCommands, kHeaterReplies, 52, 72},
      {"Parvane", "QM-R210 Series", 0x37, kHeaterCommands, kHeaterReplies, 55, 77},
      {"Tamsk", "QM-R310 Series", 0x37, kHeaterCommands, kHeaterReplies, 54, 74},
  };
  return kFamilies;
}

}  // namespace Ravik

#endif  // TESTS_MODEL_INFORMATION_FAMILIES_H_
