#include <common/output_folder.hpp>

#include <stdexcept>
#include <system_error>

namespace common {

void makeFolder(const std::filesystem::path& folder) {
    namespace fs = std::filesystem;
    std::error_code code;
    fs::create_directories(folder, code);
    if (!code && !fs::is_directory(folder, code) && !code)
        code = std::make_error_code(std::errc::not_a_directory);
    if (code) {
        throw std::runtime_error("The output folder " + folder.string() +
                                 " cannot be made: " + code.message() + ". Name another one.");
    }
}

} // namespace common
