// Power advice.

#ifndef NRG_H
#define NRG_H

#include "basics.h"

// The diagnostic of a rule of the advice grid, 0 when the cell is empty. `variant`
// asks for the form with an argument. `severity` gets the severity it is reported at.
an_error_code nrg_offset_to_error_code(int rule, int subrule, an_error_severity* severity,
                                       bool variant);

// The grid: rules 1 to 15, subrules 1 to 4.
inline constexpr int nrg_last_rule = 15;
inline constexpr int nrg_last_subrule = 4;

// The severity of the rules whose severity an option sets.
extern an_error_severity nrg_severity;

// Reports what only the whole unit can show.
void nrg_wrapup();

#endif
