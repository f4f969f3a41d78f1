// #pragma FUNCTION_OPTIONS: options of the later passes for one function.

#include <deque>
#include <iterator>
#include <sstream>
#include <string>

#include "../OPTIONGEN/option_obj.h"
#include "cmd_line.h"
#include "error.h"
#include "if_util.h"
#include "il_entities.h"
#include "il_to_if.h"
#include "pragma_int.h"
#include "symbol_tbl.h"

// Takes the words of the text; false after a message for one that is no option.
static bool take_option_words(option_obj* options, const std::string& text,
                              const a_source_position* position) {
  std::istringstream stream(text);
  std::deque<std::string> words(std::istream_iterator<std::string>(stream), {});
  bool is_good = true;
  while (!words.empty()) {
    std::string word = words.front();
    words.pop_front();
    if (word[0] != '-' || !options->process_option(word.substr(1), &words)) {
      pos_st_error(ec_invalid_compiler_override_option, position, word.c_str());
      is_good = false;
    }
  }
  return is_good;
}

// Adds the options to the words; false after a message for one that functions may
// not change.
static bool add_option_texts(const option_obj& options, std::vector<std::string>* words,
                             const a_source_position* position) {
  bool is_good = true;
  for (const auto& [option, text] : options.export_option_pairs())
    if (option_obj::isclass(option, ocl_function)) {
      words->push_back(text);
    } else {
      pos_st_error(ec_option_not_overridable, position, text.c_str());
      is_good = false;
    }
  return is_good;
}

// The words that hold for the function so far: those of its own set, or those of
// the unit.
static const OPTION_SET& present_option_set(const OPT_OVERRIDE* entry) {
  if (entry != nullptr)
    for (const OPTION_SET& set : icode_optlist)
      if (set.id == entry->set_id)
        return set;
  return icode_optlist.front();
}

static void set_function_options(const a_pending_pragma* pragma, const a_routine* routine,
                                 const char* text) {
  const char* key = routine->source_corresp.name;
  const a_source_position* place = &routine->source_corresp.position;
  const a_source_position* position = &pragma->directive_position;
  const OPT_OVERRIDE* entry = get_opt_override(key, place);
  if (icode_optlist.empty())
    return;
  option_obj options;
  OPTION_SET set;
  set.strings = present_option_set(entry).strings;
  bool is_good = take_option_words(&options, text, position);
  is_good &= add_option_texts(options, &set.strings, position);
  if (!is_good)
    return;
  set.id = icode_optlist.back().id + 1;
  // The command line may have named the function together with its file.
  lookup_opt_override(key, true);
  get_opt_override(key, place)->set_id = set.id;
  icode_optlist.push_back(std::move(set));
}

int function_options_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement*) {
  const char* text = scan_comma_behind_symbol() ? scan_pragma_string() : nullptr;
  if (text == nullptr || !scan_end_of_pragma())
    return 0;
  if (!is_routine_definition(symbol))
    return pragma_symbol_fault(ec_pragma_requires_func_def, pragma, symbol);
  set_function_options(pragma, symbol->variant.routine, text);
  return 0;
}
