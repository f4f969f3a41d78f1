// File names and their parts, for every class and function that lies outside
// the front end's regions. Names are taken and given as the host's own bytes.

#ifndef FILENAME_H
#define FILENAME_H

#include <cstddef>

// The most bytes of one part that fn_split keeps.
inline constexpr size_t fn_max_part_length = 499;

// Splits a name into the directory with its final `/`, the base name and the
// extension, both without the dot. An absent part is the empty string. The
// parts stand in static buffers until the next call, each cut to
// fn_max_part_length bytes. Any of the three result pointers may be null.
void fn_split(const char* name, const char** directory, const char** base, const char** extension);

// Joins the parts into `buffer`, or into new heap memory that the caller
// frees when `buffer` is null. A `/` and a dot are added where they are missing.
char* fn_build(char* buffer, const char* directory, const char* base, const char* extension);

// Gives `name` an extension, with or without its leading dot; a name that has
// one keeps it unless `replace`. An empty extension with `replace` takes the
// dot away too. The result is new heap memory.
char* fn_addext(const char* name, const char* extension, bool replace);

// The name without its extension and dot, in new heap memory.
char* fn_delext(const char* name);

bool fn_hasdir(const char* name);
// The text behind the last `/`.
const char* fn_basename(const char* name);
bool fn_exists(const char* name);
// True when the file is gone; errno tells why it isn't.
bool fn_delete(const char* name);
// The working directory in new heap memory, or null.
char* fn_get_working_dir();
// An absolute name.
bool fn_has_full_path(const char* name);
// A name with a directory part that is not absolute.
bool fn_has_relative_path(const char* name);
// Whether both names exist and name one file.
bool fn_samefile(const char* a, const char* b);
// The absolute name with links resolved, in new heap memory, or null.
char* fn_realname(const char* name);
// Renames, and copies across file systems. True on success.
bool fn_rename(const char* from, const char* to);
// Order of two names, as strcmp.
int fn_strcmp(const char* a, const char* b);

// A name for a temporary file, reserved by an empty file. The directory is
// TMPDIR's, else the one given, else the host's default; a null prefix stands
// for one that holds the process id. The name goes to `buffer`, or to new
// heap memory when that is null. Ends the process with status 1 when no name
// can be made.
char* fn_tmpnam(char* buffer, const char* directory, const char* prefix);

#endif
