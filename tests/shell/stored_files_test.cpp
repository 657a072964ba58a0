#include "shell/stored_files.h"

#include <gtest/gtest.h>

namespace kavrel {
namespace {

TEST(StoredFiles, NamesBySlot) {
    const struct {
        const char* stem;
        ExtSlot slot;
        const char* name;
    } rows[] = {
        {"filter", ExtSlot::fir_filter, "filter.qff"},
        {"filter.qff", ExtSlot::fir_filter, "filter.qff"},
        {"filter.dat", ExtSlot::fir_filter, "filter.qff"},
        {"a.m", ExtSlot::matlab, "a.m"},
        {"a.s2p", ExtSlot::matlab, "a.m"},
        {"a.mat", ExtSlot::matlab, "a.mat.m"},
        {"lp1.5k", ExtSlot::netlist, "lp1.5k.ckt"},
        {"a.pz", ExtSlot::pole_zero, "a.pz"},
        {"a", ExtSlot::pole_zero, "a.pz"},
        {"long.name", ExtSlot::passive_circuit, "long.name.qfp"},
        {"long.name.qfi", ExtSlot::passive_circuit, "long.name.qfp"},
        {" padded  ", ExtSlot::netlist, "padded.ckt"},
        {"run.1/out", ExtSlot::text, "run.1/out.txt"},
        {"a.x/f", ExtSlot::text, "a.x/f.txt"},
    };
    for (const auto& row : rows) EXPECT_EQ(file_name(row.stem, row.slot), row.name) << row.stem;
    EXPECT_EQ(EXT(2), ".f90");
    EXPECT_EQ(EXT(22), "    ");
    EXPECT_EQ(EXT(26), ".dat") << "slots are taken modulo 25";
}

TEST(StoredFiles, RecordsHaveTheirCountsOnBothSides) {
    RecordWriter file;
    file.record(1.0, 7);
    file.record();
    ASSERT_EQ(file.bytes().size(), 4U + 12U + 4U + 8U);
    EXPECT_EQ(file.bytes().substr(0, 4), std::string("\x0c\0\0\0", 4));
    EXPECT_EQ(file.bytes().substr(12, 8), std::string("\x07\0\0\0\x0c\0\0\0", 8));
    RecordReader reader(file.bytes());
    double number = 0.0;
    int integer = 0;
    reader.record(number, integer);
    reader.record();
    EXPECT_TRUE(reader.finished());
    EXPECT_EQ(number, 1.0);
    EXPECT_EQ(integer, 7);
}

TEST(StoredFiles, DamagedRecordsAreRefused) {
    RecordWriter file;
    file.record(2.5);
    const auto reads = [](std::string_view bytes) {
        RecordReader reader(bytes);
        double number = 0.0;
        reader.record(number);
        return reader.finished();
    };
    const std::string& good = file.bytes();
    EXPECT_TRUE(reads(good));
    for (std::size_t kept = 0; kept < good.size(); ++kept) EXPECT_FALSE(reads(good.substr(0, kept))) << kept;
    EXPECT_FALSE(reads(good + "x"));
    for (const std::size_t marker : {0U, 3U, 12U, 15U}) {
        std::string bad = good;
        bad[marker] = static_cast<char>(bad[marker] ^ 0x41);
        EXPECT_FALSE(reads(bad)) << marker;
    }
    EXPECT_FALSE(reads(std::string("\xff\xff\xff\xff", 4) + good.substr(4)));
}

}  // namespace
}  // namespace kavrel
