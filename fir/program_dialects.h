// The texts that a function is written as, one row each: a new one is a writer, and a row here.
#pragma once

#include "fir/c_program.h"
#include "fir/fortran_program.h"
#include "fir/tap_files.h"
#include "segment/program_dialect.h"

namespace kavrel {

struct FirDialectRow {
    ProgramDialect dialect;
    std::string_view label;      // in the form
    std::string_view extension;  // of its file
    ProgramLines (*write)(const FirProgramInput& input);
    // Why there is no such text; blank where there is one.
    Refusal (*refusal)(const FirProgramInput& input) = [](const FirProgramInput&) { return Refusal(); };
    // What the report says of the text.
    std::string_view (*note)(const FirProgramInput& input) = [](const FirProgramInput&) { return std::string_view(); };
};

inline constexpr FirDialectRow fir_dialects[] = {
    {ProgramDialect::classic, "Classic", ".f90", classic_program, classic_program_refusal, classic_program_note},
    {ProgramDialect::standard, "Standard", ".f90", standard_program},
    {ProgramDialect::c, "C", ".c", c_program},
    {ProgramDialect::c_integer, "C integer", ".c", integer_program, integer_program_refusal},
    {ProgramDialect::c_table, "C table", ".h", c_table, c_table_refusal},
    {ProgramDialect::text, "Text", ".txt", tap_text},
};

// The row of a dialect; of one that there is not the first one.
[[nodiscard]] constexpr const FirDialectRow& fir_dialect_row(ProgramDialect dialect) {
    for (const FirDialectRow& row : fir_dialects) {
        if (row.dialect == dialect) return row;
    }
    return fir_dialects[0];
}

}  // namespace kavrel
