/* A database in memory: SQLite as one unit with this program. The options leave
   out what needs an operating system. */
#define SQLITE_DEFAULT_MEMSTATUS 0
#define SQLITE_DISABLE_INTRINSIC 1
#define SQLITE_OMIT_LOAD_EXTENSION 1
#define SQLITE_OS_OTHER 1
#define SQLITE_THREADSAFE 0
#include "sqlite3.c"

#include <stdio.h>

/* -- A system without files -- */

static int open_file(sqlite3_vfs *system, const char *name, sqlite3_file *file, int flags,
                     int *flags_out) {
  return SQLITE_CANTOPEN;
}

static int delete_file(sqlite3_vfs *system, const char *name, int sync) {
  return SQLITE_OK;
}

static int access_file(sqlite3_vfs *system, const char *name, int flags, int *result) {
  *result = 0;
  return SQLITE_OK;
}

static int full_name(sqlite3_vfs *system, const char *name, int size, char *result) {
  sqlite3_snprintf(size, result, "%s", name);
  return SQLITE_OK;
}

static int randomness(sqlite3_vfs *system, int size, char *bytes) {
  memset(bytes, 1, size);
  return size;
}

static int sleep_for(sqlite3_vfs *system, int microseconds) {
  return microseconds;
}

static int current_time(sqlite3_vfs *system, double *day) {
  *day = 2451545.0; /* noon of the first of January 2000 */
  return SQLITE_OK;
}

static int last_error(sqlite3_vfs *system, int size, char *text) {
  return 0;
}

static sqlite3_vfs no_files = {
    .iVersion = 1,
    .szOsFile = sizeof(sqlite3_file),
    .mxPathname = 64,
    .zName = "no files",
    .xOpen = open_file,
    .xDelete = delete_file,
    .xAccess = access_file,
    .xFullPathname = full_name,
    .xRandomness = randomness,
    .xSleep = sleep_for,
    .xCurrentTime = current_time,
    .xGetLastError = last_error,
};

int sqlite3_os_init(void) {
  return sqlite3_vfs_register(&no_files, 1);
}

int sqlite3_os_end(void) {
  return SQLITE_OK;
}

/* -- The program -- */

static int print_row(void *unused, int count, char **values, char **names) {
  int i;

  for (i = 0; i < count; i++)
    printf("%s%s: %s", i ? ", " : "", names[i], values[i] ? values[i] : "NULL");
  printf("\n");
  return 0;
}

static int failures;

static void execute(sqlite3 *database, const char *sql) {
  char *message = NULL;

  if (sqlite3_exec(database, sql, print_row, NULL, &message) != SQLITE_OK) {
    printf("%s: %s\n", sql, message);
    sqlite3_free(message);
    failures++;
  }
}

int main(void) {
  sqlite3 *database;

  if (sqlite3_open(":memory:", &database) != SQLITE_OK) {
    printf("%s\n", sqlite3_errmsg(database));
    return 1;
  }
  execute(database, "CREATE TABLE cities(name TEXT PRIMARY KEY, country TEXT, people REAL)");
  execute(database, "BEGIN");
  execute(database, "INSERT INTO cities VALUES('Oslo', 'Norway', 0.71), ('Bergen', 'Norway', 0.29),"
                    "('Lyon', 'France', 0.52), ('Paris', 'France', 2.1), ('Bonn', 'Germany', 0.33)");
  execute(database, "COMMIT");
  execute(database, "SELECT country, count(*) AS cities, round(sum(people), 2) AS millions"
                    " FROM cities GROUP BY country ORDER BY millions DESC");
  execute(database, "SELECT upper(name) AS small FROM cities WHERE people < 0.5 ORDER BY name");
  execute(database, "WITH RECURSIVE numbers(n) AS"
                    " (SELECT 1 UNION ALL SELECT n + 1 FROM numbers WHERE n < 1000)"
                    " SELECT sum(n * n) AS squares, avg(n) AS middle FROM numbers");
  execute(database, "SELECT date('now') AS today, printf('%08.3f|%x', 3.14159, 255) AS text");
  sqlite3_close(database);
  return failures;
}
