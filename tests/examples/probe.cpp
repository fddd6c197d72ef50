// Makes the requests of each line at once, and writes a line of outcomes: probe MODULES WORKER
#include <chrono>
#include <exception>
#include <future>
#include <iostream>
#include <string>
#include <vector>

#include "PrinterWorker.h"

namespace {

using picojson::object;
using picojson::value;

value Failure(const char* kind, const std::exception& error, const value& code = {}) {
  return value(object{{"error", value(kind)}, {"text", value(error.what())}, {"code", code}});
}

value Outcome(PrinterWorker& worker, const value& call) {
  const std::chrono::duration<double> limit(call.get("limit").get<double>());
  const auto& printer = call.get("printer").get<picojson::array>();
  const Printer asked{printer[0].to_str(), printer[1].to_str()};
  try {
    return value(object{
        {"reply", worker.Request(call.get("command").to_str(), &asked, call.get("parameter"),
                                 std::chrono::duration_cast<std::chrono::milliseconds>(limit))}});
  } catch (const PrinterError& error) {
    return Failure("PrinterError", error, value(static_cast<double>(error.code())));
  } catch (const RequestError& error) {
    return Failure("RequestError", error);
  } catch (const ProtocolError& error) {
    return Failure("ProtocolError", error);
  } catch (const WorkerTimeout& error) {
    return Failure("WorkerTimeout", error);
  } catch (const WorkerEnded& error) {
    return Failure("WorkerEnded", error);
  } catch (const std::exception& error) {
    return Failure("std::exception", error);
  }
}

}  // namespace

int main(int /*argc*/, char* argv[]) {
  PrinterWorker worker(argv[2]);
  for (std::string line; std::getline(std::cin, line);) {
    value calls;
    picojson::parse(calls, line);
    std::vector<std::future<value>> futures;
    for (const value& call : calls.get<picojson::array>()) {
      futures.push_back(std::async(std::launch::async, [&] { return Outcome(worker, call); }));
    }
    picojson::array outcomes;
    for (auto& future : futures) outcomes.push_back(future.get());
    std::cout << value(outcomes).serialize() << std::endl;
  }
}
