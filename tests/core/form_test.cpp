#include "core/forms/form.h"

#include <gtest/gtest.h>

namespace tavora {
namespace {

// A window shaped like the real ones: a button, a control array with one
// handler, a text box, a check box and a list.
class SampleForm : public Form {
  public:
    SampleForm() : Form("Sample") {
        for (int i = 0; i < 3; ++i)
            add("RB", i).Caption = "row";
        on_click("Command1", [this](int) { ++clicks; });
        on_click("RB", [this](int index) { last_row = index; });
        on("Text1", "Change", [this](int) { changed = Text1.Text; });
        on_click("Check1", [this](int) { checked = Check1.Value; });
        on_click("Combo1", [this](int) { picked = Combo1.ListIndex; });
        Combo1.List = {"1", "2", "3"};
    }
    Control& Command1 = add("Command1");
    Control& Text1 = add_text("Text1");
    Control& Check1 = add_check("Check1");
    Control& Combo1 = add_list("Combo1");
    int clicks = 0;
    int last_row = -1;
    std::string changed;
    int checked = -1;
    int picked = -1;
};

TEST(Form, ClicksAndValuesReachTheirHandlers) {
    SampleForm form;
    EXPECT_TRUE(form.click("Command1"));
    EXPECT_TRUE(form.click("RB", 2));
    EXPECT_EQ(form.clicks, 1);
    EXPECT_EQ(form.last_row, 2);
    // A member the array doesn't have, or a control of another name, is no click.
    EXPECT_FALSE(form.click("RB", 3));
    EXPECT_FALSE(form.click("Command2"));
    EXPECT_FALSE(form.click("RB"));
    EXPECT_EQ(form.last_row, 2);

    // Setting a value acts as the operator would, and a value the control can't hold is refused.
    EXPECT_TRUE(form.set("Text1", -1, "hello"));
    EXPECT_EQ(form.changed, "hello");
    EXPECT_TRUE(form.set("Check1", -1, "1"));
    EXPECT_EQ(form.checked, 1);
    EXPECT_FALSE(form.set("Check1", -1, "yes"));
    EXPECT_EQ(form.Check1.Value, 1);
    EXPECT_TRUE(form.set("Combo1", -1, "3"));
    EXPECT_EQ(form.picked, 2);
    EXPECT_EQ(form.Combo1.selected_text(), "3");
    EXPECT_FALSE(form.set("Combo1", -1, "4"));
    EXPECT_EQ(form.Combo1.ListIndex, 2);
}

}  // namespace
}  // namespace tavora
