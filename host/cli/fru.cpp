// The FRU inventory: what a blade says it is, shown, saved and written.

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>

#include "cli/command_tree.h"
#include "cli/fru_device.h"
#include "cli/fru_image.h"
#include "cli/output.h"
#include "cli/readers.h"
#include "cli/targets.h"

namespace cli
{

namespace
{

constexpr size_t largest_device = 0xFFFF;

struct device_choice {
    uint8_t id = 0;
};

struct read_choice : device_choice {
    std::string file;
};

struct write_choice : device_choice {
    bytes image;
    bool force = false;
};

std::string text(const std::string &typed)
{
    return typed;
}

// No more than the largest device and a byte, which is too much already.
bytes image_file(const std::string &name)
{
    return file_contents(name, largest_device + 1);
}

void write_file(const std::string &name, const bytes &contents)
{
    std::ofstream file(name, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char *>(contents.data()),
               static_cast<std::streamsize>(contents.size()));
    if (!file.flush())
        throw usage_failure("cannot write " + name + ": " + strerror(errno));
}

std::string progress_text(const blade &at, const char *doing)
{
    return "blade " + target_name(at.location) + ": " + doing + " FRU data, byte";
}

report info(const blade &at, const device_choice &chosen)
{
    const fru_device device(at, chosen.id);
    return tell({{"device", chosen.id},
                 {"bytes", device.size()},
                 {"access", device.by_words() ? "words" : "bytes"}});
}

// A device's bytes for somebody who wants a few here and a few behind them. To ask takes longer
// than to be told, so more comes along than is wanted.
class read_ahead
{
  public:
    explicit read_ahead(const fru_device &device) : device_(device) {}

    bytes read(size_t offset, size_t length)
    {
        if (offset < start_ || offset > start_ + known_.size()) {
            start_ = offset;
            known_.clear();
        }
        const size_t known = start_ + known_.size();
        if (offset + length > known) {
            const bytes more = read_from(known, offset + length - known);
            known_.insert(known_.end(), more.begin(), more.end());
        }
        const auto from = known_.begin() + static_cast<ptrdiff_t>(offset - start_);
        return {from, from + static_cast<ptrdiff_t>(length)};
    }

  private:
    // A device that does not give more still gives what is wanted.
    bytes read_from(size_t offset, size_t wanted) const
    {
        constexpr size_t ahead = 64;
        const size_t more = std::min(std::max(wanted, ahead), device_.size() - offset);
        try {
            return device_.read(offset, more);
        } catch (const failure &refused) {
            if (refused.kind != exit_refused || more == wanted)
                throw;
            return device_.read(offset, wanted);
        }
    }

    const fru_device &device_;
    size_t start_ = 0;
    bytes known_; // from there on
};

report print(const blade &at, const device_choice &chosen)
{
    const fru_device device(at, chosen.id);
    read_ahead ahead(device);
    report told;
    told.fields = {{"device", chosen.id}};
    told.fields.update(fru_fields(
        device.size(), [&](size_t offset, size_t length) { return ahead.read(offset, length); }));
    return told;
}

report read(const blade &at, const read_choice &chosen)
{
    const fru_device device(at, chosen.id);
    progress shown(progress_text(at, "reading"), device.size());
    report told;
    told.binary = device.read(0, device.size(), [&](size_t done) { shown.reached(done); });
    told.fields = {{"device", chosen.id}, {"bytes", told.binary.size()}, {"file", chosen.file}};
    if (chosen.file == "-") {
        told.only_binary = true;
        told.fields["data"] = hex(told.binary); // for JSON, which cannot hold the bytes themselves
    } else {
        write_file(chosen.file, told.binary);
        told.binary.clear();
    }
    return told;
}

void check_image(const fru_device &device, const write_choice &chosen)
{
    if (chosen.image.size() > device.size())
        throw usage_failure("the file is larger than FRU device " + std::to_string(chosen.id) +
                            ", which has " + std::to_string(device.size()) +
                            " bytes; nothing was written");
    if (device.by_words() && chosen.image.size() % 2 != 0)
        throw usage_failure("FRU device " + std::to_string(chosen.id) +
                            " is written by words and the file has an odd number of bytes; "
                            "nothing was written");
}

report write(const blade &at, const write_choice &chosen)
{
    if (const std::string mistake = fru_header_mistake(chosen.image);
        !mistake.empty() && !chosen.force)
        throw usage_failure("the file holds no FRU data (" + mistake +
                            "); nothing was written; --force writes it all the same");
    const fru_device device(at, chosen.id);
    check_image(device, chosen);

    const bytes &image = chosen.image;
    {
        progress shown(progress_text(at, "writing"), image.size());
        device.write(image, [&](size_t done) { shown.reached(done); });
    }
    // A blade may take fewer bytes than it was given, and the library cannot tell.
    progress shown(progress_text(at, "comparing"), image.size());
    const bytes kept = device.read(0, image.size(), [&](size_t done) { shown.reached(done); });
    const auto differs = std::mismatch(image.begin(), image.end(), kept.begin()).first;
    if (differs != image.end())
        throw failure(exit_refused, "FRU device " + std::to_string(chosen.id) +
                                        " does not hold what was written: it differs from byte " +
                                        hex(static_cast<uint16_t>(differs - image.begin())) +
                                        " on");
    return tell({{"device", chosen.id}, {"bytes", image.size()}, {"compared", true}});
}

template <typename Choice>
verb<Choice> with_device(verb<Choice> verb)
{
    verb.option("--id", "N", &device_choice::id, number<uint8_t>,
                "FRU device, 0 (the blade's own) when not given");
    return verb;
}

} // namespace

void add_fru(const noun &root)
{
    const noun fru = root.noun_below("fru", "The FRU inventory: what the blade and its parts are");
    with_device(fru.verb("info", "Show a FRU device's size and access", info));
    with_device(fru.verb("print", "Show the chassis, board and product areas", print));
    with_device(fru.verb("read", "Save a FRU device's bytes", read))
        .argument("FILE", &read_choice::file, text, "Where to; - is standard output")
        .one_blade()
        .binary();
    with_device(fru.verb("write", "Write a FRU device, then read it back and compare", write))
        .argument("FILE", &write_choice::image, image_file, "What to write; - is standard input")
        .flag("--force", &write_choice::force, "Write what does not begin like FRU data, too");
}

} // namespace cli
