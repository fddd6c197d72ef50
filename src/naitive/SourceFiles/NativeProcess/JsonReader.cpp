#include "NativeProcess/JsonReader.h"

#include <stdexcept>

namespace Ravik {

namespace {

// picojson's own context with a bound on objects, of which it counts none.
class BoundedContext : public picojson::default_parse_context {
 public:
  BoundedContext(picojson::value* out, std::size_t arrays, int objects)
      : default_parse_context(out, arrays), objects_(objects) {}

  bool parse_object_start() {
    return objects_-- > 0 && picojson::default_parse_context::parse_object_start();
  }

  template <typename Input>
  bool parse_array_item(Input& in, std::size_t /*index*/) {
    auto& items = out_->get<picojson::array>();
    items.emplace_back();
    return ParseChild(in, items.back());
  }

  template <typename Input>
  bool parse_object_item(Input& in, const std::string& key) {
    return ParseChild(in, out_->get<picojson::object>()[key]);
  }

 private:
  template <typename Input>
  bool ParseChild(Input& in, picojson::value& child) const {
    BoundedContext context(&child, depths_, objects_);
    return picojson::_parse(context, in);
  }

  int objects_;  // that may still be opened inside one another
};

}  // namespace

bool ReadJson(const std::string& text, picojson::value& json) {
  picojson::input<std::string::const_iterator> in(text.begin(), text.end());
  BoundedContext context(&json, picojson::DEFAULT_MAX_DEPTHS, kMaximumObjectDepth);
  try {
    return picojson::_parse(context, in);
  } catch (const std::overflow_error&) {  // a number beyond a double's range
    return false;
  }
}

}  // namespace Ravik
