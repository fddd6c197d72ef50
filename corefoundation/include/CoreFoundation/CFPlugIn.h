// Plug-in bundles whose code is found by UUID.
//
// A bundle is a folder with a Contents/Info.plist. Its CFPlugInFactories maps the UUID of a factory
// to the name of its function, its CFPlugInTypes the UUID of a type to an array of the UUIDs of the
// factories that make it. The executable is CFBundleExecutable, or the folder's name without
// extension, in Contents/Linux or Contents, as it stands or as lib*.so.
//
// Code that was loaded stays loaded, and its bundle is known, as long as the process lives.
#ifndef COREFOUNDATION_CFPLUGIN_H_
#define COREFOUNDATION_CFPLUGIN_H_

#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFURL.h>
#include <CoreFoundation/CFUUID.h>

CF_EXTERN_C_BEGIN

// Makes an instance of the type: an IUnknown with one reference, or null.
typedef void* (*CFPlugInFactoryFunction)(CFAllocatorRef allocator, CFUUIDRef type);

// The bundle at url; the same object, retained, when it was created before. Null for null and for a
// path that is no folder. Reads Info.plist the first time; loads no code.
CF_EXPORT CFPlugInRef CFPlugInCreate(CFAllocatorRef allocator, CFURLRef url);

// The UUIDs of the bundle's factories for type, in the order of Info.plist; the caller releases the
// array. Null when there are none.
CF_EXPORT CFArrayRef CFPlugInFindFactoriesForPlugInTypeInPlugIn(CFUUIDRef type, CFPlugInRef plugin);

// What the factory's function returns for allocator and type. Loads the executable of the factory's
// bundle first when it is not loaded yet; of bundles with the same factory the one that was created
// last counts. Null when no bundle has the factory for type, when the executable cannot be loaded
// (one line on standard error says why) or has no such function.
CF_EXPORT void* CFPlugInInstanceCreate(CFAllocatorRef allocator, CFUUIDRef factory, CFUUIDRef type);

CF_EXTERN_C_END

#endif  // COREFOUNDATION_CFPLUGIN_H_
