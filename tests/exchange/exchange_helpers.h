// Circuits, analyses and outside programs for the tests of the transfer files.
#pragma once

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "circuit/chain_analysis.h"
#include "exchange/transfer_file.h"
#include "tests/circuit/random_circuits.h"
#include "tests/support/scratch_folder.h"

namespace kavrel::testing {

inline constexpr double pi = std::numbers::pi;

inline std::vector<double> linear_grid(double from, double to, int count) {
    std::vector<double> f;
    for (int i = 0; i < count; ++i) f.push_back(from + (to - from) * i / (count - 1));
    return f;
}

inline std::string transfer_text(const TransferInput& input, const TransferRequest& request) {
    std::string text;
    EXPECT_EQ(write_transfer_file(input, request, text), TransferVerdict::written) << row_of(request.file_type)->label;
    return text;
}

inline bool analyze_at(const Circuit& circuit, double f, ChainPoint& point) {
    Chain chain;
    if (prepare_chain(circuit, {}, chain) != ChainVerdict::done) return false;
    return analyze_point(chain, 2 * std::numbers::pi_v<Wide> * f, point) == PointVerdict::computed;
}

inline double turned(double degrees) { return std::remainder(degrees, 360.0); }

inline bool has_program(const std::string& name) {
    return std::system(("command -v " + name + " >/dev/null 2>&1").c_str()) == 0;
}

struct ProgramRun {
    int status = -1;
    std::string output;
};
inline ProgramRun run_program(const std::string& command) {
    ProgramRun run;
    std::FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return run;
    char bytes[4096];
    for (std::size_t n; (n = std::fread(bytes, 1, sizeof bytes, pipe)) > 0;) run.output.append(bytes, n);
    run.status = pclose(pipe);
    return run;
}

// The first table of an ngspice print: frequency and the first two columns of each row.
struct PrintedRow {
    double f, decibels, degrees;
};
inline std::vector<PrintedRow> printed_rows(const std::string& output) {
    std::vector<PrintedRow> rows;
    std::istringstream in(output);
    int index = -1;
    for (std::string line; std::getline(in, line);) {
        PrintedRow row{};
        if (std::sscanf(line.c_str(), "%d %lf %lf %lf", &index, &row.f, &row.decibels, &row.degrees) == 4 &&
            index == static_cast<int>(rows.size())) {
            rows.push_back(row);
        }
    }
    return rows;
}

}  // namespace kavrel::testing
