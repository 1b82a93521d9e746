#include "audio/audio_ring.h"

#include <gtest/gtest.h>

#include "audio/signal_bench.h"

namespace Corvetape::Test {

TEST(RingDistance, RunsForwardAndPastTheEndOfTheRing) {
    EXPECT_EQ(RingDistance(3, 3, 10), 0);
    EXPECT_EQ(RingDistance(3, 7, 10), 4);
    EXPECT_EQ(RingDistance(7, 3, 10), 6);
    EXPECT_EQ(RingDistance(0, 9, 10), 9);
}

TEST(RingDistance, IsNothingInARingWithoutSlots) {
    EXPECT_EQ(RingDistance(3, 7, 0), 0);
}

TEST(AudioRing, HasNoSlotsBeforeItIsOpened) {
    AudioRing ring;
    ring.SetLevel(5);
    ring.Put(NumberedBuffer(1));
    EXPECT_EQ(ring.Size(), 0);
    EXPECT_EQ(ring.AudioWriteIndex, 0);
}

TEST(AudioRing, TheUsualSizeHoldsTwentySeconds) {
    AudioRing ring;
    ring.Open(400, BufferFrames);
    EXPECT_EQ(ring.Size(), 400);
    EXPECT_EQ(ring.AudioLevels.size(), 400U);
    EXPECT_EQ(ring.Size() / BuffersPerSecond, 20);
}

TEST(AudioRing, SizesThatMakeNoSenseAreBroughtIntoBounds) {
    AudioRing ring;
    for (const int32_t size : {0, -1, -2147483647}) {
        ring.Open(size, 1);
        EXPECT_EQ(ring.Size(), 1) << size;
    }
    ring.Open(2147483647, 1);
    EXPECT_EQ(ring.Size(), AudioRing::MostSlots);
}

TEST(AudioRing, ASlotGetsHeaderNotesAndSamplesOfTheBuffer) {
    AudioRing ring;
    ring.Open(4, BufferFrames);
    WaveBuffer buffer = NumberedBuffer(7);
    buffer.FramesLostBefore = 11;
    buffer.ClippedSamples = 3;
    ring.Put(buffer);
    buffer.Samples.assign(BufferFrames, Frame{99, 99});

    const SignalBuffer& slot = ring[0];
    EXPECT_EQ(slot.dwBytesRecorded, BufferBytes);
    EXPECT_EQ(slot.StreamPosition, 7U * BufferFrames);
    EXPECT_EQ(slot.FramesLostBefore, 11U);
    EXPECT_EQ(slot.ClippedSamples, 3U);
    for (const Frame frame : FramesOf(slot)) ASSERT_EQ(frame, MarkOf(7));
    EXPECT_EQ(ring.AudioWriteIndex, 1);
}

TEST(AudioRing, TheWriteIndexGoesRound) {
    AudioRing ring;
    ring.Open(3, BufferFrames);
    for (int32_t number = 0; number < 4; ++number) ring.Put(NumberedBuffer(number));
    EXPECT_EQ(ring.AudioWriteIndex, 1);
    EXPECT_EQ(FramesOf(ring[0]).front(), MarkOf(3));
    EXPECT_EQ(FramesOf(ring[1]).front(), MarkOf(1));
    EXPECT_EQ(FramesOf(ring[2]).back(), MarkOf(2));
}

TEST(AudioRing, ABufferLargerThanASlotIsCutToIt) {
    AudioRing ring;
    ring.Open(2, 10);
    ring.Put(NumberedBuffer(1));
    EXPECT_EQ(FramesOf(ring[0]).size(), 10U);
    EXPECT_EQ(FramesOf(ring[1]).size(), 0U);
}

TEST(AudioRing, OpeningAgainForgetsTheHistory) {
    AudioRing ring;
    ring.Open(4, BufferFrames);
    ring.SetLevel(500);
    ring.Put(NumberedBuffer(1));
    ring.AudioReadIndex = 1;
    ring.Open(4, BufferFrames);
    EXPECT_EQ(ring.AudioWriteIndex, 0);
    EXPECT_EQ(ring.AudioReadIndex, 0);
    EXPECT_EQ(ring.AudioLevels[0], 0);
    EXPECT_EQ(ring[0].dwBytesRecorded, 0U);
}

TEST(AudioRing, TheLevelBelongsToTheSlotThatIsWrittenNext) {
    AudioRing ring;
    ring.Open(3, BufferFrames);
    ring.Put(NumberedBuffer(0));
    ring.SetLevel(123);
    EXPECT_EQ(ring.AudioLevels, (std::vector<int32_t>{0, 123, 0}));
}

TEST(AudioRing, IsFullWhenOneMoreBufferWouldMakeEverythingCountAsRead) {
    AudioRing ring;
    ring.Open(3, BufferFrames);
    EXPECT_FALSE(ring.Full());
    ring.Put(NumberedBuffer(0));
    EXPECT_FALSE(ring.Full());
    ring.Put(NumberedBuffer(1));
    EXPECT_TRUE(ring.Full());
    EXPECT_EQ(ring.Unread(), 2);
    ring.Put(NumberedBuffer(2));
    EXPECT_EQ(ring.Unread(), 0);
}

TEST(AudioRing, SlotNumbersOutsideAreBroughtIntoTheRing) {
    AudioRing ring;
    EXPECT_EQ(ring.Wrapped(5), 0);
    ring.Open(10, 1);
    EXPECT_EQ(ring.Wrapped(-1), 9);
    EXPECT_EQ(ring.Wrapped(10), 0);
    EXPECT_EQ(ring.Wrapped(-25), 5);
    EXPECT_EQ(ring.Wrapped(int64_t{2147483647} + 2), 9);
}

TEST(AudioRing, GrowsWithAllThatItHolds) {
    AudioRing ring;
    ring.Open(4, BufferFrames);
    for (int32_t number = 0; number < 6; ++number) {
        ring.SetLevel(100 + number);
        ring.Put(NumberedBuffer(number));
        if (number == 3) ring.AudioReadIndex = 3;
    }
    ring.Grow(3);
    EXPECT_EQ(ring.Size(), 4) << "there is room enough";
    ring.Grow(10);
    EXPECT_EQ(ring.Size(), 10);
    EXPECT_EQ(ring.Unread(), 3);
    for (int32_t number = 6; number < 9; ++number) ring.Put(NumberedBuffer(number));
    EXPECT_EQ(ring.Unread(), 6);
    for (int32_t i = 0; i < 6; ++i) {
        const int32_t slot = ring.Wrapped(int64_t{ring.AudioReadIndex} + i);
        EXPECT_EQ(FramesOf(ring[slot]).back(), MarkOf(3 + i));
        if (i < 3) {
            EXPECT_EQ(ring.AudioLevels[static_cast<size_t>(slot)], 103 + i);
        }
    }
}

}  // namespace Corvetape::Test
