// The contents of a FRU device: a common header, and areas of fields it points to.
#ifndef RUK_HOST_CLI_FRU_IMAGE_H
#define RUK_HOST_CLI_FRU_IMAGE_H

#include <functional>

#include "cli/report.h"

namespace cli
{

constexpr size_t fru_header_size = 8;

// What is wrong with a common header; empty when nothing is.
std::string fru_header_mistake(const bytes &image);

// Gives `length` bytes of the image from `offset` on.
using fru_reader = std::function<bytes(size_t offset, size_t length)>;

// The chassis, board and product areas with their fields, as far as the image has them. An area
// that cannot be read as one says why; a checksum that is wrong is told, and the fields all the
// same. Reads no more than it needs of the `size` bytes.
json fru_fields(size_t size, const fru_reader &read);

} // namespace cli

#endif
