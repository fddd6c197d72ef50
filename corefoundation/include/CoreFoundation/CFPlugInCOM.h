// The COM interface that every plug-in instance has, IUnknown.
#ifndef COREFOUNDATION_CFPLUGINCOM_H_
#define COREFOUNDATION_CFPLUGINCOM_H_

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFPlugIn.h>
#include <CoreFoundation/CFUUID.h>

CF_EXTERN_C_BEGIN

typedef SInt32 HRESULT;
typedef UInt32 ULONG;
typedef void* LPVOID;
typedef CFUUIDBytes REFIID;  // passed by value

#define S_OK ((HRESULT)0)
#define E_NOINTERFACE ((HRESULT)0x80000004L)

#define STDMETHODCALLTYPE

// The first members of the function table that every interface points to: QueryInterface stores the
// interface for iid in *ppv and adds a reference, AddRef and Release return the count that is left.
#define IUNKNOWN_C_GUTS                                                                   \
  void* _reserved;                                                                        \
  HRESULT(STDMETHODCALLTYPE* QueryInterface)(void* thisPointer, REFIID iid, LPVOID* ppv); \
  ULONG(STDMETHODCALLTYPE* AddRef)(void* thisPointer);                                    \
  ULONG(STDMETHODCALLTYPE* Release)(void* thisPointer)

typedef struct IUnknownVTbl {
  IUNKNOWN_C_GUTS;
} IUnknownVTbl;

// 00000000-0000-0000-C000-000000000046
#define IUnknownUUID                                                                            \
  CFUUIDGetConstantUUIDWithBytes(kCFAllocatorSystemDefault, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, \
                                 0x00, 0x00, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)

CF_EXTERN_C_END

#endif  // COREFOUNDATION_CFPLUGINCOM_H_
