// Pages served over HTTP, by libmicrohttpd.
#ifndef RUK_HOST_CLI_EXPORTER_HTTP_SERVER_H
#define RUK_HOST_CLI_EXPORTER_HTTP_SERVER_H

#include <functional>
#include <map>
#include <string>

namespace cli
{

struct page {
    std::string type; // its Content-Type
    std::string text;
};

// What makes each page, by the page's path.
using page_makers = std::map<std::string, std::function<page()>>;

// Answers whoever connects to a listening socket until the process ends. Each connection has a
// thread of its own, so the pages are made on many threads at once.
void serve_pages(int listening_socket, page_makers pages);

} // namespace cli

#endif
