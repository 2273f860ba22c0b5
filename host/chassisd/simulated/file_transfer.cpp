#include "chassisd/simulated/file_transfer.h"

#include <map>

namespace chassisd::simulated
{

namespace
{

// What is written is known by its length: a selector and the path of its file, the outcome of a
// firmware update, or that the update took too long.
class notices
{
  public:
    static constexpr size_t path_size = 30;
    static constexpr lengths sizes{1, 1 + path_size};

    explicit notices(const environment &env) : now_(env.now) {}

    void set(const bytes &fields)
    {
        enum notice : uint8_t { update_status = 0x03, time_out = 0x04 };
        switch (fields.size()) {
        case 1 + path_size:
            files_[fields[0]] = {fields[1] != '\0', now_()};
            break;
        case 2:
            refuse_if(fields[0] != update_status, invalid_field);
            update_status_ = fields[1];
            break;
        case 1:
            refuse_if(fields[0] != time_out, invalid_field);
            timed_out_ = true;
            break;
        default:
            throw refusal{wrong_request_length};
        }
    }

    // How far the copy of the selected file is. Who asks for more gets the last outcome of an
    // update and whether one timed out, too.
    bytes get(const parameter_request &asked) const
    {
        constexpr size_t copy_alone = 3;
        const char copied = copy_status(asked.rest[0]);
        return asked.count <= copy_alone ? record_of(copied)
                                         : record_of(copied, update_status_, timed_out_);
    }

  private:
    struct file {
        bool has_path;
        time_point told;
    };

    char copy_status(uint8_t selector) const
    {
        constexpr char not_started = '0', copying = '1', done = '2', failed = 'F';
        const auto found = files_.find(selector);
        if (found == files_.end())
            return not_started;
        const file &copied = found->second;
        if (!copied.has_path)
            return failed;
        const auto since = now_() - copied.told;
        if (since < copy_begins_after)
            return not_started;
        return since < copy_done_after ? copying : done;
    }

    const time_source now_;
    std::map<uint8_t, file> files_; // by selector
    uint8_t update_status_ = 0;
    bool timed_out_ = false;
};

// Two bytes that it does not use, whether the bundle is ready, and its name behind its length.
class log_bundle
{
  public:
    static constexpr size_t name_at = 4;
    static constexpr lengths sizes{name_at, name_at + 0xFF};

    void set(const bytes &fields)
    {
        refuse_if(fields[name_at - 1] != fields.size() - name_at, wrong_request_length);
        told_ = fields;
    }

    bytes get() const { return told_; }

  private:
    bytes told_ = bytes(name_at);
};

} // namespace

parameter_table file_transfer_parameters(const environment &env)
{
    const auto files = std::make_shared<notices>(env);
    const auto bundle = std::make_shared<log_bundle>();
    return {
        {0x16, {{notices::sizes, on(files, &notices::set)}}, {{1, on(files, &notices::get)}}},
        {0x20,
         {{log_bundle::sizes, on(bundle, &log_bundle::set)}},
         {{0, on(bundle, &log_bundle::get)}}},
    };
}

} // namespace chassisd::simulated
