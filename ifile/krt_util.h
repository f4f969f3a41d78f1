// What the intermediate file says of the processor.

#ifndef KRT_UTIL_H
#define KRT_UTIL_H

// The processor's number in the file header.
extern const int icode_cpu_id;

#endif
