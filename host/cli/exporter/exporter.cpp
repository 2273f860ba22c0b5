// What Prometheus watches, served over HTTP.

#include <thread>

#include "cli/command_tree.h"
#include "cli/exporter/chassis_metrics.h"
#include "cli/exporter/http_server.h"
#include "cli/exporter/listen_address.h"
#include "cli/times.h"

namespace cli
{

namespace
{

using namespace std::chrono_literals;

struct exporter_choice {
    listen_address listen;
    std::chrono::milliseconds patience = 3s;
};

constexpr char front_page[] = R"(<!DOCTYPE html>
<html lang="en">
<title>ruk-ipmi exporter</title>
<p>The blades of this chassis, for Prometheus: <a href="/metrics">metrics</a>.</p>
</html>
)";

// Ends by a signal, as every command that goes on.
exit_code serve(const blades &at, const exporter_choice &chosen, stream &out)
{
    constexpr auto between_looks = 250ms; // the ring would have to be written 800 times a second
    const auto watched = std::make_shared<chassis_metrics>(at.locations, chosen.patience);
    listen_address address = chosen.listen;
    const int socket = listening_socket(address);
    const auto count_events = [&] {
        try {
            watched->count_events();
            out.works("");
        } catch (const failure &why) { // the chassis is served some day
            out.failed("", why);
        }
    };
    count_events();
    const auto front = [] { return page{"text/html; charset=utf-8", front_page}; };
    const auto metrics = [watched] { return page{metrics_text_type, watched->scrape()}; };
    serve_pages(socket, {{"/", front}, {"/metrics", metrics}});
    out.line({{"serving", "http://" + address_text(address) + "/metrics"}});
    for (;;) {
        std::this_thread::sleep_for(between_looks);
        count_events();
    }
}

} // namespace

void add_exporter(const noun &root)
{
    root.follow_verb("exporter", "Serve to Prometheus what there is to watch", serve)
        .option("--listen", "ADDR[:PORT]", &exporter_choice::listen, parse_listen_address,
                "Where, e.g. [::]:9623; otherwise 127.0.0.1:9623. Port 0: any that is free")
        .option("--wait", "SECONDS", &exporter_choice::patience, parse_interval,
                "How long a blade may take to answer a scrape, 0.1 to 3600; otherwise 3");
}

} // namespace cli
