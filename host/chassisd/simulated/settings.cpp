#include "chassisd/simulated/settings.h"

#include <map>

#include "ruk_ipmi/types.h"

namespace chassisd::simulated
{

namespace
{

// A reader gets whether the LCD's messages are to be hidden and whether they are, which is so at
// once, and a byte that it does not use.
class lcd
{
  public:
    void set(const bytes &fields)
    {
        refuse_if(fields[0] > 1, invalid_field);
        hidden_ = fields[0] != 0;
    }

    bytes get() const { return record_of(hidden_, hidden_, 0x00); }

  private:
    bool hidden_ = false;
};

// Written is the path of the file to tune by; it counts as transmitted at once. Which item is read
// says the selector.
class link_tuning
{
  public:
    static constexpr size_t path_size = 30;

    void set(const bytes &path) { path_ = path; }

    bytes get(const parameter_request &asked) const
    {
        enum item : uint8_t { version = 1, transmit_status = 2, path = 3 };
        constexpr uint8_t tables = 0x01;
        constexpr uint32_t tool_version = 0x00020014; // 2.20
        constexpr uint32_t made = 0x20250310;         // 2025-03-10
        const bool is_transmitted = path_[0] != '\0';
        switch (asked.rest[0]) {
        case version:
            return record_of(tables, le32{tool_version}, le32{made});
        case transmit_status:
            return record_of(is_transmitted);
        case path:
            return path_;
        default:
            throw refusal{invalid_field};
        }
    }

  private:
    bytes path_ = bytes(path_size);
};

class autothrottle
{
  public:
    void set(const bytes &delay) { delay_ = delay; }
    bytes get() const { return delay_; }

  private:
    bytes delay_ = bytes(3);
};

// Power and thermal management keeps the values of its parameters as they come. A value begins
// anew with a write at offset 0, and goes on with writes that leave no hole.
//
// Parameter 1 is the blade's physical location: as many values as attributes, each behind its own
// length and its attribute's code. To read one, its code is sent where it stands in a write.
class power_thermal
{
  public:
    bytes access(const bytes &request)
    {
        const parameter_request asked(request);
        check_head(asked);
        if (asked.operation == parameter_request::write && asked.count != 0)
            write(asked);
        return answer_to(asked);
    }

  private:
    static constexpr uint8_t physical_location = 0x01;
    static constexpr size_t code_at = 2;

    using key = std::pair<uint8_t, uint8_t>; // parameter, attribute

    static key key_of(const parameter_request &asked)
    {
        const bool has_code = asked.parameter == physical_location && asked.rest.size() > code_at;
        return {asked.parameter, has_code ? asked.rest[code_at] : uint8_t{0}};
    }

    void write(const parameter_request &asked)
    {
        if (asked.parameter == physical_location) {
            refuse_if(asked.offset != 0, out_of_range);
            refuse_if(asked.count <= code_at || ruk::load_le16(asked.rest.data()) != asked.count,
                      wrong_request_length);
        }
        bytes &value = values_[key_of(asked)];
        value = with_part(value, asked.offset, asked.rest);
    }

    // To writes and reads alike: the parameter, its value's length, the offset, and the four bytes
    // of the value from there on, zeros where it ends.
    bytes answer_to(const parameter_request &asked) const
    {
        constexpr size_t told = 4;
        const auto found = values_.find(key_of(asked));
        bytes value = found == values_.end() ? bytes{} : found->second;
        const size_t length = value.size();
        value.resize(std::max(length, asked.offset + told));
        return success(asked.parameter, le16(length), le16(asked.offset),
                       stretch(value, asked.offset, told));
    }

    std::map<key, bytes> values_;
};

} // namespace

parameter_table settings_parameters()
{
    const auto display = std::make_shared<lcd>();
    const auto links = std::make_shared<link_tuning>();
    const auto throttle = std::make_shared<autothrottle>();
    return {
        {0x02, {{1, on(display, &lcd::set)}}, {{0, on(display, &lcd::get)}}},
        {0x11,
         {{link_tuning::path_size, on(links, &link_tuning::set)}},
         {{1, on(links, &link_tuning::get)}}},
        {0x1A, {{3, on(throttle, &autothrottle::set)}}, {{0, on(throttle, &autothrottle::get)}}},
    };
}

command_table settings_commands()
{
    const auto values = std::make_shared<power_thermal>();
    return {
        {netfn_manager,
         0xCE,
         {parameter_head, IPMI_REQUEST_DATA_SIZE},
         on(values, &power_thermal::access)},
    };
}

} // namespace chassisd::simulated
