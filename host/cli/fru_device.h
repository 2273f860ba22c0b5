// A blade's FRU device as a stretch of bytes, whatever its access and however little it takes or
// gives at a time.
#ifndef RUK_HOST_CLI_FRU_DEVICE_H
#define RUK_HOST_CLI_FRU_DEVICE_H

#include <functional>

#include "cli/request.h"

namespace cli
{

class fru_device
{
  public:
    // Told after each step how many bytes are done.
    using watcher = std::function<void(size_t)>;

    fru_device(const blade &at, uint8_t id);

    size_t size() const { return info_.size; }
    bool by_words() const { return (info_.access & 1) != 0; }

    bytes read(size_t offset, size_t length, const watcher &watch = {}) const;
    void write(const bytes &image, const watcher &watch = {}) const;

  private:
    size_t unit() const { return by_words() ? 2 : 1; }
    bytes read_stretch(size_t offset, size_t count) const;
    bytes read_bare(size_t offset, size_t count) const;

    const blade &at_;
    uint8_t id_;
    fru_area_info info_;
    mutable size_t longest_read_ = 64; // bytes; less when the device refused as many
};

} // namespace cli

#endif
