// Ends of the process that are intended, told apart from findings.
#ifndef FUZZ_PRESCRIBEDENDS_H_
#define FUZZ_PRESCRIBEDENDS_H_

#include <functional>

// Runs work. False when it came to an end that is intended for its input: an assertion report, a
// request that is no JSON object, or a printer record without a name. Any other exception passes.
bool Completes(const std::function<void()>& work);

#endif  // FUZZ_PRESCRIBEDENDS_H_
