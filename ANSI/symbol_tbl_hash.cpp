// The hash tables of scopes.

#include "mem_manage.h"
#include "symbol_tbl.h"

#include <cstring>

namespace {

// The sizes that a table may have: primes, each about 1.4 times the one before.
constexpr uint64_t table_sizes[] = {
    1,         5,         11,        17,        29,        41,        59,        83,
    127,       179,       251,       353,       499,       701,       983,       1381,
    1949,      2749,      3877,      5471,      7717,      10883,     15349,     21647,
    30529,     43049,     60703,     85597,     120691,    170179,    239957,    338339,
    477073,    672703,    948517,    1337411,   1885753,   2658913,   3749071,   5286191,
    7453553,   10509509,  14818409,  20893963,  29460511,  41539321,  58570469,  82584371,
    116443973, 164186039, 231502363, 326418359, 460249957, 648952439, 915022963, 1290182407,
};

constexpr uint64_t growth_factor = 4;

uint64_t table_size_for(uint64_t wanted) {
  for (uint64_t size : table_sizes) {
    if (size >= wanted)
      return size;
  }
  return table_sizes[sizeof table_sizes / sizeof table_sizes[0] - 1];
}

bool is_general_memory(int32_t region) {
  return region < 0;
}

void* alloc_for_table(int32_t region, uint64_t size) {
  void* memory =
      alloc_general_or_in_region(is_general_memory(region) ? general_memory : region, size);
  memset(memory, 0, size);
  return memory;
}

uint32_t hash_of_key(const a_hash_table* table, const void* key) {
  a_generic_function function = function_pointers[table->hash_function_index];
  return reinterpret_cast<a_hash_function*>(function)(key);
}

bool keys_are_equal(const a_hash_table* table, const void* a, const void* b) {
  a_generic_function function = function_pointers[table->compare_function_index];
  return reinterpret_cast<a_compare_function*>(function)(a, b);
}

void grow_hash_table(a_hash_table* table) {
  const uint64_t old_size = table->size;
  a_hash_table_entry** old_buckets = table->buckets;
  const uint64_t new_size = table_size_for(old_size * growth_factor);
  if (new_size == old_size)
    return;
  table->size = new_size;
  table->buckets = static_cast<a_hash_table_entry**>(
      alloc_for_table(table->region, new_size * sizeof(a_hash_table_entry*)));
  for (uint64_t i = 0; i < old_size; ++i) {
    a_hash_table_entry* next;
    for (a_hash_table_entry* entry = old_buckets[i]; entry != nullptr; entry = next) {
      next = entry->next;
      a_hash_table_entry** bucket = &table->buckets[entry->hash % new_size];
      entry->next = *bucket;
      *bucket = entry;
    }
  }
  if (is_general_memory(table->region))
    free_general(old_buckets, old_size * sizeof(a_hash_table_entry*));
}

} // namespace

a_hash_table* alloc_hash_table(int32_t region, uint64_t size, uint8_t hash_index,
                               uint8_t compare_index) {
  a_hash_table* table = static_cast<a_hash_table*>(alloc_for_table(region, sizeof(a_hash_table)));
  table->hash_function_index = hash_index;
  table->compare_function_index = compare_index;
  table->region = region;
  table->size = table_size_for(size);
  table->buckets = static_cast<a_hash_table_entry**>(
      alloc_for_table(region, table->size * sizeof(a_hash_table_entry*)));
  return table;
}

a_hash_table_entry* hash_find(a_hash_table* table, const void* key, bool create) {
  const uint32_t hash = hash_of_key(table, key);
  for (a_hash_table_entry* entry = table->buckets[hash % table->size]; entry != nullptr;
       entry = entry->next) {
    if (entry->hash == hash && keys_are_equal(table, entry->key, key))
      return entry;
  }
  if (!create)
    return nullptr;
  if (table->entries + 1 > table->size)
    grow_hash_table(table);
  a_hash_table_entry* entry =
      static_cast<a_hash_table_entry*>(alloc_for_table(table->region, sizeof(a_hash_table_entry)));
  entry->key = key;
  entry->hash = hash;
  a_hash_table_entry** bucket = &table->buckets[hash % table->size];
  entry->next = *bucket;
  *bucket = entry;
  ++table->entries;
  return entry;
}

uint32_t hash_symbol_header_lookup_entry(const void* key) {
  return static_cast<const a_symbol_header*>(key)->hash;
}

bool compare_symbol_header_lookup_entry(const void* a, const void* b) {
  return a == b;
}
