#pragma once

#include <filesystem>
#include <string>

namespace vellis::test {

/// A page of the documentation with parts that come from the library:
/// \verbatim
/// <!-- generated: name -->
/// ...
/// <!-- end of name -->
/// \endverbatim
class Page {
public:
    /// \param path  Below the root of the repository.
    explicit Page(const std::string& path);

    /// Expects that the part of that name is \p text. With VELLIS_WRITE_PAGES in the environment it
    /// writes the part instead.
    void expectPart(const std::string& name, const std::string& text);

private:
    std::filesystem::path path_;
    std::string text_;
};

/// A file as it is.
std::string readFile(const std::filesystem::path& path);

} // namespace vellis::test
