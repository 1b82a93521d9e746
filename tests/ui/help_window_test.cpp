#include "ui/help_window.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTextBlock>
#include <QTextBrowser>
#include <fstream>

#include "support/temp_folder.h"
#include "ui/text_keys.h"
#include "ui/ui_world.h"

namespace Corvetape::Test {
namespace {

class HelpWindowTest : public testing::Test {
 protected:
    HelpWindowTest() {
        std::ofstream(folder / "manual.md")
            << "# The program\n\nSee [below](#the-last-part) and [more](other.md).\n\n"
            << "## Middle\n\nA word.\n\n## The last part\n\nThe end.\n";
        std::ofstream(folder / "other.md") << "# Another page\n\nMore.\n";
        Window = std::make_unique<HelpWindow>(QString::fromStdString(folder / "manual.md"), world.Ui->Say,
                                              world.Window.get());
        Window->setAttribute(Qt::WA_DeleteOnClose, false);
        Page = Window->findChild<QTextBrowser*>();
        Wanted = Window->findChild<QLineEdit*>();
    }

    std::string Line() const { return Page->textCursor().block().text().toStdString(); }
    void Follow(const char* address) { Page->setSource(Page->source().resolved(QUrl(address))); }
    bool SaysNotFound() const {
        for (const QLabel* label : Window->findChildren<QLabel*>()) {
            if (label->text() == world.Ui->Say(Key::NotInHelp)) return label->isVisibleTo(Window.get());
        }
        return false;
    }

    const TempFolder folder;
    UiWorld world;
    std::unique_ptr<HelpWindow> Window;
    QTextBrowser* Page = nullptr;
    QLineEdit* Wanted = nullptr;
};

TEST_F(HelpWindowTest, ShowsTheManualAndFollowsItsLinks) {
    EXPECT_TRUE(Page->toPlainText().startsWith("The program"));
    auto* const back = Window->findChild<QPushButton*>();
    EXPECT_FALSE(back->isEnabled());
    Follow("#the-last-part");
    EXPECT_EQ(Line(), "The last part");
    Follow("other.md");
    EXPECT_TRUE(Page->toPlainText().startsWith("Another page"));
    ASSERT_TRUE(back->isEnabled());
    back->click();
    EXPECT_TRUE(Page->toPlainText().startsWith("The program"));
}

TEST_F(HelpWindowTest, SearchesFromPlaceToPlaceAndSaysWhatIsNotThere) {
    const auto search = [this](const char* words) {
        Wanted->setText(words);
        emit Wanted->returnPressed();
        return Line();
    };
    EXPECT_EQ(search("the"), "The program");
    EXPECT_EQ(search("the"), "The last part");
    EXPECT_EQ(search("the"), "The end.");
    EXPECT_EQ(search("the"), "The program") << "round the end of the page";
    EXPECT_FALSE(SaysNotFound());
    search("nowhere");
    EXPECT_TRUE(SaysNotFound());
    search("word");
    EXPECT_FALSE(SaysNotFound());
    EXPECT_EQ(Line(), "A word.");
}

}  // namespace
}  // namespace Corvetape::Test
