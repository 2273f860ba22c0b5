#include "chassisd/simulated/parameter.h"

#include <map>
#include <stdexcept>

#include "ruk_ipmi/types.h"

namespace chassisd::simulated
{

namespace
{

// Bytes of a value's own length.
constexpr size_t length_size = 2;

// Chassis managers take answers of up to 483 bytes.
constexpr size_t longest_part = 483 - parameter_head;

class parameter_set
{
  public:
    explicit parameter_set(const std::vector<parameter_table> &families)
    {
        for (const parameter_table &family : families)
            for (const parameter &row : family)
                if (!parameters_.emplace(row.number, row).second)
                    throw std::logic_error("two families of the simulated blade have a parameter");
    }

    bytes access(const bytes &request)
    {
        const parameter_request asked(request);
        check_head(asked);
        const auto found = parameters_.find(asked.parameter);
        refuse_if(found == parameters_.end(), invalid_field);
        return asked.operation == parameter_request::read ? read(found->second.reader, asked)
                                                          : write(found->second.writer, asked);
    }

  private:
    // A value may come in parts and is set when its last byte is there. What was written stays when
    // a part is refused.
    bytes write(const std::optional<parameter_writer> &writer, const parameter_request &asked)
    {
        refuse_if(!writer, invalid_field);
        bytes value = with_part(written_[asked.parameter], asked.offset, asked.rest);
        refuse_if(value.size() < length_size, wrong_request_length);
        const size_t length = ruk::load_le16(value.data());
        refuse_if(length < length_size || !writer->fields.include(length - length_size) ||
                      value.size() > length,
                  wrong_request_length);
        if (value.size() == length)
            writer->set({value.begin() + length_size, value.end()});
        written_[asked.parameter] = std::move(value);
        return success();
    }

    // The answer is headed like the request, the completion code in the operation's place. It ends
    // where the value ends.
    static bytes read(const std::optional<parameter_reader> &reader, const parameter_request &asked)
    {
        refuse_if(!reader, invalid_field);
        refuse_if(!reader->selector.include(asked.rest.size()), wrong_request_length);
        const bytes fields = reader->fields(asked);
        const bytes value = record_of(le16(length_size + fields.size()), fields);
        refuse_if(asked.offset >= value.size(), out_of_range);
        const size_t count = std::min(asked.count + reader->uncounted, value.size() - asked.offset);
        refuse_if(count > longest_part, cannot_return_that_many);
        return success(asked.parameter, le16(count), le16(asked.offset),
                       stretch(value, asked.offset, count));
    }

    std::map<uint8_t, parameter> parameters_;
    std::map<uint8_t, bytes> written_; // values, or as much of them as has come
};

} // namespace

parameter_request::parameter_request(const bytes &request)
    : operation(request[0]),
      parameter(request[1]),
      count(ruk::load_le16(&request[2])),
      offset(ruk::load_le16(&request[4])),
      rest(request.begin() + parameter_head, request.end())
{
}

void check_head(const parameter_request &asked)
{
    refuse_if(asked.operation > parameter_request::read, invalid_field);
    refuse_if(asked.operation == parameter_request::write && asked.count != asked.rest.size(),
              wrong_request_length);
}

bytes with_part(bytes value, size_t offset, const bytes &part, size_t longest)
{
    if (offset == 0)
        value.clear();
    const size_t end = offset + part.size();
    refuse_if(offset > value.size() || end > longest, out_of_range);
    value.resize(std::max(value.size(), end));
    std::copy(part.begin(), part.end(), value.begin() + static_cast<std::ptrdiff_t>(offset));
    return value;
}

command_table parameter_commands(const std::vector<parameter_table> &families)
{
    const auto parameters = std::make_shared<parameter_set>(families);
    return {
        {netfn_manager,
         0xD0,
         {parameter_head, IPMI_REQUEST_DATA_SIZE},
         on(parameters, &parameter_set::access)},
    };
}

} // namespace chassisd::simulated
