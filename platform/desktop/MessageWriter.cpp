#include "platform/desktop/MessageWriter.h"

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

struct Unreference {
    void operator()(void* object) const { g_object_unref(object); }
};
template<class T>
using Owned = std::unique_ptr<T, Unreference>;

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

/// The user's own address: the one in the environment, else that of the login, which sendmail may complete.
std::string senderAddress() {
    if (const char* address = std::getenv("EMAIL"); address && *address) return address;
    const passwd* user = getpwuid(getuid());
    return std::string(user ? user->pw_name : "user") + "@" + hostName();
}

/// A header is one line, whatever was pasted into it.
std::string oneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](unsigned char letter) { return letter < ' '; }, ' ');
    return text;
}

void addAddresses(GMimeMessage* message, GMimeAddressType type, const std::string& list) {
    const Owned<InternetAddressList> addresses(internet_address_list_parse(nullptr, oneLine(list).c_str()));
    if (addresses) internet_address_list_append(g_mime_message_get_addresses(message, type), addresses.get());
}

void setContent(GMimePart* part, const char* bytes, std::size_t count, GMimeContentEncoding encoding) {
    const Owned<GMimeStream> stream(g_mime_stream_mem_new_with_buffer(bytes, count));
    const Owned<GMimeDataWrapper> content(
        g_mime_data_wrapper_new_with_stream(stream.get(), GMIME_CONTENT_ENCODING_DEFAULT));
    g_mime_part_set_content(part, content.get());
    g_mime_part_set_content_encoding(part, encoding);
}

Owned<GMimeObject> textPart(const MailMessage& message) {
    Owned<GMimeTextPart> part(g_mime_text_part_new_with_subtype(message.isHTML ? "html" : "plain"));
    g_mime_text_part_set_charset(part.get(), "utf-8");
    setContent(GMIME_PART(part.get()), message.text.body.data(), message.text.body.size(),
               GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
    return Owned<GMimeObject>(GMIME_OBJECT(part.release()));
}

Owned<GMimeObject> attachmentPart(const MailAttachment& attachment) {
    const std::size_t slash = attachment.mimeType.find('/');
    const std::string type = slash == std::string::npos ? "application" : attachment.mimeType.substr(0, slash);
    const std::string subtype = slash == std::string::npos ? "octet-stream" : attachment.mimeType.substr(slash + 1);
    Owned<GMimePart> part(g_mime_part_new_with_type(type.c_str(), subtype.c_str()));
    g_mime_part_set_filename(part.get(), attachment.fileName.c_str());
    g_mime_object_set_disposition(GMIME_OBJECT(part.get()), "attachment");
    setContent(part.get(), reinterpret_cast<const char*>(attachment.data->data()), attachment.data->size(),
               GMIME_CONTENT_ENCODING_BASE64);
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

std::vector<std::string> mailAddressesIn(const std::string& list) {
    initialiseOnce();
    std::vector<std::string> found;
    const Owned<InternetAddressList> addresses(internet_address_list_parse(nullptr, oneLine(list).c_str()));
    const int count = addresses ? internet_address_list_length(addresses.get()) : 0;
    for (int i = 0; i < count; ++i) {
        InternetAddress* address = internet_address_list_get_address(addresses.get(), i);
        if (!INTERNET_ADDRESS_IS_MAILBOX(address)) continue;
        const char* bare = internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(address));
        if (bare && *bare) found.emplace_back(bare);
    }
    return found;
}

Result<bool> writeMailMessage(const MailMessage& message, int file) {
    initialiseOnce();
    const Owned<GMimeMessage> made = messageOf(message);
    const Owned<GMimeStream> out(g_mime_stream_fs_new(file));
    g_mime_stream_fs_set_owner(GMIME_STREAM_FS(out.get()), FALSE);
    errno = 0;
    if (g_mime_object_write_to_stream(GMIME_OBJECT(made.get()), nullptr, out.get()) < 0 ||
        g_mime_stream_flush(out.get()) != 0)
        return Result<bool>::failure(errno != 0 ? std::strerror(errno) : "the message cannot be written");
    return true;
}

} // namespace platform
