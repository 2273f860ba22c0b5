#include "chassisd/simulated/fru.h"

#include "chassisd/simulated/fru_images.h"
#include "chassisd/simulated/record.h"

namespace chassisd::simulated
{

namespace
{

// The answer counts what was written in one byte.
constexpr size_t longest_write = 0xFF;

// Device and offset, with which reads and writes begin.
constexpr size_t place_size = 3;

class inventory
{
  public:
    explicit inventory(const environment &env) : devices_(fru_images(env)) {}

    bytes get_area_info(const bytes &request)
    {
        constexpr uint8_t accessed_by_bytes = 0x00;
        return success(le16(device(request).size()), accessed_by_bytes);
    }

    bytes read(const bytes &request)
    {
        const uint8_t count = request[place_size];
        return success(count, stretch(device(request), offset_in(request), count));
    }

    // All or nothing: what would run past the end writes nothing.
    bytes write(const bytes &request)
    {
        bytes &area = device(request);
        const size_t offset = offset_in(request);
        const size_t count = request.size() - place_size;
        refuse_if(offset >= area.size() || count > area.size() - offset, out_of_range);
        std::copy_n(&request[0] + place_size, count, &area[offset]);
        return success(static_cast<int>(count));
    }

  private:
    static size_t offset_in(const bytes &request) { return ruk::load_le16(&request[1]); }

    bytes &device(const bytes &request)
    {
        refuse_if(request[0] >= devices_.size(), not_present);
        return devices_[request[0]];
    }

    std::vector<bytes> devices_;
};

} // namespace

command_table fru_commands(const environment &env)
{
    const auto frus = std::make_shared<inventory>(env);
    return {
        {netfn_storage, 0x10, 1, on(frus, &inventory::get_area_info)},
        {netfn_storage, 0x11, place_size + 1, on(frus, &inventory::read)},
        {netfn_storage,
         0x12,
         {place_size, place_size + longest_write},
         on(frus, &inventory::write)},
    };
}

} // namespace chassisd::simulated
