// Options of single files and functions.

#include "cmd_line_int.h"

#include "error.h"
#include "host_envir.h"
#include "il_to_if.h"
#include "source_file.h"

std::map<std::string, OPT_OVERRIDE> opt_overrides;

void OPTION_STATE::save_state() {
  // Options that an override changes hold to the end of the run.
}

void OPTION_STATE::restore_state() {
  // See save_state.
}

void OPTION_STATE::reset_state() {
  // See save_state.
}

OPT_OVERRIDE* lookup_opt_override(const char* key, bool create) {
  if (create)
    return &opt_overrides[key];
  auto found = opt_overrides.find(key);
  return found == opt_overrides.end() ? nullptr : &found->second;
}

// The last component of the name of the file that holds the position.
static std::string base_name_at(const a_source_position* position) {
  if (position == nullptr || position->seq == 0)
    return "";
  const char* file_name = nullptr;
  uint32_t line;
  conv_seq_to_file_and_line(position->seq, &file_name, nullptr, &line, nullptr);
  return file_name == nullptr ? "" : start_of_file_name(file_name);
}

OPT_OVERRIDE* get_opt_override(const char* name, const a_source_position* position) {
  if (opt_overrides.empty())
    return nullptr;
  if (name == nullptr)
    return lookup_opt_override("-", false);
  std::string base = base_name_at(position);
  for (const std::string& key : {base + ":" + name, std::string(name), base + ":", base})
    if (OPT_OVERRIDE* entry = lookup_opt_override(key.c_str(), false))
      return entry;
  return nullptr;
}

std::unique_ptr<OPTION_STATE> process_opt_override(const char* name,
                                                   const a_source_position* position) {
  const OPT_OVERRIDE* entry = get_opt_override(name, position);
  if (entry == nullptr)
    return nullptr;
  auto state = std::make_unique<OPTION_STATE>();
  state->save_state();
  if (entry->front_end_word != nullptr)
    process_option_word(entry->front_end_word);
  return state;
}

static constexpr unsigned long max_words_of_option_set = 65535;

// Takes the next `count` words as they stand into a new set of words; one that
// is missing at the end of the command line is empty.
static void add_option_set(uint32_t id, unsigned long count) {
  OPTION_SET set;
  set.id = id;
  for (; count > 0; count--) {
    const char* word = take_plain_word();
    set.strings.emplace_back(word == nullptr ? "" : word);
  }
  icode_optlist.push_back(std::move(set));
}

void do_embed_opts(const an_option&, const char* argument) {
  unsigned long count = option_number(argument, max_words_of_option_set);
  icode_optlist.clear();
  add_option_set(0, count);
}

void do_override_opts(const an_option&, const char* argument) {
  if (icode_optlist.empty())
    command_line_error(ec_missing_base_option_set);
  const char* count_word = take_plain_word();
  if (count_word == nullptr)
    command_line_error(ec_cl_missing_override_args);
  unsigned long count = option_number(count_word, max_words_of_option_set);
  uint32_t id = icode_optlist.back().id + 1;
  lookup_opt_override(argument, true)->set_id = id;
  add_option_set(id, count);
}
