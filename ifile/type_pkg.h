// The types of the intermediate file. They form a small type system of their
// own, separate from the types of the intermediate language: every type that
// the file mentions is a TYPE, owned by the one TYPE_PKG, unique by structure
// and numbered. Sizes, alignments and offsets are in bits throughout.

#ifndef TYPE_PKG_H
#define TYPE_PKG_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

struct PSN;
class TYPE;
class TYPE_PKG;

// Zeroed memory for the package, counted in tp_allocated_bytes(). Ends the
// tool when there is none.
void* tp_alloc(size_t bytes);
size_t tp_allocated_bytes();

// Reports a fault of the program itself on standard error and exits with
// status 1. `text` names the place.
[[noreturn]] void tp_die(const char* text);

// What is allocated by tp_alloc.
struct TP_OBJECT {
  static void* operator new(size_t bytes) {
    return tp_alloc(bytes);
  }
  static void operator delete(void* object);
};

// How a function is called, as the file states it: by the usual convention or
// by the one that the routine type asks for.
enum CC_KIND : uint8_t { cck_default = 0, cck_alternate = 10 };

enum ACCESS_KIND : uint8_t { ack_public = 0, ack_protected = 1, ack_private = 2 };

// Qualifier bits.
enum QUALIFIER : uint8_t {
  qf_const = 1,
  qf_volatile = 2,
  qf_packed = 4,
  qf_near = 8,
  qf_far = 16,
  qf_ioport = 32,
  qf_restrict = 64,
  qf_onchip = 128
};

// What an entry of a parameter list is. A class's list holds the arguments of
// the template that the class is an instance of.
enum PARAM_KIND : int {
  pk_parameter = 0,
  pk_type_argument = 1,
  pk_value_argument = 2,
  pk_template_argument = 3
};

// The elements of the lists of functions, enums and classes. The list owns
// its elements; names are copied.

struct fkPARAM : TP_OBJECT {
  fkPARAM(TYPE* param_type, int param_kind, const char* param_text)
      : type(param_type), kind(param_kind), text(param_text) {}
  TYPE* type;
  int kind;
  std::string text;
  fkPARAM* next = nullptr;
};

struct fkETOR : TP_OBJECT {
  fkETOR(int64_t etor_value, const char* etor_name, const PSN* etor_psn);
  ~fkETOR();
  int64_t value;
  std::string name;
  std::unique_ptr<PSN> psn;
  fkETOR* next = nullptr;
};

struct fkMDATA : TP_OBJECT {
  fkMDATA(const char* member_name, TYPE* member_type, ACCESS_KIND member_access, int64_t offset,
          uint32_t width, bool bitfield, const PSN* member_psn);
  ~fkMDATA();
  uint32_t number = 0; // from 1 in list order, given at registration
  TYPE* type;
  std::string name;
  ACCESS_KIND access;
  int64_t bit_offset;
  uint32_t bit_width; // of a bit field
  uint8_t extra = 0;
  bool is_bitfield;
  bool flag_1 = false;
  bool flag_2 = false;
  std::unique_ptr<PSN> psn;
  fkMDATA* next = nullptr;
};

struct fkBCLASS : TP_OBJECT {
  fkBCLASS(TYPE* base, int32_t base_offset, ACCESS_KIND base_access, bool base_is_virtual)
      : type(base), offset(base_offset), access(base_access), is_virtual(base_is_virtual) {}
  TYPE* type;
  int32_t offset;
  ACCESS_KIND access;
  bool is_virtual;
  fkBCLASS* next = nullptr;
};

struct fkADECL : TP_OBJECT {
  explicit fkADECL(int adecl_kind) : kind(adecl_kind) {}
  int kind;
  fkADECL* next = nullptr;
};

struct fkFFRIEND : TP_OBJECT {
  fkFFRIEND(const char* friend_name, TYPE* friend_type) : name(friend_name), type(friend_type) {}
  std::string name;
  TYPE* type;
  fkFFRIEND* next = nullptr;
};

struct fkTYPE_ELEM : TP_OBJECT {
  explicit fkTYPE_ELEM(TYPE* elem_type) : type(elem_type) {}
  TYPE* type;
  fkTYPE_ELEM* next = nullptr;
};

struct fkSDATA : TP_OBJECT {
  fkSDATA(TYPE* member_type, const char* member_name, ACCESS_KIND member_access)
      : type(member_type), name(member_name), access(member_access) {}
  TYPE* type;
  std::string name;
  ACCESS_KIND access;
  fkSDATA* next = nullptr;
};

struct fkMFUNC : TP_OBJECT {
  fkMFUNC(TYPE* function_type, const char* function_name, ACCESS_KIND function_access, int index)
      : type(function_type), name(function_name), access(function_access), virtual_index(index) {}
  TYPE* type;
  std::string name;
  ACCESS_KIND access;
  int virtual_index;
  bool flags[4] = {};
  fkMFUNC* next = nullptr;
};

// A singly linked list in order of entry; append is constant time. `Node`
// has a `next`.
template <class Node> struct TP_LIST {
  Node* head = nullptr;
  Node* tail = nullptr;

  TP_LIST() = default;
  TP_LIST(const TP_LIST&) = delete;
  TP_LIST& operator=(const TP_LIST&) = delete;
  ~TP_LIST() {
    while (head != nullptr) {
      Node* next = head->next;
      delete head;
      head = next;
    }
  }
  bool empty() const {
    return head == nullptr;
  }
  Node* append(Node* node) {
    (tail != nullptr ? tail->next : head) = node;
    return tail = node;
  }
};

// The parts of a TYPE that only its kind has.

struct fkFXTPT : TP_OBJECT {
  TYPE* underlying;
  int kind;
};

struct fkPTM : TP_OBJECT {
  TYPE* pointee;
  TYPE* csu; // the class of the member
};

struct fkARRAY : TP_OBJECT {
  TYPE* elem;
  uint32_t count;
  bool is_complete;
  bool is_vector;
};

struct fkFUNC : TP_OBJECT {
  TYPE* return_type;
  TP_LIST<fkPARAM> params;
  CC_KIND cc_kind;
  bool has_ellipsis;
  bool prototyped;
};

struct fkTYPEDEF : TP_OBJECT {
  TYPE* aliased;
  std::string name;
  bool is_lowered;
};

struct fkENUM : TP_OBJECT {
  TYPE* underlying;
  std::string name;
  TP_LIST<fkETOR> etors;
  bool is_complete;
};

struct fkCSU : TP_OBJECT {
  bool is_complete;
  bool is_lowered;
  bool is_struct_vector;
  std::string name;
  int integer;
  TP_LIST<fkBCLASS> bclasses;
  TP_LIST<fkADECL> adecls;
  TP_LIST<fkFFRIEND> ffriends;
  TP_LIST<fkTYPE_ELEM> cfriends;
  TP_LIST<fkTYPE_ELEM> ntypes;
  TP_LIST<fkMDATA> mdata;
  TP_LIST<fkSDATA> sdata;
  TP_LIST<fkMFUNC> funcs;
  TP_LIST<fkPARAM> params;
  bool flag;
};

class TYPE : public TP_OBJECT {
public:
  enum KIND : uint32_t {
    k_void = 0,
    k_integral = 1,
    k_floating = 2,
    k_fixed_point = 3,
    k_complex = 4,
    k_pointer = 5,
    k_reference = 6,
    k_qualified = 7,
    k_typedef = 8,
    k_array = 9,
    k_ptr_to_member = 10,
    k_function = 11,
    k_enum = 12,
    k_class = 13,
    k_struct = 14,
    k_union = 15
  };
  enum IKIND : uint32_t {
    ikind_bool = 0,
    ikind_signed_char = 1,
    ikind_unsigned_char = 2,
    ikind_wchar_t = 3,
    ikind_short = 4,
    ikind_unsigned_short = 5,
    ikind_int = 6,
    ikind_unsigned = 7,
    ikind_long = 8,
    ikind_unsigned_long = 9,
    ikind_long_long = 10,
    ikind_unsigned_long_long = 11,
    ikind_last = ikind_unsigned_long_long
  };
  enum FKIND : uint32_t {
    fkind_float = 0,
    fkind_double = 1,
    fkind_long_double = 2,
    fkind_last = fkind_long_double
  };
  // One number for each kind of type, with integers and floats told apart.
  enum EKIND : uint32_t {
    ek_float = ikind_last + 1,
    ek_fixed_point = ek_float + fkind_last + 1,
    ek_complex,
    ek_pointer,
    ek_reference,
    ek_array,
    ek_ptr_to_member,
    ek_function,
    ek_enum,
    ek_class,
    ek_struct,
    ek_union,
    ek_void
  };
  typedef std::map<std::string, std::vector<TYPE*>> BASED_MAP;

  TYPE(TYPE_PKG* owner, KIND type_kind, uint64_t type_size, uint32_t type_align, bool cpp);
  ~TYPE();
  TYPE(const TYPE&) = delete;
  TYPE& operator=(const TYPE&) = delete;

  uint32_t uid = 0; // 0 until registered
  KIND kind;
  uint64_t size;
  uint32_t align;
  TYPE_PKG* pkg;
  bool frozen = false;        // complete: may be registered, and no longer changed
  TYPE* rep;                  // this type without qualifiers
  std::unique_ptr<PSN> psn;   // of the declaration of a typedef, enum or class
  TYPE* normal = nullptr;     // of a basic type: its canonical twin on this target
  TYPE* pointer_to = nullptr; // the pointer to this type, once made
  bool written = false;       // its record is in the file
  bool referenced = false;    // its record is needed in the file
  uint32_t epoch = 0;         // the package's, at registration
  int32_t mark = 0;           // -1 once mark_refed_recur was here
  TYPE* equiv = nullptr;      // the type that replaces this one; may chain
  bool is_cpp;                // made while the language was C++
  union {
    IKIND ikind;
    FKIND fkind;
    TYPE* target; // of a complex, pointer, reference or qualified type
    fkFXTPT* fxtpt;
    fkPTM* ptm;
    fkARRAY* array;
    fkFUNC* func;
    fkTYPEDEF* type_def;
    fkENUM* enumeration;
    fkCSU* csu;
  } sub;
  bool explicit_sign = false; // the source spelled the signedness; a char without it is plain
  bool boolean_int = false;   // an integer that stands for a bool
  bool ptm_int = false;       // an integer that stands for a pointer to data member
  uint8_t qualifiers = 0;     // of a qualified type
  uint32_t shape = 0;         // a hash of a function's parts, all of them registered; or 0
  std::string map_key;        // map_name(), once computed
  BASED_MAP based;            // the types built directly on this one

  // This type without qualifiers, which must be of kind `wanted`.
  TYPE* getr(KIND wanted);
  // This very type, which must be of kind `wanted`.
  TYPE* getd(KIND wanted);
  // The record of this class, struct or union: getr_csu looks through
  // qualifiers and the type must be one; get_csu looks through typedefs too
  // and answers null for any other type.
  fkCSU* getr_csu();
  fkCSU* get_csu();

  // The name of a typedef, enum, class, struct or union, else null.
  const char* name();
  // The type below the outermost typedefs, qualifiers, or both.
  TYPE* stds();
  TYPE* stqs();
  TYPE* stripped();
  // The end of the chain of replacements.
  TYPE* final_equiv();
  // The qualifiers of this type, also those below typedefs and, on request,
  // those of the elements of an array.
  uint8_t qual_kind(bool through_arrays);
  bool type_qualified(uint8_t bits);
  // The parts of a type. Each looks through typedefs and qualifiers, and the
  // type must be of a kind that has the part.
  TYPE* type_pointed_to();
  TYPE* underlying_type();
  TYPE* part_type();
  TYPE* elem_type();
  EKIND ekind();

  bool is_complete();
  bool is_lowered();
  // True for the signed integers and all floats; looks through typedefs,
  // qualifiers, enums and arrays.
  bool is_signed();
  bool is_kind(KIND wanted);
  bool is_ikind(IKIND wanted);
  bool is_fkind(FKIND wanted);
  bool is_csu();
  bool is_void();
  bool is_bool();
  bool is_plain_char();
  bool is_signed_char();
  bool is_unsigned_char();
  bool is_wchar_t();
  bool is_short();
  bool is_unsigned_short();
  bool is_int();
  bool is_unsigned();
  bool is_long();
  bool is_unsigned_long();
  bool is_long_long();
  bool is_unsigned_long_long();
  bool is_float();
  bool is_double();
  bool is_long_double();
  bool is_boolean_int();
  bool is_arithmetic();
  bool is_scalar();

  uint64_t size_in_bytes();
  uint32_t align_in_bytes();
  // The size as an element of an array, in bits.
  uint64_t storage_size();

  // Keeps a copy of the position; null for none. Allowed at any time.
  void set_psn(const PSN* position);
  // Add to the lists of a type that isn't frozen yet; the type owns the
  // element from here on.
  fkPARAM* add_param(fkPARAM* param);
  fkETOR* add_etor(fkETOR* etor);
  fkMDATA* add_mdata(fkMDATA* member);
  fkBCLASS* add_bclass(fkBCLASS* base);
  fkADECL* add_adecl(fkADECL* adecl);
  fkFFRIEND* add_ffriend(fkFFRIEND* function);
  fkTYPE_ELEM* add_cfriend(fkTYPE_ELEM* friend_class);
  fkTYPE_ELEM* add_ntype(fkTYPE_ELEM* nested);
  fkSDATA* add_sdata(fkSDATA* member);
  fkMFUNC* add_mfunc(fkMFUNC* function);
  void check_nfrozen();

  // The key under which the type is filed with the type it is built on.
  const std::string& map_name();

  // The type as a declarator reads, around no name. The long form of a class
  // lists its members.
  std::string printstr(bool long_form);
  void print(bool markup, bool long_form);

  // On the root: mark every named type that isn't lowered, when `keep_all`.
  void mark_named_types(bool keep_all);
  // On the root: mark what the marked types are built from, children first.
  void mark_refed_types();

private:
  void mark_refed_recur();
  void print_parts(std::string& left, std::string& right, bool markup);
};

// Walks a tree of types in preorder: the types built on one type come by key,
// then in order of registration. The tree must not change meanwhile.
class TYPE_TREE_ITERATOR {
public:
  explicit TYPE_TREE_ITERATOR(TYPE* root) : current(root) {}
  // The current type; null when the walk has ended.
  TYPE* get() const {
    return current;
  }
  void advance();

private:
  struct FRAME {
    TYPE::BASED_MAP::iterator entry, end;
    size_t index;
  };
  bool enter_next_of_frame();

  TYPE* current;
  std::vector<FRAME> frames;
};

enum TP_ERROR_CODE : int { tpe_none = 0, tpe_object_size = 1 };

class TYPE_PKG : public TP_OBJECT {
public:
  typedef void (*ERROR_HANDLER)(TYPE_PKG*);

  TYPE_PKG();
  ~TYPE_PKG();
  TYPE_PKG(const TYPE_PKG&) = delete;
  TYPE_PKG& operator=(const TYPE_PKG&) = delete;

  // The basic types: the integers by IKIND, the floats by FKIND, void and
  // the pointer to void.
  TYPE* integers[TYPE::ikind_last + 1];
  TYPE* floats[TYPE::fkind_last + 1];
  TYPE* void_type;
  TYPE* pointer_to_void;

  uint32_t epoch;
  uint32_t next_uid;
  int error_code = tpe_none;
  const char* error_text = "";
  ERROR_HANDLER error_handler = nullptr;

  static TYPE* root_type; // a void type, made by the first package
  static int tp_count;    // packages alive
  static bool seen_enum_type;
  static bool seen_small_enums;
  static bool seen_bitfield;

  // The start, in bits, of the declared container of a bit-field at `bit_start`;
  // false when that container would not hold the field.
  static bool get_container_offset_for_field(uint64_t container_bits, uint64_t alignment_bits,
                                             uint64_t bit_start, uint64_t bit_size, uint64_t* out);

  // Makers. Each answers the one type of that structure, which is registered
  // at once, unless its comment says otherwise. Sizes and alignments are in
  // bits; a null name of an enum or a class is invented.
  TYPE* mk_void();
  TYPE* mk_int(TYPE::IKIND ikind, bool explicit_sign);
  TYPE* mk_int(TYPE::IKIND ikind, bool explicit_sign, uint64_t size, uint32_t align,
               bool boolean_int, bool ptm_int);
  TYPE* mk_boolean_int(TYPE* integer);
  TYPE* mk_ptm_int(TYPE* integer);
  TYPE* mk_fltpt(TYPE::FKIND fkind);
  TYPE* mk_fltpt(TYPE::FKIND fkind, uint64_t size, uint32_t align);
  TYPE* mk_fxtpt(int kind, TYPE* underlying, uint64_t size, uint32_t align);
  TYPE* mk_complex(TYPE* part);
  TYPE* mk_ptr(TYPE* pointee);
  TYPE* mk_ptr(TYPE* pointee, uint64_t size, uint32_t align);
  TYPE* mk_ref(TYPE* referenced);
  TYPE* mk_ref(TYPE* referenced, uint64_t size, uint32_t align);
  // A type that has all the qualifiers already is given back; qualified types
  // never stack.
  TYPE* mk_qual(TYPE* type, uint8_t qualifiers);
  TYPE* mk_qual(TYPE* type, uint8_t qualifiers, uint64_t size, uint32_t align);
  TYPE* mk_ptm(TYPE* pointee, TYPE* csu, uint64_t size, uint32_t align);
  TYPE* mk_typedef(const char* name, bool is_cpp, TYPE* aliased, uint64_t size, uint32_t align,
                   bool is_lowered);
  // Arrays, functions, enums and classes are not frozen: the caller fills
  // them in and hands them to type_frozen. A class made incomplete has nothing
  // to fill in and is registered at once. The array form without a size
  // computes it from the storage size of the element.
  TYPE* mk_array(TYPE* elem, bool is_cpp, uint32_t count, uint64_t size, uint32_t align,
                 bool is_complete);
  TYPE* mk_array(TYPE* elem, bool is_cpp, uint32_t count, uint32_t align, bool is_complete);
  TYPE* mk_vector(TYPE* elem, bool is_cpp, uint32_t count, uint64_t size, uint32_t align);
  TYPE* mk_func(TYPE* return_type, bool is_cpp, bool prototyped, bool has_ellipsis, CC_KIND cc_kind,
                uint64_t size, uint32_t align);
  TYPE* mk_enum(const char* name, TYPE* underlying, uint64_t size, uint32_t align, bool is_cpp);
  TYPE* mk_class(const char* name, uint64_t size, uint32_t align, bool is_complete, int integer,
                 bool is_lowered, bool is_struct_vector, bool is_cpp);
  TYPE* mk_struct(const char* name, uint64_t size, uint32_t align, bool is_complete, int integer,
                  bool is_lowered, bool is_struct_vector, bool is_cpp);
  TYPE* mk_union(const char* name, uint64_t size, uint32_t align, bool is_complete, int integer,
                 bool is_lowered, bool is_struct_vector, bool is_cpp);

  // Freezes a type that was filled in after its creation and registers it.
  // When an equal type existed, `type` becomes that one and the new one is
  // gone.
  void type_frozen(TYPE*& type);
  // Numbers a frozen type and files it with `base`; or deletes it and answers
  // the equal type that exists.
  TYPE* register_type(TYPE* type, TYPE* base);
  // Takes `type` out of the tree and deletes it with all that is built on it.
  // Without `with_based`, a type that others are built on stays.
  void delete_type_tree(TYPE* type, bool with_based);
  // The type that `type` is built on and filed with; the root for basic types,
  // classes, structs and unions.
  static TYPE* base_type(TYPE* type);
  void assign_uid(TYPE* type);

  // Keeps the error and has the handler, if any, report it. An error that is
  // pending without being taken keeps its place.
  __attribute__((format(printf, 3, 4))) void set_error(int code, const char* format, ...);
  static const char* error_code_name(int code);

  void normalize_basic_types();
  // Back to the default sizes.
  void update_basic_types();

  void print_stats();
  void dump_all();

private:
  void init_type_pkg();
  void check_size(uint64_t size);
  TYPE* mk_target(TYPE::KIND kind, TYPE* target, uint64_t size, uint32_t align);
  TYPE* mk_csu(TYPE::KIND kind, const char* name, uint64_t size, uint32_t align, bool is_complete,
               int integer, bool is_lowered, bool is_struct_vector, bool is_cpp);
};

// Whether two types have the same structure. Enums and classes are equal to
// themselves only.
bool exact_types(TYPE* a, TYPE* b);

// The package of the compilation.
extern TYPE_PKG* type_pkg;

// Makes the package of the compilation, whose errors become diagnostics.
void init_tp();

#endif
