// The netlist for Spice: the classic text, and the one that ngspice runs as it is.
#pragma once

#include "exchange/transfer_request.h"

namespace kavrel {

// The classic text, lumped circuits only: 2 V behind the resistor of branch 1 at node 1, node 2 and on the chain. A
// doubly terminated circuit prints the voltage at the last resistor,
//     vdb = -loss + 10 log10(R2/R1),
// a singly terminated one the current in its last branch; where that lies in series it ends on ground, and by
// reciprocity idb = -loss + 20 log10(2/R1). An internal error when the store is
// no circuit.
[[nodiscard]] TransferVerdict spice_netlist(const TransferInput& input, const TransferRequest& request,
                                            std::vector<std::string>& lines);

// The text for ngspice: a source at the last branch, branch 1 as the load, so that the printed dB are -loss and the
// printed degrees the phase of the analysis:
//     doubly terminated   2 sqrt(R2/R1) volts behind R2 (1 V across the load when matched), dB of the load's voltage
//     driven by a voltage 1 V, dB of the load's voltage
//     driven by a current 1 A, dB of the load's current
// The current of a singly terminated circuit's load flows through the source vout of zero volts. Elements bear the
// names of the parts list. In a microwave circuit unit elements and stubs are lossless lines. Lattices and
// half-lattices have ideal transformers made of two controlled sources. Where nothing at all comes through, as at
// frequency 0 of a high-pass, it prints -4000 dB.
[[nodiscard]] TransferVerdict ngspice_netlist(const TransferInput& input, const TransferRequest& request,
                                              std::vector<std::string>& lines);

}  // namespace kavrel
