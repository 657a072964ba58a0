#include "shell/edit.h"

#include <bit>
#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "shell/edited.h"

namespace kavrel {
namespace {

// One line of edit_golden.txt; its head names the columns.
struct Case {
    std::string kind;
    int scale = 0, width = 0, decimals = 0, exp_digits = 0;
    std::string value, field;
};

bool read_case(const std::string& row, Case& golden) {
    const auto bar = row.find('|');
    if (bar == std::string::npos || row.back() != '|') return false;
    golden.field = row.substr(bar + 1, row.size() - bar - 2);
    std::istringstream in(row.substr(0, bar));
    return !(in >> golden.kind >> golden.scale >> golden.width >> golden.decimals >> golden.exp_digits >> golden.value)
                .fail();
}

std::string edited_text(std::string_view format, const std::vector<FormatValue>& values) {
    const Format read = FormatReader(format).format();
    if (!read.good || read.values != std::ssize(values)) return "no format: " + std::string(format);
    return edit_values(read, format, values.data());
}

std::string edited_text(const Case& c) {
    const auto number = [](int n) { return std::to_string(n); };
    const auto field = c.kind + number(c.width);
    if (c.kind == "A") return edited_text("(" + field + ")", {format_value(c.value)});
    const auto decimals = "." + number(c.decimals);
    if (c.kind == "I") return edited_text("(" + field + decimals + ")", {format_value(std::stoll(c.value))});
    const auto value = std::bit_cast<double>(std::uint64_t{std::stoull(c.value, nullptr, 16)});
    const auto exponent = c.exp_digits > 0 ? "E" + number(c.exp_digits) : "";
    return edited_text("(" + number(c.scale) + "P," + field + decimals + exponent + ")", {format_value(value)});
}

// Where gfortran 12 leaves the exact value of the double, which these fields keep.
struct Misrounded {
    std::string_view row, field;
};
constexpr Misrounded misrounded[] = {
    {"G 0 8 1 0 BFEE666666666666 ", "-0.9    "},                       // -0.9499999999999999556 becomes -1.
    {"EN 0 26 17 0 D4B249AD2594C37D ", " -10.00000000000000016E+99"},  // -10.0000000000000001590E+99 becomes ...020E+99
};

TEST(Edit, EqualsGfortranToTheByte) {
    const char* const other = std::getenv("KAVREL_EDIT_GOLDEN");  // a longer file of make_edit_golden.sh
    std::ifstream in(other ? other : TEST_DATA "/shell/edit_golden.txt");
    int cases = 0, wrong = 0, excepted = 0;
    for (std::string row; std::getline(in, row);) {
        if (row.starts_with('#')) continue;
        Case golden;
        ASSERT_TRUE(read_case(row, golden)) << row;
        ++cases;
        for (const auto& exception : misrounded) {
            if (!row.starts_with(exception.row)) continue;
            ++excepted;
            EXPECT_NE(golden.field, exception.field) << "this gfortran is exact: drop the exception";
            golden.field = exception.field;
        }
        const auto text = edited_text(golden);
        if (text != golden.field && ++wrong <= 10) ADD_FAILURE() << row << "\n  but |" << text << '|';
    }
    EXPECT_EQ(wrong, 0) << "of " << cases;
    EXPECT_GT(cases, 4000);
    EXPECT_EQ(excepted, 2);
}

TEST(Edit, RefusesWhatNoFormatAllows) {
    EXPECT_EQ(edit_e(1.0, 8, 0), "********");         // no digit to show
    EXPECT_EQ(edit_e(1.0, 9, 3, 0, 5), "*********");  // k = d + 2
    EXPECT_EQ(edit_f(1.0, 4, 1, -2), "****");         // k < -d
    EXPECT_EQ(edit_g(0.5, 7, 0), "*******");
}

TEST(Edit, TextCountsCharactersNotBytes) {
    EXPECT_EQ(edit_a("Ω│", 4), "  Ω│");
    EXPECT_EQ(edit_a("│Ω─x", 2), "│Ω");
    EXPECT_EQ(edit_a("│Ω", 2), "│Ω");
    EXPECT_EQ(edit_a("│Ω", 0), "");
    EXPECT_EQ(edit_a("│Ω"), "│Ω");
}

TEST(Edited, ReadsFormatsAsFortranDoes) {
    const struct {
        std::string_view format, line;
    } cases[] = {
        {"(1X,A,X,A3,3X,A)", " R  dB   12"},
        {" ( 2( A, ',' ) , A ) ", "R,dB,12"},
        {"('don''t',A,\"\"\"\",A,' \"',A,'')", "don'tR\"dB \"12"},
        {"(1P2(A,2('-',1X)),A)", "R- - dB- - 12"},
    };
    for (const auto& [format, line] : cases) {
        EXPECT_EQ(edited_text(format, {format_value('R'), format_value("dB"), format_value(std::string("12"))}), line);
    }
    EXPECT_EQ((edited<"(E10.3,1P,2E10.3,F6.1,0P2(F6.1,I),I3.2)">(0.5, 0.5, 0.5F, 0.5, 0.5, 7L, 0.5, 8U, 9)),
              " 0.500E+00 5.000E-01 5.000E-01   5.0   0.57   0.58 09");
    EXPECT_EQ(edited<"(I3)">(0), "  0");
    for (const std::string_view bad :
         {"",        "A",   "(A",   "(A))",  "()",  "(A,)", "(A I3)", "(A5.2)", "(F10)",     "(E.)",
          "(E9.2E)", "(Q)", "(0X)", "(-1X)", "(P)", "('a)", "(2(A)",  "(65A)",  "(EN9.2E2)", "(1X)A"}) {
        EXPECT_FALSE(FormatReader(bad).format().good) << bad;
    }
}

template <class... Values>
constexpr int mismatch(std::string_view format) {
    constexpr char kinds[] = {format_kind<Values>()...};
    return first_mismatch(FormatReader(format).format(), {kinds, sizeof...(Values)});
}
static_assert(mismatch<std::string, char, int, double>("(2A,'x',I3,1P,E9.2)") == 0);
static_assert(mismatch<int>("(A)") == 1 && mismatch<char, char>("(A,I)") == 2 && mismatch<bool>("(I)") == 1);
static_assert(mismatch<double, int>("(F4.1,EN9.2)") == 2 && mismatch<double, long double>("(2D9.2)") == 2);

struct Commas : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(Edit, DoesNotAskTheLocale) {
    const auto before = std::locale::global(std::locale(std::locale::classic(), new Commas));
    const std::string numbers = std::setlocale(LC_NUMERIC, nullptr);
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8"})
        if (std::setlocale(LC_NUMERIC, name)) break;
    const auto text = edited<"(F11.1,E9.2,EN12.3,G9.2,I8)">(1234567.5, 0.25, 1500.0, 2.5, 1234567);
    std::setlocale(LC_NUMERIC, numbers.c_str());
    std::locale::global(before);
    EXPECT_EQ(text, "  1234567.5 0.25E+00   1.500E+03  2.5     1234567");
}

}  // namespace
}  // namespace kavrel
