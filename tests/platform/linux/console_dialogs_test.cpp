#include "platform/linux/desktop/console_dialogs.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace Corvetape {
namespace {

class ConsoleDialogsTest : public testing::Test {
 protected:
    std::string Printed() {
        std::rewind(file.get());
        std::string text(4096, '\0');
        text.resize(std::fread(text.data(), 1, text.size(), file.get()));
        return text;
    }

    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file{std::tmpfile(), std::fclose};
    ConsoleDialogs dialogs{file.get()};
};

TEST_F(ConsoleDialogsTest, ABoxIsOneLine) {
    dialogs.ShowMessage("The disk is full.\r\n\r\nFree some space.\n", DialogIcon::Information);
    EXPECT_EQ(Printed(), "The disk is full. Free some space.\n");
}

TEST_F(ConsoleDialogsTest, TheIconIsAWord) {
    dialogs.ShowMessage("a", DialogIcon::Critical);
    dialogs.ShowMessage("b", DialogIcon::Exclamation);
    EXPECT_EQ(Printed(), "error: a\nwarning: b\n");
}

TEST_F(ConsoleDialogsTest, ATitleGoesBeforeTheText) {
    dialogs.ShowTitled("News", "A new version.", DialogIcon::Information);
    EXPECT_EQ(Printed(), "News: A new version.\n");
}

TEST_F(ConsoleDialogsTest, AQuestionIsAnsweredLikeAClosedBox) {
    EXPECT_FALSE(dialogs.AskYesNo("Really?", DialogIcon::Exclamation));
    EXPECT_EQ(Printed(), "warning: Really?\n");
    EXPECT_FALSE(dialogs.BrowseForFolder("Folder", "/"));
    EXPECT_FALSE(dialogs.OpenFile("File", "", "/"));
}

TEST_F(ConsoleDialogsTest, NamesFromStrangersCannotSteerTheTerminal) {
    dialogs.ShowMessage(
        "Song \x1b[2J\x07\xc2\x9b"
        "31m \xc3\x84rger",
        DialogIcon::Information);
    EXPECT_EQ(Printed(), "Song [2J 31m \xc3\x84rger\n");
}

TEST_F(ConsoleDialogsTest, TheBellIsForTerminalsOnly) {
    dialogs.Beep();
    EXPECT_EQ(Printed(), "");
}

}  // namespace
}  // namespace Corvetape
