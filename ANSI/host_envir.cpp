// Start-up of the host environment.

#include "host_envir.h"

#include "source_file.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <unistd.h>

static constexpr size_t directory_name_growth = 256;

const char* current_directory_name = "";
const char* znt_base_directory = "";
a_boolean host_little_endian = 1;

// Sets current_directory_name from the system; the buffer grows as long as
// the name doesn't fit.
static void set_current_directory_name() {
  char* buffer = nullptr;
  for (size_t size = directory_name_growth;; size += directory_name_growth) {
    buffer = static_cast<char*>(saferealloc(buffer, size));
    if (getcwd(buffer, size) != nullptr)
      break;
    if (errno != ERANGE) {
      buffer[0] = '\0';
      break;
    }
  }
  current_directory_name = buffer;
}

void get_timer(a_timer* timer) {
  timer->cpu_milliseconds = static_cast<int64_t>(static_cast<double>(clock()) * 1000.0 / 1e6);
  timer->wall_seconds = time(nullptr);
}

void host_envir_early_init() {
  const char* base = getenv("ZNT_BASE");
  znt_base_directory = base != nullptr ? base : "";
  host_little_endian = 1;
  set_current_directory_name();
  source_file_early_init();
}

void host_envir_one_time_init() {}

void host_envir_init() {}

void host_envir_trans_unit_init() {}
