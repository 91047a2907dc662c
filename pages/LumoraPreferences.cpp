#include "pages/LumoraPreferences.h"

#include "link/PreferenceKeys.h"
#include "pages/PreferenceHelperAdditions.h"
#include "pages/ProblemReport.h"
#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/NSLog.h"
#include "platform/foundation/RegularFile.h"
#include "platform/services/UIApplication.h"

namespace lumora {

using platform::MFMailComposeViewController;
using platform::NSURL;
using platform::PSSpecifier;
using platform::selector;
using platform::UIApplication;
using PreferenceHelperAdditions::addIcon;

namespace {

constexpr const char* kHandle = "nevo_lumora"; // without the "@"
constexpr const char* kSupport = "support@nevo.example";

void attachIfReadable(MFMailComposeViewController& composer, const char* fixedPath, const char* fileName) {
    if (auto data = platform::RegularFile::copyOf(platform::devicePath(fixedPath)))
        composer.addAttachmentData(std::move(data), "text/plain", fileName);
}

} // namespace

PLATFORM_CLASS(LumoraPreferences)

LumoraPreferences::LumoraPreferences() : SettingsPage(sessionOf<LumoraPreferences>()) {
}

SettingsPage::Rows LumoraPreferences::rows(PreferenceHelper& make) {
    return {
        make.header("General"),
        make.toggle("Enable Lumora", kTweakEnabled),
        make.link("Apps", "AppsController"),

        make.header("Lock Sleep Timer"),
        make.link("Sleep After", kSleepTime,
                  {"5 Seconds", "10 Seconds", "15 Seconds", "20 Seconds", "30 Seconds", "60 Seconds", "Never"},
                  {5, 10, 15, 20, 30, 60, 3600}), // kept on purpose: the tweak is given an hour for "Never"
        make.toggle("Disable For AppViews", kSleepDisabledForAppViews),

        make.header("Options"),
        make.link("App Views", "PluginsListController"),
        make.link("Lock Screen Settings", "LSSettingsController"),
        make.toggle("Hide Notifications On Tap", kNotificationsHideOnTap),

        make.header("Changes"),
        make.link("Change Log", "ChangeLogController"),

        make.header("Contact", "Questions, ideas and problem reports are welcome."),
        addIcon(make.button("@" + std::string(kHandle), selector(&LumoraPreferences::openTwitter)), "twitter"),
        addIcon(make.button(kSupport, selector(&LumoraPreferences::openEmail)), "mail"),
    };
}

void LumoraPreferences::viewWillAppear(bool animated) {
    SettingsPage::viewWillAppear(animated);
    platform::NSLog(platform::description(session().settings()));
}

void LumoraPreferences::openTwitter(PSSpecifier& /*sender*/) {
    // Kept on purpose: unless an application takes the scheme, nothing happens; no web page opens instead.
    if (const auto profile = NSURL::URLWithString("twitter://user?screen_name=" + std::string(kHandle)))
        UIApplication::sharedApplication().openURL(*profile);
}

void LumoraPreferences::openEmail(PSSpecifier& /*sender*/) {
    if (!MFMailComposeViewController::canSendMail()) return; // without a word, on purpose
    const ProblemReport report = ProblemReport::ofThisDevice();
    const auto composer = platform::make<MFMailComposeViewController>();
    composer->setMailComposeDelegate(std::static_pointer_cast<LumoraPreferences>(shared_from_this()));
    composer->setToRecipients({kSupport});
    composer->setSubject(report.subject());
    composer->setMessageBody(report.body(), false);
    attachIfReadable(*composer, "/var/mobile/nevo_lumora_log", "log");
    attachIfReadable(*composer, "/tmp/dpkgl.log", "dpkgl.log");
    presentViewController(composer, true, nullptr);
}

// Kept on purpose: the composer closes however the mail ended, and nothing more is shown or logged here.
void LumoraPreferences::mailComposeController(MFMailComposeViewController& controller,
                                              platform::MFMailComposeResult /*result*/,
                                              const platform::NSError* /*error*/) {
    controller.dismissViewControllerAnimated(true, nullptr);
}

} // namespace lumora
