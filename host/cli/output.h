// Writes reports: for people, as JSON, or as the bytes themselves.
#ifndef RUK_HOST_CLI_OUTPUT_H
#define RUK_HOST_CLI_OUTPUT_H

#include "cli/report.h"

namespace cli
{

enum class format { for_people, as_json, as_bytes };

class output
{
  public:
    // With `headed`, the normal format says whose report each one is.
    output(format chosen, bool headed) : format_(chosen), headed_(headed) {}

    // A blade's report goes to standard output; what went wrong also to standard error.
    void blade(const std::string &name, const report &told);

    // The report of a command that is for no blade.
    void local(const report &told);

    // Call last: writes what must be written in one piece. Fails when not all could be written.
    void finish();

  private:
    format format_;
    bool headed_;
    bool anything_ = false;
    json all_ = json::array();
};

// The JSON form of a failure.
json failure_fields(const failure &why);

// JSON as the tool writes it: indented, whatever bytes its texts hold.
void write_json(const json &value);

// The same on a single line.
std::string json_line(const json &value);

// A failure's line on standard error.
void complain(const std::string &about, const failure &why);

// Text that came from a blade, harmless to a terminal and valid in JSON.
std::string printable(const std::string &text);

// A field's name, and a value, as people read them.
std::string label(std::string key);
std::string value_text(const json &value);

// A text with blanks behind it, `width` characters or more.
std::string padded(std::string text, size_t width);

// Tells on standard error how far a long transfer is, when a person is watching. Leaves no trace.
class progress
{
  public:
    progress(const std::string &what, size_t total);
    ~progress();
    progress(const progress &) = delete;
    progress &operator=(const progress &) = delete;

    void reached(size_t done);

  private:
    std::string what_;
    size_t total_;
    size_t shown_ = 0;
};

} // namespace cli

#endif
