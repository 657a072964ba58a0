// What the small forms of the passive Segment ask for. A form opens with what was entered last.
#pragma once

#include <type_traits>

#include "shell/fixed_text.h"
#include "shell/frequency_request.h"
#include "shell/plot_form.h"
#include "shell/print_form.h"
#include "shell/time_request.h"

namespace kavrel {

// What "Insert" inserts, in the order of its choices.
struct InsertChoice {
    enum { r = 1, l, c, lc, ue, lcc, lcl, eqa, eqb, copy };
};

// Values are in the user's units; those of stubs and lines are impedances in ohm.
struct InsertRequest {
    int element = InsertChoice::r;
    int branch = 0;     // number of the new branch
    double value1 = 0;  // R, L, C or Z; of several values the first
    double value2 = 0;
    double value3 = 0;
    int copy_of = 0;  // branch that is copied
};

// New values of a branch: `first` of a resistor, an inductor or a unit element, `second` of a capacitor.
struct ChangeRequest {
    int branch = 0;
    double first = 0;
    double second = 0;
};

// Of a transfer file. Each type of file has the classic dialect and at most one other.
enum class DialectChoice : int { classic = 1, ngspice = 2, s_parameters = 3 };

enum class DisplayChoice : int { off = 1, on = 2 };

struct PassiveRequest {
    FrequencyRequest frequency;
    double inductor_q = 0;  // 0 lossless; below 0 at the normalisation frequency
    double capacitor_q = 0;
    TimeRequest time;
    PlotChoice frequency_plot;
    PlotChoice time_plot;
    InsertRequest insert;
    ChangeRequest change;
    int deleted_branch = 0;
    int resonant_branch = 0;
    int resonant_branch2 = 0;  // 0: the resonance of a single branch
    DisplayChoice display = DisplayChoice::off;
    FixedText<80> title;
    int file_type = 1;  // of a transfer file
    DialectChoice dialect = DialectChoice::classic;
    PrintTarget printing_to = PrintTarget::none;
};

static_assert(std::is_trivially_copyable_v<PassiveRequest>);

}  // namespace kavrel
