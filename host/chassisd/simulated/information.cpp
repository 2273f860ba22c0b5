#include "chassisd/simulated/information.h"

#include <map>

#include "chassisd/simulated/parameter.h"
#include "ruk_ipmi/types.h"

namespace chassisd::simulated
{

namespace
{

constexpr size_t longest_information = 256;
constexpr size_t most_information = 64; // pieces

// Begins as a request for a parameter does: a command and its sub-command in place of operation and
// parameter, a count and an offset. A request that carries bytes writes them; the answer to every
// request is what there is at the offset, up to the count.
class information
{
  public:
    bytes access(const bytes &request)
    {
        const parameter_request asked(request);
        const key about(asked.operation, asked.parameter);
        if (!asked.rest.empty())
            write(about, asked);
        const bytes part = stretch_up_to(piece(about), asked.offset, asked.count);
        return success(asked.parameter, le16(part.size()), le16(asked.offset), part);
    }

  private:
    using key = std::pair<uint8_t, uint8_t>; // command, sub-command

    bytes piece(key about) const
    {
        const auto found = pieces_.find(about);
        return found == pieces_.end() ? bytes{} : found->second;
    }

    void write(key about, const parameter_request &asked)
    {
        refuse_if(asked.count != asked.rest.size(), wrong_request_length);
        refuse_if(pieces_.count(about) == 0 && pieces_.size() >= most_information, out_of_space);
        pieces_[about] = with_part(piece(about), asked.offset, asked.rest, longest_information);
    }

    std::map<key, bytes> pieces_;
};

// Writing (0) or reading (1) parameter 8.
bool is_about_mac_maps(const bytes &request)
{
    return request[0] <= parameter_request::read && request[1] == 0x08;
}

} // namespace

command_table information_commands(handler access_mac_maps)
{
    const auto pieces = std::make_shared<information>();
    return {
        {netfn_manager,
         0xCB,
         {parameter_head, IPMI_REQUEST_DATA_SIZE},
         [pieces, access_mac_maps = std::move(access_mac_maps)](const bytes &request) {
             return is_about_mac_maps(request) ? access_mac_maps(request) : pieces->access(request);
         }},
    };
}

} // namespace chassisd::simulated
