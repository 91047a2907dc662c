#include "pickers/ChangeLog.h"
#include "pages/ChangeLogController.h"

#include "platform/ui/UITextView.h"
#include "tests/support/BundleFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

using lumora::ChangeLog;
using lumora::ChangeLogController;
using platform::CGRect;
using platform::CGRectMake;
using platform::make;
using platform::UITextView;

/// The text view that a change log holds.
UITextView& textIn(const platform::UIView& view) {
    return dynamic_cast<UITextView&>(*view.subviews().at(0));
}

struct ChangeLogTest : testing::Test {
    tests::BundleFile file{typeid(ChangeLog), "changelog.txt"};
    std::shared_ptr<ChangeLog> log;

    UITextView& shown() {
        log = make<ChangeLog>(CGRectMake(0, 0, 320, 480));
        return textIn(*log);
    }
};

TEST_F(ChangeLogTest, ShowsTheWholeFileInTheSystemsFontAt15Points) {
    std::string text = "1.0\n• Größe, façade, 日本語 ✅\n\n";
    for (int i = 0; i < 20000; ++i)
        text += "a line of the change log\n";
    file.write(text);
    EXPECT_EQ(shown().text(), text);
    EXPECT_EQ(textIn(*log).font()->fontName(), "");
    EXPECT_EQ(textIn(*log).font()->pointSize(), 15.0);
}

TEST_F(ChangeLogTest, HoldsNothingButATextViewWhichCanNeitherBeEditedNorSelected) {
    file.write("text");
    const UITextView& text = shown();
    EXPECT_FALSE(text.isEditable());
    EXPECT_FALSE(text.isSelectable());
    EXPECT_EQ(text.autoresizingMask(), 0U);
    EXPECT_EQ(log->subviews().size(), 1U);
}

TEST_F(ChangeLogTest, IsEmptyWhereTheFileIsMissingOrNoText) {
    EXPECT_EQ(shown().text(), "");
    file.write("Gr\xF6\xDF"
               "e");
    EXPECT_EQ(shown().text(), "") << "no UTF-8";
    std::filesystem::remove(file.path());
    std::filesystem::create_directory(file.path());
    EXPECT_EQ(shown().text(), "") << "a folder";
}

TEST_F(ChangeLogTest, TakesItsFrameForTheTextViewToo) {
    const CGRect frame = CGRectMake(10, 20, 300, 400);
    const auto view = make<ChangeLog>(frame);
    EXPECT_EQ(view->frame(), frame);
    EXPECT_EQ(textIn(*view).frame(), frame) << "so the text stands away from the page's corner twice as far";
}

TEST_F(ChangeLogTest, IsReadAnewOnEachAppearance) {
    const auto page = make<ChangeLogController>();
    EXPECT_EQ(page->title(), "Change Log");
    file.write("one");
    page->viewWillAppear(true);
    EXPECT_EQ(textIn(*page->view()).text(), "one");
    file.write("two");
    page->viewWillAppear(true);
    EXPECT_EQ(textIn(*page->view()).text(), "two");
    EXPECT_NE(dynamic_cast<ChangeLog*>(page->view().get()), nullptr);
}

} // namespace
