// The output stage: the road from the lowered IL to the intermediate file.

#ifndef IL_TO_IF_H
#define IL_TO_IF_H

// Writes the IL of the primary unit to the intermediate file `i_file_name`,
// by default the source's base name with ".if" in the current directory.
void back_end();

#endif
