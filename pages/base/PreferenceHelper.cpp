#include "pages/base/PreferenceHelper.h"

#include "pages/base/RowIcon.h"
#include "platform/foundation/NSBundle.h"
#include "platform/preferences/PSListItemsController.h"

#include <utility>

namespace lumora {

using platform::PSSpecifier;
using platform::PSTextFieldSpecifier;

bool PreferenceHelper::initWithTarget(platform::PSListController* target, platform::SetAction set,
                                      platform::GetAction get) {
    setTarget(target);
    setSetAction(std::move(set));
    setGetAction(std::move(get));
    return true;
}

PreferenceHelper::Row PreferenceHelper::button(const std::string& title, platform::ButtonAction action) {
    Row row =
        PSSpecifier::preferenceSpecifierNamed(title, target_, nullptr, nullptr, {}, platform::PSButtonCell, false);
    row->action = std::move(action);
    return row;
}

PreferenceHelper::Row PreferenceHelper::link(const std::string& title, platform::PSDetail to) {
    return PSSpecifier::preferenceSpecifierNamed(title, target_, nullptr, nullptr, std::move(to), platform::PSLinkCell,
                                                 false);
}

PreferenceHelper::Row PreferenceHelper::link(const std::string& title, const std::string& identifier,
                                             const std::vector<std::string>& titles,
                                             std::vector<platform::Value> values) {
    Row row = PSSpecifier::preferenceSpecifierNamed(title, target_, setAction_, getAction_, "PSListItemsController",
                                                    platform::PSLinkListCell, false);
    row->setValues(std::move(values), titles, titles);
    row->setIdentifier(identifier);
    return row;
}

PreferenceHelper::Row PreferenceHelper::toggle(const std::string& title, const std::string& identifier) {
    return toggle(title, identifier, setAction_, getAction_);
}

PreferenceHelper::Row PreferenceHelper::toggle(const std::string& title, const std::string& identifier,
                                               platform::SetAction set, platform::GetAction get) {
    Row row = PSSpecifier::preferenceSpecifierNamed(title, target_, std::move(set), std::move(get), {},
                                                    platform::PSSwitchCell, false);
    row->setProperty(identifier, "id");
    return row;
}

PreferenceHelper::Row PreferenceHelper::header(const std::string& text) {
    return PSSpecifier::preferenceSpecifierNamed(text, target_, nullptr, nullptr, {}, platform::PSGroupCell, false);
}

PreferenceHelper::Row PreferenceHelper::footer(const std::string& text) {
    return header("", text);
}

PreferenceHelper::Row PreferenceHelper::header(const std::string& text, const std::string& footer) {
    Row row = header(text);
    row->setProperty(footer, "footerText");
    return row;
}

PreferenceHelper::Row PreferenceHelper::spacer() {
    return header("");
}

PreferenceHelper::Row PreferenceHelper::static_(const std::string& text) {
    return PSSpecifier::preferenceSpecifierNamed(text, this, nullptr, nullptr, {}, platform::PSStaticTextCell, false);
}

PreferenceHelper::Row PreferenceHelper::slider(const std::string& identifier, float min, float max) {
    return slider(identifier, min, max, true);
}

PreferenceHelper::Row PreferenceHelper::slider(const std::string& identifier, float min, float max, bool showValue) {
    Row row =
        PSSpecifier::preferenceSpecifierNamed("", target_, setAction_, getAction_, {}, platform::PSSliderCell, false);
    row->setProperty(min, "min");
    row->setProperty(max, "max");
    row->setProperty(showValue, "showValue");
    row->setIdentifier(identifier);
    return row;
}

PreferenceHelper::Row PreferenceHelper::field(const std::string& placeholder, const std::string& identifier) {
    return field(placeholder, identifier, false);
}

PreferenceHelper::Row PreferenceHelper::field(const std::string& placeholder, const std::string& identifier,
                                              bool secure) {
    const auto cell = secure ? platform::PSSecureEditTextCell : platform::PSEditTextCell;
    auto row = PSTextFieldSpecifier::preferenceSpecifierNamed("", target_, setAction_, getAction_, {}, cell, false);
    row->setPlaceholder(placeholder);
    row->setIdentifier(identifier);
    return row;
}

PreferenceHelper::Row PreferenceHelper::specifier(const Row& row, const std::string& withIcon) {
    const platform::PSListController& page = *target_;
    setIcon(*row, withIcon, *platform::NSBundle::bundleForClass(typeid(page)));
    return row;
}

} // namespace lumora
