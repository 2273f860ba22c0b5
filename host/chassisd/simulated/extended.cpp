#include "chassisd/simulated/extended.h"

#include <map>
#include <optional>

#include "chassisd/simulated/parameter.h"

namespace chassisd::simulated
{

namespace
{

// Readers have room for a stream of that length, which begins with the length itself.
constexpr size_t longest_stream = 1024;
constexpr size_t length_size = 2;

constexpr size_t longest_chunk = 128; // of those that are written
constexpr size_t most_values = 64;

// Requests and answers tell whose group of commands theirs is.
const bytes group = {0xA2, 0x02, 0x00};

// Behind the group there are a handle, a value's command and index, an offset and a byte more; in a
// write, a chunk of the value comes behind them.
constexpr size_t head_size = 9;

struct extended_request {
    explicit extended_request(const bytes &request)
        : handle(request[3]),
          key(request[4], request[5]),
          offset(ruk::load_le16(&request[6])),
          last(request[8]),
          chunk(request.begin() + head_size, request.end())
    {
    }

    uint8_t handle;
    std::pair<uint8_t, uint8_t> key; // command, index
    uint16_t offset;
    uint8_t last; // of a write: whether this chunk is the last; of a read: how many bytes
    bytes chunk;
};

class extended_values
{
  public:
    // Whoever began before has to begin again.
    bytes begin(const bytes &)
    {
        last_handle_ = last_handle_ == 0xFF ? uint8_t{1} : static_cast<uint8_t>(last_handle_ + 1);
        transfer_ = transfer{};
        return success(group, last_handle_);
    }

    // A value counts once its last chunk is there. What a refused chunk had in mind is not done; it
    // can be sent again.
    bytes set(const bytes &request)
    {
        const extended_request asked(request);
        refuse_if(!transfer_ || asked.handle != last_handle_, reservation_lost);
        refuse_if(asked.last > 1, invalid_field);
        refuse_if(transfer_->key && transfer_->key != asked.key, invalid_field);
        refuse_if(values_.size() >= most_values && values_.count(asked.key) == 0, out_of_space);
        transfer_->value =
            with_part(transfer_->value, asked.offset, asked.chunk, longest_stream - length_size);
        transfer_->key = asked.key;
        if (asked.last) {
            values_[asked.key] = std::move(transfer_->value);
            transfer_.reset();
        }
        return success(group);
    }

    // The stream that is read is the value behind its length. Where nothing was written there is no
    // stream: the chunk at its beginning is empty.
    bytes get(const bytes &request) const
    {
        const extended_request asked(request);
        const auto found = values_.find(asked.key);
        bytes stream;
        if (found != values_.end())
            stream = record_of(le16(length_size + found->second.size()), found->second);
        refuse_if(asked.offset != 0 && asked.offset >= stream.size(), out_of_range);
        const bytes chunk = stretch_up_to(stream, asked.offset, asked.last);
        return success(group, asked.key.first, asked.key.second, static_cast<int>(chunk.size()),
                       chunk);
    }

  private:
    struct transfer {
        std::optional<std::pair<uint8_t, uint8_t>> key; // of its first chunk
        bytes value;
    };

    std::map<std::pair<uint8_t, uint8_t>, bytes> values_;
    std::optional<transfer> transfer_;
    uint8_t last_handle_ = 0;
};

// Other groups have their own meaning for the same commands, if any.
template <typename Method>
handler of_group(std::shared_ptr<extended_values> values, Method method)
{
    return [handle = on(std::move(values), method)](const bytes &request) {
        refuse_if(!std::equal(group.begin(), group.end(), request.begin()), invalid_command);
        return handle(request);
    };
}

} // namespace

command_table extended_commands()
{
    const auto values = std::make_shared<extended_values>();
    return {
        {netfn_group, 0x01, group.size(), of_group(values, &extended_values::begin)},
        {netfn_group, 0x02, head_size, of_group(values, &extended_values::get)},
        {netfn_group,
         0x03,
         {head_size + 1, head_size + longest_chunk},
         of_group(values, &extended_values::set)},
    };
}

} // namespace chassisd::simulated
