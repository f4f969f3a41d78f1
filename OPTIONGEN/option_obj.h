// The judge of the options that a single function may have: which words there are,
// and how they read when they are passed on.

#ifndef OPTION_OBJ_H
#define OPTION_OBJ_H

#include <deque>
#include <string>
#include <utility>
#include <vector>

enum an_option_id : int {
#define OBJ_OPTION(name, letter, argument, low, high, classes) oid_##name,
#define OBJ_CONFLICT(option, other)
#include "option_obj.def"
#undef OBJ_CONFLICT
#undef OBJ_OPTION
  num_option_ids
};

// Sets of options, as bits.
enum an_option_class : unsigned { ocl_any = 1u << 0, ocl_function = 1u << 14 };

class option_obj {
public:
  // Takes one option word without its first "-": letters, of either case, with their
  // numbers, or "-name" and "-name=value". A number that the word lacks is the next
  // of `words`, which goes. An option ends those before it that contradict it. False
  // for what is no option or has a wrong argument; letters in front of it count.
  bool process_option(const std::string& word, std::deque<std::string>* words);
  // The options that were set, in the order of their ids, in full form.
  std::vector<std::pair<an_option_id, std::string>> export_option_pairs() const;
  static bool isclass(an_option_id option, an_option_class option_class);

private:
  bool process_long_option(const std::string& text, std::deque<std::string>* words);
  // Takes one letter and its number off the text.
  bool process_letter_option(std::string* text, std::deque<std::string>* words);
  bool setopt(an_option_id option, const std::string& argument);
  void clear_conflicting_options(an_option_id option);

  bool state[num_option_ids] = {};
  std::string args[num_option_ids];
};

#endif
