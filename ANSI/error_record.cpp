// The records of diagnostics and their arguments.

#include <cstdlib>
#include <cstring>

#include "error_int.h"
#include "source_file.h"
#include "trans_unit.h"

namespace {

a_diagnostic* avail_diagnostics;
a_diag_argument* avail_diag_arguments;

a_diagnostic* alloc_diagnostic() {
  a_diagnostic* diag = avail_diagnostics;
  if (diag) {
    avail_diagnostics = diag->next;
  } else {
    diag = new a_diagnostic;
  }
  *diag = a_diagnostic{};
  return diag;
}

a_diag_argument* alloc_argument(a_diagnostic* diag, a_diag_argument_kind kind) {
  a_diag_argument* argument = avail_diag_arguments;
  if (argument) {
    avail_diag_arguments = argument->next;
  } else {
    argument = new a_diag_argument;
  }
  *argument = a_diag_argument{};
  argument->arg_kind = kind;
  argument->scope_index = -1;
  if (diag->args.tail) {
    diag->args.tail->next = argument;
  } else {
    diag->args.head = argument;
  }
  diag->args.tail = argument;
  return argument;
}

void free_diagnostic_list(a_diag_list* list) {
  while (a_diagnostic* diag = list->head) {
    list->head = diag->next;
    free_diagnostic(diag);
  }
  list->tail = nullptr;
}

a_diag_position describe_position(const a_source_position& position) {
  a_diag_position result{};
  result.position = position;
  conv_seq_to_file_and_line(position.seq, &result.file_name, nullptr, &result.line,
                            &result.at_end_of_source);
  if (!result.file_name) {
    result.file_name = "";
  }
  return result;
}

} // namespace

a_diagnostic* create_diagnostic(an_error_severity severity, an_error_code code,
                                const a_source_position* position) {
  a_diagnostic* diag = alloc_diagnostic();
  diag->kind = dk_main;
  diag->severity = severity;
  diag->error_code = code;
  diag->translation_unit = curr_translation_unit;
  diag->position = describe_position(*position);
  diag->header_position = diag->position;
  return diag;
}

a_diagnostic* create_child_diagnostic(a_diagnostic* parent, a_diag_kind kind, an_error_code code) {
  a_diagnostic* child = alloc_diagnostic();
  child->kind = kind;
  child->severity = es_suppressed;
  child->error_code = code;
  child->parent = parent;
  child->translation_unit = parent->translation_unit;
  child->position.position = parent->position.position;
  child->header_position.position = parent->position.position;
  append_diagnostic(kind == dk_context ? &parent->context_list : &parent->add_on_list, child);
  return child;
}

void append_diagnostic(a_diag_list* list, a_diagnostic* diag) {
  diag->next = nullptr;
  if (list->tail) {
    list->tail->next = diag;
  } else {
    list->head = diag;
  }
  list->tail = diag;
}

void free_diagnostic(a_diagnostic* diag) {
  free_diagnostic_list(&diag->add_on_list);
  free_diagnostic_list(&diag->context_list);
  free_diagnostic_list(&diag->more_info_list);
  for (a_diag_argument* argument = diag->args.head; argument; argument = argument->next) {
    free(argument->owned_string);
  }
  if (diag->args.head) {
    diag->args.tail->next = avail_diag_arguments;
    avail_diag_arguments = diag->args.head;
  }
  diag->next = avail_diagnostics;
  avail_diagnostics = diag;
}

void clear_diagnostic_records() {
  while (a_diagnostic* diag = avail_diagnostics) {
    avail_diagnostics = diag->next;
    delete diag;
  }
  while (a_diag_argument* argument = avail_diag_arguments) {
    avail_diag_arguments = argument->next;
    delete argument;
  }
}

void own_argument_strings(a_diagnostic* diag) {
  for (a_diag_argument* argument = diag->args.head; argument; argument = argument->next) {
    if (argument->arg_kind == dak_string && !argument->owned_string) {
      argument->owned_string = strdup(argument->value.string);
      argument->value.string = argument->owned_string;
    }
  }
}

void add_argument(a_diagnostic* diag, long number) {
  alloc_argument(diag, dak_number)->value.number = number;
}

void add_argument(a_diagnostic* diag, const a_source_position* position) {
  alloc_argument(diag, dak_position)->value.position = *position;
}

void add_argument(a_diagnostic* diag, const char* string) {
  if (string) {
    alloc_argument(diag, dak_string)->value.string = string;
  }
}

void add_argument(a_diagnostic* diag, const a_symbol* symbol) {
  if (symbol) {
    alloc_argument(diag, dak_symbol)->value.symbol = symbol;
  }
}

void add_argument(a_diagnostic* diag, const a_type* type) {
  alloc_argument(diag, dak_type)->value.type = type;
}
