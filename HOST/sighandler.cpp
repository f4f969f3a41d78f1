#include "sighandler.h"

#include "if_write_util.h"
#include "il_entities.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "source_file.h"

#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int exit_status = 2;
constexpr size_t work_buffer_size = 2048;

const char support_text[] =
    "This fault is a defect of the KRT EABI C/C++ Parser and not of the program that was\n"
    "being compiled, although a change of that program might avoid it.  Please report it to\n"
    "your supplier, and include in the report:\n"
    "  - the entire error message as it was printed above;\n"
    "  - a complete test case, with all the command-line options that were in effect.  The\n"
    "    easiest way to make the test case complete is to send the .pp file created by "
    "option --preproc_with_comment,\n"
    "    which holds the whole source with all the files that it includes.\n";
static_assert(sizeof support_text == 537);

a_signal_handler* handler_callback;

const int fatal_signals[] = {SIGILL, SIGABRT, SIGFPE, SIGSEGV, SIGTERM, SIGINT,
                             SIGHUP, SIGTRAP, SIGBUS, SIGSYS,  SIGXCPU, SIGXFSZ};

struct a_signal_phrase {
  int signal_number;
  const char* phrase;
};
const a_signal_phrase signal_phrases[] = {
    {SIGILL, "executed an illegal instruction"},
    {SIGTRAP, "received a TRAP signal"},
    {SIGABRT, "had an internal inconsistency and aborted"},
    {SIGBUS, "experienced a bus alignment fault"},
    {SIGFPE, "received a floating point exception"},
    {SIGSEGV, "experienced a segmentation fault"},
    {SIGXCPU, "exceeded the CPU time limit"},
    {SIGXFSZ, "exceeded the file size limit"},
    {SIGSYS, "experienced a bad system call"},
};

// The heap may be damaged: a pointer is followed only if it can be one.
bool is_usable_pointer(const void* pointer) {
  return reinterpret_cast<uintptr_t>(pointer) > 100000;
}

const char* program_name() {
  if (!is_usable_pointer(sys_argv) || !is_usable_pointer(sys_argv[0]))
    return "unknown";
  return sys_argv[0];
}

const char* phrase_for_signal(int signal_number) {
  for (const a_signal_phrase& row : signal_phrases)
    if (row.signal_number == signal_number)
      return row.phrase;
  return "experienced a fatal internal fault";
}

const char* name_of_current_function() {
  const char* unknown = "(unknown or file scope)";
  if (!is_usable_pointer(scope_stack) || depth_innermost_function_scope < 0 ||
      depth_innermost_function_scope > depth_scope_stack)
    return unknown;
  const a_routine* routine = scope_stack[depth_innermost_function_scope].routine;
  if (!is_usable_pointer(routine) || !is_usable_pointer(routine->source_corresp.name))
    return unknown;
  return routine->source_corresp.name;
}

// "while processing function f file x.c line 3"
const char* text_of_current_place() {
  static char buffer[work_buffer_size];
  const char* file_name = "(unknown)";
  long line = 0;
  if (is_usable_pointer(curr_ise)) {
    if (is_usable_pointer(curr_ise->file_name))
      file_name = curr_ise->file_name;
    line = static_cast<long>(curr_ise->lines_read);
  }
  buffer[0] = '\0';
  sigstrnappend(buffer, sizeof buffer, "while processing function %s file %s line %ld",
                name_of_current_function(), file_name, line);
  return buffer;
}

[[noreturn]] void leave() {
  fflush(nullptr);
  _Exit(exit_status);
}

} // namespace

void install_common_handlers(a_signal_handler* primary, a_signal_handler* callback) {
  handler_callback = callback;
  for (int signal_number : fatal_signals)
    signal(signal_number, primary);
}

void signal_init() {
  install_common_handlers(primary_signal_handler, nullptr);
}

void debug_signal_handler(int signal_number) {
  signal(signal_number, debug_signal_handler);
}

void primary_signal_handler(int signal_number) {
  if_remove_output_file();
  if (signal_number == SIGHUP || signal_number == SIGINT) {
    fprintf(stderr, "[%s forced exit]\n", program_name());
    _Exit(exit_status);
  }
  if (signal_number == SIGTERM) {
    fprintf(stderr, "[%s received a terminate signal]\n", program_name());
    _Exit(exit_status);
  }
  static const char* const phrase = phrase_for_signal(signal_number);
  const char* place = text_of_current_place();
  fprintf(stderr, "\nINTERNAL ERROR: %s %s\n", program_name(), phrase);
  if (*place != '\0')
    fprintf(stderr, "                  %s\n", place);
  fputc('\n', stderr);
  fflush(nullptr);
  fputs(support_message_text(), stderr);
  fflush(nullptr);
  if (handler_callback != nullptr)
    handler_callback(signal_number);
  try_gen_corefile(signal_number);
  leave();
}

const char* support_message_text() {
  return support_text;
}

void try_gen_corefile(int) {
  // The host's own core files serve.
}

void sigstrnappend(char* buffer, size_t size, const char* format, ...) {
  static char work[work_buffer_size];
  if (!is_usable_pointer(buffer) || !is_usable_pointer(format) || size == 0)
    return;
  va_list arguments;
  va_start(arguments, format);
  vsnprintf(work, sizeof work, format, arguments);
  va_end(arguments);
  size_t used = strnlen(buffer, size);
  if (used + 1 >= size)
    return;
  size_t count = strnlen(work, size - used - 1);
  memcpy(buffer + used, work, count);
  buffer[used + count] = '\0';
}
