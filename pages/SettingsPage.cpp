#include "pages/SettingsPage.h"

namespace lumora {

using platform::selector;

bool SettingsPage::init() {
    return PSListController::init() && session_.start();
}

platform::PSSpecifierList SettingsPage::specifiers() {
    if (_specifiers) return _specifiers;
    helper_ =
        platform::make<PreferenceHelper>(this, selector(&SettingsPage::setValue), selector(&SettingsPage::getValue));
    _specifiers = std::make_shared<const Rows>(rows(*helper_));
    return _specifiers;
}

platform::Value SettingsPage::getValue(platform::PSSpecifier& specifier) {
    return session_.value(specifier.identifier());
}

void SettingsPage::setValue(const platform::Value& value, platform::PSSpecifier& specifier) {
    session_.setValue(value, specifier.identifier());
}

} // namespace lumora
