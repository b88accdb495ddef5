#include "support/stderr_capture.hpp"

#include <cerrno>
#include <iostream>
#include <system_error>

#ifdef _WIN32
#include <cstdlib>
#include <io.h>
#else
#include <unistd.h>
#endif

namespace vellis::test {
namespace {

constexpr int stderrDescriptor = 2;

#ifdef _WIN32

int duplicate(int descriptor) {
    return _dup(descriptor);
}

int redirect(int from, int to) {
    return _dup2(to, from);
}

int descriptorOf(std::FILE* file) {
    return _fileno(file);
}

/// Not tmpfile(), which makes its file in the root folder. The file goes when it is closed. Another
/// process may take the name before it is opened here: then the next one is tried.
std::FILE* openTemporary() {
    std::FILE* file = nullptr;
    for (int attempt = 0; attempt < 20 && file == nullptr; ++attempt) {
        char* name = _tempnam(nullptr, "vellis");
        file = name != nullptr ? std::fopen(name, "w+bD") : nullptr;
        std::free(name);
    }
    return file;
}

#else

int duplicate(int descriptor) {
    return dup(descriptor);
}

int redirect(int from, int to) {
    return dup2(to, from);
}

int descriptorOf(std::FILE* file) {
    return fileno(file);
}

std::FILE* openTemporary() {
    return std::tmpfile();
}

#endif

void closeDescriptor(int descriptor) {
#ifdef _WIN32
    _close(descriptor);
#else
    close(descriptor);
#endif
}

void flush() {
    std::cerr.flush();
    std::clog.flush();
    std::fflush(stderr);
}

} // namespace

StderrCapture::StderrCapture() : file_(openTemporary()), original_(-1) {
    flush();
    if (file_ != nullptr)
        original_ = duplicate(stderrDescriptor);
    if (original_ < 0 || redirect(stderrDescriptor, descriptorOf(file_)) < 0)
        throw std::system_error(errno, std::generic_category(), "capturing standard error");
}

StderrCapture::~StderrCapture() {
    flush();
    redirect(stderrDescriptor, original_);
    closeDescriptor(original_);
    std::fclose(file_);
}

std::string StderrCapture::take() {
    flush();
    // The two descriptors share one position in the file: it ends where the next text belongs.
    std::fseek(file_, taken_, SEEK_SET);
    std::string text;
    char block[512];
    while (const std::size_t count = std::fread(block, 1, sizeof(block), file_))
        text.append(block, count);
    taken_ += static_cast<long>(text.size());
    std::fseek(file_, taken_, SEEK_SET);
    return text;
}

} // namespace vellis::test
