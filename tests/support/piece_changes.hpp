#pragma once

#include <string>
#include <vector>

#include <vellis/gl.hpp>

/// \file
/// Every piece of state that a snapshot has, changed on a driver.

namespace vellis::test {

/// A row of snapshot_pieces.inc.
struct PieceRow {
    std::string name;
    GLenum pname;
    std::string needs; ///< as it is written there
    std::string per;
    std::string write;
    GLenum target;
    bool isReset; ///< whether reset() sets it
};

/// All of them.
const std::vector<PieceRow>& pieceRows();

/// Whether the current context has it, as GL says.
bool isThere(const PieceRow& row);

/// Objects of each kind, one more than is bound: they go with this.
class SpareObjects {
public:
    SpareObjects();
    ~SpareObjects();
    SpareObjects(const SpareObjects&) = delete;
    SpareObjects& operator=(const SpareObjects&) = delete;

    GLuint buffer = 0;
    GLuint vertexArray = 0;
    GLuint framebuffer = 0;
    GLuint renderbuffer = 0;
    GLuint program = 0;
    GLuint sampler = 0;
    GLuint pipeline = 0;

    /// A new texture, which no target knows.
    GLuint texture();

private:
    std::vector<GLuint> textures_;
};

/// Sets a piece that the context has to what GL does not begin with.
/// \return false where no way is known here, which is an error of the table.
bool change(const PieceRow& row, SpareObjects& objects);

} // namespace vellis::test
