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

class ChangeLogTest : public testing::Test {
  protected:
    void write(const std::string& text) const { file_.write(text); }

    tests::BundleFile file_{typeid(ChangeLog), "changelog.txt"};
};

TEST_F(ChangeLogTest, ShowsTheWholeFileInTheSystemsFontAt15Points) {
    std::string text = "1.0\n• Größe, façade, 日本語 ✅\n\n";
    for (int i = 0; i < 20000; ++i)
        text += "a line of the change log\n";
    write(text);
    const auto view = make<ChangeLog>(CGRectMake(0, 0, 320, 480));
    EXPECT_EQ(textIn(*view).text(), text);
    EXPECT_EQ(textIn(*view).font()->fontName(), "");
    EXPECT_EQ(textIn(*view).font()->pointSize(), 15.0);
}

TEST_F(ChangeLogTest, CanNeitherBeEditedNorSelected) {
    write("text");
    const auto view = make<ChangeLog>(CGRectMake(0, 0, 320, 480));
    EXPECT_FALSE(textIn(*view).isEditable());
    EXPECT_FALSE(textIn(*view).isSelectable());
}

TEST_F(ChangeLogTest, HoldsNothingButItsTextView) {
    write("text");
    const auto view = make<ChangeLog>(CGRectMake(0, 0, 320, 480));
    EXPECT_EQ(view->subviews().size(), 1U);
    EXPECT_EQ(textIn(*view).autoresizingMask(), 0U);
}

TEST_F(ChangeLogTest, IsEmptyWithoutTheFile) {
    const auto view = make<ChangeLog>(CGRectMake(0, 0, 320, 480));
    EXPECT_EQ(textIn(*view).text(), "");
}

TEST_F(ChangeLogTest, IsEmptyWhenTheFileIsNotUtf8) {
    write("Gr\xF6\xDF"
          "e");
    const auto view = make<ChangeLog>(CGRectMake(0, 0, 320, 480));
    EXPECT_EQ(textIn(*view).text(), "");
}

TEST_F(ChangeLogTest, IsEmptyWhenSomethingElseStandsInThePlaceOfTheFile) {
    std::filesystem::create_directory(file_.path());
    const auto view = make<ChangeLog>(CGRectMake(0, 0, 320, 480));
    EXPECT_EQ(textIn(*view).text(), "");
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
    write("one");
    page->viewWillAppear(true);
    EXPECT_EQ(textIn(*page->view()).text(), "one");
    write("two");
    page->viewWillAppear(true);
    EXPECT_EQ(textIn(*page->view()).text(), "two");
    EXPECT_NE(dynamic_cast<ChangeLog*>(page->view().get()), nullptr);
}

} // namespace
