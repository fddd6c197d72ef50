// What every printer family answers.
#ifndef TESTS_MODEL_INFORMATION_FAMILIES_H_
#define TESTS_MODEL_INFORMATION_FAMILIES_H_

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace Ravik {

struct FamilyCase {
  using Fields = std::map<int, std::size_t>;  // number of fields by command key

  const char* name;  // the family's source unit
  const char* device_name;
  std::vector<const char*> other_device_names;
  unsigned int device_code;
  Fields command_fields;
  Fields reply_fields;
  int command_line;  // of the assertion for an unanswered command key
  int reply_line;
};

inline std::ostream& operator<<(std::ostream& out, const FamilyCase& family) {
  return out << family.name;
}

inline std::string FamilyName(const testing::TestParamInfo<FamilyCase>& info) {
  return info.param.name;
}

inline std::vector<FamilyCase> Families() {
  using Fields = FamilyCase::Fields;
  using Names = std::vector<const char*>;
  const Fields c{{4, 3}, {5, 3}, {6, 3}, {7, 2}, {10, 20}, {11, 22}, {12, 4}, {13, 2}};
  const Fields r{{4, 19}, {5, 21}, {6, 4}, {7, 9}};
  const Fields d_c{{4, 3}, {7, 2}, {10, 20}, {13, 2}};
  const Fields d_r{{4, 13}, {7, 9}};
  const Fields i_c{{4, 3}, {7, 2}, {9, 1}, {10, 20}, {13, 2}};
  const Fields i_r{{4, 18}, {7, 9}, {9, 1}};
  const Fields st_c{{4, 3}, {6, 3}, {7, 2}, {10, 23}, {12, 4}, {13, 2}};
  const Fields st_r{{4, 20}, {6, 4}, {7, 9}};
  const Names r410{"ZARMO QM-R410 Series Comm Driver"};
  const Names r210{"ZARMO QM-R210 Series Comm Driver"};
  const Names r310{"ZARMO QM-R310 Series Comm Driver"};
  const Names t44{"ZARMO QM-T44 Series Comm Driver"};
  const Names t84{"ZARMO QM-T84 Series Comm Driver", "QM-T64 Series",
                  "ZARMO QM-T64 Series Comm Driver"};
  const Names v5{"ZARMO QM-V5 Series", "QM-V7 Series", "ZARMO QM-V7 Series", "ZARMO QM-V5PS Series",
                 "ZARMO QM-V7PS Series"};
  return {
      {"Ostrel", "QM-R410 Series", r410, 0x37, c, r, 52, 72},
      {"Parvane", "QM-R210 Series", r210, 0x37, c, r, 55, 77},
      {"Tamsk", "QM-R310 Series", r310, 0x37, c, r, 54, 74},
      {"TamskST", "QM-T84 Series", t84, 0x37, st_c, st_r, 48, 65},
      {"Lunde", "QM-T44 Series", t44, 0x38, d_c, d_r, 42, 56},
      {"Corvel", "QM-V5 Series", v5, 0x46, i_c, i_r, 46, 63},
  };
}

}  // namespace Ravik

#endif  // TESTS_MODEL_INFORMATION_FAMILIES_H_
