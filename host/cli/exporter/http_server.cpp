#include "cli/exporter/http_server.h"

#include <csignal>
#include <microhttpd.h>
#include <stdexcept>

#include "cli/late_library.h"

namespace cli
{

namespace
{

void *microhttpd_symbol(const char *name)
{
    static const late_library microhttpd("libmicrohttpd", RUK_IPMI_MICROHTTPD);
    return microhttpd.symbol(name);
}

// Stands for a function of libmicrohttpd. A macro, since it needs the type and the name.
#define MICROHTTPD(name) (*reinterpret_cast<decltype(&(name))>(microhttpd_symbol(#name)))

constexpr unsigned most_connections = 64;
constexpr unsigned idle_seconds = 30; // then a connection is closed

constexpr char plain[] = "text/plain; charset=utf-8";

struct answer {
    unsigned status;
    page content;
};

answer answer_to(const page_makers &pages, const std::string &method, const std::string &path)
{
    const auto asked = pages.find(path);
    if (asked == pages.end())
        return {MHD_HTTP_NOT_FOUND, {plain, "There is no such page.\n"}};
    if (method != MHD_HTTP_METHOD_GET && method != MHD_HTTP_METHOD_HEAD)
        return {MHD_HTTP_METHOD_NOT_ALLOWED, {plain, "The pages can only be read.\n"}};
    try {
        return {MHD_HTTP_OK, asked->second()};
    } catch (const std::exception &why) {
        return {MHD_HTTP_INTERNAL_SERVER_ERROR, {plain, std::string(why.what()) + "\n"}};
    }
}

MHD_Result send(MHD_Connection *asker, const answer &what)
{
    const std::string &text = what.content.text;
    MHD_Response *response = MICROHTTPD(MHD_create_response_from_buffer)(
        text.size(), const_cast<char *>(text.data()), MHD_RESPMEM_MUST_COPY);
    if (!response)
        return MHD_NO; // which closes the connection
    const auto header = [&](const char *name, const char *value) {
        return MICROHTTPD(MHD_add_response_header)(response, name, value) == MHD_YES;
    };
    MHD_Result sent = MHD_NO;
    if (header(MHD_HTTP_HEADER_CONTENT_TYPE, what.content.type.c_str()) &&
        (what.status != MHD_HTTP_METHOD_NOT_ALLOWED || header(MHD_HTTP_HEADER_ALLOW, "GET, HEAD")))
        sent = MICROHTTPD(MHD_queue_response)(asker, what.status, response);
    MICROHTTPD(MHD_destroy_response)(response);
    return sent;
}

MHD_Result on_request(void *pages, MHD_Connection *asker, const char *path, const char *method,
                      const char *, const char *, size_t *, void **)
{
    return send(asker, answer_to(*static_cast<const page_makers *>(pages), method, path));
}

} // namespace

void serve_pages(int listening_socket, page_makers pages)
{
    signal(SIGPIPE, SIG_IGN); // who has gone away ends nothing but his connection
    // As long as the process.
    auto *const kept = new page_makers(std::move(pages));
    if (!MICROHTTPD(MHD_start_daemon)(
            MHD_USE_INTERNAL_POLLING_THREAD | MHD_USE_THREAD_PER_CONNECTION | MHD_USE_AUTO, 0,
            nullptr, nullptr, on_request, kept, MHD_OPTION_LISTEN_SOCKET, listening_socket,
            MHD_OPTION_CONNECTION_LIMIT, most_connections, MHD_OPTION_CONNECTION_TIMEOUT,
            idle_seconds, MHD_OPTION_END))
        throw std::runtime_error("cannot serve pages: libmicrohttpd does not start");
}

} // namespace cli
