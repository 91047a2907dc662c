#include "platform/preferences/PSSpecifier.h"
#include "platform/preferences/PSTextFieldSpecifier.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;

struct Target final : NSObject {
    std::map<std::string, Value> stored;
    int taps = 0;
    Value get(PSSpecifier& row) { return stored[row.identifier()]; }
    void set(const Value& value, PSSpecifier& row) { stored[row.identifier()] = value; }
    void tap(PSSpecifier& /*sender*/) { ++taps; }
};

PSSpecifierRef rowFor(Target* target) {
    auto row = PSSpecifier::preferenceSpecifierNamed("Name", target, selector(&Target::set), selector(&Target::get),
                                                     "SomePage", PSSwitchCell, false);
    row->action = selector(&Target::tap);
    return row;
}

TEST(PSSpecifier, KeepsWhatItWasMadeWith) {
    Target target;
    const auto row = rowFor(&target);
    EXPECT_EQ(row->name(), "Name");
    EXPECT_EQ(row->target(), &target);
    EXPECT_EQ(row->detail().name(), "SomePage");
    EXPECT_EQ(row->detail().resolve(), nullptr) << "no class of that name is there";
    EXPECT_EQ(row->cellType(), 6);
    EXPECT_FALSE(row->edit());
    EXPECT_EQ(row->identifier(), "");
}

TEST(PSSpecifier, HasOneIdentifierHoweverItIsSet) {
    Target target;
    const auto byProperty = rowFor(&target);
    byProperty->setProperty("kKey", "id");
    EXPECT_EQ(byProperty->identifier(), "kKey");
    const auto byOperation = rowFor(&target);
    byOperation->setIdentifier("kKey");
    EXPECT_EQ(byOperation->property("id"), Value("kKey"));
}

TEST(PSSpecifier, CallsItsOperationsOnItsTarget) {
    Target target;
    const auto row = rowFor(&target);
    row->setIdentifier("kKey");
    EXPECT_TRUE(row->performGetter().isNil());
    row->performSetter(30);
    EXPECT_EQ(target.stored["kKey"], Value(30));
    EXPECT_EQ(row->performGetter(), Value(30));
    row->performAction();
    EXPECT_EQ(target.taps, 1);
}

TEST(PSSpecifier, WithoutOperationsReadsNilAndIgnoresTheRest) {
    Target target;
    const auto row = PSSpecifier::preferenceSpecifierNamed("", &target, nullptr, nullptr, {}, PSStaticTextCell, false);
    row->performSetter(1);
    row->performAction();
    EXPECT_TRUE(row->performGetter().isNil());
    EXPECT_TRUE(target.stored.empty());
    EXPECT_EQ(target.taps, 0);
}

TEST(PSSpecifier, KeepsAnImagePropertyThatIsNull) {
    Target target;
    const auto row = rowFor(&target);
    EXPECT_FALSE(row->hasProperty("iconImage"));
    row->setProperty(UIImageRef(), "iconImage");
    EXPECT_TRUE(row->hasProperty("iconImage"));
    EXPECT_EQ(row->imageProperty("iconImage"), nullptr);
}

TEST(PSTextFieldSpecifier, IsARowWithAPlaceholder) {
    Target target;
    const auto row =
        PSTextFieldSpecifier::preferenceSpecifierNamed("", &target, nullptr, nullptr, {}, PSEditTextCell, false);
    EXPECT_EQ(row->placeholder(), "");
    row->setPlaceholder("Passcode");
    EXPECT_EQ(row->placeholder(), "Passcode");
    EXPECT_EQ(row->name(), "");
}

} // namespace
