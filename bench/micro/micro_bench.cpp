// Times of the operations that a run consists of, and the sizes of the records
// that it makes most of.

#include "front_end_state.h"
#include "il_expr.h"
#include "lookup.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <malloc.h>
#include <random>
#include <string>
#include <vector>

namespace {

// A front end for the time of one benchmark.
class BENCH_FRONT_END : public FRONT_END_STATE {
public:
  explicit BENCH_FRONT_END(int dialect) {
    start(dialect);
  }
  ~BENCH_FRONT_END() {
    stop();
  }
};

constexpr int num_spellings = 100000;
constexpr int num_nested_scopes = 10;
constexpr int num_expr_nodes = 1000000;

// Names of three words each, as programs have them, in the order of a text
// that uses them all.
std::vector<std::string> spellings() {
  static const char* const verbs[] = {"read",  "write", "open",  "close", "get",  "set",   "find",
                                      "make",  "alloc", "free",  "init",  "push", "pop",   "scan",
                                      "parse", "emit",  "check", "mark",  "walk", "merge", "copy"};
  static const char* const nouns[] = {"buffer", "list",  "node",  "tree",   "table", "file",
                                      "line",   "block", "scope", "symbol", "type",  "field",
                                      "token",  "name",  "value", "range",  "index", "page",
                                      "queue",  "timer", "lock"};
  std::vector<std::string> names;
  for (int i = 0; names.size() < num_spellings; ++i)
    for (const char* verb : verbs)
      for (const char* noun : nouns)
        if (names.size() < num_spellings)
          names.push_back(std::string(verb) + "_" + noun + std::to_string(i));
  std::shuffle(names.begin(), names.end(), std::mt19937(1));
  return names;
}

// Lookups among `range` of the names in a table of them all. A function of a
// program works with few; with all of them at random, nearly every step waits
// for memory.
void identifier_lookup(benchmark::State& state) {
  BENCH_FRONT_END front_end(cd_ansi_c);
  const std::vector<std::string> names = spellings();
  a_symbol_locator locator = cleared_locator;
  for (const std::string& name : names) {
    find_symbol(name.data(), name.size(), &locator);
    enter_symbol(symk_variable, &locator, 0, nullptr);
  }
  const size_t names_in_use = static_cast<size_t>(state.range(0));
  size_t next = 0;
  for (auto _ : state) {
    const std::string& name = names[next];
    next = next + 1 == names_in_use ? 0 : next + 1;
    locator = cleared_locator;
    find_symbol(name.data(), name.size(), &locator);
    benchmark::DoNotOptimize(normal_id_lookup(&locator, ilo_none));
  }
}
BENCHMARK(identifier_lookup)->Arg(1000)->Arg(num_spellings);

// A declaration in the innermost scope, its lookup, and that of a name of file
// scope. The symbols are made beforehand: making one is an allocation.
void enter_and_lookup_in_nested_scopes(benchmark::State& state) {
  BENCH_FRONT_END front_end(static_cast<int>(state.range(0)));
  constexpr int declarations = 100;
  a_symbol_locator locator = cleared_locator;
  find_symbol("global", 0, &locator);
  enter_symbol(symk_variable, &locator, 0, nullptr);
  std::vector<a_symbol*> symbols;
  for (int i = 0; i < declarations; ++i) {
    locator = cleared_locator;
    find_symbol(("local" + std::to_string(i)).c_str(), 0, &locator);
    symbols.push_back(make_symbol(symk_variable, &locator));
  }
  for (auto _ : state) {
    for (int depth = 0; depth < num_nested_scopes; ++depth)
      push_block_scope(nullptr);
    for (a_symbol* symbol : symbols) {
      add_symbol_to_symbol_table(symbol, decl_scope_level, nullptr);
      locator = cleared_locator;
      find_symbol(symbol->header->identifier, symbol->header->length, &locator);
      benchmark::DoNotOptimize(normal_id_lookup(&locator, ilo_none));
      locator = cleared_locator;
      find_symbol("global", 6, &locator);
      benchmark::DoNotOptimize(normal_id_lookup(&locator, ilo_none));
    }
    for (int depth = 0; depth < num_nested_scopes; ++depth)
      pop_scope();
  }
  state.SetItemsProcessed(state.iterations() * declarations);
}
BENCHMARK(enter_and_lookup_in_nested_scopes)->Arg(cd_ansi_c)->Arg(cd_cplusplus);

void push_and_pop_of_a_block(benchmark::State& state) {
  BENCH_FRONT_END front_end(cd_ansi_c);
  for (auto _ : state) {
    push_block_scope(nullptr);
    pop_scope();
  }
}
BENCHMARK(push_and_pop_of_a_block);

void expr_node_allocation(benchmark::State& state) {
  BENCH_FRONT_END front_end(cd_ansi_c);
  for (auto _ : state) {
    const int32_t region = new_memory_region();
    curr_il_region_number = region;
    for (int i = 0; i < num_expr_nodes; ++i)
      benchmark::DoNotOptimize(alloc_expr_node(expr_operation));
    curr_il_region_number = file_scope_region_number;
    free_memory_region(region);
  }
  state.SetItemsProcessed(state.iterations() * num_expr_nodes);
}
BENCHMARK(expr_node_allocation)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
  printf("an_expr_node %zu bytes, a_type %zu bytes, a_symbol %zu bytes\n", sizeof(an_expr_node),
         sizeof(a_type), sizeof(a_symbol));
  // Memory given back stays with the process: the kernel's work isn't timed.
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  mallopt(M_TOP_PAD, 1 << 28);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
