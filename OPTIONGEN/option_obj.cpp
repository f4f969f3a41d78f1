#include "option_obj.h"

#include <cstdlib>

namespace {

enum an_option_argument : unsigned char { oa_none, oa_number };

struct an_option_definition {
  const char* name;
  char letter; // of the short form, 0 none
  an_option_argument argument;
  long low;
  long high;
  unsigned classes;
};

const an_option_definition option_definitions[num_option_ids] = {
#define OBJ_OPTION(name, letter, argument, low, high, classes)                                     \
  {#name, letter, argument, low, high, classes},
#include "option_obj.def"
#undef OBJ_OPTION
};

bool is_number_between(const std::string& text, long low, long high) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos)
    return false;
  constexpr size_t most_digits = 10;
  return text.size() <= most_digits && atol(text.c_str()) >= low && atol(text.c_str()) <= high;
}

} // namespace

bool option_obj::setopt(an_option_id option, const std::string& argument) {
  const an_option_definition& definition = option_definitions[option];
  bool is_good = definition.argument == oa_none
                     ? argument.empty()
                     : is_number_between(argument, definition.low, definition.high);
  if (!is_good)
    return false;
  state[option] = true;
  args[option] = argument;
  return true;
}

bool option_obj::process_option(const std::string& word) {
  if (word.empty())
    return false;
  bool is_long = word[0] == '-';
  size_t end_of_name = is_long ? word.find('=') : 1;
  std::string name = is_long ? word.substr(1, end_of_name - (end_of_name != std::string::npos))
                             : word.substr(0, 1);
  std::string argument;
  if (end_of_name != std::string::npos)
    argument = word.substr(is_long ? end_of_name + 1 : end_of_name);
  for (int id = 0; id < num_option_ids; ++id) {
    const an_option_definition& definition = option_definitions[id];
    if (is_long ? name == definition.name : name[0] == definition.letter)
      return setopt(static_cast<an_option_id>(id), argument);
  }
  return false;
}

std::vector<std::pair<an_option_id, std::string>> option_obj::export_option_pairs() const {
  std::vector<std::pair<an_option_id, std::string>> pairs;
  for (int id = 0; id < num_option_ids; ++id) {
    if (!state[id])
      continue;
    std::string text = std::string("--") + option_definitions[id].name;
    if (option_definitions[id].argument == oa_number)
      text += "=" + args[id];
    pairs.emplace_back(static_cast<an_option_id>(id), text);
  }
  return pairs;
}

bool option_obj::isclass(an_option_id option, an_option_class option_class) {
  return (option_definitions[option].classes & option_class) != 0;
}
