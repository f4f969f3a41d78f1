/* CRC-32 and Adler-32 of some texts: tables, unsigned arithmetic, shifts. */
#include "crc.h"

static u32 crc_table[256];
static int crc_table_ready;

static void make_crc_table(void) {
  u32 n;
  int bit;

  for (n = 0; n < 256; n++) {
    u32 c = n;
    for (bit = 0; bit < 8; bit++)
      c = c & 1 ? CRC32_POLYNOMIAL ^ (c >> 1) : c >> 1;
    crc_table[n] = c;
  }
  crc_table_ready = 1;
}

u32 crc32(const u8 *data, size_t size) {
  u32 c = ~0u;

  if (!crc_table_ready)
    make_crc_table();
  while (size--)
    c = crc_table[(c ^ *data++) & 0xFF] ^ (c >> 8);
  return ~c;
}

u32 adler32(const u8 *data, size_t size) {
  u32 a = 1, b = 0;
  const u8 *end = data + size;

  for (; data != end; ++data) {
    a = (a + *data) % ADLER_MODULUS;
    b = (b + a) % ADLER_MODULUS;
  }
  return b << 16 | a;
}

static const char *const texts[] = {
    "",
    "a",
    "123456789",
    "The quick brown fox jumps over the lazy dog",
};

int main(void) {
  int i;
  u8 ramp[1000];

  for (i = 0; i < ARRAY_SIZE(texts); i++) {
    const u8 *text = (const u8 *)texts[i];
    size_t size = strlen(texts[i]);
    printf("%-45s crc32 %08x  adler32 %08x\n", texts[i], crc32(text, size), adler32(text, size));
  }
  for (i = 0; i < ARRAY_SIZE(ramp); i++)
    ramp[i] = (u8)(i * 7);
  printf("%-45s crc32 %08x  adler32 %08x\n", "(a ramp of 1000 bytes)", crc32(ramp, sizeof ramp),
         adler32(ramp, sizeof ramp));
  return 0;
}
