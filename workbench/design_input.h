// Design and analysis forms with their input data files, as the roads use them.
#pragma once

#include <functional>
#include <string_view>

#include "forms/input_forms.h"
#include "workbench/workbench.h"

namespace kavrel {

// What a design form shows when it opens.
enum class FormStart { last_values, stored_data };

// Units that a file brings along hold at once, not with the next event.
void take_units(const UnitSet& units, Session& session);

// Whether bytes are those of a file.
using AcceptBytes = std::function<bool(std::string_view bytes)>;

// Asks for a file of input data, which becomes the current one once `take` has accepted its bytes. False, after a box,
// when there is no such file or `take` refuses it; false without one when the selector is left.
[[nodiscard]] bool recall_input(Workbench& bench, const InputFileKind& kind, const AcceptBytes& take);

// Writes the bytes to the current input file, after asking for its name when there is none or when the current file is
// another form's. False when that went wrong; a selector that is left saves nothing, which is no failure.
[[nodiscard]] bool save_input(Workbench& bench, const InputFileKind& kind, std::string_view bytes,
                              const AcceptBytes& is_own);

// Opens a form, on stored data after they were recalled, and does the work that it asks for. When no file was taken or
// the form was cancelled before any work, request, units and current file are as they were.
template <class Request>
void ask_for_design(Workbench& bench, FormStart start, const InputForm<Request>& input, Request& request,
                    const FormWork& work) {
    const Request before = request;
    const UnitSet units = bench.session.units;
    const auto file = bench.session.input_file;
    const auto take = [&](std::string_view bytes) {
        UnitSet found = units;
        if (!input.take(bytes, request, found)) return false;
        take_units(found, bench.session);
        return true;
    };
    if (start == FormStart::stored_data && !recall_input(bench, input.files, take)) return;
    bool taken = false;
    run_form(input.form, &request, bench.session.units, bench.reporter, [&] {
        taken = true;
        if (!input.design_class.empty()) bench.session.design_class = input.design_class;
        work();
    });
    if (taken) return;
    request = before;
    take_units(units, bench.session);
    bench.session.input_file = file;
}

// Saves a form's request as `save_input` does.
template <class Request>
[[nodiscard]] bool save_design_input(Workbench& bench, const InputForm<Request>& input, const Request& request) {
    const auto is_own = [&](std::string_view bytes) {
        Request stored;
        UnitSet units;
        return input.take(bytes, stored, units);
    };
    return save_input(bench, input.files, input.bytes(request, bench.session.units), is_own);
}

}  // namespace kavrel
