// A coverage-guided fuzzer of the whole tool, for libFuzzer. A run of krtparse
// ends in exit(), so each input gets a child process; the child hands its
// coverage counters back through shared memory. The first byte of an input
// chooses the options, the rest is the source file.
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "cfe.h"

extern "C" {
extern uint8_t __start___sancov_cntrs[];
extern uint8_t __stop___sancov_cntrs[];
int LLVMFuzzerInitialize(int* argc, char*** argv);
int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
}

// One row a set of options; the first ones only preprocess. An option that ends
// with `=` gets the name of a scratch file.
static const std::vector<const char*> option_sets[] = {
    {"--preprocess", "--c"},
    {"--preprocess", "--c++"},
    {"--preprocess", "--comments", "--c", "--strict"},
    {"--preprocess", "--old_c"},
    {"--no_line_commands", "--preprocess", "--g++"},
    {"--dependencies", "--c"},
    {"--list=", "--no_line_commands", "--c99"},
    {"--no_code_gen", "--gcc", "--c99"},
    {"--no_code_gen", "--c89", "--strict"},
    {"--no_code_gen", "--old_c"},
    {"--no_code_gen", "--c11", "--strict_warnings", "--check_misra=all"},
    {"--no_code_gen", "--c++"},
    {"--no_code_gen", "--g++", "--gnu_version=60000"},
    {"--gcc", "--c99", "--i_output_file="},
    {"--c89", "--no_gcc", "--relaxed", "--i_output_file="},
    {"--no_code_gen", "--c++", "--cfront_3.0"},
    {"--no_code_gen", "--c++", "--embedded_c++", "--check_misra=all"},
    {"--c99", "--strict", "--check_misra=all", "--advice:power=all", "--i_output_file="},
};
static constexpr size_t preprocessing_sets = 7;
static constexpr size_t all_sets = sizeof option_sets / sizeof *option_sets;

// Seconds before a child counts as hanging.
static constexpr unsigned time_limit = 20;

// Bytes of address space a child may use.
static constexpr rlim_t memory_limit = rlim_t{2} << 30;

static uint8_t* shared_counters;
static std::string source_name;
static std::string scratch_name;
static bool only_preprocess = false;

static size_t counters_size() {
  return static_cast<size_t>(__stop___sancov_cntrs - __start___sancov_cntrs);
}

// The tool's own handlers would turn a crash into an orderly exit.
sighandler_t signal(int, sighandler_t) noexcept {
  return SIG_DFL;
}

// KRT_FUZZ_PREPROCESS in the environment leaves the runs out that compile.
int LLVMFuzzerInitialize(int*, char***) {
  only_preprocess = getenv("KRT_FUZZ_PREPROCESS") != nullptr;
  source_name = "/dev/shm/krtparse_fuzz_" + std::to_string(getpid()) + ".c";
  scratch_name = source_name + ".out";
  void* block =
      mmap(nullptr, counters_size(), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (block == MAP_FAILED)
    abort();
  shared_counters = static_cast<uint8_t*>(block);
  return 0;
}

static void hand_counters_back() {
  memcpy(shared_counters, __start___sancov_cntrs, counters_size());
  _exit(0);
}

[[noreturn]] static void run_child(const std::vector<const char*>& options) {
  std::vector<std::string> words(options.begin(), options.end());
  std::vector<char*> argv = {const_cast<char*>("krtparse")};
  for (std::string& word : words) {
    if (word.back() == '=')
      word += scratch_name;
    argv.push_back(word.data());
  }
  argv.push_back(source_name.data());
  int argc = static_cast<int>(argv.size());
  argv.push_back(nullptr);
  if (!freopen("/dev/null", "w", stdout) || !freopen("/dev/null", "w", stderr))
    _exit(1);
  atexit(hand_counters_back);
  alarm(time_limit);
  const rlimit limit = {memory_limit, memory_limit};
  setrlimit(RLIMIT_AS, &limit);
  compiler_main(argc, argv.data());
  exit(0);
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0)
    return -1;
  FILE* file = fopen(source_name.c_str(), "wb");
  if (!file)
    abort();
  fwrite(data + 1, 1, size - 1, file);
  fclose(file);
  pid_t child = fork();
  if (child < 0)
    return 0;
  if (child == 0)
    run_child(option_sets[*data % (only_preprocess ? preprocessing_sets : all_sets)]);
  int status;
  waitpid(child, &status, 0);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    fprintf(stderr, "the child ended with wait status %#x\n", status);
    abort();
  }
  memcpy(__start___sancov_cntrs, shared_counters, counters_size());
  return 0;
}
