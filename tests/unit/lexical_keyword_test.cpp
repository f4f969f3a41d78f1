// The keywords of each dialect, mode and option.

#include "scan_fixture.h"

#include <functional>

struct a_keyword_case {
  const char* modes;
  std::function<void()> set;
  const char* keywords;    // each a keyword
  const char* identifiers; // each none
};

class KeywordTest : public ScanTest {
protected:
  std::string kinds_of_words(const std::string& words, bool expect_keyword) {
    std::string wrong;
    open(words + "\n");
    while (get_token() != tok_end_of_source)
      if ((curr_token != tok_identifier) != expect_keyword)
        wrong += std::string(start_of_curr_token, len_of_curr_token) + " ";
    return wrong;
  }

  void check(const a_keyword_case& test) {
    SCOPED_TRACE(test.modes);
    test.set();
    EXPECT_EQ(kinds_of_words(test.keywords, true), "");
    EXPECT_EQ(kinds_of_words(test.identifiers, false), "");
  }

  a_token_kind kind_of(const std::string& word) {
    open(word + "\n");
    return get_token();
  }
};

TEST_F(KeywordTest, FollowDialectAndOptions) {
  const char* always = "auto break case char continue default do double else enum extern float for "
                       "goto if int long register return short sizeof static struct switch typedef "
                       "union unsigned void while __NAN__ __INFINITY__ __va_argref __va_parmadr "
                       "__va_argcsu __ALIGNOF__ __alignof__ __INTADDR__ __intaddr__ __FUNCTION__ "
                       "__PRETTY_FUNCTION__ __declspec _declspec __builtin_addressof __near __far "
                       "_near _far __asm __inline __interrupt __znt_size_type__ "
                       "__znt_ptrdiff_type__ __znt_bool_type__";
  const a_keyword_case cases[] = {
      {"K&R",
       [this] {
         set_C_modes(199000);
         C_dialect = cd_k_and_r;
       },
       always, "const signed volatile _Bool _Complex restrict _Generic class __func__"},
      {"C89", [this] { set_C_modes(199000); }, always,
       "_Bool restrict __func__ _Generic __generic __builtin_complex _Noreturn bool typeof "
       "_Complex __real__ __auto_type __typeof__ __attribute__ __extension__"},
      {"C89", [this] { set_C_modes(199000); },
       "const signed volatile asm inline near far interrupt", "and or class"},
      {"strict C89",
       [this] {
         set_C_modes(199000);
         strict_ansi_mode = 1;
       },
       "const __asm __inline", "asm inline near far interrupt"},
      {"C99", [this] { set_C_modes(199901); },
       "_Bool _Complex _Imaginary __I__ inline __generic __builtin_complex __func__ restrict "
       "__restrict",
       "_Noreturn _Generic _Thread_local _Alignas _Static_assert complex bool __restrict__ "
       "__complex__ _Atomic"},
      {"C11", [this] { set_C_modes(201112); },
       "_Noreturn _Generic _Thread_local _Alignas _Alignof _Static_assert",
       "alignas static_assert thread_local noexcept _Nullable __thread true false"},
      {"GNU C",
       [this] {
         set_C_modes(199000);
         gnu_mode = gcc_mode = gnu_attributes_enabled = gnu_restrict_keyword_enabled = 1;
         gnu_version = 40900;
       },
       "_Complex __complex __complex__ __real __real__ __imag __imag__ __I__ __extension__ "
       "__typeof __typeof__ __auto_type __builtin_offsetof __builtin_types_compatible_p __bases "
       "__direct_bases __inline__ __asm__ __const __const__ __signed __signed__ __volatile "
       "__volatile__ __alignof __znt_vector_type__ __attribute __attribute__ __restrict "
       "__restrict__ _Noreturn _Generic __func__ __builtin_complex inline",
       "typeof restrict __null __offsetof__ __final _Imaginary"},
      {"older GNU C",
       [this] {
         set_C_modes(199000);
         gnu_mode = gcc_mode = 1;
         gnu_version = 30400;
       },
       "__typeof__", "__builtin_offsetof __bases _Noreturn _Generic __auto_type __attribute__"},
      {"C++98", [this] { set_cplusplus_modes(199711); },
       "catch class friend inline mutable operator private protected public template this throw "
       "try virtual const_cast static_cast reinterpret_cast dynamic_cast delete new wchar_t bool "
       "true false and and_eq bitand bitor compl not not_eq or or_eq xor xor_eq typeid namespace "
       "using typename explicit asm __is_pod __has_trivial_copy __underlying_type",
       "_Bool restrict char16_t static_assert decltype nullptr noexcept constexpr alignas alignof "
       "thread_local _Generic _Noreturn _Alignas overload export __func__ __is_literal final "
       "override __has_assign"},
      {"C++11", [this] { set_cplusplus_modes(201103); },
       "char16_t char32_t static_assert decltype nullptr noexcept constexpr alignas alignof "
       "thread_local __func__ __is_final __is_literal_type",
       "__decltype __char16_t _Static_assert _Thread_local export __generic"},
      {"C++ without",
       [this] {
         set_cplusplus_modes(201103);
         bool_is_keyword = wchar_t_is_keyword = type_traits_helpers_enabled = 0;
         alternative_tokens_allowed = explicit_keyword_enabled = 0;
         allow_anachronisms = export_keyword_enabled = enable_underscore_decltype_only = 1;
       },
       "overload export", "bool true wchar_t __is_pod and xor_eq explicit decltype"},
      {"GNU C++",
       [this] {
         set_cplusplus_modes(201103);
         type_traits_helpers_enabled = 1;
         allow_anachronisms = export_keyword_enabled = enable_underscore_decltype_only = 0;
         gnu_mode = gpp_mode = 1;
         gnu_version = 40800;
         thread_local_storage_specifier_enabled = 1;
       },
       "__null __decltype decltype __final __offsetof __offsetof__ __thread", "__auto_type"},
      {"clang C++",
       [this] {
         set_cplusplus_modes(201103);
         thread_local_storage_specifier_enabled = 0;
         clang_mode = nullability_qualifiers_enabled = 1;
       },
       "__char16_t __char32_t __is_literal _Nullable _Nonnull _Null_unspecified", "__thread"}};
  for (const a_keyword_case& test : cases)
    check(test);
}

TEST_F(KeywordTest, SpellingsShareTheirKinds) {
  set_C_modes(199000);
  gnu_mode = gcc_mode = gnu_restrict_keyword_enabled = 1;
  EXPECT_EQ(kind_of("__restrict"), tok_gnu_restrict);
  EXPECT_EQ(kind_of("__alignof"), tok_gnu_alignof);
  EXPECT_EQ(kind_of("__complex__"), tok_complex);
  set_C_modes(201112);
  EXPECT_EQ(kind_of("__restrict"), tok_restrict);
  EXPECT_EQ(kind_of("_Alignas"), tok_alignas);
  EXPECT_EQ(kind_of("_Static_assert"), tok_static_assert);
  set_cplusplus_modes(199711);
  EXPECT_EQ(kind_of("xor_eq"), tok_excl_or_assign);
  EXPECT_EQ(kind_of("compl"), tok_compl);
}

TEST_F(KeywordTest, WordsOfMissingFeaturesAreReserved) {
  set_cplusplus_modes(199711);
  rtti_enabled = namespaces_enabled = typename_enabled = 0;
  error_threshold = es_remark;
  EXPECT_EQ(kinds("typeid using namespace typename typeid\n"),
            std::vector<a_token_kind>(5, tok_identifier));
  EXPECT_TRUE(was_reported("the keyword \"typeid\" is reserved for future use"));
  EXPECT_EQ(messages().find("\"typeid\""), messages().rfind("\"typeid\""));
  EXPECT_EQ(total_errors, 0u);
  strict_ansi_mode = 1;
  strict_ansi_error_severity = es_error;
  kinds("using\n");
  EXPECT_EQ(total_errors, 1u);
}

TEST_F(KeywordTest, TypeTraitAsClassNameEndsTheTrait) {
  set_cplusplus_modes(201103);
  clang_mode = 1;
  EXPECT_EQ(kinds("__is_pod struct __is_pod __is_pod __is_empty\n"),
            (std::vector<a_token_kind>{tok_is_pod, tok_struct, tok_identifier, tok_identifier,
                                       tok_is_empty}));
  EXPECT_TRUE(was_reported("will be treated as a context-sensitive keyword from this point"));
  EXPECT_EQ(total_warnings, 1u);
}

TEST_F(KeywordTest, AreNoneInDirectivesAndAmongPreprocessingTokens) {
  EXPECT_EQ(expand("#define int long\nint x\n#define if(x) x\nif(while)\n"), "long x while");
  set_cplusplus_modes(199711);
  EXPECT_EQ(kinds("#if true and not false\na\n#endif\n#if typeid\nb\n#endif\n"),
            std::vector<a_token_kind>{tok_identifier});
  set_C_modes(199901);
  EXPECT_EQ(kinds("#if true\na\n#endif\n"), std::vector<a_token_kind>{});
  EXPECT_EQ(total_errors, 0u);
}
