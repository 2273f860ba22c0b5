// The commands of files that a blade fetches, and of notices to it.

#include "ruk_ipmi/file_transfer.h"

#include "oem_shape.h"

namespace
{

const event refusal_of_arguments = error_line("Invalid parameter to IPMI interface\n");

const event path_begins = os_log_line("Entered ipmi_location_set_nfs_path function.\n");
const event path_is_fine = os_log_line("ipmi_location_set_nfs_path: validation of params done.\n");

event returns(const char *name, int result)
{
    return os_log_line(formatted("%s: Returning with rc =%d\n", name, result));
}

// The lines of the three that tell the OS layer's log how they end, of which one sets its name off
// from the numbers.
oem_row telling(oem_row row, const char *name, const char *mark)
{
    row.after_success = {returns(name, 0)};
    row.after_refusal = {
        os_log_line(formatted("%s%s rc = 0, response->comp_code =193 \n", name, mark)),
        returns(name, 193)};
    row.after_failure = {returns(name, 20481)};
    row.missing_location =
        events{refusal_of_arguments, os_log_line(formatted("%s: Returning from else 1\n", name))};
    return row;
}

oem_row path_row()
{
    oem_row row = telling(
        oem_command(
            "set_nfs_path", [](auto at) { return ipmi_location_set_nfs_path(at, 0x81, "/srv/fw"); },
            0x30D0,
            zero_filled(joined({0x00, 0x16, 0x21, 0, 0, 0, 0x21, 0, 0x81}, characters("/srv/fw")),
                        39)),
        "ipmi_location_set_nfs_path", ":");
    row.before = {path_begins, path_is_fine};
    row.missing_location->insert(row.missing_location->begin(), path_begins);
    return row;
}

oem_row copy_status_row()
{
    oem_row row = oem_query("get_file_cp_status",
                            [](auto at) {
                                guarded<char> status;
                                const int result =
                                    ipmi_location_get_file_cp_status(at, 0x81, status.get());
                                return outcome_of(result, status);
                            },
                            0x30D0, {0x01, 0x16, 0x03, 0x00, 0x00, 0x00, 0x81},
                            {0x00, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7, 'C'}, {'C'});
    row.after_success = {os_log_line("ipmi_location_get_file_cp_status: copy status = C")};
    return row;
}

oem_row log_bundle_row()
{
    oem_row row = oem_command(
        "set_dumplogs_status", [](auto at) { return ipmi_location_set_dumplogs_status(at, 0x81); },
        0x30D0,
        joined({0x00, 0x20, 0x19, 0x00, 0x00, 0x00, 0x19, 0x00, 0x00, 0x00, 0x81, 0x13},
               characters("zatdumplogs.log.zip")));
    row.after_refusal = {error_line("ipmi_location_set_dumplogs_status(): ipmi cmd failed in "
                                    "server-blade 5.0 rc=c1 \n")};
    row.missing_location =
        events{error_line("ipmi_location_set_dumplogs_status(): server-(none) Invalid parameter "
                          "to IPMI interface\n"),
               os_log_line("ipmi_location_set_dumplogs_status: invalid parameter blade location "
                           "(none) \n")};
    return row;
}

std::vector<oem_row> file_transfer_rows()
{
    return {
        path_row(),
        oem_command(
            "set_lt_nfs_path", [](auto at) { return ipmi_location_set_lt_nfs_path(at, "/srv/lt"); },
            0x30D0,
            zero_filled(joined({0x00, 0x11, 0x20, 0, 0, 0, 0x20, 0}, characters("/srv/lt")), 38)),
        copy_status_row(),
        telling(oem_command("set_fwupdate_status",
                            [](auto at) { return ipmi_location_set_fwupdate_status(at, 0x81); },
                            0x30D0, {0x00, 0x16, 0x04, 0x00, 0x00, 0x00, 0x04, 0x00, 0x03, 0x81}),
                "ipmi_location_set_fwupdate_status", ""),
        telling(oem_command("set_timeout_error", ipmi_location_set_timeout_error, 0x30D0,
                            {0x00, 0x16, 0x03, 0x00, 0x00, 0x00, 0x03, 0x00, 0x04}),
                "ipmi_location_set_timeout_error", ""),
        log_bundle_row()};
}

INSTANTIATE_OEM_SHAPE(file_transfer, file_transfer_rows());

// Either command of a path: it, and its payload up to the path.
struct path_command {
    int (*set)(const blade_location *, const char *);
    bytes head;
};

int set_nfs_path(const blade_location *at, const char *path)
{
    return ipmi_location_set_nfs_path(at, 0x81, path);
}

class paths : public scripted_test, public ::testing::WithParamInterface<path_command>
{
  protected:
    void expects(const std::string &path)
    {
        const bytes &head = GetParam().head;
        platform.expects(at, 0x30D0, zero_filled(joined(head, characters(path)), head.size() + 30));
    }

    int set(const std::string &path) { return GetParam().set(&at, path.c_str()); }

    const blade_location at = blade(5);
};

INSTANTIATE_TEST_SUITE_P(file_transfer, paths,
                         ::testing::Values(path_command{set_nfs_path,
                                                        {0x00, 0x16, 0x21, 0, 0, 0, 0x21, 0, 0x81}},
                                           path_command{ipmi_location_set_lt_nfs_path,
                                                        {0x00, 0x11, 0x20, 0, 0, 0, 0x20, 0}}));

class file_transfer : public scripted_test
{
  protected:
    scripted_exchange &expects_copy_status()
    {
        return platform.expects(at, 0x30D0, {0x01, 0x16, 0x03, 0x00, 0x00, 0x00, 0x81});
    }

    int get_copy_status() { return ipmi_location_get_file_cp_status(&at, 0x81, copy_status.get()); }

    const blade_location at = blade(5);
    guarded<char> copy_status;
};

using nfs_path = file_transfer;
using lt_nfs_path = file_transfer;
using file_copy_status = file_transfer;

} // namespace

TEST_P(paths, of_29_characters_leave_one_zero_at_the_end)
{
    const std::string path = "/abcdefghijklmnopqrstuvwxyz12";
    ASSERT_EQ(path.size(), 29u);
    expects(path);
    litter_the_stack();
    EXPECT_EQ(set(path), 0);
}

TEST_P(paths, may_be_empty)
{
    expects("");
    litter_the_stack();
    EXPECT_EQ(set(""), 0);
}

TEST_P(paths, of_30_and_more_characters_are_refused)
{
    for (const size_t length : {30, 31, 256, 1000})
        EXPECT_EQ(set(std::string(length, 'x')), 0x510a);
    EXPECT_EQ(platform.calls(), events{});
}

TEST_P(paths, that_are_missing_are_refused)
{
    EXPECT_EQ(GetParam().set(&at, nullptr), 0x510a);
    EXPECT_EQ(GetParam().set(nullptr, nullptr), 0x510a);
    EXPECT_EQ(platform.calls(), events{});
}

TEST_F(nfs_path, tells_of_a_missing_path_as_of_a_missing_location)
{
    ipmi_location_set_nfs_path(&at, 0x81, nullptr);
    EXPECT_EQ(platform.journal(),
              (events{path_begins, refusal_of_arguments,
                      os_log_line("ipmi_location_set_nfs_path: Returning from else 1\n")}));
}

TEST_F(nfs_path, tells_of_a_path_too_long_after_the_validation)
{
    ipmi_location_set_nfs_path(&at, 0x81, std::string(30, 'x').c_str());
    EXPECT_EQ(platform.journal(),
              (events{path_begins, path_is_fine, refusal_of_arguments,
                      os_log_line("ipmi_location_set_nfs_path. Returning from else\n")}));
}

TEST_F(lt_nfs_path, tells_the_error_log_alone_what_it_refuses)
{
    ipmi_location_set_lt_nfs_path(&at, nullptr);
    ipmi_location_set_lt_nfs_path(&at, std::string(30, 'x').c_str());
    EXPECT_EQ(platform.journal(), events(2, refusal_of_arguments));
}

TEST_F(file_copy_status, refuses_a_missing_output)
{
    EXPECT_EQ(ipmi_location_get_file_cp_status(&at, 0x81, nullptr), 0x510a);
    EXPECT_EQ(platform.journal(), events{refusal_of_arguments});
}

TEST_F(file_copy_status, refuses_an_answer_that_is_not_9_bytes_long)
{
    for (const size_t length : {0, 8, 10, 455}) {
        platform.forget();
        expects_copy_status().answers(bytes(length));
        EXPECT_EQ(get_copy_status(), 0x5109);
        EXPECT_EQ(platform.log(), events{error_line("Invalid response length\n")});
    }
    EXPECT_TRUE(copy_status.untouched());
}

TEST_F(file_copy_status, believes_the_length_that_the_answer_claims)
{
    expects_copy_status().answers({0, 0, 0, 0, 0, 0, 0, 0, 'C'}).with_data_len(10);
    EXPECT_EQ(get_copy_status(), 0x5109);
    expects_copy_status().answers({0, 0, 0, 0, 0, 0, 0, 0, 'C', 0}).with_data_len(9);
    EXPECT_EQ(get_copy_status(), 0);
    EXPECT_EQ(*copy_status, 'C');
}
