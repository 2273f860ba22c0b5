#include "chassisd/simulated/imc_event.h"

namespace chassisd::simulated
{

// Feature bits, FRU 0, and 37 bytes of data: the number of the event and its record, then zeros.
class imc_event
{
  public:
    void keep(blade_event event, const bytes &record)
    {
        const auto number = static_cast<uint32_t>(event);
        fields_ = record_of(feature_bit(number), fru_id, static_cast<int>(number), record);
        fields_.resize(size);
    }

    bytes get() const { return fields_; }

  private:
    static constexpr size_t size = 40; // behind the record's length
    static constexpr int fru_id = 0;

    // A bit for each subject, of which every eight numbers are one.
    static le16 feature_bit(uint32_t number) { return le16(1u << (number - 1) / 8); }

    bytes fields_ = bytes(size);
};

std::shared_ptr<imc_event> make_imc_event()
{
    return std::make_shared<imc_event>();
}

event_sink kept_by(std::shared_ptr<imc_event> event, event_sink alert)
{
    return [event = std::move(event), alert = std::move(alert)](blade_event number,
                                                                const bytes &record) {
        event->keep(number, record);
        alert(number, record);
    };
}

parameter_table imc_event_parameters(std::shared_ptr<const imc_event> event)
{
    return {
        {0x1B, std::nullopt, {{0, on(std::move(event), &imc_event::get)}}},
    };
}

} // namespace chassisd::simulated
