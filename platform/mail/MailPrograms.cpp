#include "platform/mail/MailPrograms.h"

#include "platform/foundation/FileDescriptor.h"
#include "platform/mail/Program.h"
#include "platform/services/DesktopLibrary.h"

#include <glib.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace platform {

namespace fs = std::filesystem;
using Options = std::vector<std::string>;
using Files = MailProgram::Files;

namespace {

/// Writes every byte that could have a meaning in an address or a list as a number, except for those allowed.
std::string percentEncoded(const std::string& text, const char* allowed = nullptr) {
    const std::unique_ptr<char, void (*)(void*)> encoded(
        g_uri_escape_bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size(), allowed), g_free);
    return encoded.get();
}

std::string fileAddress(const fs::path& file) {
    std::string address = "file://";
    for (const fs::path& part : file.relative_path())
        address += "/" + percentEncoded(part.string());
    return address;
}

std::string mailAddress(const MailText& text) {
    return "mailto:" + percentEncoded(text.to, "@,") + "?subject=" + percentEncoded(text.subject) +
           "&body=" + percentEncoded(text.body);
}

/// One option, a list with commas. The program decodes values without quotes, so these may hold anything.
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
    const char* program; ///< no wrapper such as a sandbox, which takes other options and may not see the files
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

/// A private folder for the attachments, removed again unless it is kept.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        const char* temporary = std::getenv("TMPDIR");
        std::string made = fs::path(temporary && *temporary == '/' ? temporary : "/tmp") / "lumora-report-XXXXXX";
        if (::mkdtemp(made.data())) path_ = made;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored; // at worst, the user's own files stay in a temporary folder
        if (!path_.empty()) fs::remove_all(path_, ignored);
    }
    void keep() { path_.clear(); }
    /// Empty when it could not be made; errno says why.
    [[nodiscard]] const fs::path& path() const { return path_; }

  private:
    fs::path path_;
};

/// A name without folders, for any name of the attachment.
fs::path fileNameOf(const MailAttachment& attachment) {
    const fs::path name = fs::path(attachment.fileName).filename();
    return name.empty() || name == "." || name == ".." ? "attachment" : name;
}

bool writeFile(const fs::path& path, const RegularFile& data) {
    FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    return file && data.writeTo(file) == data.size() && file.close();
}

} // namespace

std::optional<MailProgram> mailProgram() {
    DesktopLibrary* desktop = desktopLibrary();
    const auto handler = desktop ? desktop->handlerOf("mailto") : std::nullopt;
    if (!handler) return std::nullopt;
    for (const Known& known : kKnown) {
        if (handler->desktopId != known.desktopId || fs::path(handler->program).filename() != known.program) continue;
        if (const auto file = programNamed(handler->program)) return MailProgram{*file, known.options};
    }
    return std::nullopt;
}

Result<void> openIn(const MailProgram& program, const MailMessage& message,
                    const std::vector<std::string>& recipients) {
    using Opened = Result<void>;
    std::optional<TemporaryFolder> folder;
    Files files;
    if (!message.attachments.empty()) {
        folder.emplace();
        if (folder->path().empty())
            return Opened::failure(std::string("cannot make a temporary folder: ") + std::strerror(errno));
    }
    for (const MailAttachment& attachment : message.attachments) {
        // Each in a folder of its own, since two may have one name.
        const fs::path own = folder->path() / std::to_string(files.size() + 1);
        files.push_back(own / fileNameOf(attachment));
        if (::mkdir(own.c_str(), 0700) != 0 || !writeFile(files.back(), *attachment.data))
            return Opened::failure("cannot write " + files.back().string() + ": " + std::strerror(errno));
    }
    MailText text = message.text;
    text.to.clear(); // bare addresses with commas between them are what all mail programs understand
    for (const std::string& address : recipients)
        text.to += (text.to.empty() ? "" : ",") + address;
    Options command = program.options(text, files);
    command.insert(command.begin(), program.file.string());
    Opened started = startProgram(command);
    if (started && folder) folder->keep();
    return started;
}

} // namespace platform
