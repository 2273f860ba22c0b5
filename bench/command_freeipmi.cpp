// Get SEL Entry packed and unpacked by FreeIPMI's objects: `fresh|kept COUNT`. They are made from
// their templates for each command, as its own functions of commands have their callers do, or
// once.

#include <cstring>
#include <freeipmi/freeipmi.h>

#include "repeat.h"

namespace
{

struct objects {
    fiid_obj_t request = fiid_obj_create(tmpl_cmd_get_sel_entry_rq);
    fiid_obj_t response = fiid_obj_create(tmpl_cmd_get_sel_entry_rs);

    objects() = default;
    objects(const objects &) = delete;
    objects &operator=(const objects &) = delete;

    ~objects()
    {
        fiid_obj_destroy(request);
        fiid_obj_destroy(response);
    }
};

// The command's number, then the 19 bytes of the answer: the next record is number 2.
constexpr uint8_t answer[20] = {IPMI_CMD_GET_SEL_ENTRY, 0, 2, 0, 1, 0, 2};

bool pack_and_unpack(objects &of)
{
    uint8_t sent[64];
    uint8_t record[16];
    uint64_t completion_code = 0;
    uint64_t next_record = 0;
    return fill_cmd_get_sel_entry(0, 1, 0, 0xFF, of.request) == 0 &&
           fiid_obj_get_all(of.request, sent, sizeof sent) == 7 &&
           fiid_obj_set_all(of.response, answer, sizeof answer) == sizeof answer &&
           fiid_obj_get(of.response, "comp_code", &completion_code) == 1 && completion_code == 0 &&
           fiid_obj_get(of.response, "next_record_id", &next_record) == 1 && next_record == 2 &&
           fiid_obj_get_data(of.response, "record_data", record, sizeof record) == sizeof record;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    if (strcmp(argv[1], "fresh") == 0)
        return bench::repeat(argv[2], [] {
            objects made;
            return pack_and_unpack(made);
        });
    objects kept;
    return bench::repeat(argv[2], [&] {
        return fiid_obj_clear(kept.request) == 0 && fiid_obj_clear(kept.response) == 0 &&
               pack_and_unpack(kept);
    });
}
