// The types of transfer files, one row each: a new netlist is a pair of files with its writer, and a row here.
#pragma once

#include "exchange/matlab_data.h"
#include "exchange/pcfilt_list.h"
#include "exchange/rf_netlist.h"
#include "exchange/s_parameters.h"
#include "exchange/spice_netlist.h"
#include "exchange/sstar_netlist.h"
#include "exchange/transfer_request.h"
#include "shell/stored_files.h"

namespace kavrel {

// One of the texts that a type can be written as.
struct TransferText {
    TransferDialect dialect = TransferDialect::none;
    TransferWriter write = nullptr;
    bool lines = false;               // knows the lines and stubs of microwave circuits
    std::string_view extension = {};  // of its file, where it is not that of the type
    bool variables = false;           // has a block of the elements that an optimizer may vary
};

struct TransferTypeRow {
    TransferFileType file_type;
    std::string_view label;             // in the form
    ExtSlot slot;                       // of its file
    std::array<TransferText, 2> texts;  // classic first; the second one may be absent
    bool of_function = false;           // made from the transfer function instead of the circuit
};

inline constexpr TransferText s_parameters_text{
    .dialect = TransferDialect::s_parameters, .write = s_parameter_lines, .lines = true, .extension = ".s2p"};

constexpr TransferText classic_text(TransferWriter write, bool lines, bool variables = false) {
    return {.dialect = TransferDialect::classic, .write = write, .lines = lines, .variables = variables};
}

inline constexpr std::array<TransferTypeRow, 6> transfer_types = {{
    {TransferFileType::scompact,
     "Scompact",
     ExtSlot::netlist,
     {classic_text(scompact_netlist, true, true), s_parameters_text}},
    {TransferFileType::touchstone,
     "Touchstone",
     ExtSlot::netlist,
     {classic_text(touchstone_netlist, true, true), s_parameters_text}},
    {TransferFileType::spice,
     "Spice",
     ExtSlot::netlist,
     {classic_text(spice_netlist, false),
      {.dialect = TransferDialect::ngspice, .write = ngspice_netlist, .lines = true}}},
    {TransferFileType::sstar, "SStar", ExtSlot::netlist, {classic_text(sstar_netlist, false)}},
    {TransferFileType::pcfilt, "PCFilt", ExtSlot::netlist, {classic_text(pcfilt_list, true)}},
    {.file_type = TransferFileType::matlab,
     .label = "Matlab",
     .slot = ExtSlot::matlab,
     .texts = {classic_text(matlab_data, true)},
     .of_function = true},
}};

struct TransferDialectRow {
    TransferDialect dialect;
    std::string_view label;  // in the form
};

inline constexpr std::array<TransferDialectRow, 3> transfer_dialects = {{
    {TransferDialect::classic, "Classic"},
    {TransferDialect::ngspice, "ngspice"},
    {TransferDialect::s_parameters, "S-parameters"},
}};

// The row of a type; none of a number that is no type.
[[nodiscard]] constexpr const TransferTypeRow* row_of(TransferFileType file_type) {
    for (const TransferTypeRow& row : transfer_types) {
        if (row.file_type == file_type) return &row;
    }
    return nullptr;
}

[[nodiscard]] constexpr bool has_dialect(TransferFileType file_type, TransferDialect dialect) {
    const TransferTypeRow* row = row_of(file_type);
    if (row == nullptr) return dialect == TransferDialect::classic;
    return row->texts[0].dialect == dialect || row->texts[1].dialect == dialect;
}

// Whether the text that a type is written as has a variable block; without the dialect its classic one.
[[nodiscard]] constexpr bool has_variable_block(TransferFileType file_type, TransferDialect dialect) {
    const TransferTypeRow* row = row_of(file_type);
    if (row == nullptr) return false;
    return row->texts[row->texts[1].dialect == dialect ? 1 : 0].variables;
}

}  // namespace kavrel
