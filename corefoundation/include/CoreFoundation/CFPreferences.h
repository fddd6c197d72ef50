// The user's defaults of applications.
//
// Those of one application are one XML property list, $XDG_CONFIG_HOME/NAME.plist or else
// $HOME/.config/NAME.plist. NAME is the application's identifier; an identifier that holds a slash
// or is longer than 255 bytes has no place. The running application has the executable's file name.
// The file is read whenever a value of it is asked for. A file that is no property list, or whose
// root is no dictionary, counts as empty. What goes wrong with the file is told in a line on
// standard error.
#ifndef COREFOUNDATION_CFPREFERENCES_H_
#define COREFOUNDATION_CFPREFERENCES_H_

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

// Stands for the running application.
CF_EXPORT const CFStringRef kCFPreferencesCurrentApplication;

// Sets key to a copy of value, or removes it when value is null. Seen by this process at once, by
// others after CFPreferencesAppSynchronize. Nothing happens when value is no property list.
CF_EXPORT void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value,
                                        CFStringRef application);

// The value of key, of whatever type it is; null when it has none. The caller releases it.
CF_EXPORT CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application);

// Writes what was set since the last time, and keeps the other keys that the file holds; the file
// is replaced as a whole, readable by the user alone. False when it cannot be written: the values
// stay visible in this process and the next call tries again. Waits for other writers at most 2 s
// and then writes all the same.
CF_EXPORT Boolean CFPreferencesAppSynchronize(CFStringRef application);

CF_EXTERN_C_END

#endif  // COREFOUNDATION_CFPREFERENCES_H_
