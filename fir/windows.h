// The windows of windowed FIR design: one table, a row a window, that form, input file and report walk.
//
// A window of N taps is a function of t, the distance from the middle in samples: i - 1, plus 0.5 for even N. Most are
// sums of cosines
//
//     w(t) = a0 + a1 cos(w0 t/(L-1)) + a2 cos(2 w0 t/(L-1)) + a3 cos(3 w0 t/(L-1))
//
// with L = N, or N + 2 so that no end tap is 0. A coefficient that a window does not assign is retained: it keeps the
// value that the window of an earlier design gave it, 0 at a fresh start.
//
// Sources: F. J. Harris, Proc. IEEE 66, 1978; A. H. Nuttall, IEEE Trans. ASSP-29, 1981 (sums of cosines); J. F. Kaiser,
// 1974; C. L. Dolph, Proc. IRE 34, 1946 (Chebyshev); T. T. Taylor, IRE Trans. AP-3, 1955.
#pragma once

#include <array>
#include <iterator>
#include <optional>
#include <string_view>

#include "fir/fir_request.h"
#include "shell/table.h"

namespace kavrel {

inline constexpr double window_two_pi = 6.283185307179586;
inline constexpr double window_pi = 3.141592653589793;

using WindowValues = Table<double, max_fir_functions>;  // [i] at t(i), from the centre outward; 0 beyond its half
using WindowCosines = Table<double, 4>;                 // [k + 1] a0 to a3

// What a window takes as parameter: nothing, the constant a0 (the form offers 1), or a number above 0.
enum class WindowParameter { none, constant, required };
inline constexpr double offered_constant = 1.0;

enum class WindowVerdict {
    computed,
    no_such_window,
    loss_too_low,  // of a sampled Kaiser window with beta below 1
    out_of_range,  // the length, or what the parameter leads to
};

// A window to be computed.
struct WindowTask {
    int length = 0;  // N, 2 to 514
    double parameter = 0;

    [[nodiscard]] constexpr int half() const { return (length + 1) / 2; }
    [[nodiscard]] constexpr double t(int i) const { return i - 1 + (length % 2 == 0 ? 0.5 : 0.0); }
};

// Fills w(1) to w(task.half()), or what of `a` it assigns and from that w.
using WindowRoutine = WindowVerdict (*)(const WindowTask& task, WindowCosines& a, WindowValues& w);
WindowVerdict triangular_window(const WindowTask& task, WindowCosines& a, WindowValues& w);
WindowVerdict kaiser_window(const WindowTask& task, WindowCosines& a, WindowValues& w);
WindowVerdict chebyshev_window(const WindowTask& task, WindowCosines& a, WindowValues& w);
WindowVerdict gaussian_window(const WindowTask& task, WindowCosines& a, WindowValues& w);
WindowVerdict taylor_window(const WindowTask& task, WindowCosines& a, WindowValues& w);
WindowVerdict sampled_kaiser_window(const WindowTask& task, WindowCosines& a, WindowValues& w);

// A sum of cosines.
struct CosineSum {
    double angle = window_two_pi;                 // w0
    int longer = 0;                               // L - N
    std::array<std::optional<double>, 4> a = {};  // a0 to a3
};
inline constexpr std::nullopt_t stays = std::nullopt;  // a retained coefficient

struct WindowRow {
    FirWindow window;
    std::string_view label;  // in the form
    std::string_view report_name;
    WindowParameter parameter = WindowParameter::none;
    CosineSum sum = {};
    WindowRoutine routine = nullptr;  // of a window that is no row of coefficients
};

// clang-format off
inline constexpr WindowRow fir_windows[] = {
    {.window = FirWindow::rectangular, .label = "Rectangular", .report_name = "Rectangular window",
     .parameter = WindowParameter::constant, .sum = {.a = {stays, stays, 0.0, 0.0}}},
    {.window = FirWindow::triangular, .label = "Triangular", .report_name = "Triangular window",
     .routine = triangular_window},
    {.window = FirWindow::hamming, .label = "Hamming", .report_name = "Hamming window",
     .sum = {.a = {0.54, 0.46, stays, stays}}},
    {.window = FirWindow::hann, .label = "Hann", .report_name = "Hann (cos**2) window",
     .sum = {.longer = 2, .a = {0.5, 0.5, stays, stays}}},
    {.window = FirWindow::cosine, .label = "Cosine", .report_name = "Cosine window",
     .sum = {.angle = window_pi, .longer = 2, .a = {0.0, 1.0, stays, stays}}},
    {.window = FirWindow::cosine_cubed, .label = "Cos**3", .report_name = "Cosine cubed window",
     .sum = {.angle = window_pi, .longer = 2, .a = {0.0, 0.75, stays, 0.25}}},
    {.window = FirWindow::cosine_fourth, .label = "Cos**4", .report_name = "Cosine 4th power window",
     .sum = {.longer = 2, .a = {0.375, 0.5, 0.125, stays}}},
    {.window = FirWindow::blackman, .label = "Blackman", .report_name = "Blackman window",
     .sum = {.longer = 2, .a = {0.42, 0.5, 0.08, stays}}},
    {.window = FirWindow::exact_blackman, .label = "'Exact' Blackman", .report_name = "Exact Blackman window",
     .sum = {.a = {0.42659071, 0.49656062, 0.07684867, stays}}},
    {.window = FirWindow::three_term_b_h, .label = "3-term B-H", .report_name = "3-term Blackman-Harris window",
     .sum = {.a = {0.42323, 0.49755, 0.07922, stays}}},
    {.window = FirWindow::three_term_18_db, .label = "3-term 18dB/oct", .report_name = "3-term 18 dB/oct slope window",
     .sum = {.a = {0.40897, 0.5, 0.09103, stays}}},
    {.window = FirWindow::optimal_three_term, .label = "Opt. 3-term", .report_name = "Optimum 3-term window",
     .sum = {.a = {0.4243801, 0.4973406, 0.0782793, stays}}},
    {.window = FirWindow::four_term_b_h, .label = "4-term B-H", .report_name = "4-term Blackman-Harris window",
     .sum = {.a = {0.35875, 0.48829, 0.14128, 0.01168}}},
    {.window = FirWindow::four_term_40_db, .label = "4-term 40dB/oct", .report_name = "4-term 30 dB/oct slope window",
     .sum = {.a = {0.338946, 0.481973, 0.161054, 0.018027}}},
    {.window = FirWindow::four_term_18_db, .label = "4-term 18dB/oct", .report_name = "4-term 18 dB/oct slope window",
     .sum = {.a = {0.355768, 0.487396, 0.144232, 0.012604}}},
    {.window = FirWindow::optimal_four_term, .label = "Opt. 4-term", .report_name = "Optimum 4-term window",
     .sum = {.a = {0.3635819, 0.4891775, 0.1365995, 0.0106411}}},
    {.window = FirWindow::kaiser, .label = "Kaiser", .report_name = "Kaiser window",
     .parameter = WindowParameter::required, .routine = kaiser_window},
    {.window = FirWindow::chebyshev, .label = "Chebyshev", .report_name = "Chebyshev window",
     .parameter = WindowParameter::required, .routine = chebyshev_window},
    {.window = FirWindow::gaussian, .label = "Gaussian", .report_name = "Gaussian window",
     .parameter = WindowParameter::required, .routine = gaussian_window},
    {.window = FirWindow::taylor, .label = "Taylor", .report_name = "Taylor window",
     .parameter = WindowParameter::required, .routine = taylor_window},
    {.window = FirWindow::sampled_kaiser, .label = "Sampled Kaiser", .report_name = "4-term sampled Kaiser window",
     .parameter = WindowParameter::required, .routine = sampled_kaiser_window},
};
// clang-format on
inline constexpr int fir_window_count = static_cast<int>(std::size(fir_windows));

static_assert([] {
    for (int i = 0; i < fir_window_count; ++i) {
        if (static_cast<int>(fir_windows[i].window) != i + 1) return false;
    }
    return true;
}());

// The row of a window, or null where none is chosen.
[[nodiscard]] constexpr const WindowRow* window_row(FirWindow window) {
    const int i = static_cast<int>(window) - 1;
    return i >= 0 && i < fir_window_count ? &fir_windows[i] : nullptr;
}
[[nodiscard]] constexpr WindowParameter parameter_kind(FirWindow window) {
    const WindowRow* row = window_row(window);
    return row == nullptr ? WindowParameter::none : row->parameter;
}

// Half a window, from the centre outward.
//   window_index   0 to 20: the row
//   retained       a0 to a3 as the window before has left them; this one's when it is computed
// Unless computed, all stay as they were. Takes `length` operations, a Chebyshev window length^2 / 4.
[[nodiscard]] WindowVerdict compute_window(int window_index, const WindowTask& task, WindowCosines& retained,
                                           WindowValues& w);

// The parameter of a request: until somebody gave one, a windowed design has what its window is offered.
[[nodiscard]] double parameter_of(const FirRequest& request);
void give_parameter(FirRequest& request, double parameter);

}  // namespace kavrel
