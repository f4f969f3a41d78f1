#ifndef CRC_H
#define CRC_H

#include "runtime.h"

typedef unsigned int u32;
typedef unsigned char u8;

#define CRC32_POLYNOMIAL 0xEDB88320u /* reflected form */
#define ADLER_MODULUS 65521u

#define ARRAY_SIZE(a) ((int)(sizeof(a) / sizeof((a)[0])))

u32 crc32(const u8 *data, size_t size);
u32 adler32(const u8 *data, size_t size);

#endif
