#pragma once

#include <map>
#include <memory>

#include <vellis/buffers/buffer_object.hpp>
#include <vellis/export.hpp>

namespace vellis {

class Toolbox;

/// The registry of buffers: one of each Context, and one of the process for where none is in use.
/// It owns every buffer that is added to it, until that is removed or engine::dispose or
/// Context::dispose releases them all; a buffer's address is its key. Buffers are not added by
/// themselves.
///
/// \code
/// auto& registry = vellis::BufferObjectManager::instance();
/// vellis::BufferObject* key = registry.add(buffer); // now the registry owns it, too
/// registry.remove(key);
/// \endcode
///
/// Releasing the last reference to a buffer deletes its GL buffer, so call what releases with the
/// GL context current. A buffer is out of the registry before it ends: what ends with it may call
/// the registry, and what is added then stays there.
///
/// The process's own is made on first use and emptied at the end of the process. The destructors of
/// static objects may call it even after that: they meet an empty registry, which is emptied once
/// more. That of a Context is made on first use, too, and goes with it.
class VELLIS_EXPORT BufferObjectManager {
public:
    /// The registry of the Context in use. The reference holds until that is disposed of.
    static BufferObjectManager& instance();

    /// Adds \p buffer, unless it is there already.
    /// \return its key; the invalid one for an empty pointer, which is not added.
    BufferObject* add(const std::shared_ptr<BufferObject>& buffer);

    /// Releases the buffer with that key; an unknown key does nothing.
    void remove(BufferObject* id);

    /// True for any key but the invalid one. The registry is not asked: a removed buffer's key is
    /// valid in this sense.
    static bool isValid(BufferObject* id) { return id != invalidId(); }

    /// The invalid key, null.
    static BufferObject* invalidId() { return nullptr; }

    /// Empties the registry of the Context in use. Buffers that nobody else owns are destroyed; the
    /// others live on with their GL names.
    static void dispose();

    /// Copies the entries: a copy owns the same buffers. Assignment releases those of before.
    /// @{
    BufferObjectManager(const BufferObjectManager&) = default;
    BufferObjectManager& operator=(const BufferObjectManager& other);
    /// @}

    /// Empties the registry, as dispose() does. That holds for a copy, too: its end empties the
    /// registry of the Context in use beside the copy itself.
    ~BufferObjectManager();

private:
    friend class Toolbox;

    BufferObjectManager() = default;

    /// Releases all buffers, which are out of the registry before the first of them ends.
    VELLIS_NO_EXPORT void clear();

    /// The buffer with that key, or an empty pointer.
    const std::shared_ptr<BufferObject>& internal_get(BufferObject* id) const;

    std::map<BufferObject*, std::shared_ptr<BufferObject>> buffers_;
};

} // namespace vellis
