// The part of CoreFoundation that the system calls, for platforms that do not have the framework.
// CFPlugIn.h and CFPlugInCOM.h are included by name.
#ifndef COREFOUNDATION_COREFOUNDATION_H_
#define COREFOUNDATION_COREFOUNDATION_H_

#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFData.h>
#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFNumber.h>
#include <CoreFoundation/CFPreferences.h>
#include <CoreFoundation/CFPropertyList.h>
#include <CoreFoundation/CFString.h>
#include <CoreFoundation/CFURL.h>
#include <CoreFoundation/CFUUID.h>

#endif  // COREFOUNDATION_COREFOUNDATION_H_
