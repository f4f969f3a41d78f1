// What the files of the host environment share.

#ifndef HOST_ENVIR_INT_H
#define HOST_ENVIR_INT_H

struct an_open_file_result;

// Forgets the directory names in the IL's memory.
void clear_il_directory_list();

// Describes a failed attempt to open a file by its errno.
void set_open_file_result(an_open_file_result* result, int error_number);

// Sets current_directory_name from the system.
void set_current_directory_name();

#endif
