// The functions of libplist that are called here.
#ifndef COREFOUNDATION_LISTLIBRARY_H_
#define COREFOUNDATION_LISTLIBRARY_H_

#include <plist/plist.h>

namespace CoreFoundation {

// Named as the library names them, without "plist_".
struct ListLibrary {
  decltype(&plist_array_append_item) array_append_item;
  decltype(&plist_array_new_iter) array_new_iter;
  decltype(&plist_array_next_item) array_next_item;
  decltype(&plist_bool_val_is_true) bool_val_is_true;
  decltype(&plist_compare_node_value) compare_node_value;
  decltype(&plist_copy) copy;
  decltype(&plist_dict_new_iter) dict_new_iter;
  decltype(&plist_dict_next_item) dict_next_item;
  decltype(&plist_dict_set_item) dict_set_item;
  decltype(&plist_free) free;
  decltype(&plist_from_bin) from_bin;
  decltype(&plist_from_xml) from_xml;
  decltype(&plist_get_data_ptr) get_data_ptr;
  decltype(&plist_get_node_type) get_node_type;
  decltype(&plist_get_real_val) get_real_val;
  decltype(&plist_get_string_ptr) get_string_ptr;
  decltype(&plist_get_uint_val) get_uint_val;
  decltype(&plist_new_array) new_array;
  decltype(&plist_new_bool) new_bool;
  decltype(&plist_new_data) new_data;
  decltype(&plist_new_dict) new_dict;
  decltype(&plist_new_real) new_real;
  decltype(&plist_new_string) new_string;
  decltype(&plist_new_uint) new_uint;
  decltype(&plist_to_xml) to_xml;
  decltype(&plist_to_xml_free) to_xml_free;
};

// Loads the library at the first call, for as long as the process lives. False, at the first call
// with one line on standard error, when it cannot be loaded.
bool HasListLibrary();

// HasListLibrary has said that it is there; where there is a node, it is.
const ListLibrary& Plist();

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_LISTLIBRARY_H_
