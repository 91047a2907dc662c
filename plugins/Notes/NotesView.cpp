// The Notes application's App View, with a settings page of its own.
#include <lumora/SettingsController.h>

#include "NotesDrawing.h"

namespace {

using platform::Dictionary;
using platform::selector;
using platform::Value;

class NotesPage final : public lumora::SettingsPage {
  public:
    NotesPage() : SettingsPage(lumora::sessionOf<NotesPage>()) {}

    /// The tweak does not know our defaults, so the page fills in what was never set.
    Value valueOrDefault(platform::PSSpecifier& row) {
        static const Dictionary defaults{{"org.lumora.plugins.notes.order", "edited"},
                                         {"org.lumora.plugins.notes.textSize", 15.0},
                                         {"org.lumora.plugins.notes.hideLocked", true}};
        const Value value = getValue(row);
        return value.isNil() ? defaults[row.identifier()] : value;
    }

  protected:
    Rows rows(lumora::PreferenceHelper& make) override {
        make.setGetAction(selector(&NotesPage::valueOrDefault));
        return {
            make.header("List", "The note at the top is the one that the App View opens with."),
            make.specifier(make.link("Sort By", "org.lumora.plugins.notes.order",
                                     {"Date Edited", "Date Created", "Title"}, {"edited", "created", "title"}),
                           "page"),
            make.field("Title for New Notes", "org.lumora.plugins.notes.title"),

            make.header("Text"),
            make.specifier(make.static_("Text Size"), "letter"),
            make.slider("org.lumora.plugins.notes.textSize", 9, 30),

            make.header("Privacy", "Locked notes show their title only until the device is unlocked."),
            make.specifier(make.toggle("Hide Locked Notes", "org.lumora.plugins.notes.hideLocked"), "lock"),
        };
    }
};

LUMORA_SETTINGS_CONTROLLER(NotesPage, settingsController)

const LumoraAppView notesView{
    .version = LUMORA_APP_VIEW_VERSION,
    .identifier = [] { return "org.lumora.plugins.notes"; },
    .name = [] { return "Notes"; },
    .appID = [] { return "org.lumora.samples.Notes"; },
    .settingsController = settingsController,
    .flags = LUMORA_APP_VIEW_SECURE,
    .draw = notes::drawNotes,
};

const LumoraAppView* sharedInstance() {
    return &notesView;
}

} // namespace

LUMORA_PRINCIPAL_CLASS(NotesView, sharedInstance)
