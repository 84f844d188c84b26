#include "runtime/strings.h"
#include "selection_fixture.h"

namespace tavora {
namespace {

class TypeLookupTest : public SelectionTest {
  protected:
    // Moves the category screen to a category, as its arrows would.
    void show(const std::string& type) {
        types.click("datPrimaryRS", 0);
        while (types.txtType.Text != type && !types.datPrimaryRS.Recordset().IsEOF()) {
            const long before = types.datPrimaryRS.Recordset().AbsolutePosition();
            types.click("datPrimaryRS", 2);
            if (types.datPrimaryRS.Recordset().AbsolutePosition() == before) break;
        }
        ASSERT_EQ(types.txtType.Text, type);
    }
    void add_category(const std::string& type, const std::string& weight,
                      const std::string& count) {
        types.click("cmdAdd");
        types.set("txtType", -1, type);
        types.set("txtWeight", -1, weight);
        types.set("txtCount", -1, count);
        types.click("cmdUpdate");
    }
};

TEST_F(TypeLookupTest, TheWindowOpensOnAMasterThatCannotBeDeleted) {
    // Form_Initialize ran in the fixture: the first category by name is shown.
    EXPECT_FALSE(types.txtType.Text.empty());
    EXPECT_FALSE(types.cmdDelete.Visible);
    EXPECT_TRUE(types.Label6.Visible);
    EXPECT_FALSE(types.txtType.Enabled);
    const std::string master = types.txtType.Text;
    types.click("cmdDelete");
    EXPECT_EQ(rows_with("Type Lookup", "Type", master), 1);
    ASSERT_FALSE(fake.dialogs.shown().empty());
    EXPECT_EQ(fake.dialogs.shown().back().request.text, types.Label6.Caption);
}

TEST_F(TypeLookupTest, AddWritesTheTypedCategoryAndItsWeightWithoutBlanks) {
    add_category("Jazz  ", "3", "0");
    EXPECT_EQ(rows_with("Type Lookup", "Type", "Jazz"), 1);
    EXPECT_EQ(weights()["Jazz"], (Weight{"3", "0"}));
    EXPECT_EQ(types.txtType.Text, "Jazz");
    EXPECT_TRUE(types.cmdDelete.Visible) << "a new category is no master";
    // Its weight is edited in place; a rename takes the weight row along.
    types.set("txtWeight", -1, "7");
    types.set("txtType", -1, "Cool Jazz");
    types.click("cmdUpdate");
    EXPECT_EQ(weights()["Cool Jazz"], (Weight{"7", "0"}));
    EXPECT_EQ(weights().count("Jazz"), 0u);
    types.click("cmdDelete");
    EXPECT_EQ(rows_with("Type Lookup", "Type", "Cool Jazz"), 0);
}

TEST_F(TypeLookupTest, BadWeightsAndNamesAreRefusedWithAReason) {
    const auto refused = [&](const char* type, const char* weight, const char* count) {
        const std::size_t asked = fake.dialogs.shown().size();
        add_category(type, weight, count);
        types.click("datPrimaryRS", 0);  // leaves the new row unwritten
        return fake.dialogs.shown().size() == asked + 1 &&
               rows_with("Type Lookup", "Type", Trim(type)) == 0;
    };
    EXPECT_TRUE(refused("Jazz", "101", "0"));
    EXPECT_TRUE(refused("Jazz", "-1", "0"));
    EXPECT_TRUE(refused("Jazz", "lots", "0"));
    EXPECT_TRUE(refused("Jazz", "5", "100"));
    EXPECT_TRUE(refused("   ", "5", "0"));
    EXPECT_FALSE(refused("Jazz", "20", "99"));
    const std::size_t asked = fake.dialogs.shown().size();
    add_category("Jazz", "5", "0");
    EXPECT_EQ(fake.dialogs.shown().size(), asked + 1) << "a second Jazz";
    EXPECT_EQ(rows_with("Type Lookup", "Type", "Jazz"), 1);
}

}  // namespace
}  // namespace tavora
