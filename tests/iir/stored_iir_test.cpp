#include "iir/stored_iir.h"

#include <cmath>

#include <gtest/gtest.h>

#include "iir/iir_records.h"
#include "tests/support/random_fields.h"
#include "tests/support/scratch_folder.h"

namespace kavrel {
namespace {

using testing::FieldBytes;
using testing::RandomFields;

constexpr std::size_t first_seven_bytes = (88 + 1656 + 228 + 852 + 4456 + 868 + 632) + 7 * 8;

std::string bytes_of(const IirFilter& filter) {
    FieldBytes all;
    all(filter);
    return all.bytes;
}

// Something in every field, as a filter may have it.
IirFilter random_filter(std::mt19937& engine) {
    RandomFields fields{engine};
    const auto whole = [&](int from, int to) { return fields.whole(from, to); };
    IirFilter f;
    fields.fill(f);
    fields.settle(f.spec), fields.settle(f.background.request), fields.settle(f.transfer);
    f.kind = DigitalKind{whole(0, 5)}, f.z_transform = ZTransform{whole(1, 5)}, f.spectral = SpectralKind{whole(0, 4)};
    f.word = {whole(1, unquantised_bits), WordMethod{whole(1, 2)}, NumberForm{whole(1, 2)}};
    f.converted = f.converted || f.LastBits == 0;
    f.fs = 1e3 * whole(1, 1000), f.T = 1 / f.fs;
    f.roots.ZMULT = f.roots.PMULT = 3, f.roots.NZ = 2 * whole(0, 25), f.roots.NP = 2 * whole(0, 25);
    for (auto* list : {&f.roots.ZI, &f.roots.PI}) {
        for (int i = 1; i < 51; i += 2) (*list)(i) = whole(0, 3), (*list)(i + 1) = -(*list)(i);
    }
    for (int i = 1; i <= iir_root_limit; ++i) f.allpass.LARR(i) = i % 2 + 1;
    f.cascade.NNUM = whole(0, 25), f.cascade.NDEN = whole(0, 25);
    for (int k = 1; k <= iir_section_limit; ++k) f.cascade.SC(k) = k <= f.cascade.NNUM ? 0.1 * whole(1, 99) : 1;
    f.parallel.NPAR = whole(0, 26), f.direct.JN = whole(0, 51), f.direct.JD = whole(0, 51);
    f.lattice.JT = whole(0, 51), f.lattice.JM = f.lattice.JT == 0 ? 0 : f.lattice.JT - 1;
    f.allpass.NTA = whole(0, 13), f.allpass.NTB = whole(0, 13);
    if (f.roots.NP > 24) f.allpass.ALLPASS_OK = false;
    f.unequalized_count = whole(0, 51), f.asked.count = whole(0, 4);
    return f;
}

// Every count is within its table, and there are numbers to be spoiled.
IirFilter full_filter() {
    std::mt19937 engine(1);
    IirFilter filter = random_filter(engine);
    filter.allpass.ALLPASS_OK = true, filter.roots.NP = 10;
    return filter;
}

// Reads the bytes over a filter, and asks that a refusal leaves it and its title alone.
bool reads(std::string_view bytes, IirFilter found = {}, IirFilter* taken = nullptr,
           FixedText<80> title = "untouched") {
    const IirFilter before = found;
    const bool good = take_form<IirFilter>(iir_files, bytes, found, title);
    EXPECT_TRUE(good || (bytes_of(found) == bytes_of(before) && title == std::string_view("untouched")));
    if (taken != nullptr) *taken = found;
    return good;
}

TEST(StoredIir, ComesBackToTheLastBit) {
    const ScratchFolder folder;
    std::mt19937 engine(2);
    for (int round = 0; round < 300; ++round) {
        const IirFilter filter = random_filter(engine);
        FixedText<80> title, found_title;
        RandomFields{engine}.fill(title);
        FileMark mark;
        IirFilter found = random_filter(engine);
        ASSERT_EQ(save_filter<IirFilter>("some", iir_files, filter, title, mark), FileStatus::done) << round;
        ASSERT_EQ(read_filter<IirFilter>("some.qfd", iir_files, found, found_title, mark), FileStatus::done) << round;
        EXPECT_TRUE(bytes_of(found) == bytes_of(filter)) << round;
        EXPECT_EQ(found_title.bytes, title.bytes);
        found = random_filter(engine);
        ASSERT_TRUE(read_iir_snapshot(iir_snapshot(filter, title), found, found_title)) << round;
        EXPECT_TRUE(bytes_of(found) == bytes_of(filter)) << round;
    }
}

// The file comes from a Fortran program, so that the records have the lengths they should.
TEST(StoredIir, AFileOfSevenRecordsIsReadToo) {
    const std::string bytes = read_text(TEST_DATA "/iir/seven_records.qfd");
    ASSERT_EQ(bytes.size(), first_seven_bytes);
    IirFilter f = full_filter();
    FixedText<80> title;
    ASSERT_TRUE(take_form<IirFilter>(iir_files, bytes, f, title));
    EXPECT_EQ(title.trimmed(), "A filter from elsewhere");
    EXPECT_TRUE(f.FilterTypeText == std::string_view("highpass") && f.kind == DigitalKind::high_pass &&
                f.z_transform == ZTransform::bilinear_of_function);
    EXPECT_TRUE(f.T == 1 / 48e3 && f.fs == 1 / (1 / 48e3) && f.FLO == 5e3 && f.LastBits == 0x1p-14);
    EXPECT_TRUE(f.roots.QR(3) == 1.0 / 3 && f.roots.PI(2) == -std::sqrt(3.0 / 16) && f.roots.ZMULT == 0.4);
    EXPECT_TRUE(f.cascade.C1N(2) == -1 && f.cascade.C2D(1) == 0.75 && f.parallel.AL(2) == 0.125);
    EXPECT_TRUE(f.lattice.GMTAP(4) == -0.4 && f.allpass.TB1(1) == -1.0 / 3 && f.allpass.LARR(3) == 2);
    EXPECT_TRUE(f.converted && is_there(f.allpass) && f.allpass.ALLPASS_OK);
    EXPECT_FALSE(f.designed || f.Modified || f.asked.count > 0 || f.cascade.SCALED || is_there(f.direct));
    EXPECT_TRUE(f.transfer.poleCount == 0 && f.word.bits == unquantised_bits);
    // Of the first seven records all comes back but what nobody here knows: the blocks of a design, and the last count.
    std::string again = iir_records(f, title);
    again.resize(first_seven_bytes);
    constexpr std::size_t blocks = 88 + 1656 + 228 + 852 + 4 * 8 + 4, last = first_seven_bytes - 8;
    again.replace(blocks, 2008, bytes, blocks, 2008);
    again.replace(last, 4, bytes, last, 4);
    EXPECT_TRUE(again == bytes);

    f.converted = false, f.LastBits = 0;
    EXPECT_TRUE(take_form<IirFilter>(iir_files, iir_records(f, title), f, title) && f.LastBits == unquantised_bits);
}

TEST(StoredIir, TruncatedAndLongerFilesAreRefused) {
    const std::string bytes = iir_records(full_filter(), "title");
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_EQ(reads(bytes.substr(0, size)), size == first_seven_bytes) << size;
    }
    EXPECT_FALSE(reads(bytes + bytes.back()));
    std::string other = bytes;
    other[first_seven_bytes + 4 + 7] = '2';
    EXPECT_FALSE(reads(other)) << "another version";
    const std::string snapshot = iir_snapshot(full_filter(), "title");
    IirFilter found;
    FixedText<80> title;
    for (std::size_t size = 0; size < snapshot.size(); ++size) {
        ASSERT_FALSE(read_iir_snapshot(snapshot.substr(0, size), found, title)) << size;
    }
}

// Spoils each number of a record in turn, and each count of a table's cells.
struct SpoilEach {
    IirFilter& filter;
    int& spoiled;

    template <class T, class... Count>
    void operator()(std::string_view name, T& field, Count&... count) const {
        if constexpr (Listed<T>) fields_of(field, *this);
        if constexpr (TableOfListed<T>) fields_of(field(T::bound), *this);
        if constexpr (std::is_same_v<T, double>) spoil(name, field, double{NAN});
        if constexpr (requires { field.cells; }) {
            if constexpr (std::is_same_v<decltype(field.cells[0]), double&>) spoil(name, field(T::bound), HUGE_VAL);
            (spoil(name, count, -1), ...);
            (spoil(name, count, T::bound + 1), ...);
        }
    }

private:
    template <class T>
    void spoil(std::string_view name, T& number, T value) const {
        ++spoiled;
        std::swap(number, value);
        EXPECT_FALSE(reads(iir_records(filter, ""))) << name;
        std::swap(number, value);
    }
};

TEST(StoredIir, EachNumberIsLookedAt) {
    IirFilter filter = full_filter();
    int spoiled = 0;
    fields_of(filter, SpoilEach{filter, spoiled});
    EXPECT_GT(spoiled, 150);
}

TEST(StoredIir, WhatNoFilterCouldBeIsRefused) {
    void (*const damages[])(IirFilter & f) = {
        [](IirFilter& f) { f.spectral = SpectralKind{5}; },
        [](IirFilter& f) { f.spec.filterType = FilterType{7}; },
        [](IirFilter& f) { f.background.request.medium = Medium{3}; },
        [](IirFilter& f) { f.T = -1; },
        [](IirFilter& f) { f.word.bits = 51; },
        [](IirFilter& f) { f.roots.NZ = 51; },
        [](IirFilter& f) { f.lattice.JT = 5, f.lattice.JM = 5; },
        [](IirFilter& f) { f.cascade.NNUM = 25, f.cascade.SC(25) = 0; },
        [](IirFilter& f) { f.roots.PI(10) = 1, f.roots.PI(9) = 0; },                     // alone
        [](IirFilter& f) { f.roots.PI(1) = -1, f.roots.PI(2) = 1; },                     // the lower one first
        [](IirFilter& f) { f.roots.NP = 28, f.roots.PI = {}, f.allpass.LARR.fill(2); },  // a chain too long
    };
    IirFilter filter;
    for (std::size_t i = 0; i < std::size(damages); ++i) {
        damages[i](filter = full_filter());
        EXPECT_FALSE(reads(iir_records(filter, ""))) << i;
    }
    filter = full_filter();
    filter.roots.ZMULT = filter.roots.PMULT = 0, filter.z_transform = ZTransform{77};
    filter.cascade.NNUM = 2, filter.cascade.NDEN = 4, filter.cascade.SC(4) = 3, filter.cascade.SC(5) = 3;
    ASSERT_TRUE(reads(iir_records(filter, ""), filter, &filter)) << "what a file may leave open";
    const CascadeForm& c = filter.cascade;
    EXPECT_TRUE(filter.roots.ZMULT == 1 && filter.roots.PMULT == 1 && filter.z_transform == ZTransform::unknown);
    EXPECT_TRUE(c.NNUM == 4 && c.SC(4) == 3 && c.C1N(3) == 0 && c.SC(5) == 1);
    // A filter of numbers that are not finite can be undone.
    filter.cascade.CK = HUGE_VAL;
    FixedText<80> title;
    EXPECT_FALSE(reads(iir_records(filter, "")));
    EXPECT_TRUE(read_iir_snapshot(iir_snapshot(filter, ""), filter, title));
}

}  // namespace
}  // namespace kavrel
