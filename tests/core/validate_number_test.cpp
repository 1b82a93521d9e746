#include "core/controls/validate_number.h"

#include <gtest/gtest.h>

#include <limits>

#include "core/controls/controls.h"
#include "core/controls/form.h"
#include "core/controls/messages.h"
#include "core/fakes.h"
#include "core/text/numbers.h"

namespace Corvetape {
namespace {

class ValidateNumberTest : public testing::Test {
 protected:
    ValidateNumberTest() {
        Disk.Contents["/p/test.lang"] = "701=no number\n702=fraction\n703=%1 to %2\n704=step %1\n";
        Texts.Load("test");
    }
    /// The text of the box, empty for an accepted input.
    std::string Check(const char* text, int32_t minimum = 50, int32_t maximum = 10000, int32_t step = 50) {
        Boxes.Boxes.clear();
        Box.Text(text);
        const bool refused = ValidateNumber(Box, minimum, maximum, step, Boxes, Texts);
        EXPECT_EQ(refused, !Boxes.Boxes.empty()) << text;
        if (Boxes.Boxes.empty()) return {};
        EXPECT_EQ(Boxes.Boxes.size(), size_t{1}) << text;
        EXPECT_EQ(Boxes.Boxes[0].Icon, DialogIcon::Exclamation);
        return Boxes.Boxes[0].Text;
    }

    MemoryFiles Disk;
    RecordingDialogs Boxes;
    clsLocalizeControls Texts{Disk, "/p", Boxes};
    Form Window{"frmTest", ""};
    TextBox Box{Window, "txtBox"};
};

TEST_F(ValidateNumberTest, AGoodNumberPasses) {
    EXPECT_EQ(Check("50"), "");
    EXPECT_EQ(Check("100"), "");
    EXPECT_EQ(Check("10000"), "");
    EXPECT_EQ(Check(" 100 "), "");
    EXPECT_EQ(Check("100.0"), "");
    EXPECT_EQ(Check("1e2"), "");
}

TEST_F(ValidateNumberTest, WhatIsNoNumberIsRefused) {
    for (const char* text :
         {"", " ", "abc", "12a", "1 2", "1,5", "--1", "-", ".", "0x10", "inf", "nan", "1e", "1e999"}) {
        EXPECT_EQ(Check(text), "no number") << text;
    }
}

TEST_F(ValidateNumberTest, AFractionIsRefused) {
    EXPECT_EQ(Check("100.5", 100, 1000000, 1), "fraction");
    EXPECT_EQ(Check("-.25"), "fraction");
    EXPECT_EQ(Check("1e-999"), "no number");
}

TEST_F(ValidateNumberTest, ANumberOutsideItsRangeIsRefused) {
    EXPECT_EQ(Check("99", 100, 1000000, 1), "100 to 1000000");
    EXPECT_EQ(Check("1000001", 100, 1000000, 1), "100 to 1000000");
    EXPECT_EQ(Check("1000000", 100, 1000000, 1), "");
    EXPECT_EQ(Check("100", 100, 1000000, 1), "");
    EXPECT_EQ(Check("99999999999999999999", 100, 1000000, 1), "100 to 1000000");
    EXPECT_EQ(Check("-1", -1, 5000, 1), "");
    EXPECT_EQ(Check("-2", -1, 5000, 1), "-1 to 5000");
}

TEST_F(ValidateNumberTest, ANumberBetweenTwoStepsIsRefused) {
    EXPECT_EQ(Check("75"), "step 50");
    EXPECT_EQ(Check("-75", -100, 100, 50), "step 50");
    EXPECT_EQ(Check("-100", -100, 100, 50), "");
    EXPECT_EQ(Check("7", 0, 10, 0), "");
}

TEST_F(ValidateNumberTest, TheRefusalsComeInTheirOrder) {
    EXPECT_EQ(Check("20000.5"), "fraction");
    EXPECT_EQ(Check("20001"), "50 to 10000");
}

TEST_F(ValidateNumberTest, TheTextOfTheBoxStays) {
    Check("75");
    EXPECT_EQ(Box.Text(), "75");
}

TEST(Numbers, AWholeNumberIsRoundedWithHalvesToEven) {
    EXPECT_EQ(WholeNumberFromText("300"), 300);
    EXPECT_EQ(WholeNumberFromText(" +2.5 "), 2);
    EXPECT_EQ(WholeNumberFromText("-3.5"), -4);
    EXPECT_EQ(WholeNumberFromText("2147483648"), std::nullopt);
    EXPECT_EQ(WholeNumberFromText("300 MB"), std::nullopt);
    EXPECT_EQ(WholeNumberFromText(""), std::nullopt);
}

TEST(Numbers, ALeadingNumberEndsWhereNoneGoesOn) {
    EXPECT_EQ(LeadingNumber(" \t90-auto"), 90.0);
    EXPECT_EQ(LeadingNumber("-5x"), -5.0);
    EXPECT_EQ(LeadingNumber("+7"), 7.0);
    EXPECT_EQ(LeadingNumber(".5."), 0.5);
    EXPECT_EQ(LeadingNumber("1e2e"), 100.0);
    EXPECT_EQ(LeadingNumber("1e"), 1.0);
    for (const char* text : {"", "  ", "x1", "-", "+-1", ".", "inf", "nan"}) {
        EXPECT_EQ(LeadingNumber(text), 0.0) << text;
    }
}

TEST(Numbers, ALeadingNumberBeyondTheRangeIsTheNearestWithin) {
    EXPECT_EQ(LeadingNumber("1e999"), std::numeric_limits<double>::max());
    EXPECT_EQ(LeadingNumber("-" + std::string(400, '9')), std::numeric_limits<double>::lowest());
    EXPECT_EQ(LeadingNumber("1e-999"), 0.0);
    EXPECT_EQ(LeadingNumber("0." + std::string(400, '0') + "1"), 0.0);
}

TEST(Numbers, RoundingStaysWithin32Bits) {
    EXPECT_EQ(RoundToInt32(1e300), std::numeric_limits<int32_t>::max());
    EXPECT_EQ(RoundToInt32(-1e300), std::numeric_limits<int32_t>::min());
    EXPECT_EQ(RoundToInt32(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(RoundToInt32(0.5), 0);
    EXPECT_EQ(RoundToInt32(1.5), 2);
}

}  // namespace
}  // namespace Corvetape
