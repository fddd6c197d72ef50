// What the fuzzers share.
#ifndef FUZZ_FUZZ_H_
#define FUZZ_FUZZ_H_

// After the standard headers that it forgets to include.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>  // NOLINT(llvm-include-order)

// Reports a finding where condition does not hold. libFuzzer then keeps the input.
#define FUZZ_CHECK(condition) \
  ((condition)                \
       ? void(0)              \
       : (std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition), std::abort()))

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

#endif  // FUZZ_FUZZ_H_
