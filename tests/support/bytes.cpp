#include "support/bytes.h"

namespace ruk_ipmi_testing
{

bytes joined(const bytes &head, const bytes &tail)
{
    bytes all;
    all.reserve(head.size() + tail.size());
    all.insert(all.end(), head.begin(), head.end());
    all.insert(all.end(), tail.begin(), tail.end());
    return all;
}

bytes counting(size_t length)
{
    bytes data(length);
    for (size_t i = 0; i < length; ++i)
        data[i] = static_cast<uint8_t>(1 + i % 251);
    return data;
}

} // namespace ruk_ipmi_testing
