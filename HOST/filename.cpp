// File names and their parts.

#include "filename.h"

#include "safe_alloc.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

static constexpr size_t part_buffer_size = 512;
static constexpr size_t copy_block_size = 8192;

const char* fn_basename(const char* name) {
  const char* slash = strrchr(name, '/');
  return slash == nullptr ? name : slash + 1;
}

// The dot of the extension in the final component, or null.
static const char* extension_dot(const char* name) {
  return strrchr(fn_basename(name), '.');
}

static void keep_part(char* buffer, const char* text, size_t length) {
  if (length > fn_max_part_length)
    length = fn_max_part_length;
  memcpy(buffer, text, length);
  buffer[length] = '\0';
}

void fn_split(const char* name, const char** directory, const char** base, const char** extension) {
  static char directory_part[part_buffer_size];
  static char base_part[part_buffer_size];
  static char extension_part[part_buffer_size];
  const char* base_start = fn_basename(name);
  const char* dot = extension_dot(name);
  const char* end = name + strlen(name);
  if (directory != nullptr) {
    keep_part(directory_part, name, static_cast<size_t>(base_start - name));
    *directory = directory_part;
  }
  if (base != nullptr) {
    keep_part(base_part, base_start, static_cast<size_t>((dot ? dot : end) - base_start));
    *base = base_part;
  }
  if (extension != nullptr) {
    const char* start = dot ? dot + 1 : end;
    keep_part(extension_part, start, static_cast<size_t>(end - start));
    *extension = extension_part;
  }
}

char* fn_build(char* buffer, const char* directory, const char* base, const char* extension) {
  size_t directory_length = directory ? strlen(directory) : 0;
  size_t base_length = base ? strlen(base) : 0;
  size_t extension_length = extension ? strlen(extension) : 0;
  if (buffer == nullptr)
    buffer = static_cast<char*>(safemalloc(directory_length + base_length + extension_length + 3));
  char* p = buffer;
  if (directory_length != 0) {
    memcpy(p, directory, directory_length);
    p += directory_length;
    if (p[-1] != '/')
      *p++ = '/';
  }
  if (base_length != 0)
    memcpy(p, base, base_length);
  p += base_length;
  if (extension_length != 0) {
    if (extension[0] != '.')
      *p++ = '.';
    memcpy(p, extension, extension_length);
    p += extension_length;
  }
  *p = '\0';
  return buffer;
}

// `length` bytes of `name`, a dot and the extension; no dot for an empty one.
static char* stem_with_extension(const char* name, size_t length, const char* extension) {
  if (extension[0] == '.')
    extension++;
  size_t extension_length = strlen(extension);
  char* result = static_cast<char*>(safemalloc(length + extension_length + 2));
  memcpy(result, name, length);
  if (extension_length != 0) {
    result[length++] = '.';
    memcpy(result + length, extension, extension_length);
  }
  result[length + extension_length] = '\0';
  return result;
}

char* fn_addext(const char* name, const char* extension, bool replace) {
  const char* dot = extension_dot(name);
  if (dot != nullptr && !replace)
    return stem_with_extension(name, strlen(name), "");
  size_t stem = dot != nullptr ? static_cast<size_t>(dot - name) : strlen(name);
  return stem_with_extension(name, stem, extension);
}

char* fn_delext(const char* name) {
  return fn_addext(name, "", true);
}

bool fn_hasdir(const char* name) {
  return strchr(name, '/') != nullptr;
}

bool fn_exists(const char* name) {
  struct stat info;
  return stat(name, &info) == 0;
}

bool fn_delete(const char* name) {
  return remove(name) == 0;
}

char* fn_get_working_dir() {
  return getcwd(nullptr, 0);
}

bool fn_has_full_path(const char* name) {
  return name[0] == '/';
}

bool fn_has_relative_path(const char* name) {
  return !fn_has_full_path(name) && fn_hasdir(name);
}

bool fn_samefile(const char* a, const char* b) {
  struct stat info_a;
  struct stat info_b;
  if (stat(a, &info_a) != 0 || stat(b, &info_b) != 0)
    return false;
  return (info_a.st_dev == info_b.st_dev && info_a.st_ino == info_b.st_ino) || strcmp(a, b) == 0;
}

char* fn_realname(const char* name) {
  return realpath(name, nullptr);
}

static bool copy_file(const char* from, const char* to) {
  FILE* in = fopen(from, "rb");
  if (in == nullptr)
    return false;
  FILE* out = fopen(to, "wb");
  if (out == nullptr) {
    fclose(in);
    return false;
  }
  char block[copy_block_size];
  bool ok = true;
  size_t count;
  while (ok && (count = fread(block, 1, sizeof block, in)) != 0)
    ok = fwrite(block, 1, count, out) == count;
  ok = !ferror(in) && ok;
  fclose(in);
  ok = fclose(out) == 0 && ok;
  if (!ok)
    remove(to);
  return ok;
}

bool fn_rename(const char* from, const char* to) {
  if (rename(from, to) == 0)
    return true;
  return errno == EXDEV && copy_file(from, to) && fn_delete(from);
}

int fn_strcmp(const char* a, const char* b) {
  return strcmp(a, b);
}

// "QL" and the process id in three base-62 digits, the lowest last.
static const char* process_prefix() {
  static const char digits[] = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
  static char prefix[] = "QL000";
  unsigned long id = static_cast<unsigned long>(getpid());
  for (int i = 4; i >= 2; i--) {
    prefix[i] = digits[id % 62];
    id /= 62;
  }
  return prefix;
}

// The linker warns of tempnam because a file may appear under the name before
// it is opened; mkstemp keeps the same form of name and leaves the file behind
// as the reservation.
static char* make_temp_name(const char* directory, const char* prefix) {
  const char* preferred = getenv("TMPDIR");
  if (preferred != nullptr && preferred[0] != '\0')
    directory = preferred;
  if (directory == nullptr || directory[0] == '\0')
    directory = P_tmpdir;
  char* name = fn_build(nullptr, directory, prefix, nullptr);
  size_t length = strlen(name);
  name = static_cast<char*>(saferealloc(name, length + sizeof "XXXXXX"));
  memcpy(name + length, "XXXXXX", sizeof "XXXXXX");
  int descriptor = mkstemp(name);
  if (descriptor < 0) {
    free(name);
    return nullptr;
  }
  close(descriptor);
  return name;
}

char* fn_tmpnam(char* buffer, const char* directory, const char* prefix) {
  char* name = make_temp_name(directory, prefix != nullptr ? prefix : process_prefix());
  if (name == nullptr) {
    fprintf(stderr, "ERROR: cannot create temporary file name; %s\n",
            errno == ENOMEM ? "out of memory" : "check directory permissions");
    exit(1);
  }
  if (buffer == nullptr)
    return name;
  strcpy(buffer, name);
  free(name);
  return buffer;
}
