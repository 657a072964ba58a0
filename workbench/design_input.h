// Input data files, as all design and analysis forms recall and save them.
#pragma once

#include <functional>
#include <string_view>

#include "workbench/workbench.h"

namespace kavrel {

// What a design form shows when it opens.
enum class FormStart { last_values, stored_data };

// A kind of input data file, and how its selectors speak of it.
struct InputFileKind {
    std::string_view recall_caption;
    std::string_view description;
    std::string_view filter;
    std::string_view extension;
};
inline constexpr InputFileKind design_files{.recall_caption = "Recall a previous design data set",
                                            .description = "Stored input data files",
                                            .filter = "*.qfi",
                                            .extension = ".qfi"};
inline constexpr InputFileKind analysis_files{.recall_caption = "Select an existing file",
                                              .description = "Stored input data files",
                                              .filter = "*.qai",
                                              .extension = ".qai"};

// Units that a file brings along hold at once, not with the next event.
void take_units(const UnitSet& units, Session& session);

// Asks for a file of stored input data, which becomes the current one once `take` has accepted its bytes. False, after
// a box, when there is no such file or `take` refuses it; false without one when the selector is left.
[[nodiscard]] bool recall_design_input(Workbench& bench, const std::function<bool(std::string_view bytes)>& take,
                                       const InputFileKind& kind = design_files);

// Opens a design form, on stored data after `recall` took them in. False when no file was taken or the form was
// cancelled: request, units and current file are as they were before either.
template <class Request>
[[nodiscard]] bool ask_for_design(Workbench& bench, FormStart start, const Form& form, Request& request,
                                  bool (*recall)(Workbench& bench)) {
    const Request before = request;
    const UnitSet units = bench.session.units;
    const auto file = bench.session.input_file;
    if (start == FormStart::stored_data && !recall(bench)) return false;
    if (run_form(form, &request, bench.session.units, bench.reporter)) return true;
    request = before;
    take_units(units, bench.session);
    bench.session.input_file = file;
    return false;
}

// Writes the bytes to the current input file, after asking for its name when there is none or when the current file is
// another form's (`is_own` answers for its bytes). False when that went wrong; a selector that is left saves nothing,
// which is no failure.
[[nodiscard]] bool save_design_input(Workbench& bench, std::string_view bytes,
                                     const std::function<bool(std::string_view bytes)>& is_own,
                                     const InputFileKind& kind = design_files);

}  // namespace kavrel
