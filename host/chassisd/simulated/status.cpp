#include "chassisd/simulated/status.h"

#include "chassisd/simulated/record.h"

namespace chassisd::simulated
{

namespace
{

class controller_status
{
  public:
    explicit controller_status(const environment &env) : now_(env.now), started_(env.now()) {}

    // Whether it waits for new firmware, the seconds since it started, and whether the system is
    // on.
    bytes get(const power_state &power) const
    {
        using namespace std::chrono;
        const auto up_s = duration_cast<seconds>(now_() - started_).count();
        return success(is_updating(), le32{static_cast<uint32_t>(up_s)}, power.on);
    }

    bytes enter_firmware_update()
    {
        refuse_if(is_updating(), not_in_this_state);
        updating_until_ = now_() + firmware_update_patience;
        return success();
    }

  private:
    bool is_updating() const { return now_() < updating_until_; }

    const time_source now_;
    const time_point started_;
    time_point updating_until_{};
};

// There is a screen while the system is on; nobody looks at it.
bytes remote_console(const power_state &power)
{
    constexpr size_t port = 5900;
    constexpr int is_encrypted = 1;
    constexpr int sessions = 0;
    constexpr int most_sessions = 4;
    return success(power.on, sessions, le16(port), is_encrypted, most_sessions);
}

bytes remote_media()
{
    constexpr int is_enabled = 1;
    constexpr int is_encrypted = 1;
    constexpr int attached = 0;
    constexpr int sessions = 0;
    return success(is_enabled, attached, sessions, is_encrypted);
}

} // namespace

command_table status_commands(const environment &env, std::shared_ptr<const power_state> power)
{
    const auto status = std::make_shared<controller_status>(env);
    return {
        {netfn_manager, 0x8D, 0, [power](const bytes &) { return remote_console(*power); }},
        {netfn_manager, 0x8E, 0, [](const bytes &) { return remote_media(); }},
        {netfn_manager, 0x90, 0, [status, power](const bytes &) { return status->get(*power); }},
        {netfn_group, 0x18, 0, on(status, &controller_status::enter_firmware_update)},
    };
}

} // namespace chassisd::simulated
