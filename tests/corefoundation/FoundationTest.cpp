// The holder of references and the bridged names. The sanitizers see a reference too few or too
// many.
#include "corefoundation/Foundation.h"

#include "tests/corefoundation/TestSupport.h"

namespace {

static_assert(std::is_same_v<const NSString*, CFStringRef>);
static_assert(std::is_same_v<const NSDictionary*, CFDictionaryRef>);
static_assert(std::is_same_v<const NSArray*, CFArrayRef>);
static_assert(!std::is_convertible_v<CFStringRef, CFRef<CFStringRef>>, "adopting is explicit");
static_assert(!std::is_convertible_v<CFRef<CFTypeRef>, CFRef<CFStringRef>>, "casts are checked");
static_assert(!std::is_base_of_v<std::exception, NSException>, "neither is caught as the other");

TEST(CFRef, CountsOwners) {
  CFRef<CFStringRef> string = MakeString("text");
  const CFStringRef object = string.get();
  CFRef<CFStringRef> copy = string;
  CFRef<CFTypeRef> any = copy;
  CFRef<CFStringRef> retained = CFRef<CFStringRef>::Retain(object);
  const CFRef<CFStringRef> moved = std::move(copy);
  EXPECT_FALSE(copy);  // NOLINT(bugprone-use-after-move): a moved-from holder is empty
  any = CFRef<CFTypeRef>();
  retained = MakeString("other");
  CFRelease(string.release());
  EXPECT_FALSE(string);
  EXPECT_TRUE(CFEqual(moved.get(), CFSTR("text"))) << "the last owner";

  const CFRef<CFArrayRef> empty;
  EXPECT_FALSE(CFRef<CFTypeRef>(empty));
  EXPECT_FALSE(CFRef<CFDataRef>::Retain(nullptr));
}

}  // namespace
