#include "passive/stored_circuit.h"

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

#include "passive/circuit_check.h"
#include "passive/circuit_text.h"
#include "tests/passive/random_filters.h"
#include "tests/support/scratch_folder.h"

namespace kavrel {
namespace {

using testing::bytes_of;
using testing::FilterMaker;

constexpr std::size_t level_size = 8 + 8;  // of the last record, which older files do not have
constexpr std::size_t short_size = (1200 + 400 + 2688 + 516 + 3 * 4 + 8) + 8 * 8;

FileStatus save(std::string_view name, const PassiveFilter& filter, const FixedText<80>& title) {
    FileMark mark;
    return save_filter(name, circuit_forms, filter, title, mark);
}

FileStatus load(std::string_view name, PassiveFilter& filter, FixedText<80>& title) {
    FileMark mark;
    return read_filter(name, circuit_forms, filter, title, mark);
}

// Reads the bytes over a filter, and asks that a refusal leaves it and its title alone.
bool reads(std::string_view bytes, PassiveFilter& found, FixedText<80>& title) {
    const std::string before = bytes_of(found);
    const std::string title_before = title.text();
    if (take_form(circuit_forms, bytes, found, title)) return true;
    EXPECT_EQ(bytes_of(found), before);
    EXPECT_EQ(title.text(), title_before);
    return false;
}

bool reads(std::string_view bytes) {
    PassiveFilter found;
    found.circuit.fa = 1;
    FixedText<80> title = "untouched";
    return reads(bytes, found, title);
}

TEST(StoredCircuit, ComesBackToTheLastBit) {
    const ScratchFolder folder;
    FilterMaker maker(1);
    for (int round = 0; round < 300; ++round) {
        const PassiveFilter filter = maker.filter();
        const FixedText<80> title = maker.title();
        PassiveFilter found = maker.filter();
        FixedText<80> found_title;
        ASSERT_TRUE(sound_store(filter.circuit)) << round;
        ASSERT_EQ(save("some", filter, title), FileStatus::done) << round;
        ASSERT_EQ(load("some", found, found_title), FileStatus::done) << round;
        EXPECT_TRUE(bytes_of(found) == bytes_of(filter)) << round;
        EXPECT_EQ(found_title.bytes, title.bytes);
    }
}

// An edit may have made a value infinite: a snapshot holds it all the same. Its record 8 is the normalisation
// frequency.
TEST(StoredCircuit, SnapshotsHoldNumbersThatAreNotFinite) {
    PassiveFilter filter = FilterMaker(11).filter();
    filter.circuit.VALUE(1) = std::numeric_limits<double>::infinity();
    const std::string bytes = circuit_keeping.snapshot.bytes(filter, "title");
    double eighth = 0;
    std::memcpy(&eighth, bytes.data() + short_size - 4 - sizeof eighth, sizeof eighth);
    EXPECT_EQ(eighth, filter.circuit.fnorm);
    PassiveFilter found;
    FixedText<80> title;
    ASSERT_TRUE(circuit_keeping.snapshot.take(bytes, found, title));
    EXPECT_TRUE(bytes_of(found) == bytes_of(filter));
}

void expect_circuit_from_elsewhere(const PassiveFilter& filter, double tolerance) {
    const Circuit& c = filter.circuit;
    EXPECT_FALSE(filter.designed);
    EXPECT_EQ(c.klast, 9);
    EXPECT_EQ(c.kind, CircuitKind::microwave);
    EXPECT_EQ(unpackBranch(c, 4), (Branch{.id = BranchId::inductor, .i1 = 3, .in = 0, .kp = 3, .kn = 6}));
    EXPECT_NEAR(c.VALUE(2), 1.0 / 3, tolerance);
    EXPECT_NEAR(c.VALUE(3), 2.0 / 7, tolerance);
    EXPECT_EQ(c.quadruplet_count, 2);
    const Quadruplet& q = c.QUADRUPLETS(2);
    EXPECT_EQ(q.M(2, 3), 1);
    EXPECT_EQ(q.M(2, 4), 0);
    EXPECT_EQ(q.XK(2, 3), 223);
    EXPECT_NEAR(q.XC(2, 4), 224 / 1000.0, tolerance);
    EXPECT_EQ(q.YK(3), 6);
    EXPECT_EQ(q.YC(2), 1);
    EXPECT_EQ(q.FRES(2), 0.4);
    EXPECT_EQ(c.fs, 3e9);
    EXPECT_EQ(c.R1, 75);
    EXPECT_EQ(c.R2, 50);
    EXPECT_EQ(c.termination_ratio, 50.0 / 75);
}

// Both files come from a Fortran program.
TEST(StoredCircuit, AFileOfEightRecordsOrOfLinesIsReadToo) {
    const std::string folder = TEST_DATA "/passive/";
    PassiveFilter filter = FilterMaker(3).filter();
    FixedText<80> title = "before";
    ASSERT_EQ(load(folder + "told_records.qfp", filter, title), FileStatus::done);
    expect_circuit_from_elsewhere(filter, 0);
    EXPECT_TRUE(title.is_blank());
    EXPECT_EQ(filter.circuit.fnorm, 1.5e9) << "lines are a quarter wave long";

    filter = FilterMaker(3).filter();
    ASSERT_EQ(load(folder + "told_lines.trf", filter, title), FileStatus::done);
    expect_circuit_from_elsewhere(filter, 5e-9);
    EXPECT_EQ(title, std::string_view("A circuit from elsewhere"));
    EXPECT_EQ(filter.circuit.fa, 1e8);
    EXPECT_EQ(filter.circuit.mode_count, 2);
    EXPECT_EQ(filter.circuit.MODE_IM(2), -1e-120);
    EXPECT_EQ(circuit_text(filter, title), read_text(folder + "told_lines.trf")) << "written as Fortran does";
}

// Losses by Q at the normalisation frequency, and sweeps, have something to go by.
// Of the choices of a design; files of earlier programs hold them.
TEST(StoredCircuit, NumbersOfChoicesStay) {
    EXPECT_EQ((std::array{static_cast<int>(low_pass), static_cast<int>(high_pass), static_cast<int>(band_pass)}),
              (std::array{1, 2, 4}));
    EXPECT_EQ((std::array{static_cast<int>(sloping_passband), static_cast<int>(impedance_matching),
                          static_cast<int>(functional_stopband), static_cast<int>(microwave)}),
              (std::array{3, 3, 4, 2}));
}

TEST(StoredCircuit, EightRecordsAloneGetANormalisationFrequency) {
    PassiveFilter filter;
    Circuit& c = filter.circuit;
    const double w = 2 * std::numbers::pi * 1e6;
    const double elements[] = {2 / (w * 50), 50 / w / 2};  // of 25 and 25 ohm at 1 MHz
    int k = 1;
    for (const double value : {50.0, elements[0], elements[1]}) {
        ASSERT_EQ(insert_values(c, k,
                                k == 1   ? BranchId::resistor
                                : k == 3 ? BranchId::capacitor
                                         : BranchId::inductor,
                                {&value, 1}),
                  CircuitVerdict::done);
        k = k == 1 ? 3 : 4;
    }
    PassiveFilter found;
    FixedText<80> title;
    ASSERT_TRUE(reads(circuit_forms[0].layout.bytes(filter, "").substr(0, short_size), found, title));
    EXPECT_NEAR(found.circuit.fnorm, 1e6, 1e-6) << "halfway between 500 kHz and 2 MHz";
    filter = {};
    double load = 50;
    k = 1;
    ASSERT_EQ(insert_values(filter.circuit, k, BranchId::resistor, {&load, 1}), CircuitVerdict::done);
    ASSERT_TRUE(reads(circuit_forms[0].layout.bytes(filter, "").substr(0, short_size), found, title));
    EXPECT_EQ(found.circuit.fnorm, 1);
}

TEST(StoredCircuit, EveryTruncationIsRefused) {
    const std::string whole = circuit_forms[0].layout.bytes(FilterMaker(4).filter(), "title");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        if (size != short_size && size != whole.size() - level_size) {
            EXPECT_FALSE(reads(whole.substr(0, size))) << size;
        }
    }
    EXPECT_FALSE(reads(whole + whole));
    EXPECT_FALSE(reads(whole + '\0'));

    const std::string text = circuit_text(FilterMaker(4).filter(), "title");
    for (std::size_t size = 0; size < text.size(); ++size) ASSERT_FALSE(reads(text.substr(0, size))) << size;
    EXPECT_FALSE(reads(std::string(76, 'x') + text)) << "the title is too long";
    for (const char* foreign : {"", "\n", "MZ", "<html></html>\n",
                                "\x7f"
                                "ELF\x02"})
        EXPECT_FALSE(reads(foreign));
}

// Damage is refused, or it changed nothing but a number: then what was read is stored as the same bytes again.
TEST(StoredCircuit, DamagedBytesAreRefusedOrStandForAnotherSoundCircuit) {
    FilterMaker maker(5);
    int refused = 0;
    for (int round = 0; round < 4000; ++round) {
        std::string bytes = circuit_forms[0].layout.bytes(maker.filter(), maker.title());
        for (int flips = maker.whole(1, 4); flips > 0; --flips) {
            // Half of them in the words of the chain and behind, where most of the structure is.
            const bool anywhere = maker.whole(0, 1) == 0;
            const int place = anywhere ? maker.whole(0, static_cast<int>(bytes.size()) - 1) : maker.whole(1200, 1700);
            bytes[static_cast<std::size_t>(place)] ^= static_cast<char>(1 << maker.whole(0, 7));
        }
        PassiveFilter found = maker.filter();
        FixedText<80> title;
        if (!reads(bytes, found, title)) {
            ++refused;
        } else {
            EXPECT_TRUE(circuit_forms[0].layout.bytes(found, title) == bytes) << round;
        }
    }
    EXPECT_GT(refused, 1000);
    for (int round = 0; round < 300; ++round) {
        std::string text = circuit_text(maker.filter(), "title");
        text[static_cast<std::size_t>(maker.whole(0, static_cast<int>(text.size()) - 1))] =
            static_cast<char>(maker.whole(0, 255));
        PassiveFilter found = maker.filter();
        FixedText<80> title;
        if (reads(text, found, title)) {
            EXPECT_TRUE(sound_store(found.circuit));
        }
    }
}

struct Damage {
    const char* what;
    void (*make)(PassiveFilter& filter);
};

template <class T>
void change(Circuit& c, int k, T Branch::*field, T value) {
    Branch branch = unpackBranch(c, k);
    branch.*field = value;
    packBranch(c, k, branch);
}

// R 1, L 2, quadruplet 5, quadruplet 8, lc 11, R 12.
PassiveFilter six_branches() {
    PassiveFilter filter;
    Circuit& c = filter.circuit;
    FilterMaker maker(6);
    int k = 1;
    using enum BranchId;
    for (const BranchId id : {resistor, inductor, quadruplet, quadruplet, lc, resistor}) {
        const auto done =
            id == quadruplet ? insert_quadruplet(c, k, maker.quadruplet()) : insert_values(c, k, id, maker.values(id));
        EXPECT_EQ(done, CircuitVerdict::done);
        ++k;
    }
    return filter;
}

constexpr double nan_value = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

constexpr Damage damages[] = {
    {"klast beyond the slots", [](PassiveFilter& f) { f.circuit.klast = 101; }},
    {"klast behind the chain", [](PassiveFilter& f) { ++f.circuit.klast; }},
    {"klast within the chain", [](PassiveFilter& f) { f.circuit.klast = 2; }},
    {"klast of an empty circuit", [](PassiveFilter& f) { f.circuit.INDX1.fill(0); }},
    {"klast negative", [](PassiveFilter& f) { f.circuit.klast = -1; }},
    {"ilast beyond the cells", [](PassiveFilter& f) { f.circuit.ilast = 151; }},
    {"ilast below a cell in use", [](PassiveFilter& f) { --f.circuit.ilast; }},
    {"quadruplet count", [](PassiveFilter& f) { f.circuit.quadruplet_count = 9; }},
    {"quadruplet slot not in use", [](PassiveFilter& f) { f.circuit.quadruplet_count = 1; }},
    {"kind", [](PassiveFilter& f) { f.circuit.kind = static_cast<CircuitKind>(3); }},
    {"no branch 1", [](PassiveFilter& f) { f.circuit.INDX1(1) = 0; }},
    {"branch 1 no resistor", [](PassiveFilter& f) { change(f.circuit, 1, &Branch::id, BranchId::inductor); }},
    {"a word outside of the chain", [](PassiveFilter& f) { packBranch(f.circuit, 50, {.i1 = 1}); }},
    {"a negative word", [](PassiveFilter& f) { f.circuit.INDX1(2) = -f.circuit.INDX1(2); }},
    {"id without a kind", [](PassiveFilter& f) { change(f.circuit, 2, &Branch::id, BranchId{branch_kind_count}); }},
    {"link back", [](PassiveFilter& f) { change(f.circuit, 5, &Branch::kp, 1); }},
    {"link to itself", [](PassiveFilter& f) { change(f.circuit, 2, &Branch::kn, 2); }},
    {"link into the void", [](PassiveFilter& f) { change(f.circuit, 2, &Branch::kn, 4); }},
    {"chain cut", [](PassiveFilter& f) { change(f.circuit, 2, &Branch::kn, 0); }},
    {"cell 0", [](PassiveFilter& f) { change(f.circuit, 2, &Branch::i1, 0); }},
    {"cell of another", [](PassiveFilter& f) { change(f.circuit, 2, &Branch::i1, 1); }},
    {"too many cells", [](PassiveFilter& f) { change(f.circuit, 2, &Branch::in, 1); }},
    {"too few cells", [](PassiveFilter& f) { change(f.circuit, 11, &Branch::in, 0); }},
    {"quadruplet slot 0", [](PassiveFilter& f) { change(f.circuit, 5, &Branch::i1, 0); }},
    {"quadruplet slot shared", [](PassiveFilter& f) { change(f.circuit, 5, &Branch::i1, 2); }},
    {"value", [](PassiveFilter& f) { f.circuit.VALUE(1) = nan_value; }},
    {"value without an inverse", [](PassiveFilter& f) { f.circuit.VALUE(1) = 5e-324; }},
    {"quadruplet", [](PassiveFilter& f) { f.circuit.QUADRUPLETS(2).XK(1, 2) = infinite; }},
    {"fs", [](PassiveFilter& f) { f.circuit.fs = -infinite; }},
    {"ratio", [](PassiveFilter& f) { f.circuit.termination_ratio = nan_value; }},
    {"mod", [](PassiveFilter& f) { f.mod = std::numeric_limits<float>::infinity(); }},
    {"filter type", [](PassiveFilter& f) { f.spec.filterType = FilterType{7}; }},
    {"implementation", [](PassiveFilter& f) { f.spec.implementation = 'X'; }},
};

// Text holds neither the design nor the ratio that the terminations have.
bool sound_in_text(const PassiveFilter& damaged) {
    PassiveFilter rest = damaged;
    rest.spec = {};
    rest.transfer = {};
    rest.background = {};
    rest.circuit.termination_ratio = 1;
    return sound_store(rest.circuit) && all_finite(rest);
}

// Spoils each number of a record in turn, and each count of a table's cells.
struct SpoilEach {
    PassiveFilter& filter;

    template <class T, class... Count>
    void operator()(const char* name, T& field, Count&... count) const {
        if constexpr (Listed<T>) fields_of(field, *this);
        if constexpr (std::is_same_v<T, double>) spoil(name, field, nan_value);
        if constexpr (sizeof...(count) > 0) {
            spoil(name, field(T::bound), infinite);
            (spoil(name, count, -1), ...);
            (spoil(name, count, T::bound + 1), ...);
        }
    }

private:
    template <class T>
    void spoil(const char* name, T& number, T value) const {
        std::swap(number, value);
        EXPECT_FALSE(reads(circuit_forms[0].layout.bytes(filter, ""))) << name;
        std::swap(number, value);
    }
};

TEST(StoredCircuit, EachNumberOfADesignIsLookedAt) {
    PassiveFilter filter = six_branches();
    const SpoilEach spoil{filter};
    DesignBackground& background = filter.background;
    fields_of(filter.spec, spoil);
    fields_of(filter.transfer, spoil);
    fields_of(background.request, spoil);
    fields_of(background.notes, spoil);
    spoil("worked_lower_edge", background.worked_lower_edge);
    spoil("worked_upper_edge", background.worked_upper_edge);
    spoil("MODE_RE", filter.circuit.MODE_RE, filter.circuit.mode_count);
    spoil("MODE_IM", filter.circuit.MODE_IM, filter.circuit.mode_count);
}

TEST(StoredCircuit, WhatNoCircuitCouldBeIsRefused) {
    ASSERT_TRUE(reads(circuit_forms[0].layout.bytes(six_branches(), "")));
    for (const Damage& damage : damages) {
        PassiveFilter filter = six_branches();
        damage.make(filter);
        EXPECT_FALSE(reads(circuit_forms[0].layout.bytes(filter, ""))) << damage.what;
        EXPECT_EQ(reads(circuit_text(filter, "")), sound_in_text(filter)) << damage.what;
    }
    for (int id = branch_kind_count; id <= 50; ++id) {
        for (int further = 0; further <= 10; ++further) {
            PassiveFilter filter = six_branches();
            change(filter.circuit, 2, &Branch::id, BranchId{id});
            change(filter.circuit, 2, &Branch::in, further);
            EXPECT_FALSE(reads(circuit_forms[0].layout.bytes(filter, ""))) << id << ' ' << further;
        }
    }
    std::string bytes = circuit_forms[0].layout.bytes(six_branches(), "");
    bytes[short_size + 4 + 7] = '2';
    EXPECT_FALSE(reads(bytes)) << "another version";
    PassiveFilter filter = six_branches();
    filter.circuit.termination_ratio = infinite;
    EXPECT_TRUE(reads(circuit_forms[0].layout.bytes(filter, ""))) << "a load of 0";
    EXPECT_TRUE(reads(circuit_forms[0].layout.bytes({}, ""))) << "no circuit";
}

TEST(StoredCircuit, TextKeepsEightDigits) {
    const ScratchFolder folder;
    FilterMaker maker(7);
    for (int round = 0; round < 100; ++round) {
        PassiveFilter filter = maker.filter();
        Circuit& c = filter.circuit;
        for (double* number : {&c.R1, &c.R2, &c.fa, &c.fb, &c.fnorm, &c.fs}) *number = maker.value() * 1e9;
        c.MODE_RE.fill(-maker.value());
        c.MODE_IM.fill(maker.value() * 1e-7);
        PassiveFilter found = maker.filter();
        FixedText<80> title;
        ASSERT_EQ(save("some.trf", filter, "a\ttitle\n"), FileStatus::done);
        ASSERT_EQ(load("some.trf", found, title), FileStatus::done);
        EXPECT_EQ(title, std::string_view("a title"));
        EXPECT_EQ(found.circuit.INDX1, c.INDX1);
        EXPECT_FALSE(found.designed);
        EXPECT_EQ(found.mod, filter.mod);
        const auto close = [](double a, double b) { return std::abs(a - b) <= 5.1e-8 * std::abs(b); };
        EXPECT_TRUE(std::ranges::equal(found.circuit.VALUE, c.VALUE, close)) << round;
        EXPECT_TRUE(std::ranges::equal(found.circuit.MODE_IM, c.MODE_IM, close)) << round;
        EXPECT_TRUE(close(found.circuit.fnorm, c.fnorm));
        for (int slot = 1; slot <= max_quadruplets; ++slot) {
            EXPECT_EQ(found.circuit.QUADRUPLETS(slot).M, c.QUADRUPLETS(slot).M);
            EXPECT_TRUE(std::ranges::equal(found.circuit.QUADRUPLETS(slot).YC, c.QUADRUPLETS(slot).YC, close));
        }
        std::string text = circuit_text(found, title);
        PassiveFilter again;
        ASSERT_TRUE(take_form(circuit_forms, text, again, title));
        EXPECT_EQ(circuit_text(again, title), text) << "nothing is lost any more";
        std::ranges::replace(text, 'D', 'E');
        for (auto end = text.find('\n'); end != std::string::npos; end = text.find('\n', end + 2))
            text.insert(end, "\r");
        EXPECT_TRUE(reads(text)) << "other letters and line ends";
    }
}

TEST(StoredCircuit, FilesAreNamedAndRefused) {
    const ScratchFolder folder;
    const PassiveFilter filter = six_branches();
    PassiveFilter found;
    FixedText<80> title = "before";
    EXPECT_EQ(save("one", filter, "t"), FileStatus::done);
    EXPECT_EQ(save("two.dat", filter, "t"), FileStatus::done);
    EXPECT_EQ(save("three.qfp", filter, "t"), FileStatus::done);
    EXPECT_EQ(save("four.trf", filter, "t"), FileStatus::done);
    for (const char* name : {"one.qfp", "two.qfp", "three.qfp", "four.trf"}) {
        EXPECT_TRUE(std::filesystem::exists(name)) << name;
        EXPECT_EQ(load(name, found, title), FileStatus::done) << name;
    }
    std::filesystem::rename("four.trf", "five.qfp");
    EXPECT_EQ(load("five", found, title), FileStatus::done) << "known by its first bytes";

    const std::string before = bytes_of(found);
    std::filesystem::create_directory("folder.qfp");
    write_text("empty.qfp", "");
    write_text("foreign.qfp", "something else");
    EXPECT_EQ(message_of(load("none", found, title)), "File was not found");
    EXPECT_EQ(message_of(load("folder", found, title)), "File could not be opened");
    EXPECT_EQ(message_of(load("empty", found, title)), "Error encountered in reading the file");
    EXPECT_EQ(message_of(load("foreign", found, title)), "Error encountered in reading the file");
    EXPECT_EQ(bytes_of(found), before);
    EXPECT_EQ(message_of(save("missing/one", filter, "t")), "File could not be written");
    EXPECT_EQ(message_of(save("folder", filter, "t")), "File could not be written");
}

TEST(StoredCircuit, WhatCouldNotBeReadAgainDoesNotReplaceAGoodFile) {
    const ScratchFolder folder;
    PassiveFilter filter = six_branches();
    ASSERT_EQ(save("good", filter, ""), FileStatus::done);
    const std::string bytes = read_text("good.qfp");
    filter.circuit.VALUE(2) = infinite;
    EXPECT_EQ(save("good", filter, ""), FileStatus::not_written);
    EXPECT_EQ(read_text("good.qfp"), bytes);
}

}  // namespace
}  // namespace kavrel
