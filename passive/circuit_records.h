// A circuit as unformatted records (shell/stored_files.h), one record an item. The first eight:
//
//   1  VALUE                     150 doubles                                                           1200 bytes
//   2  INDX1                     100 branch words, the last one 1 to 4 where there is no branch 100
//                                and all values are preferred ones                                      400 bytes
//   3  quadruplets, first part   of all 8 slots XK (4,4), then XC (4,4), YK (4), YC (4), FRES (2)      2688 bytes
//   4  quadruplets, second part  of all 8 slots M (4,4); the number of slots in use; integers           516 bytes
//   5  klast, 6 ilast, 7 kind    integers                                                          4 bytes each
//   8  fs, in a snapshot fnorm   a double                                                                 8 bytes
//
// Behind them is what the circuit needs besides to be scaled and displayed:
//
//   9  "Kavrel 1"                mark and version
//  10  title                     80 characters
//  11  band                      R1, R2, ratio of terminations, fa, fb, and that of fnorm and fs which record 8 lacks
//  12  natural modes             their count, 50 real and 50 imaginary parts
//  13  designed, mod             a logical (0 or 1) in 4 bytes, a single-precision number
//  14  FilterSpec                its fields in the order of their declaration, a logical in 4 bytes
//  15  TransferFunction          likewise, but its level
//  16  request of the design     a FilterSpec
//  17  notes of the design       ApproximationNotes, the edges that were worked with
//  18  level                     that of the TransferFunction, where the records before do not give it
//
// They give the level for which the function has, at the band edge, the loss of the circuit as designed; where the
// circuit was edited since, or is driven by a source without resistance, the band edge loss. So files from before there
// was a level have one, and stay as they are when written again.
//
// Matrices are stored by columns. All numbers are binary, so that a circuit comes back as it was to the last bit.
#pragma once

#include <string>
#include <string_view>

#include "passive/passive_filter.h"

namespace kavrel {

enum class CircuitRecords { stored_file, snapshot };

[[nodiscard]] std::string circuit_records(const PassiveFilter& filter, const FixedText<80>& title, CircuitRecords kind);

// False, with the filter and the title as they were, when the bytes are not such records to their end, or hold what no
// circuit could be (passive/circuit_check.h; a snapshot may hold numbers that are not finite, as what it is a copy of).
// A stored file may end after record 8: it then holds a circuit without design, its title blank, its terminations
// those of its first and last branch, its normalisation frequency that at which lines are a quarter wave long, or at
// which coils and capacitors have, in the geometric mean, the impedance of the load. The edges of its band are unknown,
// that is 0.
[[nodiscard]] bool read_circuit_records(std::string_view bytes, PassiveFilter& filter, FixedText<80>& title,
                                        CircuitRecords kind);

}  // namespace kavrel
