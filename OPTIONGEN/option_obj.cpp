#include "option_obj.h"

#include <cctype>
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
#define OBJ_CONFLICT(option, other)
#include "option_obj.def"
#undef OBJ_CONFLICT
#undef OBJ_OPTION
};

const struct {
  an_option_id option;
  an_option_id other;
} conflicts[] = {
#define OBJ_OPTION(name, letter, argument, low, high, classes)
#define OBJ_CONFLICT(option, other) {oid_##option, oid_##other}, {oid_##other, oid_##option},
#include "option_obj.def"
#undef OBJ_CONFLICT
#undef OBJ_OPTION
};

// The argument of an option, which may be the next word if that is no option.
std::string take_argument(const an_option_definition& definition, const std::string& text,
                          std::deque<std::string>* words) {
  if (definition.argument == oa_none || !text.empty() || words->empty() || words->front()[0] == '-')
    return text;
  std::string argument = words->front();
  words->pop_front();
  return argument;
}

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
  clear_conflicting_options(option);
  return true;
}

void option_obj::clear_conflicting_options(an_option_id option) {
  for (const auto& row : conflicts)
    if (row.option == option)
      state[row.other] = false;
}

bool option_obj::process_long_option(const std::string& text, std::deque<std::string>* words) {
  size_t end_of_name = text.find('=');
  bool has_value = end_of_name != std::string::npos;
  std::string name = text.substr(0, end_of_name);
  std::string value = has_value ? text.substr(end_of_name + 1) : "";
  for (int id = 0; id < num_option_ids; ++id)
    if (name == option_definitions[id].name) {
      if (!has_value)
        value = take_argument(option_definitions[id], value, words);
      return (!has_value || !value.empty()) && setopt(static_cast<an_option_id>(id), value);
    }
  return false;
}

bool option_obj::process_letter_option(std::string* text, std::deque<std::string>* words) {
  int letter = tolower(static_cast<unsigned char>(text->front()));
  text->erase(0, 1);
  for (int id = 0; id < num_option_ids; ++id) {
    const an_option_definition& definition = option_definitions[id];
    if (definition.letter == 0 || letter != tolower(definition.letter))
      continue;
    std::string number;
    if (definition.argument == oa_number) {
      number = text->substr(0, text->find_first_not_of("0123456789"));
      text->erase(0, number.size());
      if (text->empty())
        number = take_argument(definition, number, words);
    }
    return setopt(static_cast<an_option_id>(id), number);
  }
  return false;
}

bool option_obj::process_option(const std::string& word, std::deque<std::string>* words) {
  if (word.empty())
    return false;
  if (word[0] == '-')
    return process_long_option(word.substr(1), words);
  for (std::string rest = word; !rest.empty();)
    if (!process_letter_option(&rest, words))
      return false;
  return true;
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
