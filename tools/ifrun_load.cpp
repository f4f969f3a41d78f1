// Layout of the program's data, their initialisers, and the run from start to
// exit.

#include "ifrun.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <pthread.h>

#include "ifrun_int.h"

// -- Layout --------------------------------------------------------------------

static bool is_function_symbol(const an_if_symbol& symbol) {
  return is_function(symbol.type);
}

static bool is_defined(const an_if_symbol& symbol) {
  if (is_function_symbol(symbol))
    return symbol.function != nullptr;
  return symbol.storage_class != ifsc_extern || symbol.initializer != nullptr;
}

// Room for a variable. A flexible array member's values need more than its
// structure has, so each value of the initialiser counts with the largest
// scalar.
static uint64_t room_for(const an_if_symbol& symbol) {
  uint64_t size = std::max(symbol.size, symbol.type != nullptr ? symbol.type->size : 0) / 8;
  const an_if_type* type = symbol.type->stripped();
  if (symbol.initializer != nullptr && type->is_csu() && !type->members.empty() &&
      type->members.back().type->stripped()->kind == iftk_array &&
      type->members.back().type->size == 0)
    size += 8 * symbol.initializer->values.size();
  return size;
}

static const an_if_pragma* find_pragma(const an_if_symbol& symbol, uint32_t kind) {
  for (const an_if_pragma& pragma : symbol.pragmas)
    if (pragma.kind == kind)
      return &pragma;
  return nullptr;
}

namespace {

// What the names of the file stand for. A static is found by aliases only.
struct a_name_table {
  std::unordered_map<std::string_view, uint32_t> functions, variables, static_functions;
  std::unordered_map<std::string_view, std::string_view> aliases;
};

} // namespace

static void lay_out_definition(a_program* program, a_name_table* names,
                               const an_if_symbol& symbol) {
  bool is_static = symbol.storage_class == ifsc_static;
  if (is_function_symbol(symbol)) {
    a_function& function = program->functions.emplace_back();
    function.name = symbol.name;
    function.source = symbol.function;
    uint32_t number = static_cast<uint32_t>(program->functions.size());
    program->function_ids[symbol.id] = number;
    (is_static ? names->static_functions : names->functions).emplace(symbol.name, number);
  } else {
    uint32_t address = program->memory.add_static(room_for(symbol));
    program->addresses[symbol.id] = address;
    if (!is_static)
      names->variables.emplace(symbol.name, address);
  }
}

// The function that an alias stands for in the end; 0 for none, and for a name that
// is no alias.
static uint32_t alias_target(const a_name_table& names, std::string_view name) {
  if (!names.aliases.contains(name))
    return 0;
  for (size_t steps = 0; steps < names.aliases.size(); steps++) {
    auto alias = names.aliases.find(name);
    if (alias == names.aliases.end())
      break;
    name = alias->second;
  }
  for (const auto* table : {&names.functions, &names.static_functions})
    if (auto entry = table->find(name); entry != table->end())
      return entry->second;
  return 0;
}

// A function that is weak and nowhere has the number 0, a null pointer.
static uint32_t undefined_function(a_program* program, a_name_table* names,
                                   const an_if_symbol& symbol) {
  auto [entry, is_new] = names->functions.emplace(symbol.name, 0);
  if (!is_new)
    return entry->second;
  entry->second = alias_target(*names, symbol.name);
  a_native native = find_native(symbol.name);
  if (entry->second != 0 || (native == nullptr && find_pragma(symbol, ifpk_QL_WEAK) != nullptr))
    return entry->second;
  a_function& function = program->functions.emplace_back();
  function.name = symbol.name;
  function.native = native;
  return entry->second = static_cast<uint32_t>(program->functions.size());
}

static void lay_out_undefined(a_program* program, a_name_table* names, const an_if_symbol& symbol) {
  if (is_function_symbol(symbol)) {
    program->function_ids[symbol.id] = undefined_function(program, names, symbol);
    return;
  }
  auto known = names->variables.find(symbol.name);
  uint32_t address = known != names->variables.end()
                         ? known->second
                         : make_native_variable(&program->memory, symbol.name);
  if (address != 0 || find_pragma(symbol, ifpk_QL_WEAK) != nullptr)
    program->addresses[symbol.id] = address;
}

void lay_out_program(a_program* program) {
  a_name_table names;
  for (const an_if_symbol& symbol : program->file.globals) {
    const an_if_pragma* synonym = find_pragma(symbol, ifpk_FUNC_SYNONYM);
    if (synonym != nullptr && !synonym->strings.empty())
      names.aliases.emplace(symbol.name, synonym->strings.front());
    if (is_defined(symbol) && symbol.type != nullptr)
      lay_out_definition(program, &names, symbol);
  }
  for (const an_if_symbol& symbol : program->file.globals)
    if (!is_defined(symbol) && symbol.type != nullptr)
      lay_out_undefined(program, &names, symbol);
  if (program->functions.size() > UINT16_MAX)
    throw a_run_error{"more functions than a pointer can tell apart"};
}

// -- Initialisers --------------------------------------------------------------

namespace {

// Stores the values of one initialiser, which come in the order of the
// object's scalars.
class an_initialization {
public:
  an_initialization(a_program* target_program, a_machine* target_machine,
                    const an_if_initializer& source)
      : program(*target_program), machine(*target_machine), values(source.values) {}
  void run(const an_if_symbol& symbol);

private:
  bool at_end() const {
    return next == values.size() && skipped == 0;
  }
  // The FIELD node that comes next, when it names a member of the type.
  const an_if_node* next_field(const an_if_type* csu) const;
  void take_skips();

  void object(const an_if_type* type, uint64_t address, uint64_t room);
  void array(const an_if_type* type, uint64_t address, uint64_t room);
  void structure(const an_if_type* type, uint64_t address, uint64_t room);
  void union_object(const an_if_type* type, uint64_t address, uint64_t room);
  void member(const an_if_member& target, uint64_t address, uint64_t room);
  // The value of the next scalar; false when it is to be left alone.
  bool scalar(const an_if_type* type, uint64_t* value);

  a_program& program;
  a_machine& machine;
  const std::vector<const an_if_node*>& values;
  size_t next = 0;
  uint64_t skipped = 0; // scalars that a SKIP still covers
};

} // namespace

void an_initialization::take_skips() {
  while (skipped == 0 && next < values.size() && values[next]->opcode == ifop_SKIP)
    skipped = values[next++]->integer;
}

const an_if_node* an_initialization::next_field(const an_if_type* csu) const {
  if (skipped != 0 || next == values.size() || values[next]->opcode != ifop_FIELD)
    return nullptr;
  return values[next]->member_csu->stripped() == csu ? values[next] : nullptr;
}

void an_initialization::run(const an_if_symbol& symbol) {
  object(symbol.type, program.addresses.at(symbol.id), room_for(symbol));
  take_skips();
  if (!at_end())
    throw a_run_error{"the initializer of " + std::string(symbol.name) +
                      " has more values than the variable"};
}

void an_initialization::object(const an_if_type* type, uint64_t address, uint64_t room) {
  take_skips();
  if (at_end())
    return;
  type = type->stripped();
  if (type->kind == iftk_array)
    return array(type, address, room);
  if (type->kind == iftk_union)
    return union_object(type, address, room);
  if (type->is_csu())
    return structure(type, address, room);
  uint64_t value = 0;
  if (scalar(type, &value))
    program.memory.store(address, value_type_of(type).kind, value);
}

void an_initialization::array(const an_if_type* type, uint64_t address, uint64_t room) {
  uint64_t element = byte_size(type->target);
  uint64_t count = type->is_complete ? type->count : element != 0 ? room / element : 0;
  for (uint64_t i = 0; i < count && !at_end(); i++)
    object(type->target, address + i * element, element);
}

void an_initialization::structure(const an_if_type* type, uint64_t address, uint64_t room) {
  size_t position = 0;
  for (;;) {
    take_skips();
    if (const an_if_node* field = next_field(type)) {
      position = field->member->number - 1;
      ++next;
      continue;
    }
    if (position == type->members.size() || at_end())
      return;
    member(type->members[position++], address, room);
  }
}

void an_initialization::union_object(const an_if_type* type, uint64_t address, uint64_t room) {
  const an_if_node* field = next_field(type);
  if (field != nullptr)
    ++next;
  if (!type->members.empty())
    member(field != nullptr ? *field->member : type->members.front(), address, room);
}

void an_initialization::member(const an_if_member& target, uint64_t address, uint64_t room) {
  uint64_t offset = static_cast<uint64_t>(target.bit_offset) / 8;
  if (!target.is_bitfield) {
    object(target.type, address + offset, std::max(room, offset) - offset);
    return;
  }
  uint64_t value = 0;
  if (scalar(target.type->stripped(), &value))
    program.memory.store_bits(address + offset, static_cast<unsigned>(target.bit_offset % 8),
                              target.bit_width, value);
}

bool an_initialization::scalar(const an_if_type* type, uint64_t* value) {
  take_skips();
  if (skipped != 0) {
    --skipped;
    return false;
  }
  if (at_end())
    return false;
  const an_if_node* node = values[next++];
  bool is_whole = !is_floating_kind(value_type_of(type).kind);
  if (is_whole && (node->opcode == ifop_ICON || node->opcode == ifop_LCON)) {
    *value = node->integer;
    return true;
  }
  a_function expression;
  expression.name = "(initializer)";
  compile_expression(&program, node, type, &expression);
  *value = machine.call(&expression, {});
  return true;
}

void initialize_data(a_program* program, a_machine* machine) {
  for (const an_if_initializer& initializer : program->file.initializers) {
    if (program->addresses.count(initializer.symbol->id) == 0)
      throw a_run_error{"an initializer of what is no variable"};
    an_initialization(program, machine, initializer).run(*initializer.symbol);
  }
}

// -- The run -------------------------------------------------------------------

// Calls what atexit was given, newest first.
static void run_exit_functions(a_machine* machine) {
  while (!machine->exit_functions.empty()) {
    uint32_t number = machine->exit_functions.back();
    machine->exit_functions.pop_back();
    machine->call(machine->callee(number), {});
  }
}

static int run_main(a_program* program, a_machine* machine, const std::vector<std::string>& words) {
  lay_out_program(program);
  program->memory.make_stack();
  initialize_data(program, machine);
  const an_if_symbol* symbol = program->file.find_global("main");
  if (symbol == nullptr || symbol->function == nullptr)
    throw a_run_error{"the file has no function main"};
  a_memory& memory = program->memory;
  uint32_t vector = memory.allocate(4 * (words.size() + 1));
  for (size_t i = 0; i < words.size(); i++)
    memory.store(vector + 4 * i, k_data_pointer, memory.add_text(words[i]));
  memory.store(vector + 4 * words.size(), k_data_pointer, 0);
  std::vector<uint64_t> arguments{words.size(), vector};
  arguments.resize(std::min<size_t>(symbol->function->parameter_count, 2));
  a_function& function = program->function_of(program->function_ids.at(symbol->id));
  return static_cast<int>(machine->call(&function, arguments) & 0xFF);
}

// The status of the program, with what it does at its exit.
static int status_of_run(a_program* program, a_machine* machine,
                         const std::vector<std::string>& words) {
  int status = 0;
  try {
    status = run_main(program, machine, words);
  } catch (const a_program_exit& leave) {
    status = leave.status;
    if (leave.at_once)
      return status;
  }
  machine->abandon_calls();
  try {
    run_exit_functions(machine);
  } catch (const a_program_exit& leave) {
    status = leave.status;
  }
  return status;
}

namespace {

struct a_run_request {
  const an_if_file& file;
  const std::vector<std::string>& words;
  const a_run_limits& limits;
  int status = ifrun_status_error;
};

} // namespace

static void run_request(a_run_request* request) {
  try {
    a_program program(request->file, request->limits);
    a_machine machine(&program);
    request->status = status_of_run(&program, &machine, request->words);
  } catch (const a_run_error& error) {
    std::fflush(stdout);
    const char* place = error.place.empty() ? "(startup)" : error.place.c_str();
    std::fprintf(stderr, "ifrun: %s in function %s\n", error.message.c_str(), place);
    request->status = error.status;
  } catch (const std::bad_alloc&) {
    std::fflush(stdout);
    std::fputs("ifrun: out of memory\n", stderr);
  }
  std::fflush(stdout);
}

int run_program(const an_if_file& file, const std::vector<std::string>& words,
                const a_run_limits& limits) {
  // Expressions are compiled by recursion. A thread of its own gives them the
  // stack that the deepest accepted ones need.
  static constexpr size_t host_stack_size = size_t{512} << 20;
  a_run_request request{file, words, limits};
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, host_stack_size);
  auto start = [](void* argument) -> void* {
    run_request(static_cast<a_run_request*>(argument));
    return nullptr;
  };
  pthread_t thread;
  if (pthread_create(&thread, &attributes, start, &request) == 0)
    pthread_join(thread, nullptr);
  else
    std::fputs("ifrun: out of memory\n", stderr);
  pthread_attr_destroy(&attributes);
  return request.status;
}
