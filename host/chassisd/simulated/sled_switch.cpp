#include "chassisd/simulated/sled_switch.h"

#include <map>

namespace chassisd::simulated
{

namespace
{

class sled_switch
{
  public:
    // The file's length value, CRC and name, these two apart by two bytes.
    static constexpr size_t name_size = 16;
    static constexpr size_t fields_size = 1 + 4 + 2 + name_size;

    // Who asks for all counts one byte less than is taken: the name's last.
    static constexpr size_t uncounted = 1;
    static constexpr size_t count_of_all = 2 + fields_size - uncounted;

    explicit sled_switch(const environment &env)
        : now_(env.now),
          older_controller_(env.older_controller)
    {
    }

    // A file whose CRC is 0 will not verify.
    void set(const bytes &fields)
    {
        refuse_if(fields[0] == 0, invalid_field);
        length_ = fields[0];
        verifies_ = ruk::load_le32(&fields[1]) != 0;
        name_.assign(fields.end() - name_size, fields.end());
        done_when_ = now_() + configuration_duration;
    }

    // Who asks for less than all gets the status alone, which is all that an older controller can
    // tell. In place of the CRC there are zeros.
    bytes get(const parameter_request &asked) const
    {
        const bool asked_for_all = asked.count >= count_of_all;
        refuse_if(asked_for_all && older_controller_, request_truncated);
        return asked_for_all ? record_of(status(), length_, bytes(5), name_)
                             : record_of(status(), 0x00);
    }

    bytes get_links() const
    {
        const bool are_up = status() == applied;
        return record_of(are_up, are_up);
    }

  private:
    enum progress : uint8_t { not_started = 0, applied = 1, pending = 2, verification_error = 6 };

    progress status() const
    {
        if (length_ == 0)
            return not_started;
        if (now_() < done_when_)
            return pending;
        return verifies_ ? applied : verification_error;
    }

    const time_source now_;
    const bool older_controller_;
    uint8_t length_ = 0; // 0: there is no configuration yet
    bool verifies_ = false;
    bytes name_ = bytes(name_size);
    time_point done_when_{};
};

// Requests begin as those for a parameter do: write or read parameter 8, of which there is a map
// for each ID. A map is its ID, its length in a byte, and that many bytes. A read names the ID
// behind the head and is answered with the map.
class mac_maps
{
  public:
    static constexpr size_t longest_map = 128;
    static constexpr size_t map_head = 2;

    bytes access(const bytes &request)
    {
        const parameter_request asked(request);
        check_head(asked);
        refuse_if(asked.parameter != 0x08 || asked.offset != 0, invalid_field);
        return asked.operation == parameter_request::read ? read(asked.rest) : write(asked.rest);
    }

  private:
    bytes read(const bytes &selector) const
    {
        refuse_if(selector.size() != 1, wrong_request_length);
        const auto found = maps_.find(selector[0]);
        refuse_if(found == maps_.end(), not_present);
        return success(found->second);
    }

    bytes write(const bytes &map)
    {
        refuse_if(map.size() < map_head || map[1] != map.size() - map_head, wrong_request_length);
        refuse_if(map[1] > longest_map, out_of_range);
        maps_[map[0]] = map;
        return success();
    }

    std::map<uint8_t, bytes> maps_; // by ID
};

} // namespace

parameter_table sled_switch_parameters(const environment &env)
{
    const auto sled = std::make_shared<sled_switch>(env);
    // A request for the configuration may be as long as one that writes it.
    constexpr lengths selector{0, 2 + sled_switch::fields_size};
    return {
        {0x0C,
         {{sled_switch::fields_size, on(sled, &sled_switch::set)}},
         {{selector, on(sled, &sled_switch::get), sled_switch::uncounted}}},
        {0x0D, std::nullopt, {{0, on(sled, &sled_switch::get_links)}}},
    };
}

handler mac_map_handler()
{
    return on(std::make_shared<mac_maps>(), &mac_maps::access);
}

} // namespace chassisd::simulated
