#include "media/title_parts.h"

#include <gtest/gtest.h>

namespace Corvetape {
namespace {

STATIONANDSONGDATA Titled(const std::string& song, const std::string& artist = "") {
    STATIONANDSONGDATA media;
    media.Song = song;
    media.Artist = artist;
    return media;
}

TEST(NameOfAddress, IsTheFileWithoutItsExtensionAndWithoutEscapes) {
    EXPECT_EQ(NameOfAddress("file:///music/My%20Song.v2.FLAC"), "My Song.v2");
    EXPECT_EQ(NameOfAddress("http://radio/live.mp3?session=1/2"), "live");
    EXPECT_EQ(NameOfAddress("http://radio"), "");
    EXPECT_EQ(NameOfAddress("http://radio/"), "");
    EXPECT_EQ(NameOfAddress("file:///100%.ogg"), "100%");
    EXPECT_EQ(NameOfAddress("file:///a%2"), "a%2");
    EXPECT_EQ(NameOfAddress(""), "");
}

TEST(NameOfFile, StandsInForAMissingTitleAndLosesItsExtension) {
    EXPECT_EQ(WithNameOfFile(Titled(""), "file:///a/Tape.ogg").Song, "Tape");
    EXPECT_EQ(WithNameOfFile(Titled("Tape.ogg"), "file:///a/Tape.ogg").Song, "Tape");
    EXPECT_EQ(WithNameOfFile(Titled("One.ogg", "Ann"), "file:///a/Ann%20-%20One.ogg").Song, "One");
    EXPECT_EQ(WithNameOfFile(Titled("Mr.mp3"), "file:///a/other.mp3").Song, "Mr.mp3") << "a title of its own";
}

TEST(NameOfAddress, IsNoTitleOfAStream) {
    const std::string address = "http://radio/My%20Live.mp3?session=1";
    EXPECT_EQ(WithoutNameOfAddress(Titled(address), address).Song, "");
    EXPECT_EQ(WithoutNameOfAddress(Titled("My Live.mp3"), address).Song, "");
    const STATIONANDSONGDATA parted =
        WithoutNameOfAddress(Titled("One.mp3", "Ann"), "http://radio/Ann%20-%20One.mp3");
    EXPECT_EQ(parted.Artist + parted.Song, "");
    EXPECT_EQ(WithoutNameOfAddress(Titled("One", "Ann"), address).Song, "One");
    EXPECT_EQ(WithoutNameOfAddress(Titled("http://radio/", ""), "http://radio/").Song, "");
}

TEST(TitleParts, WhatStaysTheSameAfterABarIsTheStation) {
    TitleParts parts;
    parts.Learn("page", "One | Nowhere FM");
    EXPECT_EQ(parts.Clean(Titled("One | Nowhere FM")).Song, "One | Nowhere FM") << "nothing to compare with";
    parts.Learn("page", "Two | Nowhere FM");
    EXPECT_EQ(parts.Clean(Titled("One | Nowhere FM")).Song, "One");
    EXPECT_EQ(parts.Clean(Titled("One | Nowhere FM")).StationName, "Nowhere FM");
    EXPECT_EQ(parts.Clean(Titled("Three | Live")).Song, "Three | Live");
}

TEST(TitleParts, WhatStaysTheSameInFrontIsTheStationToo) {
    TitleParts parts;
    parts.Learn("page", "Nowhere FM | One");
    parts.Learn("page", "Nowhere FM | Two");
    EXPECT_EQ(parts.Clean(Titled("Nowhere FM | Two")).Song, "Two");
}

TEST(TitleParts, TwoSongsOfOneArtistAreNoStation) {
    TitleParts parts;
    for (const char* title : {"Ann - One", "Ann - Two", "Ann - Three"}) parts.Learn("page", title);
    EXPECT_EQ(parts.Clean(Titled("Ann - Three")).Song, "Ann - Three");
}

TEST(TitleParts, AHyphenTakesThreeTitles) {
    TitleParts parts;
    parts.Learn("page", "One - FM");
    parts.Learn("page", "Two - FM");
    EXPECT_EQ(parts.Clean(Titled("Two - FM")).Song, "Two - FM");
    parts.Learn("page", "Three - FM");
    EXPECT_EQ(parts.Clean(Titled("Two - FM")).Song, "Two");
}

TEST(TitleParts, AnotherSourceIsLearnedAnew) {
    TitleParts parts;
    parts.Learn("page", "One | FM");
    parts.Learn("page", "Two | FM");
    parts.Learn("other", "Three | FM");
    EXPECT_EQ(parts.Clean(Titled("Three | FM")).Song, "Three | FM");
}

}  // namespace
}  // namespace Corvetape
