// A search in a thread of its own.
#ifndef PORT_DRIVER_SEARCHTHREAD_H_
#define PORT_DRIVER_SEARCHTHREAD_H_

#include <functional>
#include <thread>

namespace ZIOP {

// Runs from construction on; the destructor waits for its end. All signals are blocked in it, so
// that the process's own threads go on being the ones that they interrupt. What search throws, and
// that there is no thread to be had, is one line on standard error.
class SearchThread {
 public:
  explicit SearchThread(std::function<void()> search);
  ~SearchThread();
  SearchThread(const SearchThread&) = delete;
  SearchThread& operator=(const SearchThread&) = delete;

 private:
  std::thread thread_;
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_SEARCHTHREAD_H_
