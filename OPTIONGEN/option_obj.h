// The judge of the options that a single function may have: which words there are,
// and how they read when they are passed on.

#ifndef OPTION_OBJ_H
#define OPTION_OBJ_H

#include <string>
#include <utility>
#include <vector>

enum an_option_id : int {
#define OBJ_OPTION(name, letter, argument, low, high, classes) oid_##name,
#include "option_obj.def"
#undef OBJ_OPTION
  num_option_ids
};

// Sets of options, as bits.
enum an_option_class : unsigned { ocl_any = 1u << 0, ocl_function = 1u << 14 };

class option_obj {
public:
  // Takes one option word without its first "-": a letter and what belongs to it,
  // or "-name" and "-name=value". False for a word that is no option or whose
  // argument is wrong; nothing changes then.
  bool process_option(const std::string& word);
  // The options that were set, in the order of their ids, in full form.
  std::vector<std::pair<an_option_id, std::string>> export_option_pairs() const;
  static bool isclass(an_option_id option, an_option_class option_class);

private:
  bool setopt(an_option_id option, const std::string& argument);

  bool state[num_option_ids] = {};
  std::string args[num_option_ids];
};

#endif
