// An IIR filter as unformatted records (shell/stored_files.h). A stored file (.qfd) has
//
//   1  T (8 bytes), title (80)                                                                            88 bytes
//   2  ZR, ZI (408 each), ZMULT (8), QR, PI (408 each), PMULT (8), NZ, NP (4 each)                      1656
//   3  SC (200), FLO, FHI, LastBits (8 each), spectral kind (4)                                           228
//   4  C1D, C2D, C1N, C2N (200 each), CK (8), FilterTypeText (20), z transform (4), filter kind (4:
//      1 low-pass, 2 high-pass, 4 band-pass, 5 band-reject, 6 delay, 0 unknown), SCALED, converted (4 each,
//      0 or 1), NNUM, NDEN (4 each)                                                                       852
//   5  the analog prototype (1800): TransferFunction, its fields in the order of their declaration; the
//      design's edges, losses, choices and counts (208); ZNUM, ZDEN, GMMUL, GMTAP, and the poles of the
//      filter before it was equalized (408 each)                                                         4456
//   6  AL, BE, GA, DE (208 each), AO (8), JN, JD, JM, JT, number of the poles before equalization,
//      0 (4 each), NPAR (4)                                                                               868
//   7  LARR (200), ALLPASS_OK (4), TA1, TA2, TB1, TB2 (104 each), NTA, NTB (4 each), 0 (4)                632
//   8  "Kavrel 1", mark and version; fs, Modified, bits, designed; FilterSpec of the design, with what was found for
//      it; its background, request and notes; what was asked of the filter
//
// The second block of record 5 repeats what record 8 has, for other readers. All numbers are binary, logicals 0 or 1 in
// 4 bytes, so that a filter comes back as it was to the last bit.
#pragma once

#include <string>
#include <string_view>

#include "iir/iir_filter.h"

namespace kavrel {

[[nodiscard]] std::string iir_records(const IirFilter& filter, const FixedText<80>& title);

// False, with filter and title as they were, when the bytes are not such records to their end, or hold what no filter
// could be: counts beyond their tables, unknown choices, numbers that are not finite. A file may end after record 7: it
// then holds a filter without design, of which nothing is asked.
[[nodiscard]] bool read_iir_records(std::string_view bytes, IirFilter& filter, FixedText<80>& title);

// The same in the files of undo, redo and store: one record of the forms, and one of all else. Numbers need not be
// finite.
[[nodiscard]] std::string iir_snapshot(const IirFilter& filter, const FixedText<80>& title);
[[nodiscard]] bool read_iir_snapshot(std::string_view bytes, IirFilter& filter, FixedText<80>& title);

}  // namespace kavrel
