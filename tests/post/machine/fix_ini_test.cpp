#include <gtest/gtest.h>

#include <string>

#include "core/settings/profile.h"
#include "core/text/text.h"
#include "platform/linux/files/linux_files.h"
#include "platform/linux/processes/linux_processes.h"
#include "post/encoders/encoder_table.h"
#include "post/transfer/encode_job.h"

namespace Corvetape {
namespace {

/// The data file that comes with the program.
class FixIniTest : public ::testing::Test {
 protected:
    std::string Text(std::string_view section, std::string_view key) {
        return Fix.ReadText(section, key, "(none)");
    }

    LinuxFiles Files;
    Profile Fix{Files, CORVETAPE_SOURCE_DIR "/data/CorvetFix.ini"};
};

TEST_F(FixIniTest, HasACommandForEveryEncoderAndForNormalizing) {
    std::string keys[] = {"Normalize", "WAV44", "MP3", "OggVorbis", "WMA44", "WMA48", "WAV48"};
    for (const std::string& key : keys) {
        const std::string command = Text("Encode", key);
        EXPECT_TRUE(command.ends_with(CommandSeparator)) << key << ": " << command;
        EXPECT_LE(command.size(), 254U) << key;
        EXPECT_TRUE(LinuxProcesses().IsWhole({command, std::vector<TemplateParameter>(8)})) << key;
    }
}

TEST_F(FixIniTest, TheQualityListsHaveTheSameLengthAndFitTheReader) {
    for (const EncoderRow& row : EncoderTable) {
        if (row.Qualities == nullptr) continue;
        const std::string names = Text(row.Section, "EncQuality");
        const std::string options = Text(row.Section, "EncParams");
        EXPECT_LE(names.size(), 1023U) << row.Section;
        EXPECT_LE(options.size(), 1023U) << row.Section;
        EXPECT_EQ(Split(names, ';').size(), Split(options, ';').size()) << row.Section;
        const Settings defaults;
        EXPECT_LT(static_cast<size_t>(defaults.*row.QualityIndex), Split(names, ';').size()) << row.Section;
    }
}

TEST_F(FixIniTest, HasOnlyStationsThatNeedNoInternet) {
    const std::vector<std::string> stations = Fix.Keys("URLs");
    EXPECT_FALSE(stations.empty());
    for (const std::string& station : stations) {
        const std::string address = Text("URLs", station);
        EXPECT_TRUE(address.starts_with("corvetape://") || address.starts_with("%")) << address;
    }
}

}  // namespace
}  // namespace Corvetape
