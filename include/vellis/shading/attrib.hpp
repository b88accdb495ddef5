#pragma once

#include <vellis/export.hpp>

namespace vellis {

/// What a program knows of one of its active vertex attributes: where it is.
class VELLIS_EXPORT Attrib {
public:
    /// Copies the location.
    /// @{
    Attrib(const Attrib&) = default;
    Attrib& operator=(const Attrib&) = default;
    /// @}
    virtual ~Attrib();

    /// The GL location that the linker chose; -1 where there is none.
    int loc;

protected:
    friend class Program;

    /// An attribute at that location.
    explicit Attrib(int location) : loc(location) {}
};

} // namespace vellis
