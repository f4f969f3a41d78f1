// The diagnostic engine: severities and their ranges, formats, layout, counts,
// and the catalogue.

#include "error.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>
#include <cstring>
#include <set>
#include <string>
#include <unistd.h>
#include <vector>

#include "cfe.h"
#include "error_int.h"
#include "il_types.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "source_file.h"
#include "symbol_tbl.h"

namespace {

constexpr a_source_position nowhere = {0, 0, 0};

a_source_position at(uint32_t seq, uint16_t column = 1) {
  return {seq, column, 0};
}

class ErrorTest : public testing::Test {
protected:
  void SetUp() override {
    stream = tmpfile();
    saved_stream = f_error;
    f_error = stream;
    error_early_init();
  }

  void TearDown() override {
    f_error = saved_stream;
    fclose(stream);
    error_early_init();
  }

  // What was written since the last call.
  std::string written() {
    std::string text(static_cast<size_t>(ftell(stream)), '\0');
    rewind(stream);
    EXPECT_EQ(fread(text.data(), 1, text.size(), stream), text.size());
    rewind(stream);
    EXPECT_EQ(ftruncate(fileno(stream), 0), 0);
    return text;
  }

  FILE* stream;
  FILE* saved_stream;
};

TEST_F(ErrorTest, LabelIsUpperCaseWithoutLocation) {
  pos_st_error(ec_undefined_identifier, &nowhere, "x");
  pos_warning(ec_bad_token, &nowhere);
  EXPECT_EQ(written(), "Error: identifier \"x\" is undefined\nWarning: unrecognized token\n");
  EXPECT_EQ(total_errors, 1u);
  EXPECT_EQ(total_warnings, 1u);
}

TEST_F(ErrorTest, NumberHasSuffixOnlyWhereUsersMayChangeTheSeverity) {
  display_error_number = true;
  pos_diagnostic(es_discretionary_error, ec_bad_token, &nowhere);
  pos_error(ec_bad_token, &nowhere);
  EXPECT_EQ(written(), "Error #7-D: unrecognized token\nError #7: unrecognized token\n");
}

TEST_F(ErrorTest, ArgumentsAreChosenByKindAndOrdinal) {
  pos_st2_error(ec_cannot_open_file, &nowhere, "source", "a.c");
  EXPECT_EQ(written(), "Error: cannot open source file \"a.c\"\n");
  a_diag_list list = {};
  a_diagnostic* diag = pos_start_error(ec_expr_not_constant, &nowhere);
  more_info_num2_diagnostic(ec_constexpr_out_of_bounds_array_access, &nowhere, 7, 3, &list);
  add_more_info_list(diag, &list);
  EXPECT_EQ(list.head, nullptr);
  end_diagnostic(diag);
  EXPECT_EQ(written(), "Error: expression must have a constant value\n"
                       "Note: cannot access position 7 in array of 3 elements\n");
  EXPECT_EQ(total_errors, 2u) << "a note counts nowhere";
}

TEST_F(ErrorTest, PercentBracesAndLetters) {
  pos_st_error(ec_float_support_disabled, &nowhere, "32-bit ");
  pos_st_error(ec_float_support_disabled, &nowhere, nullptr);
  pos_error(ec_probable_inadvertent_sharp_digraph, &nowhere);
  EXPECT_EQ(written(),
            "Error: 32-bit floating-point operations are not allowed: support for them is "
            "disabled\n"
            "Error: floating-point operations are not allowed: support for them is disabled\n"
            "Error: use of alternative token \"%:\" appears to be unintended\n");
}

TEST_F(ErrorTest, AddOnLinesFollowWithTheirIndent) {
  a_diagnostic* diag = pos_st_start_error(ec_undefined_identifier, &nowhere, "f");
  char text[] = "int, char";
  copy_str_add_diag_info(diag, 742, text);
  text[0] = 'X';
  end_diagnostic(diag);
  EXPECT_EQ(written(), "Error: identifier \"f\" is undefined\n"
                       "            argument types are: (int, char)\n");
}

TEST_F(ErrorTest, WrappedLinesHaveAtMost79Columns) {
  brief_diagnostics = false;
  std::string fits(79, 'a');
  std::string out;
  wrap_text(fits, 0, 10, out);
  EXPECT_EQ(out, fits + "\n");

  out.clear();
  wrap_text(fits + " b", 0, 10, out);
  EXPECT_EQ(out, fits + "\n          b\n") << "a blank behind the limit is a place to cut";

  out.clear();
  wrap_text(std::string(80, 'a'), 0, 10, out);
  EXPECT_EQ(out, fits + "\n          a\n") << "without a blank the text is cut at the limit";

  out.clear();
  std::string accents;
  for (int i = 0; i < 80; ++i) {
    accents += "\xC3\xA9";
  }
  wrap_text(accents, 0, 10, out);
  EXPECT_EQ(out, accents.substr(0, 158) + "\n          \xC3\xA9\n") << "columns, not bytes";

  out.clear();
  wrap_text("one " + std::string(66, 'b') + " two", 12, 22, out);
  EXPECT_EQ(out, std::string(12, ' ') + "one\n" + std::string(22, ' ') + std::string(57, 'b') +
                     "\n" + std::string(22, ' ') + std::string(9, 'b') + " two\n");

  do_not_wrap_diagnostics = true;
  out.clear();
  wrap_text(fits + " b", 0, 10, out);
  EXPECT_EQ(out, fits + " b\n");
}

TEST_F(ErrorTest, OverridesReachSeverity9AndNoFurther) {
  EXPECT_FALSE(set_severity_for_error_number(7, es_suppressed, nullptr, true));
  EXPECT_FALSE(set_severity_for_error_tag("useless_decl", es_discretionary_error, nullptr, true));
  pos_warning(7, &nowhere);
  pos_error(7, &nowhere);
  pos_warning(ec_useless_decl, &nowhere);
  EXPECT_EQ(written(), "Error: unrecognized token\nError: declaration does not declare anything\n");
  EXPECT_TRUE(treat_as_none(7));
  EXPECT_FALSE(misra_c_2004_generate_diagnostic(7, es_warning));
}

TEST_F(ErrorTest, NumbersAndTagsOutOfTheCatalogue) {
  EXPECT_TRUE(set_severity_for_error_number(0, es_suppressed, nullptr, true));
  EXPECT_TRUE(set_severity_for_error_number(3190, es_suppressed, nullptr, true));
  EXPECT_FALSE(set_severity_for_error_number(3189, es_suppressed, nullptr, true));
  EXPECT_TRUE(set_severity_for_error_tag("Useless_decl", es_suppressed, nullptr, true));
  EXPECT_EQ(error_text(5), nullptr);
  EXPECT_STREQ(error_text(0), "unknown error");
}

TEST_F(ErrorTest, WarningsAsErrorsComeBeforeTheThreshold) {
  warning_as_error_mode = true;
  error_threshold = es_discretionary_error;
  pos_warning(ec_bad_token, &nowhere);
  pos_remark(ec_bad_token, &nowhere);
  EXPECT_EQ(written(), "Error: unrecognized token\n");
  EXPECT_EQ(total_errors, 1u);
  EXPECT_EQ(total_warnings, 0u);
  EXPECT_EQ(total_remarks, 0u);
  EXPECT_TRUE(is_effective_error(ec_bad_token, es_warning, &nowhere));
}

TEST_F(ErrorTest, SubstitutionFailureMayIgnoreOverrides) {
  set_severity_for_error_number(ec_bad_token, es_suppressed, nullptr, true);
  EXPECT_FALSE(is_effective_sfinae_error(ec_bad_token, es_discretionary_error, &nowhere));
  diag_override_does_not_affect_sfinae = true;
  EXPECT_TRUE(is_effective_sfinae_error(ec_bad_token, es_discretionary_error, &nowhere));
  EXPECT_FALSE(is_effective_sfinae_error(ec_bad_token, es_warning, &nowhere));
  diag_override_does_not_affect_sfinae = false;
}

TEST_F(ErrorTest, OnceIsForSeveritiesUpToWarning) {
  set_severity_for_error_number(ec_bad_token, es_once, nullptr, true);
  pos_warning(ec_bad_token, &nowhere);
  pos_warning(ec_bad_token, &nowhere);
  pos_diagnostic(es_discretionary_error, ec_bad_token, &nowhere);
  EXPECT_EQ(written(), "Warning: unrecognized token\nError: unrecognized token\n");
}

// The severity of a place is that of the range it lies in, also when it is
// asked for after later pragmas.
TEST_F(ErrorTest, RangesDecideForPlacesReadBefore) {
  auto severity_at = [](uint32_t seq) {
    a_source_position position = at(seq);
    return severity_at_position(ec_bad_token, es_warning, &position);
  };
  a_source_position suppress_place = at(10, 5);
  a_source_position default_place = at(20);
  a_source_position pop_place = at(30);
  set_severity_for_error_number(ec_bad_token, es_remark, nullptr, true);
  push_severities();
  set_severity_for_error_number(ec_bad_token, es_suppressed, &suppress_place, false);
  EXPECT_EQ(severity_at(9), es_remark);
  EXPECT_EQ(severity_at(10), es_remark) << "the place stands before the pragma on its line";
  EXPECT_EQ(severity_at(11), es_suppressed);
  set_severity_for_error_number(ec_bad_token, es_none, &default_place, false);
  EXPECT_EQ(severity_at(11), es_suppressed);
  EXPECT_EQ(severity_at(21), es_remark);
  set_severity_for_error_number(ec_bad_token, es_discretionary_error, &default_place, false);
  EXPECT_TRUE(pop_severities(&pop_place));
  EXPECT_EQ(severity_at(21), es_discretionary_error);
  EXPECT_EQ(severity_at(31), es_remark);
  EXPECT_EQ(severity_at_position(ec_bad_token, es_warning, &nowhere), es_remark);
  EXPECT_FALSE(pop_severities(&pop_place));
}

// A number without a severity of the options goes back to the call site's.
TEST_F(ErrorTest, DefaultWithoutOptionsIsTheCallSites) {
  a_source_position first = at(10);
  a_source_position second = at(20);
  a_source_position inside = at(25);
  set_severity_for_error_number(ec_bad_token, es_discretionary_error, &first, false);
  set_severity_for_error_number(ec_bad_token, es_none, &second, false);
  set_severity_for_error_number(ec_bad_token, es_suppressed, &second, false);
  a_source_position between = at(15);
  EXPECT_EQ(severity_at_position(ec_bad_token, es_warning, &between), es_discretionary_error);
  EXPECT_EQ(severity_at_position(ec_bad_token, es_warning, &inside), es_suppressed);
}

TEST_F(ErrorTest, TypesAreOptionalWhereTheTextTakesNone) {
  pos_opt_ty2_error(ec_exp_semicolon, &nowhere, nullptr, nullptr);
  EXPECT_EQ(written(), "Error: expected a \";\"\n");
}

TEST_F(ErrorTest, CatastropheEndsWithItsStatus) {
  EXPECT_EXIT(
      {
        f_error = stderr;
        error_position = nowhere;
        str_catastrophe(ec_file_write_error, "raw listing");
      },
      testing::ExitedWithCode(4),
      "^Fatal error: error while writing raw listing file\n"
      "1 catastrophic error detected in this compilation.\nCompilation terminated.\n$");
  EXPECT_EXIT(
      {
        f_error = stderr;
        str_command_line_error(ec_cl_invalid_error_limit, "x");
      },
      testing::ExitedWithCode(4), "^Command-line error: invalid error limit: x\n");
}

TEST_F(ErrorTest, LimitIsSeenAtOnce) {
  EXPECT_EXIT(
      {
        f_error = stderr;
        error_limit = 2;
        pos_error(ec_bad_token, &nowhere);
        pos_warning(ec_bad_token, &nowhere);
        pos_error(ec_exp_semicolon, &nowhere);
        pos_error(ec_exp_colon, &nowhere);
      },
      testing::ExitedWithCode(4),
      "^Error: unrecognized token\nWarning: unrecognized token\nError: expected a \";\"\n"
      "Error limit reached.\n2 errors detected in this compilation.\n"
      "Compilation terminated.\n$");
}

TEST_F(ErrorTest, AdviceIsGivenOnceALine) {
  a_source_position first = at(3, 1);
  a_source_position second = at(3, 9);
  a_source_position other_line = at(4, 1);
  pos_st_warning(ec_nrg_5_1, &first, "divide");
  pos_st_warning(ec_nrg_5_1, &second, "modulo");
  pos_st_warning(ec_nrg_5_1, &other_line, "divide");
  EXPECT_EQ(total_warnings, 2u);
}

TEST_F(ErrorTest, SymbolsHaveTheirKindWordUnlessTheCodeLeavesItOut) {
  a_symbol_header header = {};
  header.identifier = "f";
  a_symbol symbol = {};
  symbol.header = &header;
  symbol.kind = symk_macro;
  pos_sy_error(ec_too_few_macro_args, &nowhere, &symbol);
  pos_sy_warning(ec_bad_macro_redef, &nowhere, &symbol);
  symbol.kind = symk_routine;
  pos_sy_error(ec_never_defined, &nowhere, &symbol);
  symbol.kind = symk_overloaded_function;
  pos_sy_error(ec_indeterminate_overloaded_function, &nowhere, &symbol);
  EXPECT_EQ(written(), "Error: too few arguments in invocation of macro \"f\"\n"
                       "Warning: incompatible redefinition of macro \"f\"\n"
                       "Error: function \"f\" was referenced but not defined\n"
                       "Error: cannot determine which instance of overloaded function \"f\" is "
                       "intended\n");
}

TEST_F(ErrorTest, TypesStandInQuotes) {
  a_type type = {};
  type.kind = tk_integer;
  type.variant.integer.int_kind = ik_unsigned_short;
  a_type type2 = {};
  type2.kind = tk_void;
  C_dialect = cd_ansi_c;
  pos_ty2_error(ec_incompatible_operands, &nowhere, &type, &type2);
  EXPECT_EQ(written(), "Error: operand types are incompatible (\"unsigned short\" and \"void\")\n");
  size_t length = 0;
  EXPECT_STREQ(format_type_string(&type, &length), "unsigned short");
  EXPECT_EQ(length, strlen("unsigned short"));
  C_dialect = cd_cplusplus;
}

// Makes the scope stack hold `count` template argument lists in process.
class ScopesInProcess {
public:
  explicit ScopesInProcess(int count) : entries(static_cast<size_t>(count) + 1) {
    header.identifier = "T";
    symbol.kind = symk_macro;
    symbol.header = &header;
    for (a_scope_stack_entry& entry : entries) {
      entry.kind = sk_top_level_declaration;
      entry.template_args = &args;
      entry.template_symbol = &symbol;
    }
    scope_stack = entries.data();
    depth_scope_stack = count;
    depth_template_declaration_scope = -1;
  }

  ~ScopesInProcess() {
    scope_stack = nullptr;
    depth_scope_stack = -1;
  }

  std::vector<a_scope_stack_entry> entries;

private:
  a_symbol_header header = {};
  a_symbol symbol = {};
  a_template_arg args = {};
};

size_t count_of(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t i = text.find(part); i != std::string::npos; i = text.find(part, i + 1)) {
    ++count;
  }
  return count;
}

TEST_F(ErrorTest, OneContextHasTheLongForm) {
  ScopesInProcess scopes(1);
  pos_error(ec_bad_token, &nowhere);
  EXPECT_EQ(count_of(written(), "          detected during processing of template argument list"),
            1u);
}

TEST_F(ErrorTest, ContextsBeyondTheLimitAreLeftOut) {
  ScopesInProcess scopes(20);
  pos_error(ec_bad_token, &nowhere);
  std::string text = written();
  EXPECT_EQ(count_of(text, "          detected during:\n"), 1u);
  EXPECT_EQ(count_of(text, "            processing of template argument list"), 10u);
  EXPECT_EQ(count_of(text, "            [ 10 instantiation contexts not shown ]\n"), 1u);
  context_limit = 0;
  pos_error(ec_exp_semicolon, &nowhere);
  EXPECT_EQ(count_of(written(), "processing of"), 20u);
}

TEST_F(ErrorTest, TemplatesTellAPlaceOnce) {
  ScopesInProcess scopes(1);
  a_source_position place = at(3, 4);
  scopes.entries[1].is_prototype_instantiation = true;
  pos_error(ec_bad_token, &place);
  scopes.entries[1].number = 7;
  pos_error(ec_bad_token, &place);
  pos_error(ec_bad_token, &place);
  EXPECT_EQ(total_errors, 1u);
  a_source_position other_place = at(3, 5);
  pos_error(ec_bad_token, &other_place);
  EXPECT_EQ(total_errors, 2u);
}

TEST_F(ErrorTest, FilesThatCannotBeOpened) {
  EXPECT_EQ(open_input_file_with_error_handling("/no/such/file", false, tolerate_not_found, 1971),
            nullptr);
  EXPECT_EQ(total_catastrophes, 0u);
  EXPECT_EXIT(
      {
        f_error = stderr;
        open_input_file_with_error_handling("/no/such/file", false, tolerate_directory, 1971);
      },
      testing::ExitedWithCode(4), "^Fatal error: cannot open source file \"/no/such/file\"\n");
  EXPECT_EXIT(
      {
        f_error = stderr;
        open_output_file_with_error_handling("/no/such/file", false, false,
                                             report_as_command_line_error, 1788);
      },
      testing::ExitedWithCode(4), "^Command-line error: cannot open raw listing file");
}

// Bookmarks: ten slots, spread evenly over any number of lines.
TEST_F(ErrorTest, FileIndexKeepsBookmarksSpread) {
  a_source_file file = {};
  unsigned long next = initialize_file_index(&file);
  EXPECT_EQ(next, 100u);
  int updates = 0;
  unsigned long line = 0;
  while (line < 100000) {
    line = next;
    next = update_file_index(&file, line, static_cast<long>(line) * 10);
    EXPECT_GT(next, line);
    ++updates;
  }
  EXPECT_LT(updates, 60) << "the distance between the bookmarks grows";
}

// The rows of the catalogue as they stand in the file.
struct a_row {
  int number;
  const char* tag;
  const char* text;
};

const a_row rows[] = {
#define DIAG(number, tag, text) {number, #tag, text},
#define TEXT(number, text) {number, nullptr, text},
#include "error_catalogue.def"
#undef DIAG
#undef TEXT
};

TEST(ErrorCatalogueTest, RowsAreInOrderAndTagsAreUnique) {
  std::set<std::string> tags;
  int previous = -1;
  for (const a_row& row : rows) {
    EXPECT_GT(row.number, previous);
    previous = row.number;
    if (row.tag) {
      EXPECT_TRUE(tags.insert(row.tag).second) << row.tag;
      EXPECT_EQ(error_number_for_tag(row.tag), row.number);
    }
  }
  EXPECT_EQ(previous, last_error_number);
  EXPECT_EQ(tags.size(), 2851u);
  EXPECT_EQ(std::size(rows), 3000u);
}

// Whether `code` is a format code that format_message knows: a kind, options
// of that kind, one digit.
bool is_valid_format_code(const std::string& code) {
  if (code.empty() || !strchr("nstpd", code[0])) {
    return false;
  }
  const char* options = code[0] == 'n' ? "adfoptT" : code[0] == 's' ? "q" : "";
  int digits = 0;
  for (char c : code.substr(1)) {
    if (isdigit(static_cast<unsigned char>(c))) {
      ++digits;
    } else if (!strchr(options, c)) {
      return false;
    }
  }
  return digits <= 1;
}

TEST(ErrorCatalogueTest, FormatCodesAreValid) {
  for (const a_row& row : rows) {
    std::string text = row.text;
    for (size_t i = text.find('%'); i != std::string::npos; i = text.find('%', i)) {
      ++i;
      if (text[i] == '%') {
        ++i;
        continue;
      }
      bool in_braces = text[i] == '{';
      size_t start = i + in_braces;
      size_t end = start;
      while (end < text.size() && isalnum(static_cast<unsigned char>(text[end]))) {
        ++end;
      }
      EXPECT_TRUE(is_valid_format_code(text.substr(start, end - start))) << row.number;
      EXPECT_TRUE(!in_braces || text[end] == '}') << row.number;
      i = end;
    }
  }
}

} // namespace
