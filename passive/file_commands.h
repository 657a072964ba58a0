// Commands that write and read the files of the passive Segment.
#pragma once

#include "passive/passive_desk.h"

namespace kavrel {

// "save": the circuit into its stored file; the name is asked for while there is none. "Save as" asks for a new one
// first.
void save_circuit_file(PassiveDesk& desk);
void save_circuit_as(PassiveDesk& desk);

// "read": with `name_given` the circuit of the session's stored file; else the user, warned that the current one is
// lost, chooses a file. The former filter can be had back by "undo" when it was the user who opened the file here.
void read_circuit_file(PassiveDesk& desk, bool name_given);

// "text": drawing and parts list.
void write_text_file(PassiveDesk& desk);

// "file": for another program, by the type and the dialect of the form.
void write_transfer(PassiveDesk& desk);

// "pz  ": poles and zeros of the design.
void write_pole_zero(PassiveDesk& desk);

}  // namespace kavrel
