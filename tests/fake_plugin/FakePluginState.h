// What the plug-in and the test share.
#ifndef TESTS_FAKE_PLUGIN_FAKEPLUGINSTATE_H_
#define TESTS_FAKE_PLUGIN_FAKEPLUGINSTATE_H_

#include <string>
#include <vector>

#include "tests/fake_plugin/FakePlugin.h"

namespace fake_plugin {

struct State {
  Script script;
  std::vector<std::string> calls;
  std::string path;
  const void* context = nullptr;
  int live_objects = 0;
};

FAKE_PLUGIN_API State& state();

}  // namespace fake_plugin

#endif  // TESTS_FAKE_PLUGIN_FAKEPLUGINSTATE_H_
