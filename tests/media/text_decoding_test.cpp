#include "media/text_decoding.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "core/text/fold.h"

namespace Corvetape {
namespace {

struct Row {
    const char* Entity;
    const char* Character;
};

// What each entity becomes. Those of small accented letters give the capital ones.
constexpr auto Rows = std::to_array<Row>({
    {"&quot;", "\""},  {"&amp;", "&"},    {"&apos;", "'"},   {"&lt;", "<"},       {"&gt;", ">"},
    {"&nbsp;", " "},   {"&iexcl;", "¡"},  {"&curren;", "¤"}, {"&cent;", "¢"},     {"&pound;", "£"},
    {"&yen;", "¥"},    {"&brvbar;", "¦"}, {"&sect;", "§"},   {"&uml;", "¨"},      {"&copy;", "©"},
    {"&ordf;", "ª"},   {"&laquo;", "«"},  {"&not;", "¬"},    {"&shy;", "\u00AD"}, {"&reg;", "®"},
    {"&trade;", "™"},  {"&macr;", "¯"},   {"&deg;", "°"},    {"&plusmn;", "±"},   {"&sup2;", "²"},
    {"&sup3;", "³"},   {"&acute;", "´"},  {"&micro;", "µ"},  {"&para;", "¶"},     {"&middot;", "·"},
    {"&cedil;", "¸"},  {"&sup1;", "¹"},   {"&ordm;", "º"},   {"&raquo;", "»"},    {"&frac14;", "¼"},
    {"&frac12;", "½"}, {"&frac34;", "¾"}, {"&iquest;", "¿"}, {"&times;", "×"},    {"&divide;", "÷"},
    {"&Agrave;", "À"}, {"&Aacute;", "Á"}, {"&Acirc;", "Â"},  {"&Atilde;", "Ã"},   {"&Auml;", "Ä"},
    {"&Aring;", "Å"},  {"&AElig;", "Æ"},  {"&Ccedil;", "Ç"}, {"&Egrave;", "È"},   {"&Eacute;", "É"},
    {"&Ecirc;", "Ê"},  {"&Euml;", "Ë"},   {"&Igrave;", "Ì"}, {"&Iacute;", "Í"},   {"&Icirc;", "Î"},
    {"&Iuml;", "Ï"},   {"&ETH;", "Ð"},    {"&Ntilde;", "Ñ"}, {"&Ograve;", "Ò"},   {"&Oacute;", "Ó"},
    {"&Ocirc;", "Ô"},  {"&Otilde;", "Õ"}, {"&Ouml;", "Ö"},   {"&Oslash;", "Ø"},   {"&Ugrave;", "Ù"},
    {"&Uacute;", "Ú"}, {"&Ucirc;", "Û"},  {"&UUml;", "Ü"},   {"&Yacute;", "Ý"},   {"&THORN;", "Þ"},
    {"&szlig;", "ß"},  {"&agrave;", "À"}, {"&aacute;", "Á"}, {"&acirc;", "Â"},    {"&atilde;", "Ã"},
    {"&auml;", "Ä"},   {"&aring;", "Å"},  {"&aelig;", "Æ"},  {"&ccedil;", "Ç"},   {"&egrave;", "È"},
    {"&eacute;", "É"}, {"&ecirc;", "Ê"},  {"&euml;", "Ë"},   {"&igrave;", "Ì"},   {"&iacute;", "Í"},
    {"&icirc;", "Î"},  {"&iuml;", "Ï"},   {"&eth;", "Ð"},    {"&ntilde;", "Ñ"},   {"&ograve;", "Ò"},
    {"&oacute;", "Ó"}, {"&ocirc;", "Ô"},  {"&otilde;", "Õ"}, {"&ouml;", "Ö"},     {"&oslash;", "Ø"},
    {"&ugrave;", "Ù"}, {"&uacute;", "Ú"}, {"&ucirc;", "Û"},  {"&uuml;", "Ü"},     {"&yacute;", "Ý"},
    {"&thorn;", "Þ"},  {"&yuml;", "ÿ"},
});

/// Characters up to U+FFFF as a text.
std::string Utf8Of(const std::u32string& characters) {
    std::string text;
    for (const char32_t character : characters) {
        if (character >= 0x800) {
            text += static_cast<char>(0xE0 | character >> 12);
            text += static_cast<char>(0x80 | (character >> 6 & 0x3F));
        } else if (character >= 0x80) {
            text += static_cast<char>(0xC0 | character >> 6);
        } else {
            text += static_cast<char>(character);
            continue;
        }
        text += static_cast<char>(0x80 | (character & 0x3F));
    }
    return text;
}

class EntityTable : public testing::TestWithParam<Row> {};

TEST_P(EntityTable, EveryRowGivesItsCharacter) {
    const Row& row = GetParam();
    EXPECT_EQ(DecodeWebText(row.Entity), row.Character);
    const std::string inside = std::string("a") + row.Entity + "b" + row.Entity;
    EXPECT_EQ(DecodeWebText(inside), std::string("a") + row.Character + "b" + row.Character);
}

INSTANTIATE_TEST_SUITE_P(All, EntityTable, testing::ValuesIn(Rows));

TEST(DecodeWebText, ACapitalUWithDiaeresisIsFoundInEverySpelling) {
    for (const char* entity : {"&UUml;", "&Uuml;", "&uuml;"}) EXPECT_EQ(DecodeWebText(entity), "Ü");
}

TEST(DecodeWebText, EntitiesAreComparedIgnoringCase) {
    EXPECT_EQ(DecodeWebText("&QUOT;&Amp;&NBSP;&TRADE;"), "\"& \u2122");
}

TEST(DecodeWebText, AnEscapedAmpersandFormsTheEntityAfterIt) {
    EXPECT_EQ(DecodeWebText("&amp;lt;"), "<");
    EXPECT_EQ(DecodeWebText("&amp;auml;"), "Ä");
    // Its own row is over when the quotation mark's name is formed.
    EXPECT_EQ(DecodeWebText("&amp;quot;"), "&quot;");
}

TEST(DecodeWebText, AnEscapedAmpersandFormsEveryEntityOfTheRowsAfterItsOwn) {
    for (size_t row = 0; row < Rows.size(); ++row) {
        const std::string escaped = std::string("&amp;") + (Rows[row].Entity + 1);
        EXPECT_EQ(DecodeWebText(escaped), row < 2 ? Rows[row].Entity : Rows[row].Character) << escaped;
    }
}

TEST(DecodeWebText, WhatTheEntitiesFormIsPutRightAtTheEnd) {
    EXPECT_EQ(DecodeWebText("&Atilde;&para;"), "ö");
    EXPECT_EQ(DecodeWebText("&ATILDE;%B6"), "ö");
}

TEST(DecodeWebText, MisreadTextIsPutRightTwice) {
    EXPECT_EQ(RepairUtf8("Ãƒ¤"), "Ã¤");
    EXPECT_EQ(DecodeWebText("Ãƒ¤"), "ä");
}

TEST(DecodeWebText, NumericAndUnknownEntitiesStay) {
    EXPECT_EQ(DecodeWebText("&#228;&#xE4;&hearts;&auml"), "&#228;&#xE4;&hearts;&auml");
}

TEST(DecodeWebText, PercentCodesBecomeTheirCharacters) {
    EXPECT_EQ(DecodeWebText("A%20B%26C"), "A B&C");
    EXPECT_EQ(DecodeWebText("%e4%E4"), "ää");
    EXPECT_EQ(DecodeWebText("%80"), "€");
}

TEST(DecodeWebText, PercentCodesOfUtf8ArePutRight) {
    EXPECT_EQ(DecodeWebText("Bj%C3%B6rk"), "Björk");
}

TEST(DecodeWebText, APercentSignThatACodeGivesMayBeginTheNextCode) {
    EXPECT_EQ(DecodeWebText("%2541"), "A");
    EXPECT_EQ(DecodeWebText("%25"), "%");
}

TEST(DecodeWebText, APercentSignWithoutTwoDigitsStays) {
    EXPECT_EQ(DecodeWebText("50 % of% %4 %G1 %4"), "50 % of% %4 %G1 %4");
    EXPECT_EQ(DecodeWebText("%4"), "%4");
}

TEST(DecodeWebText, TwoPercentSignsBecomeOne) {
    EXPECT_EQ(DecodeWebText("100%% pure"), "100% pure");
}

TEST(DecodeWebText, APercentSignWithAZeroIsLost) {
    EXPECT_EQ(DecodeWebText("100%0 "), "100 ");
}

TEST(DecodeWebText, EntitiesComeBeforePercentCodes) {
    EXPECT_EQ(DecodeWebText("%26amp;"), "&amp;");
}

TEST(DecodeWebText, PlainTextStaysAsItIs) {
    EXPECT_EQ(DecodeWebText(""), "");
    EXPECT_EQ(DecodeWebText("Motörhead – Łódź 東京"), "Motörhead – Łódź 東京");
}

TEST(RepairUtf8, TwoCharactersBecomeOneForLeadsFrom195To198) {
    EXPECT_EQ(RepairUtf8("Ã¤Ã¶Ã¼ÃŸ"), "äöüß");  // 195, the last one by a special ANSI code
    EXPECT_EQ(RepairUtf8("Ä\u008D"), "č");      // 196 141
    EXPECT_EQ(RepairUtf8("Å‚"), "ł");           // 197 130
    EXPECT_EQ(RepairUtf8("Æ’"), "ƒ");           // 198 146
}

TEST(RepairUtf8, ThreeCharactersBecomeOneForTheLead225) {
    EXPECT_EQ(RepairUtf8("á»‡"), "ệ");  // 225 187 135
}

TEST(RepairUtf8, OfTheThirdCharacterNothingIsAsked) {
    EXPECT_EQ(RepairUtf8("á»A"), "\u1EC1");  // 225 187 65: 1 x 4096 + 59 x 64 + 1
    EXPECT_EQ(RepairUtf8("á»AB"),
              "\u1EC1"
              "B");
}

TEST(RepairUtf8, EveryLeadAndCharacterAfterItFollowTheRule) {
    for (int lead = 0; lead < 256; ++lead) {
        for (const int next : {0x20, 0x7F, 0x80, 0xA4, 0xFF}) {
            const auto character = [](int code) { return CharacterOfAnsi(static_cast<uint8_t>(code)); };
            const std::u32string misread = {character(lead), character(next)};
            const bool pair = lead >= 195 && lead <= 198 && next >= 128;
            const std::u32string expected =
                pair ? std::u32string{static_cast<char32_t>((lead & 31) * 64 + (next & 63))} : misread;
            EXPECT_EQ(CharactersOf(RepairUtf8(Utf8Of(misread))), expected) << lead << " " << next;
        }
    }
}

TEST(RepairUtf8, OtherLeadsPassUnchanged) {
    EXPECT_EQ(RepairUtf8("Â©"), "Â©");            // 194
    EXPECT_EQ(RepairUtf8("Ç\u008D"), "Ç\u008D");  // 199
    EXPECT_EQ(RepairUtf8("à¤…"), "à¤…");          // 224
    EXPECT_EQ(RepairUtf8("â‚¬"), "â‚¬");          // 226
}

TEST(RepairUtf8, ALeadBeforeAPlainCharacterStays) {
    EXPECT_EQ(RepairUtf8("Ãa"), "Ãa");
    EXPECT_EQ(RepairUtf8("áa€"), "áa€");
    EXPECT_EQ(RepairUtf8("ÃŁ"), "ÃŁ");  // without an ANSI code
}

TEST(RepairUtf8, ALeadAtTheEndStays) {
    EXPECT_EQ(RepairUtf8("Voilá"), "Voilá");
    EXPECT_EQ(RepairUtf8("Ã"), "Ã");
    EXPECT_EQ(RepairUtf8("á»"), "á»");  // the third one is missing
}

TEST(RepairUtf8, ProperTextThatLooksMisreadIsChangedToo) {
    EXPECT_EQ(RepairUtf8("Äö"), "\u0136");
}

TEST(RepairUtf8, EmptyTextStaysEmpty) {
    EXPECT_EQ(RepairUtf8(""), "");
}

TEST(RepairUtf8, BytesThatAreNoCharactersStay) {
    EXPECT_EQ(RepairUtf8("a\xC3"), "a\xC3");
    EXPECT_EQ(RepairUtf8("\xFF\xFEz"), "\xFF\xFEz");
}

TEST(CodePointFromBytes, OneToThreeBytesMakeANumber) {
    const std::array<uint8_t, 3> bytes = {0xE1, 0xBB, 0x87};
    EXPECT_EQ(CodePointFromBytes(std::array<uint8_t, 1>{65}), 65u);
    EXPECT_EQ(CodePointFromBytes(std::array<uint8_t, 2>{0xC3, 0xA4}), 0xE4u);
    EXPECT_EQ(CodePointFromBytes(bytes), 0x1EC7u);
}

TEST(AnsiCode, EveryCodeComesBackFromItsCharacter) {
    for (int code = 0; code < 256; ++code) {
        EXPECT_EQ(AnsiCode(CharacterOfAnsi(static_cast<uint8_t>(code))), code);
    }
    EXPECT_EQ(AnsiCode(U'Ł'), '?');
    EXPECT_EQ(CharacterOfAnsi(0x80), U'€');
}

TEST(MediaText, HasNoMarkThatTurnsTheDirectionOfWriting) {
    for (const char* mark :
         {"\u202A", "\u202B", "\u202C", "\u202D", "\u202E", "\u2066", "\u2067", "\u2068", "\u2069"}) {
        EXPECT_EQ(MediaText(mark + std::string("a") + mark + "b" + mark), "ab");
    }
    for (const char* other : {"\u2029", "\u202F", "\u2065", "\u206A", "\u05D0", "\u00E9", "\U0001F3B5"}) {
        EXPECT_EQ(MediaText(other), other);
    }
}

TEST(MediaText, HasNoBytesThatAreNoUtf8) {
    EXPECT_EQ(MediaText("K\xF6ln \xE2\x80"), "Kln ");
    EXPECT_EQ(MediaText("\xC3\xA4\xFF\xC3\xA4"), "ää");
}

TEST(MediaText, EndsAfterAThousandCharacters) {
    std::string text;
    for (int i = 0; i < 1001; ++i) text += "ä";
    EXPECT_EQ(MediaText(text), text.substr(0, 2000));
    EXPECT_EQ(MediaText("\u202E" + text.substr(0, 2000)), text.substr(0, 2000));
    EXPECT_EQ(MediaText(std::string(5'000'000, 'x')).size(), 1000U);
}

TEST(TextFromFile, TextThatIsNotUtf8IsAnsi) {
    EXPECT_EQ(TextFromFile("Radio K\xF6ln \x80"), "Radio Köln €");
    EXPECT_EQ(TextFromFile("Radio Köln"), "Radio Köln");
}

}  // namespace
}  // namespace Corvetape
