#include "fir/windows.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "shell/finite.h"

namespace kavrel {

namespace {

void take_coefficients(const WindowRow& row, double parameter, WindowCosines& a);
void sum_of_cosines(const WindowTask& task, double angle, int longer, const WindowCosines& a, WindowValues& w);
template <class Value>
WindowVerdict fill(const WindowTask& task, WindowValues& w, const Value& value);
double kaiser_beta(double loss);
double bessel_i0(double z);
std::vector<double> taylor_coefficients(double loss);

}  // namespace

WindowVerdict compute_window(int window_index, const WindowTask& task, WindowCosines& retained, WindowValues& w) {
    if (window_index < 0 || window_index >= fir_window_count) return WindowVerdict::no_such_window;
    if (task.length < 2 || task.half() > WindowValues::bound) return WindowVerdict::out_of_range;
    const WindowRow& row = fir_windows[window_index];
    WindowCosines a = retained;
    WindowValues values;
    WindowVerdict verdict = WindowVerdict::computed;
    if (row.routine != nullptr) {
        verdict = row.routine(task, a, values);
    } else {
        take_coefficients(row, task.parameter, a);
        sum_of_cosines(task, row.sum.angle, row.sum.longer, a, values);
    }
    if (verdict != WindowVerdict::computed) return verdict;
    if (!all_finite(a, values)) return WindowVerdict::out_of_range;
    retained = a;
    w = values;
    return verdict;
}

double parameter_of(const FirRequest& request) {
    const bool offered = request.design_method == FirMethod::windowed && !request.parameter_given &&
                         parameter_kind(request.window_type) == WindowParameter::constant;
    return offered ? offered_constant : request.parameter;
}

void give_parameter(FirRequest& request, double parameter) {
    request.parameter = parameter;
    request.parameter_given = true;
}

WindowVerdict triangular_window(const WindowTask& task, WindowCosines&, WindowValues& w) {
    return fill(task, w, [&](double t) { return 1 - t / task.half(); });
}

WindowVerdict kaiser_window(const WindowTask& task, WindowCosines&, WindowValues& w) {
    const double half_beta = kaiser_beta(task.parameter) / 2;
    const double denominator = bessel_i0(half_beta);
    const double end = task.length - 1;
    return fill(task, w,
                [&](double t) { return bessel_i0(half_beta * std::sqrt(1 - 4 * t * t / (end * end))) / denominator; });
}

// The samples of the Chebyshev polynomial T of degree n1 = N - 1 at x0 cos(pi v), v = j/N, where T(x0) = g is the ratio
// of the main lobe to the side lobes, transformed back. With y = 2 x0^2 cos^2(pi v) - 1 that is
//
//     T = cosh((n1/2) arcosh y),  cos((n1/2) arccos y) within one,      arcosh y = 2 arsinh sqrt((y - 1)/2)
//
// taken from (y - 1)/2, since y itself has lost the digits of a long window near 1.
WindowVerdict chebyshev_window(const WindowTask& task, WindowCosines&, WindowValues& w) {
    const int N = task.length, n1 = N - 1;
    const double x = std::pow(10.0, -task.parameter / 20);  // side lobes over what exceeds them of the main lobe
    const double a = std::acosh((x + 1) / x) / n1;          // x0 = cosh a
    const auto sample = [&](int j) {
        const double s = std::sinh(a), c = std::cosh(a) * std::sin(window_pi * j / N);
        const double half = (s - c) * (s + c);  // (y - 1)/2
        return x * (half > 0 ? std::cosh(n1 * std::asinh(std::sqrt(half)))
                             : std::cos(n1 * std::asin(std::sqrt(std::min(-half, 1.0)))));
    };
    std::vector<double> cosine;  // cos(pi m/N)
    for (int m = 0; m < 2 * N; ++m) cosine.push_back(std::cos(window_pi * m / N));
    for (int k = 1; k <= task.half(); ++k) w(k) = sample(0);
    for (int j = 1; j <= n1 / 2; ++j) {  // and its mirror image
        const double value = 2 * sample(j);
        int m = N % 2 == 0 ? j : 0;  // 2 j t, less the whole turns
        for (int k = 1; k <= task.half(); ++k) {
            w(k) += value * cosine[static_cast<std::size_t>(m)];
            m += 2 * j;
            if (m >= 2 * N) m -= 2 * N;
        }
    }
    const double centre = w(1);
    for (double& value : w) value /= centre;
    return WindowVerdict::computed;
}

WindowVerdict gaussian_window(const WindowTask& task, WindowCosines&, WindowValues& w) {
    const float a = static_cast<float>(2 * task.parameter / task.length);
    const float g = a * a / 2;
    return fill(task, w, [&](double t) { return std::exp(-static_cast<double>(g) * t * t); });
}

WindowVerdict taylor_window(const WindowTask& task, WindowCosines&, WindowValues& w) {
    const std::vector<double> F = taylor_coefficients(task.parameter);
    if (F.empty()) return WindowVerdict::out_of_range;
    return fill(task, w, [&](double t) {
        double sum = 0;
        for (std::size_t m = 0; m < F.size(); ++m) {
            sum += F[m] * std::cos(window_two_pi * static_cast<double>(m) * t / (task.length - 1));
        }
        return sum;
    });
}

// A sum of cosines whose coefficients are samples of the transform of a Kaiser window. (beta itself stands in for a1
// until that is assigned.)
WindowVerdict sampled_kaiser_window(const WindowTask& task, WindowCosines& a, WindowValues& w) {
    const double beta = kaiser_beta(task.parameter);
    if (beta < 1) return WindowVerdict::loss_too_low;
    const int m = static_cast<int>(std::min(beta, 3.0));
    const auto c = [beta](int i) {
        const double u = 3.1415926535898 * std::sqrt(beta * beta - i * i);
        return u > 0 ? std::sinh(u) / u : 1.0;
    };
    double d = -c(0);
    for (int i = 0; i < m; ++i) d += 2 * c(i);
    a(1) = c(0) / d;
    a(2) = m > 1 ? 2 * c(1) / d : beta;
    if (m > 2) a(3) = 2 * c(2) / d;
    sum_of_cosines(task, window_two_pi, 0, a, w);
    return WindowVerdict::computed;
}

namespace {

void take_coefficients(const WindowRow& row, double parameter, WindowCosines& a) {
    for (std::size_t k = 0; k < row.sum.a.size(); ++k) {
        if (row.sum.a[k]) a.cells[k] = *row.sum.a[k];
    }
    if (row.parameter == WindowParameter::constant) a(1) = parameter;
}

void sum_of_cosines(const WindowTask& task, double angle, int longer, const WindowCosines& a, WindowValues& w) {
    const double step = angle / (task.length + longer - 1);
    static_cast<void>(fill(task, w, [&](double t) {
        const double c = std::cos(step * t), c2 = 2 * c * c - 1, c3 = (2 * c2 - 1) * c;  // of 1, 2, 3 times the angle
        return a(1) + a(2) * c + a(3) * c2 + a(4) * c3;
    }));
}

template <class Value>
WindowVerdict fill(const WindowTask& task, WindowValues& w, const Value& value) {
    for (int i = 1; i <= task.half(); ++i) w(i) = value(task.t(i));
    return WindowVerdict::computed;
}

// Single-precision values of 0.1102, 8.7, 0.58417, 20.96, 0.4 and 0.07886. Source: J. F. Kaiser, 1974.
double kaiser_beta(double loss) {
    constexpr double least = 20.959999084472656;
    if (loss > 50) return 0.11020000278949738 * (loss - 8.699999809265137);
    if (loss < least) return 0;
    return 0.5841699838638306 * std::pow(loss - least, static_cast<double>(0.4F)) +
           0.07885999977588654 * (loss - least);
}

// I0(2 z) as the sum of (z^k/k!)^2.
double bessel_i0(double z) {
    constexpr int most_terms = 1000;
    double term = 1, sum = 1;
    for (int k = 1; k <= most_terms; ++k) {
        term *= z / k;
        sum += term * term;
        if (term * term < sum * 1.0e-14) break;
    }
    return sum;
}

// F(0), F(1), ... over their sum; none where the loss leads out of range. The first nbar - 1 zeros of the window's
// transform are those of equal side lobes, stretched by sigma so that the rest follows at its whole numbers.
std::vector<double> taylor_coefficients(double loss) {
    constexpr int most_terms = 20;
    const double A = std::acosh(std::pow(10.0, loss / 20)) / window_pi, a2 = A * A;
    if (!std::isfinite(a2)) return {};
    const auto s = [a2](int n) { return static_cast<double>(n) * n / ((n - 0.5) * (n - 0.5) + a2); };
    int n = 1;
    while (s(n + 1) >= s(n)) ++n;
    const double sigma2 = s(n);
    const int nbar = std::min(n, most_terms);
    std::vector<double> F{1};
    double S = 1;
    for (int m = 1; m < nbar; ++m) {
        const double m2 = static_cast<double>(m) * m;
        double quotient = m % 2 == 0 ? -1 : 1;
        for (int k = 1; k < nbar; ++k) {
            quotient *= 1 - m2 / (sigma2 * ((k - 0.5) * (k - 0.5) + a2));
            if (k != m) quotient /= 1 - m2 / (static_cast<double>(k) * k);
        }
        F.push_back(quotient);
        S += quotient;
    }
    for (double& f : F) f /= S;
    return F;
}

}  // namespace

}  // namespace kavrel
