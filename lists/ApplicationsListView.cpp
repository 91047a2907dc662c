#include "lists/ApplicationsListView.h"

namespace lumora {

using namespace platform;

namespace {

constexpr double kIconSize = 29;
constexpr std::chrono::milliseconds kPatience(100); // less than a person notices

} // namespace

const std::vector<std::string>& ApplicationsListView::hiddenDisplayIdentifiers() {
    static const auto& hidden = *new std::vector<std::string>{
        "com.apple.AdSheet",
        "com.apple.AdSheetPhone",
        "com.apple.AdSheetPad",
        "com.apple.DataActivation",
        "com.apple.DemoApp",
        "com.apple.fieldtest",
        "com.apple.iosdiagnostics",
        "com.apple.iphoneos.iPodOut",
        "com.apple.TrustMe",
        "com.apple.WebSheet",
        "com.apple.springboard",
        "com.apple.purplebuddy",
        "com.apple.datadetectors.DDActionsService",
        "com.apple.FacebookAccountMigrationDialog",
        "com.apple.iad.iAdOptOut",
        "com.apple.ios.StoreKitUIService",
        "com.apple.TextInput.kbd",
        "com.apple.MailCompositionService",
        "com.apple.mobilesms.compose",
        "com.apple.quicklook.quicklookd",
        "com.apple.ShoeboxUIService",
        "com.apple.social.remoteui.SocialUIService",
        "com.apple.WebViewService",
        "com.apple.gamecenter.GameCenterUIService",
        "com.apple.appleaccount.AACredentialRecoveryDialog",
        "com.apple.CompassCalibrationViewService",
        "com.apple.WebContentFilter.remoteUI.WebContentAnalysisUI",
        "com.apple.PassbookUIService",
        "com.apple.uikit.PrintStatus",
        "com.apple.Copilot",
        "com.apple.MusicUIService",
        "com.apple.AccountAuthenticationDialog",
        "com.apple.MobileReplayer",
        "com.apple.SiriViewService",
    };
    return hidden;
}

void ApplicationsListView::prepare() {
    applist_ = openLibrary(kApplicationListLibrary);
    if (const auto* list = ALApplicationList::sharedApplicationList()) applications_ = list->applications();
}

ApplicationsListView::ApplicationsListView(SettingsSession& session, const char* savedKey)
    : SelectionListView(session, savedKey), patience_(kPatience) {
}

std::string ApplicationsListView::footer() const {
    return "Swipe left on the lockscreen to see selected apps.";
}

unsigned ApplicationsListView::tableMask() const {
    return UIViewAutoresizingFlexibleWidth | UIViewAutoresizingFlexibleHeight;
}

void ApplicationsListView::decorate(UITableViewCell& cell, const std::string& identifier) {
    iconsToCome_.erase(&cell); // the icon of the row that the cell showed before
    const auto* list = ALApplicationList::sharedApplicationList();
    PictureOrderRef order;
    const auto come = [this, &cell](UIImageRef icon) {
        iconsToCome_.erase(&cell);
        cell.imageView().setImage(std::move(icon));
        tableView().contentsChanged();
    };
    cell.imageView().setImage(list ? list->iconOfSize(kIconSize, identifier, patience_, order, come) : nullptr);
    if (order) iconsToCome_[&cell] = std::move(order);
}

} // namespace lumora
