// Runs a fuzzer's function on files, for builds that have no fuzzer: all of a
// directory's, or those that are named.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace
{

size_t run(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> content{std::istreambuf_iterator<char>(file), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(content.data()), content.size());
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    size_t count = 0;
    for (int at = 1; at < argc; ++at) {
        if (!std::filesystem::is_directory(argv[at])) {
            count += run(argv[at]);
            continue;
        }
        for (const auto &each : std::filesystem::directory_iterator(argv[at]))
            count += run(each.path());
    }
    printf("%zu inputs\n", count);
    return count == 0;
}
