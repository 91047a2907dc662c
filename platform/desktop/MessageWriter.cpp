#include "platform/desktop/MessageWriter.h"

#include "platform/desktop/Owned.h"

#include <gmime/gmime.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <pwd.h>
#include <unistd.h>

namespace platform {
namespace {

struct Free {
    void operator()(void* memory) const { g_free(memory); }
};

void initialiseOnce() {
    [[maybe_unused]] static const bool done = (g_mime_init(), true);
}

std::string hostName() {
    char name[256] = {};
    return gethostname(name, sizeof name - 1) == 0 && *name ? name : "localhost";
}

/// The user's own address: `$EMAIL`, else that of the login, which sendmail may complete.
std::string senderAddress() {
    const char* named = std::getenv("EMAIL");
    if (const auto addresses = mailAddressesIn(named ? named : ""); addresses && addresses.value().size() == 1)
        return named;
    const passwd* user = getpwuid(getuid());
    return std::string(user ? user->pw_name : "user") + "@" + hostName();
}

/// A header is one line, even if several were pasted into it.
std::string oneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](unsigned char letter) { return letter < ' '; }, ' ');
    return text;
}

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// The parts of a list, without empty ones. Separators inside quotes, brackets and comments separate nothing.
std::vector<std::string> partsOf(const std::string& list) {
    std::vector<std::string> parts(1);
    char closing = 0; // of what is open
    bool escaped = false;
    for (const char letter : oneLine(list)) {
        if (!closing && (letter == ',' || letter == ';')) {
            parts.emplace_back();
            continue;
        }
        parts.back() += letter;
        if (escaped || letter == '\\') {
            escaped = !escaped;
        } else if (closing) {
            if (letter == closing) closing = 0;
        } else {
            closing = letter == '"' ? '"' : letter == '<' ? '>' : letter == '(' ? ')' : '\0';
        }
    }
    for (std::string& part : parts)
        part = trimmed(part);
    std::erase(parts, "");
    return parts;
}

/// The contents of the angle brackets at the end; without brackets, the whole part.
std::string withoutName(const std::string& part) {
    const std::size_t open = part.rfind('<');
    if (open == std::string::npos || part.back() != '>') return part;
    return trimmed(part.substr(open + 1, part.size() - open - 2));
}

bool isAddress(const std::string& text) {
    const std::size_t at = text.find('@');
    return at != 0 && at != std::string::npos && at + 1 < text.size() && text.find('@', at + 1) == std::string::npos &&
           std::all_of(text.begin(), text.end(), [](char letter) { return letter > ' ' && letter < 127; });
}

/// Where a name in quotes at the beginning ends; 0 without such a name or its end.
std::size_t endOfQuotedName(const std::string& part) {
    if (part.empty() || part.front() != '"') return 0;
    for (std::size_t i = 1; i < part.size(); ++i) {
        if (part[i] == '"') return i + 1;
        if (part[i] == '\\') ++i;
    }
    return 0;
}

/// True for a comment behind a domain in square brackets, for which the parser leaks memory.
bool hasCommentBehindBrackets(const std::string& part) {
    const std::size_t at = part.find('@', endOfQuotedName(part));
    const std::size_t bracket = part.find('[', std::min(at, part.size()));
    return bracket != std::string::npos && part.find('(', bracket) != std::string::npos;
}

/// Null unless the part is exactly one address: the parser finds an address in almost everything.
Owned<InternetAddressList> addressIn(const std::string& part) {
    if (hasCommentBehindBrackets(part)) return nullptr;
    Owned<InternetAddressList> found(internet_address_list_parse(nullptr, part.c_str()));
    if (!found || internet_address_list_length(found.get()) != 1) return nullptr;
    InternetAddress* address = internet_address_list_get_address(found.get(), 0);
    if (!INTERNET_ADDRESS_IS_MAILBOX(address)) return nullptr;
    const char* bare = internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(address));
    return bare && isAddress(bare) && withoutName(part) == bare ? std::move(found) : nullptr;
}

void addAddresses(GMimeMessage* message, GMimeAddressType type, const std::string& list) {
    InternetAddressList* all = g_mime_message_get_addresses(message, type);
    for (const std::string& part : partsOf(list)) {
        if (const auto address = addressIn(part)) {
            internet_address_list_append(all, address.get());
        } else {
            const Owned<InternetAddress> asTyped(internet_address_mailbox_new(nullptr, part.c_str()));
            internet_address_list_add(all, asTyped.get());
        }
    }
}

void setContent(GMimePart* part, const Owned<GMimeStream>& bytes, GMimeContentEncoding encoding) {
    const Owned<GMimeDataWrapper> content(
        g_mime_data_wrapper_new_with_stream(bytes.get(), GMIME_CONTENT_ENCODING_DEFAULT));
    g_mime_part_set_content(part, content.get());
    g_mime_part_set_content_encoding(part, encoding);
}

Owned<GMimeObject> textPart(const MailMessage& message) {
    Owned<GMimeTextPart> part(g_mime_text_part_new_with_subtype(message.isHTML ? "html" : "plain"));
    g_mime_text_part_set_charset(part.get(), "utf-8");
    const std::string& body = message.text.body;
    setContent(GMIME_PART(part.get()), Owned<GMimeStream>(g_mime_stream_mem_new_with_buffer(body.data(), body.size())),
               GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
    return Owned<GMimeObject>(GMIME_OBJECT(part.release()));
}

Owned<GMimeObject> attachmentPart(const MailAttachment& attachment) {
    const std::string mimeType = oneLine(attachment.mimeType);
    const std::size_t slash = mimeType.find('/');
    const std::string type = slash == std::string::npos ? "application" : mimeType.substr(0, slash);
    const std::string subtype = slash == std::string::npos ? "octet-stream" : mimeType.substr(slash + 1);
    Owned<GMimePart> part(g_mime_part_new_with_type(type.c_str(), subtype.c_str()));
    g_mime_part_set_filename(part.get(), oneLine(attachment.fileName).c_str());
    g_mime_object_set_disposition(GMIME_OBJECT(part.get()), "attachment");
    // Read piece by piece while the message is written.
    Owned<GMimeStream> bytes(g_mime_stream_fs_new_with_bounds(attachment.data->descriptor(), 0,
                                                              static_cast<gint64>(attachment.data->size())));
    g_mime_stream_fs_set_owner(GMIME_STREAM_FS(bytes.get()), FALSE);
    setContent(part.get(), bytes, GMIME_CONTENT_ENCODING_BASE64);
    return Owned<GMimeObject>(GMIME_OBJECT(part.release()));
}

Owned<GMimeMessage> messageOf(const MailMessage& message) {
    Owned<GMimeMessage> made(g_mime_message_new(TRUE));
    addAddresses(made.get(), GMIME_ADDRESS_TYPE_FROM, senderAddress());
    addAddresses(made.get(), GMIME_ADDRESS_TYPE_TO, message.text.to);
    g_mime_message_set_subject(made.get(), oneLine(message.text.subject).c_str(), "utf-8");
    GDateTime* now = g_date_time_new_now_local();
    g_mime_message_set_date(made.get(), now);
    g_date_time_unref(now);
    const std::unique_ptr<char, Free> id(g_mime_utils_generate_message_id(hostName().c_str()));
    g_mime_message_set_message_id(made.get(), id.get());

    const Owned<GMimeObject> text = textPart(message);
    if (message.attachments.empty()) {
        g_mime_message_set_mime_part(made.get(), text.get());
        return made;
    }
    const Owned<GMimeMultipart> whole(g_mime_multipart_new_with_subtype("mixed"));
    g_mime_multipart_add(whole.get(), text.get());
    for (const MailAttachment& attachment : message.attachments)
        g_mime_multipart_add(whole.get(), attachmentPart(attachment).get());
    g_mime_message_set_mime_part(made.get(), GMIME_OBJECT(whole.get()));
    return made;
}

} // namespace

Result<std::vector<std::string>> mailAddressesIn(const std::string& list) {
    initialiseOnce();
    std::vector<std::string> found;
    for (const std::string& part : partsOf(list)) {
        if (!addressIn(part)) return Result<std::vector<std::string>>::failure("“" + part + "” is no address.");
        found.push_back(withoutName(part));
    }
    return found;
}

Result<void> writeMailMessage(const MailMessage& message, int file) {
    initialiseOnce();
    const Owned<GMimeMessage> made = messageOf(message);
    const Owned<GMimeStream> out(g_mime_stream_fs_new(file));
    g_mime_stream_fs_set_owner(GMIME_STREAM_FS(out.get()), FALSE);
    errno = 0;
    if (g_mime_object_write_to_stream(GMIME_OBJECT(made.get()), nullptr, out.get()) < 0 ||
        g_mime_stream_flush(out.get()) != 0)
        return Result<void>::failure(errno != 0 ? std::strerror(errno) : "the message cannot be written");
    return {};
}

} // namespace platform
