// Looking up families, layouts, parameters and values, and what to say when there is none.
#ifndef PRINTER_MEDIA_CATALOGUE_H_
#define PRINTER_MEDIA_CATALOGUE_H_

#include <string>
#include <string_view>
#include <vector>

#include "printer_media/Tables.h"
#include "printer_media/Value.h"

namespace PrinterMedia {

// Null when no family has the device name.
const Family* FindFamily(std::string_view device);

// Those of all families.
std::vector<std::string> DeviceNames();

// Null when the family does not have the layout.
const Layout* FindLayout(const Family& family, int version);

// The parameter of exactly that name; null when the layout has none.
const Parameter* FindParameter(const Layout& layout, std::string_view name);

// Models whose printers tell their firmware version.
std::string FirmwareModels();

// Throws Failure that says which layouts the family has.
const Layout& LayoutOf(const Family& family, int version);

// The setting that somebody calls by name, without regard to case. Throws Failure that says what
// the family has.
const Parameter& ParameterOf(const Family& family, const Layout& layout, const std::string& name);

// The value that somebody writes as text, as it is to be sent. Throws Failure that says what is
// allowed.
Value ParseValue(const Parameter& parameter, const std::string& text);

// What a printer may hold as this parameter; for values that were saved.
bool IsPossible(const Parameter& parameter, const Value& value);

// Whether a write of the value changes the setting to it: a byte FF and an empty name do not.
bool IsSendable(const Parameter& parameter, const Value& value);

// What can be set, without the head.
std::vector<const Parameter*> SettingsOf(const Layout& layout);
std::vector<std::string> SettingNames(const Layout& layout);
std::vector<std::string> ValueNames(const Parameter& parameter);

// "2.0, 1.5, 2.5 or a number from 0 to 254".
std::string Allowed(const Parameter& parameter);

// One line for each setting of the layout with what is allowed.
std::string AllowedLines(const Layout& layout);

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_CATALOGUE_H_
