#include "platform/preferences/PSSpecifier.h"

#include "platform/preferences/PSTextFieldSpecifier.h"

namespace platform {

PSSpecifierRef PSSpecifier::preferenceSpecifierNamed(std::string name, NSObject* target, SetAction set, GetAction get,
                                                     PSDetail detail, PSCellType cell, bool edit) {
    return PSSpecifierRef(
        new PSSpecifier(std::move(name), target, std::move(set), std::move(get), std::move(detail), cell, edit));
}

PSSpecifier::PSSpecifier(std::string name, NSObject* target, SetAction set, GetAction get, PSDetail detail,
                         PSCellType cell, bool edit)
    : name_(std::move(name)), target_(target), set_(std::move(set)), get_(std::move(get)), detail_(std::move(detail)),
      cell_(cell), edit_(edit) {
}

PSSpecifier::~PSSpecifier() = default;

std::string PSSpecifier::identifier() const {
    const Value id = property("id");
    return std::string(id.text() ? *id.text() : std::string_view());
}

Value PSSpecifier::property(const std::string& key) const {
    const auto found = properties_.find(key);
    return found == properties_.end() ? Value() : found->second;
}

UIImageRef PSSpecifier::imageProperty(const std::string& key) const {
    const auto found = images_.find(key);
    return found == images_.end() ? nullptr : found->second;
}

void PSSpecifier::setValues(std::vector<Value> values, std::vector<std::string> titles,
                            std::vector<std::string> shortTitles) {
    values_ = std::move(values);
    titles_ = std::move(titles);
    shortTitles_ = std::move(shortTitles);
}

std::shared_ptr<PSTextFieldSpecifier> PSTextFieldSpecifier::preferenceSpecifierNamed(std::string name, NSObject* target,
                                                                                     SetAction set, GetAction get,
                                                                                     PSDetail detail, PSCellType cell,
                                                                                     bool edit) {
    return std::shared_ptr<PSTextFieldSpecifier>(new PSTextFieldSpecifier(
        std::move(name), target, std::move(set), std::move(get), std::move(detail), cell, edit));
}

} // namespace platform
