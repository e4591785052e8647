// The reader of PE files on a file made here, whole, cut off and damaged.
#include <gmock/gmock.h>

#include <cstdint>
#include <string>
#include <vector>

#include "vyra/detail/pe_file.h"

namespace {

using ::testing::ElementsAre;

// A 64-bit DLL of one section at address 0x1000 that exports "Open" and imports "Start", "Stop" and number 7 from
// "driver.dll" and nothing from "empty.dll".
class Pe_file_test : public ::testing::Test {
protected:
    Pe_file_test() : bytes_(0x600)
    {
        text(0, "MZ");
        number(0x3C, 0x80, 4);
        text(0x80, "PE");
        number(0x84, 0x8664, 2);
        number(0x86, 1, 2);             // sections
        number(0x94, 112 + 16 * 8, 2);  // size of the optional header
        number(0x98, 0x20B, 2);         // 64-bit
        number(0x98 + 112, 0x1000, 4);  // exports
        number(0x98 + 120, 0x1100, 4);  // imports
        const std::size_t section = 0x98 + 112 + 16 * 8;
        number(section + 12, 0x1000, 4);
        number(section + 16, 0x400, 4);
        number(section + 20, 0x200, 4);
        at(0x1000 + 24, 1);
        at(0x1000 + 32, 0x1040);
        at(0x1040, 0x1050);
        text(place(0x1050), "Open");
        at(0x1100, 0x1200);  // driver.dll: names
        at(0x1100 + 12, 0x1280);
        at(0x1100 + 16, 0x1240);
        text(place(0x1280), "driver.dll");
        at(0x1100 + 20 + 12, 0x1290);  // empty.dll
        text(place(0x1290), "empty.dll");
        at(0x1200, 0x12A0);
        text(place(0x12A2), "Start");
        at(0x1208, 0x12B0);
        text(place(0x12B2), "Stop");
        at(0x1210, 7);
        at(0x1214, 0x80000000);
    }

    void number(std::size_t offset, std::uint32_t value, unsigned count)
    {
        for (unsigned i = 0; i < count; ++i) {
            bytes_[offset + i] = static_cast<unsigned char>(value >> 8 * i);
        }
    }
    void text(std::size_t offset, const std::string& value)
    {
        std::copy(value.begin(), value.end(), bytes_.begin() + static_cast<std::ptrdiff_t>(offset));
    }
    static std::size_t place(std::uint32_t address) { return address - 0x1000 + 0x200; }
    void at(std::uint32_t address, std::uint32_t value) { number(place(address), value, 4); }

    // All that the reader finds, a file's name before its functions.
    static std::vector<std::string> imports(const VyraPe& pe)
    {
        std::vector<std::string> found;
        for (unsigned long i = 0; const char* file = vyra_pe_import(&pe, i); ++i) {
            found.emplace_back(file);
            for (unsigned long j = 0; const char* function = vyra_pe_import_function(&pe, i, j); ++j) {
                found.push_back(std::string("  ") + function);
            }
        }
        return found;
    }

    // Reads everything from a copy of exactly these bytes, so that a sanitizer sees every step beside them.
    static std::size_t read_all(const std::vector<unsigned char>& bytes)
    {
        VyraPe pe;
        return vyra_pe_read(&pe, bytes.data(), bytes.size()) == 0
                   ? 0
                   : imports(pe).size() + static_cast<std::size_t>(vyra_pe_exports(&pe, "Open"));
    }

    std::vector<unsigned char> bytes_;
};

TEST_F(Pe_file_test, a_whole_file_tells_processor_imports_and_exports)
{
    VyraPe pe;
    ASSERT_EQ(vyra_pe_read(&pe, bytes_.data(), bytes_.size()), 1);
    EXPECT_EQ(pe.machine, VYRA_PE_X64);
    EXPECT_THAT(imports(pe), ElementsAre("driver.dll", "  Start", "  Stop", "  ", "empty.dll"));
    EXPECT_EQ(vyra_pe_exports(&pe, "Open"), 1);
    EXPECT_EQ(vyra_pe_exports(&pe, "Ope"), 0);
    EXPECT_EQ(vyra_pe_exports(&pe, "Start"), 0);
}

TEST_F(Pe_file_test, what_is_no_pe_file_is_refused)
{
    EXPECT_EQ(read_all({}), 0U);
    EXPECT_EQ(read_all({'M', 'Z'}), 0U);
    EXPECT_EQ(read_all(std::vector<unsigned char>(4096, ' ')), 0U);
    number(0x3C, 0xFFFFFFFF, 4);
    EXPECT_EQ(read_all(bytes_), 0U);
}

TEST_F(Pe_file_test, a_file_that_was_cut_off_anywhere_reads_as_far_as_it_goes)
{
    const std::size_t whole = read_all(bytes_);
    for (std::size_t size = 0; size < bytes_.size(); ++size) {
        EXPECT_LE(read_all({bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(size)}), whole) << size;
    }
}

TEST_F(Pe_file_test, a_file_with_any_wrong_number_is_read_to_an_end)
{
    for (std::size_t offset = 0; offset + 4 <= bytes_.size(); ++offset) {
        for (const std::uint32_t wrong : {0U, 0xFFU, 0x1000U, 0x13FFU, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
            std::vector<unsigned char> damaged = bytes_;
            for (unsigned i = 0; i < 4; ++i) {
                damaged[offset + i] = static_cast<unsigned char>(wrong >> 8 * i);
            }
            EXPECT_LT(read_all(damaged), 5000U) << offset << " " << wrong;
        }
    }
}

}  // namespace
