#include "pages/base/SettingsPage.h"

#include <utility>

namespace lumora {

using platform::selector;

bool SettingsPage::init() {
    return PSListController::init() && session_.start();
}

platform::PSSpecifierList SettingsPage::specifiers() {
    return _specifiers ? _specifiers : buildRows();
}

platform::PSSpecifierList SettingsPage::buildRows() {
    helper_ =
        platform::make<PreferenceHelper>(this, selector(&SettingsPage::setValue), selector(&SettingsPage::getValue));
    Rows all = _specifiers ? *_specifiers : Rows();
    const Rows own = rows(*helper_);
    all.insert(all.end(), own.begin(), own.end());
    _specifiers = std::make_shared<const Rows>(std::move(all));
    return _specifiers;
}

platform::Value SettingsPage::getValue(platform::PSSpecifier& specifier) {
    return session_.value(specifier.identifier());
}

void SettingsPage::setValue(const platform::Value& value, platform::PSSpecifier& specifier) {
    session_.setValue(value, specifier.identifier());
}

} // namespace lumora
