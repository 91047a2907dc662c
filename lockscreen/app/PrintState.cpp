#include "lockscreen/app/PrintState.h"

#include "lockscreen/LookDocument.h"
#include "lockscreen/LookOf.h"
#include "lockscreen/app/EventLog.h"
#include "lockscreen/app/Playing.h"
#include "lockscreen/face/Backdrop.h"
#include "lockscreen/face/FontWidths.h"
#include "lockscreen/phone/Installation.h"

#include "programs/CommandLine.h"
#include "programs/Program.h"
#include "tools/lumoractl/TweakClient.h"
#include "json/Json.h"

#include <QByteArray>
#include <QGuiApplication>

#include <ctime>
#include <iostream>
#include <utility>

using platform::Dictionary;
using platform::Result;

namespace lumora {

int printState(int argc, char** argv, const Options& options, const Inputs& inputs) {
    const Result<Dictionary> settings = inputs.settings ? Result<Dictionary>(*inputs.settings) : fetchSettings();
    if (!settings) return programs::complain(settings.error());
    const Phone phone(options.phone, Installation::readNow()->installed());
    qputenv("QT_QPA_PLATFORM", QByteArrayLiteral("offscreen")); // no more than the fonts is needed
    const QGuiApplication application(argc, argv);
    const FontWidths widths;
    Device device = phone.device(std::time(nullptr));
    device.texts = &widths;
    const platform::CGSize& size = device.size;
    const auto backdrop = makeBackdrop({QString::fromStdString(options.wallpaper),
                                        QSize(static_cast<int>(size.width), static_cast<int>(size.height)), 1});
    if (!backdrop) return programs::complain(backdrop.error());
    device.picture = backdrop.value().luminance;
    device.blurred = backdrop.value().blurred;

    Behaviour behaviour(settings.value(), std::move(device), eventLog(options.log));
    if (const auto played = play(behaviour, options, inputs); !played) return programs::complain(played.error());
    const Look look = lookOf(behaviour.settings(), behaviour.device(), behaviour.state());
    const Result<std::string> text =
        writeJson(Dictionary{{"look", documentOf(look)}, {"state", documentOf(behaviour.state())}});
    if (!text) return programs::complain(text.error());
    std::cout << text.value() << std::endl;
    return std::cout ? 0 : programs::complain("cannot write to standard output");
}

} // namespace lumora
