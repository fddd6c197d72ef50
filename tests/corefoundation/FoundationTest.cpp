// The holder of references and the bridged names.
#include "corefoundation/Foundation.h"

#include "tests/corefoundation/TestSupport.h"

namespace {

static_assert(std::is_same_v<const NSString*, CFStringRef>);
static_assert(std::is_same_v<const NSDictionary*, CFDictionaryRef>);
static_assert(std::is_same_v<const NSArray*, CFArrayRef>);
static_assert(!std::is_convertible_v<CFStringRef, CFRef<CFStringRef>>, "adopting is explicit");
static_assert(!std::is_convertible_v<CFRef<CFTypeRef>, CFRef<CFStringRef>>, "casts are checked");

TEST(CFRef, CountsOwners) {
  CFRef<CFStringRef> string = MakeString("text");
  const CFStringRef object = string.get();
  EXPECT_EQ(CFGetRetainCount(object), 1);

  CFRef<CFStringRef> copy = string;
  CFRef<CFTypeRef> any = copy;
  CFRef<CFStringRef> retained = CFRef<CFStringRef>::Retain(object);
  EXPECT_EQ(CFGetRetainCount(object), 4);

  const CFRef<CFStringRef> moved = std::move(copy);
  EXPECT_FALSE(copy);  // NOLINT(bugprone-use-after-move): a moved-from holder is empty
  EXPECT_EQ(CFGetRetainCount(object), 4);

  any = CFRef<CFTypeRef>();
  retained = MakeString("other");
  const auto& alias = string;
  string = alias;
  EXPECT_EQ(string.get(), object);
  EXPECT_EQ(CFGetRetainCount(object), 2);

  const CFStringRef released = string.release();
  EXPECT_FALSE(string);
  EXPECT_EQ(CFGetRetainCount(object), 2);
  CFRelease(released);
  EXPECT_EQ(CFGetRetainCount(object), 1);
}

TEST(CFRef, HoldsNothing) {
  const CFRef<CFArrayRef> empty;
  const CFRef<CFTypeRef> converted = empty;
  EXPECT_FALSE(converted);
  EXPECT_FALSE(CFRef<CFDataRef>::Retain(nullptr));
}

TEST(CFCast, ChecksTheClass) {
  const CFRef<CFTypeRef> string = MakeString("text");
  const CFRef<CFTypeRef> data = MakeData("text");
  EXPECT_EQ(CFCast<CFStringRef>(string.get()), string.get());
  EXPECT_EQ(CFCast<CFStringRef>(data.get()), nullptr);
  EXPECT_EQ(CFCast<CFDataRef>(data.get()), data.get());
  EXPECT_EQ(CFCast<CFNumberRef>(kCFBooleanTrue), nullptr);
  EXPECT_EQ(CFCast<CFBooleanRef>(kCFBooleanTrue), kCFBooleanTrue);
  EXPECT_EQ(CFCast<CFArrayRef>(nullptr), nullptr);
}

TEST(NSException, IsCaughtByItsClassAlone) {
  try {
    throw NSException("no such selector");
  } catch (const std::exception&) {
    FAIL();
  } catch (const NSException& exception) {
    EXPECT_EQ(exception.reason(), "no such selector");
  }
}

}  // namespace
