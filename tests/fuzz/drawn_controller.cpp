#include "drawn_controller.h"

#include <algorithm>

namespace ruk_ipmi_testing
{

namespace
{

// The first byte of a datagram's answers: how many are spoilt, and what follows them.
constexpr uint8_t spoilt_mask = 0x03;
constexpr uint8_t nothing_follows = 0xC0;
constexpr uint8_t the_last_is_repeated = 0xE0;

change draw_change(script &drawn)
{
    const uint8_t kind = drawn.byte();
    change chosen{true, static_cast<layer>((kind & 0x3F) % 5), (kind & 0x80) != 0, 0, 0, {}};
    chosen.at = drawn.byte();
    chosen.removed = drawn.byte();
    const size_t length = drawn.byte();
    if (kind & 0x40)
        chosen.inserted.assign(length * 64, drawn.byte());
    while (chosen.inserted.size() < length)
        chosen.inserted.push_back(drawn.byte());
    return chosen;
}

void spoil(bytes &data, const change &change)
{
    const size_t skipped = std::min(change.at, data.size());
    const size_t first = change.is_from_the_end ? data.size() - skipped : skipped;
    const size_t removed = std::min(change.removed, data.size() - first);
    const auto from = data.begin() + static_cast<std::ptrdiff_t>(first);
    const auto place = data.erase(from, from + static_cast<std::ptrdiff_t>(removed));
    data.insert(place, change.inserted.begin(), change.inserted.end());
}

} // namespace

uint8_t script::byte()
{
    if (at_ == all_.size() && repeats_)
        at_ = 0;
    return at_ == all_.size() ? uint8_t{0} : all_[at_++];
}

drawn_controller::drawn_controller(const std::string &password, script script, unsigned honest)
    : script_(std::move(script)),
      honest_(honest),
      controller_(password,
                  [this](layer layer, bytes &data) {
                      if (change_.is_any && layer == change_.where)
                          spoil(data, change_);
                  }),
      service_([this](const bytes &asked) { return answers_to(asked); },
               [this] { return repeated_; })
{
}

std::vector<bytes> drawn_controller::answers_to(const bytes &asked)
{
    repeated_.clear();
    std::vector<bytes> answers;
    const uint8_t how = honest_ != 0 ? 0 : script_.byte();
    honest_ -= honest_ != 0;
    for (int left = how & spoilt_mask; left != 0; --left) {
        change_ = draw_change(script_);
        answers.push_back(controller_.answer(asked));
        if (how >= the_last_is_repeated)
            repeated_ = answers.back();
    }
    change_ = {};
    if (how < nothing_follows)
        answers.push_back(controller_.answer(asked));
    return answers;
}

} // namespace ruk_ipmi_testing
