// Configuration parameters of the IPMI standard: values of a fixed size by number, among them one
// that keeps two that write apart. Families have them as rows of a table.
#ifndef RUK_HOST_CHASSISD_SIMULATED_STANDARD_PARAMETER_H
#define RUK_HOST_CHASSISD_SIMULATED_STANDARD_PARAMETER_H

#include <map>

#include "chassisd/simulated/record.h"

namespace chassisd::simulated
{

// As a byte ahead of the values that are read tells: revision 1, compatible with revision 1.
constexpr uint8_t parameter_revision = 0x11;

// Who asks may want that byte alone.
constexpr uint8_t revision_only = 0x80;

enum class access { writable, read_only };

struct standard_parameter {
    uint8_t number;
    bytes initial; // as long as every other value of it
    access allowed = access::writable;
    uint8_t sets = 1; // of several values each begins with the number of its set
};

class standard_parameters
{
  public:
    // Parameter 0 of every table, "set in progress", comes with it.
    explicit standard_parameters(std::vector<standard_parameter> table);

    const bytes &get(uint8_t number, uint8_t set = 0) const;
    void set(uint8_t number, const bytes &value);

    bool has(uint8_t number) const;

    // Back to the initial values.
    void reset();

  private:
    const standard_parameter &row(uint8_t number) const;

    std::vector<standard_parameter> table_;
    std::map<std::pair<uint8_t, uint8_t>, bytes> values_; // by number and set
};

} // namespace chassisd::simulated

#endif
