// The classic edit descriptors of Fortran as functions that return the text of one field, for fields whose width or
// number is computed; a line of fixed fields is written as its format (shell/edited.h).
//
// `width` is the width of the field in characters: the text is at its right end, and a text that does not fit
// leaves a field of asterisks; width 0 takes the least that holds it (never with G). `decimals` (at least 0) is the
// number of digits behind the decimal point, in G the number of significant digits (at least 1).
//
// Numbers are rounded on the exact value of the double, a tie to the even digit. An optional zero before the decimal
// point goes when the field is tight. A number that rounds to zero keeps its sign, as does -0.0. NaN, Inf and Infinity
// (where it fits) appear in a field of any kind. An exponent of three digits drops its letter: 0.1+101, 0.1-101.
//
// `scale` is the k of the scale factor kP. E, D and G with an exponent: k digits are before the point and decimals -
// k + 1 behind it, or, with k <= 0, -k zeros follow the point; it takes -decimals < k < decimals + 2, and other k leave
// asterisks. F: the number times 10**k, with k >= -decimals. G without an exponent and EN ignore it.
//
// Nothing here asks the locale. The texts equal gfortran's to the byte, but for two places beside a border of decades,
// where gfortran 12 leaves the exact value and these do not: ENw.d with d >= 13, and Gw.d within an ulp of a tie that
// carries.
#pragma once

#include <string>
#include <string_view>

namespace kavrel {

// Iw.m: at least `min_digits` digits, with zeros in front. Iw is Iw.1; Iw.0 shows 0 as blanks.
[[nodiscard]] std::string edit_i(long long value, int width, int min_digits = 1);

// Fw.d: 0.50, .50 where it is tight.
[[nodiscard]] std::string edit_f(double value, int width, int decimals, int scale = 0);

// Ew.dEe and Dw.d: 0.1234E+01, with 1P 1.2340E+00. Without `exp_digits` the exponent has two digits, or three and no
// letter.
[[nodiscard]] std::string edit_e(double value, int width, int decimals, int exp_digits = 0, int scale = 0);
[[nodiscard]] std::string edit_d(double value, int width, int decimals, int scale = 0);

// ENw.d: the exponent is a multiple of three, 1 to 3 digits are before the point: 12.340E+03.
[[nodiscard]] std::string edit_en(double value, int width, int decimals);

// Gw.d: as F with `decimals` significant digits and four blanks behind it where the rounded magnitude is 0 or lies in
// [0.1, 10**decimals), else as E.
[[nodiscard]] std::string edit_g(double value, int width, int decimals, int scale = 0);

// A and Aw: right-justified, or the first `width` characters (of UTF-8: a box character counts as one) of a longer
// text.
[[nodiscard]] std::string edit_a(std::string_view text);
[[nodiscard]] std::string edit_a(std::string_view text, int width);

// nX: n blanks.
[[nodiscard]] std::string edit_x(int n);

}  // namespace kavrel
