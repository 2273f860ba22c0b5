// Writes the manual's pages and the shells' completions of both programs, each file where it is to
// be below a directory called "share".

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "chassisd/options.h"
#include "manual/completion.h"
#include "manual/man_pages.h"
#include "manual/marks.h"

namespace
{

using namespace manual;

void write(const std::filesystem::path &file, const std::string &text)
{
    std::filesystem::create_directories(file.parent_path());
    std::ofstream out(file);
    out.exceptions(std::ios::failbit | std::ios::badbit);
    out << text;
    out.close();
}

void write_completions(const std::filesystem::path &share, const command &program)
{
    const std::string name = program.path.front();
    write(share / "bash-completion/completions" / name, bash_completion(program));
    write(share / "zsh/site-functions" / ("_" + name), zsh_completion(program));
}

void write_pages(const std::filesystem::path &directory, const pages &all)
{
    for (const auto &[name, text] : all.texts)
        write(directory / name, text);
    for (const auto &[name, target] : all.links)
        std::filesystem::create_symlink(target, directory / name);
}

void write_all(const std::filesystem::path &share)
{
    cli::vocabulary known(cli::all_nouns());
    command tool = read_tree(known.app);
    add_marks(tool, known);
    write_pages(share / "man/man1", tool_pages(tool));
    write_completions(share, tool);

    const chassisd::options typed;
    const command daemon = read_tree(typed.app);
    write_pages(share / "man/man8", daemon_pages(daemon));
    write_completions(share, daemon);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        fprintf(stderr, "usage: ruk-manual SHARE\n");
        return 2;
    }
    try {
        write_all(argv[1]);
    } catch (const std::exception &error) {
        fprintf(stderr, "ruk-manual: %s\n", error.what());
        return 1;
    }
    return 0;
}
