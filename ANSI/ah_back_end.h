// The assembly header back end.

#ifndef AH_BACK_END_H
#define AH_BACK_END_H

// Writes the declarations of the unit as assembler text to `ah_file_name`, by
// default the source's base name with ".ah" in the current directory.
void ah_back_end();

#endif
