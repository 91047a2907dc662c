#include "platform/services/MailPrograms.h"

#include "platform/services/DesktopServices.h"
#include "platform/services/Program.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace fs = std::filesystem;
using Options = std::vector<std::string>;
using Files = MailProgram::Files;

namespace {

/// Every byte that could mean something in an address or a list is written as a number, but for those allowed.
std::string percentEncoded(const std::string& text, const char* allowed = "-._~") {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string encoded;
    for (const char letter : text) {
        const auto byte = static_cast<unsigned char>(letter);
        const bool plain = (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
                           (letter >= '0' && letter <= '9') || std::strchr(allowed, letter) != nullptr;
        if (plain && letter != 0)
            encoded += letter;
        else
            encoded += {'%', digits[byte >> 4U], digits[byte & 15U]};
    }
    return encoded;
}

std::string fileAddress(const fs::path& file) {
    std::string address = "file://";
    for (const fs::path& part : file.relative_path())
        address += "/" + percentEncoded(part.string());
    return address;
}

std::string mailAddress(const MailText& text) {
    return "mailto:" + percentEncoded(text.to, "-._~@,") + "?subject=" + percentEncoded(text.subject) +
           "&body=" + percentEncoded(text.body);
}

/// A list with commas between its items; a value without quotes is decoded, so it may hold anything.
Options thunderbird(const MailText& text, const Files& attachments) {
    std::string list = "format=2,to=" + percentEncoded(text.to) + ",subject=" + percentEncoded(text.subject) +
                       ",body=" + percentEncoded(text.body);
    std::string files;
    for (const fs::path& file : attachments)
        files += (files.empty() ? "" : ",") + fileAddress(file);
    if (!files.empty()) list += ",attachment=" + percentEncoded(files);
    return {"-compose", list};
}

Options evolution(const MailText& text, const Files& attachments) {
    std::string address = mailAddress(text);
    for (const fs::path& file : attachments)
        address += "&attach=" + percentEncoded(file.string());
    return {address};
}

Options kmail(const MailText& text, const Files& attachments) {
    Options options{"--composer", "--subject", text.subject, "--body", text.body};
    for (const fs::path& file : attachments) {
        options.emplace_back("--attach");
        options.push_back(fileAddress(file));
    }
    options.emplace_back("--");
    options.push_back(text.to);
    return options;
}

Options clawsAndSylpheed(const MailText& text, const Files& attachments) {
    Options options{"--compose", mailAddress(text)};
    if (!attachments.empty()) options.emplace_back("--attach");
    for (const fs::path& file : attachments)
        options.push_back(file.string());
    return options;
}

struct Known {
    const char* desktopId;
    const char* program; ///< a wrapper such as a sandbox takes other options, and may not see the files
    Options (*options)(const MailText&, const Files&);
};

constexpr Known kKnown[] = {
    {"thunderbird.desktop", "thunderbird", thunderbird},
    {"org.mozilla.Thunderbird.desktop", "thunderbird", thunderbird},
    {"org.gnome.Evolution.desktop", "evolution", evolution},
    {"evolution.desktop", "evolution", evolution},
    {"org.kde.kmail2.desktop", "kmail", kmail},
    {"claws-mail.desktop", "claws-mail", clawsAndSylpheed},
    {"sylpheed.desktop", "sylpheed", clawsAndSylpheed},
};

Result<fs::path> makePrivateFolder() {
    const char* temporary = std::getenv("TMPDIR");
    std::string made = fs::path(temporary && *temporary == '/' ? temporary : "/tmp") / "lumora-report-XXXXXX";
    if (!::mkdtemp(made.data())) return Result<fs::path>::failure("cannot make " + made + ": " + std::strerror(errno));
    return fs::path(made);
}

bool writeFile(const fs::path& file, const Data& data) {
    const int number = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (number < 0) return false;
    std::size_t done = 0;
    while (done < data.size()) {
        const ssize_t count = ::write(number, data.data() + done, data.size() - done);
        if (count < 0 && errno != EINTR) break;
        if (count > 0) done += static_cast<std::size_t>(count);
    }
    return ::close(number) == 0 && done == data.size();
}

} // namespace

std::optional<MailProgram> mailProgram() {
    DesktopServices* desktop = desktopServices();
    const auto handler = desktop ? desktop->handlerOf("mailto") : std::nullopt;
    if (!handler) return std::nullopt;
    for (const Known& known : kKnown) {
        if (handler->desktopId != known.desktopId || fs::path(handler->program).filename() != known.program) continue;
        if (const auto file = programNamed(handler->program)) return MailProgram{*file, known.options};
    }
    return std::nullopt;
}

Result<bool> openIn(const MailProgram& program, const MailMessage& message) {
    Files files;
    if (!message.attachments.empty()) {
        const Result<fs::path> folder = makePrivateFolder();
        if (!folder) return Result<bool>::failure(folder.error());
        for (const MailAttachment& attachment : message.attachments) {
            files.push_back(folder.value() / attachment.fileName);
            if (!writeFile(files.back(), *attachment.data))
                return Result<bool>::failure("cannot write " + files.back().string() + ": " + std::strerror(errno));
        }
    }
    Options command = program.options(message.text, files);
    command.insert(command.begin(), program.file.string());
    return startProgram(command);
}

} // namespace platform
