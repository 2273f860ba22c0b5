#include "cli/exporter/metrics_text.h"

#include <gtest/gtest.h>

#include <limits>

using namespace cli;

TEST(metrics_text, says_what_each_metric_is_and_what_it_is_now)
{
    EXPECT_EQ(metrics_text({{"draw_watts", "gauge", "What it draws.", {{{}, 300}}},
                            {"events_total",
                             "counter",
                             "Events.",
                             {{{{"blade", "1"}, {"event", "10"}}, 2}, {{{"blade", "3.2"}}, 0}}}}),
              "# HELP draw_watts What it draws.\n"
              "# TYPE draw_watts gauge\n"
              "draw_watts 300\n"
              "# HELP events_total Events.\n"
              "# TYPE events_total counter\n"
              "events_total{blade=\"1\",event=\"10\"} 2\n"
              "events_total{blade=\"3.2\"} 0\n");
}

TEST(metrics_text, has_the_suffixes_of_a_histogram)
{
    const metric seconds = {"s", "histogram", "Seconds.", {{{{"le", "+Inf"}}, 1, "_bucket"}}};
    EXPECT_EQ(metrics_text({seconds}), "# HELP s Seconds.\n"
                                       "# TYPE s histogram\n"
                                       "s_bucket{le=\"+Inf\"} 1\n");
}

TEST(metrics_text, quotes_what_a_label_must_not_hold)
{
    EXPECT_EQ(metrics_text({{"m", "gauge", "M.", {{{{"l", "a\"b\\c\nd"}}, 1}}}}),
              "# HELP m M.\n"
              "# TYPE m gauge\n"
              "m{l=\"a\\\"b\\\\c\\nd\"} 1\n");
}

TEST(metrics_text, has_the_shortest_numbers_without_exponents)
{
    EXPECT_EQ(number_text(0.0001), "0.0001");
    EXPECT_EQ(number_text(0), "0");
    EXPECT_EQ(number_text(1e21), "1000000000000000000000");
    EXPECT_EQ(std::stod(number_text(0.1 + 0.2)), 0.1 + 0.2);
    EXPECT_EQ(std::stod(number_text(std::numeric_limits<double>::max())),
              std::numeric_limits<double>::max());
}
