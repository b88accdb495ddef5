#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

/// Sets an environment variable for as long as it lives.
class EnvironmentVariable {
public:
    /// \param value  Without one, the variable is taken away.
    EnvironmentVariable(std::string name, std::optional<std::string> value)
        : name_(std::move(name)) {
        if (const char* before = std::getenv(name_.c_str()))
            before_ = before;
        set(value);
    }
    ~EnvironmentVariable() { set(before_); }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

private:
    void set(const std::optional<std::string>& value) const {
#ifdef _WIN32
        _putenv_s(name_.c_str(), value.value_or("").c_str()); // an empty value takes it away
#else
        if (value)
            setenv(name_.c_str(), value->c_str(), 1);
        else
            unsetenv(name_.c_str());
#endif
    }

    std::string name_;
    std::optional<std::string> before_;
};
