#include "iir/integer_program.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include <fmt/format.h>

#include "iir/c_program.h"
#include "iir/steppers.h"
#include "shell/fixed_text.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

constexpr double most_product = 0x1p62;
constexpr std::string_view dialect_field = "dialect";

// The front-end multiplier of a cascade: a floating word.
struct FrontWord {
    double mantissa = 0;  // whole
    int shift = 0;
};
FrontWord front_word(double CK, int bits);
std::vector<double> numbers_of(const ProgramInput& input);
Refusal bound_refusal(const ProgramInput& input, Watcher& watcher);

void add_head(const ProgramInput& input, ProgramLines& lines);
void add_coefficients(const ProgramInput& input, const std::vector<CoefficientTable>& tables, ProgramLines& lines);

constexpr CNumbers whole_numbers{.type = "int64_t",
                                 .front = "trun(ck*(int64_t)x, shift)",
                                 .sum = "yy",
                                 .half_sum = "trun(ya[2][nta] + yb[2][ntb], 1)",
                                 .half_difference = "trun(yb[2][ntb] - ya[2][nta], 1)"};

}  // namespace

Refusal integer_program_refusal(const ProgramInput& input, Watcher& watcher) {
    const Refusal wrong = integer_refusal(input.filter.word, numbers_of(input));
    return wrong.empty() ? bound_refusal(input, watcher) : wrong;
}

ProgramLines integer_program(const ProgramInput& input) {
    ProgramLines lines;
    const auto tables = padded_tables(input.filter, input.form);
    add_head(input, lines);
    add_integer_quantiser(input.filter.word.method, lines);
    add_text(lines, R"(

void tim(int32_t x, int64_t *y, int n)
{
)");
    add_coefficients(input, tables, lines);
    add_c_equations(input, tables, whole_numbers, lines);
    lines.emplace_back("}");
    return lines;
}

namespace {

// ---- whole numbers ----

// Of a level below half a unit no product is left. Else the last of its bits + 1 bits is 2^-(2 bits + 1) at least.
FrontWord front_word(double CK, int bits) {
    if (std::fabs(CK) < std::ldexp(0.5, -bits)) return {};
    FrontWord word{.mantissa = CK};
    while (word.mantissa != std::trunc(word.mantissa) && word.shift <= 2 * bits) {
        ++word.shift;
        word.mantissa *= 2;
    }
    return word;
}

// All coefficients as they are to be whole numbers.
std::vector<double> numbers_of(const ProgramInput& input) {
    const int bits = input.filter.word.bits;
    std::vector<double> numbers;
    if (input.form == Implementation::cascade) numbers.push_back(front_word(input.filter.cascade.CK, bits).mantissa);
    if (input.form == Implementation::parallel) numbers.push_back(std::ldexp(input.filter.parallel.AO, bits));
    for (const CoefficientTable& table : padded_tables(input.filter, input.form)) {
        for (const double value : table.values) numbers.push_back(std::ldexp(value, bits));
    }
    return numbers;
}

// ---- bounds ----

// The magnitudes of a form's products, summed over a response.
class ProductSums {
public:
    explicit ProductSums(std::size_t disturbed = 0) : disturbed_(disturbed) {}

    void begin_sample() {
        product_ = state_ = 0;
        ++sample_;
    }
    void add(double magnitude) {
        if (product_ == sums_.size()) sums_.push_back(0);
        sums_[product_++] += magnitude;
    }
    // A state; the disturbed one, counted from 1, has 1 more in the first sample.
    double state(double value) {
        ++state_;
        if (sample_ == 1) products_before_.push_back(product_);
        return sample_ == 1 && state_ == disturbed_ ? value + 1 : value;
    }

    [[nodiscard]] const std::vector<double>& sums() const { return sums_; }
    [[nodiscard]] double total() const {
        double total = 0;
        for (const double sum : sums_) total += sum;
        return total;
    }
    [[nodiscard]] bool are_within(double most) const {
        return std::ranges::all_of(sums_, [&](double sum) { return sum <= most; });
    }
    [[nodiscard]] std::size_t states() const { return products_before_.size(); }
    // The products that are quantised in a state.
    [[nodiscard]] double quantisers(std::size_t state) const {
        return static_cast<double>(products_before_[state - 1] - (state == 1 ? 0 : products_before_[state - 2]));
    }

private:
    std::size_t disturbed_;
    std::size_t product_ = 0;
    std::size_t state_ = 0;
    long long sample_ = 0;
    std::vector<double> sums_;
    std::vector<std::size_t> products_before_;  // [state - 1]
};

class SummingArithmetic {
public:
    using Value = double;

    explicit SummingArithmetic(ProductSums& sums) : sums_(&sums) {}

    [[nodiscard]] double product(double coefficient, double value) const {
        sums_->add(std::fabs(coefficient * value));
        return coefficient * value;
    }
    [[nodiscard]] double quantised(double value) const { return value; }
    [[nodiscard]] double state(double value) const { return sums_->state(value); }

private:
    ProductSums* sums_;
};

// Runs a stepper on an impulse, or on nothing, until the sums have settled to within 1e-6. False where they do not, or
// one passes `most`.
template <class Stepper>
bool settle(Stepper stepper, double impulse, double most, ProductSums& sums, Watcher& watcher) {
    constexpr int block = 1024, most_blocks = 4096;
    double before = 0;
    for (int blocks = 0, next = 2; blocks < most_blocks && watcher.go_on();) {
        for (int n = 0; n < block; ++n) {
            sums.begin_sample();
            static_cast<void>(stepper.step(blocks == 0 && n == 0 ? impulse : 0.0));
        }
        if (!sums.are_within(most)) return false;
        if (++blocks == 1) before = sums.total();
        if (blocks < next) continue;
        if (sums.total() - before <= 1e-6 * sums.total()) return true;
        before = sums.total();
        next *= 2;
    }
    return false;
}

// The bounds of the products of a form, in units of 2^(-2 bits); none where one passes the limit.
template <class MakeStepper>
std::optional<std::vector<double>> product_bounds(const MakeStepper& make, int bits, Watcher& watcher) {
    ProductSums signal;
    if (!settle(make(SummingArithmetic(signal)), 1, std::ldexp(most_product, -2 * bits), signal, watcher)) {
        return std::nullopt;
    }
    std::vector<double> bounds;
    for (const double sum : signal.sums()) bounds.push_back(std::ldexp(sum, 2 * bits));
    for (std::size_t state = 1; state <= signal.states(); ++state) {
        ProductSums error(state);
        const double unit = std::ldexp(signal.quantisers(state), bits);
        if (!settle(make(SummingArithmetic(error)), 0, most_product / unit, error, watcher)) return std::nullopt;
        for (std::size_t i = 0; i < bounds.size(); ++i) bounds[i] += unit * error.sums()[i];
    }
    return bounds;
}

std::optional<std::vector<double>> product_bounds(const ProgramInput& input, Watcher& watcher) {
    using In = SummingArithmetic;
    const IirFilter& f = input.filter;
    const auto bounds = [&](const auto& make) { return product_bounds(make, f.word.bits, watcher); };
    switch (input.form) {
        case Implementation::cascade: return bounds([&](In in) { return CascadeStepper(f.cascade, in); });
        case Implementation::parallel: return bounds([&](In in) { return ParallelStepper(f.parallel, in); });
        case Implementation::direct: return bounds([&](In in) { return DirectStepper(f.direct, in); });
        case Implementation::allpass:
            return bounds([&](In in) { return AllpassStepper(f.allpass, AllpassOutput::sum, in); });
        case Implementation::lattice:
        case Implementation::natural_modes: break;
    }
    return std::nullopt;
}

// No product passes 2^62, nor does the sum of all of them that are brought to the word.
Refusal bound_refusal(const ProgramInput& input, Watcher& watcher) {
    const auto bounds = product_bounds(input, watcher);
    bool fits = bounds.has_value();
    double sum = 0;
    for (const double bound : bounds.value_or(std::vector<double>())) {
        fits = fits && bound <= most_product;
        sum += std::ldexp(bound, -input.filter.word.bits);
    }
    return fits && sum <= most_product ? Refusal() : Refusal("A product may pass 2**62", dialect_field);
}

// ---- text ----

void add_head(const ProgramInput& input, ProgramLines& lines) {
    lines.push_back("/* " + c_comment(input.title));
    lines.push_back(fmt::format("   {}; all numbers are values times 2^{}", form_text(input), input.filter.word.bits));
    add_text(lines, R"(

   tim(x, &y, n) with n = 1 resets the filter; y stays as it is. Each sample x, with n = 2, 3, ..., gives y.
)");
    const long long full_scale = 1LL << input.filter.word.bits;
    lines.push_back(fmt::format("   With x from {} to {}, full scale, nothing overflows. */", -full_scale, full_scale));
    add_text(lines, R"(

#include <stdint.h>

void tim(int32_t x, int64_t *y, int n);

)");
}

void add_coefficients(const ProgramInput& input, const std::vector<CoefficientTable>& tables, ProgramLines& lines) {
    const int bits = input.filter.word.bits;
    const auto whole = [](double number) { return fmt::format("{}", whole_part<std::int32_t>(number)); };
    lines.push_back(fmt::format("    enum {{ ibt = {} }};", bits));
    if (input.form == Implementation::cascade) {
        const FrontWord front = front_word(input.filter.cascade.CK, bits);
        lines.push_back(fmt::format("    enum {{ shift = {} }};  /* ck*2^-shift is the multiplier */", front.shift));
        lines.push_back(fmt::format("    static const int32_t ck = {};", whole(front.mantissa)));
    }
    if (input.form == Implementation::parallel) {
        lines.push_back(
            fmt::format("    static const int32_t ao = {};", whole(std::ldexp(input.filter.parallel.AO, bits))));
    }
    for (const CoefficientTable& table : tables) {
        add_c_array(lines, "    ", fmt::format("static const int32_t {}[]", trim(table.name)),
                    c_integers(table.values, bits));
    }
}

}  // namespace

}  // namespace kavrel
