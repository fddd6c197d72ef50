// libplist is loaded by what needs it. Most requests do not, and would wait for it and for the
// library of mathematics behind it to be mapped and bound.
#include "corefoundation/ListLibrary.h"

#include <dlfcn.h>

#include "util/Diagnostics.h"

namespace CoreFoundation {

namespace {

class Loader {
 public:
  Loader() : code_(dlopen(LIST_LIBRARY, RTLD_NOW | RTLD_LOCAL)) {
    is_whole_ = code_ != nullptr && FindReaders() && FindWriters();
    if (!is_whole_) Ravik::ReportLine("CoreFoundation", Ravik::Printable(dlerror()));
  }

  bool is_whole() const { return is_whole_; }
  const ListLibrary& functions() const { return functions_; }

 private:
  template <typename Function>
  bool Find(Function& function, const char* name) {
    function = reinterpret_cast<Function>(dlsym(code_, name));
    return function != nullptr;
  }

  bool FindReaders() {
    auto& all = functions_;
    return Find(all.array_new_iter, "plist_array_new_iter") &&
           Find(all.array_next_item, "plist_array_next_item") &&
           Find(all.bool_val_is_true, "plist_bool_val_is_true") &&
           Find(all.compare_node_value, "plist_compare_node_value") &&
           Find(all.copy, "plist_copy") && Find(all.dict_new_iter, "plist_dict_new_iter") &&
           Find(all.dict_next_item, "plist_dict_next_item") && Find(all.free, "plist_free") &&
           Find(all.from_bin, "plist_from_bin") && Find(all.from_xml, "plist_from_xml") &&
           Find(all.get_data_ptr, "plist_get_data_ptr") &&
           Find(all.get_node_type, "plist_get_node_type") &&
           Find(all.get_real_val, "plist_get_real_val") &&
           Find(all.get_string_ptr, "plist_get_string_ptr") &&
           Find(all.get_uint_val, "plist_get_uint_val");
  }

  bool FindWriters() {
    auto& all = functions_;
    return Find(all.array_append_item, "plist_array_append_item") &&
           Find(all.dict_set_item, "plist_dict_set_item") &&
           Find(all.new_array, "plist_new_array") && Find(all.new_bool, "plist_new_bool") &&
           Find(all.new_data, "plist_new_data") && Find(all.new_dict, "plist_new_dict") &&
           Find(all.new_real, "plist_new_real") && Find(all.new_string, "plist_new_string") &&
           Find(all.new_uint, "plist_new_uint") && Find(all.to_xml, "plist_to_xml") &&
           Find(all.to_xml_free, "plist_to_xml_free");
  }

  void* const code_;
  bool is_whole_;
  ListLibrary functions_{};
};

const Loader& Library() {
  static const auto& loader = *new Loader;
  return loader;
}

}  // namespace

bool HasListLibrary() {
  return Library().is_whole();
}

const ListLibrary& Plist() {
  return Library().functions();
}

}  // namespace CoreFoundation
