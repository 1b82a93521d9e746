#include "media/image_size.h"

#include <gtest/gtest.h>

#include <string>

namespace Corvetape {
namespace {

std::string FromHex(std::string_view hex) {
    const auto digit = [](char each) { return each <= '9' ? each - '0' : each - 'a' + 10; };
    std::string bytes;
    for (size_t i = 0; i + 1 < hex.size(); i += 2) {
        bytes += static_cast<char>(digit(hex[i]) * 16 + digit(hex[i + 1]));
    }
    return bytes;
}

std::string Number(uint32_t value, int bytes, bool bigEnd) {
    std::string text;
    for (int i = 0; i < bytes; ++i) {
        const int place = bigEnd ? bytes - 1 - i : i;
        text += static_cast<char>(value >> (8 * place));
    }
    return text;
}

std::string Png(uint32_t width, uint32_t height) {
    return FromHex("89504e470d0a1a0a0000000d49484452") + Number(width, 4, true) + Number(height, 4, true) +
           FromHex("0802000000");
}

std::string Segment(char marker, const std::string& data) {
    return std::string("\xFF") + marker + Number(static_cast<uint32_t>(data.size() + 2), 2, true) + data;
}

std::string FrameHeader(char marker, uint32_t width, uint32_t height) {
    return Segment(marker, "\x08" + Number(height, 2, true) + Number(width, 2, true) + "\x03");
}

std::string Jpeg(const std::string& segments) {
    return "\xFF\xD8" + segments + std::string(20, '\0');
}

std::string Gif(uint32_t width, uint32_t height, const std::string& rest) {
    return "GIF89a" + Number(width, 2, false) + Number(height, 2, false) + FromHex("810000") +
           std::string(12, 'c') + rest;
}

std::string GifPicture(uint32_t left, uint32_t width, uint32_t height) {
    return "," + Number(left, 2, false) + Number(0, 2, false) + Number(width, 2, false) +
           Number(height, 2, false) + std::string(5, '\0');
}

std::string WebP(const std::string& chunk, const std::string& data) {
    return "RIFF" + Number(100, 4, false) + "WEBP" + chunk + Number(50, 4, false) + data;
}

constexpr ImageSize Wide{322, 122};

TEST(ImageSize, IsReadFromTheHeadersThatEncodersWrite) {
    EXPECT_EQ(ReadImageSize(FromHex("89504e470d0a1a0a0000000d49484452000001420000007a08020000004591cd")),
              Wide);
    EXPECT_EQ(ReadImageSize(FromHex("52494646aa00000057454250565038209e000000700c009d012a42017a003e91")),
              Wide);
    EXPECT_EQ(ReadImageSize(FromHex("5249464626000000574542505650384c1a0000002f41411e000710f58ffe0714")),
              Wide);
    EXPECT_EQ(ReadImageSize(Jpeg(Segment('\xE0', "JFIF") + FrameHeader('\xC0', 322, 122))), Wide);
    EXPECT_EQ(ReadImageSize(Gif(322, 122, GifPicture(0, 322, 122))), Wide);
}

TEST(ImageSize, OfAJpegIsThatOfEveryKindOfFrame) {
    for (const char marker : {'\xC0', '\xC1', '\xC2', '\xC3', '\xC9', '\xCA', '\xCF'}) {
        EXPECT_EQ(ReadImageSize(Jpeg(FrameHeader(marker, 7, 5))), (ImageSize{7, 5})) << int{marker};
    }
}

TEST(ImageSize, OfAJpegIsNotThatOfAPictureInsideOfIt) {
    const std::string inner = Jpeg(FrameHeader('\xC0', 7, 5));
    EXPECT_EQ(ReadImageSize(Jpeg(Segment('\xE1', inner) + Segment('\xC4', "tables of Huffman") +
                                 "\xFF\xFF\xFF" + FrameHeader('\xC2', 322, 122).substr(1))),
              Wide);
}

TEST(ImageSize, OfAJpegWithoutAFrameAheadOfItsPictureIsUnknown) {
    EXPECT_FALSE(ReadImageSize(Jpeg(Segment('\xDA', "scan") + FrameHeader('\xC0', 7, 5))));
    EXPECT_FALSE(ReadImageSize(Jpeg("no marker" + FrameHeader('\xC0', 7, 5))));
    EXPECT_FALSE(ReadImageSize(Jpeg(std::string("\xFF\xE0\0\1", 4) + FrameHeader('\xC0', 7, 5))));
}

TEST(ImageSize, OfAGifIsTheLargerOneOfItsScreenAndItsFirstPicture) {
    const std::string comment = std::string("!\xFE\x03") + "abc" + std::string(1, '\0');
    EXPECT_EQ(ReadImageSize(Gif(1, 1, comment + GifPicture(30000, 30000, 20000))), (ImageSize{60000, 20000}));
    EXPECT_EQ(ReadImageSize(Gif(9, 8, GifPicture(1, 2, 2))), (ImageSize{9, 8}));
    EXPECT_FALSE(ReadImageSize(Gif(9, 8, ";")));
}

TEST(ImageSize, OfAnExtendedWebPIsThatOfItsCanvas) {
    const std::string sides = Number(321, 3, false) + Number(121, 3, false);
    EXPECT_EQ(ReadImageSize(WebP("VP8X", std::string(4, '\0') + sides)), Wide);
}

TEST(ImageSize, OfAWebPWithoutItsMarkIsUnknown) {
    EXPECT_FALSE(ReadImageSize(WebP("VP8L", "/" + std::string(4, '\1')).replace(20, 1, "0")));
    EXPECT_FALSE(ReadImageSize(WebP("VP8 ", std::string(10, '\1'))));
    EXPECT_FALSE(ReadImageSize(WebP("ALPH", std::string(10, '\1'))));
}

TEST(ImageSize, OfZeroIsNone) {
    EXPECT_FALSE(ReadImageSize(Png(0, 5)));
    EXPECT_FALSE(ReadImageSize(Png(5, 0)));
    EXPECT_FALSE(ReadImageSize(Jpeg(FrameHeader('\xC0', 7, 0))));  // to be told after the picture
}

TEST(ImageSize, OfOtherBytesIsUnknown) {
    EXPECT_FALSE(ReadImageSize(""));
    EXPECT_FALSE(ReadImageSize(std::string(2000, 'x')));
    EXPECT_FALSE(ReadImageSize("<html><body>Not found, sorry</body></html>"));
    EXPECT_FALSE(ReadImageSize("BM" + std::string(60, '\1')));
}

TEST(ImageSize, OfAHeaderThatIsCutOffIsUnknown) {
    for (const std::string& whole :
         {Png(322, 122), "\xFF\xD8" + Segment('\xE0', std::string(30, 'a')) + FrameHeader('\xC0', 322, 122),
          Gif(322, 122, GifPicture(0, 322, 122)),
          WebP("VP8X", std::string(4, '\0') + Number(321, 3, false) + Number(121, 3, false))}) {
        ASSERT_EQ(ReadImageSize(whole), Wide);
        bool known = false;
        for (size_t length = 0; length <= whole.size(); ++length) {
            const auto size = ReadImageSize(std::string_view(whole).substr(0, length));
            EXPECT_TRUE(!size || *size == Wide) << length;
            EXPECT_TRUE(size || !known) << "known with fewer bytes than " << length;
            known = size.has_value();
        }
    }
}

TEST(Decoding, IsRefusedForPicturesThatWouldEatTheMemory) {
    EXPECT_TRUE(MayBeDecoded(Png(4096, 4096)));
    EXPECT_FALSE(MayBeDecoded(Png(4097, 4096)));
    EXPECT_FALSE(MayBeDecoded(Png(30000, 30000)));
    EXPECT_FALSE(MayBeDecoded(Png(0xFFFFFFFF, 0xFFFFFFFF)));
    EXPECT_FALSE(MayBeDecoded(Jpeg(FrameHeader('\xC2', 30000, 30000))));
}

std::string JpegOfScans(uint32_t side, size_t scans) {
    std::string segments = FrameHeader('\xC2', side, side);
    for (size_t i = 0; i < scans; ++i) segments += Segment('\xDA', FromHex("01010001003f")) + "picture";
    return Jpeg(segments);
}

TEST(Decoding, IsRefusedForAJpegOfMoreScansThanAnybodyNeeds) {
    EXPECT_TRUE(MayBeDecoded(JpegOfScans(600, 10)));
    EXPECT_TRUE(MayBeDecoded(JpegOfScans(600, MostCoverScans)));
    EXPECT_FALSE(MayBeDecoded(JpegOfScans(600, MostCoverScans + 1)));
}

TEST(Decoding, IsRefusedForALargeJpegOfFewerScans) {
    EXPECT_TRUE(MayBeDecoded(JpegOfScans(4096, 16)));
    EXPECT_FALSE(MayBeDecoded(JpegOfScans(4096, 17)));
}

std::string Chunk(const std::string& name, const std::string& content) {
    return Number(static_cast<uint32_t>(content.size()), 4, true) + name + content + "sum.";
}

std::string PngWith(const std::string& chunks) {
    return Png(300, 300) + "sum." + chunks + Chunk("IDAT", "picture") + Chunk("IEND", "");
}

TEST(Decoding, IsRefusedForAPngThatUnfoldsItsTexts) {
    const std::string packed = std::string("Comment") + '\0' + '\0' + std::string(9000, 'z');
    EXPECT_TRUE(MayBeDecoded(PngWith(Chunk("zTXt", packed))));
    EXPECT_FALSE(
        MayBeDecoded(PngWith(Chunk("zTXt", packed) + Chunk("tIME", "1234567") + Chunk("zTXt", packed))));
}

TEST(Decoding, IsRefusedForAPngOfCompressedInternationalTextOnly) {
    const std::string rest(20000, 'x');
    EXPECT_TRUE(MayBeDecoded(PngWith(Chunk("iTXt", std::string("XMP") + '\0' + '\0' + rest))));
    EXPECT_FALSE(MayBeDecoded(PngWith(Chunk("iTXt", std::string("XMP") + '\0' + '\1' + rest))));
    EXPECT_TRUE(MayBeDecoded(PngWith(Chunk("iTXt", rest))));
    EXPECT_TRUE(MayBeDecoded(PngWith(Chunk("iTXt", ""))));
}

TEST(Decoding, IsRefusedForWhatNobodyKnowsTheSizeOf) {
    EXPECT_FALSE(MayBeDecoded(std::string(2000, 'x')));
}

}  // namespace
}  // namespace Corvetape
