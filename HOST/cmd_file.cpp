// The word reader of command files.

#include "cmd_file.h"

#include "safe_alloc.h"

#include <cctype>
#include <cstdlib>
#include <string>

static constexpr size_t word_growth = 80;
static constexpr size_t shown_quote_length = 30;

namespace {
struct a_word {
  char* text;
  size_t length;
  size_t capacity;
};
} // namespace

static void add_to_word(a_word* word, int c) {
  if (word->length + 1 >= word->capacity) {
    word->capacity += word_growth;
    word->text = static_cast<char*>(saferealloc(word->text, word->capacity));
  }
  word->text[word->length++] = static_cast<char>(c);
}

// Passes the rest of a `/*` comment.
static void skip_block_comment(FILE* file) {
  int previous = 0;
  for (int c = getc(file); c != EOF; c = getc(file)) {
    if (previous == '*' && c == '/')
      return;
    previous = c;
  }
  fputs(">> Unterminated comment in command file; aborting!\n", stderr);
  exit(-1);
}

// Passes the rest of a comment up to, but not including, the newline.
static void skip_line_comment(FILE* file) {
  int c;
  do {
    c = getc(file);
  } while (c != '\n' && c != EOF);
  if (c == '\n')
    ungetc(c, file);
}

[[noreturn]] static void unterminated_quote(const std::string& quoted) {
  fputs(">> Unterminated quote in command file; aborting\n   Quote starts at ", stderr);
  if (quoted.empty() || quoted[0] != '"')
    fputc('"', stderr);
  for (char c : quoted.substr(0, shown_quote_length)) {
    if (c == '\n')
      fputs("\\n", stderr);
    else if (c == '\t')
      fputs("\\t", stderr);
    else
      fputc(c, stderr);
  }
  fputc('\n', stderr);
  exit(-1);
}

// Adds the text up to the closing quote. Of what is read, only as much is kept
// aside as the message for an open quote shows.
static void read_quoted_part(FILE* file, a_word* word) {
  std::string shown;
  for (int c = getc(file); c != '"'; c = getc(file)) {
    if (c == EOF)
      unterminated_quote(shown);
    if (c == '\\') {
      int next = getc(file);
      if (next == '"' || next == '\\')
        c = next;
      else if (next != EOF)
        ungetc(next, file);
    }
    if (shown.size() < shown_quote_length)
      shown.push_back(static_cast<char>(c));
    add_to_word(word, c);
  }
}

// A `#` is an ordinary character only in a word that is an option: one with a
// `-` behind its last white space.
static bool sharp_starts_comment(const a_word& word) {
  for (size_t i = word.length; i > 0 && !isspace(static_cast<unsigned char>(word.text[i - 1])); i--)
    if (word.text[i - 1] == '-')
      return false;
  return true;
}

char* fnextopt(FILE* file) {
  a_word word = {static_cast<char*>(safemalloc(word_growth)), 0, word_growth};
  bool started = false;
  for (int c = getc(file); c != EOF; c = getc(file)) {
    if (isspace(c)) {
      if (started)
        break;
      continue;
    }
    if (c == ';' || (c == '#' && sharp_starts_comment(word))) {
      skip_line_comment(file);
      continue;
    }
    if (c == '/') {
      int next = getc(file);
      if (next == '*') {
        skip_block_comment(file);
        continue;
      }
      if (next != EOF)
        ungetc(next, file);
    }
    started = true;
    if (c == '"') {
      read_quoted_part(file, &word);
    } else {
      if (c == '\\') {
        int next = getc(file);
        if (next != EOF)
          c = next;
      }
      add_to_word(&word, c);
    }
  }
  if (!started) {
    free(word.text);
    return nullptr;
  }
  add_to_word(&word, '\0');
  return word.text;
}
