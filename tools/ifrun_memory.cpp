#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstring>
#include <new>

#include <sys/mman.h>

#include "ifrun_int.h"

static_assert(std::endian::native == std::endian::little,
              "the simulated memory has the host's byte order");

a_memory::a_memory(const a_run_limits& limits)
    : stack_size(limits.stack_bytes), heap_limit(limits.heap_bytes),
      reserved(data_limit + stack_size + heap_limit) {
  void* room = mmap(nullptr, reserved, PROT_READ | PROT_WRITE,
                    MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (room == MAP_FAILED)
    throw std::bad_alloc();
  bytes = static_cast<uint8_t*>(room);
}

a_memory::~a_memory() {
  munmap(bytes, reserved);
}

void a_memory::bad_address(uint64_t address) {
  char text[40];
  std::snprintf(text, sizeof text, "bad address 0x%08llx",
                static_cast<unsigned long long>(address & UINT32_MAX));
  throw a_run_error{text};
}

uint64_t a_memory::load(uint64_t address, uint8_t kind) {
  uint64_t value = 0;
  std::memcpy(&value, at(address, size_of_kind(kind)), size_of_kind(kind));
  if (is_floating_kind(kind))
    return kind == k_f32 ? bits_of(std::bit_cast<float>(static_cast<uint32_t>(value))) : value;
  return wrap_to_kind(value, kind);
}

void a_memory::store(uint64_t address, uint8_t kind, uint64_t value) {
  if (kind == k_f32)
    value = std::bit_cast<uint32_t>(static_cast<float>(double_of(value)));
  std::memcpy(at(address, size_of_kind(kind)), &value, size_of_kind(kind));
}

uint64_t a_memory::load_bits(uint64_t address, unsigned bit, unsigned width, bool is_signed) {
  unsigned count = bytes_of_bits(bit, width);
  const uint8_t* from = at(address, count);
  uint64_t value = 0;
  for (unsigned i = 0; i < count; i++) {
    int shift = static_cast<int>(8 * i) - static_cast<int>(bit);
    if (shift < 64)
      value |= shift < 0 ? from[i] >> -shift : static_cast<uint64_t>(from[i]) << shift;
  }
  value <<= 64 - width;
  return is_signed ? static_cast<uint64_t>(static_cast<int64_t>(value) >> (64 - width))
                   : value >> (64 - width);
}

void a_memory::store_bits(uint64_t address, unsigned bit, unsigned width, uint64_t value) {
  unsigned count = bytes_of_bits(bit, width);
  uint8_t* to = at(address, count);
  for (unsigned i = 0; i < width; i++) {
    unsigned place = bit + i;
    uint8_t mask = static_cast<uint8_t>(1u << place % 8);
    to[place / 8] = static_cast<uint8_t>((to[place / 8] & ~mask) | (value >> i & 1 ? mask : 0));
  }
}

std::string_view a_memory::text(uint64_t address, uint64_t limit) {
  if (limit == 0)
    return {};
  const uint8_t* start = at(address, 1);
  uint64_t room = std::min<uint64_t>(limit, end() - address);
  const void* nul = std::memchr(start, 0, room);
  if (nul == nullptr && room < limit)
    bad_address(end());
  uint64_t length = nul != nullptr ? static_cast<const uint8_t*>(nul) - start : room;
  return {reinterpret_cast<const char*>(start), length};
}

// Everything begins at a multiple of 16, the largest alignment that types have.
// Objects have at least one byte each, so that all differ.
static uint64_t rounded(uint64_t size) {
  return std::max<uint64_t>(size + 15, 16) & ~uint64_t{15};
}

// -- Static data and the stack -------------------------------------------------

uint32_t a_memory::add_static(uint64_t size) {
  if (size > data_limit || used + size + 16 > data_limit)
    throw a_run_error{"the data doesn't fit the memory"};
  uint32_t address = end();
  used += rounded(size);
  return address;
}

uint32_t a_memory::add_text(std::string_view content) {
  auto [entry, is_new] = texts.emplace(content, 0);
  if (is_new) {
    entry->second =
        stack_start == 0 ? add_static(content.size() + 1) : allocate(content.size() + 1);
    if (entry->second == 0)
      throw a_run_error{"the strings don't fit the memory"};
    uint8_t* to = at(entry->second, content.size() + 1);
    std::copy(content.begin(), content.end(), to);
    to[content.size()] = 0;
  }
  return entry->second;
}

void a_memory::make_stack() {
  stack_start = end();
  used += stack_size;
}

// -- The heap ------------------------------------------------------------------

uint32_t a_memory::allocate(uint64_t size) {
  if (size > heap_limit)
    return 0;
  uint64_t room = rounded(size);
  uint32_t address = 0;
  auto freed = free_by_size.find(room);
  if (freed != free_by_size.end()) {
    address = freed->second.back();
    freed->second.pop_back();
    if (freed->second.empty())
      free_by_size.erase(freed);
  } else {
    if (heap_used + room > heap_limit)
      return 0;
    heap_used += room;
    address = end();
    used += room;
  }
  live.emplace(address, size);
  return address;
}

uint64_t a_memory::live_size(uint32_t address) const {
  auto entry = live.find(address);
  if (entry == live.end())
    bad_address(address);
  return entry->second;
}

void a_memory::release(uint32_t address) {
  if (address == 0)
    return;
  free_by_size[rounded(live_size(address))].push_back(address);
  live.erase(address);
}

uint32_t a_memory::reallocate(uint32_t address, uint64_t size) {
  if (address == 0)
    return allocate(size);
  uint64_t old_size = live_size(address);
  uint32_t moved = allocate(size);
  if (moved != 0) {
    uint64_t kept = std::min(old_size, size);
    std::memcpy(at(moved, kept), at(address, kept), kept);
    release(address);
  }
  return moved;
}
