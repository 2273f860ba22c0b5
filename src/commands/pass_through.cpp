#include "ruk_ipmi/pass_through.h"

#include "commands/frame.h"

using namespace ruk;

namespace
{

// The caller's block; its numbers are in host order.
class pass_through_block
{
  public:
    explicit pass_through_block(const void *caller) : bytes_(static_cast<const uint8_t *>(caller))
    {
    }

    uint8_t option() const { return bytes_[1]; }
    uint16_t data_length() const { return number_at(2); }
    uint16_t second_number() const { return number_at(4); }
    const uint8_t *data() const { return bytes_ + head; }

    static constexpr size_t head = 6;

  private:
    uint16_t number_at(size_t offset) const
    {
        uint16_t number;
        memcpy(&number, bytes_ + offset, sizeof number);
        return number;
    }

    const uint8_t *bytes_;
};

int pass_through(const blade_location *location, uint8_t cmd, uint8_t sub_cmd, int request_len,
                 const void *request, uint8_t *out, size_t out_size)
{
    constexpr int head = pass_through_block::head;
    const pass_through_block given(request);
    const size_t data_length = request_len < head ? 0 : static_cast<size_t>(request_len - head);
    command pass(location, 0x30CB, cmd, sub_cmd, le16{given.data_length()},
                 le16{given.second_number()}, block{given.data(), data_length});
    pass.request.data_len = static_cast<uint32_t>(request_len); // also where it cuts the head short
    return pass.fetch(out, out_size);
}

} // namespace

int ipmi_location_process_zat_chassis_info(const blade_location *location, uint8_t cmd,
                                           uint8_t sub_cmd, int request_len, const void *request,
                                           uint8_t out[134])
{
    if (!location || !out)
        return invalid_param();
    return pass_through(location, cmd, sub_cmd, request_len, request, out, 134);
}

int ipmi_process_zat_chassis_info(int blade_num, uint8_t cmd, uint8_t sub_cmd, int request_len,
                                  const void *request, uint8_t out[134])
{
    return by_number<ipmi_location_process_zat_chassis_info>(blade_num, cmd, sub_cmd, request_len,
                                                             request, out);
}

int ipmi_process_zat_storage_info(int blade_num, uint8_t cmd, uint8_t sub_cmd, int request_len,
                                  const void *request, uint8_t out[262])
{
    static constexpr char name[] = "ipmi_process_zat_storage_info";
    if (!out) {
        const pass_through_block given(request);
        slog_elog("%s(): Invalid parameter to IPMI interface\n", name);
        slog_dlog("%s(): blade_num=%d, cmd=0x%02X sub_cmd=0x%02X option=0x%02X data_length=%d\n",
                  name, blade_num, cmd, sub_cmd, given.option(), given.data_length());
        return IPMI_ERR_INVALID_PARAM;
    }
    return by_number<pass_through>(blade_num, cmd, sub_cmd, request_len, request, out, size_t{262});
}
