// A manual page as man reads it.
#ifndef RUK_HOST_MANUAL_ROFF_H
#define RUK_HOST_MANUAL_ROFF_H

#include <string>
#include <vector>

namespace manual
{

class page
{
  public:
    // In that section of the manual; `about` is the line by which it is found.
    page(const std::string &name, int in_section, const std::string &about);

    void section(const std::string &title);
    void subsection(const std::string &title);
    void paragraph(const std::string &text);

    // How something is called, as it is typed.
    void synopsis(const std::string &shown);

    // Something, and what is to be said of it.
    void item(const std::string &term, const std::string &text);

    // Lines as they are.
    void verbatim(const std::string &lines);

    // Other pages: "ruk-ipmi(1)".
    void see_also(const std::vector<std::string> &pages);

    const std::string &text() const { return text_; }

  private:
    void begin_paragraph();

    std::string text_;
    bool at_start_ = true; // of a section: a paragraph begins by itself
};

} // namespace manual

#endif
