// The handlers of fatal signals: they tell the user where the tool was and
// whom to ask, and end the process.

#ifndef SIGHANDLER_H
#define SIGHANDLER_H

#include <cstddef>

typedef void a_signal_handler(int signal_number);

// Installs `primary` for all fatal signals. `callback`, which may be null, is
// called by the primary handler just before the end.
void install_common_handlers(a_signal_handler* primary, a_signal_handler* callback);

// The same without a callback.
void signal_init();

// Reports the signal with the place in the source that was being processed and
// ends the process with status 2. Never returns.
void primary_signal_handler(int signal_number);

// Installs itself again and returns, so that a debugger sees the signal.
void debug_signal_handler(int signal_number);

// What a user is asked to send in after a fault of the tool.
const char* support_message_text();

void try_gen_corefile(int signal_number);

// Appends formatted text to the string in `buffer`, `size` bytes in all; the
// result always ends in a NUL. Safe in a handler: it uses static memory only.
[[gnu::format(printf, 3, 4)]] void sigstrnappend(char* buffer, size_t size, const char* format,
                                                 ...);

#endif
